// PLAFFECT, plAffectMoveX and plAffClick: influence curves push, turn, shrink
// or bend nearby objects along X.
#include <optional>

#include "commands/commands.h"
#include "commands/influence.h"
#include "frame/output.h"
#include "frame/prompts.h"
#include "frame/selection.h"
#include "frame/sysvars.h"

namespace commands {

namespace {

constexpr frame::Text kInfluenceCurvesPrompt{"\nPlease Select Curve(s) With Affection >",
                                             "\n请选择影响力曲线（一根或多根）>"};
constexpr frame::Text kAffectedPrompt{"\nPlease select the object that will be affected.",
                                      "\n请选择将被影响的物体。"};
constexpr frame::Text kStrengthPrompt{"\nPlease input the influence strength[1--10](3):",
                                      "\n请输入影响力度[1--10](3):"};
constexpr frame::Text kDistancePrompt{"\nInfluence distance:", "\n请输入影响距离:"};
constexpr frame::Text kMovePrompt{"\n Position affect?[Y/N]（Y）:", "\n是否影响物体位置[Y/N]（Y）:"};
constexpr frame::Text kRotatePrompt{"\nRotate?[Y/N]（N）:", "\n是否影响物体旋转[Y/N]（N）:"};
constexpr frame::Text kScalePrompt{"\nSclae?[Y/N]（Y）:", "\n是否影响物体缩放[Y/N]（Y）:"};
constexpr frame::Text kRigidPrompt{
    "\nWhether the affected object is a rigid body (the rigid body will not curve, but can only rotate and "
    "move)?[Y/N]（Y）:",
    "\n被影响物体是否是刚体（刚体不会曲线化，只能旋转、移动）[Y/N]（Y）:"};

constexpr frame::Text kVerticalCurvePrompt{"\nPlease select a curve: ", "\n请选择一根竖向曲线影响曲线: "};
// This message has only ever been shown in English.
constexpr frame::Text kNothingPicked{"\nNothing selected", "\nNothing selected"};
constexpr frame::Text kFadingPrompt{"\nIs the impact getting smaller and smaller[N]:", "\n影响是渐远渐小吗（Y）?[N]:"};
constexpr frame::Text kNotACurve{
    "\n Which you selected as an influence curve is not a line, polyline, or spline.",
    "\n您选中的影响力曲线它不是一根直线、多段线或样条曲线。"};

// plAffClick's own texts.
constexpr frame::Text kClickPrompt{"\nPick a point to apply the influence there <Enter to finish>:",
                                   "\n请点取施加影响的位置<回车结束>:"};
constexpr frame::Text kClickCount{"\nApplied the influence <%d > time(s).", "\n施加了< %d >次影响。"};

constexpr int kFewestStrength = 1;
constexpr int kMostStrength = 10;
constexpr int kDefaultStrength = 3;
// The view height that stands in when VIEWSIZE cannot be read.
constexpr double kFallbackViewSize = 10.0;
// The default distance is this fraction of the view height.
constexpr double kDefaultDistanceOfView = 0.5;
// A distance below the view height divided by this gives the default.
constexpr double kSmallestDistanceDivisor = 50.0;

// Everything PLAFFECT and plAffClick ask before they act.
struct Setup {
  std::vector<host::ObjectId> influences;
  std::vector<host::ObjectId> affected;
  InfluenceParams params;
  RigidFlags flags;
  bool rigid = true;
};

// The distance prompt with the default half the view height; Enter keeps the
// default, a cancel ends the command; a distance under a fiftieth of the view
// height gives the default.
std::optional<double> askDistance(host::Host& host) {
  double viewSize = kFallbackViewSize;
  if (frame::getSysVar(host, "VIEWSIZE", viewSize) != frame::kSysVarOk) viewSize = kFallbackViewSize;
  double distance = viewSize * kDefaultDistanceOfView;
  host.editor.initGet(frame::kPositiveBits, "");
  int result = frame::getDist(host, kDistancePrompt, distance);
  if (result != host::RTNORM && result != host::RTNONE) return std::nullopt;
  if (viewSize / kSmallestDistanceDivisor > distance) distance = viewSize * kDefaultDistanceOfView;
  return distance;
}

std::optional<Setup> askSetup(host::Host& host) {
  Setup setup;
  if (!frame::selectCurves(host, kInfluenceCurvesPrompt, setup.influences)) return std::nullopt;
  if (!frame::selectEntities(host, kAffectedPrompt, setup.affected)) return std::nullopt;
  int strength = frame::askInt(host, kStrengthPrompt, kDefaultStrength, kFewestStrength, kMostStrength);
  setup.params.strength = strength / 10.0;
  std::optional<double> distance = askDistance(host);
  if (!distance) return std::nullopt;
  setup.params.distance = *distance;
  setup.flags.move = frame::askYesNo(host, kMovePrompt, true);
  setup.flags.rotate = frame::askYesNo(host, kRotatePrompt, false);
  setup.flags.scale = frame::askYesNo(host, kScalePrompt, true);
  setup.rigid = frame::askYesNo(host, kRigidPrompt, true);
  return setup;
}

// One influence curve acting on every affected object but itself, in
// selection order; objects erased earlier (a bent curve's old self) are skipped.
void actOnAll(host::Host& host, const host::EntityData& influence, host::ObjectId influenceId,
              const std::vector<host::ObjectId>& affected, const Setup& setup) {
  for (host::ObjectId id : affected) {
    if (id == influenceId) continue;
    std::optional<host::Entity> e = host.drawing.read(id);
    if (!e) continue;
    applyInfluence(host, influence, *e, setup.params, setup.flags, setup.rigid);
  }
}

}  // namespace

void plAffect(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<Setup> setup = askSetup(host);
  if (!setup) return;
  for (host::ObjectId influenceId : setup->influences) {
    std::optional<host::Entity> influence = host.drawing.read(influenceId);
    if (!influence || !host::isCurve(influence->data)) continue;
    actOnAll(host, influence->data, influenceId, setup->affected, *setup);
  }
}

void plAffectMoveX(frame::CommandContext& context) {
  host::Host& host = context.host;
  host::ObjectId curveId;
  ge::Point3d picked;
  if (frame::entSel(host, kVerticalCurvePrompt, curveId, picked) != host::RTNORM) {
    frame::print(host, kNothingPicked);
    return;
  }
  std::vector<host::ObjectId> affected;
  if (!frame::selectEntities(host, kAffectedPrompt, affected)) return;
  bool fading = frame::askYesNo(host, kFadingPrompt, false);
  std::optional<host::Entity> curve = host.drawing.read(curveId);
  if (!curve || !host::isCurve(curve->data)) {
    frame::print(host, kNotACurve);
    return;
  }
  shiftAlongVerticalCurve(host, *curve, affected, fading, true);
}

// The interactive variant on the command line: the same questions as
// PLAFFECT, then every picked point applies one step of every influence
// curve carried there (moved so that the centre of its extents lies on the
// point), until Enter. A bent curve is followed to its replacement, so later
// steps bend it further.
void plAffClick(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<Setup> setup = askSetup(host);
  if (!setup) return;
  int steps = 0;
  ge::Point3d at;
  // While the point is dragged, the influence curves ride on the cursor.
  host::Editor::DragPreview carriedTo = [&](const ge::Point3d& cursor) {
    std::vector<host::EntityData> shown;
    for (host::ObjectId influenceId : setup->influences) {
      std::optional<host::Entity> influence = host.drawing.read(influenceId);
      ge::Extents3d ext;
      if (!influence || host.curves.getGeomExtents(influence->data, ext) != host::ErrorStatus::eOk) continue;
      ge::Point3d centre{(ext.min.x + ext.max.x) / 2, (ext.min.y + ext.max.y) / 2, (ext.min.z + ext.max.z) / 2};
      if (host.curves.transformBy(influence->data, ge::Matrix3d::translation(cursor - centre)) == host::ErrorStatus::eOk)
        shown.push_back(std::move(influence->data));
    }
    return shown;
  };
  while (host.editor.dragPoint(nullptr, kClickPrompt.chosen(), carriedTo, at) == host::RTNORM) {
    for (host::ObjectId influenceId : setup->influences) {
      std::optional<host::Entity> influence = host.drawing.read(influenceId);
      if (!influence || !host::isCurve(influence->data)) continue;
      ge::Extents3d ext;
      if (host.curves.getGeomExtents(influence->data, ext) != host::ErrorStatus::eOk) continue;
      ge::Point3d centre{(ext.min.x + ext.max.x) / 2, (ext.min.y + ext.max.y) / 2, (ext.min.z + ext.max.z) / 2};
      host::EntityData carried = influence->data;
      if (host.curves.transformBy(carried, ge::Matrix3d::translation(at - centre)) != host::ErrorStatus::eOk)
        continue;
      for (host::ObjectId& id : setup->affected) {
        if (id == influenceId) continue;
        std::optional<host::Entity> e = host.drawing.read(id);
        if (!e) continue;
        bool bends = !setup->rigid && host::isCurve(e->data);
        if (!applyInfluence(host, carried, *e, setup->params, setup->flags, setup->rigid) || !bends) continue;
        std::vector<host::ObjectId> space = host.drawing.entitiesOf(host.drawing.currentSpace());
        if (!space.empty()) id = space.back();
      }
    }
    ++steps;
  }
  frame::print(host, kClickCount, steps);
}

}  // namespace commands
