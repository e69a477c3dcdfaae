#include "standalone/editor/undo_commands.h"

#include "host/codes.h"

namespace standalone {

namespace {

// The steps' names on one line.
void printLabels(CommandLine& ed, const std::vector<std::string>& labels) {
  std::string line;
  for (const std::string& label : labels) line += (line.empty() ? "" : " ") + label;
  if (!line.empty()) ed.print(line + "\n");
}

// The undone steps' names, then why it stopped short.
void report(CommandLine& ed, const UndoHistory::Undone& undone) {
  printLabels(ed, undone.labels);
  if (undone.stop == UndoHistory::Stop::kMark) ed.print("Mark encountered\n");
  if (undone.stop == UndoHistory::Stop::kEverything) ed.print("Everything has been undone\n");
}

void undoCommand(HostCommandContext& c, UndoHistory& history) {
  CommandLine& ed = c.editor;
  ed.print("Current settings: Auto = On, Control = All, Combine = Yes, Layer = Yes\n");
  ed.initGet(host::RSG_NOZERO | host::RSG_NONEG, "Auto Control BEgin End Mark Back");
  int count = 1;
  int rc = ed.getInt("Enter the number of operations to undo or [Auto/Control/BEgin/End/Mark/Back] <1>: ", count);
  if (rc == host::RTNORM || rc == host::RTNONE) return report(ed, history.undo(rc == host::RTNORM ? count : 1));
  if (rc != host::RTKWORD) return;
  std::string option;
  ed.getInput(option);
  if (option == "BEgin") return history.beginGroup();
  if (option == "End") return history.endGroup();
  if (option == "Mark") return history.mark();
  if (option == "Back") {
    if (!history.hasMark()) {
      ed.initGet(0, "Yes No");
      std::string answer;
      int yes = ed.getKword("This will undo everything. OK? <Y>: ", answer);
      if (yes == host::RTCAN || (yes == host::RTNORM && answer == "No")) return;
    }
    return report(ed, history.undoToMark());
  }
  // Auto and Control change nothing here: every command is one step and every step is kept.
  ed.print("UNDO " + option + " is not available in this host; every command is one undo step.\n");
}

}  // namespace

void addUndoCommands(HostCommandRunner& runner, UndoHistory& history) {
  runner.addHostCommand("U", [&history](HostCommandContext& c) { report(c.editor, history.undo(1)); });
  runner.addHostCommand("UNDO", [&history](HostCommandContext& c) { undoCommand(c, history); });
  runner.addHostCommand("REDO", [&history](HostCommandContext& c) {
    std::vector<std::string> labels = history.redo();
    if (labels.empty()) return c.editor.print("Nothing to redo.\n");
    printLabels(c.editor, labels);
  });
}

}  // namespace standalone
