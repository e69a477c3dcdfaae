#pragma once
// Lines typed at a terminal, with line editing and a history of what was
// typed (libedit: arrows, Home/End, Ctrl-R, ~/.editrc), for the answers of an
// interactive run. The prompt the transcript already put on the line is
// handed to the line editor, which redraws it as the line is edited.
#include <optional>
#include <string>

#include "standalone/editor/transcript.h"

struct editline;
struct history;

namespace corvane_app {

class TerminalInput {
 public:
  explicit TerminalInput(const standalone::Transcript& transcript);
  ~TerminalInput();
  TerminalInput(const TerminalInput&) = delete;
  TerminalInput& operator=(const TerminalInput&) = delete;

  // The next line without its line end; nothing at the end of input (Ctrl-D).
  std::optional<std::string> nextLine();

 private:
  static char* promptOf(editline* editor);

  const standalone::Transcript& transcript_;
  std::string prompt_;
  std::string last_;  // the last line put into the history
  editline* editor_ = nullptr;
  history* history_ = nullptr;
};

}  // namespace corvane_app
