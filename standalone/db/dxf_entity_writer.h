#pragma once
// Middle DXF layer, writing side: an entity record back into groups, with the
// groups the record does not interpret put back where they stood.
#include <cstdint>
#include <string>
#include <unordered_set>

#include "standalone/db/dxf_codepage.h"
#include "standalone/db/dxf_out.h"
#include "standalone/db/records.h"

namespace standalone {

struct EntityWriteContext {
  TextEncoding encoding;
  std::string version = "AC1032";
  bool markers = true;     // R13 and later
  bool handles = true;     // write 5 groups
  std::unordered_set<std::uint64_t> paperSpaces;  // owners whose entities carry 67 1
  // Handles for records that exist only in the file (R12 vertices of a
  // lightweight polyline); reserved by the writer before the header is written.
  std::uint64_t* spareHandles = nullptr;
};

// Handles writeEntity takes from spareHandles for this record.
std::size_t spareHandlesNeeded(const EntityRecord& rec, const EntityWriteContext& ctx);

// Writes one entity: its original bytes when unchanged, else regenerated.
void writeEntity(DxfOut& out, const EntityRecord& rec, const EntityWriteContext& ctx);

}  // namespace standalone
