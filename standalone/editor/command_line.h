#pragma once
// The embedded host's command line: every prompt kind of the host's editor
// over answers from a script, the terminal or host-command tokens, with the
// host's input-control bits and complaints, picks and selection sets, and a
// transcript that reads like the host's command line.
#include <optional>
#include <string>
#include <vector>

#include "host/curves.h"
#include "host/drawing.h"
#include "host/editor.h"
#include "host/sysvars.h"
#include "standalone/editor/answer_parse.h"
#include "standalone/editor/answer_source.h"
#include "standalone/editor/desktop_dialogs.h"
#include "standalone/editor/entity_finder.h"
#include "standalone/editor/transcript.h"
#include "standalone/editor/view.h"

namespace standalone {

class CommandLine : public host::Editor {
 public:
  // frozenOrLocked: layers whose entities ALL leaves out (none when empty).
  CommandLine(Transcript& transcript, const host::Drawing& drawing, const host::CurveServices& curves,
              const host::SystemVariables& sysvars, const View& view, EntityFinder::LayerTest frozenOrLocked = {});

  // Answers come from source until popSource. endCancels: when it runs out a
  // waiting prompt is cancelled (tokens of a host command); otherwise the
  // user's input has ended. quiet: prompts and answers are not shown (CMDECHO 0).
  void pushSource(AnswerSource& source, bool endCancels, bool quiet);
  // Ends the innermost source; true when it ran out while a prompt waited.
  bool popSource();
  // The "Command:" prompt: the next command name; nothing when the input has ended.
  std::optional<std::string> readCommandName();
  // The prompt that was waiting when the user's input ended, if it did.
  const std::optional<std::string>& endedAtPrompt() const { return endedAtPrompt_; }
  Transcript& transcript() { return transcript_; }
  // Message boxes go to these dialogs from now on, and so do file-name
  // prompts while the user answers (not a script or a command's tokens) and
  // FILEDIA is 1; null: the command line's forms. The dialogs must outlive
  // their use.
  void setDialogs(DesktopDialogs* dialogs) { dialogs_ = dialogs; }
  // The last point entered (LASTPOINT), for "@" answers.
  const ge::Point3d& lastPoint() const { return lastPoint_; }
  // The crossing windows and crossing polygons answered in the last
  // selection, as polygons in the XY plane (STRETCH moves what lies inside them).
  const std::vector<std::vector<ge::Point2d>>& lastCrossings() const { return crossings_; }

  void print(std::string_view text) override;
  void initGet(int bits, std::string_view keywords) override;
  int getInt(std::string_view prompt, int& value) override;
  int getReal(std::string_view prompt, double& value) override;
  int getDist(const ge::Point3d* base, std::string_view prompt, double& value) override;
  int getPoint(const ge::Point3d* base, std::string_view prompt, ge::Point3d& value) override;
  int getKword(std::string_view prompt, std::string& keyword) override;
  int getString(bool allowSpaces, std::string_view prompt, std::string& value) override;
  int getInput(std::string& value) override;
  int dragPoint(const ge::Point3d* base, std::string_view prompt, const DragPreview& preview,
                ge::Point3d& value) override;
  int entSel(std::string_view prompt, host::ObjectId& entity, ge::Point3d& picked) override;
  int ssget(std::string_view mode, const ge::Point3d* p1, const ge::Point3d* p2, const host::ResBufList* filter,
            std::vector<host::ObjectId>& selection) override;
  void messageBox(std::string_view caption, std::string_view text) override;
  int getFileName(std::string_view title, std::string_view defaultName, std::string_view extension, bool forSaving,
                  std::string& path) override;
  int getFileNameWithFilter(std::string_view filter, bool forSaving, std::string& path) override;
  bool userBreak() override { return false; }
  // Shown on the terminal's error stream, and only when the user types the
  // answers at a terminal: scripts, pipes and tests stay quiet.
  int setProgressMeter(std::string_view label, int low, int high) override;
  int setProgressMeterPos(int position) override;
  void restoreStatusBar() override;

