#include "frame/command_context.h"

namespace frame {

void commandPrologue(Settings& settings, std::string_view /*internalName*/) {
  // The internal name would key the usage reports, which this build does not send.
  settings.incrementCounter("cmdtimes");
}

}  // namespace frame
