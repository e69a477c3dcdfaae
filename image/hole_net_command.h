#pragma once
// txwk: the hole-net dialog on the command line, for scripts and terminals.
#include "frame/command_context.h"

namespace image {

// Asks for the picture file, then contrast, brightness, rows, size, invert,
// the hole shape and a file for the preview picture (Enter: no preview),
// each with the dialog's current value as default; then runs Do Drawing and
// prints how many holes were drawn.
void imageHoleNet(frame::CommandContext& context);

}  // namespace image
