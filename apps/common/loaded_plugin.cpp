#include "apps/common/loaded_plugin.h"

#include "standalone/editor/errors.h"
#include "standalone/hostcmds/boundary.h"
#include "standalone/hostcmds/edit_commands.h"
#include "standalone/hostcmds/insert_block.h"
#include "standalone/hostcmds/pngout.h"
#include "standalone/hostcmds/polyline_edit.h"
#include "standalone/metafile/wmf_commands.h"

namespace corvane_app {

void addHostCommands(standalone::EmbeddedHost& h) {
  standalone::addPolylineEditCommands(h.hostCommands());
  standalone::addInsertCommand(h.hostCommands());
  standalone::addEditCommands(h.hostCommands());
  standalone::addMetafileCommands(h.hostCommands());
  standalone::addBoundaryCommands(h.hostCommands());
  standalone::addPngOutCommand(h.hostCommands());
}

LoadedPlugin::LoadedPlugin(standalone::EmbeddedHost& h) {
  addHostCommands(h);
  // A host loads only modules built against its own interface release.
  if (frame::acrxGetApiVersion() != h.hostCommands().releaseNumber())
    throw standalone::InputError("the plug-in was built for another host release");
  module_ = std::make_unique<frame::Module>(h.host());
  module_->acrxEntryPoint(frame::AppMsg::kInitAppMsg);
  module_->acrxEntryPoint(frame::AppMsg::kLoadDwgMsg);
  // What the plug-in queued at load runs before the first command.
  h.hostCommands().runQueuedExpressions();
  // The loading's commands are not the user's to undo.
  h.undoHistory().forget();
}

LoadedPlugin::~LoadedPlugin() { module_->acrxEntryPoint(frame::AppMsg::kUnloadAppMsg); }

}  // namespace corvane_app
