// The settings-file reader: any text parses or is refused with a message, and
// what parses writes back to the same document.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "standalone/editor/errors.h"
#include "standalone/editor/settings_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  standalone::RegDocument doc;
  try {
    doc = standalone::parseRegText(text);
  } catch (const standalone::SettingsError&) {
    return 0;
  }
  // Later values of the same name replace earlier ones, so the written text
  // holds each key and value once and reads back as the same document.
  if (standalone::parseRegText(standalone::formatRegText(doc)) != doc) std::abort();
  return 0;
}
