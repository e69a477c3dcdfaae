#pragma once
// Tracing a picture with the external tracer program and inserting its DXF
// into the drawing through the host's INSERT.
#include <optional>
#include <string>

#include "frame/settings.h"
#include "host/host.h"

namespace image {

// The tracer's place: the plug-in folder followed by autotrace/autotrace.
std::string tracerPath(frame::Settings& settings, const host::Platform& platform);

// How long the tracer may run before the plug-in stops waiting for it.
inline constexpr int kTracerWaitMs = 20000;

// Runs the tracer on a BMP file; the DXF file it wrote, or nothing (tracer
// missing, with its message; no DXF written by the time the wait ended).
std::optional<std::string> runTracer(host::Host& host, frame::Settings& settings, const std::string& bmpPath);

// The whole route from a BMP file to inserted geometry: asks for the file when
// bmpPath is empty, runs the tracer, inserts the DXF at a point the user picks
// (scale 1, rotation 0) and deletes the DXF, also when the insertion was
// cancelled. True when the insertion went through.
bool traceBitmapFile(host::Host& host, frame::Settings& settings, std::string bmpPath);

}  // namespace image
