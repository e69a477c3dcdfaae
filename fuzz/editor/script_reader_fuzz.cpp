// Scripts: the reader's word and line answers, then the same text run as a
// script through the embedded host's command line and host commands.
#include <cstdint>
#include <ostream>
#include <streambuf>
#include <string>
#include <unistd.h>

#include "standalone/editor/answer_source.h"
#include "standalone/editor/embedded_host.h"
#include "standalone/editor/errors.h"

namespace {

class NullBuffer : public std::streambuf {
 protected:
  int overflow(int c) override { return c; }
};

void readAll(const std::string& text) {
  standalone::ScriptReader r = standalone::ScriptReader::fromText("fuzz.scr", text);
  // Alternate the two answer kinds by the bytes of the text itself.
  for (std::size_t i = 0;; ++i) {
    bool line = !text.empty() && (static_cast<unsigned char>(text[i % text.size()]) & 1);
    if (!(line ? r.nextLine() : r.nextWord())) break;
  }
}

void runAsScript(const std::string& text) {
  NullBuffer nothing;
  std::ostream out(&nothing);
  standalone::EmbeddedHostOptions options;
  options.settingsPath = "/tmp/corvane-script-fuzz-" + std::to_string(::getpid()) + ".reg";
  options.openPages = false;
  standalone::DrawingDatabase db = standalone::DrawingDatabase::createEmpty();
  for (int i = 0; i < 3; ++i) {
    host::Entity e;
    e.data = host::Line{{0, double(i), 0}, {10, double(i), 0}};
    db.append(e);
  }
  standalone::EmbeddedHost h(std::move(db), out, options);
  standalone::ScriptReader r = standalone::ScriptReader::fromText("fuzz.scr", text);
  h.run(r);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  try {
    readAll(text);
  } catch (const standalone::ScriptError&) {
    return 0;  // refused with a message: the expected outcome for bad bytes
  }
  runAsScript(text);
  return 0;
}
