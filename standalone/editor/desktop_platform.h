#pragma once
// The host's desktop services on a Linux desktop (or none): the module's own
// path, starting programs and the desktop's opener.
#include <functional>
#include <string>

#include "host/platform.h"

namespace standalone {

class DesktopPlatform : public host::Platform {
 public:
  // modulePath: the file the plug-in is loaded from (the corvane executable).
  // note: where "not opened" notices go (the transcript).
  // openPages false: openWithDesktop only writes its notice (listings that load the plug-in for a moment).
  DesktopPlatform(std::string modulePath, std::function<void(const std::string&)> note, bool openPages = true);

  std::string appName() const override { return modulePath_; }
  std::string modulePath() const override { return modulePath_; }
  bool fileExists(std::string_view path) const override;
  // xdg-open without waiting when DISPLAY or WAYLAND_DISPLAY is set; otherwise only a notice.
  bool openWithDesktop(std::string_view target) override;
  int runProgram(std::string_view program, const std::vector<std::string>& args) override;
  bool startProgram(std::string_view program, const std::vector<std::string>& args) override;
  int runProgramWithin(std::string_view program, const std::vector<std::string>& args, int timeoutMs) override;
  // A new, empty file in the temporary folder whose name ends with suffix.
  std::string temporaryFileName(std::string_view suffix) override;

 private:
  std::string modulePath_;
  std::function<void(const std::string&)> note_;
  bool openPages_;
};

// The path of the running executable ("" when it cannot be found).
std::string currentExecutablePath();

}  // namespace standalone
