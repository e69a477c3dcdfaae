#include "bench/db/drawings.h"

#include <cstdint>

#include "standalone/db/database.h"
#include "standalone/db/dxf_writer.h"

namespace bench {

namespace {

// Small deterministic generator so every run measures the same file.
class Random {
 public:
  double next(double lo, double hi) {
    state_ = state_ * 6364136223846793005ull + 1442695040888963407ull;
    return lo + (hi - lo) * static_cast<double>(state_ >> 11) / 9007199254740992.0;
  }

 private:
  std::uint64_t state_ = 0x2545F4914F6CDD1Dull;
};

host::LwPolyline bulgedPolyline(Random& r, int vertices) {
  host::LwPolyline p;
  double x = r.next(0, 10000), y = r.next(0, 10000);
  for (int i = 0; i < vertices; ++i) {
    x += r.next(-10, 10);
    y += r.next(-10, 10);
    p.vertices.push_back({x, y, i % 3 == 0 ? r.next(-1, 1) : 0.0, 0, 0});
  }
  p.closed = vertices % 2 == 0;
  return p;
}

host::EntityData mixedEntity(Random& r, int i) {
  ge::Point3d p{r.next(0, 10000), r.next(0, 10000), 0};
  switch (i % 10) {
    case 0: case 1: case 2:
      return bulgedPolyline(r, 20 + static_cast<int>(r.next(0, 30)));
    case 3: case 4:
      return host::Line{p, {p.x + r.next(-50, 50), p.y + r.next(-50, 50), 0}};
    case 5:
      return host::Arc{p, r.next(1, 100), r.next(0, 3), r.next(3, 6)};
    case 6:
      return host::Circle{p, r.next(1, 100)};
    case 7: {
      host::Spline s;
      s.flags = 8 | 1024;
      s.fitTolerance = 0;
      for (int k = 0; k < 6; ++k) s.fitPoints.push_back({p.x + k * 10, p.y + r.next(-20, 20), 0});
      return s;
    }
    default: {
      host::Text t;
      t.position = p;
      t.alignmentPoint = p;
      t.height = r.next(1, 5);
      t.text = "Label " + std::to_string(i);
      return t;
    }
  }
}

}  // namespace

void makeMixedDrawing(const std::filesystem::path& path) {
  if (std::filesystem::exists(path)) return;
  auto db = standalone::DrawingDatabase::createEmpty("AC1024");
  Random r;
  for (int i = 0; i < 100'000; ++i) {
    host::Entity e;
    e.props.layer = "L" + std::to_string(i % 8);
    e.data = mixedEntity(r, i);
    db.append(e);
  }
  standalone::saveDxf(db, path);
}

void makeBigPolyline(const std::filesystem::path& path) {
  if (std::filesystem::exists(path)) return;
  auto db = standalone::DrawingDatabase::createEmpty("AC1024");
  Random r;
  host::Entity e;
  e.data = bulgedPolyline(r, 1'000'000);
  db.append(e);
  standalone::saveDxf(db, path);
}

}  // namespace bench
