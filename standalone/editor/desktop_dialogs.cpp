#include "standalone/editor/desktop_dialogs.h"

namespace standalone {

std::string dialogFilterFor(std::string_view extensions) {
  std::string patterns;
  while (!extensions.empty()) {
    std::size_t semicolon = extensions.find(';');
    std::string_view one = extensions.substr(0, semicolon);
    if (!one.empty()) patterns += (patterns.empty() ? "*." : ";*.") + std::string(one);
    if (semicolon == std::string_view::npos) break;
    extensions.remove_prefix(semicolon + 1);
  }
  if (patterns.empty()) return "All files(*)|*|";
  return patterns + "|" + patterns + "|";
}

}  // namespace standalone
