// The menu-file reader: any text parses or is refused with a message.
#include <cstdint>
#include <string>

#include "standalone/editor/errors.h"
#include "standalone/editor/menu_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  try {
    standalone::MenuGroup g = standalone::parseMenuText(text);
    standalone::MenuSet set;
    set.load(g);
    set.insertPopup(12, g.name, g.popups.front().alias);
    (void)set.describeMenuBar();
  } catch (const standalone::MenuError&) {
  }
  return 0;
}
