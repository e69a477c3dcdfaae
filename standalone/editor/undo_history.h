#pragma once
// Undo and redo of whole commands. Each command run at the command prompt
// (with whatever it runs in turn: host commands it sends, reactors it wakes)
// is one step; marks and BEgin/End groups work as the host's UNDO has them.
// The workbench drives the same history: undo(n) / redo() and the changed
// observer, which fires whenever the drawing changed through a command, an
// undo or a redo (repaint then).
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "standalone/db/database.h"

namespace standalone {

class UndoHistory {
 public:
  explicit UndoHistory(DrawingDatabase& drawing) : drawing_(drawing) {}
  UndoHistory(const UndoHistory&) = delete;
  UndoHistory& operator=(const UndoHistory&) = delete;

  // Around every command; nested calls (a command running another) join
  // the outer one. The label is what U reports when it undoes the step.
  // Changes made outside such a bracket are not recorded (a grip edit in a
  // program should bracket itself), and an undo of an earlier step may drop
  // them.
  void beginCommand(const std::string& label);
  void endCommand();

  // Why undo() stopped before undoing as many steps as were asked for.
  enum class Stop { kNone, kMark, kEverything };
  struct Undone {
    std::vector<std::string> labels;  // in the order undone
    Stop stop = Stop::kNone;
  };
  // Undoes up to `count` steps, stopping at a mark (which stays) or when
  // nothing is left. A group counts as one step and is reported as "GROUP".
  Undone undo(int count);
  // Undoes back to the last mark and removes it; with no mark, everything.
  Undone undoToMark();
  // Puts back what the last undo or undoToMark took away; the labels of
  // the steps redone, none when there is nothing to redo (any command in
  // between forgets it).
  std::vector<std::string> redo();

  void mark();
  // BEgin: the commands until endGroup() form one step (a BEgin closes an open group).
  void beginGroup();
  void endGroup();
  bool groupOpen() const { return groupOpen_; }

  // Nothing so far can be undone or redone (after opening a drawing and
  // loading the plug-in, whose start-up commands are not the user's).
  void forget();

  bool canUndo() const;
  bool hasMark() const;
  bool canRedo() const { return !redo_.empty(); }
  void setChangedObserver(std::function<void()> observer) { changed_ = std::move(observer); }

 private:
  struct Step {
    bool isMark = false;
    std::string label;
    // Restored last first: what a command made in the order made; what an
    // undo gives back in the order restored, whose reverse goes forward.
    std::vector<DrawingChange> changes;
  };
  // Restores the step's changes last first; afterwards the step holds the
  // changes that reverse that, to be restored last first in turn.
  void reverse(Step& step);
  void notify() const;

  DrawingDatabase& drawing_;
  std::vector<Step> done_;
  std::vector<Step> redo_;  // as undone: the last undone last
  int depth_ = 0;
  bool groupOpen_ = false;
  bool historyCommand_ = false;  // the running command is U, UNDO or REDO
  std::function<void()> changed_;
};

}  // namespace standalone
