#pragma once
// The host's INSERT command over the embedded drawing: a block of the drawing,
// or a DXF file brought in as a block named after the file, placed as a block
// reference at a point with X and Y scales and a rotation.
#include <optional>

#include "standalone/editor/host_commands.h"

namespace standalone {

// The questions INSERT asks after the insertion point, which WMFIN asks too:
// the X scale (Enter: 1), the Y scale (Enter: the X scale) and the rotation
// in degrees (Enter: 0). Nothing when an answer is cancelled.
struct InsertScaleRotation {
  double xScale = 1, yScale = 1;
  double rotation = 0;  // radians
};
std::optional<InsertScaleRotation> askInsertScaleRotation(HostCommandContext& c);

// Adds INSERT (and -INSERT, the same on a command line) to the runner.
void addInsertCommand(HostCommandRunner& runner);

}  // namespace standalone
