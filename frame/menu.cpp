#include "frame/menu.h"

#include "frame/language.h"
#include "frame/output.h"
#include "frame/sysvars.h"

namespace frame {

namespace {
// Releases above this one start with the menu bar hidden.
constexpr int kLastReleaseWithMenuBarShown = 17;
// Shown in both languages exactly so, misspelling included.
constexpr std::string_view kMenuMissing = "--- Menu file not fonud!";
}  // namespace

std::string doubleBackslashes(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    out += c;
    if (c == '\\') out += '\\';
  }
  return out;
}

std::string menuLoadExpression(std::string_view menuPath) {
  return "(if(null(menugroup \"CORVANE\"))(command \"menuload\" \"" + std::string(menuPath) + "\")) ";
}

std::string menuFilePath(Settings& settings, const host::Platform& platform) {
  return pluginFolder(settings, platform) + std::string(isChinese() ? kChineseMenuFile : kEnglishMenuFile);
}

void loadMenu(host::Host& host, Settings& settings) {
  std::string path = menuFilePath(settings, host.platform);
  if (!host.platform.fileExists(path)) {
    showMessageBox(host.editor, path + std::string(kMenuMissing));
    return;
  }
  if (!host.hostCommands.isMenuGroupLoaded(kMenuGroup)) {
    host.hostCommands.queueExpression(menuLoadExpression(doubleBackslashes(path)));
    host.hostCommands.queueExpression(kMenuPopupExpression);
  }
  if (host.hostCommands.releaseNumber() > kLastReleaseWithMenuBarShown) setSysVarShortQuietly(host, "menubar", 1);
}

}  // namespace frame
