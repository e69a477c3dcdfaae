#include "frame/output.h"

#include <string>

#ifndef CORVANE_VERSION_LABEL
#error "the build passes CORVANE_VERSION_LABEL"
#endif

namespace frame {

std::string_view versionLabel() { return CORVANE_VERSION_LABEL; }

void showMessageBox(host::Editor& editor, std::string_view text) {
  std::string caption = "Corvane";
  if (isChinese()) caption += " " + std::string(versionLabel());
  editor.messageBox(caption, text);
}

}  // namespace frame
