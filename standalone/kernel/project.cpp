// Projection of curves onto a plane along a direction. The map is affine, so
// lines stay lines, conics become ellipses (circles and arcs again when the
// image is not squashed), polylines stay polylines (bulged ones seen at an
// angle become rational splines) and splines map through their control points.
#include <cmath>
#include <numbers>

#include "standalone/kernel/curve_kernel.h"
#include "standalone/kernel/ocs.h"
#include "standalone/kernel/nurbs_forms.h"
#include "standalone/kernel/path.h"

namespace standalone {

using host::ErrorStatus;
using namespace kernel;

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

// Image of c + cos t·u + sin t·v for t in [t0, t0 + sweep] under m, as a
// conic record: ellipse in general, circle or arc when the image is round.
std::optional<host::EntityData> projectConic(const ge::Matrix3d& m, const ge::Point3d& c, const ge::Vector3d& u,
                                             const ge::Vector3d& v, double t0, double sweep, bool full) {
  ge::Point3d center = m.apply(c);
  ge::Vector3d pu = m.apply(u), pv = m.apply(v);
  double size = std::max(pu.length(), pv.length());
  if (pu.cross(pv).length() <= 1e-12 * size * size) return std::nullopt;  // seen edge-on: a segment
  // Principal axes of the conjugate semi-diameters pu, pv: shift the parameter by s0.
  double s0 = 0.5 * std::atan2(2 * pu.dot(pv), pu.dot(pu) - pv.dot(pv));
  ge::Vector3d major = pu * std::cos(s0) + pv * std::sin(s0);
  ge::Vector3d minor = pu * -std::sin(s0) + pv * std::cos(s0);
  if (minor.length() > major.length()) {
    std::swap(major, minor);
    minor = -minor;
    s0 += std::numbers::pi / 2;
  }
  ge::Vector3d normal = major.cross(minor).normalized();
  double ratio = minor.length() / major.length();
  double start = t0 - s0;
  if (ratio > 1 - 1e-12) {
    // Round image: measure angles in the OCS of the new normal.
    Frame f = ocsFrame(normal);
    double shift = std::atan2(major.dot(f.y), major.dot(f.x));
    double r = major.length();
    if (full) return host::EntityData{host::Circle{center, r, 0, normal}};
    double a = std::fmod(start + shift, kTwoPi);
    if (a < 0) a += kTwoPi;
    return host::EntityData{host::Arc{center, r, a, std::fmod(a + sweep, kTwoPi), 0, normal}};
  }
  host::Ellipse e;
  e.center = center;
  e.majorAxis = major;
  e.normal = normal;
  e.ratio = ratio;
  double a = std::fmod(start, kTwoPi);
  if (a < 0) a += kTwoPi;
  e.startParam = full ? 0.0 : a;
  e.endParam = full ? kTwoPi : std::fmod(a + sweep, kTwoPi);
  return host::EntityData{e};
}

ErrorStatus projectPlanarPolyline(const host::EntityData& source, const std::vector<ge::Point3d>& worldPts,
                                  const std::vector<double>& bulges, const ge::Vector3d& sourceNormal, bool closed,
                                  const ge::Matrix3d& m, const host::Plane& plane, host::EntityData& result) {
  bool parallel = sourceNormal.normalized().cross(plane.normal.normalized()).length() < 1e-12;
  bool bulged = false;
  for (double b : bulges) bulged = bulged || b != 0;
  // Between parallel planes the projection only moves the curve, so arcs stay
  // arcs. Seen at an angle they turn elliptical: the result is the image of
  // the polyline's exact rational form, a spline.
  if (bulged && !parallel) {
    auto path = pathOf(source);
    auto n = path ? nurbsOfBulgedPath(*path) : std::nullopt;
    if (!n) return ErrorStatus::eInvalidInput;
    host::Spline s;
    s.degree = 2;
    s.knots = n->knots;
    s.weights = n->weights;
    for (const auto& p : n->controlPoints) s.controlPoints.push_back(m.apply(p));
    s.flags = 4 | 8 | (closed ? 1 : 0);
    s.normal = plane.normal.normalized();
    result = s;
    return ErrorStatus::eOk;
  }
  ge::Vector3d n = parallel ? sourceNormal.normalized() : plane.normal.normalized();
  Frame f = ocsFrame(n);
  host::LwPolyline pl;
  pl.normal = n;
  pl.closed = closed;
  for (size_t i = 0; i < worldPts.size(); ++i) {
    ge::Point3d o = worldToOcs(f, m.apply(worldPts[i]));
    if (i == 0) pl.elevation = o.z;
    pl.vertices.push_back({o.x, o.y, bulges[i]});
  }
  result = pl;
  return ErrorStatus::eOk;
}

}  // namespace

