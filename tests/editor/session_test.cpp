// The command loop, the command stack and the host commands driven by typing
// and by tokens: unknown names, scripts that stop mid-prompt, ZOOM, ERASE,
// MENULOAD through queued expressions, CMDECHO.
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host_fixture.h"
#include "standalone/db/dxf_reader.h"

namespace corvane_test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

double viewSize(HostFixture& f) {
  host::ResBuf v;
  EXPECT_EQ(f.host().sysvars().getVar("VIEWSIZE", v), host::RTNORM);
  return std::get<double>(v.value);
}

TEST(Session, UnknownCommandIsReportedAndTheRunFailsWhileCommentsAndTheCaseOfNamesDoNotMatter) {
  HostFixture f;
  std::string t = f.run("; a comment\nXYZ\nPROBE Q\nprobe quit\n_test_probe Q\n");
  EXPECT_THAT(t, Not(HasSubstr("comment")));
  EXPECT_THAT(t, HasSubstr("Command: XYZ\nUnknown command \"XYZ\".  Press F1 for help.\nCommand: PROBE\n"));
  ASSERT_TRUE(f.lastResult().failure);
  EXPECT_THAT(*f.lastResult().failure, HasSubstr("XYZ"));
  EXPECT_EQ(f.lastResult().commandsRun, 3);
}

TEST(Session, InputEndingWhileAPromptWaitsFailsNamingThePromptAndTheNextRunStartsAfresh) {
  HostFixture f;
  f.run("PROBE Int 0\n\n");
  ASSERT_TRUE(f.lastResult().failure);
  EXPECT_THAT(*f.lastResult().failure, HasSubstr("Enter an integer:"));
  EXPECT_THAT(f.run("PROBE Int 0\n\n5 Quit\n"), HasSubstr("-> RTNORM 5\n"));
  EXPECT_FALSE(f.lastResult().failure);
}

TEST(CommandStack, GroupsNamesAndRemoval) {
  HostFixture f;
  standalone::CommandRegistry& r = f.host().commands();
  int runs = 0;
  EXPECT_TRUE(r.addCommand("G", "GLOBAL_ONE", "ONE", 0, [&] { ++runs; }));
  EXPECT_FALSE(r.addCommand("G", "global_one", "OTHER", 0, [] {}));  // same global name in the group
  EXPECT_FALSE(r.addCommand("G", "X2", "one", 0, [] {}));            // same local name in the group
  f.run("one\n_GLOBAL_ONE\nglobal_one\n");
  EXPECT_EQ(runs, 3);
  f.run("_ONE\n");  // a local name is no global name
  EXPECT_TRUE(f.lastResult().failure);
  EXPECT_TRUE(r.removeGroup("g"));
  f.run("ONE\n");
  EXPECT_EQ(runs, 3);
}

TEST(Zoom, WindowCenterScaleExtentsWithTextsAndPrevious) {
  HostFixture f;
  f.add(host::Line{{0, 0, 0}, {100, 20, 0}});
  f.add(host::Text{{118, 0, 0}, {}, 1, "end"});  // three characters of 0.75: its box reaches x = 120.25
  EXPECT_DOUBLE_EQ(viewSize(f), 10);  // the empty drawing's view
  f.run("ZOOM E\n");
  EXPECT_DOUBLE_EQ(viewSize(f), 75.15625);  // extents at 1600x1000: 120.25 wide needs 75.15625 high
  f.run("ZOOM W 0,0 16,4\n");
  EXPECT_DOUBLE_EQ(viewSize(f), 10);
  f.run("ZOOM 2x\n");
  EXPECT_DOUBLE_EQ(viewSize(f), 5);
  f.run("ZOOM C 50,10 40\n");
  EXPECT_DOUBLE_EQ(viewSize(f), 40);
  host::ResBuf ctr;
  f.host().sysvars().getVar("VIEWCTR", ctr);
  EXPECT_EQ(std::get<ge::Point3d>(ctr.value), (ge::Point3d{50, 10, 0}));
  f.run("ZOOM P\nZOOM P\n");
  EXPECT_DOUBLE_EQ(viewSize(f), 10);
  f.run("ZOOM P\n");
  EXPECT_DOUBLE_EQ(viewSize(f), 75.15625);
  EXPECT_FALSE(f.lastResult().failure);
}

TEST(Zoom, ObjectFitsTheSelectedObjects) {
  HostFixture f;
  f.add(host::Line{{0, 0, 0}, {100, 20, 0}});
  host::ObjectId small = f.add(host::Line{{200, 0, 0}, {216, 4, 0}});
  std::string t = f.run("ZOOM O #" + handleOf(small) + "\n\n");
  EXPECT_THAT(t, HasSubstr("[All/Center/Extents/Previous/Scale/Window/Object] <real time>: O\nSelect objects: "));
  EXPECT_DOUBLE_EQ(viewSize(f), 10);  // 16 wide at 1600x1000
  host::ResBuf ctr;
  f.host().sysvars().getVar("VIEWCTR", ctr);
  EXPECT_EQ(std::get<ge::Point3d>(ctr.value), (ge::Point3d{208, 2, 0}));
  f.run("ZOOM O\n\n");  // nothing selected: the view stays
  EXPECT_DOUBLE_EQ(viewSize(f), 10);
}

