#include "options.h"

namespace corvane_app {

std::string usageText() {
  return "Usage:\n"
         "  corvane DRAWING.dxf [-s SCRIPT | -c TEXT] [-o OUT.dxf] [--svg FILE] [--png FILE]\n"
         "  corvane commands                 list the registered commands (global name, local name)\n"
         "  corvane menu                     show the menu the plug-in loads\n"
         "  corvane settings list            list the stored settings\n"
         "  corvane settings get NAME        print one setting\n"
         "  corvane settings set NAME VALUE  store a setting (a decimal integer is stored as an integer)\n"
         "  corvane --help\n"
         "\n"
         "Answers come from SCRIPT, from TEXT, or from the terminal when neither is given.\n"
         "Script rules: a space or a line end answers a prompt; ';' starts a comment line;\n"
         "points are x,y or x,y,z, and @dx,dy is relative to the last point; keywords by\n"
         "their capital letters; at \"Select objects:\" ALL, L, P, W and C with two corners,\n"
         "points, handles as #1F or (handent \"1F\"), and an empty answer to finish;\n"
         "^C cancels the current prompt; an empty answer at \"Command:\" does nothing.\n"
         "Host commands: ZOOM, ERASE, MENULOAD, SETVAR (and PEDIT, INSERT when built in); the\n"
         "plug-in's commands by their local names or by \"_\" and their global names.\n"
         "Without -o nothing is written. Settings live in $CORVANE_SETTINGS, else\n"
         "$XDG_CONFIG_HOME/corvane/settings.reg, else ~/.config/corvane/settings.reg.\n";
}

namespace {

SettingsRequest parseSettings(const std::vector<std::string>& args) {
  if (args.size() < 2) throw UsageError("settings needs list, get NAME or set NAME VALUE");
  const std::string& op = args[1];
  if (op == "list" && args.size() == 2) return {SettingsRequest::Op::kList, {}, {}};
  if (op == "get" && args.size() == 3) return {SettingsRequest::Op::kGet, args[2], {}};
  if (op == "set" && args.size() == 4) return {SettingsRequest::Op::kSet, args[2], args[3]};
  throw UsageError("settings needs list, get NAME or set NAME VALUE");
}

}  // namespace

Request parseArguments(const std::vector<std::string>& args) {
  if (args.empty()) throw UsageError("no drawing given");
  const std::string& first = args[0];
  if (first == "--help" || first == "-h") return HelpRequest{};
  if (first == "commands" && args.size() == 1) return CommandsListing{};
  if (first == "menu" && args.size() == 1) return MenuListing{};
  if (first == "settings") return parseSettings(args);
  RunRequest run;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string& a = args[i];
    auto value = [&](std::optional<std::string>& slot) {
      if (i + 1 >= args.size()) throw UsageError(a + " needs a value");
      if (slot) throw UsageError(a + " given twice");
      slot = args[++i];
    };
    if (a == "-s") value(run.script);
    else if (a == "-c") value(run.commandText);
    else if (a == "-o") value(run.output);
    else if (a == "--svg") value(run.svg);
    else if (a == "--png") value(run.png);
    else if (a == "--help" || a == "-h") return HelpRequest{};
    else if (a.starts_with("-") && a != "-") throw UsageError("unknown option " + a);
    else if (run.drawing.empty()) run.drawing = a;
    else throw UsageError("more than one drawing given: " + run.drawing + " and " + a);
  }
  if (run.drawing.empty()) throw UsageError("no drawing given");
  if (run.script && run.commandText) throw UsageError("-s and -c cannot be used together");
  return run;
}

}  // namespace corvane_app
