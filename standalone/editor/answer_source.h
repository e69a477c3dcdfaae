#pragma once
// Where the answers to prompts come from: a script file, text given on the
// command line, the terminal, or tokens a plug-in sends to a host command.
#include <functional>
#include <istream>
#include <optional>
#include <string>
#include <string_view>

#include "ge/point.h"
#include "host/editor.h"

namespace standalone {

// What the waiting prompt wants, so that a source with a pointing device
// knows what a click in the drawing means there.
enum class InputKind {
  kCommand,    // the "Command:" prompt
  kText,       // numbers, keywords, names: typed only
  kPoint,      // a point (or a distance from base): a click gives the point
  kPick,       // one entity by a picked point
  kSelection,  // "Select objects:": picks and windows
};

struct PromptContext {
  InputKind kind = InputKind::kText;
  std::string_view prompt;
  std::optional<ge::Point3d> base;  // the rubber band's start, when the prompt has one
  // The live preview of a dragged point; valid while the prompt waits.
  const host::Editor::DragPreview* preview = nullptr;
};

class AnswerSource {
 public:
  virtual ~AnswerSource() = default;
  // Told before every answer is asked for. The terminal and scripts ignore it.
  virtual void expect(const PromptContext& context) { (void)context; }
  // The next answer, ended by a space or a line end; nothing when the input has ended.
  virtual std::optional<std::string> nextWord() = 0;
  // The rest of the current line, spaces included; nothing when the input has ended.
  virtual std::optional<std::string> nextLine() = 0;
  // True when the user does not see the answers being typed (scripts, tokens),
  // so the transcript repeats each answer after its prompt.
  virtual bool echoesAnswers() const = 0;
  // True when no answer is left. May read ahead, so it is asked only of
  // sources that echo (a terminal would wait for the user).
  virtual bool atEnd() = 0;
};

// Reads answers by the host's script rules, line by line from a supplier:
// every space and every line end answers a prompt (two spaces give an empty
// answer), a line starting with ";" is a comment, text in double quotes keeps
// its spaces, and an answer starting with "(" runs to its closing bracket.
// Each line is checked to be UTF-8 text without NUL bytes; a bad line throws
// ScriptError naming the source and the line.
class ScriptReader : public AnswerSource {
 public:
  // Supplies the next line without its line end, or nothing at the end.
  using LineSupplier = std::function<std::optional<std::string>()>;

  ScriptReader(std::string sourceName, LineSupplier lines, bool echo);
  // A reader over a whole text (a script file's content or -c text).
  static ScriptReader fromText(std::string sourceName, std::string_view text);
  // A reader over the terminal or a pipe: lines are fetched only when a
  // prompt needs them. echo: the transcript repeats the answers (a pipe,
  // where nobody sees them typed).
  static ScriptReader fromStream(std::string sourceName, std::istream& in, bool echo = false);

  std::optional<std::string> nextWord() override;
  std::optional<std::string> nextLine() override;
  bool echoesAnswers() const override { return echo_; }
  bool atEnd() override { return !fetchLineIfNeeded(); }

  // True while a line has answers left (the next answer needs no new line).
  bool hasOpenLine() const { return lineOpen_; }
  // Number of the line the next answer comes from (1-based); 0 before the first.
  int lineNumber() const { return lineNumber_; }

 private:
  bool fetchLineIfNeeded();
  std::string readQuoted();
  std::string readBracketed();

  std::string sourceName_;
  LineSupplier lines_;
  bool echo_;
  std::string line_;
  std::size_t pos_ = 0;
  bool lineOpen_ = false;  // a fetched line still has its line end to give
  bool ended_ = false;
  int lineNumber_ = 0;
};

// True when the text is well-formed UTF-8 without NUL bytes.
bool isCleanUtf8(std::string_view text);

}  // namespace standalone
