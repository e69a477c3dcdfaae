#pragma once
// What the corvane program does for each request. Each returns the exit code
// and writes its one-line failure reason to err.
#include <ostream>

#include "options.h"

namespace corvane_app {

// Loads the drawing, loads the plug-in, runs the answers, writes what was asked for.
int runDrawing(const RunRequest& request, std::ostream& out, std::ostream& err);
// One line per registered command: global name, then local name.
int listCommands(std::ostream& out, std::ostream& err);
// The menu bar after the plug-in has loaded its menu into an empty drawing.
int showMenu(std::ostream& out, std::ostream& err);
int settingsCommand(const SettingsRequest& request, std::ostream& out, std::ostream& err);

}  // namespace corvane_app
