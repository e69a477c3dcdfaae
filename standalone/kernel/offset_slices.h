#pragma once
// From the raw offset to the offset itself: the raw paths are cut where they
// cross (and, for an open source, where they cross the circles of radius |d|
// about the source's two ends). Between cuts a run of a path either keeps
// clear of the source or does not, wholly, so a few tests per run decide;
// the runs that keep clear are joined end to start.
#include <vector>

#include "standalone/kernel/offset_clearance.h"
#include "standalone/kernel/offset_raw.h"

namespace standalone::kernel {

// Does the polyline cross or touch itself anywhere but where neighbouring
// segments meet? Segments no longer than tol are passed over.
bool crossesItself(const Pline2& pl, double tol);

std::vector<Pline2> trimRawOffset(const RawOffset& raw, const Pline2& source, const OffsetClearance& clearance,
                                  double d, double tol);

}  // namespace standalone::kernel
