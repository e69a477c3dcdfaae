// Builds curves through the builders into a fresh drawing database and saves
// it as DXF, for builders_ezdxf_check.py to read with an independent reader.
#include <cmath>
#include <cstdio>

#include "geom/curve_builders.h"
#include "geom/curve_kind.h"
#include "geom/sampling.h"
#include "standalone/db/database.h"
#include "standalone/db/dxf_writer.h"
#include "standalone/kernel/curve_kernel.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: builders_dxf_probe OUT.dxf\n");
    return 2;
  }
  auto db = standalone::DrawingDatabase::createEmpty("AC1032");
  standalone::CurveKernel kernel;
  geom::BuildContext ctx{db, kernel};
  ge::Vector3d none{};
  // 1. A fitted spline with free ends through a sine wave.
  ge::PointList wave;
  for (int i = 0; i <= 12; ++i) wave.push_back({i * 0.5, std::sin(i * 0.5), 0});
  geom::makeCurveByPoints(ctx, nullptr, wave, 1, false, none, none);
  // 2. A fitted spline with end tangents.
  geom::makeCurveByPoints(ctx, nullptr, {{0, 5, 0}, {2, 7, 0}, {4, 5, 0}, {6, 7, 0}}, 2, false, {0, 1, 0}, {1, 0, 0});
  // 3. The mirrored points: a line.
  geom::makeCurveByPoints(ctx, nullptr, {{0, 0, 0}, {1, 1, 0}, {1, -1, 0}}, 256, false, none, none);
  // 4. A polyline through 16 samples of a circle, with the flag set to polylines.
  geom::setCurveKindIsSpline(false);
  host::EntityData circle = host::Circle{{10, 0, 0}, 2};
  ge::PointList samples;
  geom::sampleCurveByLength(kernel, &circle, 3, samples);
  geom::makeCurveByPoints(ctx, nullptr, samples, 3, true, none, none);
  // 5. A 3D polyline: z steps of 0.00011.
  geom::buildPolyline(ctx, host::kNullId, {{0, -5, 0}, {1, -5, 0.00011}, {2, -4, 0.00022}}, false);
  standalone::saveDxf(db, argv[1]);
  return 0;
}
