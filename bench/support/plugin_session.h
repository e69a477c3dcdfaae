#pragma once
// An embedded host over a drawing with the plug-in loaded, its transcript
// kept in memory and its settings in a scratch folder, for benchmarks that
// time whole commands.
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>

#include "frame/module.h"
#include "standalone/editor/answer_source.h"
#include "standalone/editor/embedded_host.h"

namespace bench_support {

struct PluginSession {
  std::string dir;
  std::ostringstream out;
  std::unique_ptr<standalone::EmbeddedHost> host;
  std::unique_ptr<frame::Module> module;

  // prepare adds host commands before the plug-in loads.
  explicit PluginSession(standalone::DrawingDatabase db,
                         const std::function<void(standalone::EmbeddedHost&)>& prepare = {}) {
    char pattern[] = "/tmp/corvane-bench-XXXXXX";
    dir = mkdtemp(pattern);
    // The load counter past the introduction pages, so no page is opened.
    std::ofstream(dir + "/settings.reg") << "Windows Registry Editor Version 5.00\n\n"
                                            "[HKEY_CURRENT_USER\\Software\\Brightvale\\Corvane]\n"
                                            "\"pagetimes\"=dword:0000000a\n";
    standalone::EmbeddedHostOptions options;
    options.settingsPath = dir + "/settings.reg";
    options.modulePath = dir + "/corvane";
    host = std::make_unique<standalone::EmbeddedHost>(std::move(db), out, options);
    if (prepare) prepare(*host);
    module = std::make_unique<frame::Module>(host->host());
    module->acrxEntryPoint(frame::AppMsg::kInitAppMsg);
  }
  ~PluginSession() {
    module.reset();
    host.reset();
    std::error_code ignored;
    std::filesystem::remove_all(dir, ignored);
  }
  void run(const std::string& script) {
    auto source = standalone::ScriptReader::fromText("bench.scr", script);
    host->run(source);
  }
};

}  // namespace bench_support
