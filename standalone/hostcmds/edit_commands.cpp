#include "standalone/hostcmds/edit_commands.h"

#include <cmath>
#include <cstdint>
#include <numbers>
#include <optional>
#include <string>

#include "host/codes.h"
#include "standalone/kernel/transform_hatch.h"

namespace standalone {

namespace {

constexpr double kDegree = std::numbers::pi / 180;

std::vector<host::ObjectId> selectObjects(HostCommandContext& c) {
  std::vector<host::ObjectId> ids;
  if (c.editor.ssget("", nullptr, nullptr, nullptr, ids) != host::RTNORM) return {};
  return ids;
}

std::optional<ge::Point3d> askBasePoint(HostCommandContext& c) {
  ge::Point3d p;
  if (c.editor.getPoint(nullptr, "Specify base point: ", p) != host::RTNORM) return std::nullopt;
  return p;
}

// "Specify base point or [Displacement] <Displacement>:" and the second
// point; Enter at the second point takes the first as the displacement.
std::optional<ge::Vector3d> askDisplacement(HostCommandContext& c, const char* secondPrompt) {
  CommandLine& ed = c.editor;
  ed.initGet(0, "Displacement");
  ge::Point3d base;
  int rc = ed.getPoint(nullptr, "Specify base point or [Displacement] <Displacement>: ", base);
  if (rc == host::RTKWORD || rc == host::RTNONE) {
    ge::Point3d d;
    if (ed.getPoint(nullptr, "Specify displacement <0.0000, 0.0000, 0.0000>: ", d) == host::RTNONE) return ge::Vector3d{};
    return d.asVector();
  }
  if (rc != host::RTNORM) return std::nullopt;
  ge::Point3d second;
  rc = ed.getPoint(&base, secondPrompt, second);
  if (rc == host::RTNONE) return base.asVector();
  if (rc != host::RTNORM) return std::nullopt;
  return second - base;
}

// How MIRROR treats texts and hatch patterns (MIRRTEXT, MIRRHATCH); other
// commands' maps do not reverse orientation.
struct MirrorRules {
  bool mirrText = true;
  bool mirrHatch = true;
};

// Transforms one entity's data; false when its kind cannot follow the map.
bool transformData(HostCommandContext& c, host::EntityData& data, const ge::Matrix3d& m, MirrorRules rules) {
  bool text = std::holds_alternative<host::Text>(data) || std::holds_alternative<host::MText>(data);
  if (text && !rules.mirrText) return mirrorReadable(data, m);
  if (auto* h = std::get_if<host::Hatch>(&data); h && !rules.mirrHatch)
    return kernel::transformHatch(*h, m, kernel::MirroredPattern::kKeep);
  return c.curves.transformBy(data, m) == host::ErrorStatus::eOk;
}

// Transforms every selected entity in place, or a copy of it beside it.
// Kinds the map cannot carry are counted and reported once.
void transformAll(HostCommandContext& c, const std::vector<host::ObjectId>& ids, const ge::Matrix3d& m, bool copy,
                  MirrorRules rules = {}) {
  int refused = 0;
  for (host::ObjectId id : ids) {
    std::optional<host::Entity> e = c.drawing.read(id);
    if (!e) continue;
    if (!transformData(c, e->data, m, rules)) {
      ++refused;
      continue;
    }
    if (copy) {
      host::Entity fresh = *e;
      fresh.id = host::kNullId;
      c.drawing.append(fresh, e->owner);
    } else {
      c.drawing.write(*e);
    }
  }
  if (refused > 0) c.editor.print(std::to_string(refused) + " object(s) could not be transformed.\n");
}

void move(HostCommandContext& c) {
  std::vector<host::ObjectId> ids = selectObjects(c);
  if (ids.empty()) return;
  std::optional<ge::Vector3d> d = askDisplacement(c, "Specify second point or <use first point as displacement>: ");
  if (d) transformAll(c, ids, ge::Matrix3d::translation(*d), false);
}

// COPY in multiple mode: copies for every second point until Enter.
void copy(HostCommandContext& c) {
  std::vector<host::ObjectId> ids = selectObjects(c);
  if (ids.empty()) return;
  CommandLine& ed = c.editor;
  ed.initGet(0, "Displacement");
  ge::Point3d base;
  int rc = ed.getPoint(nullptr, "Specify base point or [Displacement] <Displacement>: ", base);
  if (rc == host::RTKWORD || rc == host::RTNONE) {
    ge::Point3d d;
    if (ed.getPoint(nullptr, "Specify displacement <0.0000, 0.0000, 0.0000>: ", d) != host::RTNORM) return;
    return transformAll(c, ids, ge::Matrix3d::translation(d.asVector()), true);
  }
  if (rc != host::RTNORM) return;
  ge::Point3d second;
  rc = ed.getPoint(&base, "Specify second point or <use first point as displacement>: ", second);
  if (rc == host::RTNONE) return transformAll(c, ids, ge::Matrix3d::translation(base.asVector()), true);
  while (rc == host::RTNORM) {
    transformAll(c, ids, ge::Matrix3d::translation(second - base), true);
    rc = ed.getPoint(&base, "Specify second point or <exit>: ", second);
  }
}

// A real answer with keywords; Enter gives the default.
int askReal(HostCommandContext& c, const char* prompt, const char* keywords, double& value, int bits = 0) {
  c.editor.initGet(bits, keywords);
  int rc = c.editor.getReal(prompt, value);
  return rc;
}

void rotate(HostCommandContext& c) {
  std::vector<host::ObjectId> ids = selectObjects(c);
  if (ids.empty()) return;
  std::optional<ge::Point3d> base = askBasePoint(c);
  if (!base) return;
  bool makeCopy = false;
  double angle = 0;
  while (true) {
    int rc = askReal(c, "Specify rotation angle or [Copy/Reference] <0>: ", "Copy Reference", angle);
    if (rc == host::RTNORM || rc == host::RTNONE) break;
    if (rc != host::RTKWORD) return;
    std::string word;
    c.editor.getInput(word);
    if (word == "Copy") {
      makeCopy = true;
      c.editor.print("Rotating a copy of the selected objects.\n");
      continue;
    }
    double reference = 0, target = 0;
    if (askReal(c, "Specify the reference angle <0>: ", "", reference) == host::RTCAN) return;
    if (askReal(c, "Specify the new angle <0>: ", "", target) == host::RTCAN) return;
    angle = target - reference;
    break;
  }
  transformAll(c, ids, ge::Matrix3d::rotation(angle * kDegree, ge::kZAxis, *base), makeCopy);
}

void scale(HostCommandContext& c) {
  std::vector<host::ObjectId> ids = selectObjects(c);
  if (ids.empty()) return;
  std::optional<ge::Point3d> base = askBasePoint(c);
  if (!base) return;
  bool makeCopy = false;
  double factor = 1;
  while (true) {
    int rc = askReal(c, "Specify scale factor or [Copy/Reference]: ", "Copy Reference", factor,
                     host::RSG_NONULL | host::RSG_NOZERO | host::RSG_NONEG);
    if (rc == host::RTNORM) break;
    if (rc != host::RTKWORD) return;
    std::string word;
    c.editor.getInput(word);
    if (word == "Copy") {
      makeCopy = true;
      c.editor.print("Scaling a copy of the selected objects.\n");
      continue;
    }
    double reference = 1, target = 1;
    int bits = host::RSG_NOZERO | host::RSG_NONEG;
    if (askReal(c, "Specify reference length <1.0000>: ", "", reference, bits) == host::RTCAN) return;
    if (askReal(c, "Specify new length <1.0000>: ", "", target, bits) == host::RTCAN) return;
    factor = target / reference;
    break;
  }
  transformAll(c, ids, ge::Matrix3d::scaling(factor, *base), makeCopy);
}

// Mirrored copies about the vertical plane through the line; Yes erases the
// sources (the objects themselves are mirrored). MIRRTEXT 0 keeps texts
// readable, MIRRHATCH 0 keeps hatch patterns' directions.
void mirror(HostCommandContext& c) {
  std::vector<host::ObjectId> ids = selectObjects(c);
  if (ids.empty()) return;
  CommandLine& ed = c.editor;
  ge::Point3d a, b;
  if (ed.getPoint(nullptr, "Specify first point of mirror line: ", a) != host::RTNORM) return;
  int rc = host::RTNORM;
  do {
    rc = ed.getPoint(&a, "Specify second point of mirror line: ", b);
    if (rc != host::RTNORM) return;
    if (ge::Point2d{a.x, a.y} == ge::Point2d{b.x, b.y}) ed.print("Points must be distinct.\n");
  } while (ge::Point2d{a.x, a.y} == ge::Point2d{b.x, b.y});
  ed.initGet(0, "Yes No");
  std::string answer;
  rc = ed.getKword("Erase source objects? [Yes/No] <No>: ", answer);
  if (rc == host::RTCAN) return;
  bool erase = rc == host::RTNORM && answer == "Yes";
  ge::Vector3d along{b.x - a.x, b.y - a.y, 0};
  ge::Matrix3d m = ge::Matrix3d::mirroring(a, along.cross(ge::kZAxis).normalized());
  MirrorRules rules{shortVariable(c.sysvars, "MIRRTEXT", 0) != 0, shortVariable(c.sysvars, "MIRRHATCH", 0) != 0};
  // Erasing the sources mirrors them in place: they keep their identity, so
  // a selection made before still names them.
  transformAll(c, ids, m, !erase, rules);
}

void stretch(HostCommandContext& c) {
  c.editor.print("Select objects to stretch by crossing-window or crossing-polygon...\n");
  std::vector<host::ObjectId> ids = selectObjects(c);
  if (ids.empty()) return;
  std::vector<std::vector<ge::Point2d>> crossings = c.editor.lastCrossings();
  std::optional<ge::Vector3d> d = askDisplacement(c, "Specify second point or <use first point as displacement>: ");
  if (!d) return;
  ge::Matrix3d shift = ge::Matrix3d::translation(*d);
  for (host::ObjectId id : ids) {
    std::optional<host::Entity> e = c.drawing.read(id);
    if (!e) continue;
    // Without a crossing (objects picked singly) everything selected moves.
    bool changed = crossings.empty() ? c.curves.transformBy(e->data, shift) == host::ErrorStatus::eOk
                                     : stretchEntity(e->data, crossings, *d, c.curves);
    if (changed) c.drawing.write(*e);
  }
}

}  // namespace

void addEditCommands(HostCommandRunner& runner) {
  runner.addHostCommand("MOVE", move);
  runner.addHostCommand("COPY", copy);
  runner.addHostCommand("ROTATE", rotate);
  runner.addHostCommand("SCALE", scale);
  runner.addHostCommand("MIRROR", mirror);
  runner.addHostCommand("STRETCH", stretch);
}

}  // namespace standalone
