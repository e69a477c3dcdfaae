// Fuzz target of the DXF reader: any bytes either read into a drawing, which
// must then write and read again, or give a DxfError; nothing else may escape.
// The drawing is written twice: as read, and with every interpreted entity
// regenerated from its record and every block reference moved and turned (so
// kept groups, attributes and vertex ids of the file are written anew).
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "standalone/db/dxf_reader.h"
#include "standalone/db/dxf_writer.h"

namespace {

void writeAndReadAgain(const standalone::DrawingDatabase& db) {
  std::string out = standalone::writeDxf(db);
  try {
    (void)standalone::readDxf(out);
  } catch (const standalone::DxfError& e) {
    std::fprintf(stderr, "our own output does not read: %s\n", e.what());
    std::abort();
  }
}

void touchEverything(standalone::DrawingDatabase& db) {
  for (auto id : db.entitiesOf(db.modelSpace())) {
    auto e = db.read(id);
    if (!e || std::holds_alternative<host::OtherEntity>(e->data)) continue;
    if (auto* ref = std::get_if<host::BlockReference>(&e->data)) {
      ref->position = ref->position + ge::Vector3d{1, 2, 0};
      ref->rotation += 0.5;
      ref->scale.x = -ref->scale.x;
    }
    db.write(*e);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  try {
    auto db = standalone::readDxf(text);
    writeAndReadAgain(db);
    touchEverything(db);
    writeAndReadAgain(db);
  } catch (const standalone::DxfError&) {
  }
  return 0;
}
