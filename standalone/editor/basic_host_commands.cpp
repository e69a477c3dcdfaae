// ZOOM, ERASE, MENULOAD and SETVAR.
#include <cmath>
#include <memory>

#include "host/codes.h"
#include "standalone/editor/answer_parse.h"
#include "standalone/editor/entity_finder.h"
#include "standalone/editor/errors.h"
#include "standalone/editor/host_commands.h"

namespace standalone {

namespace {

// The view that shows the rectangle of two corners whole, centred.
std::optional<View> viewOfRectangle(const View& current, const ge::Point3d& a, const ge::Point3d& b) {
  double dx = std::abs(b.x - a.x), dy = std::abs(b.y - a.y);
  if (dx <= 0 && dy <= 0) return std::nullopt;
  View v = current;
  v.center = {(a.x + b.x) / 2, (a.y + b.y) / 2};
  double aspect = static_cast<double>(current.widthPixels) / current.heightPixels;
  v.height = std::max(dy, dx / aspect);
  return v;
}

std::optional<ge::Extents3d> drawingExtents(HostCommandContext& c) {
  ge::Extents3d all;
  for (host::ObjectId id : c.drawing.entitiesOf(c.drawing.currentSpace())) {
    std::optional<host::Entity> e = c.drawing.read(id);
    if (!e) continue;
    if (std::optional<ge::Extents3d> ext = entityExtents(c.drawing, c.curves, e->data)) all.add(*ext);
  }
  if (!all.isValid()) return std::nullopt;
  return all;
}

// "2", "2x", "0.5X", "2xp": a magnification of the current view. Without a
// drawing limits area, a bare number is also taken relative to the current view.
std::optional<double> parseScale(std::string_view text) {
  std::string upper = toUpperAscii(text);
  if (upper.ends_with("XP")) upper.resize(upper.size() - 2);
  else if (upper.ends_with("X")) upper.resize(upper.size() - 1);
  std::optional<double> v = parseReal(upper);
  if (!v || *v <= 0) return std::nullopt;
  return v;
}

class Zoom {
 public:
  void operator()(HostCommandContext& c) {
    CommandLine& ed = c.editor;
    ed.initGet(host::RSG_OTHER, "All Center Extents Previous Scale Window Object");
    ge::Point3d corner;
    int rc = ed.getPoint(nullptr,
                         "Specify corner of window, enter a scale factor (nX or nXP), or\n"
                         "[All/Center/Extents/Previous/Scale/Window/Object] <real time>: ",
                         corner);
    if (rc == host::RTNORM) return window(c, &corner);
    if (rc != host::RTKWORD) return;  // Enter (real time) or cancel: the view stays
    std::string input;
    ed.getInput(input);
    // The embedded host keeps no drawing limits, so All shows the extents as Extents does.
    if (input == "All" || input == "Extents") return extents(c);
    if (input == "Center") return center(c);
    if (input == "Previous") return previous(c);
    if (input == "Window") return window(c, nullptr);
    if (input == "Object") return object(c);
    if (input == "Scale") {
      std::string answer;
      if (ed.getString(false, "Enter a scale factor (nX or nXP): ", answer) != host::RTNORM) return;
      input = answer;
    }
    if (std::optional<double> s = parseScale(input)) {
      View v = c.view;
      v.height /= *s;
      return change(c, v);
    }
    ed.print("Requires a point, a scale factor or an option keyword.\n");
  }

 private:
  void change(HostCommandContext& c, const View& v) {
    history_.push_back(c.view);
    c.view = v;
  }
  void window(HostCommandContext& c, const ge::Point3d* first) {
    ge::Point3d a, b;
    if (first) a = *first;
    else if (c.editor.getPoint(nullptr, "Specify first corner: ", a) != host::RTNORM) return;
    if (c.editor.getPoint(&a, "Specify opposite corner: ", b) != host::RTNORM) return;
    if (std::optional<View> v = viewOfRectangle(c.view, a, b)) change(c, *v);
    else c.editor.print("Invalid window.\n");
  }
  void extents(HostCommandContext& c) {
    if (std::optional<ge::Extents3d> ext = drawingExtents(c)) show(c, *ext);
  }
  // The selected objects as large as they fit.
  void object(HostCommandContext& c) {
    std::vector<host::ObjectId> selection;
    if (c.editor.ssget("", nullptr, nullptr, nullptr, selection) != host::RTNORM) return;
    ge::Extents3d all;
    for (host::ObjectId id : selection)
      if (std::optional<host::Entity> e = c.drawing.read(id))
        if (std::optional<ge::Extents3d> ext = entityExtents(c.drawing, c.curves, e->data)) all.add(*ext);
    if (all.isValid()) show(c, all);
  }
  void show(HostCommandContext& c, const ge::Extents3d& ext) {
    std::optional<View> v = viewOfRectangle(c.view, ext.min, ext.max);
    if (!v) {  // a single point: keep the height, move the centre
      v = c.view;
      v->center = {ext.min.x, ext.min.y};
    }
    change(c, *v);
  }
  void center(HostCommandContext& c) {
    ge::Point3d p;
    if (c.editor.getPoint(nullptr, "Specify center point: ", p) != host::RTNORM) return;
    std::string prompt = "Enter magnification or height <" + displayReal(c.view.height) + ">: ";
    View v = c.view;
    v.center = {p.x, p.y};
    while (true) {
      std::string answer;
      if (c.editor.getString(false, prompt, answer) != host::RTNORM) return;
      if (answer.empty()) break;
      std::string upper = toUpperAscii(answer);
      if (upper.ends_with("X") || upper.ends_with("XP")) {
        if (std::optional<double> s = parseScale(upper)) {
          v.height = c.view.height / *s;
          break;
        }
      } else if (std::optional<double> h = parseReal(answer); h && *h > 0) {
        v.height = *h;
        break;
      }
      c.editor.print("Requires a positive height or a magnification (nX).\n");
    }
    change(c, v);
  }
  void previous(HostCommandContext& c) {
    if (history_.empty()) {
      c.editor.print("No previous view saved.\n");
      return;
    }
    c.view = history_.back();
    history_.pop_back();
  }

