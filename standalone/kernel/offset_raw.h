#pragma once
// The raw offset of a planar polyline with bulges: every segment moved to the
// offset side on its own and joined at the corners. Outer corners meet as the
// host's OFFSET joins them by default: the two segments extended along their
// own line or circle to their meeting point. The region within |d| of the
// source, together with the corner kites (source vertex, the two extended
// ends, the meeting point), is what the offset keeps clear of; its boundary
// lies on the raw pieces, and the rest of them is cut away later.
#include <array>
#include <cstddef>
#include <vector>

#include "standalone/kernel/pline2.h"

namespace standalone::kernel {

enum class RawRole {
  Offset,  // a source segment moved by d, or its extension to a corner's meeting point
  Join,    // an arc of radius |d| about a source vertex, where the segments do not meet
  Bridge,  // a link lying in the cleared region everywhere but its ends: always cut away
};

struct RawPiece {
  Seg seg;
  RawRole role = RawRole::Offset;
  size_t origin = 0;  // pieces of one line or circle share this, so cuts along it can be merged again
};

struct RawPath {
  std::vector<RawPiece> pieces;  // consecutive pieces share their end points
  bool closed = false;
  bool cutsOnly = false;  // it only cuts the other paths where it crosses them; none of it is kept
};

// An extended corner as the region it adds to what the offset keeps clear
// of: source vertex, end of the first piece, meeting point, start of the
// second, and back to the vertex.
struct Kite {
  std::array<Seg, 4> edges;
};

struct RawOffset {
  // One path; two for a closed source that crosses itself, the second along
  // the other side, run backwards so that both go the same way round.
  std::vector<RawPath> paths;
  std::vector<Kite> kites;
};

// Raw offset at signed distance d (positive to the right of the direction of
// travel); tol is the point tolerance of the geometry. Without extended
// corners every outer corner is an arc of radius |d| about its vertex.
RawOffset rawOffset(const Pline2& source, double d, double tol, bool extendCorners = true);

// The raw offsets on both sides of a source (the second is the reversed
// source's), for a closed source that crosses itself, where its sides swap,
// and for any open source, which can face itself left to right (a spiral).
// Of an open source the second path only cuts the first where the band the
// offset must keep clear of begins; the offset stays on the side asked for.
RawOffset rawOffsetBothSides(const Pline2& source, double d, double tol);


}  // namespace standalone::kernel
