#pragma once
// The plug-in loaded into an embedded host, with the host commands the
// programs offer besides the basic ones: both the corvane program and the
// workbench start a drawing this way.
#include <memory>

#include "frame/module.h"
#include "standalone/editor/embedded_host.h"

namespace corvane_app {

// The host commands the programs offer besides the basic ones: PEDIT,
// INSERT, the edit commands, WMFOUT and WMFIN, BOUNDARY and PNGOUT.
void addHostCommands(standalone::EmbeddedHost& h);

// Loaded for as long as it lives (initialisation, the drawing's menu, the
// queued expressions), unloaded at the end.
class LoadedPlugin {
 public:
  // Throws standalone::InputError when the plug-in was built for another host release.
  explicit LoadedPlugin(standalone::EmbeddedHost& h);
  ~LoadedPlugin();
  LoadedPlugin(const LoadedPlugin&) = delete;
  LoadedPlugin& operator=(const LoadedPlugin&) = delete;

  frame::Module& module() { return *module_; }

 private:
  std::unique_ptr<frame::Module> module_;
};

}  // namespace corvane_app
