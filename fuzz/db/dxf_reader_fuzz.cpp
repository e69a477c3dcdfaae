// Fuzz target of the DXF reader: any bytes either read into a drawing, which
// must then write and read again, or give a DxfError; nothing else may escape.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "standalone/db/dxf_reader.h"
#include "standalone/db/dxf_writer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  try {
    auto db = standalone::readDxf(text);
    for (auto id : db.entitiesOf(db.modelSpace())) (void)db.read(id);
    std::string out = standalone::writeDxf(db);
    try {
      (void)standalone::readDxf(out);
    } catch (const standalone::DxfError& e) {
      std::fprintf(stderr, "our own output does not read: %s\n", e.what());
      std::abort();
    }
  } catch (const standalone::DxfError&) {
  }
  return 0;
}
