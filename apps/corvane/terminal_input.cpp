#include "terminal_input.h"

#include <histedit.h>

#include <clocale>
#include <cstdio>

namespace corvane_app {

namespace {
constexpr int kHistorySize = 1000;
}

TerminalInput::TerminalInput(const standalone::Transcript& transcript) : transcript_(transcript) {
  std::setlocale(LC_CTYPE, "");  // the editor measures prompts and answers in the terminal's characters
  editor_ = el_init("corvane", stdin, stdout, stderr);
  history_ = history_init();
  HistEvent event;
  history(history_, &event, H_SETSIZE, kHistorySize);
  el_set(editor_, EL_EDITOR, "emacs");
  el_set(editor_, EL_SIGNAL, 1);
  el_set(editor_, EL_CLIENTDATA, this);
  el_set(editor_, EL_PROMPT, &TerminalInput::promptOf);
  el_set(editor_, EL_HIST, history, history_);
  el_source(editor_, nullptr);  // the user's ~/.editrc
}

TerminalInput::~TerminalInput() {
  el_end(editor_);
  history_end(history_);
}

char* TerminalInput::promptOf(editline* editor) {
  void* self = nullptr;
  el_get(editor, EL_CLIENTDATA, &self);
  return static_cast<TerminalInput*>(self)->prompt_.data();
}

std::optional<std::string> TerminalInput::nextLine() {
  // The transcript has shown the prompt; the editor shows it again from the
  // line's start so that it knows where the answer begins.
  prompt_ = transcript_.openLine();
  std::fputs("\r", stdout);
  std::fflush(stdout);
  int count = 0;
  const char* typed = el_gets(editor_, &count);
  if (!typed || count <= 0) {
    std::fputs("\n", stdout);
    return std::nullopt;
  }
  std::string line(typed, static_cast<std::size_t>(count));
  while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
  if (!line.empty() && line != last_) {
    HistEvent event;
    history(history_, &event, H_ENTER, line.c_str());
    last_ = line;
  }
  return line;
}

}  // namespace corvane_app
