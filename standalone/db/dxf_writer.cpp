#include "standalone/db/dxf_writer.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <set>

#include "standalone/db/class_counts.h"
#include "standalone/db/dxf_entity_writer.h"
#include "standalone/db/dxf_out.h"
#include "standalone/db/tag_record.h"
#include "io/replace_file.h"

namespace standalone {

namespace {

// Class-based kinds need a CLASS entry: DXF name, C++ class, application,
// proxy flags, is-an-entity.
struct ClassFacts {
  const char* dxfName;
  const char* cppName;
  const char* app;
  int proxyFlags;
  bool entity;
};
constexpr ClassFacts kClasses[] = {
    {"HELIX", "AcDbHelix", "ObjectDBX Classes", 4095, true},
    {"IMAGE", "AcDbRasterImage", "ISM", 2175, true},
    {"IMAGEDEF", "AcDbRasterImageDef", "ISM", 0, false},
    {"IMAGEDEF_REACTOR", "AcDbRasterImageDefReactor", "ISM", 1, false},
    {"RASTERVARIABLES", "AcDbRasterVariables", "ISM", 0, false},
    {"DICTIONARYVAR", "AcDbDictionaryVar", "ObjectDBX Classes", 0, false},
    {"ACDBDICTIONARYWDFLT", "AcDbDictionaryWithDefault", "ObjectDBX Classes", 0, false},
    {"LAYOUT", "AcDbLayout", "ObjectDBX Classes", 0, false},
};

// Names of a symbol table's entries that records made or changed here use
// but the table lacks; added in the file with the handles from firstHandle on.
struct MissingEntries {
  std::set<std::string> known;     // upper case, the table's and those added
  std::vector<std::string> names;  // UTF-8, as the records spell them
  std::uint64_t firstHandle = 0;

  void note(const std::string& name) {
    std::string upper = name;
    for (char& ch : upper) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    if (known.insert(upper).second) names.push_back(name);
  }
};

// What the writer adds to the drawing's own content: CLASS entries, layer
// and linetype table entries that records made here need, with the handles
// they take.
struct Additions {
  std::vector<const ClassFacts*> classes;
  std::vector<std::size_t> classCounts;
  MissingEntries layers, linetypes, styles;
  std::uint64_t spareHandle = 0;  // next one for records that exist only in the file
  std::uint64_t handleSeed = 0;
};

// The text style an entity names, if its kind has one.
const std::string* styleOf(const host::EntityData& data) {
  if (auto* t = std::get_if<host::Text>(&data)) return &t->style;
  if (auto* m = std::get_if<host::MText>(&data)) return &m->style;
  return nullptr;
}

class Writer {
 public:
  Writer(const DrawingDatabase& db, DxfOut& out) : db_(db), c_(db.contents()), out_(out) {}
  void run();

 private:
  void plan();
  void header();
  void classes();
  void tables();
  void blocks();
  void entities(const std::vector<std::uint64_t>& handles);
  void objects();
  void record(const TagRecord& r);
  void tags(const TagList& list) {
    for (const Tag& t : list) out_.tag(t.code, t.value);
  }
  bool knownEntries(const char* table, MissingEntries& entries) const;
  void addedEntries(const SymbolTable& t, const MissingEntries& added, const char* type);
  void beginSection(const char* name) {
    out_.tag(0, "SECTION");
    out_.tag(2, name);
  }
  void endSection() { out_.tag(0, "ENDSEC"); }
  const EntityRecord* entity(std::uint64_t h) const;

