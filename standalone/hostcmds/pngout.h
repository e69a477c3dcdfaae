#pragma once
// The host's PNGOUT: the current view drawn into a PNG file at the view's
// pixel size, of the selected objects or of everything shown; hidden
// entities are left out.
#include "standalone/editor/host_commands.h"

namespace standalone {

void addPngOutCommand(HostCommandRunner& runner);

}  // namespace standalone
