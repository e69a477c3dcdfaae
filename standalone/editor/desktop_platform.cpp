#include "standalone/editor/desktop_platform.h"

#include <cstdlib>
#include <filesystem>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace standalone {

namespace {

// Starts a program; waits for it when wait is true. Returns its exit code,
// 0 when not waited for, -1 when it could not start.
int spawn(const std::string& program, const std::vector<std::string>& args, bool wait) {
  std::vector<char*> argv;
  argv.push_back(const_cast<char*>(program.c_str()));
  for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  pid_t pid = 0;
  if (posix_spawnp(&pid, program.c_str(), nullptr, nullptr, argv.data(), environ) != 0) return -1;
  if (!wait) {
    // Nobody waits for the opener, so a detached thread reaps it when it ends.
    std::thread([pid] {
      int ignored = 0;
      waitpid(pid, &ignored, 0);
    }).detach();
    return 0;
  }
  int status = 0;
  if (waitpid(pid, &status, 0) < 0) return -1;
  if (WIFEXITED(status)) return WEXITSTATUS(status);
  return -1;
}

}  // namespace

std::string currentExecutablePath() {
  std::error_code ec;
  std::filesystem::path p = std::filesystem::read_symlink("/proc/self/exe", ec);
  return ec ? std::string() : p.string();
}

DesktopPlatform::DesktopPlatform(std::string modulePath, std::function<void(const std::string&)> note,
                                 bool openPages)
    : modulePath_(std::move(modulePath)), note_(std::move(note)), openPages_(openPages) {}

bool DesktopPlatform::fileExists(std::string_view path) const {
  std::error_code ec;
  return std::filesystem::is_regular_file(std::filesystem::path(path), ec);
}

bool DesktopPlatform::openWithDesktop(std::string_view target) {
  const char* x = std::getenv("DISPLAY");
  const char* wayland = std::getenv("WAYLAND_DISPLAY");
  bool display = (x && *x) || (wayland && *wayland);
  if (!display || !openPages_) {
    if (note_) note_("Opening " + std::string(target) + (display ? " (not opened)" : " (no display: not opened)"));
    return false;
  }
  if (note_) note_("Opening " + std::string(target));
  return spawn("xdg-open", {std::string(target)}, false) == 0;
}

int DesktopPlatform::runProgram(std::string_view program, const std::vector<std::string>& args) {
  return spawn(std::string(program), args, true);
}

bool DesktopPlatform::startProgram(std::string_view program, const std::vector<std::string>& args) {
  return spawn(std::string(program), args, false) == 0;
}

std::string DesktopPlatform::temporaryFileName(std::string_view suffix) {
  const char* dir = std::getenv("TMPDIR");
  std::string pattern = std::string(dir && *dir ? dir : "/tmp") + "/corvane-XXXXXX" + std::string(suffix);
  std::vector<char> buf(pattern.begin(), pattern.end());
  buf.push_back('\0');
  int fd = mkstemps(buf.data(), static_cast<int>(suffix.size()));
  if (fd < 0) return {};
  close(fd);
  return std::string(buf.data());
}

}  // namespace standalone