 private:
  enum class Reply { kText, kCancel };
  struct Answer {
    Reply kind = Reply::kText;
    std::string text;
  };
  struct Source {
    AnswerSource* source;
    bool endCancels;
    bool quiet;
    bool ranOut = false;
  };
  struct InitGet {
    int bits = 0;
    KeywordList keywords;
  };

  // What the prompts asked inside its lifetime want (a text answer outside any).
  class Expecting {
   public:
    Expecting(CommandLine& line, InputKind kind, std::optional<ge::Point3d> base = std::nullopt)
        : line_(line), kind_(line.kind_), base_(line.base_) {
      line.kind_ = kind;
      line.base_ = base;
    }
    ~Expecting() {
      line_.kind_ = kind_;
      line_.base_ = base_;
    }
    Expecting(const Expecting&) = delete;
    Expecting& operator=(const Expecting&) = delete;

   private:
    CommandLine& line_;
    InputKind kind_;
    std::optional<ge::Point3d> base_;
  };

  Answer ask(std::string_view prompt, bool wholeLine);
  // The answer from the source at that level (0 the outermost); promptShown:
  // the source above already showed the prompt before pausing.
  Answer askFrom(std::size_t level, std::string_view prompt, bool wholeLine, bool promptShown = false);
  void complain(std::string_view text);
  InitGet takeInitGet();
  // Enter at a prompt: RTNONE, or RTKWORD with "" under RSG_OTHER and RSG_NONULL,
  // or nothing when the prompt must be asked again (RSG_NONULL).
  std::optional<int> onEmpty(const InitGet& ig);
  // A keyword or arbitrary input (RSG_OTHER) at a value prompt: RTKWORD.
  std::optional<int> onOther(const InitGet& ig, const std::string& text);
  // The complaint for a number refused by RSG_NOZERO / RSG_NONEG, if any.
  static std::optional<std::string> signComplaint(int bits, double value);
  // Asks for a point until one is given; nothing when cancelled.
  std::optional<ge::Point3d> askCorner(std::string_view prompt);
  // What a value prompt made of one answer: a value, nothing it understood,
  // or a cancel (the second point of a distance can be cancelled).
  template <class T>
  struct Read {
    std::optional<T> value;
    bool cancelled = false;
  };
  // The loop every value prompt shares: Enter by the input bits, a value read
  // from the answer and checked against the sign bits, keywords and other
  // input; anything else gets the complaint and the prompt is asked again.
  template <class T, class ReadFn, class ComplaintFn>
  int readValue(std::string_view prompt, ReadFn read, ComplaintFn complaint, T& value);
  double pickAperture() const;
  // Whether a file name is asked in a dialog: there are dialogs, the user
  // answers and FILEDIA is 1.
  bool fileDialogWanted() const;
  int interactiveSelection(bool single, const class EntityFilter& filter, std::vector<host::ObjectId>& selection);
  std::vector<host::ObjectId> selectionAnswer(const std::string& text, bool& understood, bool& cancelled);
  void finishSelection(std::vector<host::ObjectId>& selection);

  Transcript& transcript_;
  const host::Drawing& drawing_;
  const host::CurveServices& curves_;
  const host::SystemVariables& sysvars_;
  const View& view_;
  EntityFinder finder_;
  std::vector<Source> sources_;
  InputKind kind_ = InputKind::kText;
  std::optional<ge::Point3d> base_;
  const DragPreview* preview_ = nullptr;  // while a dragged point is asked for
  DesktopDialogs* dialogs_ = nullptr;
  InitGet pending_;
  std::string lastInput_;
  ge::Point3d lastPoint_;
  std::vector<host::ObjectId> previous_;
  std::vector<std::vector<ge::Point2d>> crossings_;
  std::optional<std::string> endedAtPrompt_;
  struct Progress {
    std::string label;
    int low = 0, high = 0;
    int shownPercent = -1;
    bool active = false;
  } progress_;
  bool watchedAtTerminal() const;
  int promptsAfterEnd_ = 0;
};

}  // namespace standalone
