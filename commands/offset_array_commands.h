#pragma once
// Batch offset, arrays and coordinate files: one function per command, run
// by the frame after the common prologue.
#include "frame/command_context.h"

namespace commands {

void plBatchOffset(frame::CommandContext& context);       // PLOFFSET: offset copies on one or both sides
void plineInterArray(frame::CommandContext& context);     // PLARR: 2D array between two polylines
void plineInterpolate(frame::CommandContext& context);    // PLINT: in-between polylines along a path
void randomArray(frame::CommandContext& context);         // PLRNDArray: random and wave arrays
void drawPolylineByTxtFile(frame::CommandContext& context);  // ZB2PL: polylines from a coordinate file

}  // namespace commands
