#pragma once
// The host's WMFOUT and WMFIN over the embedded drawing. WMFOUT writes the
// selected objects as they are drawn (curves as polylines, texts as the
// outlines of their glyphs) to a metafile of the current view; WMFIN brings
// a metafile's polygons and polylines back as a block reference of
// lightweight polylines. view_frame.h says how the two place a metafile.
#include "standalone/editor/host_commands.h"

namespace standalone {

// Adds WMFOUT and WMFIN to the runner.
void addMetafileCommands(HostCommandRunner& runner);

}  // namespace standalone
