#pragma once
// The plug-in's module loaded on the scripted embedded host. The end-to-end
// suites of the plug-in build their sessions on it.
#include <memory>
#include <string>

#include "frame/module.h"
#include "tests/support/scripted_host.h"

namespace test_support {

class HostSession : public ScriptedHost {
 public:
  // tag names the temporary directory, to tell the suites' leftovers apart.
  explicit HostSession(const std::string& tag) : ScriptedHost(tag) {}
  ~HostSession() override {
    module_.reset();
    stopHost();
  }

  // Starts the host over the drawing, lets prepare add to it (host commands),
  // then loads the module as the file modulePath and sends it the initialisation message.
  template <class Prepare>
  void start(standalone::DrawingDatabase drawing, const std::filesystem::path& modulePath, Prepare prepare) {
    startHost(std::move(drawing), modulePath, prepare);
    module_ = std::make_unique<frame::Module>(host().host());
    module_->acrxEntryPoint(frame::AppMsg::kInitAppMsg);
  }

  frame::Module& module() { return *module_; }

 private:
  std::unique_ptr<frame::Module> module_;
};

}  // namespace test_support
