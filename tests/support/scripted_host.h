#pragma once
// The embedded host in a temporary directory of its own (settings file,
// module path), with scripts run through its command line and the transcript
// kept in a string. Needs only the embedded host, not the plug-in.
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>

#include "standalone/editor/answer_source.h"
#include "standalone/editor/embedded_host.h"
#include "tests/support/temp_dir.h"

namespace test_support {

class ScriptedHost {
 public:
  explicit ScriptedHost(const std::string& tag) : dir_(tag) {
    // Pages are only noted in the transcript: there is no display in a test.
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
  }
  virtual ~ScriptedHost() = default;
  ScriptedHost(const ScriptedHost&) = delete;
  ScriptedHost& operator=(const ScriptedHost&) = delete;

  const std::filesystem::path& root() const { return dir_.path(); }
  std::string settingsPath() const { return dir_.file("settings.reg"); }

  // Starts the host over the drawing with modulePath as the module's file;
  // prepare adds to it (host commands, test commands) before anything runs.
  template <class Prepare>
  void startHost(standalone::DrawingDatabase drawing, const std::filesystem::path& modulePath, Prepare prepare) {
    standalone::EmbeddedHostOptions options;
    options.settingsPath = settingsPath();
    options.modulePath = modulePath.string();
    host_ = std::make_unique<standalone::EmbeddedHost>(std::move(drawing), out_, options);
    prepare(*host_);
  }

  // Runs a script; returns what it added to the transcript.
  std::string run(const std::string& script) {
    std::size_t before = out_.str().size();
    auto source = standalone::ScriptReader::fromText("test.scr", script);
    lastResult_ = host_->run(source);
    return out_.str().substr(before);
  }

  // Appends an entity to the running host's drawing; its id.
  host::ObjectId add(host::EntityData data, const std::string& layer = "0") {
    host::Entity e;
    e.props.layer = layer;
    e.data = std::move(data);
    host_->drawing().append(e);
    return e.id;
  }

  std::string transcript() const { return out_.str(); }
  const standalone::SessionResult& lastResult() const { return lastResult_; }
  standalone::EmbeddedHost& host() { return *host_; }

 protected:
  void stopHost() { host_.reset(); }

 private:
  TempDir dir_;
  std::ostringstream out_;
  std::unique_ptr<standalone::EmbeddedHost> host_;
  standalone::SessionResult lastResult_;
};

// "1F": the handle of an id as picks and selections show it.
inline std::string handleOf(host::ObjectId id) {
  char buf[24];
  std::snprintf(buf, sizeof buf, "%llX", static_cast<unsigned long long>(id.value));
  return buf;
}

}  // namespace test_support
