#pragma once
// Answers typed or clicked at the desktop. A command asks for an answer from
// inside its own code, so while it waits the desktop keeps running: the
// supplier given here runs the window's event loop until a line arrives. A
// line follows the host's script rules (a space or the line end answers a
// prompt), so "PLDF ALL  16" typed at once answers three prompts.
#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "standalone/editor/answer_source.h"

namespace workbench {

class InteractiveAnswers : public standalone::AnswerSource {
 public:
  // Runs the desktop until submit() or abort() was called; false when it
  // cannot wait any more (the window is closing).
  using Wait = std::function<bool()>;
  // Told what each prompt wants, before the wait.
  using Expect = std::function<void(const standalone::PromptContext&)>;

  InteractiveAnswers(Wait wait, Expect expect);

  // A line typed at the command line, or made from a click in the view.
  void submit(std::string line);
  // True when an answer is ready without waiting.
  bool hasInput() const;
  // Ends the answers to the running command: the waiting prompt and every
  // later one are cancelled, as when a script runs out. Pending lines go.
  void abort();
  bool aborted() const { return aborted_; }
  // Fresh answers after an aborted command has ended.
  void restart();

  std::optional<std::string> nextWord() override { return aborted_ ? std::nullopt : reader_->nextWord(); }
  std::optional<std::string> nextLine() override { return aborted_ ? std::nullopt : reader_->nextLine(); }
  bool echoesAnswers() const override { return true; }
  bool atEnd() override { return !hasInput(); }
  void expect(const standalone::PromptContext& context) override { expect_(context); }

 private:
  std::optional<std::string> nextSubmittedLine();

  Wait wait_;
  Expect expect_;
  std::deque<std::string> lines_;
  std::unique_ptr<standalone::ScriptReader> reader_;
  bool aborted_ = false;
};

}  // namespace workbench
