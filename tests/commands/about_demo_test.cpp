// ABOUT_CORVANE and the demonstration commands end to end.
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "command_session.h"
#include "frame/output.h"

namespace commands_test {
namespace {

class AboutAndDemos : public CommandTest {};
INSTANTIATE_TEST_SUITE_P(Languages, AboutAndDemos, ::testing::Values(Language::kEnglish, Language::kChinese),
                         languageName);

TEST_P(AboutAndDemos, AboutShowsVersionLibrariesAndSettingsFile) {
  s.start();
  std::string out = s.run("ABOUT_CORVANE\n");
  EXPECT_TRUE(s.says(out, s.pick("\nCorvane ", "\n【Corvane】 ") + std::string(frame::versionLabel())));
  EXPECT_TRUE(s.says(out, "Libraries used and their licences:\n", "使用的库及其许可证：\n"));
  EXPECT_TRUE(s.says(out, "  cairo: LGPL-2.1-only OR MPL-1.1\n"));
  EXPECT_TRUE(s.says(out, s.pick("Settings file: ", "设置文件：") + s.settingsPath() + "\n"));
}

TEST_P(AboutAndDemos, DemonstrationCommandsOpenTheirLocalPageOrSayItIsMissing) {
  const std::filesystem::path page = s.root() / "demo" / "demo7.html";
  s.start();
  std::string out = s.run("ZORL_DEMO7\n");
  EXPECT_TRUE(s.says(out, s.pick("\nThe demonstration page ", "\n演示页面 ") + page.string() +
                              s.pick(" is not installed.\n", " 未安装。\n")));
  std::filesystem::create_directories(page.parent_path());
  std::ofstream(page) << "<html></html>";
  out = s.run("ZORL_DEMO7\nZORL_DEMO11\n");
  // Without a display the host only notes the page it was asked to open.
  EXPECT_EQ(countOf(out, page.string()), 1u) << out;
  EXPECT_TRUE(s.says(out, (s.root() / "demo" / "demo11.html").string()));
}

}  // namespace
}  // namespace commands_test
