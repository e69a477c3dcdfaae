#pragma once
// R2V (bitmapVectorize): raster pictures to curves, on the command line.
#include "frame/command_context.h"

namespace image {

// First the tracer box ("Trace with the external tracer?", its stored state
// the default). Yes: the tracer route, which asks for a BMP picture itself.
// No: the vectorizer dialog as prompts — picture file, colours, smallest
// area, tolerance, a file for the processed picture (Enter: none) — then Do
// Vectorize and the number of outlines drawn.
void bitmapVectorize(frame::CommandContext& context);

}  // namespace image
