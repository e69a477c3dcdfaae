#pragma once
// The host's own commands (ZOOM, ERASE, MENULOAD, and later PEDIT, BOUNDARY,
// ...), run when the user types them or when a plug-in sends their input as
// tokens; the queue of expressions run after the current command.
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "host/commands.h"
#include "host/curves.h"
#include "host/drawing.h"
#include "host/sysvars.h"
#include "standalone/editor/command_line.h"
#include "standalone/editor/command_registry.h"
#include "standalone/editor/menu_file.h"
#include "standalone/editor/view.h"

namespace standalone {

// What a host command works on.
struct HostCommandContext {
  CommandLine& editor;
  host::Drawing& drawing;
  const host::CurveServices& curves;
  host::SystemVariables& sysvars;
  View& view;
  MenuSet& menus;
};

// A short (RTSHORT) system variable's value; the fallback when it is not set
// or holds another type.
int shortVariable(const host::SystemVariables& vars, std::string_view name, int fallback);

// A host command reads its input through the command line like any command.
using HostCommand = std::function<void(HostCommandContext&)>;

class HostCommandRunner : public host::HostCommands {
 public:
  HostCommandRunner(HostCommandContext context, CommandRegistry& registry);

  // Adds a host command under its name (ASCII case ignored); replaces one of the same name.
  void addHostCommand(std::string_view name, HostCommand command);
  bool hasHostCommand(std::string_view name) const;

  // Runs a command by the name the user typed: "_NAME" for global names,
  // "." forces the host's own command; plug-in commands come before host
  // commands. False (with the host's message) when no command has that name.
  bool runTyped(std::string_view typed);
  // Runs the expressions queued so far, each shown after "Command: ".
  void runQueuedExpressions();
  // Called around every command run by name, nested ones too, with its
  // upper-case name (the undo history's steps); end also when it throws.
  void setCommandBracket(std::function<void(const std::string&)> begin, std::function<void()> end) {
    begin_ = std::move(begin);
    end_ = std::move(end);
  }

  int command(const host::ResBufList& tokens) override;
  void queueExpression(std::string_view expression) override;
  bool isMenuGroupLoaded(std::string_view group) const override;
  int releaseNumber() const override { return 23; }

 private:
  HostCommandContext context_;
  CommandRegistry& registry_;
  std::map<std::string, HostCommand> table_;  // upper-case names
  std::deque<std::string> queue_;
  std::function<void(const std::string&)> begin_;
  std::function<void()> end_;
};

// The token a command receives for a typed value, as the user would type it.
std::string tokenText(const host::ResBuf& token);

// Adds ZOOM, ERASE, MENULOAD and SETVAR.
void addBasicHostCommands(HostCommandRunner& runner);

}  // namespace standalone
