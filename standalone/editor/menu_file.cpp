#include "standalone/editor/menu_file.h"

#include <fstream>
#include <sstream>

#include "standalone/editor/answer_parse.h"
#include "standalone/editor/answer_source.h"
#include "standalone/editor/errors.h"

namespace standalone {

namespace {

constexpr std::string_view kMagic = "CORVANE-MENU 1";
constexpr std::string_view kItemSeparator = " | ";

std::string_view trim(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) s.remove_suffix(1);
  return s;
}

// The first word of a statement and the rest after it.
std::pair<std::string_view, std::string_view> splitWord(std::string_view s) {
  std::size_t space = s.find(' ');
  if (space == std::string_view::npos) return {s, {}};
  return {s.substr(0, space), trim(s.substr(space + 1))};
}

bool isName(std::string_view s) {
  if (s.empty()) return false;
  for (char c : s)
    if (!((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '-'))
      return false;
  return true;
}

[[noreturn]] void fail(int line, const std::string& why) {
  throw MenuError("line " + std::to_string(line) + ": " + why);
}

}  // namespace

MenuGroup parseMenuText(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  if (!isCleanUtf8(text)) throw MenuError("not UTF-8 text");
  MenuGroup group;
  bool sawMagic = false;
  int number = 0;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    std::string_view line = trim(text.substr(start, end - start));
    start = end + 1;
    ++number;
    if (line.empty() || line.front() == '#') continue;
    if (!sawMagic) {
      if (line != kMagic) fail(number, "a menu file starts with \"" + std::string(kMagic) + "\"");
      sawMagic = true;
      continue;
    }
    auto [word, rest] = splitWord(line);
    if (word == "GROUP") {
      if (!group.name.empty()) fail(number, "a second GROUP statement");
      if (!isName(rest)) fail(number, "GROUP needs a name of letters, digits, _ or -");
      group.name = std::string(rest);
    } else if (word == "POPUP") {
      if (group.name.empty()) fail(number, "POPUP before GROUP");
      auto [alias, label] = splitWord(rest);
      if (!isName(alias) || label.empty()) fail(number, "POPUP needs an alias and a label");
      for (const PopupMenu& p : group.popups)
        if (equalsNoCase(p.alias, alias)) fail(number, "the alias " + std::string(alias) + " is used twice");
      group.popups.push_back({std::string(alias), std::string(label), {}});
    } else if (word == "ITEM") {
      if (group.popups.empty()) fail(number, "ITEM before the first POPUP");
      std::size_t bar = rest.find(kItemSeparator);
      if (bar == std::string_view::npos) fail(number, "ITEM needs a label, \" | \" and a macro");
      std::string_view label = trim(rest.substr(0, bar)), macro = trim(rest.substr(bar + kItemSeparator.size()));
      if (label.empty() || macro.empty()) fail(number, "ITEM needs a label, \" | \" and a macro");
      group.popups.back().items.push_back({std::string(label), std::string(macro), false});
    } else if (word == "SEPARATOR") {
      if (group.popups.empty()) fail(number, "SEPARATOR before the first POPUP");
      if (!rest.empty()) fail(number, "SEPARATOR takes nothing after it");
      group.popups.back().items.push_back({{}, {}, true});
    } else {
      fail(number, "unknown statement \"" + std::string(word) + "\"");
    }
  }
  if (!sawMagic) throw MenuError("empty menu file");
  if (group.name.empty()) throw MenuError("no GROUP statement");
  if (group.popups.empty()) throw MenuError("no POPUP menu");
  return group;
}

MenuGroup readMenuFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw MenuError(path + ": cannot open the file");
  std::ostringstream text;
  text << in.rdbuf();
  try {
    MenuGroup g = parseMenuText(text.str());
    g.sourcePath = path;
    return g;
  } catch (const MenuError& e) {
    throw MenuError(path + ": " + e.what());
  }
}

bool MenuSet::load(MenuGroup group) {
  if (isLoaded(group.name)) return false;
  groups_.push_back(std::move(group));
  return true;
}

bool MenuSet::isLoaded(std::string_view name) const { return group(name) != nullptr; }

const MenuGroup* MenuSet::group(std::string_view name) const {
  for (const MenuGroup& g : groups_)
    if (equalsNoCase(g.name, name)) return &g;
  return nullptr;
}

const PopupMenu* MenuSet::popup(std::string_view qualified) const {
  std::size_t dot = qualified.find('.');
  if (dot == std::string_view::npos) return nullptr;
  const MenuGroup* g = group(qualified.substr(0, dot));
  if (!g) return nullptr;
  for (const PopupMenu& p : g->popups)
    if (equalsNoCase(p.alias, qualified.substr(dot + 1))) return &p;
  return nullptr;
}

bool MenuSet::insertPopup(int position, std::string_view groupName, std::string_view alias) {
  std::string qualified = toUpperAscii(groupName) + "." + toUpperAscii(alias);
  if (!popup(qualified)) return false;
  std::erase(bar_, qualified);
  std::size_t at = position < 1 ? 0 : std::min<std::size_t>(static_cast<std::size_t>(position - 1), bar_.size());
  bar_.insert(bar_.begin() + static_cast<std::ptrdiff_t>(at), qualified);
  return true;
}

std::string MenuSet::describeMenuBar() const {
  std::string out;
  for (const std::string& q : bar_) {
    const PopupMenu* p = popup(q);
    out += p->label + " (" + q + ")\n";
    for (const MenuItem& item : p->items)
      out += item.separator ? std::string("  ----\n") : "  " + item.label + "  [" + item.macro + "]\n";
  }
  return out;
}

}  // namespace standalone
