// PLDD, PLCLOSE, PLOPEN, PLGXK, PL2OLD and OLDPL2LW: one pass over a
// selection, each entity reversed, edited through the host's PEDIT, or
// converted between the lightweight and the old-style 2D polyline.
#include "commands/commands.h"
#include "commands/selection_set.h"
#include "frame/output.h"
#include "frame/prompts.h"
#include "frame/selection.h"
#include "frame/sysvars.h"

namespace commands {

namespace {


constexpr SelectionTexts kReverseSelection{{"Please select PLINE >\n", "请选择多段线>\n"},
                                           {"No PLINE selected.\n", "未选中多段线。\n"},
                                           {"No PLINE selected.\n", "未选中多段线线。\n"}};
constexpr frame::Text kNoPolyline{"No polyline selected.\n", "未选中多段线。\n"};
constexpr SelectionTexts kEditSelection{
    {"Please select polyline >\n", "请选择待优化的多段线>\n"}, kNoPolyline, kNoPolyline};
constexpr frame::Text kWidthPrompt{"\nPlease enter a new line width:", "\n请输入新的线宽:"};
constexpr frame::Text kNoLightweight{"No Polyline selected.\n", "未选中。\n"};
constexpr SelectionTexts kToOldSelection{
    {"Please select Lightweight Polyline(s) >\n", "请选择轻量级多段线>\n"}, kNoLightweight, kNoLightweight};
constexpr frame::Text kNoOld{"No Polyline2D selected.\n", "未选中。\n"};
constexpr SelectionTexts kToLwSelection{
    {"Please select old type Polyline(s) >\n", "请选择老式多段线>\n"}, kNoOld, kNoOld};

// Widths below this are sent as exactly 0.
constexpr double kSmallestWidth = 1e-11;

host::ResBufList reverseFilter() {
  return frame::typeFilter({"POLYLINE", "LWPOLYLINE", "LINE", "ELLIPSE", "CIRCLE", "HELIX", "ARC", "SPLINE"});
}

// Drives the host's PEDIT over the whole set with its Multiple option; the
// options follow the selection. CMDECHO is 0 while it runs and 1 afterwards,
// whatever it was before.
void editAllWithPedit(host::Host& host, const std::vector<host::ObjectId>& ids, const host::ResBufList& options) {
  frame::setSysVarShortQuietly(host, "cmdecho", 0);
  host::ResBufList tokens{host::ResBuf::text("_PEDIT"), host::ResBuf::text("M")};
  for (host::ObjectId id : ids) tokens.push_back(host::ResBuf::entity(id));
  tokens.push_back(host::ResBuf::enter());
  tokens.insert(tokens.end(), options.begin(), options.end());
  tokens.push_back(host::ResBuf::enter());
  host.hostCommands.command(tokens);
  frame::setSysVarShortQuietly(host, "cmdecho", 1);
}

void closeOrOpen(frame::CommandContext& context, const char* option) {
  host::Host& host = context.host;
  std::optional<std::vector<host::ObjectId>> ids = selectForCommand(host, kEditSelection, frame::polylineFilter());
  if (!ids) return;
  editAllWithPedit(host, *ids, {host::ResBuf::text(option)});
}

}  // namespace

void plineReverse(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<std::vector<host::ObjectId>> ids = selectForCommand(host, kReverseSelection, reverseFilter());
  if (!ids) return;
  int count = 0;
  for (host::ObjectId id : *ids) {
    std::optional<host::Entity> e = host.drawing.read(id);
    if (!e || !host::isCurve(e->data)) continue;
    if (host.curves.reverseCurve(e->data) != host::ErrorStatus::eOk) continue;
    if (host.drawing.write(*e) == host::ErrorStatus::eOk) ++count;
  }
  frame::print(host, kProcessed, count);
}

void plBatchClose(frame::CommandContext& context) { closeOrOpen(context, "C"); }

void plBatchOpen(frame::CommandContext& context) { closeOrOpen(context, "O"); }

void plBatchChangeW(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<std::vector<host::ObjectId>> ids = selectForCommand(host, kEditSelection, frame::polylineFilter());
  if (!ids) return;
  host.editor.initGet(host::RSG_NONEG, "");
  double width = 0;
  // The answer's status is not looked at: Enter or a cancel leaves width 0.
  frame::getDist(host, kWidthPrompt, width);
  if (width < kSmallestWidth) width = 0;
  editAllWithPedit(host, *ids, {host::ResBuf::text("W"), host::ResBuf::real(width)});
}

void lwPL2pline2D(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<std::vector<host::ObjectId>> ids =
      selectForCommand(host, kToOldSelection, singleTypeFilter("LWPOLYLINE"));
  if (!ids) return;
  int count = 0;
  for (host::ObjectId id : *ids) {
    std::optional<host::Entity> e = host.drawing.read(id);
    auto* lw = e ? std::get_if<host::LwPolyline>(&e->data) : nullptr;
    if (!lw) continue;
    host::Polyline2d converted;
    // Only this status means the conversion was made; eOk does not.
    if (host.curves.convertLwTo2d(*lw, converted) != host::ErrorStatus::eObjectToBeDeleted) continue;
    e->data = std::move(converted);  // the identity passes to the new polyline
    if (host.drawing.write(*e) == host::ErrorStatus::eOk) ++count;
  }
  frame::print(host, kProcessed, count);
}

void oldPL2lw(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<std::vector<host::ObjectId>> ids = selectForCommand(host, kToLwSelection, singleTypeFilter("POLYLINE"));
  if (!ids) return;
  int count = 0;
  for (host::ObjectId id : *ids) {
    std::optional<host::Entity> e = host.drawing.read(id);
    auto* old = e ? std::get_if<host::Polyline2d>(&e->data) : nullptr;
    if (!old) continue;  // a 3D polyline or a mesh: the conversion refuses it
    host::LwPolyline converted;
    if (host.curves.convertFrom2d(*old, converted) != host::ErrorStatus::eOk) continue;
    e->data = std::move(converted);
    if (host.drawing.write(*e) == host::ErrorStatus::eOk) ++count;
  }
  frame::print(host, kProcessed, count);
}

}  // namespace commands
