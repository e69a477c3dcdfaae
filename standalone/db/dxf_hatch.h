#pragma once
// HATCH boundary paths in DXF: polyline paths and edge paths (line, arc,
// elliptic arc, spline edges) with their source-object handles.
#include <vector>

#include "host/entity.h"
#include "standalone/db/dxf_tags.h"

namespace standalone {

class DxfOut;

// Reads `count` boundary paths; the reader stands just after the 91 group.
// Spline edges carry fit data from R2010 on (fitData).
std::vector<host::HatchPath> readHatchPaths(TagReader& reader, int count, bool fitData);

// Writes the 91 group and the paths in the order readHatchPaths reads them.
void writeHatchPaths(DxfOut& out, const std::vector<host::HatchPath>& paths, bool fitData);

}  // namespace standalone
