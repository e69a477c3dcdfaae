// Prompts, selections and the system-variable guard driven by scripts through
// the embedded host's command line, in both languages. Small test commands
// registered beside the plug-in's own call the helpers and print what they got.
#include <gtest/gtest.h>

#include "tests/support/languages.h"

#include "embedded_session.h"
#include "frame/language.h"
#include "frame/output.h"
#include "frame/prompts.h"
#include "frame/selection.h"
#include "frame/sysvars.h"

namespace {

using frame_test::EmbeddedSession;

class OnHost : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    if (chinese()) session.settingsFile().writeInt(standalone::kCorvaneKey, "ChineseVersion", 1);
    session.load();
    addTestCommand("TYESNO", [](host::Host& h) { printYesNo(h, true); });
    addTestCommand("TNOYES", [](host::Host& h) { printYesNo(h, false); });
    addTestCommand("TCOUNT", [](host::Host& h) {
      int rows = frame::askInt(h, {"\nPlease input the array rows[2--1000](9):", "\n请阵列行数[2--1000](9):"}, 9, 2,
                               1000);
      frame::print(h, {"\nrows=%d\n", "\n行数=%d\n"}, rows);
    });
    addTestCommand("TCURVES", [](host::Host& h) {
      std::vector<host::ObjectId> ids;
      bool any = frame::selectCurves(h, {}, ids);
      std::string kinds;
      for (auto id : ids) kinds += std::string(host::dxfName(h.drawing.read(id)->data)) + " ";
      frame::print(h, {"\ncurves=%d %s%s\n", "\n曲线=%d %s%s\n"}, static_cast<int>(ids.size()), kinds,
                   any ? "true" : "false");
    });
    addTestCommand("TGUARD", [](host::Host& h) {
      frame::SdSysVarStack stack(h);
      stack.pushShort("PDMODE", 35);
      stack.pushReal("PDSIZE", 2.5);
      stack.pushShort("NOSUCHVAR", 1);
      int mode = 0;
      double size = 0;
      frame::getSysVar(h, "PDMODE", mode);
      frame::getSysVar(h, "PDSIZE", size);
      frame::print(h, {"\ninside=%d %.1f\n", "\n内部=%d %.1f\n"}, mode, size);
    });
  }
  void TearDown() override { frame::setChinese(false); }
  bool chinese() const { return GetParam(); }

  static void printYesNo(host::Host& h, bool byDefault) {
    bool yes = frame::askYesNo(h, {"\nLower Left default?[Y/N](Y):", "\n是否把默认起点设在左下角[Y/N](Y):"}, byDefault);
    frame::print(h, {"\nanswer=%s\n", "\n回答=%s\n"}, yes ? "yes" : "no");
  }
  void addTestCommand(const char* name, void (*body)(host::Host&)) {
    host::Host& h = session.host().host();
    h.commandStack.addCommand("FrameTest", std::string("TEST_") + name, name, host::ACRX_CMD_MODAL,
                              [&h, body] { body(h); });
  }
  std::string run(const std::string& script) {
    std::string out = session.run(script);
    EXPECT_FALSE(session.lastResult().failure) << *session.lastResult().failure << "\n" << out;
    return out;
  }
  std::string said(const char* en, const char* zh) const { return chinese() ? zh : en; }
  // The values a test command printed after label, in order.
  static std::vector<std::string> printed(const std::string& out, const std::string& label) {
    std::vector<std::string> values;
    for (auto at = out.find(label); at != std::string::npos; at = out.find(label, at + 1))
      values.push_back(out.substr(at + label.size(), out.find('\n', at) - at - label.size()));
    return values;
  }

  EmbeddedSession session;
};

TEST_P(OnHost, YesNoAnswers) {
  // Enter and Escape keep the default; "No", "N" and "Yes" are keywords.
  std::string out = run("TYESNO\n\nTYESNO No\nTYESNO N\nTYESNO Yes\nTNOYES\n\nTNOYES ^C\nTYESNO ^C\nTNOYES y\n");
  EXPECT_EQ(printed(out, said("answer=", "回答=")),
            (std::vector<std::string>{"yes", "no", "no", "yes", "no", "no", "yes", "yes"}))
      << out;
  EXPECT_NE(out.find(said("Lower Left default?[Y/N](Y):", "是否把默认起点设在左下角[Y/N](Y):")), std::string::npos);
}

TEST_P(OnHost, NumericPromptKeepsTheDefaultOnEnterOrEscapeClampsAndAsksAgainAfterZeroOrNegative) {
  std::string out = run("TCOUNT\n\nTCOUNT 5000\nTCOUNT 1\nTCOUNT 40\nTCOUNT 0 -3 12\nTCOUNT ^C\n");
  EXPECT_EQ(printed(out, said("rows=", "行数=")), (std::vector<std::string>{"9", "1000", "2", "40", "12", "9"}))
      << out;
  EXPECT_NE(out.find(said("Please input the array rows[2--1000](9):", "请阵列行数[2--1000](9):")), std::string::npos);
}

TEST_P(OnHost, CurveSelectionKeepsOnlyCurvesAndSaysWhenThereAreNone) {
  std::string out = run("TCURVES ALL\n\n");
  EXPECT_NE(out.find(said("No Curve selected.", "未选中曲线。")), std::string::npos) << out;
  EXPECT_NE(out.find(said("curves=0 false", "曲线=0 false")), std::string::npos) << out;

  session.add(host::Line{{0, 0, 0}, {10, 0, 0}});
  session.add(host::Text{{0, 5, 0}, {}, 2, "not a curve"});
  session.add(host::Line{{0, 10, 0}, {10, 10, 0}});
  out = run("TCURVES ALL\n\n");
  EXPECT_NE(out.find(said("curves=2 LINE LINE true", "曲线=2 LINE LINE true")), std::string::npos) << out;
  EXPECT_NE(out.find(said("Please select Curves >", "请选择多根曲线>")), std::string::npos) << out;
}

TEST_P(OnHost, GuardRestoresVariablesAfterTheCommand) {
  host::Host& h = session.host().host();
  int modeBefore = -1;
  double sizeBefore = -1;
  ASSERT_EQ(frame::getSysVar(h, "PDMODE", modeBefore), frame::kSysVarOk);
  ASSERT_EQ(frame::getSysVar(h, "PDSIZE", sizeBefore), frame::kSysVarOk);
  std::string out = run("TGUARD\n");
  EXPECT_NE(out.find(said("inside=35 2.5", "内部=35 2.5")), std::string::npos) << out;
  EXPECT_NE(out.find("Could not save state of system variable \"NOSUCHVAR\"."), std::string::npos) << out;
  int mode = -1;
  double size = -1;
  frame::getSysVar(h, "PDMODE", mode);
  frame::getSysVar(h, "PDSIZE", size);
  EXPECT_EQ(mode, modeBefore);
  EXPECT_EQ(size, sizeBefore);
}

INSTANTIATE_TEST_SUITE_P(Languages, OnHost, testing::Bool(), test_support::languageName);

}  // namespace
