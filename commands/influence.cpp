#include "commands/influence.h"

#include <cmath>
#include <numbers>

#include "frame/sysvars.h"
#include "geom/curve_builders.h"
#include "geom/sampling.h"

namespace commands {

namespace {

using host::ErrorStatus;

// Bending samples this many points per SURFTAB1 step.
constexpr int kSamplesPerSurfaceTab = 6;
// A sample count below this is replaced by kFallbackSamples.
constexpr int kFewestSamples = 4;
constexpr int kFallbackSamples = 16;

// The fading weight of a point at r from the influence curve: ((d - r) / d)^1.5 * s.
double weightAt(double r, const InfluenceParams& params) {
  return std::pow((params.distance - r) / params.distance, 1.5) * params.strength;
}

// Geometric extents of any entity, block references through their block's contents.
std::optional<ge::Extents3d> extentsOf(const host::Host& host, const host::EntityData& data) {
  ge::Extents3d ext;
  ErrorStatus es = ErrorStatus::eOk;
  if (const auto* ref = std::get_if<host::BlockReference>(&data))
    es = host.curves.getBlockReferenceExtents(*ref, host::blockContentsOf(host.drawing), ext);
  else
    es = host.curves.getGeomExtents(data, ext);
  if (es != ErrorStatus::eOk) return std::nullopt;
  return ext;
}

ge::Point3d centreOf(const ge::Extents3d& ext) {
  return {(ext.min.x + ext.max.x) / 2, (ext.min.y + ext.max.y) / 2, (ext.min.z + ext.max.z) / 2};
}

// The sample points of a curve to bend; all at the origin when the curve
// cannot be sampled (shorter than 0.0001), as many as asked.
ge::PointList samplesOf(const host::Host& host, const host::EntityData& curve) {
  int tabs = 0;
  if (frame::getSysVar(host, "SURFTAB1", tabs) != frame::kSysVarOk) tabs = 0;
  int count = tabs * kSamplesPerSurfaceTab;
  if (count < kFewestSamples) count = kFallbackSamples;
  ge::PointList points;
  if (!geom::sampleCurveByLength(host.curves, &curve, count, points)) points.assign(count, ge::Point3d{});
  return points;
}

bool transform(const host::Host& host, host::Entity& e, const ge::Matrix3d& m) {
  return host.curves.transformBy(e.data, m) == ErrorStatus::eOk;
}

}  // namespace

double pushedX(double x, double crossingX, double r, const InfluenceParams& params) {
  double shift = 0.5 * params.distance * weightAt(r, params);
  return crossingX > x ? x - shift : x + shift;
}

std::optional<ge::Point3d> horizontalCrossing(const host::CurveServices& curves, const host::EntityData& influence,
                                              const ge::Point3d& p, double d) {
  host::Line probe{{p.x - d, p.y, p.z}, {p.x + d, p.y, p.z}};
  std::vector<ge::Point3d> hits;
  if (curves.intersectWith(influence, probe, host::Intersect::kOnBothOperands, hits) != ErrorStatus::eOk ||
      hits.empty())
    return std::nullopt;
  return hits.front();
}

namespace {

// The samples of the affected curve, each pushed by the influence curve.
ge::PointList bentPoints(const host::Host& host, const host::EntityData& influence, const host::EntityData& affected,
                         const InfluenceParams& params) {
  ge::PointList points = samplesOf(host, affected);
  for (ge::Point3d& p : points) {
    std::optional<ge::Point3d> q = horizontalCrossing(host.curves, influence, p, params.distance);
    if (!q) continue;
    double r = p.distanceTo(*q);
    if (r <= params.distance) p.x = pushedX(p.x, q->x, r, params);
  }
  return points;
}

// The rigid-body step on the entity's data in place; false when it stayed as it was.
bool moveRigidlyInPlace(const host::Host& host, const host::EntityData& influence, host::Entity& affected,
                        const InfluenceParams& params, const RigidFlags& flags) {
  std::optional<ge::Extents3d> ext = extentsOf(host, affected.data);
  if (!ext) return false;
  const ge::Point3d c = centreOf(*ext);
  ge::Point3d k;
  if (host.curves.getClosestPointTo(influence, c, k) != ErrorStatus::eOk) return false;
  std::optional<ge::Point3d> q = horizontalCrossing(host.curves, influence, c, params.distance);
  const double d = params.distance;
  bool changed = false;
  // The scale is not guarded by the distance test: far objects are scaled by
  // the formula too. Beyond 2d the sine turns negative and the host refuses
  // the transform, leaving the object's size.
  if (flags.scale) {
    double factor = std::sqrt(std::sin(c.distanceTo(k) * (std::numbers::pi / 2) / d));
    changed |= transform(host, affected, ge::Matrix3d::scaling(factor, c));
  }
  if (q) {
    double r = c.distanceTo(*q);
    if (r <= d) {
      if (flags.move) {
        double dx = pushedX(c.x, q->x, r, params) - c.x;
        changed |= transform(host, affected, ge::Matrix3d::translation({dx, 0, 0}));
      }
      if (flags.rotate) {
        double angle = params.strength * (std::numbers::pi / 2) * (d - r) / d;
        changed |= transform(host, affected, ge::Matrix3d::rotation(angle, ge::kZAxis, c));
      }
    }
  }
  return changed;
}

}  // namespace

bool bendCurve(host::Host& host, const host::EntityData& influence, const host::Entity& affected,
               const InfluenceParams& params) {
  ge::PointList points = bentPoints(host, influence, affected.data, params);
  bool closed = host.curves.isClosed(affected.data);
  if (!geom::makeCurveByPoints(host, nullptr, points, affected.props.color.index, closed, {}, {})) return false;
  return host.drawing.erase(affected.id) == ErrorStatus::eOk;
}

bool moveRigidly(host::Host& host, const host::EntityData& influence, host::Entity& affected,
                 const InfluenceParams& params, const RigidFlags& flags) {
  if (!moveRigidlyInPlace(host, influence, affected, params, flags)) return false;
  return host.drawing.write(affected) == ErrorStatus::eOk;
}

bool applyInfluence(host::Host& host, const host::EntityData& influence, host::Entity& affected,
                    const InfluenceParams& params, const RigidFlags& flags, bool rigid) {
  if (!rigid && host::isCurve(affected.data)) return bendCurve(host, influence, affected, params);
  return moveRigidly(host, influence, affected, params, flags);
}

std::optional<host::EntityData> influencedShape(const host::Host& host, const host::EntityData& influence,
                                                const host::Entity& affected, const InfluenceParams& params,
                                                const RigidFlags& flags, bool rigid) {
  if (!rigid && host::isCurve(affected.data))
    return geom::curveShapeByPoints(host.curves, bentPoints(host, influence, affected.data, params),
                                    host.curves.isClosed(affected.data));
  host::Entity moved = affected;
  if (!moveRigidlyInPlace(host, influence, moved, params, flags)) return std::nullopt;
  return std::move(moved.data);
}

namespace {

// The curve's upper end: its start when that lies higher than its end.
std::optional<ge::Point3d> upperEnd(const host::CurveServices& curves, const host::EntityData& curve) {
  ge::Point3d s, e;
  if (curves.getStartPoint(curve, s) != ErrorStatus::eOk || curves.getEndPoint(curve, e) != ErrorStatus::eOk)
    return std::nullopt;
  return s.y > e.y ? s : e;
}

// How far beyond the curve's own extents the horizontal probe reaches.
constexpr double kProbeMargin = 1000;
// Fading off: the objects' extents are widened by this on both sides so that
// the fade over that range is negligible.
constexpr double kNoFadeWidening = 1e9;

// The curve's point at the height of m: its upper end when m lies above it,
// else the first crossing of a long horizontal at m's height (the upper end
// when there is none).
ge::Point3d pointAtHeight(const host::Host& host, const host::EntityData& curve, const ge::Extents3d& curveExt,
                          const ge::Point3d& top, const ge::Point3d& m) {
  if (m.y > top.y) return top;
  host::Line probe{{curveExt.min.x - kProbeMargin, m.y, top.z}, {curveExt.max.x + kProbeMargin, m.y, top.z}};
  std::vector<ge::Point3d> hits;
  if (host.curves.intersectWith(curve, probe, host::Intersect::kOnBothOperands, hits) != ErrorStatus::eOk ||
      hits.empty())
    return top;
  return hits.front();
}

}  // namespace

int shiftAlongVerticalCurve(host::Host& host, const host::Entity& curve, const std::vector<host::ObjectId>& ids,
                            bool fading, bool admitCurves) {
  std::optional<ge::Point3d> top = upperEnd(host.curves, curve.data);
  std::optional<ge::Extents3d> curveExt = extentsOf(host, curve.data);
  if (!top || !curveExt) return 0;
  ge::Extents3d all;
  for (host::ObjectId id : ids) {
    if (id == curve.id) continue;
    if (std::optional<host::Entity> e = host.drawing.read(id))
      if (std::optional<ge::Extents3d> ext = extentsOf(host, e->data)) all.add(*ext);
  }
  if (!all.isValid()) return 0;
  if (!fading) {
    all.add(ge::Point3d{all.min.x - kNoFadeWidening, 0, 0});
    all.add(ge::Point3d{all.max.x + kNoFadeWidening, 0, 0});
  }
  int moved = 0;
  for (host::ObjectId id : ids) {
    if (id == curve.id) continue;
    std::optional<host::Entity> e = host.drawing.read(id);
    if (!e || (!admitCurves && host::isCurve(e->data))) continue;
    std::optional<ge::Extents3d> ext = extentsOf(host, e->data);
    if (!ext) continue;
    ge::Point3d m = centreOf(*ext);
    ge::Point3d p = pointAtHeight(host, curve.data, *curveExt, *top, m);
    double r = m.distanceTo(p);
    double range = p.x > m.x ? std::abs(p.x - all.min.x) : std::abs(p.x - all.max.x);
    if (r > range) continue;
    double dx = (range - r) / range * (p.x - top->x);
    if (!transform(host, *e, ge::Matrix3d::translation({dx, 0, 0}))) continue;
    if (host.drawing.write(*e) == ErrorStatus::eOk) ++moved;
  }
  return moved;
}

}  // namespace commands
