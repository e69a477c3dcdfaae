// corvane: runs the plug-in's commands on a drawing from a script, text or
// the terminal; lists commands, the menu and the stored settings.
#include <filesystem>
#include <iostream>
#include <unistd.h>

#include "options.h"
#include "program.h"
#include "standalone/db/dxf_tags.h"
#include "standalone/editor/errors.h"
#include "standalone/render/render.h"
#include "standalone/render/render_error.h"

int main(int argc, char** argv) {
  using namespace corvane_app;
  // Destroyed last, once every picture is written.
  struct FontCachesReleased {
    ~FontCachesReleased() { standalone::releaseFontCaches(); }
  } fontCaches;
  std::vector<std::string> args(argv + 1, argv + argc);
  try {
    Request request = parseArguments(args);
    if (std::holds_alternative<HelpRequest>(request)) {
      std::cout << usageText();
      return 0;
    }
    if (std::holds_alternative<CommandsListing>(request)) return listCommands(std::cout, std::cerr);
    if (std::holds_alternative<MenuListing>(request)) return showMenu(std::cout, std::cerr);
    if (const auto* s = std::get_if<SettingsRequest>(&request)) return settingsCommand(*s, std::cout, std::cerr);
    if (const auto* b = std::get_if<BatchRequest>(&request))
      return runBatch(*b, std::cout, std::cerr, ::isatty(STDERR_FILENO) != 0);
    return runDrawing(std::get<RunRequest>(request), std::cout, std::cerr);
  } catch (const UsageError& e) {
    std::cerr << "corvane: " << e.what() << " (corvane --help shows the usage)\n";
    return 2;
  } catch (const standalone::DxfError& e) {
    std::cerr << "corvane: " << e.what() << "\n";
    return 1;
  } catch (const standalone::InputError& e) {
    std::cerr << "corvane: " << e.what() << "\n";
    return 1;
  } catch (const standalone::RenderError& e) {
    std::cerr << "corvane: " << e.what() << "\n";
    return 1;
  } catch (const std::filesystem::filesystem_error& e) {
    std::cerr << "corvane: " << e.what() << "\n";
    return 1;
  } catch (const std::exception& e) {
    std::cerr << "corvane: unexpected failure: " << e.what() << "\n";
    return 1;
  }
}
