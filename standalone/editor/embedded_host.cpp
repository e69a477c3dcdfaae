#include "standalone/editor/embedded_host.h"

#include <cmath>

#include "standalone/editor/undo_commands.h"

namespace standalone {

std::optional<host::ResBuf> EmbeddedHost::Header::get(std::string_view dxfName) const {
  std::optional<host::ResBufList> list = db_.headerVariable(dxfName);
  if (!list || list->empty()) return std::nullopt;
  const host::ResBuf& first = list->front();
  if (const auto* s = std::get_if<std::int16_t>(&first.value)) return host::ResBuf::shortInt(*s);
  if (const auto* l = std::get_if<std::int32_t>(&first.value)) return host::ResBuf::longInt(*l);
  if (const auto* d = std::get_if<double>(&first.value)) return host::ResBuf::real(*d);
  if (const auto* t = std::get_if<std::string>(&first.value)) return host::ResBuf::text(*t);
  return std::nullopt;
}

void EmbeddedHost::Header::set(std::string_view dxfName, int group, const host::ResBuf& value) {
  host::ResBuf tagged = value;
  tagged.type = group;
  db_.setHeaderVariable(dxfName, {tagged});
}

View initialView(const DrawingDatabase& drawing, const host::CurveServices& curves, int widthPixels,
                 int heightPixels) {
  View v;
  v.widthPixels = widthPixels;
  v.heightPixels = heightPixels;
  if (std::optional<ActiveView> active = drawing.activeView(); active && active->height > 0) {
    v.center = active->center;
    v.height = active->height;
    return v;
  }
  ge::Extents3d all;
  for (host::ObjectId id : drawing.entitiesOf(drawing.currentSpace())) {
    const host::Entity* e = drawing.peek(id);
    if (!e) continue;
    if (std::optional<ge::Extents3d> ext = entityExtents(drawing, curves, e->data)) all.add(*ext);
  }
  if (all.isValid()) {
    v.center = {(all.min.x + all.max.x) / 2, (all.min.y + all.max.y) / 2};
    double aspect = static_cast<double>(widthPixels) / heightPixels;
    double h = std::max(all.max.y - all.min.y, (all.max.x - all.min.x) / aspect);
    if (h > 0) v.height = h;
  }
  return v;
}

EmbeddedHost::EmbeddedHost(DrawingDatabase drawing, std::ostream& out, EmbeddedHostOptions options)
    : drawing_(std::move(drawing)),
      transcript_(out),
      view_(initialView(drawing_, kernel_, options.viewportWidthPixels, options.viewportHeightPixels)),
      settings_(options.settingsPath, [this](const std::string& note) { showNote(note); }),
      sysvars_(header_, settings_, view_),
      editor_(transcript_, drawing_, kernel_, sysvars_, view_,
              [this](const std::string& layer) { return drawing_.isLayerFrozenOrLocked(layer); }),
      runner_(HostCommandContext{editor_, drawing_, kernel_, sysvars_, view_, menus_}, registry_),
      demandLoad_(settings_),
      platform_(options.modulePath, [this](const std::string& note) { showNote(note); },
                options.openPages),
      classes_(drawing_,
               [this](const host::ClassDescription& c) { drawing_.declareClass(c.dxfName, c.name, c.appName); }),
      host_{editor_, drawing_, kernel_, sysvars_, registry_, runner_, demandLoad_, settings_, platform_, &classes_} {
  // Whoever writes an entity back, its persistent reactors hear of it.
  drawing_.setModifiedObserver([this](host::ObjectId id) { classes_.notifyModified(host_, id); });
  // The plug-in asks the curve services for the extents of block references too.
  kernel_.setBlockContents(host::blockContentsOf(drawing_));
  addBasicHostCommands(runner_);
  // Every command is one undo step.
  runner_.setCommandBracket([this](const std::string& label) { undo_.beginCommand(label); },
                            [this] { undo_.endCommand(); });
  addUndoCommands(runner_, undo_);
}

void EmbeddedHost::showNote(const std::string& note) {
  transcript_.endLine();
  transcript_.print(note + "\n");
}

SessionResult EmbeddedHost::run(AnswerSource& source) {
  editor_.pushSource(source, false, false);
  SessionResult result = runSession(editor_, runner_);
  editor_.popSource();
  return result;
}

void EmbeddedHost::storeView() {
  if (view_ == openingView_) return;
  ActiveView v;
  v.center = view_.center;
  v.height = view_.height;
  v.aspect = static_cast<double>(view_.widthPixels) / view_.heightPixels;
  drawing_.setActiveView(v);
}

}  // namespace standalone
