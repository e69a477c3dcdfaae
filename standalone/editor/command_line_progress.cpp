// The progress meter of the command line: "label  42%" rewritten in place on
// the terminal while long work runs.
#include <unistd.h>

#include <cstdio>

#include "standalone/editor/command_line.h"

namespace standalone {

bool CommandLine::watchedAtTerminal() const {
  return !sources_.empty() && !sources_.front().source->echoesAnswers() && isatty(STDERR_FILENO);
}

int CommandLine::setProgressMeter(std::string_view label, int low, int high) {
  progress_ = {std::string(label), low, high, -1, true};
  return setProgressMeterPos(low);
}

int CommandLine::setProgressMeterPos(int position) {
  if (!progress_.active || !watchedAtTerminal()) return 0;
  int span = progress_.high - progress_.low;
  int percent = span > 0 ? static_cast<int>(100LL * (position - progress_.low) / span) : 100;
  if (percent == progress_.shownPercent) return 0;
  progress_.shownPercent = percent;
  std::fprintf(stderr, "\r%s %3d%%", progress_.label.c_str(), percent);
  std::fflush(stderr);
  return 0;
}

void CommandLine::restoreStatusBar() {
  if (progress_.active && progress_.shownPercent >= 0) {
    std::fprintf(stderr, "\r%*s\r", static_cast<int>(progress_.label.size()) + 6, "");
    std::fflush(stderr);
  }
  progress_ = {};
}

}  // namespace standalone
