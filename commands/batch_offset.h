#pragma once
// Offset copies of a curve at cumulative spacings on one or both sides, and
// the spacing-list text that sets the spacings. Shared by the batch offset
// and the inner offsets of enclosed areas.
#include <array>
#include <functional>
#include <vector>
#include <string_view>

#include "host/host.h"

namespace commands {

// At most ten copies per side; spacing k separates copy k from copy k-1.
inline constexpr int kMostCopiesPerSide = 10;
using Spacings = std::array<double, kMostCopiesPerSide>;

// Which sides get copies: only the first letter of the direction keyword counts.
enum class OffsetSide { kBoth, kInner, kOutside };
OffsetSide offsetSideOfKeyword(std::string_view keyword);

struct SpacingList {
  Spacings spacings;
  bool valid = false;  // at least one value read, and the first above 0.0001
};

// Reads "9,2,1" as 9, 2, 1, 1, 1, 1, 1, 1, 1, 1: blanks are dropped, a
// full-width comma and a slash separate like a comma, each piece's leading
// number counts (0 when it has none), the first ten values are kept, the last
// one given fills the rest, and a value below 0.0001 takes its predecessor's.
SpacingList parseSpacingList(std::string_view text);

// Offsets one selected entity `count` times on the chosen sides, copy k at the
// sum of the first k spacings, the positive (Outside) side before the
// negative (Inner) side for each k, after turning a record of it by the
// orientation rule of geom/curve_orientation.h (the source stays as drawn).
// Copies take the drawing's current layer and colour and go into the block
// that owns the source; a distance the curve cannot be offset at gives no
// copy. Not a curve, or shorter than 0.0001: nothing. The number of copies made.
int offsetCopies(host::Host& host, host::ObjectId source, OffsetSide side, int count, const Spacings& spacings);

// offsetCopies for every source in turn, with the drawing changed exactly as
// by calling it source after source; where the curve kernel allows, the
// offsets are computed on a second thread meanwhile. progress(n) after the
// n-th source's copies are in the drawing.
void offsetCopiesOfAll(host::Host& host, const std::vector<host::ObjectId>& sources, OffsetSide side, int count,
                       const Spacings& spacings, const std::function<void(std::size_t)>& progress);

}  // namespace commands
