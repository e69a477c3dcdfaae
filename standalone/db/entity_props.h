#pragma once
// The common entity properties (layer, colour, linetype, ...) as DXF groups.
#include "host/entity.h"
#include "standalone/db/dxf_codepage.h"
#include "standalone/db/records.h"

namespace standalone {

// Rewrites the property groups of an uninterpreted entity's full tag list.
// With subclass markers they live after "100 AcDbEntity", otherwise after the header.
void applyProps(TagList& tags, const host::EntityProps& props, const TextEncoding& enc, bool markers);

// The property groups in the order this writer emits them.
TagList propertyTags(const host::EntityProps& props, const TextEncoding& enc);

// Reads one property group into props; false when the code is not a property.
bool readPropertyTag(int code, std::string_view value, host::EntityProps& props, const TextEncoding& enc,
                     std::size_t line);

}  // namespace standalone
