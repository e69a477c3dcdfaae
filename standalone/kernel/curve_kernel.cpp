// Curve queries of the kernel: parameters, points, distances, closest
// points, derivatives, area and extents.
#include "standalone/kernel/curve_kernel.h"

#include <cmath>

#include "standalone/kernel/insert_extents.h"
#include "standalone/kernel/path_query.h"
#include "standalone/kernel/piece_eval.h"
#include "standalone/kernel/text_extents.h"
#include "standalone/kernel/tolerance.h"

namespace standalone {

using host::ErrorStatus;
using namespace kernel;

// Curves with fewer pieces than this are cheaper to rebuild than to compare.
constexpr size_t kCachedPieces = 4096;

struct CurveKernel::PathCache {
  EntityData key;
  std::shared_ptr<const Path> path;
};

CurveKernel::CurveKernel() : cache_(std::make_unique<PathCache>()) {}
CurveKernel::~CurveKernel() = default;

std::shared_ptr<const Path> CurveKernel::pathFor(const EntityData& c) const {
  // Comparing whole records keeps the cache exact: a changed entity never hits.
  if (cache_->path && cache_->key.index() == c.index() && cache_->key == c) return cache_->path;
  auto path = pathOf(c);
  if (!path) return nullptr;
  auto shared = std::make_shared<const Path>(std::move(*path));
  if (shared->pieces.size() >= kCachedPieces) {
    cache_->key = c;
    cache_->path = shared;
  }
  return shared;
}

namespace {

// True when p lies on the path within the path's point tolerance.
std::optional<ClosestPoint> onPath(const Path& path, const ge::Point3d& p) {
  ClosestPoint c = closestPoint(path, p);
  ge::Extents3d e = pathExtents(path);
  e.add(p);
  if (c.distance > onCurveTolerance(geometryScale(e))) return std::nullopt;
  return c;
}

// Extents of a hatch from its boundary paths, each edge taken as the curve it is.
ErrorStatus hatchExtents(const host::Hatch& h, ge::Extents3d& ext) {
  ext = {};
  for (const Path& path : hatchBoundary(h)) ext.add(pathExtents(path));
  return ext.isValid() ? ErrorStatus::eOk : ErrorStatus::eDegenerateGeometry;
}

}  // namespace

ErrorStatus CurveKernel::getStartParam(const EntityData& c, double& param) const {
  auto path = pathFor(c);
  if (!path) return ErrorStatus::eNotApplicable;
  param = path->startParam();
  return ErrorStatus::eOk;
}

ErrorStatus CurveKernel::getEndParam(const EntityData& c, double& param) const {
  auto path = pathFor(c);
  if (!path) return ErrorStatus::eNotApplicable;
  param = path->endParam();
  return ErrorStatus::eOk;
}

ErrorStatus CurveKernel::getStartPoint(const EntityData& c, ge::Point3d& p) const {
  auto path = pathFor(c);
  if (!path) return ErrorStatus::eNotApplicable;
  p = pointAtParam(*path, path->startParam());
  return ErrorStatus::eOk;
}

ErrorStatus CurveKernel::getEndPoint(const EntityData& c, ge::Point3d& p) const {
  auto path = pathFor(c);
  if (!path) return ErrorStatus::eNotApplicable;
  p = pointAtParam(*path, path->endParam());
  return ErrorStatus::eOk;
}

bool CurveKernel::isClosed(const EntityData& c) const {
  auto path = pathFor(c);
  return path && path->closed;
}

ErrorStatus CurveKernel::getPointAtParam(const EntityData& c, double param, ge::Point3d& p) const {
  auto path = pathFor(c);
  if (!path) return ErrorStatus::eNotApplicable;
  if (!paramInRange(*path, param)) return ErrorStatus::eInvalidInput;
  p = pointAtParam(*path, param);
  return ErrorStatus::eOk;
}

ErrorStatus CurveKernel::getParamAtPoint(const EntityData& c, const ge::Point3d& p, double& param) const {
  auto path = pathFor(c);
  if (!path) return ErrorStatus::eNotApplicable;
  auto on = onPath(*path, p);
  if (!on) return ErrorStatus::ePointNotOnEntity;
  param = on->param;
  return ErrorStatus::eOk;
}

ErrorStatus CurveKernel::getDistAtParam(const EntityData& c, double param, double& dist) const {
  auto path = pathFor(c);
  if (!path) return ErrorStatus::eNotApplicable;
  if (!paramInRange(*path, param)) return ErrorStatus::eInvalidInput;
  dist = distAtParam(*path, param);
  return ErrorStatus::eOk;
}

ErrorStatus CurveKernel::getParamAtDist(const EntityData& c, double dist, double& param) const {
  auto path = pathFor(c);
  if (!path) return ErrorStatus::eNotApplicable;
  auto u = paramAtDist(*path, dist);
  if (!u) return ErrorStatus::eInvalidInput;
  param = *u;
  return ErrorStatus::eOk;
}

ErrorStatus CurveKernel::getPointAtDist(const EntityData& c, double dist, ge::Point3d& p) const {
  auto path = pathFor(c);
  if (!path) return ErrorStatus::eNotApplicable;
  auto u = paramAtDist(*path, dist);
  if (!u) return ErrorStatus::eInvalidInput;
  p = pointAtParam(*path, *u);
  return ErrorStatus::eOk;
}

ErrorStatus CurveKernel::getPointsAtDists(const EntityData& c, const std::vector<double>& dists,
                                          std::vector<ge::Point3d>& points) const {
  auto path = pathFor(c);
  if (!path) return ErrorStatus::eNotApplicable;
  double total = pathLength(*path);
  double slack = 1e-12 * std::max(total, 1e-300);
  for (size_t i = 0; i < dists.size(); ++i)
    if (dists[i] < -slack || dists[i] > total + slack || (i > 0 && dists[i] < dists[i - 1]))
      return ErrorStatus::eInvalidInput;
  points = pointsAtDists(*path, dists);
  return ErrorStatus::eOk;
}

ErrorStatus CurveKernel::getDistAtPoint(const EntityData& c, const ge::Point3d& p, double& dist) const {
  auto path = pathFor(c);
  if (!path) return ErrorStatus::eNotApplicable;
  auto on = onPath(*path, p);
  if (!on) return ErrorStatus::ePointNotOnEntity;
  dist = distAtParam(*path, on->param);
  return ErrorStatus::eOk;
}

ErrorStatus CurveKernel::getClosestPointTo(const EntityData& c, const ge::Point3d& p, ge::Point3d& onCurve) const {
  auto path = pathFor(c);
  if (!path) return ErrorStatus::eNotApplicable;
  onCurve = closestPoint(*path, p).point;
  return ErrorStatus::eOk;
}

ErrorStatus CurveKernel::getFirstDeriv(const EntityData& c, double param, ge::Vector3d& d) const {
  auto path = pathFor(c);
  if (!path) return ErrorStatus::eNotApplicable;
  if (!paramInRange(*path, param)) return ErrorStatus::eInvalidInput;
  d = derivAtParam(*path, param);
  return ErrorStatus::eOk;
}

ErrorStatus CurveKernel::getSecondDeriv(const EntityData& c, double param, ge::Vector3d& d) const {
  auto path = pathFor(c);
  if (!path) return ErrorStatus::eNotApplicable;
  if (!paramInRange(*path, param)) return ErrorStatus::eInvalidInput;
  d = pieceSecondDeriv(path->pieces[pieceIndexAt(*path, param)], param);
  return ErrorStatus::eOk;
}

ErrorStatus CurveKernel::getArea(const EntityData& c, double& area) const {
  auto path = pathFor(c);
  if (!path) return ErrorStatus::eNotApplicable;
  auto normal = pathPlaneNormal(*path);
  // A curve that leaves its plane, or a straight one, encloses nothing.
  area = normal ? std::abs(signedArea(*path, *normal)) : 0.0;
  return ErrorStatus::eOk;
}

ErrorStatus CurveKernel::getGeomExtents(const EntityData& e, ge::Extents3d& ext) const {
  if (auto path = pathFor(e)) {
    ext = pathExtents(*path);
    return ErrorStatus::eOk;
  }
  if (auto* pt = std::get_if<host::PointEntity>(&e)) {
    ext = {};
    ext.add(pt->position);
    return ErrorStatus::eOk;
  }
  if (auto* im = std::get_if<host::Image>(&e)) {
    ext = {};
    ge::Vector3d u = im->uVector * im->widthPixels, v = im->vVector * im->heightPixels;
    for (const auto& c : {im->insertion, im->insertion + u, im->insertion + v, im->insertion + u + v}) ext.add(c);
    return ErrorStatus::eOk;
  }
  if (auto* h = std::get_if<host::Hatch>(&e)) return hatchExtents(*h, ext);
  std::optional<TextBox> box;
  if (auto* t = std::get_if<host::Text>(&e)) box = textBox(*t);
  else if (auto* mt = std::get_if<host::MText>(&e)) box = mtextBox(*mt);
  else if (auto* ref = std::get_if<host::BlockReference>(&e); ref && blocks_)
    return getBlockReferenceExtents(*ref, blocks_, ext);
  else return ErrorStatus::eNotApplicable;  // a block reference with no blocks to look in
  if (!box) return ErrorStatus::eDegenerateGeometry;  // empty text or no usable height
  ext = {};
  for (const ge::Point3d& c : *box) ext.add(c);
  return ErrorStatus::eOk;
}

}  // namespace standalone
