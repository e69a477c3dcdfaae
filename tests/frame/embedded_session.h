#pragma once
// A plug-in session on the embedded host for end-to-end tests: a fresh
// settings file and plug-in folder, menus on demand, drawing messages.
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/support/host_session.h"

namespace frame_test {

// A Corvane menu file with one pop-up, in the host's menu format.
inline constexpr const char* kMenuText =
    "CORVANE-MENU 1\nGROUP CORVANE\nPOPUP POP1 Corvane\nITEM Divide polylines | ^C^C_ZORL_PLDevide\n";

class EmbeddedSession : public test_support::HostSession {
 public:
  // folderName: the plug-in folder below the temporary directory (may hold backslashes).
  explicit EmbeddedSession(const std::string& folderName = "plugin")
      : HostSession("frame"), folder_(root() / folderName) {
    std::filesystem::create_directories(folder_);
  }

  std::filesystem::path folder() const { return folder_; }
  // The settings file as the plug-in sees it, usable before the host exists.
  standalone::SettingsFile settingsFile() const { return standalone::SettingsFile(settingsPath()); }

  void writeMenus() {
    for (const char* name : {"Corvane_eng.cuix", "Corvane_chn2010.cuix"}) std::ofstream(folder_ / name) << kMenuText;
  }

  // Starts the host over an empty drawing and sends the initialisation message.
  void load() {
    start(standalone::DrawingDatabase::createEmpty(), folder_ / "corvane", [](standalone::EmbeddedHost&) {});
  }
  // A drawing is opened: the menu message, then the queued expressions as after a command.
  void openDrawing() {
    module().acrxEntryPoint(frame::AppMsg::kLoadDwgMsg);
    host().hostCommands().runQueuedExpressions();
  }
  void unload() { module().acrxEntryPoint(frame::AppMsg::kUnloadAppMsg); }

 private:
  std::filesystem::path folder_;
};

}  // namespace frame_test
