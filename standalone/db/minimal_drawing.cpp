#include "standalone/db/minimal_drawing.h"

#include "standalone/db/dxf_tags.h"
#include "standalone/db/tag_record.h"

namespace standalone {

namespace {

// Builds records with handles drawn in sequence.
class Builder {
 public:
  explicit Builder(DrawingContents& c) : c_(c), markers_(hasSubclassMarkers(c.version)) {}

  std::uint64_t next() { return c_.nextHandle++; }
  bool markers() const { return markers_; }

  // Common start of a record: 0 type, handle, owner (R13+ only).
  TagList start(const std::string& type, std::uint64_t handle, std::uint64_t owner, int handleCode = 5) {
    TagList t{{0, type}};
    if (handle) t.push_back({handleCode, formatHandle(handle)});
    if (markers_) t.push_back({330, formatHandle(owner)});
    return t;
  }
  void marker(TagList& t, const char* name) {
    if (markers_) t.push_back({100, name});
  }
  TagRecord record(TagList tags) { return makeRecord(std::move(tags), c_.encoding()); }

  std::uint64_t addEntry(SymbolTable& table, TagList tags) {
    c_.records.push_back(record(std::move(tags)));
    table.entries.push_back(c_.records.size() - 1);
    return c_.records.back().handle;
  }