// The curve services the plug-in sees give block references their extents,
// looking the block up in the host's drawing.
TEST(Zoom, BlockReferencesHaveExtentsThroughTheHostsCurveServices) {
  test_support::ScriptedHost session("editor-blocks");
  session.startHost(standalone::readDxf("0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n8\n0\n2\nSTEP\n70\n0\n10\n0\n20\n0\n30\n0\n"
                                        "0\nLINE\n8\n0\n10\n0\n20\n0\n30\n0\n11\n2\n21\n1\n31\n0\n0\nENDBLK\n8\n0\n"
                                        "0\nENDSEC\n0\nSECTION\n2\nENTITIES\n0\nENDSEC\n0\nEOF\n"),
                    session.root() / "corvane", [](standalone::EmbeddedHost&) {});
  host::BlockReference ref;
  ref.blockName = "STEP";
  ref.position = {10, 10, 0};
  ref.scale = {2, 2, 2};
  ge::Extents3d ext;
  ASSERT_EQ(session.host().host().curves.getGeomExtents(ref, ext), host::ErrorStatus::eOk);
  EXPECT_EQ(ext.min, (ge::Point3d{10, 10, 0}));
  EXPECT_EQ(ext.max, (ge::Point3d{14, 12, 0}));
  ref.blockName = "MISSING";
  EXPECT_NE(session.host().host().curves.getGeomExtents(ref, ext), host::ErrorStatus::eOk);
}

TEST(HostCommandTokens, EraseDrivenByTokensEchoFollowsCmdechoTooFewTokensCancelAndUnknownNamesFail) {
  HostFixture f;
  host::ObjectId a = f.add(host::Line{{0, 0, 0}, {1, 0, 0}});
  host::ObjectId b = f.add(host::Line{{0, 5, 0}, {1, 5, 0}});
  host::Host& h = f.host().host();
  int rc = h.hostCommands.command({host::ResBuf::text("_.ERASE"), host::ResBuf::entity(a), host::ResBuf::enter()});
  EXPECT_EQ(rc, host::RTNORM);
  EXPECT_FALSE(h.drawing.read(a));
  EXPECT_TRUE(h.drawing.read(b));
  EXPECT_THAT(f.transcript(), HasSubstr("Command: _.ERASE\nSelect objects: #" + handleOf(a) + "\n1 found\n"));

  std::size_t before = f.transcript().size();
  h.sysvars.setVar("CMDECHO", host::ResBuf::shortInt(0));
  rc = h.hostCommands.command({host::ResBuf::text("ERASE"), host::ResBuf::entity(b), host::ResBuf::enter()});
  EXPECT_EQ(rc, host::RTNORM);
  EXPECT_FALSE(h.drawing.read(b));
  EXPECT_THAT(f.transcript().substr(before), Not(HasSubstr("Select objects")));
  // Too few tokens cancel; unknown names fail.
  EXPECT_EQ(h.hostCommands.command({host::ResBuf::text("ZOOM"), host::ResBuf::text("W"), host::ResBuf::text("0,0")}),
            host::RTCAN);
  EXPECT_EQ(h.hostCommands.command({host::ResBuf::text("NOSUCH")}), host::RTERROR);
}

class MenuTest : public ::testing::Test {
 protected:
  void writeMenu(const std::string& text) { std::ofstream(path) << text; }
  // A command that queues what a plug-in queues at drawing load.
  void addQueueingCommand() {
    host::Host& h = f.host().host();
    h.commandStack.addCommand("T", "QUEUE_MENU", "QM", 0, [&h, this] {
      h.hostCommands.queueExpression("(if(null(menugroup \"CORVANE\"))(command \"menuload\" \"" + path + "\")) ");
      h.hostCommands.queueExpression("(menucmd \"P12=+CORVANE.POP1\")");
    });
  }

  HostFixture f;
  std::string path = (f.root() / "menu.cuix").string();
};

TEST_F(MenuTest, QueuedExpressionsLoadTheMenuOnceAndPutItOnTheMenuBar) {
  writeMenu("CORVANE-MENU 1\nGROUP CORVANE\nPOPUP POP1 Corvane\nITEM Divide | ^C^C_ZORL_PLDevide\nSEPARATOR\n");
  addQueueingCommand();
  std::string t = f.run("QM\n");
  EXPECT_THAT(t, HasSubstr("Command: menuload\nEnter name of menu file to load: " + path +
                           "\nMenu group \"CORVANE\" loaded: 1 pop-up menu, 2 entries.\n"));
  EXPECT_TRUE(f.host().host().hostCommands.isMenuGroupLoaded("corvane"));
  EXPECT_EQ(f.host().menus().menuBar(), std::vector<std::string>{"CORVANE.POP1"});
  EXPECT_THAT(f.host().menus().describeMenuBar(), HasSubstr("Corvane (CORVANE.POP1)\n  Divide  [^C^C_ZORL_PLDevide]\n"));
  // The second time the group is there, so the if does nothing.
  std::string again = f.run("QM\n");
  EXPECT_THAT(again, Not(HasSubstr("MENULOAD")));
}

TEST_F(MenuTest, BadMenuFileLoadsNothingAndOtherExpressionsAreRefused) {
  writeMenu("CORVANE-MENU 1\nGROUP CORVANE\nITEM Divide | x\n");
  addQueueingCommand();
  std::string t = f.run("QM\n");
  EXPECT_THAT(t, HasSubstr("Cannot load the menu file " + path + ": line 3: ITEM before the first POPUP\n"));
  EXPECT_FALSE(f.host().host().hostCommands.isMenuGroupLoaded("CORVANE"));
  EXPECT_THAT(t, HasSubstr("; error: menucmd cannot do"));
  // Expressions other than the menu-loading forms are refused.
  f.host().host().hostCommands.queueExpression("(setq a 1)");
  f.host().hostCommands().runQueuedExpressions();
  EXPECT_THAT(f.transcript(), HasSubstr("Command: (setq a 1)\n; error: the function SETQ is not supported\n"));
}

}  // namespace
}  // namespace corvane_test
