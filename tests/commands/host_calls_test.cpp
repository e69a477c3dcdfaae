// What the commands ask of the host, checked over small fakes: the exact
// tokens sent to PEDIT with CMDECHO around them, and the conversion statuses
// that count as made.
#include <gtest/gtest.h>

#include "commands/commands.h"
#include "frame/language.h"
#include "frame/settings.h"
#include "standalone/db/database.h"
#include "tests/frame/fake_host.h"

namespace {

using frame_test::Reply;

// Records every token list a command sends, with CMDECHO as it was at that moment.
class RecordingHostCommands : public frame_test::FakeHostCommands {
 public:
  explicit RecordingHostCommands(const frame_test::FakeSystemVariables& vars) : vars_(vars) {}
  int command(const host::ResBufList& tokens) override {
    sent.push_back(tokens);
    echoWhileSent.push_back(std::get<std::int16_t>(vars_.vars.at("cmdecho").value));
    return host::RTNORM;
  }
  std::vector<host::ResBufList> sent;
  std::vector<int> echoWhileSent;

 private:
  const frame_test::FakeSystemVariables& vars_;
};

// Conversions that report a chosen status.
class ScriptedConversions : public frame_test::FakeCurves {
 public:
  host::ErrorStatus lwTo2d = host::ErrorStatus::eObjectToBeDeleted;
  host::ErrorStatus toLw = host::ErrorStatus::eObjectToBeDeleted;
  host::ErrorStatus convertLwTo2d(const host::LwPolyline& lw, host::Polyline2d& out) const override {
    out = {};
    for (const auto& v : lw.vertices) out.vertices.push_back({{v.x, v.y, 0}});
    return lwTo2d;
  }
  host::ErrorStatus convert2dToLw(const host::Polyline2d& pl, host::LwPolyline& out) const override {
    out = {};
    for (const auto& v : pl.vertices) out.vertices.push_back({v.position.x, v.position.y});
    return toLw;
  }
};

class HostCalls : public ::testing::Test {
 protected:
  frame_test::FakeEditor editor;
  standalone::DrawingDatabase drawing = standalone::DrawingDatabase::createEmpty();
  ScriptedConversions curves;
  frame_test::FakeSystemVariables sysvars;
  frame_test::FakeCommandStack commandStack;
  RecordingHostCommands hostCommands{sysvars};
  frame_test::FakeDemandLoad demandLoad;
  frame_test::FakeSettingsStore store;
  frame_test::FakePlatform platform;
  host::Host host{editor, drawing, curves, sysvars, commandStack, hostCommands, demandLoad, store, platform};
  frame::Settings settings{store};
  frame::CommandContext context{host, settings, "ZORL_TEST", "TEST"};

  void SetUp() override {
    frame::setChinese(false);
    sysvars.vars["cmdecho"] = host::ResBuf::shortInt(0);
  }

