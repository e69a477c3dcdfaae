#include "formula/main_dlg.h"

#include <cassert>
#include <charconv>
#include <climits>

#include "formula/coordinate_frame.h"
#include "frame/language.h"
#include "frame/prompts.h"
#include "frame/text.h"
#include "geom/curve_kind.h"

namespace formula {
namespace {

constexpr frame::Text kTitle{"Math Formula Curves", "数学公式曲线"};
constexpr std::array<frame::Text, 6> kControlCaptions{{{"parm1", "参数1"},
                                                       {"parm2", "参数2"},
                                                       {"parm3", "参数3"},
                                                       {"parm4", "参数4"},
                                                       {"Draw UCS", "绘制坐标系"},
                                                       {"Preview", "预览"}}};
constexpr std::array<frame::Text, 2> kCurveKinds{{{"Spline", "生成 Spline"}, {"Polyline", "生成 Polyline"}}};

// Ranges the edits and sliders have before a curve is chosen.
constexpr std::array<std::pair<int, int>, kParamCount> kProvisionalRanges{{{1, 100}, {1, 1000}, {1, 100}, {1, 100}}};

// A point farther than this from the unpicked marker counts as picked.
constexpr double kPickedTolerance = 0.0001;

std::string asEditText(int value) { return std::to_string(value); }

}  // namespace

int parseEditInteger(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
  bool negative = false;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
  long long value = 0;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
    value = value * 10 + (text[i] - '0');
    if (value > static_cast<long long>(INT_MAX) + 1) value = static_cast<long long>(INT_MAX) + 1;
  }
  if (negative) value = -value;
  if (value > INT_MAX) value = INT_MAX;
  if (value < INT_MIN) value = INT_MIN;
  return static_cast<int>(value);
}

CMainDlgDlg::CMainDlgDlg(host::Host& host, frame::Settings& settings) : host_(host), settings_(settings) {}

void CMainDlgDlg::onInitDialog() {
  catalogue_ = &catalogueFor(frame::isChinese());
  origin_ = kUnpickedOrigin;
  drawn_ = false;
  for (int k = 0; k < kParamCount; ++k) {
    auto [low, high] = kProvisionalRanges[k];
    groups_[k].rangeMin = low;
    groups_[k].rangeMax = high;
    // Until a curve shows the slot, its value is the bottom of the provisional range.
    groups_[k].sliderPos = lastSliderPos_[k] = values_[k] = low;
    groups_[k].editText = asEditText(low);
  }
  settled_ = {};
  drawUcs_ = settings_.readInt(kSettingDrawUcs) != 0;
  curveKindIndex_ = settings_.readInt(kSettingCurveIsPline) != 0 ? 1 : 0;
  std::uint32_t stored = settings_.readInt(kSettingListIndex);
  onSelectionChange(stored < static_cast<std::uint32_t>(kCurveCount) ? static_cast<int>(stored) : 0);
}

void CMainDlgDlg::onSelectionChange(int index) {
  drawn_ = false;
  selected_ = index >= 0 && index < kCurveCount ? index : -1;
  if (selected_ < 0) return;
  const FormulaCurveDef& row = (*catalogue_)[selected_];
  pictureId_ = row.pictureId;
  for (int k = 0; k < kParamCount; ++k) {
    const FormulaParamDef& param = row.params[k];
    ParamGroupView& view = groups_[k];
    view.visible = param.shown();
    if (!view.visible) {
      // A hidden slot keeps the value it was drawn with or given; until then
      // it holds the listed default of the row shown (when the row lists one),
      // so that the first curve of a session comes out as listed.
      bool listed = param.minValue != 0 || param.maxValue != 0;
      if (!settled_[k] && listed) values_[k] = param.defaultValue;
      continue;
    }
    view.caption = param.caption;
    view.rangeMin = param.minValue;
    view.rangeMax = param.maxValue;
    showValue(k, asEditText(param.defaultValue));
  }
}

void CMainDlgDlg::onEditChange(int slot, std::string_view text) {
  assert(slot >= 0 && slot < kParamCount);
  settled_[slot] = true;
  showValue(slot, text);
}

void CMainDlgDlg::showValue(int slot, std::string_view text) {
  ParamGroupView& view = groups_[slot];
  int value = parseEditInteger(text);
  int clamped = frame::clampToRange(value, view.rangeMin, view.rangeMax);
  view.editText = clamped != value ? asEditText(clamped) : std::string(text);
  values_[slot] = clamped;
  view.sliderPos = clamped;
  lastSliderPos_[slot] = clamped;  // the slider now stands here; moving back must update the edit
}

void CMainDlgDlg::onSliderMoved(int slot, int position) {
  assert(slot >= 0 && slot < kParamCount);
  ParamGroupView& view = groups_[slot];
  position = frame::clampToRange(position, view.rangeMin, view.rangeMax);  // a slider cannot leave its range
  view.sliderPos = position;
  values_[slot] = position;
  settled_[slot] = true;
  if (position != lastSliderPos_[slot]) {
    lastSliderPos_[slot] = position;
    view.editText = asEditText(position);
  }
  if (drawn_ && originPicked()) draw();
}

void CMainDlgDlg::onPreview() {
  drawn_ = true;
  applyCurveKind();
  pickOrigin();
  draw();
}

void CMainDlgDlg::previewAt(const ge::Point3d& origin) {
  drawn_ = true;
  applyCurveKind();
  origin_ = origin;
  draw();
}

void CMainDlgDlg::onClose() {
  if (drawn_ && originPicked())
    draw();
  else
    onPreview();
  finish();
}

void CMainDlgDlg::finish() {
  saveSettings();
  if (!drawUcs_) return;
  if (auto reach = reachAround(host_, drawnIds_, origin_)) drawCoordinateFrame(host_, origin_, *reach);
}

std::string_view CMainDlgDlg::curveKindText(int index) const {
  return index >= 0 && index < 2 ? kCurveKinds[index].chosen() : std::string_view{};
}

bool CMainDlgDlg::originPicked() const { return origin_.distanceTo(kUnpickedOrigin) > kPickedTolerance; }

std::string_view CMainDlgDlg::title() const { return kTitle.chosen(); }

std::array<std::string_view, 6> CMainDlgDlg::controlCaptions() const {
  std::array<std::string_view, 6> captions;
  for (std::size_t i = 0; i < captions.size(); ++i) captions[i] = kControlCaptions[i].chosen();
  return captions;
}

void CMainDlgDlg::applyCurveKind() const { geom::setCurveKindIsSpline(curveKindIndex_ <= 0); }

void CMainDlgDlg::draw() {
  drawFormulaCurve(host_, selected_, origin_, values_, drawnIds_);
  settled_.fill(true);
}

bool CMainDlgDlg::pickOrigin() {
  ge::Point3d picked;
  if (frame::getPoint(host_, kOriginPrompt, picked) != host::RTNORM) return false;
  origin_ = picked;
  return true;
}

void CMainDlgDlg::saveSettings() {
  settings_.writeInt(kSettingDrawUcs, drawUcs_ ? 1 : 0);
  settings_.writeInt(kSettingCurveIsPline, curveKindIndex_ > 0 ? static_cast<std::uint32_t>(curveKindIndex_) : 0);
  settings_.writeInt(kSettingListIndex, selected_ > 0 ? static_cast<std::uint32_t>(selected_) : 0);
}

}  // namespace formula
