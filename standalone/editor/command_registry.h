#pragma once
// The host's command stack: commands registered in groups under a global and
// a local name, looked up by what the user types (ASCII case ignored).
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/commands.h"

namespace standalone {

struct CommandEntry {
  std::string group;
  std::string globalName;
  std::string localName;
  int flags = host::ACRX_CMD_MODAL;
  host::CommandHandler handler;
};

class CommandRegistry : public host::CommandStack {
 public:
  bool addCommand(std::string_view group, std::string_view globalName, std::string_view localName, int flags,
                  host::CommandHandler handler) override;
  bool removeGroup(std::string_view group) override;

  // Gives a registered command another handler (a desktop shows a dialog
  // where the plug-in asks on the command line); false when there is none.
  bool replaceHandler(std::string_view globalName, host::CommandHandler handler);
  // The command a name selects: global names only when globalOnly (the user
  // typed a leading "_"), otherwise local names first, then global ones.
  const CommandEntry* find(std::string_view name, bool globalOnly) const;
  // Every command in registration order.
  const std::vector<CommandEntry>& entries() const { return entries_; }

 private:
  std::vector<CommandEntry> entries_;
};

}  // namespace standalone
