#pragma once
// From the raw offset to the offset itself: the raw path is cut where it
// crosses itself (and, for an open source, where it crosses the circles of
// radius |d| about the source's two ends). Between cuts a run of the path
// either keeps clear of the source (farther than |d|, outside every corner
// kite) or does not, wholly, so one test per run decides; the runs that keep
// clear are joined end to start.
#include <vector>

#include "standalone/kernel/offset_raw.h"

namespace standalone::kernel {

std::vector<Pline2> trimRawOffset(const RawOffset& raw, const Pline2& source, double d, double tol);

}  // namespace standalone::kernel
