#include "standalone/hostcmds/insert_block.h"

#include <cmath>
#include <filesystem>
#include <map>
#include <numbers>

#include "standalone/db/database.h"
#include "standalone/db/dxf_reader.h"

namespace standalone {

namespace {

// What the name answer asks for: "NAME", "FILE.dxf" (a block named after the
// file) or "NAME=FILE.dxf".
struct BlockSource {
  std::string blockName;
  std::filesystem::path file;  // empty: a block of the drawing
};

BlockSource sourceOf(const std::string& answer) {
  std::string name = answer, file;
  if (std::size_t eq = answer.find('='); eq != std::string::npos) {
    name = answer.substr(0, eq);
    file = answer.substr(eq + 1);
  } else if (std::filesystem::path(answer).has_extension() || answer.find('/') != std::string::npos) {
    file = answer;
    name = std::filesystem::path(answer).stem().string();
  }
  return {name, file};
}

// Copies the entities of a block record of the source drawing into a block
// record of the target, and first the blocks that nested references use.
class BlockCopier {
 public:
  BlockCopier(const DrawingDatabase& source, DrawingDatabase& target) : source_(source), target_(target) {}

  void copyEntities(host::ObjectId from, host::ObjectId to) {
    for (host::ObjectId id : source_.entitiesOf(from)) {
      std::optional<host::Entity> e = source_.read(id);
      if (!e) continue;
      if (auto* ref = std::get_if<host::BlockReference>(&e->data)) ensureBlock(ref->blockName);
      e->id = host::kNullId;
      target_.append(*e, to);
    }
  }

 private:
  // A block of the source that the target lacks is copied over under its name.
  void ensureBlock(const std::string& name) {
    if (target_.findBlock(name) || !copying_.emplace(name, true).second) return;
    std::optional<host::ObjectId> from = source_.findBlock(name);
    if (!from) return;
    std::optional<host::ObjectId> to = target_.addBlock(name, source_.blockBasePoint(*from));
    if (to) copyEntities(*from, *to);
  }

  const DrawingDatabase& source_;
  DrawingDatabase& target_;
  std::map<std::string, bool> copying_;  // against blocks that contain themselves
};

// The insertion base of a DXF file: its header's $INSBASE, else the origin.
ge::Point3d insertionBase(const DrawingDatabase& db) {
  ge::Point3d base;
  if (std::optional<host::ResBufList> v = db.headerVariable("INSBASE"))
    for (const host::ResBuf& r : *v)
      if (const auto* d = std::get_if<double>(&r.value)) (r.type == 10 ? base.x : r.type == 20 ? base.y : base.z) = *d;
  return base;
}

// The block the answer names, made from its file when it names one; nothing after a message.
std::optional<std::string> resolveBlock(HostCommandContext& c, DrawingDatabase& db, const BlockSource& source) {
  if (source.file.empty()) {
    if (db.findBlock(source.blockName)) return source.blockName;
    c.editor.print("Block \"" + source.blockName + "\" not found.\n");
    return std::nullopt;
  }
  if (db.findBlock(source.blockName)) return source.blockName;  // the drawing's definition stays as it is
  std::error_code ec;
  if (!std::filesystem::is_regular_file(source.file, ec)) {
    c.editor.print("Cannot find file \"" + source.file.string() + "\".\n");
    return std::nullopt;
  }
  try {
    DrawingDatabase file = loadDxf(source.file);
    std::optional<host::ObjectId> block = db.addBlock(source.blockName, insertionBase(file));
    if (!block) return std::nullopt;
    BlockCopier(file, db).copyEntities(file.modelSpace(), *block);
  } catch (const std::exception& e) {
    c.editor.print("Invalid file \"" + source.file.string() + "\": " + e.what() + "\n");
    return std::nullopt;
  }
  return source.blockName;
}

// A real with a default: Enter gives it; nothing when cancelled.
std::optional<double> realOr(HostCommandContext& c, std::string_view prompt, double fallback, int bits) {
  c.editor.initGet(bits, "");
  double v = fallback;
  int rc = c.editor.getReal(prompt, v);
  if (rc == host::RTNONE) return fallback;
  if (rc != host::RTNORM) return std::nullopt;
  return v;
}

void insertBlock(HostCommandContext& c) {
  auto* db = dynamic_cast<DrawingDatabase*>(&c.drawing);
  std::string answer;
  if (!db || c.editor.getString(true, "Enter block name or [?]: ", answer) != host::RTNORM || answer.empty()) return;
  std::optional<std::string> name = resolveBlock(c, *db, sourceOf(answer));
  if (!name) return;
  host::BlockReference ref;
  ref.blockName = *name;
  if (c.editor.getPoint(nullptr, "Specify insertion point or [Basepoint/Scale/X/Y/Z/Rotate]: ", ref.position) !=
      host::RTNORM)
    return;
  std::optional<InsertScaleRotation> placing = askInsertScaleRotation(c);
  if (!placing) return;
  ref.scale = {placing->xScale, placing->yScale, placing->xScale};
  ref.rotation = placing->rotation;
  host::Entity e;
  e.props = c.drawing.defaultProps();
  e.data = ref;
  c.drawing.append(e);
}

}  // namespace

std::optional<InsertScaleRotation> askInsertScaleRotation(HostCommandContext& c) {
  std::optional<double> sx = realOr(c, "Enter X scale factor, specify opposite corner, or [Corner/XYZ] <1>: ", 1.0,
                                    host::RSG_NOZERO);
  if (!sx) return std::nullopt;
  std::optional<double> sy = realOr(c, "Enter Y scale factor <use X scale factor>: ", *sx, host::RSG_NOZERO);
  if (!sy) return std::nullopt;
  std::optional<double> degrees = realOr(c, "Specify rotation angle <0>: ", 0.0, 0);
  if (!degrees) return std::nullopt;
  return InsertScaleRotation{*sx, *sy, *degrees * std::numbers::pi / 180.0};
}

void addInsertCommand(HostCommandRunner& runner) {
  runner.addHostCommand("INSERT", insertBlock);
  runner.addHostCommand("-INSERT", insertBlock);
}

}  // namespace standalone
