#pragma once
// Outlines as a DXF file of release 12: one closed POLYLINE per outline on
// layer 0, the header's insertion base at the origin and the extents set.
// Release 12 is the form every DXF reader takes, the embedded host's INSERT among them.
#include <string>
#include <vector>

#include "image/outline_trace.h"

namespace tracer {

// The DXF text of the outlines.
std::string outlinesDxf(const std::vector<image::Outline>& outlines);

// Writes the text beside path and renames it into place, so that the file is
// there only when whole; false when it could not be written.
bool writeFileWhole(const std::string& path, const std::string& text);

}  // namespace tracer
