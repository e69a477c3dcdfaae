#include "standalone/editor/session.h"

#include "standalone/editor/errors.h"

namespace standalone {

SessionResult runSession(CommandLine& editor, HostCommandRunner& runner) {
  SessionResult result;
  auto fail = [&](std::string why) {
    if (!result.failure) result.failure = std::move(why);
  };
  while (true) {
    std::optional<std::string> name;
    try {
      name = editor.readCommandName();
    } catch (const InputError& e) {
      fail(e.what());
      break;
    }
    if (!name) break;
    if (name->empty()) continue;  // Enter at the command prompt does nothing here
    try {
      if (runner.runTyped(*name)) ++result.commandsRun;
      else fail("unknown command \"" + *name + "\"");
      runner.runQueuedExpressions();
    } catch (const InputError& e) {
      editor.transcript().endLine();
      fail(e.what());
      break;
    } catch (const std::exception& e) {
      // A command that failed this way is a bug; report it and stop the run.
      editor.transcript().endLine();
      editor.print(std::string("Command ") + *name + " failed: " + e.what() + "\n");
      fail("command " + *name + " failed: " + e.what());
      break;
    }
    if (const std::optional<std::string>& prompt = editor.endedAtPrompt()) {
      fail("the input ended while the prompt \"" + *prompt + "\" was waiting");
      break;
    }
  }
  editor.transcript().endLine();
  return result;
}

}  // namespace standalone
