#pragma once
// U, UNDO (a count, BEgin, End, Mark, Back) and REDO over the undo history.
#include "standalone/editor/host_commands.h"
#include "standalone/editor/undo_history.h"

namespace standalone {

void addUndoCommands(HostCommandRunner& runner, UndoHistory& history);

}  // namespace standalone
