#pragma once
// The kernel's names for the NURBS curves of ge/nurbs.h.
#include "ge/nurbs.h"

namespace standalone::kernel {

using ge::Nurbs;
using ge::nurbsBreakpoints;
using ge::nurbsDeriv;
using ge::nurbsPoint;
using ge::nurbsSecondDeriv;

}  // namespace standalone::kernel
