#pragma once
// The embedded host's curve services over entity records: every curve kind
// of host/entity.h with the host's parameter conventions and directions.
#include <memory>

#include "host/curves.h"

namespace standalone {

namespace kernel {
struct Path;
}

class CurveKernel final : public host::CurveServices {
 public:
  using ErrorStatus = host::ErrorStatus;
  using EntityData = host::EntityData;

  CurveKernel();
  ~CurveKernel() override;
  CurveKernel(const CurveKernel&) = delete;
  CurveKernel& operator=(const CurveKernel&) = delete;

  // Where block references find their blocks' contents, so that their
  // extents can be given like any entity's (the host's drawing sets it).
  void setBlockContents(host::BlockContentsLookup blocks) { blocks_ = std::move(blocks); }

  // Every service computes on the records it is given; block references read
  // their blocks through the lookup, which the drawing keeps unchanged while
  // a command computes.
  bool callableFromWorkerThreads() const override { return true; }
  ErrorStatus getStartParam(const EntityData& c, double& param) const override;
  ErrorStatus getEndParam(const EntityData& c, double& param) const override;
  ErrorStatus getStartPoint(const EntityData& c, ge::Point3d& p) const override;
  ErrorStatus getEndPoint(const EntityData& c, ge::Point3d& p) const override;
  bool isClosed(const EntityData& c) const override;
  ErrorStatus getPointAtParam(const EntityData& c, double param, ge::Point3d& p) const override;
  ErrorStatus getParamAtPoint(const EntityData& c, const ge::Point3d& p, double& param) const override;
  ErrorStatus getDistAtParam(const EntityData& c, double param, double& dist) const override;
  ErrorStatus getParamAtDist(const EntityData& c, double dist, double& param) const override;
  ErrorStatus getPointAtDist(const EntityData& c, double dist, ge::Point3d& p) const override;
  ErrorStatus getDistAtPoint(const EntityData& c, const ge::Point3d& p, double& dist) const override;
  ErrorStatus getClosestPointTo(const EntityData& c, const ge::Point3d& p, ge::Point3d& onCurve) const override;
  ErrorStatus getFirstDeriv(const EntityData& c, double param, ge::Vector3d& d) const override;
  ErrorStatus getSecondDeriv(const EntityData& c, double param, ge::Vector3d& d) const override;
  ErrorStatus getArea(const EntityData& c, double& area) const override;
  ErrorStatus getGeomExtents(const EntityData& e, ge::Extents3d& ext) const override;
  // Defined in insert_extents.cpp and insert_nearest.cpp.
  ErrorStatus getBlockReferenceExtents(const host::BlockReference& ref, const host::BlockContentsLookup& blocks,
                                       ge::Extents3d& ext) const override;
  ErrorStatus getBlockReferenceClosestPoint(const host::BlockReference& ref, const host::BlockContentsLookup& blocks,
                                            const ge::Point3d& p, ge::Point3d& nearest) const override;
  ErrorStatus getPointsAtDists(const EntityData& c, const std::vector<double>& dists,
                               std::vector<ge::Point3d>& points) const override;

  ErrorStatus transformBy(EntityData& e, const ge::Matrix3d& m) const override;
  ErrorStatus reverseCurve(EntityData& c) const override;
  ErrorStatus intersectWith(const EntityData& a, const EntityData& b, host::Intersect mode,
                            std::vector<ge::Point3d>& points) const override;
  ErrorStatus getOffsetCurves(const EntityData& c, double distance, std::vector<EntityData>& results) const override;
  ErrorStatus getOrthoProjectedCurve(const EntityData& c, const host::Plane& plane, EntityData& result) const override;
  ErrorStatus getProjectedCurve(const EntityData& c, const host::Plane& plane, const ge::Vector3d& dir,
                                EntityData& result) const override;
  ErrorStatus getSpline(const EntityData& c, host::Spline& result) const override;
  ErrorStatus splineToPolyline(const host::Spline& s, int precision, EntityData& result) const override;
  ErrorStatus convertLwTo2d(const host::LwPolyline& lw, host::Polyline2d& result) const override;
  ErrorStatus convert2dToLw(const host::Polyline2d& pl, host::LwPolyline& result) const override;
  ErrorStatus fitSpline(const std::vector<ge::Point3d>& fitPoints, const ge::Vector3d* startTangent,
                        const ge::Vector3d* endTangent, host::Spline& result) const override;
  ErrorStatus fitPolyline2d(host::Polyline2d& pl, int splineType, int splineSegs) const override;

 private:
  // The path of a curve; the last long one is kept, so a run of queries on
  // one large polyline (length, then points along it) builds it once.
  std::shared_ptr<const kernel::Path> pathFor(const EntityData& c) const;
  struct PathCache;
  std::unique_ptr<PathCache> cache_;
  host::BlockContentsLookup blocks_;
};

}  // namespace standalone
