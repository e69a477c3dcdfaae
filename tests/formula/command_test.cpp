// FORMULA on the command line: the prompts in order, Enter keeping what is
// shown, the drawing made and the choices stored.
#include <gtest/gtest.h>

#include "formula/draw.h"
#include "formula/formula_command.h"
#include "formula/main_dlg.h"
#include "formula_host.h"

namespace formula {
namespace {

using formula_test::keyword;
using formula_test::Reply;

class FormulaCommand : public formula_test::CommandTest {
 protected:
  void run(const std::vector<Reply>& replies) { CommandTest::run(formulaCommand, replies, "ZORL_FORMULA", "FORMULA"); }
};

TEST_F(FormulaCommand, EnterEverywhereDrawsTheShownCurveAtThePickedOrigin) {
  run({Reply::enter(), Reply::enter(), Reply::enter(), Reply::enter(), Reply::point({5, 5, 0})});
  EXPECT_EQ(h->editor.transcript,
            "\nFormula curve [1--71] <1. Heart>: "
            "\nWidth [1--1000] <10>: "
            "\nCurve kind [Spline/Polyline] <Spline>: "
            "\nDraw UCS? [Yes/No] <No>: "
            "\nPlease specify the origin>>");
  auto entities = h->modelSpace();
  ASSERT_EQ(entities.size(), 1u);
  EXPECT_EQ(entities[0].props.color.index, 1);
  EXPECT_EQ(stored(kSettingListIndex), 0u);
}

TEST_F(FormulaCommand, AnswersChooseTheCurveItsParametersAndKind) {
  run({Reply::integer(14), Reply::integer(2), Reply::integer(0), Reply::enter(), keyword("Polyline"),
       keyword("No"), Reply::point({0, 0, 0})});
  EXPECT_NE(h->editor.transcript.find("\nFormula curve [1--71] <1. Heart>: \nLoops [1--100] <10>: "
                                     "\nDirection [0--1] <1>: \nRadius [1--100] <1>: "
                                     "\nCurve kind [Spline/Polyline] <Spline>: "),
            std::string::npos)
      << h->editor.transcript;
  // Direction accepts 0: no "no zero" bit on its prompt.
  EXPECT_EQ(h->editor.initGets.at(2).bits & host::RSG_NOZERO, 0);
  EXPECT_NE(h->editor.initGets.at(1).bits & host::RSG_NOZERO, 0);
  auto entities = h->modelSpace();
  ASSERT_EQ(entities.size(), 1u);
  auto* pl = std::get_if<host::LwPolyline>(&entities[0].data);
  ASSERT_NE(pl, nullptr);
  ASSERT_EQ(pl->vertices.size(), 72u);
  EXPECT_LT(pl->vertices[5].x, 0);  // direction 0 mirrors x: the first quarter turn lies left of the axis
  EXPECT_EQ(stored(kSettingListIndex), 13u);
  EXPECT_EQ(stored(kSettingCurveIsPline), 1u);
}

TEST_F(FormulaCommand, OutOfRangeAnswersAreClamped) {
  run({Reply::integer(500), Reply::integer(5000), Reply::enter(), Reply::enter(), Reply::enter(),
       Reply::point({0, 0, 0})});
  // Curve 500 becomes 71, its R 5000 becomes 1000.
  EXPECT_NE(h->editor.transcript.find("\nR [1--1000] <10>: \nPrecision [1--36] <12>: "), std::string::npos);
  EXPECT_EQ(stored(kSettingListIndex), 70u);
  EXPECT_EQ(h->modelSpace().size(), 1u);
}

TEST_F(FormulaCommand, NoPointAtTheOriginPromptEndsWithoutDrawing) {
  run({Reply::integer(3), Reply::enter(), Reply::enter(), Reply::enter(), Reply::enter(), Reply::cancel()});
  EXPECT_TRUE(h->modelSpace().empty());
  EXPECT_FALSE(stored(kSettingListIndex).has_value());
}

TEST_F(FormulaCommand, ChinesePromptsAndTheStoredChoicesShownNextTime) {
  storeInt(kSettingListIndex, 5);
  storeInt(kSettingCurveIsPline, 1);
  storeInt(kSettingDrawUcs, 1);
  frame::setChinese(true);
  run({Reply::enter(), Reply::enter(), Reply::enter(), Reply::enter(), Reply::enter(), Reply::enter(),
       Reply::point({0, 0, 0})});
  EXPECT_EQ(h->editor.transcript,
            "\n公式曲线 [1--71] <6. 双曲线>: "
            "\na [1--10] <4>: \nb [1--10] <3>: \nN [1--10] <1>: "
            "\n曲线类型 [Spline/Polyline] <生成 Polyline>: "
            "\n绘制坐标系? [Yes/No] <Yes>: "
            "\n请指定原点>>");
  int curves = 0, texts = 0;
  for (const auto& e : h->modelSpace()) {
    curves += std::holds_alternative<host::LwPolyline>(e.data);
    texts += std::holds_alternative<host::Text>(e.data);
  }
  EXPECT_EQ(curves, 2);  // both branches of the hyperbola
  EXPECT_GT(texts, 0);   // and the frame
}

// Each row chosen in a fresh session and drawn with Enter at every prompt
// equals the row's generator run with the listed defaults, hidden slots included.
class EveryRowAtItsDefaults : public FormulaCommand, public ::testing::WithParamInterface<int> {};

TEST_P(EveryRowAtItsDefaults, EqualsTheGeneratorAtTheListedDefaults) {
  const int row = GetParam();
  const ge::Point3d origin{3, -2, 0};
  std::vector<Reply> replies{Reply::integer(row + 1)};
  for (const FormulaParamDef& p : englishCatalogue()[row].params)
    if (p.shown()) replies.push_back(Reply::enter());
  replies.insert(replies.end(), {Reply::enter(), Reply::enter(), Reply::point(origin)});
  run(replies);

  formula_test::FormulaHost reference(store);
  DrawnIds drawn;
  drawFormulaCurve(reference.host, row, origin, defaultParams(row), drawn);
  std::vector<host::Entity> got = h->modelSpace(), want = reference.modelSpace();
  ASSERT_EQ(got.size(), want.size());
  ASSERT_FALSE(want.empty());
  for (std::size_t i = 0; i < got.size(); ++i) EXPECT_TRUE(got[i].data == want[i].data) << "entity " << i;
}

INSTANTIATE_TEST_SUITE_P(Rows, EveryRowAtItsDefaults, ::testing::Range(0, kCurveCount),
                         [](const ::testing::TestParamInfo<int>& row) { return "row" + std::to_string(row.param + 1); });

}  // namespace
}  // namespace formula
