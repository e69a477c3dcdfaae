#include "geom/curve_kind.h"

namespace geom {

namespace {
// One of the two globals the plug-in keeps: it lives for the session and is
// written only by the formula dialog.
bool gCurveKindIsSpline = true;
}  // namespace

bool curveKindIsSpline() { return gCurveKindIsSpline; }
void setCurveKindIsSpline(bool spline) { gCurveKindIsSpline = spline; }

}  // namespace geom
