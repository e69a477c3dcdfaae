#pragma once
// The embedded host over an empty drawing with the prompt probe registered,
// a settings file in a fresh temporary folder and the transcript in a string.
#include "prompt_probe.h"
#include "tests/support/scripted_host.h"

namespace corvane_test {

using test_support::handleOf;
using test_support::TempDir;

class HostFixture : public test_support::ScriptedHost {
 public:
  HostFixture() : ScriptedHost("editor") {
    startHost(standalone::DrawingDatabase::createEmpty(), root() / "corvane",
              [](standalone::EmbeddedHost& h) { registerPromptProbe(h.host()); });
  }
};

}  // namespace corvane_test
