#pragma once
// The plug-in's menu, loaded into every drawing opened.
#include <string>
#include <string_view>

#include "frame/settings.h"
#include "host/host.h"

namespace frame {

// The menu group the plug-in's menu file defines.
inline constexpr std::string_view kMenuGroup = "CORVANE";
inline constexpr std::string_view kChineseMenuFile = "Corvane_chn2010.cuix";
inline constexpr std::string_view kEnglishMenuFile = "Corvane_eng.cuix";
// Shows the plug-in's pull-down menu once the group is loaded.
inline constexpr std::string_view kMenuPopupExpression = "(menucmd \"P12=+CORVANE.POP1\")";

// The text with every backslash doubled, as a string inside a queued expression needs.
std::string doubleBackslashes(std::string_view text);

// The expression that loads the menu file when its group is absent; the path
// is put in as it stands (double its backslashes first). The trailing blank
// belongs to the expression.
std::string menuLoadExpression(std::string_view menuPath);

// The full path of the menu file of the current language.
std::string menuFilePath(Settings& settings, const host::Platform& platform);

// Loads the plug-in's menu into the drawing being opened: a missing menu file
// shows a message box and stops; the two expressions are queued only while
// the group is absent; the menu bar is switched on above release 17.
void loadMenu(host::Host& host, Settings& settings);

}  // namespace frame
