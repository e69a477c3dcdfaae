#include "geos_oracle.h"

#include <geos_c.h>

#include <cmath>
#include <stdexcept>

namespace contours_test {

using standalone::kernel::BulgePiece;
using standalone::kernel::Vec2;

namespace {

// The points along a bulged piece, a included, b left out.
std::vector<Vec2> flatten(const BulgePiece& p, double chordAngle) {
  if (p.bulge == 0) return {p.a};
  double included = 4 * std::atan(p.bulge);
  Vec2 d = p.b - p.a;
  double chord = d.length();
  double offset = chord * 0.5 * (1 - p.bulge * p.bulge) / (2 * p.bulge);
  Vec2 c = (p.a + p.b) * 0.5 + Vec2{-d.y / chord, d.x / chord} * offset;
  double r = (p.a - c).length(), start = std::atan2(p.a.y - c.y, p.a.x - c.x);
  int n = std::max(2, static_cast<int>(std::ceil(std::abs(included) / chordAngle)));
  std::vector<Vec2> out;
  for (int k = 0; k < n; ++k) {
    double t = start + included * k / n;
    out.push_back(k == 0 ? p.a : c + Vec2{std::cos(t), std::sin(t)} * r);
  }
  return out;
}

}  // namespace

GeosFaces::GeosFaces(const std::vector<BulgePiece>& pieces, double chordAngle) {
  GEOSContextHandle_t h = GEOS_init_r();
  context_ = h;
  std::vector<GEOSGeometry*> lines;
  for (const BulgePiece& p : pieces) {
    std::vector<Vec2> pts = flatten(p, chordAngle);
    pts.push_back(p.b);
    GEOSCoordSequence* seq = GEOSCoordSeq_create_r(h, static_cast<unsigned>(pts.size()), 2);
    // Ends snapped to a fine grid, so that ends computed apart (an arc's
    // end, a line's end) meet as GEOS's exact noding needs.
    auto snap = [](double v) { return std::round(v * 1e9) / 1e9; };
    for (unsigned i = 0; i < pts.size(); ++i) {
      bool end = i == 0 || i + 1 == pts.size();
      GEOSCoordSeq_setXY_r(h, seq, i, end ? snap(pts[i].x) : pts[i].x, end ? snap(pts[i].y) : pts[i].y);
    }
    lines.push_back(GEOSGeom_createLineString_r(h, seq));
  }
  GEOSGeometry* all =
      GEOSGeom_createCollection_r(h, GEOS_MULTILINESTRING, lines.data(), static_cast<unsigned>(lines.size()));
  GEOSGeometry* noded = GEOSUnaryUnion_r(h, all);
  GEOSGeom_destroy_r(h, all);
  if (!noded) throw std::runtime_error("GEOS could not node the pieces");
  const GEOSGeometry* input[] = {noded};
  GEOSGeometry* polygons = GEOSPolygonize_r(h, input, 1);
  GEOSGeom_destroy_r(h, noded);
  if (!polygons) throw std::runtime_error("GEOS could not polygonize");
  int n = GEOSGetNumGeometries_r(h, polygons);
  for (int i = 0; i < n; ++i) {
    GEOSGeometry* face = GEOSGeom_clone_r(h, GEOSGetGeometryN_r(h, polygons, i));
    double area = 0;
    GEOSArea_r(h, face, &area);
    faces_.push_back(face);
    areas_.push_back(area);
  }
  GEOSGeom_destroy_r(h, polygons);
}

GeosFaces::~GeosFaces() {
  auto h = static_cast<GEOSContextHandle_t>(context_);
  for (void* f : faces_) GEOSGeom_destroy_r(h, static_cast<GEOSGeometry*>(f));
  GEOS_finish_r(h);
}

double GeosFaces::areaAt(Vec2 p) const {
  auto h = static_cast<GEOSContextHandle_t>(context_);
  GEOSGeometry* point = GEOSGeom_createPointFromXY_r(h, p.x, p.y);
  double found = -1;
  for (std::size_t i = 0; i < faces_.size() && found < 0; ++i)
    if (GEOSContains_r(h, static_cast<GEOSGeometry*>(faces_[i]), point) == 1) found = areas_[i];
  GEOSGeom_destroy_r(h, point);
  return found;
}

}  // namespace contours_test
