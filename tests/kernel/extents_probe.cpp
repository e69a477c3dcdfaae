// Prints the extents of every block reference in model space of a DXF file,
// one line each: handle (hexadecimal), min x, min y, max x, max y; or the
// handle and "none". For insert_extents_oracle.py.
#include <cstdio>

#include "host/drawing.h"
#include "standalone/db/dxf_reader.h"
#include "standalone/kernel/curve_kernel.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: extents_probe DRAWING.dxf\n");
    return 2;
  }
  standalone::DrawingDatabase db = standalone::loadDxf(argv[1]);
  standalone::CurveKernel kernel;
  host::BlockContentsLookup blocks = host::blockContentsOf(db);
  for (host::ObjectId id : db.entitiesOf(db.modelSpace())) {
    const host::Entity* e = db.peek(id);
    const auto* ref = e ? std::get_if<host::BlockReference>(&e->data) : nullptr;
    if (!ref) continue;
    ge::Extents3d ext;
    if (kernel.getBlockReferenceExtents(*ref, blocks, ext) != host::ErrorStatus::eOk) {
      std::printf("%llX none\n", static_cast<unsigned long long>(id.value));
      continue;
    }
    std::printf("%llX %.17g %.17g %.17g %.17g\n", static_cast<unsigned long long>(id.value), ext.min.x, ext.min.y,
                ext.max.x, ext.max.y);
  }
  return 0;
}
