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

}  // namespace tracer
