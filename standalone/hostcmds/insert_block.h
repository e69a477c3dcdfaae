#pragma once
// The host's INSERT command over the embedded drawing: a block of the drawing,
// or a DXF file brought in as a block named after the file, placed as a block
// reference at a point with X and Y scales and a rotation.
#include "standalone/editor/host_commands.h"

namespace standalone {

// Adds INSERT (and -INSERT, the same on a command line) to the runner.
void addInsertCommand(HostCommandRunner& runner);

}  // namespace standalone
