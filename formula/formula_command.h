#pragma once
// FORMULA on the command line: the formula-curve dialog presented as prompts.
#include "frame/command_context.h"

namespace formula {

// Asks, in this order, for the curve number as the list numbers it (1..71),
// each shown parameter, the curve kind, "Draw UCS" and the origin; Enter keeps
// what is shown. Then draws as closing the dialog does and stores the choices.
// Anything but a point at the origin prompt ends the command without drawing.
void formulaCommand(frame::CommandContext& context);

}  // namespace formula