ErrorStatus CurveKernel::getOrthoProjectedCurve(const EntityData& c, const host::Plane& plane, EntityData& result) const {
  return getProjectedCurve(c, plane, plane.normal, result);
}

ErrorStatus CurveKernel::getProjectedCurve(const EntityData& c, const host::Plane& plane, const ge::Vector3d& dir,
                                           EntityData& result) const {
  using namespace host;
  if (plane.normal.length() == 0 || std::abs(dir.normalized().dot(plane.normal.normalized())) < 1e-12)
    return ErrorStatus::eInvalidInput;  // a direction within the plane projects nothing
  ge::Matrix3d m = ge::Matrix3d::projection(plane.origin, plane.normal.normalized(), dir);
  if (auto* l = std::get_if<Line>(&c)) {
    Line r{m.apply(l->start), m.apply(l->end), 0, plane.normal.normalized()};
    if (r.start.distanceTo(r.end) == 0) return ErrorStatus::eDegenerateGeometry;
    result = r;
    return ErrorStatus::eOk;
  }
  if (std::holds_alternative<Circle>(c) || std::holds_alternative<Arc>(c) || std::holds_alternative<Ellipse>(c)) {
    auto path = pathOf(c);
    const Piece& piece = path->pieces.front();
    std::optional<EntityData> r;
    if (auto* a = std::get_if<ArcPiece>(&piece.geometry))
      r = projectConic(m, a->center, a->x * a->radius, a->y * a->radius, a->start, a->sweep, path->closed);
    else {
      const auto& e = std::get<EllipsePiece>(piece.geometry);
      r = projectConic(m, e.center, e.major, e.minor, piece.p0, piece.p1 - piece.p0, path->closed);
    }
    if (!r) return ErrorStatus::eDegenerateGeometry;
    result = *r;
    return ErrorStatus::eOk;
  }
  if (auto* lw = std::get_if<LwPolyline>(&c)) {
    Frame f = ocsFrame(lw->normal);
    std::vector<ge::Point3d> pts;
    std::vector<double> bulges;
    for (const auto& v : lw->vertices) pts.push_back(ocsToWorld(f, v.x, v.y, lw->elevation)), bulges.push_back(v.bulge);
    return projectPlanarPolyline(c, pts, bulges, lw->normal, lw->closed, m, plane, result);
  }
  if (auto* p2 = std::get_if<Polyline2d>(&c)) {
    Frame f = ocsFrame(p2->normal);
    std::vector<ge::Point3d> pts;
    std::vector<double> bulges;
    for (const auto& v : p2->vertices)
      if (!(p2->splineFit && (v.flags & kVertexSplineFrame)))
        pts.push_back(ocsToWorld(f, v.position.x, v.position.y, p2->elevation)), bulges.push_back(v.bulge);
    return projectPlanarPolyline(c, pts, bulges, p2->normal, p2->closed, m, plane, result);
  }
  if (auto* p3 = std::get_if<Polyline3d>(&c)) {
    Polyline3d r = *p3;
    for (auto& v : r.vertices) v.position = m.apply(v.position);
    result = r;
    return ErrorStatus::eOk;
  }
  const Spline* s = std::get_if<Spline>(&c);
  if (auto* h = std::get_if<Helix>(&c)) s = &h->curve;
  if (s) {
    auto n = nurbsOf(*s);
    if (!n) return ErrorStatus::eInvalidInput;
    Spline r;
    r.degree = n->degree;
    r.knots = n->knots;
    r.weights = n->weights;
    for (const auto& p : n->controlPoints) r.controlPoints.push_back(m.apply(p));
    // The image of an interpolating spline is not the spline through the
    // images of its fit points, so the fit data is not kept.
    r.flags = (s->flags & (1 | 2 | 4)) | 8;
    r.normal = plane.normal.normalized();
    result = r;
    return ErrorStatus::eOk;
  }
  return ErrorStatus::eNotApplicable;
}

}  // namespace standalone
