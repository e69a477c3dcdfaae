#pragma once
// Things of the desktop the plug-in asks for: its own module path, starting
// programs, opening pages and documents.
#include <string>
#include <string_view>
#include <vector>

namespace host {

class Platform {
 public:
  virtual ~Platform() = default;
  // acedGetAppName: full path of the loaded plug-in module.
  virtual std::string appName() const = 0;
  // Full file path of the plug-in's own module.
  virtual std::string modulePath() const = 0;
  virtual bool fileExists(std::string_view path) const = 0;
  // Opens a page or document with the desktop's opener without waiting.
  virtual bool openWithDesktop(std::string_view target) = 0;
  // Runs a program and waits for it; returns its exit code, or -1 when it could not start.
  virtual int runProgram(std::string_view program, const std::vector<std::string>& args) = 0;
  // Starts a program without waiting for it (ShellExecute of a program with
  // its arguments); false when it could not start.
  virtual bool startProgram(std::string_view program, const std::vector<std::string>& args) {
    (void)program, (void)args;
    return false;
  }
  // Runs a program and waits for it at most timeoutMs milliseconds: its exit
  // code, -1 when it could not start, kStillRunning when the wait ended first
  // (the program is left to finish on its own, as WaitForSingleObject leaves it).
  virtual int runProgramWithin(std::string_view program, const std::vector<std::string>& args, int timeoutMs) {
    (void)timeoutMs;
    return runProgram(program, args);
  }
  static constexpr int kStillRunning = -2;
  // A fresh temporary file name.
  virtual std::string temporaryFileName(std::string_view suffix) = 0;
};

}  // namespace host
