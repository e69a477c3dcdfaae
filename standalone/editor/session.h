#pragma once
// The command loop: "Command:" prompts, each answered by a command name,
// until the input ends. It remembers the first failure so a script run can
// end with a non-zero exit and a one-line reason.
#include <optional>
#include <string>

#include "standalone/editor/command_line.h"
#include "standalone/editor/host_commands.h"

namespace standalone {

struct SessionResult {
  int commandsRun = 0;
  std::optional<std::string> failure;  // the first reason the run did not succeed
};

// Reads command names from the command line's current source and runs them;
// queued expressions run after each command. Unknown commands are reported
// and the run goes on; input that ends while a prompt waits ends the run.
SessionResult runSession(CommandLine& editor, HostCommandRunner& runner);

}  // namespace standalone
