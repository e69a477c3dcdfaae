#pragma once
// The embedded host: one drawing with its curve kernel, command line, system
// variables, command stack, host commands, settings file and desktop
// services, handed to the plug-in as a host::Host.
#include <memory>
#include <ostream>
#include <string>

#include "host/host.h"
#include "standalone/db/database.h"
#include "standalone/editor/command_line.h"
#include "standalone/editor/command_registry.h"
#include "standalone/editor/demand_load.h"
#include "standalone/editor/desktop_platform.h"
#include "standalone/editor/host_commands.h"
#include "standalone/editor/menu_file.h"
#include "standalone/editor/session.h"
#include "standalone/editor/settings_file.h"
#include "standalone/editor/system_variables.h"
#include "standalone/editor/class_registry.h"
#include "standalone/editor/transcript.h"
#include "standalone/editor/undo_history.h"
#include "standalone/kernel/curve_kernel.h"

namespace standalone {

struct EmbeddedHostOptions {
  std::string settingsPath;  // the per-user settings file
  std::string modulePath;    // what the plug-in sees as its own module file
  int viewportWidthPixels = 1600;
  int viewportHeightPixels = 1000;
  bool openPages = true;  // false: pages and documents are never handed to the desktop
};

class EmbeddedHost {
 public:
  // Takes the drawing; the transcript goes to out.
  EmbeddedHost(DrawingDatabase drawing, std::ostream& out, EmbeddedHostOptions options);
  EmbeddedHost(const EmbeddedHost&) = delete;
  EmbeddedHost& operator=(const EmbeddedHost&) = delete;

  host::Host& host() { return host_; }
  DrawingDatabase& drawing() { return drawing_; }
  CommandLine& editor() { return editor_; }
  Transcript& transcript() { return transcript_; }
  CommandRegistry& commands() { return registry_; }
  HostCommandRunner& hostCommands() { return runner_; }
  SystemVariableTable& sysvars() { return sysvars_; }
  ClassRegistry& classes() { return classes_; }
  SettingsFile& settings() { return settings_; }
  MenuSet& menus() { return menus_; }
  View& view() { return view_; }
  // Undo and redo of whole commands (U, UNDO and REDO use it too).
  UndoHistory& undoHistory() { return undo_; }

  // Runs the commands the source gives until it ends (see runSession).
  SessionResult run(AnswerSource& source);
  // Writes the current view into the drawing's active viewport, so a saved
  // drawing opens where ZOOM left it. A view nobody moved is left as the
  // drawing recorded it (its aspect ratio is not the window's to rewrite).
  void storeView();

 private:
  // A notice of the host itself (settings file, desktop) on a line of its own.
  void showNote(const std::string& note);

  class Header : public DrawingHeader {
   public:
    explicit Header(DrawingDatabase& db) : db_(db) {}
    std::optional<host::ResBuf> get(std::string_view dxfName) const override;
    void set(std::string_view dxfName, int group, const host::ResBuf& value) override;

   private:
    DrawingDatabase& db_;
  };

  DrawingDatabase drawing_;
  Transcript transcript_;
  CurveKernel kernel_;
  View view_;
  View openingView_ = view_;  // the view as loaded, to tell whether ZOOM moved it
  Header header_{drawing_};
  SettingsFile settings_;
  SystemVariableTable sysvars_;
  CommandLine editor_;
  CommandRegistry registry_;
  MenuSet menus_;
  HostCommandRunner runner_;
  DemandLoadFile demandLoad_;
  DesktopPlatform platform_;
  ClassRegistry classes_;
  UndoHistory undo_{drawing_};
  host::Host host_;
};

// The view a drawing records in its active viewport, for a viewport of the
// given pixel size; a drawing without one gets a view of its extents.
View initialView(const DrawingDatabase& drawing, const host::CurveServices& curves, int widthPixels,
                 int heightPixels);

}  // namespace standalone
