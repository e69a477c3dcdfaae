#include "standalone/editor/undo_history.h"

#include <algorithm>

namespace standalone {

void UndoHistory::beginCommand(const std::string& label) {
  if (depth_++ > 0) return;
  // U, UNDO and REDO work on the history and are no steps of it.
  historyCommand_ = label == "U" || label == "UNDO" || label == "REDO";
  if (historyCommand_) return;
  redo_.clear();
  if (!groupOpen_) done_.push_back({false, label, {}});
  drawing_.startRecording();
}

void UndoHistory::endCommand() {
  if (depth_ == 0 || --depth_ > 0 || historyCommand_) return;
  DrawingChange change = drawing_.takeRecording();
  if (change.empty()) return;
  // An open group's step is the last one; so is the step of this command.
  auto it = std::find_if(done_.rbegin(), done_.rend(), [](const Step& s) { return !s.isMark; });
  if (it == done_.rend()) return;
  it->changes.push_back(std::move(change));
  notify();
}

void UndoHistory::reverse(Step& step) {
  std::vector<DrawingChange> forward;
  for (auto it = step.changes.rbegin(); it != step.changes.rend(); ++it) forward.push_back(drawing_.restore(std::move(*it)));
  step.changes = std::move(forward);
}

bool UndoHistory::canUndo() const {
  return std::any_of(done_.begin(), done_.end(), [](const Step& s) { return !s.isMark; });
}

void UndoHistory::forget() {
  done_.clear();
  redo_.clear();
  groupOpen_ = false;
}

bool UndoHistory::hasMark() const {
  return std::any_of(done_.begin(), done_.end(), [](const Step& s) { return s.isMark; });
}

UndoHistory::Undone UndoHistory::undo(int count) {
  groupOpen_ = false;
  Undone out;
  std::vector<Step> undone;
  for (int i = 0; i < count; ++i) {
    if (done_.empty()) {
      out.stop = Stop::kEverything;
      break;
    }
    if (done_.back().isMark) {
      out.stop = Stop::kMark;
      break;
    }
    Step step = std::move(done_.back());
    done_.pop_back();
    reverse(step);
    out.labels.push_back(step.label);
    undone.push_back(std::move(step));
  }
  if (!undone.empty()) {
    redo_ = std::move(undone);
    notify();
  }
  return out;
}

UndoHistory::Undone UndoHistory::undoToMark() {
  groupOpen_ = false;
  Undone out;
  std::vector<Step> undone;
  while (!done_.empty() && !done_.back().isMark) {
    Step step = std::move(done_.back());
    done_.pop_back();
    reverse(step);
    out.labels.push_back(step.label);
    undone.push_back(std::move(step));
  }
  if (done_.empty()) out.stop = Stop::kEverything;
  else done_.pop_back();  // the mark
  if (!undone.empty()) {
    redo_ = std::move(undone);
    notify();
  }
  return out;
}

std::vector<std::string> UndoHistory::redo() {
  std::vector<std::string> labels;
  while (!redo_.empty()) {
    Step step = std::move(redo_.back());
    redo_.pop_back();
    reverse(step);
    labels.push_back(step.label);
    done_.push_back(std::move(step));
  }
  if (!labels.empty()) notify();
  return labels;
}

void UndoHistory::mark() {
  groupOpen_ = false;
  done_.push_back({true, {}, {}});
}

void UndoHistory::beginGroup() {
  groupOpen_ = false;
  done_.push_back({false, "GROUP", {}});
  groupOpen_ = true;
}

void UndoHistory::endGroup() { groupOpen_ = false; }

void UndoHistory::notify() const {
  if (changed_) changed_();
}

}  // namespace standalone
