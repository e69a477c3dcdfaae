// The module on the embedded host: greeting, command table, load counter,
// menu loading and commands typed in a script, in both languages.
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "tests/support/languages.h"

#include "embedded_session.h"
#include "standalone/editor/demand_load.h"
#include "frame/builtin_commands.h"
#include "frame/menu.h"
#include "frame/language.h"
#include "frame/output.h"
#include "frame/settings.h"
#include "frame/sysvars.h"

namespace {

using frame_test::EmbeddedSession;
using standalone::kCorvaneKey;

using test_support::countOf;

class Lifecycle : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    if (chinese()) session.settingsFile().writeInt(kCorvaneKey, "ChineseVersion", 1);
  }
  void TearDown() override { frame::setChinese(false); }
  bool chinese() const { return GetParam(); }

  EmbeddedSession session;
};

TEST_P(Lifecycle, GreetsOnceRegistersTheTableAndUnloadRemovesIt) {
  session.load();
  std::string greeting = chinese() ? "【Corvane】 " + std::string(frame::versionLabel()) + " 已成功加载。"
                                   : "Corvane " + std::string(frame::versionLabel()) + " loaded successfully.";
  EXPECT_EQ(countOf(session.transcript(), greeting), 1u) << session.transcript();
  const auto& entries = session.host().commands().entries();
  ASSERT_EQ(entries.size(), 53u);
  auto table = frame::commandTable();
  for (std::size_t i = 0; i < entries.size(); ++i) {
    EXPECT_EQ(entries[i].group, "Corvane");
    EXPECT_EQ(entries[i].globalName, table[i].globalName);
    EXPECT_EQ(entries[i].localName, table[i].localName);
    EXPECT_EQ(entries[i].flags, host::ACRX_CMD_MODAL);
  }
  session.unload();
  EXPECT_TRUE(session.host().commands().entries().empty());
  session.run("CHBJ\n");
  EXPECT_TRUE(session.lastResult().failure) << "CHBJ is unknown after unload";
}

// The entry reaches the host's settings file and names the module by the path the host loaded it from.
TEST(DemandLoadOnHost, EntriesNameTheModuleAndEveryCommand) {
  EmbeddedSession session;
  session.load();
  std::string key = std::string(standalone::kApplicationsKey) + "\\Corvane";
  auto settings = session.settingsFile();
  EXPECT_EQ(settings.readText(key, "LOADER"), (session.folder() / "corvane").string());
  auto commands = settings.list(key + "\\Commands");
  ASSERT_EQ(commands.size(), 53u);
  EXPECT_EQ(commands[4].name, "ZORL_VECTORIZE");
  EXPECT_EQ(std::get<std::string>(commands[4].data), "R2V") << "R2V comes fifth in the demand-load order";
}

TEST_P(Lifecycle, TypedCommandsRunThroughTheFrameAndAreCounted) {
  session.load();
  std::string out = session.run("chbj\n\ninoffset\n\n_ZORL_makeOutline\n\nZORL_DEMO2\n");
  EXPECT_FALSE(session.lastResult().failure) << *session.lastResult().failure;
  EXPECT_EQ(countOf(out, chinese() ? "未选中填充图案。" : "No hatches selected."), 1u) << out;
  EXPECT_EQ(countOf(out, chinese() ? "未选中物体。" : "No Entity selected."), 2u) << out;
  // Pages are not installed beside a test's module.
  const std::string page = (session.folder() / "demo" / "demo2.html").string();
  EXPECT_EQ(countOf(out, chinese() ? "演示页面 " + page + " 未安装。" : "The demonstration page " + page + " is not installed."), 1u)
      << out;
  EXPECT_EQ(session.settingsFile().readInt(kCorvaneKey, "cmdtimes"), 4u);
}

TEST_P(Lifecycle, MenuWithBackslashesInItsPathIsLoadedOnce) {
  EmbeddedSession odd("menu\\files");
  if (chinese()) odd.settingsFile().writeInt(kCorvaneKey, "ChineseVersion", 1);
  odd.writeMenus();
  odd.settingsFile().writeText(kCorvaneKey, "Location", odd.folder().string() + "  ");
  odd.load();
  odd.openDrawing();
  std::string doubled = frame::doubleBackslashes(odd.folder().string());
  ASSERT_NE(doubled, odd.folder().string());
  EXPECT_NE(odd.transcript().find(doubled), std::string::npos) << "the queued expression carries the doubled path\n"
                                                                << odd.transcript();
  EXPECT_TRUE(odd.host().menus().isLoaded("CORVANE")) << odd.transcript();
  EXPECT_EQ(odd.host().menus().menuBar(), std::vector<std::string>{"CORVANE.POP1"});
  int menubar = 0;
  frame::getSysVar(odd.host().host(), "MENUBAR", menubar);
  EXPECT_EQ(menubar, 1);

  std::size_t queuedBefore = countOf(odd.transcript(), "menuload");
  odd.openDrawing();
  EXPECT_EQ(countOf(odd.transcript(), "menuload"), queuedBefore) << "a second drawing does not queue the menu";
  EXPECT_NE(queuedBefore, 0u);
}

TEST_P(Lifecycle, MissingMenuFileIsReportedInAMessageBox) {
  session.load();
  session.openDrawing();
  std::string file = chinese() ? "Corvane_chn2010.cuix" : "Corvane_eng.cuix";
  // Without Location the folder is that of the module path.
  std::string expected = (session.folder() / file).string() + "--- Menu file not fonud!";
  EXPECT_NE(session.transcript().find(expected), std::string::npos) << session.transcript();
  EXPECT_FALSE(session.host().menus().isLoaded("CORVANE"));
  session.run("ZORL_DEMO1\n");
  EXPECT_FALSE(session.lastResult().failure) << "the commands stay usable";
}

INSTANTIATE_TEST_SUITE_P(Languages, Lifecycle, testing::Bool(), test_support::languageName);

// The first load shows the about text and then hands the first demonstration
// page to the host's opener; the counter is kept in the settings file.
TEST(LoadCounterOnHost, TheFirstLoadShowsTheAboutTextAndTheFirstIntroduction) {
  EmbeddedSession session;
  const std::filesystem::path intro = session.folder() / "demo" / "demo1.html";
  std::filesystem::create_directories(intro.parent_path());
  std::ofstream(intro) << "<html></html>";
  session.load();
  EXPECT_EQ(session.settingsFile().readInt(kCorvaneKey, "pagetimes"), 1u);
  const std::string out = session.transcript();
  const std::string about = "Settings file: " + session.settingsFile().path();
  EXPECT_EQ(countOf(out, about), 1u) << out;
  EXPECT_EQ(countOf(out, intro.string()), 1u) << out;
  EXPECT_LT(out.find(about), out.find(intro.string()));
}

// The frame's settings over the host's settings file: a mistyped language
// value, and byte blocks that never create their key.
TEST(SettingsOnHost, ChineseVersionAsTextSelectsEnglishAndBytesNeedTheirKey) {
  EmbeddedSession session;
  session.settingsFile().writeText(kCorvaneKey, "ChineseVersion", "1");
  session.load();
  EXPECT_FALSE(frame::isChinese());
  frame::Settings& s = session.module().settings();
  const char* missing = "Software\\Brightvale\\Missing";
  EXPECT_FALSE(s.writeBytes(missing, "blob", std::vector<std::uint8_t>{1}));
  EXPECT_TRUE(s.writeText(missing, "note", "x")) << "a text write creates the key";
  EXPECT_TRUE(s.writeBytes(missing, "blob", std::vector<std::uint8_t>{1}));
}

}  // namespace
