// Command-line probe of the kernel for the Python oracle checks: reads one
// request per line on stdin and prints the answer, full precision.
//   isect N x y ... M x y ...       points where two open straight polylines meet
//   offset D CLOSED N x y b ...     offset polylines, one "pl CLOSED N" line and N "x y b" lines each
//   measure CLOSED N x y b ...      length and area
#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>

#include "standalone/kernel/curve_kernel.h"

namespace {

host::LwPolyline readPolyline(std::istream& in, bool closed, bool bulges) {
  host::LwPolyline pl;
  pl.closed = closed;
  int n = 0;
  in >> n;
  for (int i = 0; i < n; ++i) {
    host::LwVertex v;
    in >> v.x >> v.y;
    if (bulges) in >> v.bulge;
    pl.vertices.push_back(v);
  }
  return pl;
}

}  // namespace

int main() {
  standalone::CurveKernel kernel;
  std::string line;
  while (std::getline(std::cin, line)) {
    std::istringstream in(line);
    std::string op;
    in >> op;
    if (op == "isect") {
      auto a = readPolyline(in, false, false), b = readPolyline(in, false, false);
      std::vector<ge::Point3d> pts;
      kernel.intersectWith(a, b, host::Intersect::kOnBothOperands, pts);
      std::printf("%zu", pts.size());
      for (const auto& p : pts) std::printf(" %.17g %.17g", p.x, p.y);
      std::printf("\n");
    } else if (op == "offset") {
      double d;
      int closed;
      in >> d >> closed;
      auto pl = readPolyline(in, closed != 0, true);
      std::vector<host::EntityData> out;
      kernel.getOffsetCurves(pl, d, out);
      std::printf("%zu\n", out.size());
      for (const auto& e : out) {
        const auto& r = std::get<host::LwPolyline>(e);
        std::printf("pl %d %zu\n", r.closed ? 1 : 0, r.vertices.size());
        for (const auto& v : r.vertices) std::printf("%.17g %.17g %.17g\n", v.x, v.y, v.bulge);
      }
    } else if (op == "measure") {
      int closed;
      in >> closed;
      auto pl = readPolyline(in, closed != 0, true);
      double end = 0, len = 0, area = 0;
      kernel.getEndParam(pl, end);
      kernel.getDistAtParam(pl, end, len);
      kernel.getArea(pl, area);
      std::printf("%.17g %.17g\n", len, area);
    }
    std::fflush(stdout);
  }
  return 0;
}
