#pragma once
// The content of a new drawing: what AutoCAD and other readers need at least
// for the version (header, tables, model and paper space, root dictionary).
#include <cstdint>
#include <string>

#include "standalone/db/records.h"

namespace standalone {

// A complete empty drawing of the version ("AC1009" .. "AC1032").
DrawingContents minimalContents(std::string version);

// An empty symbol table (head and ENDTAB) of the given name.
SymbolTable emptyTable(const std::string& name, const std::string& version, std::uint64_t handle);

// Tags of a VPORT "*ACTIVE" entry with neutral settings.
TagList activeViewportTags(const std::string& version, std::uint64_t handle, std::uint64_t tableHandle);

}  // namespace standalone
