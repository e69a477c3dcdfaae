#pragma once
// The formula-curve dialog as a model without any toolkit: the list of curves,
// four parameter groups (caption, edit, slider), the curve-kind choice, the
// "Draw UCS" switch, the preview picture and the origin. A desktop dialog or
// the command line shows this state and forwards the user's actions to it.
#include <array>
#include <string>
#include <string_view>

#include "formula/catalogue.h"
#include "formula/draw.h"
#include "frame/settings.h"
#include "frame/text.h"
#include "ge/point.h"
#include "host/host.h"

namespace formula {

// Names of the stored values of the dialog.
inline constexpr std::string_view kSettingDrawUcs = "formula_XYcoor";
inline constexpr std::string_view kSettingCurveIsPline = "formula_curveIsPline";
inline constexpr std::string_view kSettingListIndex = "formula_ListIndex";

// The question for the origin of a drawing (the dialog, the command line and the variants).
inline constexpr frame::Text kOriginPrompt{"\nPlease specify the origin>>", "\n请指定原点>>"};

// The origin of a drawing that has not been picked yet.
inline constexpr ge::Point3d kUnpickedOrigin{0, 0, -99999.0};

// What one parameter group shows.
struct ParamGroupView {
  bool visible = true;
  std::string caption;
  int rangeMin = 1, rangeMax = 100;  // of both the edit and the slider
  int sliderPos = 1;
  std::string editText;
};

class CMainDlgDlg {
 public:
  CMainDlgDlg(host::Host& host, frame::Settings& settings);

  // Copies the catalogue of the active language, fills the list and the curve
  // kinds, restores the three stored choices and shows the stored curve.
  void onInitDialog();
  // The list's selection moved to index (-1: none): clears the drawn flag,
  // shows the row's picture and sets up its parameter groups with defaults.
  void onSelectionChange(int index);
  // The edit of slot (0..3) now reads text: parsed as an integer, clamped to
  // the slot's range (the clamped value written back when it was outside),
  // stored, and the slider moved to it. A slot the user set (or a curve was
  // drawn with) keeps its value while later rows hide it; one not set yet
  // takes the hidden default of each row shown.
  void onEditChange(int slot, std::string_view text);
  // The slider of slot moved to position: stored, shown in the edit, and the
  // curve redrawn at once when it has been drawn at a picked origin.
  void onSliderMoved(int slot, int position);
  // The curve-kind choice: 0 "Spline", 1 "Polyline", -1 none.
  void onCurveKindChange(int index) { curveKindIndex_ = index; }
  void onDrawUcsChange(bool checked) { drawUcs_ = checked; }
  // "Preview": sets drawn, applies the curve kind, asks for the origin (a
  // cancelled prompt keeps the stored one) and draws.
  void onPreview();
  // Draws at a known origin, as Preview does after a picked point.
  void previewAt(const ge::Point3d& origin);
  // Closing: the final draw (asking for an origin first unless the curve was
  // drawn at a picked one), the stored choices, and the frame when asked for.
  void onClose();
  // The end of closing after the final draw: stores the choices and draws the frame.
  void finish();

  // What the dialog shows.
  const Catalogue& catalogue() const { return *catalogue_; }
  int selectedIndex() const { return selected_; }
  const ParamGroupView& group(int slot) const { return groups_[slot]; }
  const std::array<int, kParamCount>& values() const { return values_; }
  int curveKindIndex() const { return curveKindIndex_; }
  std::string_view curveKindText(int index) const;
  bool drawUcs() const { return drawUcs_; }
  bool isDrawn() const { return drawn_; }
  const ge::Point3d& origin() const { return origin_; }
  bool originPicked() const;
  // Picture id of the preview shown (0 before any selection).
  int pictureId() const { return pictureId_; }
  const DrawnIds& drawnIds() const { return drawnIds_; }
  // The window's title in the active language.
  std::string_view title() const;
  // Labels of the four parameter groups' frames, the "Draw UCS" box and the
  // "Preview" button, in this order, in the active language.
  std::array<std::string_view, 6> controlCaptions() const;

 private:
  void applyCurveKind() const;
  // Puts a value into a slot's edit, slider and value as onEditChange does.
  void showValue(int slot, std::string_view text);
  void draw();
  // Asks for the origin; true when a point was given (it is then stored).
  bool pickOrigin();
  void saveSettings();

  host::Host& host_;
  frame::Settings& settings_;
  const Catalogue* catalogue_ = &englishCatalogue();
  int selected_ = -1;
  std::array<ParamGroupView, kParamCount> groups_{};
  std::array<int, kParamCount> values_{};
  std::array<int, kParamCount> lastSliderPos_{};
  std::array<bool, kParamCount> settled_{};  // set by the user or drawn with in this session
  int curveKindIndex_ = 0;
  bool drawUcs_ = false;
  bool drawn_ = false;
  ge::Point3d origin_ = kUnpickedOrigin;
  int pictureId_ = 0;
  DrawnIds drawnIds_;
};

// The integer an edit's text reads as: optional blanks and sign, then digits;
// 0 when there are none; saturated to the 32-bit range.
int parseEditInteger(std::string_view text);

}  // namespace formula
