#pragma once
// The contour commands. INOFFSET (makeInnerOffsets) finds the enclosed areas
// of the selected entities on a picture of the view (the host's PNGOUT),
// traces each with the host's BOUNDARY, offsets the boundaries inwards by
// the batch offset routine and erases them again.
#include "frame/command_context.h"

namespace image {

void makeInnerOffsets(frame::CommandContext& context);

// makeOutline: one closed outline around the selected entities, traced by
// BOUNDARY from a point outside them inside a temporary frame; with more
// than 1000 entities a rough outline from the picture of the view comes
// first, which the user may keep.
void makeOutline(frame::CommandContext& context);

}  // namespace image
