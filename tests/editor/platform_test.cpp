// Desktop services: programs started and waited for, temporary files, the
// opener only with a display.
#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include "standalone/editor/desktop_platform.h"

namespace corvane_test {
namespace {

using standalone::DesktopPlatform;

TEST(DesktopPlatform, RunProgramWaitsAndReportsTheExitCode) {
  DesktopPlatform p("/opt/corvane/corvane", {});
  EXPECT_EQ(p.runProgram("sh", {"-c", "exit 3"}), 3);
  EXPECT_EQ(p.runProgram("true", {}), 0);
  EXPECT_EQ(p.runProgram("/nonexistent/program", {}), -1);
  // Started without waiting: a program that could start is true, one that cannot is false.
  EXPECT_TRUE(p.startProgram("true", {}));
  EXPECT_FALSE(p.startProgram("/nonexistent/program", {"page.html"}));
}

TEST(DesktopPlatform, TemporaryFilesAreFreshAndKeepTheirSuffix) {
  DesktopPlatform p("", {});
  std::string a = p.temporaryFileName(".dxf"), b = p.temporaryFileName(".dxf");
  EXPECT_NE(a, b);
  EXPECT_TRUE(a.ends_with(".dxf"));
  EXPECT_TRUE(p.fileExists(a));
  EXPECT_FALSE(p.fileExists(std::filesystem::path(a).parent_path().string()));  // a folder is no file
  std::filesystem::remove(a);
  std::filesystem::remove(b);
}

TEST(DesktopPlatform, WithoutADisplayNothingIsOpenedAndTheTranscriptSaysSo) {
  ::unsetenv("DISPLAY");
  ::unsetenv("WAYLAND_DISPLAY");
  std::string note;
  DesktopPlatform p("", [&](const std::string& n) { note = n; });
  EXPECT_FALSE(p.openWithDesktop("https://example.org/page"));
  EXPECT_EQ(note, "Opening https://example.org/page (no display: not opened)");
  ::setenv("DISPLAY", ":99", 1);
  DesktopPlatform quiet("", [&](const std::string& n) { note = n; }, false);
  EXPECT_FALSE(quiet.openWithDesktop("/tmp/report.html"));
  EXPECT_EQ(note, "Opening /tmp/report.html (not opened)");
  ::unsetenv("DISPLAY");
}

}  // namespace
}  // namespace corvane_test
