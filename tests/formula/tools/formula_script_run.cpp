// Runs a command script on the embedded host over an empty drawing with the
// plug-in loaded and saves the drawing as DXF; the transcript goes to stdout.
//   formula_script_run SCRIPT OUT.dxf SETTINGS_FILE
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>

#include "frame/module.h"
#include "standalone/db/dxf_writer.h"
#include "standalone/editor/answer_source.h"
#include "standalone/editor/embedded_host.h"

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: %s SCRIPT OUT.dxf SETTINGS_FILE\n", argv[0]);
    return 2;
  }
  try {
    std::ifstream in(argv[1]);
    if (!in) {
      std::fprintf(stderr, "%s: cannot read %s\n", argv[0], argv[1]);
      return 1;
    }
    std::stringstream script;
    script << in.rdbuf();
    standalone::EmbeddedHostOptions options;
    options.settingsPath = argv[3];
    options.modulePath = argv[0];
    options.openPages = false;
    standalone::EmbeddedHost embedded(standalone::DrawingDatabase::createEmpty(), std::cout, options);
    frame::Module module(embedded.host());
    module.acrxEntryPoint(frame::AppMsg::kInitAppMsg);
    standalone::ScriptReader reader = standalone::ScriptReader::fromText(argv[1], script.str());
    standalone::SessionResult result = embedded.run(reader);
    standalone::saveDxf(embedded.drawing(), argv[2]);
    if (result.failure) {
      std::fprintf(stderr, "%s: %s\n", argv[0], result.failure->c_str());
      return 1;
    }
    return 0;
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s: %s\n", argv[0], e.what());
    return 1;
  }
}