  std::vector<View> history_;
};

void erase(HostCommandContext& c) {
  std::vector<host::ObjectId> selection;
  if (c.editor.ssget("", nullptr, nullptr, nullptr, selection) != host::RTNORM) return;
  for (host::ObjectId id : selection) c.drawing.erase(id);
}

void menuLoad(HostCommandContext& c) {
  std::string path;
  if (c.editor.getString(true, "Enter name of menu file to load: ", path) != host::RTNORM || path.empty()) return;
  if (path.size() >= 2 && path.front() == '"' && path.back() == '"') path = path.substr(1, path.size() - 2);
  try {
    MenuGroup group = readMenuFile(path);
    std::string name = group.name;
    std::size_t items = 0;
    for (const PopupMenu& p : group.popups) items += p.items.size();
    std::size_t popups = group.popups.size();
    if (!c.menus.load(std::move(group))) {
      c.editor.print("Menu group \"" + name + "\" is already loaded.\n");
      return;
    }
    c.editor.print("Menu group \"" + name + "\" loaded: " + std::to_string(popups) + " pop-up menu" +
                   (popups == 1 ? "" : "s") + ", " + std::to_string(items) + " entries.\n");
  } catch (const MenuError& e) {
    c.editor.print(std::string("Cannot load the menu file ") + e.what() + "\n");
  }
}

std::string valueText(const host::ResBuf& v) {
  if (const auto* s = std::get_if<std::int16_t>(&v.value)) return std::to_string(*s);
  if (const auto* d = std::get_if<double>(&v.value)) return displayReal(*d);
  if (const auto* t = std::get_if<std::string>(&v.value)) return "\"" + *t + "\"";
  if (const auto* p = std::get_if<ge::Point3d>(&v.value)) return displayPoint(*p);
  return "?";
}

// SETVAR: shows a system variable and sets it from text of its own type.
void setVariable(HostCommandContext& c) {
  std::string name;
  if (c.editor.getString(false, "Enter variable name: ", name) != host::RTNORM || name.empty()) return;
  name = toUpperAscii(name);
  host::ResBuf current;
  if (c.sysvars.getVar(name, current) != host::RTNORM) {
    c.editor.print("Unknown variable name.\n");
    return;
  }
  if (current.type == host::RT3DPOINT || name == "VIEWSIZE") {
    c.editor.print(name + " = " + valueText(current) + " (read only)\n");
    return;
  }
  std::string text;
  if (c.editor.getString(false, "Enter new value for " + name + " <" + valueText(current) + ">: ", text) !=
          host::RTNORM ||
      text.empty())
    return;
  std::optional<host::ResBuf> value;
  if (current.type == host::RTSHORT) {
    if (std::optional<int> i = parseInteger(text)) value = host::ResBuf::shortInt(static_cast<std::int16_t>(*i));
  } else if (current.type == host::RTREAL) {
    if (std::optional<double> d = parseReal(text)) value = host::ResBuf::real(*d);
  } else {
    value = host::ResBuf::text(text);
  }
  if (!value || c.sysvars.setVar(name, *value) != host::RTNORM) c.editor.print("Invalid value for " + name + ".\n");
}

}  // namespace

void addBasicHostCommands(HostCommandRunner& runner) {
  auto zoom = std::make_shared<Zoom>();
  runner.addHostCommand("ZOOM", [zoom](HostCommandContext& c) { (*zoom)(c); });
  runner.addHostCommand("ERASE", erase);
  runner.addHostCommand("MENULOAD", menuLoad);
  runner.addHostCommand("SETVAR", setVariable);
}

}  // namespace standalone
