#pragma once
// The database reads and writes entity coordinates through ge/ocs.h.
#include "ge/ocs.h"

namespace standalone {

using ge::isWorldZ;
using ge::OcsFrame;
using ge::ocsToWorld;
using ge::worldToOcs;

inline constexpr double kDegree = 3.14159265358979323846 / 180.0;

}  // namespace standalone
