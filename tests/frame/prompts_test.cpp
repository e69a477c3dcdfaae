// Prompt wrappers, the numeric prompt convention, the yes/no question and the
// selection helpers, in both languages.
#include <gtest/gtest.h>

#include "tests/support/languages.h"

#include "fake_host.h"
#include "frame/language.h"
#include "frame/prompts.h"
#include "frame/selection.h"

namespace {

using frame_test::Reply;
using host::ResBuf;

class Prompts : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override { frame::setChinese(GetParam()); }
  void TearDown() override { frame::setChinese(false); }
  bool chinese() const { return GetParam(); }
  void answer(std::initializer_list<Reply> replies) { fake.editor.replies.insert(fake.editor.replies.end(), replies); }

  frame_test::FakeHost fake;
  const frame::Text countPrompt{"\nPlease input the array rows[2--1000](9):", "\n请阵列行数[2--1000](9):"};
};

TEST_P(Prompts, DistancesRealsAndPointsWithoutDefaultEndOnAnythingButAnAnswer) {
  answer({Reply::real(2.5), Reply::enter(), Reply::cancel(), Reply::point({1, 2, 3}), Reply::enter()});
  frame::Text p{"\nInfluence distance:", "\n请输入影响距离:"};
  EXPECT_EQ(frame::askDist(fake.host, p), 2.5);
  EXPECT_FALSE(frame::askDist(fake.host, p));
  EXPECT_FALSE(frame::askReal(fake.host, p));
  EXPECT_EQ(frame::askPoint(fake.host, p), (ge::Point3d{1, 2, 3}));
  EXPECT_FALSE(frame::askPoint(fake.host, p));
}

TEST_P(Prompts, KeywordPromptsAskAgainWhileTheAnswerIsEnter) {
  answer({Reply::enter(), Reply::enter(), Reply::otherKeyword("M"), Reply::enter(), Reply::integer(7)});
  int value = 3;
  frame::Answer a = frame::askIntOrKeyword(fake.host, countPrompt, "M", value);
  EXPECT_EQ(a.result, host::RTKWORD);
  EXPECT_EQ(a.keyword, "M");
  EXPECT_EQ(value, 3);
  EXPECT_EQ(fake.editor.initGets.size(), 3u) << "asked three times";
  EXPECT_EQ(fake.editor.initGets.back().keywords, "M");
  a = frame::askIntOrKeyword(fake.host, countPrompt, "M", value);
  EXPECT_EQ(a.result, host::RTNORM);
  EXPECT_EQ(value, 7);
}

TEST(Filters, AreOrGroupsOfDxfTypeNames) {
  auto names = [](const host::ResBufList& list) {
    std::vector<std::string> out;
    for (const ResBuf& rb : list) out.push_back(std::to_string(rb.type) + ":" + std::get<std::string>(rb.value));
    return out;
  };
  EXPECT_EQ(names(frame::polylineFilter()),
            (std::vector<std::string>{"-4:<or", "0:POLYLINE", "0:LWPOLYLINE", "-4:or>"}));
  EXPECT_EQ(names(frame::lwPolylineFilter()),
            (std::vector<std::string>{"-4:<or", "0:LWPOLYLINE", "0:LWPOLYLINE", "-4:or>"}));
  EXPECT_EQ(names(frame::curveFilter()),
            (std::vector<std::string>{"-4:<or", "0:POLYLINE", "0:LWPOLYLINE", "0:LINE", "0:ELLIPSE", "0:CIRCLE",
                                      "0:HELIX", "0:ARC", "0:SPLINE", "-4:or>"}));
  EXPECT_EQ(names(frame::closedShapeFilter()),
            (std::vector<std::string>{"-4:<or", "0:LWPOLYLINE", "0:POLYLINE", "0:CIRCLE", "0:ELLIPSE", "0:INSERT",
                                      "0:SPLINE", "-4:or>"}));
}

TEST_P(Prompts, CurveSelectionKeepsOnlyCurvesAndPickOneTakesTheFirst) {
  auto line = fake.drawing.add(host::Line{{0, 0, 0}, {1, 0, 0}});
  auto text = fake.drawing.add(host::Text{});
  auto circle = fake.drawing.add(host::Circle{{0, 0, 0}, 1});
  answer({Reply::selection({line, text, circle}), Reply::selection({text})});
  std::vector<host::ObjectId> ids{host::ObjectId{99}};
  EXPECT_TRUE(frame::selectCurves(fake.host, {}, ids));
  EXPECT_EQ(ids, (std::vector<host::ObjectId>{host::ObjectId{99}, line, circle})) << "appended in selection order";
  EXPECT_EQ(fake.editor.ssgets[0].mode, "");
  EXPECT_EQ(fake.editor.ssgets[0].filter, frame::curveFilter());
  EXPECT_FALSE(frame::selectCurves(fake.host, {}, ids)) << "no curve among the selection";
  EXPECT_EQ(fake.editor.transcript.find(chinese() ? "未选中" : "No Curve"), std::string::npos)
      << "a selection without curves prints no message";
  answer({Reply::selection({circle, line})});
  EXPECT_EQ(frame::pickOne(fake.host, {"", ""}, frame::PickKind::kClosedShapesAndBlocks), circle);
}

TEST_P(Prompts, SelectionDefaultsAndMessages) {
  answer({Reply::cancel(), Reply::selection({}), Reply::cancel(), Reply::cancel()});
  std::vector<host::ObjectId> ids;
  EXPECT_FALSE(frame::selectCurves(fake.host, {"", ""}, ids));
  EXPECT_FALSE(frame::selectEntities(fake.host, {}, ids));
  EXPECT_EQ(frame::pickOne(fake.host, {"\nPick:", "\n选择:"}, frame::PickKind::kClosedShapesAndBlocks),
            host::kNullId);
  EXPECT_EQ(frame::pickOne(fake.host, {"\nPick:", "\n选择:"}, frame::PickKind::kLwPolylines), host::kNullId);
  std::string expected = chinese() ? "\n请选择多根曲线>未选中曲线。\n\n请选择物体>未选中物体。\n\n选择:没有选中物体。\n"
                                     "\n选择:没有选中轻量多段线。\n"
                                   : "Please select Curves >\nNo Curve selected.\nPlease select Entities >\n"
                                     "No Entity selected.\n\nPick:No Entity selected.\n\nPick:No LWPOLYLINE selected.\n";
  EXPECT_EQ(fake.editor.transcript, expected);
  EXPECT_EQ(fake.editor.ssgets[1].filter, std::nullopt) << "entity selection has no filter";
  EXPECT_EQ(fake.editor.ssgets[2].mode, ":S");
  EXPECT_EQ(fake.editor.ssgets[2].filter, frame::closedShapeFilter());
  EXPECT_EQ(fake.editor.ssgets[3].filter, frame::lwPolylineFilter());
}

TEST_P(Prompts, AGivenPromptReplacesOnlyItsOwnDefault) {
  answer({Reply::cancel()});
  std::vector<host::ObjectId> ids;
  frame::selectCurves(fake.host, {"Pick curves:", ""}, ids);
  EXPECT_EQ(fake.editor.transcript.rfind(chinese() ? "\n请选择多根曲线>" : "Pick curves:", 0), 0u);
}

INSTANTIATE_TEST_SUITE_P(Languages, Prompts, testing::Bool(), test_support::languageName);

}  // namespace
