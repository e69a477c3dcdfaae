#pragma once
// Middle DXF layer, reading side: one entity's groups into its record, keeping
// what the record has no field for.
#include <cstdint>
#include <string>

#include "standalone/db/dxf_codepage.h"
#include "standalone/db/dxf_tags.h"
#include "standalone/db/records.h"

namespace standalone {

struct EntityReadContext {
  TextEncoding encoding;
  std::string version = "AC1032";
  bool markers = true;         // R13 and later: subclass markers, handles, owners
  std::uint64_t maxHandle = 0;  // raised to every handle seen in sub-records
};

// Reads the entity whose 0 group `first` was just consumed, together with the
// VERTEX/SEQEND or ATTRIB/SEQEND records that belong to it. Stops before the
// next entity's 0 group. Throws DxfError for values that cannot be read.
EntityRecord readEntity(TagReader& reader, const RawTag& first, EntityReadContext& ctx);

}  // namespace standalone
