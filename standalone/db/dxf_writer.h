#pragma once
// Writing a drawing as ASCII DXF in the version it was read in. Records not
// changed since loading are written from their original bytes.
#include <filesystem>
#include <string>

#include "standalone/db/database.h"
#include "standalone/db/dxf_tags.h"

namespace standalone {

// The drawing as DXF text.
std::string writeDxf(const DrawingDatabase& db);
// Writes the drawing to a temporary file beside the target and renames it
// over the target; on failure the target is untouched and DxfError is thrown.
void saveDxf(const DrawingDatabase& db, const std::filesystem::path& path);

}  // namespace standalone
