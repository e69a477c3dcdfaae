#pragma once
// One open drawing in the workbench: the embedded host with the plug-in
// loaded, the file it came from, whether it changed, and the command loop
// that runs what the user types, one command at a time.
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "apps/common/loaded_plugin.h"
#include "apps/corvane-workbench/interactive_answers.h"
#include "standalone/editor/embedded_host.h"

namespace workbench {

class Session {
 public:
  // Opens the drawing (a new empty one when path is empty); throws
  // standalone::InputError (or a DXF error) naming the file when it cannot be read.
  Session(const std::filesystem::path& path, std::ostream& transcript, InteractiveAnswers& answers,
          standalone::EmbeddedHostOptions options);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  standalone::EmbeddedHost& host() { return *host_; }
  frame::Module& module() { return plugin_->module(); }
  const std::filesystem::path& path() const { return path_; }
  bool modified() const { return modified_; }
  void markModified() { modified_ = true; }
  bool busy() const { return busy_; }

  // Runs the commands the answers hold, one after another, while answers are
  // ready; each waits for the user's further answers inside. Returns when no
  // input is left at the "Command:" prompt (which the window shows beside
  // its input line: the transcript gets it with the next command's name).
  void runPendingInput();
  // Saves to path (written aside and renamed); the drawing is then unchanged
  // and belongs to that file. Throws FileWriteError naming the file.
  void saveAs(const std::filesystem::path& path);
  // Called after every command, whatever it did.
  void setCommandEnded(std::function<void()> ended) { ended_ = std::move(ended); }

 private:
  void runOneCommand();

  std::filesystem::path path_;
  InteractiveAnswers& answers_;
  std::unique_ptr<standalone::EmbeddedHost> host_;
  std::unique_ptr<corvane_app::LoadedPlugin> plugin_;
  std::function<void()> ended_;
  bool modified_ = false;
  bool busy_ = false;
};

// Commands that show or look but never change the drawing.
bool leavesDrawingUnchanged(std::string_view typedName);

}  // namespace workbench
