#pragma once
// The plug-in module: the entry point that answers the host's application
// messages. Initialisation sets the language flag, registers the command table
// under the group "Corvane", prints the greeting, keeps the load counter and
// writes the demand-load entries; every drawing opened gets the menu; unload
// removes the command group.
#include "frame/command_table.h"
#include "frame/settings.h"
#include "host/host.h"

namespace frame {

enum class AppMsg { kInitAppMsg, kUnloadAppMsg, kLoadDwgMsg };

// Loads at or above this count reset the load counter "pagetimes" to 0.
inline constexpr std::uint32_t kLoadCounterLimit = 121;

// The version of the host interface the plug-in was built against (release 23
// of the host libraries); a host refuses a module whose version it does not know.
inline constexpr int kHostApiVersion = 23;

// The host's API-version query, the module's second export.
inline constexpr int acrxGetApiVersion() { return kHostApiVersion; }

class Module {
 public:
  explicit Module(host::Host& host) : host_(host), settings_(host.settings) {}
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;

  // Handles one application message; returns 0 for every message.
  int acrxEntryPoint(AppMsg msg);

  // The plug-in's stored values, shared by every command.
  Settings& settings() { return settings_; }

  // Runs a registered command as the host does when its name is typed: the
  // prologue, then its handler or the not-available message. A PluginError
  // from the handler ends the command with its message.
  void runCommand(const CommandEntry& entry);

 private:
  void initialise();
  void registerCommands();
  void countLoad();
  void writeDemandLoadEntries();
  void unload();

  host::Host& host_;
  Settings settings_;
};

}  // namespace frame
