#include "apps/corvane-workbench/interactive_answers.h"

namespace workbench {

InteractiveAnswers::InteractiveAnswers(Wait wait, Expect expect) : wait_(std::move(wait)), expect_(std::move(expect)) {
  restart();
}

void InteractiveAnswers::submit(std::string line) {
  if (!aborted_) lines_.push_back(std::move(line));
}

bool InteractiveAnswers::hasInput() const { return !aborted_ && (!lines_.empty() || reader_->hasOpenLine()); }

void InteractiveAnswers::abort() {
  aborted_ = true;
  lines_.clear();
}

void InteractiveAnswers::restart() {
  aborted_ = false;
  reader_ = std::make_unique<standalone::ScriptReader>("the command line", [this] { return nextSubmittedLine(); },
                                                       true);
}

std::optional<std::string> InteractiveAnswers::nextSubmittedLine() {
  while (lines_.empty()) {
    if (aborted_ || !wait_()) return std::nullopt;
  }
  if (aborted_) return std::nullopt;
  std::string line = std::move(lines_.front());
  lines_.pop_front();
  return line;
}

}  // namespace workbench
