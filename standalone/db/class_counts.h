#pragma once
// Instance counts of the CLASS entries (group 91, R2004 and later): how many
// live entities and objects of each class-based kind the drawing holds.
#include <cstddef>
#include <string>
#include <vector>

#include "standalone/db/records.h"

namespace standalone {

// The DXF name a CLASS record declares (its group 1); empty if it has none.
std::string classDxfName(const TagRecord& classRecord);

// Live entities and objects of each CLASS entry's kind, in the order of
// DrawingContents::classes.
std::vector<std::size_t> classInstanceCounts(const DrawingContents& c);

}  // namespace standalone
