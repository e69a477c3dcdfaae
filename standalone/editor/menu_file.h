#pragma once
// Corvane menu files and the menus loaded into the host.
//
// A menu file is UTF-8 text, one statement per line; blank lines and lines
// starting with "#" are ignored:
//
//   CORVANE-MENU 1                        first statement: format and version
//   GROUP CORVANE                         the menu group's name (once, before any POPUP)
//   POPUP POP1 Corvane                    a pop-up menu: its alias, then its label
//   ITEM Divide polylines | ^C^C_ZORL_PLDevide    an item: label, " | ", command macro
//   SEPARATOR                             a line between items
//
// Labels may hold any text but " | "; the macro is what the item types.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace standalone {

struct MenuItem {
  std::string label;  // empty for a separator
  std::string macro;
  bool separator = false;
  bool operator==(const MenuItem&) const = default;
};

struct PopupMenu {
  std::string alias;  // "POP1"
  std::string label;
  std::vector<MenuItem> items;
  bool operator==(const PopupMenu&) const = default;
};

struct MenuGroup {
  std::string name;
  std::vector<PopupMenu> popups;
  std::string sourcePath;
  bool operator==(const MenuGroup&) const = default;
};

// Parses a menu text; throws MenuError "line N: why".
MenuGroup parseMenuText(std::string_view text);
// Reads and parses a menu file; throws MenuError "PATH: why".
MenuGroup readMenuFile(const std::string& path);

// The menu groups loaded into the host and the pop-up menus on its menu bar.
class MenuSet {
 public:
  // False (and nothing changes) when a group of that name is already loaded.
  bool load(MenuGroup group);
  bool isLoaded(std::string_view name) const;
  const MenuGroup* group(std::string_view name) const;
  // Puts the pop-up GROUP.ALIAS on the menu bar at a 1-based position (after
  // the last one when the bar is shorter); false when there is no such pop-up.
  bool insertPopup(int position, std::string_view groupName, std::string_view alias);
  // The menu bar as text: each pop-up's label and alias, then its items indented.
  std::string describeMenuBar() const;
  // Pop-ups on the menu bar as "GROUP.ALIAS", left to right.
  const std::vector<std::string>& menuBar() const { return bar_; }

 private:
  const PopupMenu* popup(std::string_view qualified) const;

  std::vector<MenuGroup> groups_;
  std::vector<std::string> bar_;
};

}  // namespace standalone
