#pragma once
// The command-line transcript: prompts, answers and messages as the host's
// command line shows them, written to a stream as they happen.
#include <ostream>
#include <string>
#include <string_view>

namespace standalone {

class Transcript {
 public:
  explicit Transcript(std::ostream& out) : out_(out) {}

  // A message as it stands; a leading line break at the start of a line is
  // not doubled (the host's command line starts every message on a new line once).
  void print(std::string_view text);
  // A prompt: always starts on its own line and waits on the same line for the answer.
  void prompt(std::string_view text);
  // The answer after its prompt, ending the line.
  void answer(std::string_view text);
  // The terminal has shown the typed answer and its line end itself.
  void answerShownByTerminal() {
    atLineStart_ = true;
    openLine_.clear();
  }
  // Ends the current line when something is on it.
  void endLine();

  bool atLineStart() const { return atLineStart_; }
  // What stands on the current line so far (the prompt waiting for its answer).
  const std::string& openLine() const { return openLine_; }

 private:
  void write(std::string_view text);

  std::ostream& out_;
  bool atLineStart_ = true;
  std::string openLine_;
};

}  // namespace standalone
