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

// Reads `count` pattern definition lines (53, 43-46, 79, 49...); the reader
// stands just after the 78 group.
std::vector<host::HatchPatternLine> readHatchPatternLines(TagReader& reader, int count);

// Reads `count` seed points (10/20); the reader stands just after the 98 group.
std::vector<ge::Point2d> readHatchSeeds(TagReader& reader, int count);

// Writes what follows the paths: style, pattern type, the pattern groups
// when the hatch has a pattern, pixel size, seed points.
void writeHatchPattern(DxfOut& out, const host::Hatch& hatch);

}  // namespace standalone
