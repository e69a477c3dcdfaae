#include "options.h"

#include "standalone/render/plot.h"

namespace corvane_app {

std::string usageText() {
  return "Usage:\n"
         "  corvane DRAWING.dxf [-s SCRIPT | -c TEXT] [-o OUT.dxf] [--svg FILE] [--png FILE] [--no-pages]\n"
         "                  [--pdf FILE [--paper A4|A3|...|Letter|WxH] [--landscape] [--scale 1:N|N:1|fit]\n"
         "                   [--plot-view]]   plot to PDF: paper (mm), scale paper mm : drawing units\n"
         "                                    (default A4 portrait, fitted), the extents or the last view\n"
         "  corvane batch -s SCRIPT -o FOLDER [-j N] DRAWING.dxf|FOLDER...\n"
         "                                   run SCRIPT over many drawings, N at once (default: one per core)\n"
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
         "Without -o nothing is written; --no-pages opens no pages on the desktop.\n"
         "A batch writes FOLDER/NAME.dxf and FOLDER/NAME.log for each drawing and\n"
         "FOLDER/summary.txt naming every drawing that failed and why. Settings live in $CORVANE_SETTINGS, else\n"
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

BatchRequest parseBatch(const std::vector<std::string>& args) {
  BatchRequest batch;
  std::optional<std::string> script, output, jobs;
  for (std::size_t i = 1; i < args.size(); ++i) {
    const std::string& a = args[i];
    auto value = [&](std::optional<std::string>& slot) {
      if (i + 1 >= args.size()) throw UsageError(a + " needs a value");
      if (slot) throw UsageError(a + " given twice");
      slot = args[++i];
    };
    if (a == "-s") value(script);
    else if (a == "-o") value(output);
    else if (a == "-j") value(jobs);
    else if (a.starts_with("-")) throw UsageError("unknown batch option " + a);
    else batch.inputs.push_back(a);
  }
  if (!script) throw UsageError("batch needs a script (-s SCRIPT)");
  if (!output) throw UsageError("batch needs an output folder (-o FOLDER)");
  if (batch.inputs.empty()) throw UsageError("batch needs drawings or folders of drawings");
  if (jobs) {
    if (jobs->empty() || jobs->size() > 4 || jobs->find_first_not_of("0123456789") != std::string::npos ||
        std::stoi(*jobs) < 1)
      throw UsageError("-j needs a whole number of processes from 1 to 9999");
    batch.jobs = std::stoi(*jobs);
  }
  batch.script = *script;
  batch.outputFolder = *output;
  return batch;
}

}  // namespace

Request parseArguments(const std::vector<std::string>& args) {
  if (args.empty()) throw UsageError("no drawing given");
  const std::string& first = args[0];
  if (first == "--help" || first == "-h") return HelpRequest{};
  if (first == "commands" && args.size() == 1) return CommandsListing{};
  if (first == "menu" && args.size() == 1) return MenuListing{};
  if (first == "settings") return parseSettings(args);
  if (first == "batch") return parseBatch(args);
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
    else if (a == "--pdf") value(run.pdf);
    else if (a == "--paper") value(run.paper);
    else if (a == "--scale") value(run.scale);
    else if (a == "--landscape") run.landscape = true;
    else if (a == "--plot-view") run.plotView = true;
    else if (a == "--no-pages") run.openPages = false;
    else if (a == "--help" || a == "-h") return HelpRequest{};
    else if (a.starts_with("-") && a != "-") throw UsageError("unknown option " + a);
    else if (run.drawing.empty()) run.drawing = a;
    else throw UsageError("more than one drawing given: " + run.drawing + " and " + a);
  }
  if (run.drawing.empty()) throw UsageError("no drawing given");
  if (run.script && run.commandText) throw UsageError("-s and -c cannot be used together");
  if (!run.pdf && (run.paper || run.scale || run.landscape || run.plotView))
    throw UsageError("--paper, --scale, --landscape and --plot-view go with --pdf");
  if (run.paper && !standalone::paperSizeByName(*run.paper))
    throw UsageError("unknown paper " + *run.paper + " (A0 to A5, B4, B5, Letter, Legal, Tabloid or WIDTHxHEIGHT in mm)");
  if (run.scale && !standalone::parsePlotScale(*run.scale))
    throw UsageError("bad scale " + *run.scale + " (1:100, 2:1, a positive factor or fit)");
  return run;
}

}  // namespace corvane_app
