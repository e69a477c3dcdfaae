#include "standalone/kernel/offset_pline.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "standalone/kernel/offset_raw.h"
#include "standalone/kernel/offset_slices.h"

namespace standalone::kernel {

namespace {

// Signed area of a closed polyline, counter-clockwise positive: the shoelace
// sum plus each arc's circular segment.
double signedArea(const Pline2& pl) {
  double twice = 0;
  for (size_t i = 0; i < pl.segmentCount(); ++i) {
    Seg s = segmentOf(pl, i);
    twice += s.a.cross(s.b);
    if (s.isArc() && (s.b - s.a).length() > 0) {
      ArcCircle c = s.circle();
      twice += c.r * c.r * (c.sweep - std::sin(c.sweep));
    }
  }
  return twice / 2;
}

// A closed source offsets to closed outlines only. Growing it gives one
// outline: loops that run against the source's sense are the holes of that
// region (the mouth of a nearly closed C), which OFFSET does not draw.
void keepOutlines(std::vector<Pline2>& results, const Pline2& source, double d) {
  double sense = signedArea(source);
  std::erase_if(results, [&](const Pline2& r) { return !r.closed || signedArea(r) * sense <= 0; });
  bool growing = (sense > 0) == (d > 0);
  if (growing && results.size() > 1) {
    auto largest = std::max_element(results.begin(), results.end(), [](const Pline2& a, const Pline2& b) {
      return std::abs(signedArea(a)) < std::abs(signedArea(b));
    });
    results = {*largest};
  }
}

}  // namespace

std::vector<Pline2> offsetPline(const Pline2& source, double d, double tol) {
  if (d == 0) return {source};
  // Where a closed source crosses itself its sides swap, so both sides are
  // offset and the region its loop winds about decides; an open source may
  // face itself left to right, so the other side cuts its offset.
  bool twisted = source.closed && crossesItself(source, tol);
  RawOffset raw = twisted || !source.closed ? rawOffsetBothSides(source, d, tol) : rawOffset(source, d, tol);
  OffsetClearance clearance(source, std::move(raw.kites), d, tol);
  if (twisted) clearance.keepSide(source, (signedArea(source) > 0) == (d > 0));
  auto out = trimRawOffset(raw, source, clearance, d, tol);
  if (source.closed) keepOutlines(out, source, d);
  return out;
}

}  // namespace standalone::kernel
