// Renders the formula curves from their own generators at their defaults:
//   formula_previews pictures DIR [PIXELS]  one PNG per row, named by picture id
//   formula_previews sheet FILE [COLUMNS]   all rows on one review sheet
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include "formula/generators.h"
#include "formula/preview_pictures.h"
#include "standalone/render/render.h"

namespace {

bool isSpatial(const formula::CurveList& curves) {
  for (const auto& c : curves)
    for (const auto& p : c.points)
      if (p.z != 0) return true;
  return false;
}

// An isometric view, so space curves show their height: x to the lower right,
// y to the upper right, z up.
ge::Point3d isometric(const ge::Point3d& p) {
  constexpr double c = 0.8660254037844386, s = 0.5;
  return {(p.x - p.y) * c, p.z + (p.x + p.y) * s, 0};
}

// The row's curves at its defaults as the renderer draws them: closed curves
// closed, space curves in an isometric view.
std::vector<ge::PointList> curvesOf(int row) {
  formula::CurveList curves = formula::generateFormulaCurve(row, {ge::Point3d{}, formula::defaultParams(row), 6});
  const bool spatial = isSpatial(curves);
  std::vector<ge::PointList> lists;
  for (auto& curve : curves) {
    if (curve.closed && !curve.points.empty()) curve.points.push_back(curve.points.front());
    if (spatial)
      for (auto& p : curve.points) p = isometric(p);
    lists.push_back(std::move(curve.points));
  }
  return lists;
}

int writePictures(const std::filesystem::path& folder, int pixels) {
  std::filesystem::create_directories(folder);
  for (int row = 0; row < formula::kCurveCount; ++row) {
    int id = formula::englishCatalogue()[row].pictureId;
    standalone::renderPointListsToPng(curvesOf(row), folder / formula::previewPictureFileName(id), pixels, pixels);
  }
  std::printf("%d pictures written to %s\n", formula::kCurveCount, folder.c_str());
  return 0;
}

int writeSheet(const std::filesystem::path& file, int columns) {
  std::vector<standalone::SheetCell> cells;
  for (int row = 0; row < formula::kCurveCount; ++row)
    cells.push_back({formula::englishCatalogue()[row].name, curvesOf(row)});
  standalone::renderSheetToPng(cells, file, columns, 220);
  std::printf("sheet of %d curves written to %s\n", formula::kCurveCount, file.c_str());
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: %s pictures DIR [PIXELS] | sheet FILE [COLUMNS]\n", argv[0]);
    return 2;
  }
  std::string mode = argv[1];
  try {
    if (mode == "pictures") return writePictures(argv[2], argc > 3 ? std::atoi(argv[3]) : 160);
    if (mode == "sheet") return writeSheet(argv[2], argc > 3 ? std::atoi(argv[3]) : 8);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s: %s\n", argv[0], e.what());
    return 1;
  }
  std::fprintf(stderr, "%s: unknown mode \"%s\"\n", argv[0], mode.c_str());
  return 2;
}
