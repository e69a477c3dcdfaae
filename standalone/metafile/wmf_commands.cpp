#include "standalone/metafile/wmf_commands.h"

#include <cmath>
#include <filesystem>
#include <numbers>
#include <optional>

#include "standalone/db/database.h"
#include "standalone/hostcmds/insert_block.h"
#include "standalone/metafile/view_frame.h"
#include "standalone/metafile/wmf_file.h"
#include "standalone/render/outlines.h"
#include "standalone/render/scene_builder.h"

namespace standalone {

namespace {

// Largest distance between a curve and its straight pieces, in logical units.
constexpr double kFlatness = 0.25;

std::string unquoted(std::string name) {
  if (name.size() >= 2 && name.front() == '"' && name.back() == '"') name = name.substr(1, name.size() - 2);
  return name;
}

std::optional<std::string> askFileName(HostCommandContext& c, std::string_view prompt) {
  std::string name;
  if (c.editor.getString(true, prompt, name) != host::RTNORM) return std::nullopt;
  name = unquoted(name);
  if (name.empty()) return std::nullopt;
  if (!std::filesystem::path(name).has_extension()) name += ".wmf";
  return name;
}

double realVariable(const host::SystemVariables& vars, std::string_view name, double fallback) {
  host::ResBuf v;
  if (vars.getVar(name, v) != host::RTNORM) return fallback;
  const auto* d = std::get_if<double>(&v.value);
  return d ? *d : fallback;
}

// An outline in whole logical units; nothing when a point lies beyond them.
std::optional<std::vector<WmfPoint>> logicalPoints(const Outline& outline) {
  std::vector<WmfPoint> out;
  out.reserve(outline.points.size());
  for (const ge::Point2d& p : outline.points) {
    double x = std::round(p.x), y = std::round(p.y);
    if (!(std::abs(x) <= 32767 && std::abs(y) <= 32767)) return std::nullopt;
    WmfPoint q{static_cast<std::int16_t>(x), static_cast<std::int16_t>(y)};
    if (out.empty() || !(out.back() == q)) out.push_back(q);  // rounding may join neighbours
  }
  return out;
}

// The figures of one drawn shape: its closed outlines together, its open ones
// apart. False when some of it lies beyond the metafile's coordinates.
bool addFigures(const std::vector<Outline>& outlines, WmfPicture& picture) {
  WmfFigure closed{{}, true}, open{{}, false};
  for (const Outline& o : outlines) {
    std::optional<std::vector<WmfPoint>> pts = logicalPoints(o);
    if (!pts) return false;
    if (pts->size() < 2) continue;
    (o.closed && pts->size() >= 3 ? closed : open).parts.push_back(std::move(*pts));
  }
  if (!closed.parts.empty()) picture.figures.push_back(std::move(closed));
  if (!open.parts.empty()) picture.figures.push_back(std::move(open));
  return true;
}

void wmfOut(HostCommandContext& c) {
  std::optional<std::string> file = askFileName(c, "Enter WMF file name: ");
  if (!file) return;
  std::vector<host::ObjectId> ids;
  if (c.editor.ssget("", nullptr, nullptr, nullptr, ids) != host::RTNORM || ids.empty()) return;
  SceneOptions options;
  options.pointMode = shortVariable(c.sysvars, "PDMODE", 0);
  options.pointSize = realVariable(c.sysvars, "PDSIZE", 0);
  Scene scene = buildSceneOf(c.drawing, ids, options);
  ViewFrame frame = viewFrame(c.view);
  OutlineTracer tracer(frame.toLogical, kFlatness);
  WmfPicture picture;
  picture.frame = frame.frame;
  int outside = 0;
  for (const SceneItem& item : scene.items)
    if (!addFigures(tracer.outlinesOf(item), picture)) ++outside;
  if (outside > 0)
    c.editor.print(std::to_string(outside) + " shape(s) lie too far outside the view and were left out.\n");
  try {
    writeWmf(*file, picture);
  } catch (const WmfError& e) {
    c.editor.print(std::string(e.what()) + "\n");
  }
}

// The first free block name WMF0, WMF1, ...
std::string freshBlockName(const host::Drawing& drawing) {
  for (int n = 0;; ++n) {
    std::string name = "WMF" + std::to_string(n);
    if (!drawing.findBlock(name)) return name;
  }
}

// The polylines of a metafile in a new block: the logical origin at the
// block's base point, y up, at the import size of the current view.
std::optional<std::string> makeBlock(HostCommandContext& c, DrawingDatabase& db, const WmfPicture& picture) {
  std::string name = freshBlockName(db);
  std::optional<host::ObjectId> block = db.addBlock(name, {0, 0, 0});
  if (!block) return std::nullopt;
  double unit = importUnit(c.view, picture.frame);
  for (const WmfFigure& figure : picture.figures)
    for (const auto& part : figure.parts) {
      if (part.size() < 2) continue;
      host::LwPolyline pl;
      pl.closed = figure.closed;
      for (const WmfPoint& p : part) pl.vertices.push_back({p.x * unit, -p.y * unit});
      host::Entity e;
      e.props.layer = "0";
      e.data = std::move(pl);
      db.append(e, *block);
    }
  return name;
}

void wmfIn(HostCommandContext& c) {
  auto* db = dynamic_cast<DrawingDatabase*>(&c.drawing);
  if (!db) return;
  std::optional<std::string> file = askFileName(c, "Enter WMF file name: ");
  if (!file) return;
  // Read before asking anything more: a bad file changes nothing.
  WmfPicture picture;
  try {
    picture = readWmf(*file);
  } catch (const WmfError& e) {
    c.editor.print(std::string(e.what()) + "\n");
    return;
  }
  host::BlockReference ref;
  if (c.editor.getPoint(nullptr, "Specify insertion point: ", ref.position) != host::RTNORM) return;
  std::optional<InsertScaleRotation> placing = askInsertScaleRotation(c);
  if (!placing) return;
  std::optional<std::string> block = makeBlock(c, *db, picture);
  if (!block) return;
  ref.blockName = *block;
  ref.scale = {placing->xScale, placing->yScale, 1};
  ref.rotation = placing->rotation;
  host::Entity e;
  e.props = c.drawing.defaultProps();
  e.data = ref;
  c.drawing.append(e);
}

}  // namespace

void addMetafileCommands(HostCommandRunner& runner) {
  runner.addHostCommand("WMFOUT", wmfOut);
  runner.addHostCommand("WMFIN", wmfIn);
}

}  // namespace standalone
