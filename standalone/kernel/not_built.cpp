// Services of the kernel that are not built yet: each says so plainly.
#include "standalone/kernel/curve_kernel.h"

namespace standalone {

using host::ErrorStatus;

ErrorStatus CurveKernel::getOrthoProjectedCurve(const EntityData&, const host::Plane&, EntityData&) const {
  return ErrorStatus::eNotImplementedYet;
}
ErrorStatus CurveKernel::getProjectedCurve(const EntityData&, const host::Plane&, const ge::Vector3d&,
                                           EntityData&) const {
  return ErrorStatus::eNotImplementedYet;
}

}  // namespace standalone