  host::ObjectId add(host::EntityData data) {
    host::Entity e;
    e.data = std::move(data);
    drawing.append(e);
    return e.id;
  }
  host::ObjectId lw() { return add(host::LwPolyline{{{0, 0}, {1, 0}, {1, 1}}}); }
  host::ObjectId old() {
    host::Polyline2d pl;
    pl.vertices = {{{0, 0, 0}}, {{1, 0, 0}}};
    return add(pl);
  }
};

TEST_F(HostCalls, CloseOpenAndWidthSendOnePeditWithTheWholeSet) {
  host::ObjectId a = lw(), b = old();
  sysvars.vars["cmdecho"] = host::ResBuf::shortInt(1);
  editor.replies = {Reply::selection({a, b})};
  commands::plBatchClose(context);
  editor.replies = {Reply::selection({b})};
  commands::plBatchOpen(context);
  editor.replies = {Reply::selection({a}), Reply::real(2.5)};
  commands::plBatchChangeW(context);
  editor.replies = {Reply::selection({a}), Reply::real(1e-12)};
  commands::plBatchChangeW(context);
  editor.replies = {Reply::selection({a}), Reply::cancel()};
  commands::plBatchChangeW(context);

  using host::ResBuf;
  std::vector<host::ResBufList> expected{
      {ResBuf::text("_PEDIT"), ResBuf::text("M"), ResBuf::entity(a), ResBuf::entity(b), ResBuf::enter(),
       ResBuf::text("C"), ResBuf::enter()},
      {ResBuf::text("_PEDIT"), ResBuf::text("M"), ResBuf::entity(b), ResBuf::enter(), ResBuf::text("O"),
       ResBuf::enter()},
      {ResBuf::text("_PEDIT"), ResBuf::text("M"), ResBuf::entity(a), ResBuf::enter(), ResBuf::text("W"),
       ResBuf::real(2.5), ResBuf::enter()},
      {ResBuf::text("_PEDIT"), ResBuf::text("M"), ResBuf::entity(a), ResBuf::enter(), ResBuf::text("W"),
       ResBuf::real(0), ResBuf::enter()},
      {ResBuf::text("_PEDIT"), ResBuf::text("M"), ResBuf::entity(a), ResBuf::enter(), ResBuf::text("W"),
       ResBuf::real(0), ResBuf::enter()},
  };
  EXPECT_EQ(hostCommands.sent, expected);
  EXPECT_EQ(hostCommands.echoWhileSent, (std::vector<int>{0, 0, 0, 0, 0}));
  EXPECT_EQ(sysvars.vars["cmdecho"], host::ResBuf::shortInt(1)) << "1 afterwards, whatever it was";
  // The width prompt forbids negative values only.
  EXPECT_EQ(editor.initGets.back().bits, host::RSG_NONEG);
}

TEST_F(HostCalls, NothingSelectedSendsNothingAndLeavesCmdechoAlone) {
  editor.replies = {Reply::cancel()};
  commands::plBatchClose(context);
  EXPECT_TRUE(hostCommands.sent.empty());
  EXPECT_EQ(editor.transcript, "Please select polyline >\nNo polyline selected.\n");
  EXPECT_EQ(sysvars.vars["cmdecho"], host::ResBuf::shortInt(0));
}

TEST_F(HostCalls, LightweightToOldCountsOnlyTheStatusOfAMadeConversion) {
  host::ObjectId a = lw();
  curves.lwTo2d = host::ErrorStatus::eOk;
  editor.replies = {Reply::selection({a})};
  commands::lwPL2pline2D(context);
  EXPECT_NE(editor.transcript.find("\nProcessed <0 > curve(s) OK."), std::string::npos) << editor.transcript;
  EXPECT_TRUE(std::holds_alternative<host::LwPolyline>(drawing.read(a)->data)) << "eOk leaves it as it was";

  curves.lwTo2d = host::ErrorStatus::eObjectToBeDeleted;
  editor.replies = {Reply::selection({a})};
  commands::lwPL2pline2D(context);
  EXPECT_NE(editor.transcript.find("\nProcessed <1 > curve(s) OK."), std::string::npos) << editor.transcript;
  EXPECT_TRUE(std::holds_alternative<host::Polyline2d>(drawing.read(a)->data));
  // The single-type filter has no or-brackets.
  EXPECT_EQ(editor.ssgets.back().filter, (host::ResBufList{host::ResBuf::group(0, "LWPOLYLINE")}));
}

TEST_F(HostCalls, OldToLightweightCountsTheConversionTheHostReportsAsOk) {
  host::ObjectId b = old();
  curves.toLw = host::ErrorStatus::eNotApplicable;
  editor.replies = {Reply::selection({b})};
  commands::oldPL2lw(context);
  EXPECT_NE(editor.transcript.find("\nProcessed <0 > curve(s) OK."), std::string::npos);
  curves.toLw = host::ErrorStatus::eObjectToBeDeleted;
  editor.replies = {Reply::selection({b})};
  commands::oldPL2lw(context);
  EXPECT_NE(editor.transcript.find("\nProcessed <1 > curve(s) OK."), std::string::npos) << editor.transcript;
  EXPECT_TRUE(std::holds_alternative<host::LwPolyline>(drawing.read(b)->data));
  EXPECT_EQ(editor.ssgets.back().filter, (host::ResBufList{host::ResBuf::group(0, "POLYLINE")}));
}

TEST_F(HostCalls, ReverseTellsAnEmptySetApartInChinese) {
  frame::setChinese(true);
  editor.replies = {Reply::selection({})};
  commands::plineReverse(context);
  EXPECT_EQ(editor.transcript, "请选择多段线>\n未选中多段线线。\n");
  editor.transcript.clear();
  editor.replies = {Reply::cancel()};
  commands::plineReverse(context);
  EXPECT_EQ(editor.transcript, "请选择多段线>\n未选中多段线。\n");
  frame::setChinese(false);
}

}  // namespace
