#pragma once
// Reading ASCII DXF files (R12 to R2018) into a drawing. Everything the file
// holds that the drawing does not interpret is kept for writing it back.
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "standalone/db/database.h"
#include "standalone/db/dxf_tags.h"

namespace standalone {

// Reads the file; throws DxfError naming the line for a malformed file, or
// with line 0 when the file cannot be read.
DrawingDatabase loadDxf(const std::filesystem::path& path);
// Reads DXF text (copied; the drawing keeps its own bytes).
DrawingDatabase readDxf(std::string_view text);
// Reads DXF text the drawing takes over without a copy.
DrawingDatabase readDxf(std::shared_ptr<const std::string> text);

}  // namespace standalone
