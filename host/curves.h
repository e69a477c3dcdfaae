#pragma once
// Curve services of the host (AcDbCurve and friends) over entity records.
// Parameters follow the host's conventions: a line runs 0..length, a circle
// 0..2pi from its OCS X axis, an arc from its start to its end angle, an
// ellipse over its own parameters, polylines over vertex indices (end n-1
// open, n closed), splines over their knot range.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ge/extents.h"
#include "ge/matrix.h"
#include "ge/point.h"
#include "host/codes.h"
#include "host/entity.h"

namespace host {

// Extension modes of intersectWith (AcDb::Intersect).
enum class Intersect : int { kOnBothOperands = 0, kExtendThis = 1, kExtendArg = 2, kExtendBoth = 3 };

struct Plane {
  ge::Point3d origin;
  ge::Vector3d normal = ge::kZAxis;
};

// What a block holds, for the extents of its references: its base point and
// its entities in block coordinates.
struct BlockContents {
  ge::Point3d basePoint;
  std::vector<EntityData> entities;
};
// The contents of a block by name, shared so that a block met many times is
// not copied each time; null when the drawing has no such block.
using BlockContentsLookup = std::function<std::shared_ptr<const BlockContents>(const std::string& blockName)>;

class CurveServices {
 public:
  virtual ~CurveServices() = default;

  // True when the services are pure computations on the records they are
  // given, so that a worker thread may call them while the calling thread
  // goes on with other work. The original host's curves live in its
  // drawing and are used from its main thread only.
  virtual bool callableFromWorkerThreads() const { return false; }

  virtual ErrorStatus getStartParam(const EntityData& c, double& param) const = 0;
  virtual ErrorStatus getEndParam(const EntityData& c, double& param) const = 0;
  virtual ErrorStatus getStartPoint(const EntityData& c, ge::Point3d& p) const = 0;
  virtual ErrorStatus getEndPoint(const EntityData& c, ge::Point3d& p) const = 0;
  virtual bool isClosed(const EntityData& c) const = 0;
  virtual ErrorStatus getPointAtParam(const EntityData& c, double param, ge::Point3d& p) const = 0;
  virtual ErrorStatus getParamAtPoint(const EntityData& c, const ge::Point3d& p, double& param) const = 0;
  virtual ErrorStatus getDistAtParam(const EntityData& c, double param, double& dist) const = 0;
  virtual ErrorStatus getParamAtDist(const EntityData& c, double dist, double& param) const = 0;
  virtual ErrorStatus getPointAtDist(const EntityData& c, double dist, ge::Point3d& p) const = 0;
  virtual ErrorStatus getDistAtPoint(const EntityData& c, const ge::Point3d& p, double& dist) const = 0;
  // Closest point on the curve itself (no extension).
  virtual ErrorStatus getClosestPointTo(const EntityData& c, const ge::Point3d& p, ge::Point3d& onCurve) const = 0;
  virtual ErrorStatus getFirstDeriv(const EntityData& c, double param, ge::Vector3d& d) const = 0;
  // AcDbCurve::getSecondDeriv: the second derivative with respect to the parameter.
  virtual ErrorStatus getSecondDeriv(const EntityData& c, double param, ge::Vector3d& d) const {
    (void)c, (void)param, (void)d;
    return ErrorStatus::eNotImplementedYet;
  }
  // Area enclosed; an open curve is closed by a straight line from its end to its start.
  virtual ErrorStatus getArea(const EntityData& c, double& area) const = 0;
  // Geometric extents of any entity kind with geometry.
  virtual ErrorStatus getGeomExtents(const EntityData& e, ge::Extents3d& ext) const = 0;
  // Extents of a block reference from its block's entities as placed (scale,
  // rotation, normal, column/row array), nested references followed; the
  // caller supplies the block contents. A host whose entities know their
  // drawing may ignore blocks.
  virtual ErrorStatus getBlockReferenceExtents(const BlockReference& ref, const BlockContentsLookup& blocks,
                                               ge::Extents3d& ext) const {
    (void)ref, (void)blocks, (void)ext;
    return ErrorStatus::eNotImplementedYet;
  }
  // The point of a block reference's geometry nearest to p: its block's
  // curves and hatch boundaries as placed, points, the boxes of texts and
  // images, nested references followed; the caller supplies the block contents.
  virtual ErrorStatus getBlockReferenceClosestPoint(const BlockReference& ref, const BlockContentsLookup& blocks,
                                                    const ge::Point3d& p, ge::Point3d& nearest) const {
    (void)ref, (void)blocks, (void)p, (void)nearest;
    return ErrorStatus::eNotImplementedYet;
  }
  // Points at ascending distances along the curve (getPointAtDist for many
  // distances at once; a host may answer it in one walk along the curve).
  virtual ErrorStatus getPointsAtDists(const EntityData& c, const std::vector<double>& dists,
                                       std::vector<ge::Point3d>& points) const {
    points.clear();
    for (double d : dists) {
      ge::Point3d p;
      if (ErrorStatus es = getPointAtDist(c, d, p); es != ErrorStatus::eOk) return es;
      points.push_back(p);
    }
    return ErrorStatus::eOk;
  }

