// The module's lifecycle: initialisation, menu loading per drawing, unload,
// and commands run through the table.
#include <gtest/gtest.h>

#include "tests/support/languages.h"

#include "fake_host.h"
#include "frame/builtin_commands.h"
#include "frame/errors.h"
#include "frame/language.h"
#include "frame/menu.h"
#include "frame/module.h"
#include "frame/output.h"

namespace {

using frame::AppMsg;
using frame::kSettingsKey;
using frame::Module;

class ModuleTest : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    if (GetParam()) fake.settings.writeInt(kSettingsKey, "ChineseVersion", 1);
  }
  void TearDown() override { frame::setChinese(false); }
  bool chinese() const { return GetParam(); }
  std::uint32_t stored(const char* name) { return *fake.settings.readInt(kSettingsKey, name); }

  frame_test::FakeHost fake;
  Module module{fake.host};
  frame::Settings settings{fake.settings};
};

TEST_P(ModuleTest, DemandLoadEntriesListEveryCommandOnce) {
  module.acrxEntryPoint(AppMsg::kInitAppMsg);
  ASSERT_EQ(fake.demandLoad.written.size(), 1u);
  const host::DemandLoadEntry& e = fake.demandLoad.written[0];
  EXPECT_EQ(e.appName, "Corvane");
  EXPECT_EQ(e.groupName, "Corvane");
  EXPECT_EQ(e.moduleName, fake.platform.module);
  EXPECT_EQ(e.description, "Corvane version 1.0");
  EXPECT_EQ(e.loadReasons, 7);
  ASSERT_EQ(e.commands.size(), 53u);
  EXPECT_EQ(e.commands[4], (std::pair<std::string, std::string>{"ZORL_VECTORIZE", "R2V"}));
  EXPECT_EQ(e.commands[41], (std::pair<std::string, std::string>{"ZORL_FORMULA", "FORMULA"}));
  EXPECT_EQ(e.commands[42], (std::pair<std::string, std::string>{"ZORL_DEMO1", "ZORL_DEMO1"}));
  std::set<std::string> globals;
  for (auto& [global, local] : e.commands) globals.insert(global);
  EXPECT_EQ(globals.size(), 53u);
}

struct LoadCase {
  std::uint32_t before, after;
  bool about;
  int introPage;  // 0: none
};

class LoadCounter : public testing::TestWithParam<LoadCase> {};

TEST_P(LoadCounter, CyclesThroughPagesAndResets) {
  const LoadCase& c = GetParam();
  frame_test::FakeHost fake;
  frame::Settings settings(fake.settings);
  for (int n = 1; n <= frame::kDemoPages; ++n) fake.platform.files.insert(frame::localDemoPage(settings, fake.platform, n));
  fake.settings.writeInt(kSettingsKey, "pagetimes", c.before);
  Module module(fake.host);
  module.acrxEntryPoint(AppMsg::kInitAppMsg);
  EXPECT_EQ(fake.settings.readInt(kSettingsKey, "pagetimes"), c.after);
  std::vector<std::string> expected;
  if (c.introPage) expected.push_back(frame::localDemoPage(settings, fake.platform, c.introPage));
  EXPECT_EQ(fake.platform.opened, expected) << "the introduction pages are the demonstration pages";
  EXPECT_EQ(fake.editor.transcript.find("Libraries used") != std::string::npos, c.about) << fake.editor.transcript;
  EXPECT_EQ(fake.settings.readInt(kSettingsKey, "cmdtimes"), std::nullopt) << "the about shown at load is no command";
}

INSTANTIATE_TEST_SUITE_P(Cycle, LoadCounter,
                         testing::Values(LoadCase{0, 1, true, 1}, LoadCase{1, 2, false, 2}, LoadCase{2, 3, false, 3},
                                         LoadCase{3, 4, false, 0}, LoadCase{32, 33, true, 1},
                                         LoadCase{120, 121, false, 0}, LoadCase{121, 0, false, 0},
                                         LoadCase{5000, 0, false, 0}));

TEST(MenuBar, StaysAloneUpToRelease17) {
  frame_test::FakeHost fake;
  fake.platform.files.insert(fake.platform.app.substr(0, fake.platform.app.rfind('/') + 1) + "Corvane_eng.cuix");
  fake.sysvars.vars["menubar"] = host::ResBuf::shortInt(0);
  fake.hostCommands.release = 17;
  Module module(fake.host);
  module.acrxEntryPoint(AppMsg::kLoadDwgMsg);
  EXPECT_EQ(fake.hostCommands.queued.size(), 2u);
  EXPECT_EQ(fake.sysvars.vars["menubar"], host::ResBuf::shortInt(0));
}

// Counting and the message for a page not installed are checked on the host.
TEST_P(ModuleTest, DemoCommandsOpenTheInstalledPageOrTheStoredAddress) {
  module.acrxEntryPoint(AppMsg::kInitAppMsg);
  ASSERT_TRUE(fake.commandStack.run("ZORL_DEMO3"));
  EXPECT_TRUE(fake.platform.opened.empty()) << "a page not installed is not opened";
  std::string missing = frame::localDemoPage(settings, fake.platform, 3);
  fake.platform.files.insert(missing);
  fake.commandStack.run("ZORL_DEMO3");
  EXPECT_EQ(fake.platform.opened.back(), missing);

  fake.settings.writeText(kSettingsKey, "Demo3", "https://corvane.example/another");
  fake.commandStack.run("ZORL_DEMO3");
  EXPECT_EQ(fake.platform.opened.back(), "https://corvane.example/another") << "the stored address wins";
}

TEST_P(ModuleTest, OutsideDataFailuresEndTheCommandWithTheirMessage) {
  frame::CommandEntry failing{"ZORL_TEST", "TEST", "failingTest", [](frame::CommandContext&) {
                                throw frame::makeError<frame::FileError>(
                                    {"\nCannot read %s (line %d).", "\n无法读取 %s（第%d行）。"}, "a.txt", 3);
                              }};
  module.acrxEntryPoint(AppMsg::kInitAppMsg);
  fake.editor.transcript.clear();
  module.runCommand(failing);
  EXPECT_EQ(fake.editor.transcript, chinese() ? "\n无法读取 a.txt（第3行）。" : "\nCannot read a.txt (line 3).");
  EXPECT_EQ(stored("cmdtimes"), 1u);

  frame::CommandEntry broken{"ZORL_TEST", "TEST", "brokenTest",
                             [](frame::CommandContext&) { throw std::logic_error("input ended"); }};
  EXPECT_THROW(module.runCommand(broken), std::logic_error) << "other exceptions belong to the host";
}

TEST(Menu, BackslashesAreDoubled) {
  EXPECT_EQ(frame::doubleBackslashes("a\\b\\\\c"), "a\\\\b\\\\\\\\c");
  EXPECT_EQ(frame::doubleBackslashes("/plain/path"), "/plain/path");
}

INSTANTIATE_TEST_SUITE_P(Languages, ModuleTest, testing::Bool(), test_support::languageName);

}  // namespace
