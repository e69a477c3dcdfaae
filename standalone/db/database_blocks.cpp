// New block definitions: a block table record (R13 and later) or a private id
// (R12), with its BLOCK and ENDBLK records, as a file of that version has them.
#include "standalone/db/database.h"
#include "standalone/db/dxf_codepage.h"
#include "standalone/db/dxf_tags.h"
#include "standalone/db/tag_record.h"

namespace standalone {

std::optional<host::ObjectId> DrawingDatabase::addBlock(const std::string& name, const ge::Point3d& basePoint) {
  if (name.empty() || findBlock(name)) return std::nullopt;
  touchFrame();
  const bool markers = hasSubclassMarkers(c_.version);
  const std::string fileName = encodeText(name, c_.encoding());
  std::uint64_t id = 0;
  if (markers) {
    SymbolTable* table = findTable("BLOCK_RECORD");
    if (!table) return std::nullopt;
    id = c_.nextHandle++;
    c_.records.push_back(makeRecord({{0, "BLOCK_RECORD"},
                                     {5, formatHandle(id)},
                                     {330, formatHandle(table->head.handle)},
                                     {100, "AcDbSymbolTableRecord"},
                                     {100, "AcDbBlockTableRecord"},
                                     {2, fileName}},
                                    c_.encoding()));
    table->entries.push_back(c_.records.size() - 1);
    c_.index.emplace(id, Slot{Slot::Kind::kRecord, c_.records.size() - 1});
  } else {
    id = c_.nextHandle++;
    c_.privateIds.push_back(id);
  }
  // Starts BLOCK and ENDBLK alike: handle and owner from R13 on, then the layer.
  auto start = [&](const char* type) {
    TagList t{{0, type}};
    if (markers) t.insert(t.end(), {{5, formatHandle(c_.nextHandle++)}, {330, formatHandle(id)}, {100, "AcDbEntity"}});
    t.push_back({8, "0"});
    return t;
  };
  BlockDefinition block;
  block.recordId = id;
  TagList begin = start("BLOCK");
  if (markers) begin.push_back({100, "AcDbBlockBegin"});
  begin.insert(begin.end(), {{2, fileName},
                             {70, "0"},
                             {10, formatReal(basePoint.x)},
                             {20, formatReal(basePoint.y)},
                             {30, formatReal(basePoint.z)},
                             {3, fileName},
                             {1, ""}});
  block.begin = makeRecord(std::move(begin), c_.encoding());
  TagList end = start("ENDBLK");
  if (markers) end.push_back({100, "AcDbBlockEnd"});
  block.end = makeRecord(std::move(end), c_.encoding());
  c_.blocks.push_back(std::move(block));
  return host::ObjectId{id};
}

}  // namespace standalone
