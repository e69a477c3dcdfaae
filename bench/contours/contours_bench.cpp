// Contour benchmarks: the faces of a 200 x 200 grid of lines by our planar
// arrangement, and beside it, on the same data in the same run, shapely/GEOS
// noding plus polygonize (grid_faces_shapely.py).
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/support/timing.h"
#include "standalone/kernel/arrangement.h"

int main() {
  constexpr int kLines = 200;
  std::vector<standalone::kernel::BulgePiece> grid;
  double span = kLines - 1;
  for (int i = 0; i < kLines; ++i) {
    grid.push_back({{0, double(i)}, {span, double(i)}, 0});
    grid.push_back({{double(i), 0}, {double(i), span}, 0});
  }
  std::size_t faces = 0;
  double t = benchsupport::bestSeconds(3, [&] { faces = standalone::kernel::Arrangement(grid).faceCount(); });
  std::printf("our arrangement, %d x %d grid: %zu faces in %.3f s\n", kLines, kLines, faces, t);
  std::fflush(stdout);
  std::string cmd = std::string(CORVANE_PYTHON) + " " + GRID_FACES_SHAPELY + " " + std::to_string(kLines);
  return std::system(cmd.c_str()) == 0 ? 0 : 1;
}
