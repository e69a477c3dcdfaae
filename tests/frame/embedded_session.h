#pragma once
// A plug-in session on the embedded host for end-to-end tests: a fresh
// settings file and plug-in folder in a temporary directory, the module
// loaded, and scripts run through the host's command line.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "frame/module.h"
#include "standalone/editor/answer_source.h"
#include "standalone/editor/embedded_host.h"

namespace frame_test {

// A Corvane menu file with one pop-up, in the host's menu format.
inline constexpr const char* kMenuText =
    "CORVANE-MENU 1\nGROUP CORVANE\nPOPUP POP1 Corvane\nITEM Divide polylines | ^C^C_ZORL_PLDevide\n";

class EmbeddedSession {
 public:
  // folderName: the plug-in folder below the temporary directory (may hold backslashes).
  explicit EmbeddedSession(std::string folderName = "plugin") {
    // Pages are only noted in the transcript: there is no display in a test.
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    char pattern[] = "/tmp/corvane-frame-XXXXXX";
    root_ = mkdtemp(pattern);
    folder_ = root_ / folderName;
    std::filesystem::create_directories(folder_);
  }
  ~EmbeddedSession() {
    module_.reset();
    host_.reset();
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
  }

  std::filesystem::path folder() const { return folder_; }
  std::string settingsPath() const { return (root_ / "settings.reg").string(); }
  // The settings file as the plug-in sees it, usable before the host exists.
  standalone::SettingsFile settingsFile() const { return standalone::SettingsFile(settingsPath()); }

  void writeMenus() {
    for (const char* name : {"Corvane_eng.cuix", "Corvane_chn2010.cuix"}) std::ofstream(folder_ / name) << kMenuText;
  }

  // Starts the host over an empty drawing and sends the initialisation message.
  void load() {
    standalone::EmbeddedHostOptions options;
    options.settingsPath = settingsPath();
    options.modulePath = (folder_ / "corvane").string();
    host_ = std::make_unique<standalone::EmbeddedHost>(standalone::DrawingDatabase::createEmpty(), out_, options);
    module_ = std::make_unique<frame::Module>(host_->host());
    module_->acrxEntryPoint(frame::AppMsg::kInitAppMsg);
  }
  // A drawing is opened: the menu message, then the queued expressions as after a command.
  void openDrawing() {
    module_->acrxEntryPoint(frame::AppMsg::kLoadDwgMsg);
    host_->hostCommands().runQueuedExpressions();
  }
  void unload() { module_->acrxEntryPoint(frame::AppMsg::kUnloadAppMsg); }

  // Runs a script; returns what it added to the transcript.
  std::string run(const std::string& script) {
    std::size_t before = out_.str().size();
    auto source = standalone::ScriptReader::fromText("test.scr", script);
    lastResult_ = host_->run(source);
    return out_.str().substr(before);
  }

  std::string transcript() const { return out_.str(); }
  const standalone::SessionResult& lastResult() const { return lastResult_; }
  standalone::EmbeddedHost& host() { return *host_; }
  frame::Module& module() { return *module_; }

 private:
  std::filesystem::path root_, folder_;
  std::ostringstream out_;
  std::unique_ptr<standalone::EmbeddedHost> host_;
  std::unique_ptr<frame::Module> module_;
  standalone::SessionResult lastResult_;
};

}  // namespace frame_test
