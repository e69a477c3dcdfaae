#include "apps/corvane-workbench/session.h"

#include <array>

#include "standalone/db/dxf_reader.h"
#include "standalone/db/dxf_writer.h"
#include "standalone/editor/answer_parse.h"
#include "standalone/editor/errors.h"

namespace workbench {

namespace {

standalone::DrawingDatabase openDrawing(const std::filesystem::path& path) {
  if (path.empty()) return standalone::DrawingDatabase::createEmpty();
  if (!std::filesystem::is_regular_file(path))
    throw standalone::InputError(path.string() + ": no such drawing file");
  return standalone::loadDxf(path);
}

}  // namespace

bool leavesDrawingUnchanged(std::string_view typedName) {
  static constexpr std::array<std::string_view, 4> kLookOnly{"ZOOM", "ABOUT_CORVANE", "ZORL_ABOUT", "PNGOUT"};
  std::string name = standalone::toUpperAscii(typedName);
  while (!name.empty() && (name.front() == '_' || name.front() == '.')) name.erase(0, 1);
  if (name.starts_with("ZORL_DEMO")) return true;
  for (std::string_view n : kLookOnly)
    if (name == n) return true;
  return false;
}

Session::Session(const std::filesystem::path& path, std::ostream& transcript, InteractiveAnswers& answers,
                 standalone::EmbeddedHostOptions options)
    : path_(path), answers_(answers) {
  host_ = std::make_unique<standalone::EmbeddedHost>(openDrawing(path), transcript, std::move(options));
  host_->editor().pushSource(answers_, false, false);
  plugin_ = std::make_unique<corvane_app::LoadedPlugin>(*host_);
}

Session::~Session() {
  plugin_.reset();
  host_->editor().popSource();
}

void Session::runPendingInput() {
  if (busy_) return;  // the running command takes the input itself
  while (answers_.hasInput()) runOneCommand();
}

void Session::runOneCommand() {
  busy_ = true;
  standalone::CommandLine& editor = host_->editor();
  // A fresh source level for each command: a command ended by an abort
  // leaves nothing behind for the next one.
  editor.popSource();
  editor.pushSource(answers_, false, false);
  std::optional<std::string> name = editor.readCommandName();
  if (name && !name->empty()) {
    try {
      if (host_->hostCommands().runTyped(*name) && !leavesDrawingUnchanged(*name)) modified_ = true;
      host_->hostCommands().runQueuedExpressions();
    } catch (const std::exception& e) {
      // An input error or a failed command ends that command only; the
      // drawing stays open.
      editor.transcript().endLine();
      editor.print(std::string("Command ") + *name + " failed: " + e.what() + "\n");
      modified_ = true;
    }
  }
  editor.transcript().endLine();
  if (answers_.aborted()) answers_.restart();
  busy_ = false;
  if (ended_) ended_();
}

void Session::saveAs(const std::filesystem::path& path) {
  host_->storeView();
  standalone::saveDxf(host_->drawing(), path);
  path_ = path;
  modified_ = false;
}

}  // namespace workbench
