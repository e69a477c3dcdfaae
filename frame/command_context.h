#pragma once
// What every command handler gets, and the prologue every command runs first.
#include <string_view>

#include "frame/settings.h"
#include "host/host.h"

namespace frame {

struct CommandContext {
  host::Host& host;
  Settings& settings;           // the plug-in's stored values and the shared read-text buffer
  std::string_view globalName;  // "ZORL_PLDevide"
  std::string_view localName;   // "PLDF", what the user typed
};

// A command of the plug-in; the frame registers it with the host as a
// function without arguments that runs the prologue and then this.
using CommandFunction = void (*)(CommandContext& context);

// The common prologue, handed the command's internal name: counts the command
// in the stored value "cmdtimes". Usage reports and the update notice stay off:
// the program makes no network requests of its own.
void commandPrologue(Settings& settings, std::string_view internalName);

}  // namespace frame