  // Arcs and circles stay arcs and circles under similarity transforms.
  virtual ErrorStatus transformBy(EntityData& e, const ge::Matrix3d& m) const = 0;
  virtual ErrorStatus reverseCurve(EntityData& c) const = 0;
  // All intersection points, appended to points.
  virtual ErrorStatus intersectWith(const EntityData& a, const EntityData& b, Intersect mode,
                                    std::vector<ge::Point3d>& points) const = 0;
  // Offsets at a signed distance; the results are new curves for the caller to append.
  virtual ErrorStatus getOffsetCurves(const EntityData& c, double distance,
                                      std::vector<EntityData>& results) const = 0;
  virtual ErrorStatus getOrthoProjectedCurve(const EntityData& c, const Plane& plane, EntityData& result) const = 0;
  virtual ErrorStatus getProjectedCurve(const EntityData& c, const Plane& plane, const ge::Vector3d& dir,
                                        EntityData& result) const = 0;
  // The curve's own spline (exact rational form for arcs, circles, ellipses);
  // polylines have none and return eNotApplicable.
  virtual ErrorStatus getSpline(const EntityData& c, Spline& result) const = 0;
  // AcDbSpline::toPolyline with the host's precision argument.
  virtual ErrorStatus splineToPolyline(const Spline& s, int precision, EntityData& result) const = 0;
  // AcDbPolyline::convertFrom / AcDb2dPolyline conversion. A made conversion
  // reports eObjectToBeDeleted: the caller replaces the old entity by the new one.
  virtual ErrorStatus convertLwTo2d(const LwPolyline& lw, Polyline2d& result) const = 0;
  virtual ErrorStatus convert2dToLw(const Polyline2d& pl, LwPolyline& result) const = 0;
  // AcDbPolyline::convertFrom as that call reports it: eOk when the 2D
  // polyline was converted (its identity passes to the lightweight one).
  virtual ErrorStatus convertFrom2d(const Polyline2d& pl, LwPolyline& result) const {
    ErrorStatus es = convert2dToLw(pl, result);
    return es == ErrorStatus::eObjectToBeDeleted ? ErrorStatus::eOk : es;
  }
  // A cubic spline through fit points with fit tolerance 0 and optional end tangents.
  virtual ErrorStatus fitSpline(const std::vector<ge::Point3d>& fitPoints, const ge::Vector3d* startTangent,
                                const ge::Vector3d* endTangent, Spline& result) const = 0;
  // Regenerates the generated vertices of a curve-fit or spline-fit 2D polyline
  // from its frame (PEDIT Fit / Spline), honouring SPLINETYPE and SPLINESEGS.
  virtual ErrorStatus fitPolyline2d(Polyline2d& pl, int splineType, int splineSegs) const = 0;
};

}  // namespace host
