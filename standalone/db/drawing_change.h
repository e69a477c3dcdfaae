#pragma once
// What one recorded stretch of editing changed in a drawing, kept as the
// state before it: the drawing's tables, lists and counters as a whole, and
// the before-image of each entity record and tag record it touched. Handing
// a change back to the drawing (DrawingDatabase::restore) puts that state
// back and yields the change that goes forward again.
#include <cstddef>
#include <map>

#include "standalone/db/records.h"

namespace standalone {

struct DrawingChange {
  bool recorded = false;  // false: nothing was changed
  // Everything but the entity and record lists (those stay empty here).
  DrawingContents frame;
  std::size_t entityCount = 0, recordCount = 0;  // list lengths before the change
  std::map<std::size_t, EntityRecord> entities;  // before-images by list position
  std::map<std::size_t, TagRecord> records;

  bool empty() const { return !recorded; }
};

}  // namespace standalone
