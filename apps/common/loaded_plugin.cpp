#include "apps/common/loaded_plugin.h"

#include "standalone/editor/errors.h"
#include "standalone/hostcmds/edit_commands.h"
#include "standalone/hostcmds/insert_block.h"
#include "standalone/hostcmds/polyline_edit.h"

namespace corvane_app {

LoadedPlugin::LoadedPlugin(standalone::EmbeddedHost& h) {
  standalone::addPolylineEditCommands(h.hostCommands());
  standalone::addInsertCommand(h.hostCommands());
  standalone::addEditCommands(h.hostCommands());
  // A host loads only modules built against its own interface release.
  if (frame::acrxGetApiVersion() != h.hostCommands().releaseNumber())
    throw standalone::InputError("the plug-in was built for another host release");
  module_ = std::make_unique<frame::Module>(h.host());
  module_->acrxEntryPoint(frame::AppMsg::kInitAppMsg);
  module_->acrxEntryPoint(frame::AppMsg::kLoadDwgMsg);
  // What the plug-in queued at load runs before the first command.
  h.hostCommands().runQueuedExpressions();
}

LoadedPlugin::~LoadedPlugin() { module_->acrxEntryPoint(frame::AppMsg::kUnloadAppMsg); }

}  // namespace corvane_app
