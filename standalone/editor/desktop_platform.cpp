#include "standalone/editor/desktop_platform.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace standalone {

namespace {

// Nobody waits for a program left running, so a detached thread reaps it when it ends.
void reapLater(pid_t pid) {
  std::thread([pid] {
    int ignored = 0;
    waitpid(pid, &ignored, 0);
  }).detach();
}

int exitCodeOf(int status) { return WIFEXITED(status) ? WEXITSTATUS(status) : -1; }

// Starts a program; waits for it at most timeoutMs (forever when negative,
// not at all when 0). Returns its exit code, 0 when not waited for, -1 when
// it could not start, host::Platform::kStillRunning when the wait ran out.
int spawn(const std::string& program, const std::vector<std::string>& args, int timeoutMs) {
  std::vector<char*> argv;
  argv.push_back(const_cast<char*>(program.c_str()));
  for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  pid_t pid = 0;
  if (posix_spawnp(&pid, program.c_str(), nullptr, nullptr, argv.data(), environ) != 0) return -1;
  if (timeoutMs == 0) {
    reapLater(pid);
    return 0;
  }
  int status = 0;
  if (timeoutMs < 0) return waitpid(pid, &status, 0) < 0 ? -1 : exitCodeOf(status);
  auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  for (;;) {
    pid_t done = waitpid(pid, &status, WNOHANG);
    if (done == pid) return exitCodeOf(status);
    if (done < 0) return -1;
    if (std::chrono::steady_clock::now() >= deadline) {
      reapLater(pid);
      return host::Platform::kStillRunning;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
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
  return spawn("xdg-open", {std::string(target)}, 0) == 0;
}

int DesktopPlatform::runProgram(std::string_view program, const std::vector<std::string>& args) {
  return spawn(std::string(program), args, -1);
}

int DesktopPlatform::runProgramWithin(std::string_view program, const std::vector<std::string>& args,
                                      int timeoutMs) {
  return spawn(std::string(program), args, std::max(1, timeoutMs));
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
