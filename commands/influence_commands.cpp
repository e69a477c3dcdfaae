// PLAFFECT, plAffectMoveX and plAffClick: influence curves push, turn, shrink
// or bend nearby objects along X.
#include <chrono>
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

// The drag preview shows the affected objects' next step only for this many
// objects at most, and only while one preview takes no longer than the budget.
constexpr std::size_t kMostPreviewed = 300;
constexpr std::chrono::milliseconds kPreviewBudget{60};

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

// The influence curve moved so that the centre of its extents lies on the point.
std::optional<host::EntityData> carriedCurve(const host::Host& host, host::EntityData curve, const ge::Point3d& to) {
  ge::Extents3d ext;
  if (host.curves.getGeomExtents(curve, ext) != host::ErrorStatus::eOk) return std::nullopt;
  ge::Point3d centre{(ext.min.x + ext.max.x) / 2, (ext.min.y + ext.max.y) / 2, (ext.min.z + ext.max.z) / 2};
  if (host.curves.transformBy(curve, ge::Matrix3d::translation(to - centre)) != host::ErrorStatus::eOk)
    return std::nullopt;
  return curve;
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
  // While the point is dragged, the influence curves ride on the cursor and
  // the affected objects show what one step there would make of them; past
  // kMostPreviewed objects, or once a preview took longer than
  // kPreviewBudget, the curves ride alone so that the cursor stays smooth.
  bool showAffected = setup->affected.size() <= kMostPreviewed;
  host::Editor::DragPreview carriedTo = [&](const ge::Point3d& cursor) {
    auto started = std::chrono::steady_clock::now();
    std::vector<host::EntityData> shown;
    std::vector<host::Entity> affected;
    std::vector<bool> changed;
    if (showAffected)
      for (host::ObjectId id : setup->affected)
        if (std::optional<host::Entity> e = host.drawing.read(id)) affected.push_back(std::move(*e));
    changed.assign(affected.size(), false);
    for (host::ObjectId influenceId : setup->influences) {
      std::optional<host::Entity> influence = host.drawing.read(influenceId);
      std::optional<host::EntityData> carried;
      if (influence) carried = carriedCurve(host, influence->data, cursor);
      if (!carried) continue;
      shown.push_back(*carried);
      if (!showAffected || !host::isCurve(influence->data)) continue;
      for (std::size_t i = 0; i < affected.size() && showAffected; ++i) {
        if (affected[i].id == influenceId) continue;
        if (auto shape = influencedShape(host, *carried, affected[i], setup->params, setup->flags, setup->rigid)) {
          affected[i].data = std::move(*shape);
          changed[i] = true;
        }
        showAffected = std::chrono::steady_clock::now() - started <= kPreviewBudget;
      }
    }
    if (showAffected)
      for (std::size_t i = 0; i < affected.size(); ++i)
        if (changed[i]) shown.push_back(std::move(affected[i].data));
    return shown;
  };
  while (host.editor.dragPoint(nullptr, kClickPrompt.chosen(), carriedTo, at) == host::RTNORM) {
    for (host::ObjectId influenceId : setup->influences) {
      std::optional<host::Entity> influence = host.drawing.read(influenceId);
      if (!influence || !host::isCurve(influence->data)) continue;
      std::optional<host::EntityData> carriedData = carriedCurve(host, influence->data, at);
      if (!carriedData) continue;
      const host::EntityData& carried = *carriedData;
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
