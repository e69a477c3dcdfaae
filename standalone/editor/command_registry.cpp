#include "standalone/editor/command_registry.h"

#include <algorithm>

#include "standalone/editor/answer_parse.h"

namespace standalone {

bool CommandRegistry::addCommand(std::string_view group, std::string_view globalName, std::string_view localName,
                                 int flags, host::CommandHandler handler) {
  for (const CommandEntry& e : entries_) {
    if (!equalsNoCase(e.group, group)) continue;
    if (equalsNoCase(e.globalName, globalName) || equalsNoCase(e.localName, localName)) return false;
  }
  entries_.push_back({std::string(group), std::string(globalName), std::string(localName), flags, std::move(handler)});
  return true;
}

bool CommandRegistry::removeGroup(std::string_view group) {
  auto removed = std::erase_if(entries_, [&](const CommandEntry& e) { return equalsNoCase(e.group, group); });
  return removed > 0;
}

bool CommandRegistry::replaceHandler(std::string_view globalName, host::CommandHandler handler) {
  for (CommandEntry& e : entries_)
    if (equalsNoCase(e.globalName, globalName)) {
      e.handler = std::move(handler);
      return true;
    }
  return false;
}

const CommandEntry* CommandRegistry::find(std::string_view name, bool globalOnly) const {
  if (!globalOnly)
    for (const CommandEntry& e : entries_)
      if (equalsNoCase(e.localName, name)) return &e;
  for (const CommandEntry& e : entries_)
    if (equalsNoCase(e.globalName, name)) return &e;
  return nullptr;
}

}  // namespace standalone
