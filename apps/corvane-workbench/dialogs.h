#pragma once
// The plug-in's dialogs as desktop windows: FORMULA, txwk and ABOUT_CORVANE
// get handlers that show Qt dialogs over the plug-in's own dialog models,
// where the command line presents the same models as prompts.
#include <QWidget>

namespace workbench {

class Session;

// Replaces the three commands' handlers in the session's command stack.
// Each still runs the plug-in's common prologue first.
void installDialogCommands(Session& session, QWidget* parent);

}  // namespace workbench
