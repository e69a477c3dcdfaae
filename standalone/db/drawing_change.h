#pragma once
// What one recorded stretch of editing changed in a drawing, kept as the
// state before it: the drawing's tables, lists and counters as a whole, and
// the before-image of each entity record and tag record it touched. Handing
// a change back to the drawing (DrawingDatabase::restore) puts that state
// back and yields the change that goes forward again.
#include <cstddef>
#include <map>
#include <optional>

#include "standalone/db/records.h"

namespace standalone {

struct DrawingChange {
  bool recorded = false;  // false: nothing was changed
  // Everything but the entity and record lists and the handle index (those
  // stay empty here; the index is rebuilt from the lists).
  DrawingContents frame;
  // When the entity section's and the object list's handles were a prefix of
  // what followed the change (nothing was taken out or reordered), only
  // their lengths are kept and the lists in `frame` stay empty.
  std::optional<std::size_t> entitySectionLength, objectsLength;
  std::size_t entityCount = 0, recordCount = 0;  // list lengths before the change
  std::map<std::size_t, EntityRecord> entities;  // before-images by list position
  std::map<std::size_t, TagRecord> records;

  bool empty() const { return !recorded; }
};

}  // namespace standalone
