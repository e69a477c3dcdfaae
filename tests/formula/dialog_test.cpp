// The dialog model: start-up from the stored choices, list and edit changes,
// sliders with live redraw, Preview, closing, and the stored choices read back
// by the next run, in both languages.
#include <gtest/gtest.h>

#include "formula/coordinate_frame.h"
#include "formula/draw.h"
#include "formula/main_dlg.h"
#include "formula_host.h"
#include "frame/language.h"
#include "geom/curve_kind.h"
#include "tests/support/languages.h"

namespace formula {
namespace {

using formula_test::FormulaHost;
using formula_test::Reply;

class Dialog : public formula_test::FormulaFixture<::testing::TestWithParam<bool>> {
 protected:
  void SetUp() override { frame::setChinese(GetParam()); }

  CMainDlgDlg open() {
    CMainDlgDlg dlg(h->host, h->settings);
    dlg.onInitDialog();
    return dlg;
  }
  size_t entityCount() const { return h->modelSpace().size(); }
};

TEST_P(Dialog, StartsWithTheHeartSplineAndNoFrameWhenNothingIsStored) {
  CMainDlgDlg dlg = open();
  EXPECT_EQ(dlg.selectedIndex(), 0);
  EXPECT_EQ(dlg.curveKindIndex(), 0);
  EXPECT_EQ(dlg.curveKindText(0), GetParam() ? "生成 Spline" : "Spline");
  EXPECT_EQ(dlg.curveKindText(1), GetParam() ? "生成 Polyline" : "Polyline");
  EXPECT_FALSE(dlg.drawUcs());
  EXPECT_FALSE(dlg.isDrawn());
  EXPECT_FALSE(dlg.originPicked());
  EXPECT_EQ(dlg.catalogue()[0].name, GetParam() ? "1. 心形曲线" : "1. Heart");
  EXPECT_EQ(dlg.group(0).caption, GetParam() ? "宽度" : "Width");
  EXPECT_EQ(dlg.group(0).editText, "10");
  EXPECT_EQ(dlg.pictureId(), 407);
  EXPECT_EQ(dlg.title(), GetParam() ? "数学公式曲线" : "Math Formula Curves");
  EXPECT_EQ(dlg.controlCaptions()[0], GetParam() ? "参数1" : "parm1");
  EXPECT_EQ(dlg.controlCaptions()[5], GetParam() ? "预览" : "Preview");
  for (int k = 1; k < 4; ++k) EXPECT_FALSE(dlg.group(k).visible);
  EXPECT_EQ(entityCount(), 0u);
}

TEST_P(Dialog, TheHyperbolaShowsThreeGroupsAndTheHiddenSlotKeepsItsValue) {
  CMainDlgDlg dlg = open();
  dlg.onSelectionChange(14);  // four slots: Loops, Direction, Dist, Radius
  dlg.onEditChange(3, "42");
  dlg.onSelectionChange(5);
  EXPECT_TRUE(dlg.group(0).visible && dlg.group(1).visible && dlg.group(2).visible);
  EXPECT_FALSE(dlg.group(3).visible);
  EXPECT_EQ(dlg.group(0).caption, "a");
  EXPECT_EQ(dlg.group(2).caption, "N");
  EXPECT_EQ(dlg.group(1).rangeMax, 10);
  EXPECT_EQ(dlg.values()[0], 4);
  EXPECT_EQ(dlg.pictureId(), 412);
  EXPECT_EQ(dlg.values()[3], 42);
  EXPECT_EQ(dlg.group(3).editText, "42");
}

TEST_P(Dialog, HiddenSlotsTakeTheListedDefaultUntilSetThenKeepTheirValue) {
  CMainDlgDlg dlg = open();
  dlg.onSelectionChange(51);  // the snake: slot 4 hidden, listed 5
  EXPECT_FALSE(dlg.group(3).visible);
  EXPECT_EQ(dlg.values()[3], 5);
  dlg.onSelectionChange(29);  // the spherical curve, nothing drawn yet: its own hidden 12
  EXPECT_EQ(dlg.values()[3], 12);
  dlg.onSelectionChange(60);  // the peanut: slot 3 hidden, listed 30
  EXPECT_EQ(dlg.values()[2], 30);
  dlg.previewAt({0, 0, 0});
  EXPECT_EQ(generatorParams(60, dlg.values()), defaultParams(60)) << "the first curve comes out as listed";
  dlg.onSelectionChange(51);  // drawn since: the hidden slot keeps the value drawn with
  EXPECT_EQ(dlg.values()[3], 12);
  EXPECT_EQ(dlg.values()[2], 18);  // shown: its default
  dlg.onSelectionChange(39);  // the conical hat hides slot 3: the value the snake showed stays
  EXPECT_EQ(dlg.values()[2], 18);
}

TEST_P(Dialog, EditsAreClampedAndFollowTheSlider) {
  CMainDlgDlg dlg = open();
  dlg.onSelectionChange(1);  // Waves [1..100], Hight [1..1000]
  dlg.onEditChange(1, "5000");
  EXPECT_EQ(dlg.values()[1], 1000);
  EXPECT_EQ(dlg.group(1).editText, "1000");
  EXPECT_EQ(dlg.group(1).sliderPos, 1000);
  dlg.onEditChange(0, "-3");
  EXPECT_EQ(dlg.group(0).editText, "1");
  dlg.onEditChange(0, "");  // an empty edit reads as 0, below the range
  EXPECT_EQ(dlg.values()[0], 1);
  dlg.onEditChange(0, "37");
  EXPECT_EQ(dlg.group(0).editText, "37");
  EXPECT_EQ(dlg.group(0).sliderPos, 37);
  EXPECT_EQ(parseEditInteger("  12abc"), 12);
  EXPECT_EQ(parseEditInteger("99999999999999"), 2147483647);
  EXPECT_EQ(parseEditInteger("-99999999999999"), -2147483647 - 1);
  // Found by fuzzing: slider to 40, edit to 5, slider back to 40 left "5" in the edit.
  dlg.onSliderMoved(0, 40);
  dlg.onEditChange(0, "5");
  dlg.onSliderMoved(0, 40);
  EXPECT_EQ(dlg.group(0).editText, "40");
  EXPECT_EQ(dlg.values()[0], 40);
  // Slots no curve has shown yet hold the bottom of their provisional range.
  EXPECT_EQ(open().values()[3], 1);
}

TEST_P(Dialog, SlidersRedrawOnlyAfterPreview) {
  CMainDlgDlg dlg = open();
  dlg.onSelectionChange(23);
  dlg.onSliderMoved(0, 5);
  EXPECT_EQ(dlg.group(0).editText, "5");
  EXPECT_EQ(entityCount(), 0u);  // not drawn yet

  h->editor.replies.push_back(Reply::point({10, 20, 0}));
  dlg.onPreview();
  EXPECT_NE(h->editor.transcript.find(GetParam() ? "\n请指定原点>>" : "\nPlease specify the origin>>"),
            std::string::npos);
  ASSERT_EQ(entityCount(), 1u);
  host::ObjectId first = dlg.drawnIds().at(0);

  dlg.onSliderMoved(1, 30);
  ASSERT_EQ(entityCount(), 1u);  // replaced, not added
  EXPECT_NE(dlg.drawnIds().at(0), first);
  EXPECT_FALSE(h->drawing.read(first).has_value());
  dlg.onSliderMoved(1, 31);
  EXPECT_EQ(entityCount(), 1u);

  dlg.onSelectionChange(13);  // a list change clears the drawn flag
  dlg.onSliderMoved(0, 3);
  EXPECT_EQ(entityCount(), 1u);
  EXPECT_EQ(h->modelSpace()[0].id, dlg.drawnIds().at(0));  // the old curve stays until the next draw
}

TEST_P(Dialog, ACancelledOriginKeepsTheMarker) {
  CMainDlgDlg dlg = open();
  h->editor.replies.push_back(Reply::cancel());
  dlg.onPreview();
  EXPECT_FALSE(dlg.originPicked());
  ASSERT_EQ(entityCount(), 1u);  // drawn at the unpicked marker
  auto pts = formula_test::pointsOf(h->modelSpace()[0]);
  EXPECT_DOUBLE_EQ(pts.at(0).z, kUnpickedOrigin.z);
  dlg.onSliderMoved(0, 20);  // no live redraw without a picked origin
  EXPECT_EQ(dlg.drawnIds().size(), 1u);
  EXPECT_EQ(h->modelSpace()[0].id, dlg.drawnIds()[0]);
}

TEST_P(Dialog, ClosingAsksForTheOriginOnlyWithoutPreview) {
  CMainDlgDlg dlg = open();
  dlg.onSelectionChange(21);
  h->editor.replies.push_back(Reply::point({1, 2, 0}));
  dlg.onClose();
  EXPECT_NE(h->editor.transcript.find(GetParam() ? "请指定原点" : "Please specify the origin"), std::string::npos);
  EXPECT_EQ(entityCount(), 1u);
  EXPECT_EQ(stored(kSettingListIndex), 21u);

  // After Preview, closing redraws in place without asking again.
  CMainDlgDlg previewed = open();
  h->editor.replies.push_back(Reply::point({1, 2, 0}));
  previewed.onPreview();
  std::string before = h->editor.transcript;
  previewed.onClose();
  EXPECT_EQ(h->editor.transcript, before);
  EXPECT_EQ(entityCount(), 2u);
}

TEST_P(Dialog, ChoicesPersistToTheNextRunAndNoSelectionIsStoredAsZero) {
  {
    CMainDlgDlg dlg = open();
    dlg.onSelectionChange(12);
    dlg.onCurveKindChange(1);
    dlg.onDrawUcsChange(true);
    h->editor.replies.push_back(Reply::point({0, 0, 0}));
    dlg.onClose();
    EXPECT_FALSE(geom::curveKindIsSpline());
  }
  EXPECT_EQ(stored(kSettingListIndex), 12u);
  EXPECT_EQ(stored(kSettingCurveIsPline), 1u);
  EXPECT_EQ(stored(kSettingDrawUcs), 1u);

  h = std::make_unique<FormulaHost>(store);  // a new session over the same store
  CMainDlgDlg next = open();
  EXPECT_EQ(next.selectedIndex(), 12);
  EXPECT_EQ(next.curveKindIndex(), 1);
  EXPECT_TRUE(next.drawUcs());

  storeInt(kSettingListIndex, 200);  // beyond the list: the first row
  EXPECT_EQ(open().selectedIndex(), 0);
  storeInt(kSettingListIndex, 70);
  EXPECT_EQ(open().selectedIndex(), 70);

  // No selection is stored as zero.
  CMainDlgDlg dlg = open();
  dlg.onSelectionChange(-1);
  dlg.onCurveKindChange(-1);
  h->editor.replies.push_back(Reply::point({0, 0, 0}));
  dlg.onClose();
  EXPECT_EQ(entityCount(), 0u);  // nothing to draw without a selection
  EXPECT_EQ(stored(kSettingListIndex), 0u);
  EXPECT_EQ(stored(kSettingCurveIsPline), 0u);
  EXPECT_TRUE(geom::curveKindIsSpline());  // no selection counts as "Spline"
}

TEST_P(Dialog, DrawUcsAddsAGraduatedFrameAroundTheCurve) {
  CMainDlgDlg dlg = open();
  dlg.onSelectionChange(21);  // four-leaved rose of radius 10
  dlg.onDrawUcsChange(true);
  h->editor.replies.push_back(Reply::point({50, 50, 0}));
  dlg.onClose();
  int lines = 0;
  for (const auto& e : h->modelSpace()) lines += std::holds_alternative<host::Line>(e.data);
  std::vector<std::string> labels = h->labels();
  // Two axes plus one tick mark per label; the rose reaches 10 on each side.
  EXPECT_EQ(lines, static_cast<int>(labels.size()) + 2);
  EXPECT_GE(labels.size(), 8u);
  EXPECT_TRUE(formula_test::contains(labels, "-10"));
  EXPECT_TRUE(formula_test::contains(labels, "10"));
}

TEST(CoordinateFrame, TickStepsAreOneTwoOrFiveTimesAPowerOfTen) {
  EXPECT_EQ(tickStep({-3, 3, -1, 1}), 1);        // short reaches still tick every unit
  EXPECT_EQ(tickStep({-10, 10, -10, 10}), 2);
  EXPECT_EQ(tickStep({0, 24, -3, 0}), 5);
  EXPECT_EQ(tickStep({-25, 25, -25, 25}), 5);
  EXPECT_EQ(tickStep({0, 51, 0, 0}), 20);       // 10.2 rounds up to 20
  EXPECT_EQ(tickStep({-4000, 0, 0, 10}), 1000);
}

INSTANTIATE_TEST_SUITE_P(Languages, Dialog, ::testing::Values(false, true), test_support::languageName);

}  // namespace
}  // namespace formula
