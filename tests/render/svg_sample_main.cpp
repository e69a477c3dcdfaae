// Writes a small drawing as SVG and PDF for the XML check of the SVG output.
#include <cstdio>
#include <numbers>

#include "standalone/render/render.h"
#include "tests/render/fake_drawing.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s OUT.svg OUT.pdf\n", argv[0]);
    return 2;
  }
  render_test::FakeDrawing d;
  d.add(host::Line{{0, 0, 0}, {10, 5, 0}});
  d.add(host::Arc{{0, 0, 0}, 3, 0, std::numbers::pi});
  host::Text t;
  t.text = "Corvane 45%%d";
  t.position = {0, 6, 0};
  d.add(t);
  standalone::RenderOptions o;
  o.widthPx = 640;
  o.heightPx = 400;
  int status = 0;
  try {
    standalone::renderDrawingToSvg(d, argv[1], o);
    standalone::renderDrawingToPdf(d, argv[2], o);
  } catch (const standalone::RenderError& e) {
    std::fprintf(stderr, "%s\n", e.what());
    status = 1;
  }
  standalone::releaseFontCaches();
  return status;
}
