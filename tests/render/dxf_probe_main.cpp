// Loads a DXF file, renders it to PNG (and to SVG and PDF beside it, named
// like it) and reports, for each probe point given in drawing units, the
// darkest pixel within two pixels of it:
//   render_dxf_probe IN.dxf OUT.png WIDTH HEIGHT [X,Y ...]
// prints one line "X,Y R G B" per probe. Used by the ezdxf-based check.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <type_traits>
#include <variant>

#include "standalone/db/dxf_reader.h"
#include "standalone/render/render.h"
#include "tests/render/picture.h"

namespace {
// A numeric header value whatever integer or real type the drawing keeps it in.
double numberOf(const host::ResBuf& rb) {
  return std::visit(
      [](const auto& v) -> double {
        if constexpr (std::is_arithmetic_v<std::decay_t<decltype(v)>>)
          return static_cast<double>(v);
        else
          return 0;
      },
      rb.value);
}
}  // namespace

int main(int argc, char** argv) {
  if (argc < 5) {
    std::fprintf(stderr, "usage: %s IN.dxf OUT.png WIDTH HEIGHT [X,Y ...]\n", argv[0]);
    return 2;
  }
  try {
    standalone::DrawingDatabase db = standalone::loadDxf(argv[1]);
    standalone::RenderOptions o;
    o.widthPx = std::atoi(argv[3]);
    o.heightPx = std::atoi(argv[4]);
    if (auto pdmode = db.headerVariable("PDMODE"); pdmode && !pdmode->empty())
      o.pointMode = static_cast<int>(numberOf((*pdmode)[0]));
    if (auto pdsize = db.headerVariable("PDSIZE"); pdsize && !pdsize->empty()) o.pointSize = numberOf((*pdsize)[0]);
    standalone::renderDrawingToPng(db, argv[2], o);
    std::filesystem::path png = argv[2];
    standalone::renderDrawingToSvg(db, std::filesystem::path(png).replace_extension(".svg"), o);
    standalone::renderDrawingToPdf(db, std::filesystem::path(png).replace_extension(".pdf"), o);
    standalone::ViewTransform view = standalone::planView(db, o);
    render_test::Picture pic = render_test::loadPng(argv[2]);
    for (int i = 5; i < argc; ++i) {
      std::string probe = argv[i];
      auto comma = probe.find(',');
      double x = std::stod(probe.substr(0, comma)), y = std::stod(probe.substr(comma + 1));
      ge::Point2d px = view.toPage({x, y});
      render_test::Pixel p = pic.darkestNear(static_cast<int>(px.x), static_cast<int>(px.y), 2);
      std::printf("%s %d %d %d\n", probe.c_str(), p.r, p.g, p.b);
    }
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s\n", e.what());
    return 1;
  }
  standalone::releaseFontCaches();
  return 0;
}