 private:
  DrawingContents& c_;
  bool markers_;
};

void addHeader(DrawingContents& c) {
  c.header.push_back({"$ACADVER", {{1, c.version}}});
  c.header.push_back({"$DWGCODEPAGE", {{3, c.codepage}}});
  if (!hasSubclassMarkers(c.version)) c.header.push_back({"$HANDLING", {{70, "1"}}});
  c.header.push_back({"$CLAYER", {{8, "0"}}});
  c.header.push_back({"$HANDSEED", {{5, "0"}}});  // the writer puts the real seed in
}

void addLinetype(Builder& b, SymbolTable& t, const char* name, const char* description) {
  TagList e = b.start("LTYPE", b.next(), t.head.handle);
  b.marker(e, "AcDbSymbolTableRecord");
  b.marker(e, "AcDbLinetypeTableRecord");
  e.insert(e.end(), {{2, name}, {70, "0"}, {3, description}, {72, "65"}, {73, "0"}, {40, "0.0"}});
  b.addEntry(t, std::move(e));
}

void addTables(DrawingContents& c, Builder& b) {
  const bool r12 = !b.markers();
  auto table = [&](const std::string& name) -> SymbolTable& {
    c.tables.push_back(emptyTable(name, c.version, b.next()));
    refreshCache(c.tables.back().head, c.encoding());
    return c.tables.back();
  };
  table("VPORT");
  SymbolTable& ltype = table("LTYPE");
  if (!r12) {
    addLinetype(b, ltype, "ByBlock", "");
    addLinetype(b, ltype, "ByLayer", "");
  }
  addLinetype(b, ltype, r12 ? "CONTINUOUS" : "Continuous", "Solid line");

  SymbolTable& layer = table("LAYER");
  TagList l = b.start("LAYER", b.next(), layer.head.handle);
  b.marker(l, "AcDbSymbolTableRecord");
  b.marker(l, "AcDbLayerTableRecord");
  l.insert(l.end(), {{2, "0"}, {70, "0"}, {62, "7"}, {6, r12 ? "CONTINUOUS" : "Continuous"}});
  b.addEntry(layer, std::move(l));

  SymbolTable& style = table("STYLE");
  TagList s = b.start("STYLE", b.next(), style.head.handle);
  b.marker(s, "AcDbSymbolTableRecord");
  b.marker(s, "AcDbTextStyleTableRecord");
  s.insert(s.end(), {{2, r12 ? "STANDARD" : "Standard"}, {70, "0"}, {40, "0.0"}, {41, "1.0"}, {50, "0.0"},
                     {71, "0"}, {42, "2.5"}, {3, "txt"}, {4, ""}});
  b.addEntry(style, std::move(s));

  table("VIEW");
  table("UCS");
  SymbolTable& appid = table("APPID");
  TagList a = b.start("APPID", b.next(), appid.head.handle);
  b.marker(a, "AcDbSymbolTableRecord");
  b.marker(a, "AcDbRegAppTableRecord");
  a.insert(a.end(), {{2, "ACAD"}, {70, "0"}});
  b.addEntry(appid, std::move(a));

  SymbolTable& dimstyle = table("DIMSTYLE");
  TagList d = b.start("DIMSTYLE", b.next(), dimstyle.head.handle, 105);
  b.marker(d, "AcDbSymbolTableRecord");
  b.marker(d, "AcDbDimStyleTableRecord");
  d.insert(d.end(), {{2, r12 ? "STANDARD" : "Standard"}, {70, "0"}});
  b.addEntry(dimstyle, std::move(d));
}

void addSpaces(DrawingContents& c, Builder& b) {
  if (!b.markers()) {
    // R12 has no block records: the two spaces get private ids.
    c.modelSpace = b.next();
    c.paperSpace = b.next();
    c.privateIds = {c.modelSpace, c.paperSpace};
    return;
  }
  SymbolTable& records = c.tables.emplace_back(emptyTable("BLOCK_RECORD", c.version, b.next()));
  refreshCache(records.head, c.encoding());
  const char* names[] = {"*Model_Space", "*Paper_Space"};
  for (const char* name : names) {
    TagList r = b.start("BLOCK_RECORD", b.next(), records.head.handle);
    r.insert(r.end(), {{100, "AcDbSymbolTableRecord"}, {100, "AcDbBlockTableRecord"}, {2, name}});
    std::uint64_t id = b.addEntry(records, std::move(r));
    BlockDefinition block;
    block.recordId = id;
    TagList begin = b.start("BLOCK", b.next(), id);
    begin.insert(begin.end(), {{100, "AcDbEntity"}, {8, "0"}, {100, "AcDbBlockBegin"}, {2, name}, {70, "0"},
                               {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {3, name}, {1, ""}});
    block.begin = b.record(std::move(begin));
    TagList end = b.start("ENDBLK", b.next(), id);
    end.insert(end.end(), {{100, "AcDbEntity"}, {8, "0"}, {100, "AcDbBlockEnd"}});
    block.end = b.record(std::move(end));
    c.blocks.push_back(std::move(block));
    (c.modelSpace == 0 ? c.modelSpace : c.paperSpace) = id;
  }
}

void addObjects(DrawingContents& c, Builder& b) {
  if (!b.markers()) return;
  std::uint64_t root = b.next(), group = b.next();
  TagList r = b.start("DICTIONARY", root, 0);
  r.insert(r.end(), {{100, "AcDbDictionary"}, {281, "1"}, {3, "ACAD_GROUP"}, {350, formatHandle(group)}});
  TagList g{{0, "DICTIONARY"}, {5, formatHandle(group)}, {102, "{ACAD_REACTORS"}, {330, formatHandle(root)},
            {102, "}"}, {330, formatHandle(root)}, {100, "AcDbDictionary"}, {281, "1"}};
  for (TagList* t : {&r, &g}) {
    c.records.push_back(b.record(std::move(*t)));
    c.objects.push_back(c.records.back().handle);
  }
  c.namedObjects = root;
}

}  // namespace

SymbolTable emptyTable(const std::string& name, const std::string& version, std::uint64_t handle) {
  TagList head{{0, "TABLE"}, {2, name}};
  if (hasSubclassMarkers(version)) {
    if (handle) head.push_back({5, formatHandle(handle)});
    head.push_back({330, "0"});
    head.push_back({100, "AcDbSymbolTable"});
  } else if (handle) {
    head.push_back({5, formatHandle(handle)});
  }
  head.push_back({70, "0"});
  if (name == "DIMSTYLE" && hasSubclassMarkers(version)) head.push_back({100, "AcDbDimStyleTable"});
  SymbolTable t;
  t.head.tags = std::move(head);
  t.head.type = "TABLE";
  t.head.name = name;
  t.head.handle = handle;
  t.end.tags = {{0, "ENDTAB"}};
  t.end.type = "ENDTAB";
  return t;
}

TagList activeViewportTags(const std::string& version, std::uint64_t handle, std::uint64_t tableHandle) {
  TagList t{{0, "VPORT"}};
  if (handle) t.push_back({5, formatHandle(handle)});
  if (hasSubclassMarkers(version)) {
    t.insert(t.end(), {{330, formatHandle(tableHandle)}, {100, "AcDbSymbolTableRecord"},
                       {100, "AcDbViewportTableRecord"}});
  }
  t.insert(t.end(), {{2, "*ACTIVE"}, {70, "0"},    {10, "0.0"},  {20, "0.0"},  {11, "1.0"},  {21, "1.0"},
                     {12, "0.0"},    {22, "0.0"},  {13, "0.0"},  {23, "0.0"},  {14, "10.0"}, {24, "10.0"},
                     {15, "10.0"},   {25, "10.0"}, {16, "0.0"},  {26, "0.0"},  {36, "1.0"},  {17, "0.0"},
                     {27, "0.0"},    {37, "0.0"},  {40, "10.0"}, {41, "1.0"},  {42, "50.0"}, {43, "0.0"},
                     {44, "0.0"},    {50, "0.0"},  {51, "0.0"},  {71, "0"},    {72, "1000"}, {73, "1"},
                     {74, "3"},      {75, "0"},    {76, "0"},    {77, "0"},    {78, "0"}});
  return t;
}

DrawingContents minimalContents(std::string version) {
  DrawingContents c;
  c.version = std::move(version);
  c.hasHandles = true;
  for (const char* s : {"HEADER", "CLASSES", "TABLES", "BLOCKS", "ENTITIES", "OBJECTS"}) {
    if (!hasSubclassMarkers(c.version) && (std::string_view(s) == "CLASSES" || std::string_view(s) == "OBJECTS"))
      continue;
    c.sections.push_back({s, {}});
  }
  Builder b(c);
  addHeader(c);
  addTables(c, b);
  addSpaces(c, b);
  addObjects(c, b);
  return c;
}

}  // namespace standalone
