#include "formula/formula_command.h"

#include <string>

#include "formula/main_dlg.h"
#include "frame/prompts.h"
#include "frame/text.h"

namespace formula {
namespace {

constexpr frame::Text kCurvePrompt{"\nFormula curve [1--71] <%s>: ", "\n公式曲线 [1--71] <%s>: "};
constexpr frame::Text kParamPrompt{"\n%s [%d--%d] <%d>: ", "\n%s [%d--%d] <%d>: "};
constexpr frame::Text kKindPrompt{"\nCurve kind [Spline/Polyline] <%s>: ", "\n曲线类型 [Spline/Polyline] <%s>: "};
constexpr frame::Text kUcsPromptYes{"\nDraw UCS? [Yes/No] <Yes>: ", "\n绘制坐标系? [Yes/No] <Yes>: "};
constexpr frame::Text kUcsPromptNo{"\nDraw UCS? [Yes/No] <No>: ", "\n绘制坐标系? [Yes/No] <No>: "};

// A prompt already formatted in the active language.
struct Formatted {
  std::string text;
  frame::Text asText() const { return {text, text}; }
};

template <class... Args>
Formatted formatted(const frame::Text& text, const Args&... args) {
  return {frame::format(text, args...)};
}

void askCurve(host::Host& host, CMainDlgDlg& dialog) {
  int current = dialog.selectedIndex();
  Formatted prompt = formatted(kCurvePrompt, dialog.catalogue()[current].name);
  int number = frame::askInt(host, prompt.asText(), current + 1, 1, kCurveCount);
  dialog.onSelectionChange(number - 1);
}

void askParameters(host::Host& host, CMainDlgDlg& dialog) {
  for (int k = 0; k < kParamCount; ++k) {
    const ParamGroupView& group = dialog.group(k);
    if (!group.visible) continue;
    int current = dialog.values()[k];
    Formatted prompt = formatted(kParamPrompt, group.caption, group.rangeMin, group.rangeMax, current);
    int bits = host::RSG_NONEG | (group.rangeMin > 0 ? host::RSG_NOZERO : 0);
    int value = frame::askInt(host, prompt.asText(), current, group.rangeMin, group.rangeMax, bits);
    dialog.onEditChange(k, std::to_string(value));
  }
}

void askCurveKind(host::Host& host, CMainDlgDlg& dialog) {
  Formatted prompt = formatted(kKindPrompt, dialog.curveKindText(dialog.curveKindIndex() > 0 ? 1 : 0));
  std::string keyword;
  host.editor.initGet(0, "Spline Polyline");
  if (host.editor.getKword(prompt.text, keyword) != host::RTNORM) return;
  if (keyword == "Spline") dialog.onCurveKindChange(0);
  if (keyword == "Polyline") dialog.onCurveKindChange(1);
}

void askDrawUcs(host::Host& host, CMainDlgDlg& dialog) {
  bool current = dialog.drawUcs();
  dialog.onDrawUcsChange(frame::askYesNo(host, current ? kUcsPromptYes : kUcsPromptNo, current));
}

}  // namespace

void formulaCommand(frame::CommandContext& context) {
  host::Host& host = context.host;
  CMainDlgDlg dialog(host, context.settings);
  dialog.onInitDialog();
  askCurve(host, dialog);
  askParameters(host, dialog);
  askCurveKind(host, dialog);
  askDrawUcs(host, dialog);
  ge::Point3d origin;
  if (frame::getPoint(host, kOriginPrompt, origin) != host::RTNORM) return;
  dialog.previewAt(origin);
  dialog.finish();
}

}  // namespace formula
