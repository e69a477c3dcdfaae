// The typed system-variable layer and the guard that restores changed variables.
#include <gtest/gtest.h>

#include "tests/support/languages.h"

#include "fake_host.h"
#include "frame/language.h"
#include "frame/sysvars.h"

namespace {

using frame::kSysVarFailed;
using frame::kSysVarOk;
using frame::SdSysVarNode;
using frame::SdSysVarStack;
using host::ResBuf;

class SysVarGuard : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    frame::setChinese(GetParam());
    vars().vars["cmdecho"] = ResBuf::shortInt(1);
    vars().vars["pdmode"] = ResBuf::shortInt(0);
    vars().vars["pdsize"] = ResBuf::real(0.0);
    vars().vars["clayer"] = ResBuf::text("0");
    vars().vars["viewctr"] = ResBuf::point3d({5, 6, 0});
    vars().vars["viewsize"] = ResBuf::real(100.0);
    vars().readOnly.insert("viewsize");
  }
  void TearDown() override { frame::setChinese(false); }

  frame_test::FakeSystemVariables& vars() { return fake.sysvars; }
  // Names of the variables set, in order.
  std::vector<std::string> setOrder() const {
    std::vector<std::string> names;
    for (auto& [name, value] : fake.sysvars.sets) names.push_back(name);
    return names;
  }

  frame_test::FakeHost fake;
};

TEST_P(SysVarGuard, TypedGetsReturnValuesOrFailWithoutTouchingTheOutput) {
  int i = -1;
  double d = -1;
  std::string s = "untouched";
  ge::Point3d p;
  ge::Point2d p2{9, 9};
  EXPECT_EQ(frame::getSysVar(fake.host, "cmdecho", i), kSysVarOk);
  EXPECT_EQ(i, 1);
  EXPECT_EQ(frame::getSysVar(fake.host, "viewsize", d), kSysVarOk);
  EXPECT_EQ(d, 100.0);
  EXPECT_EQ(frame::getSysVar(fake.host, "clayer", s), kSysVarOk);
  EXPECT_EQ(s, "0");
  EXPECT_EQ(frame::getSysVar(fake.host, "viewctr", p), kSysVarOk);
  EXPECT_EQ(p, (ge::Point3d{5, 6, 0}));

  s = "untouched";
  EXPECT_EQ(frame::getSysVar(fake.host, "nosuchvar", s), kSysVarFailed);
  EXPECT_EQ(s, "untouched");
  EXPECT_EQ(frame::getSysVar(fake.host, "viewsize", s), kSysVarFailed) << "a real does not read as text";
  EXPECT_EQ(frame::getSysVar(fake.host, "viewctr", p2), kSysVarFailed) << "a 3D point does not read as 2D";
  EXPECT_EQ(p2, (ge::Point2d{9, 9}));
}

TEST_P(SysVarGuard, AFailedSetShowsItsMessageBoxAndReturnsThree) {
  EXPECT_EQ(frame::setSysVarShort(fake.host, "pdmode", 35), kSysVarOk);
  EXPECT_TRUE(fake.editor.messageBoxes.empty());
  EXPECT_EQ(frame::setSysVarReal(fake.host, "viewsize", 5.0), kSysVarFailed);
  ASSERT_EQ(fake.editor.messageBoxes.size(), 1u);
  EXPECT_EQ(fake.editor.messageBoxes[0].second, "Could not set system variable \"viewsize\".");
  if (GetParam())
    EXPECT_EQ(fake.editor.messageBoxes[0].first.rfind("Corvane ", 0), 0u) << "product name and version label";
  else
    EXPECT_EQ(fake.editor.messageBoxes[0].first, "Corvane");
  frame::setSysVarShortQuietly(fake.host, "nosuchvar", 1);
  EXPECT_EQ(fake.editor.messageBoxes.size(), 1u) << "the quiet set shows nothing";
}

TEST_P(SysVarGuard, TheStackRestoresNewestFirst) {
  {
    SdSysVarStack stack(fake.host);
    stack.pushShort("cmdecho", 0);
    stack.pushReal("pdsize", 2.5);
    EXPECT_EQ(std::get<std::int16_t>(vars().vars["cmdecho"].value), 0);
    EXPECT_EQ(std::get<double>(vars().vars["pdsize"].value), 2.5);
    fake.sysvars.sets.clear();
  }
  EXPECT_EQ(setOrder(), (std::vector<std::string>{"pdsize", "cmdecho"}));
  EXPECT_EQ(std::get<std::int16_t>(vars().vars["cmdecho"].value), 1);
  EXPECT_EQ(std::get<double>(vars().vars["pdsize"].value), 0.0);
}

TEST_P(SysVarGuard, AVariablePushedTwiceEndsWithTheFirstSavedValue) {
  {
    SdSysVarStack stack(fake.host);
    stack.pushShort("pdmode", 3);
    stack.pushShort("pdmode", 35);
  }
  EXPECT_EQ(std::get<std::int16_t>(vars().vars["pdmode"].value), 0);
}

TEST_P(SysVarGuard, RemovingANamePushedTwiceRestoresOnlyTheNewerPush) {
  SdSysVarStack stack(fake.host);
  stack.pushShort("pdmode", 3);
  stack.pushText("clayer", "marks");
  stack.pushShort("pdmode", 35);
  stack.remove("pdmode");
  EXPECT_EQ(std::get<std::int16_t>(vars().vars["pdmode"].value), 3) << "the value the newer push saved";
  EXPECT_EQ(stack.size(), 2u);
  stack.remove("PDMODE");
  stack.remove("nosuchvar");
  EXPECT_EQ(stack.size(), 2u) << "names compare exactly; unknown names do nothing";
  EXPECT_EQ(std::get<std::string>(vars().vars["clayer"].value), "marks");
}

TEST_P(SysVarGuard, AnUnreadableVariableIsNeitherSetNorRestored) {
  {
    SdSysVarStack stack(fake.host);
    stack.pushShort("nosuchvar", 1);
    ASSERT_EQ(fake.editor.messageBoxes.size(), 1u);
    EXPECT_EQ(fake.editor.messageBoxes[0].second, "Could not save state of system variable \"nosuchvar\".");
  }
  EXPECT_EQ(fake.editor.messageBoxes.size(), 1u) << "the user sees the save message once";
  EXPECT_TRUE(fake.sysvars.sets.empty());
}

TEST_P(SysVarGuard, AVariableThatCannotBeSetIsStillRestored) {
  vars().vars["pdsize"] = ResBuf::real(1.5);
  {
    SdSysVarNode node(fake.host, "pdsize", ResBuf::text("wrong type"));
    EXPECT_TRUE(node.hasSavedValue());
    ASSERT_EQ(fake.editor.messageBoxes.size(), 1u);
    EXPECT_EQ(fake.editor.messageBoxes[0].second, "Could not set system variable \"pdsize\".");
  }
  ASSERT_EQ(fake.sysvars.sets.size(), 1u);
  EXPECT_EQ(fake.sysvars.sets[0].second, ResBuf::real(1.5));
}

INSTANTIATE_TEST_SUITE_P(Languages, SysVarGuard, testing::Bool(), test_support::languageName);

}  // namespace
