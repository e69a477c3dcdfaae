// Services of the kernel that are not built yet: each says so plainly.
#include "standalone/kernel/curve_kernel.h"

namespace standalone {

using host::ErrorStatus;

ErrorStatus CurveKernel::transformBy(EntityData&, const ge::Matrix3d&) const { return ErrorStatus::eNotImplementedYet; }
ErrorStatus CurveKernel::reverseCurve(EntityData&) const { return ErrorStatus::eNotImplementedYet; }
ErrorStatus CurveKernel::intersectWith(const EntityData&, const EntityData&, host::Intersect,
                                       std::vector<ge::Point3d>&) const {
  return ErrorStatus::eNotImplementedYet;
}
ErrorStatus CurveKernel::getOffsetCurves(const EntityData&, double, std::vector<EntityData>&) const {
  return ErrorStatus::eNotImplementedYet;
}
ErrorStatus CurveKernel::getOrthoProjectedCurve(const EntityData&, const host::Plane&, EntityData&) const {
  return ErrorStatus::eNotImplementedYet;
}
ErrorStatus CurveKernel::getProjectedCurve(const EntityData&, const host::Plane&, const ge::Vector3d&,
                                           EntityData&) const {
  return ErrorStatus::eNotImplementedYet;
}
ErrorStatus CurveKernel::getSpline(const EntityData&, host::Spline&) const { return ErrorStatus::eNotImplementedYet; }
ErrorStatus CurveKernel::splineToPolyline(const host::Spline&, int, EntityData&) const {
  return ErrorStatus::eNotImplementedYet;
}
ErrorStatus CurveKernel::convertLwTo2d(const host::LwPolyline&, host::Polyline2d&) const {
  return ErrorStatus::eNotImplementedYet;
}
ErrorStatus CurveKernel::convert2dToLw(const host::Polyline2d&, host::LwPolyline&) const {
  return ErrorStatus::eNotImplementedYet;
}
ErrorStatus CurveKernel::fitSpline(const std::vector<ge::Point3d>&, const ge::Vector3d*, const ge::Vector3d*,
                                   host::Spline&) const {
  return ErrorStatus::eNotImplementedYet;
}
ErrorStatus CurveKernel::fitPolyline2d(host::Polyline2d&, int, int) const { return ErrorStatus::eNotImplementedYet; }

}  // namespace standalone
