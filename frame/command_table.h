#pragma once
// The plug-in's 53 commands in registration order: global name (prefix
// ZORL_), local name (what the user types), the internal name handed to the
// command prologue, and the handler. A command whose handler is not built yet
// has none and prints that it is not available in this build.
#include <span>
#include <string_view>
#include <vector>

#include "frame/command_context.h"

namespace frame {

// The command group, also the application name of the demand-load entries.
inline constexpr std::string_view kCommandGroup = "Corvane";

struct CommandEntry {
  std::string_view globalName;
  std::string_view localName;
  std::string_view internalName;
  CommandFunction handler = nullptr;  // none: not available in this build yet

  bool isBuilt() const { return handler != nullptr; }
};

// All entries in registration order.
std::span<const CommandEntry> commandTable();

// The entry of a local name (exact spelling), or none.
const CommandEntry* findByLocalName(std::string_view localName);

// (global, local) pairs in the order the demand-load entries list them; the
// demonstration commands carry their global name as both names.
std::vector<std::pair<std::string_view, std::string_view>> demandLoadCommands();

}  // namespace frame
