#pragma once
// Command-line variants of some formula curves: each asks its own questions
// and the origin, then draws with fixed parameters and a coordinate frame
// reaching 25 units on each side. They have the shape of the frame's command
// functions so a command table can register them; none is in the standard
// table of 53 commands.
#include <span>
#include <string_view>

#include "frame/command_context.h"

namespace formula {

// A cone helix of 175 samples, t = i/174: x = 20t sin(90t) cos(90t),
// y = 20t sin^2(90t), z = 20t cos(90t) (angles in radians).
void coneHelixCommand(frame::CommandContext& context);
// Archimedes spiral: turns 2..128 (3), then the sense of turning.
void archimedesSpiralCommand(frame::CommandContext& context);
// Logarithmic spiral: turns 1..128 (1), then the sense of turning.
void logarithmicSpiralCommand(frame::CommandContext& context);
// Hyperbolic spiral: turns 1..128 (1), then the sense of turning.
void hyperbolicSpiralCommand(frame::CommandContext& context);
// Interlocking spiral (lituus): turns 1..128 (1), then the sense of turning.
void interlockingSpiralCommand(frame::CommandContext& context);
// Rose rho = 20 cos((k/m) t): petals k 1..32 (5; odd k gives k petals, even k
// twice as many), accurate sampling (no), path multiple m 1..32 (1).
void roseCommand(frame::CommandContext& context);
// Spherical helix (yes) or mantle helix (no) of radius 20.
void sphericalHelixCommand(frame::CommandContext& context);
// UFO (yes) or whirlpool ball (no) of radius 20.
void ufoVortexCommand(frame::CommandContext& context);

struct VariantCommand {
  std::string_view name;  // a suggested local command name
  frame::CommandFunction function;
};

// All variants with suggested names.
std::span<const VariantCommand> variantCommands();

}  // namespace formula
