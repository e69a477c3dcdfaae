#include "frame/selection.h"

#include "frame/output.h"

namespace frame {

namespace {

constexpr Text kDefaultCurvesPrompt{"Please select Curves >\n", "\n请选择多根曲线>"};
constexpr Text kDefaultEntitiesPrompt{"Please select Entities >\n", "\n请选择物体>"};
constexpr Text kNoCurve{"No Curve selected.\n", "未选中曲线。\n"};
constexpr Text kNoEntity{"No Entity selected.\n", "未选中物体。\n"};
constexpr Text kNoClosedShape{"No Entity selected.\n", "没有选中物体。\n"};
constexpr Text kNoLwPolyline{"No LWPOLYLINE selected.\n", "没有选中轻量多段线。\n"};

// Each literal of the caller's pair, or the default where it is empty.
Text withDefaults(const Text& prompt, const Text& defaults) {
  return {prompt.en.empty() ? defaults.en : prompt.en, prompt.zh.empty() ? defaults.zh : prompt.zh};
}

// Prints the prompt and runs an ordinary selection; the selected ids, or
// nothing after the message when the selection failed or is empty.
std::vector<host::ObjectId> promptAndSelect(host::Host& host, const Text& prompt, const host::ResBufList* filter,
                                            const Text& nothingSelected) {
  std::vector<host::ObjectId> selection;
  print(host, prompt);
  if (host.editor.ssget("", nullptr, nullptr, filter, selection) != host::RTNORM || selection.empty()) {
    print(host, nothingSelected);
    return {};
  }
  return selection;
}

}  // namespace

host::ResBufList typeFilter(std::initializer_list<std::string_view> dxfNames) {
  host::ResBufList list;
  list.push_back(host::ResBuf::group(-4, "<or"));
  for (auto name : dxfNames) list.push_back(host::ResBuf::group(0, std::string(name)));
  list.push_back(host::ResBuf::group(-4, "or>"));
  return list;
}

host::ResBufList polylineFilter() { return typeFilter({"POLYLINE", "LWPOLYLINE"}); }

host::ResBufList lwPolylineFilter() { return typeFilter({"LWPOLYLINE", "LWPOLYLINE"}); }

host::ResBufList curveFilter() {
  return typeFilter({"POLYLINE", "LWPOLYLINE", "LINE", "ELLIPSE", "CIRCLE", "HELIX", "ARC", "SPLINE"});
}

host::ResBufList closedShapeFilter() {
  return typeFilter({"LWPOLYLINE", "POLYLINE", "CIRCLE", "ELLIPSE", "INSERT", "SPLINE"});
}

bool selectCurves(host::Host& host, const Text& prompt, std::vector<host::ObjectId>& ids) {
  host::ResBufList filter = curveFilter();
  std::size_t appended = 0;
  for (host::ObjectId id : promptAndSelect(host, withDefaults(prompt, kDefaultCurvesPrompt), &filter, kNoCurve)) {
    auto entity = host.drawing.read(id);
    if (entity && host::isCurve(entity->data)) {
      ids.push_back(id);
      ++appended;
    }
  }
  return appended > 0;
}

bool selectEntities(host::Host& host, const Text& prompt, std::vector<host::ObjectId>& ids) {
  auto selection = promptAndSelect(host, withDefaults(prompt, kDefaultEntitiesPrompt), nullptr, kNoEntity);
  ids.insert(ids.end(), selection.begin(), selection.end());
  return !selection.empty();
}

host::ObjectId pickOne(host::Host& host, const Text& prompt, PickKind kind) {
  bool closed = kind == PickKind::kClosedShapesAndBlocks;
  host::ResBufList filter = closed ? closedShapeFilter() : lwPolylineFilter();
  std::vector<host::ObjectId> selection;
  print(host, prompt);
  if (host.editor.ssget(":S", nullptr, nullptr, &filter, selection) != host::RTNORM || selection.empty()) {
    print(host, closed ? kNoClosedShape : kNoLwPolyline);
    return host::kNullId;
  }
  return selection.front();
}

}  // namespace frame
