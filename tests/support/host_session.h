#pragma once
// The plug-in's module on the embedded host in a temporary directory of its
// own (settings file, module folder), with scripts run through the host's
// command line. The end-to-end suites build their sessions on it.
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>

#include "frame/module.h"
#include "standalone/editor/answer_source.h"
#include "standalone/editor/embedded_host.h"

namespace test_support {

class HostSession {
 public:
  // tag names the temporary directory, to tell the suites' leftovers apart.
  explicit HostSession(const std::string& tag) {
    // Pages are only noted in the transcript: there is no display in a test.
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    std::string pattern = "/tmp/corvane-" + tag + "-XXXXXX";
    root_ = mkdtemp(pattern.data());
  }
  ~HostSession() {
    module_.reset();
    host_.reset();
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
  }
  HostSession(const HostSession&) = delete;
  HostSession& operator=(const HostSession&) = delete;

  const std::filesystem::path& root() const { return root_; }
  std::string settingsPath() const { return (root_ / "settings.reg").string(); }

  // Starts the host over the drawing, lets prepare add to it (host commands),
  // then loads the module as the file modulePath and sends it the initialisation message.
  template <class Prepare>
  void start(standalone::DrawingDatabase drawing, const std::filesystem::path& modulePath, Prepare prepare) {
    standalone::EmbeddedHostOptions options;
    options.settingsPath = settingsPath();
    options.modulePath = modulePath.string();
    host_ = std::make_unique<standalone::EmbeddedHost>(std::move(drawing), out_, options);
    prepare(*host_);
    module_ = std::make_unique<frame::Module>(host_->host());
    module_->acrxEntryPoint(frame::AppMsg::kInitAppMsg);
  }

  // Runs a script; returns what it added to the transcript.
  std::string run(const std::string& script) {
    std::size_t before = out_.str().size();
    auto source = standalone::ScriptReader::fromText("test.scr", script);
    lastResult_ = host_->run(source);
    return out_.str().substr(before);
  }

  std::string transcript() const { return out_.str(); }
  const standalone::SessionResult& lastResult() const { return lastResult_; }
  standalone::EmbeddedHost& host() { return *host_; }
  frame::Module& module() { return *module_; }

 private:
  std::filesystem::path root_;
  std::ostringstream out_;
  std::unique_ptr<standalone::EmbeddedHost> host_;
  std::unique_ptr<frame::Module> module_;
  standalone::SessionResult lastResult_;
};

}  // namespace test_support
