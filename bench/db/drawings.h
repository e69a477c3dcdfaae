#pragma once
// The drawings the DXF benchmarks load and save, made with our own writer.
#include <filesystem>

namespace bench {

// 100,000 mixed entities (bulged polylines, lines, arcs, circles, fit
// splines, text) as R2010, written to path unless it exists.
void makeMixedDrawing(const std::filesystem::path& path);
// One lightweight polyline of 1,000,000 bulged vertices as R2010.
void makeBigPolyline(const std::filesystem::path& path);

}  // namespace bench