  const DrawingDatabase& db_;
  const DrawingContents& c_;
  DxfOut& out_;
  EntityWriteContext ctx_;
  Additions add_;
};

const EntityRecord* Writer::entity(std::uint64_t h) const {
  auto it = c_.index.find(h);
  if (it == c_.index.end() || it->second.kind != Slot::Kind::kEntity) return nullptr;
  const EntityRecord& e = c_.entities[it->second.index];
  return e.erased ? nullptr : &e;
}

// Notes the live entries of the table as known; false when there is no such table.
bool Writer::knownEntries(const char* table, MissingEntries& entries) const {
  bool found = false;
  for (const auto& t : c_.tables) {
    if (!sameName(t.head.name, table)) continue;
    found = true;
    for (std::size_t i : t.entries)
      if (!c_.records[i].erased) entries.note(c_.records[i].name);
  }
  entries.names.clear();
  return found;
}

void Writer::plan() {
  ctx_.encoding = c_.encoding();
  ctx_.version = c_.version;
  ctx_.markers = hasSubclassMarkers(c_.version);
  ctx_.handles = c_.hasHandles;
  ctx_.paperSpaces.insert(c_.paperSpace);
  for (const auto& b : c_.blocks)
    if (b.begin.name.size() >= 12 && sameName(b.begin.name.substr(0, 12), "*Paper_Space")) ctx_.paperSpaces.insert(b.recordId);

  // A layer, linetype or text style the tables lack gets an entry of its own
  // (a white solid layer, a solid linetype, a plain style) until a real
  // definition is loaded: the entity keeps the name it was given rather than
  // falling back to BYLAYER or the standard style, and other programs (some
  // refuse files naming undefined linetypes) find every name defined.
  bool linetypeTable = knownEntries("LTYPE", add_.linetypes);
  add_.linetypes.note("BYLAYER");
  add_.linetypes.note("BYBLOCK");
  add_.linetypes.names.clear();
  bool styleTable = knownEntries("STYLE", add_.styles);
  knownEntries("LAYER", add_.layers);
  std::vector<std::size_t> counts(std::size(kClasses), 0);
  std::size_t spare = 0;
  for (const auto& e : c_.entities) {
    if (e.erased) continue;
    const char* name = host::dxfName(e.entity.data);
    for (std::size_t i = 0; i < std::size(kClasses); ++i)
      if (std::strcmp(kClasses[i].dxfName, name) == 0) ++counts[i];
    if (!e.raw.empty()) continue;
    spare += spareHandlesNeeded(e, ctx_);
    add_.layers.note(e.entity.props.layer.empty() ? "0" : e.entity.props.layer);
    if (linetypeTable && !e.entity.props.linetype.empty()) add_.linetypes.note(e.entity.props.linetype);
    if (const std::string* style = styleOf(e.entity.data); styleTable && style && !style->empty())
      add_.styles.note(*style);
  }
  for (const auto& r : c_.records)
    for (std::size_t i = 0; i < std::size(kClasses); ++i)
      if (!r.erased && r.type == kClasses[i].dxfName) ++counts[i];
  if (ctx_.markers) {
    for (std::size_t i = 0; i < std::size(kClasses); ++i) {
      if (counts[i] == 0) continue;
      bool present = std::any_of(c_.classes.begin(), c_.classes.end(),
                                 [&](const TagRecord& r) { return sameName(r.name, kClasses[i].dxfName) ||
                                                                  findValue(tagsOf(r), 1) == kClasses[i].dxfName; });
      if (!present) {
        add_.classes.push_back(&kClasses[i]);
        add_.classCounts.push_back(counts[i]);
      }
    }
  }
  std::uint64_t next = c_.nextHandle;
  for (MissingEntries* m : {&add_.layers, &add_.linetypes, &add_.styles}) {
    m->firstHandle = next;
    next += c_.hasHandles ? m->names.size() : 0;
  }
  add_.spareHandle = next;
  add_.handleSeed = add_.spareHandle + spare;
  ctx_.spareHandles = &add_.spareHandle;
}

void Writer::record(const TagRecord& r) {
  if (r.erased) return;
  if (!r.raw.empty()) {
    out_.raw(r.raw);
    return;
  }
  for (const Tag& t : r.tags) out_.tag(t.code, t.value);
}

void Writer::header() {
  beginSection("HEADER");
  bool seed = false;
  for (const auto& var : c_.header) {
    out_.tag(9, var.name);
    if (var.name == "$HANDSEED") {
      out_.handle(5, add_.handleSeed);
      seed = true;
      continue;
    }
    for (const Tag& t : var.tags) out_.tag(t.code, t.value);
  }
  if (!seed && c_.hasHandles) {
    out_.tag(9, "$HANDSEED");
    out_.handle(5, add_.handleSeed);
  }
  endSection();
}

void Writer::classes() {
  beginSection("CLASSES");
  // Counts as loaded stay as they were (an unchanged file comes out as it went
  // in); a count the drawing has moved away from is rewritten.
  std::vector<std::size_t> live = classInstanceCounts(c_);
  for (std::size_t i = 0; i < c_.classes.size(); ++i) {
    const TagRecord& r = c_.classes[i];
    bool moved = i < c_.classInstancesAtLoad.size() && live[i] != c_.classInstancesAtLoad[i];
    TagList list;
    if (moved && !r.erased && c_.version >= "AC1018" && findValue(list = tagsOf(r), 91)) {
      setValue(list, 91, std::to_string(live[i]));
      tags(list);
    } else {
      record(r);
    }
  }
  for (std::size_t i = 0; i < add_.classes.size(); ++i) {
    const ClassFacts& f = *add_.classes[i];
    out_.tag(0, "CLASS");
    out_.tag(1, f.dxfName);
    out_.tag(2, f.cppName);
    out_.tag(3, f.app);
    out_.integer(90, f.proxyFlags);
    if (c_.version >= "AC1018") out_.integer(91, static_cast<std::int64_t>(add_.classCounts[i]));
    out_.integer(280, 0);
    out_.integer(281, f.entity ? 1 : 0);
  }
  endSection();
}

void Writer::tables() {
  beginSection("TABLES");
  for (const auto& t : c_.tables) {
    const char* type = nullptr;
    const MissingEntries* added = nullptr;
    for (auto [name, entries] : {std::pair{"LAYER", &add_.layers}, std::pair{"LTYPE", &add_.linetypes},
                                 std::pair{"STYLE", &add_.styles}})
      if (sameName(t.head.name, name)) type = name, added = entries;
    if (added && !added->names.empty()) {
      TagList head = tagsOf(t.head);
      std::size_t live = added->names.size();
      for (std::size_t i : t.entries) live += c_.records[i].erased ? 0 : 1;
      setValue(head, 70, std::to_string(live), bodyStart(head));
      tags(head);
    } else {
      record(t.head);
    }
    for (std::size_t i : t.entries) record(c_.records[i]);
    if (added) addedEntries(t, *added, type);
    record(t.end);
  }
  endSection();
}

// New layers are white and solid, new linetypes solid (no dashes), new text
// styles of no fixed height on the plain font.
void Writer::addedEntries(const SymbolTable& t, const MissingEntries& added, const char* type) {
  const std::string_view kind = type;
  std::uint64_t h = added.firstHandle;
  for (const auto& name : added.names) {
    out_.tag(0, type);
    if (c_.hasHandles) out_.handle(5, h++);
    if (ctx_.markers) {
      out_.handle(330, t.head.handle);
      out_.tag(100, "AcDbSymbolTableRecord");
      out_.tag(100, kind == "LAYER" ? "AcDbLayerTableRecord"
                    : kind == "LTYPE" ? "AcDbLinetypeTableRecord"
                                      : "AcDbTextStyleTableRecord");
    }
    out_.tag(2, encodeText(name, ctx_.encoding));
    out_.integer(70, 0);
    if (kind == "LAYER") {
      out_.integer(62, 7);
      out_.tag(6, ctx_.markers ? "Continuous" : "CONTINUOUS");
    } else if (kind == "LTYPE") {
      out_.tag(3, "");
      out_.integer(72, 65);
      out_.integer(73, 0);
      out_.real(40, 0);
    } else {
      out_.real(40, 0);
      out_.real(41, 1);
      out_.real(50, 0);
      out_.integer(71, 0);
      out_.real(42, 2.5);
      out_.tag(3, "txt");
      out_.tag(4, "");
    }
  }
}

void Writer::blocks() {
  beginSection("BLOCKS");
  for (const auto& b : c_.blocks) {
    record(b.begin);
    entities(b.entities);
    record(b.end);
  }
  endSection();
}

void Writer::entities(const std::vector<std::uint64_t>& handles) {
  for (std::uint64_t h : handles)
    if (const EntityRecord* e = entity(h)) writeEntity(out_, *e, ctx_);
}

void Writer::objects() {
  beginSection("OBJECTS");
  for (std::uint64_t h : c_.objects) {
    auto it = c_.index.find(h);
    if (it != c_.index.end() && it->second.kind == Slot::Kind::kRecord) record(c_.records[it->second.index]);
  }
  endSection();
}

void Writer::run() {
  plan();
  std::vector<std::string> order;
  for (const auto& s : c_.sections) order.push_back(s.name);
  auto has = [&](const char* n) { return std::find(order.begin(), order.end(), n) != order.end(); };
  if (!has("HEADER") && !c_.header.empty()) order.insert(order.begin(), "HEADER");
  if (!has("CLASSES") && !add_.classes.empty()) order.insert(order.begin() + (has("HEADER") ? 1 : 0), "CLASSES");
  if (!has("ENTITIES")) {
    auto at = std::find(order.begin(), order.end(), "OBJECTS");
    order.insert(at, "ENTITIES");
  }
  if (!has("OBJECTS") && ctx_.markers && !c_.objects.empty()) order.push_back("OBJECTS");

  std::size_t unknown = 0;
  for (const auto& name : order) {
    if (name == "HEADER") {
      header();
    } else if (name == "CLASSES") {
      classes();
    } else if (name == "TABLES") {
      tables();
    } else if (name == "BLOCKS") {
      blocks();
    } else if (name == "ENTITIES") {
      beginSection("ENTITIES");
      entities(c_.entitySection);
      endSection();
    } else if (name == "OBJECTS") {
      objects();
    } else {
      for (; unknown < c_.sections.size(); ++unknown) {
        if (c_.sections[unknown].name == name && !c_.sections[unknown].raw.empty()) {
          out_.raw(c_.sections[unknown++].raw);
          break;
        }
      }
    }
  }
  out_.tag(0, "EOF");
  out_.flush();
}

}  // namespace

std::string writeDxf(const DrawingDatabase& db) {
  DxfOut out(db.contents().lineEnd);
  Writer(db, out).run();
  return std::move(out.text());
}

void saveDxf(const DrawingDatabase& db, const std::filesystem::path& path) {
  try {
    io::FileReplacement file(path);
    DxfOut out(db.contents().lineEnd, [&](std::string_view bytes) { file.write(bytes); });
    Writer(db, out).run();
    file.commit();
  } catch (const io::FileWriteError& e) {
    throw DxfError(0, e.what());
  }
}

}  // namespace standalone
