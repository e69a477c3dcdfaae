#include "standalone/db/dxf_reader.h"

#include <cstdio>
#include <cstring>
#include <unordered_set>

#include "standalone/db/dxf_entity_reader.h"
#include "standalone/db/tag_record.h"

namespace standalone {

namespace {

// An entity whose owner the file does not name (R12): it waits until the
// made-up ids of the spaces and blocks are known.
struct PendingOwner {
  std::size_t entity;
  enum class Space { kModel, kPaper, kBlock } space;
  std::size_t block = 0;
};

class FileReader {
 public:
  explicit FileReader(std::shared_ptr<const std::string> text);
  DrawingContents read();

 private:
  RawTag need(int code, const char* what);
  TagRecord readRecord(const RawTag& first);
  std::string_view skipSection(const RawTag& sectionStart);
  void readHeader();
  void readClasses();
  void readTables();
  void readBlocks();
  void readEntities(std::vector<std::uint64_t>& order, const BlockDefinition* block);
  void readObjects();
  void resolveOwners();
  void findSpaces();

  std::shared_ptr<const std::string> text_;
  TagReader reader_;
  DrawingContents c_;
  EntityReadContext ctx_;
  std::vector<PendingOwner> pending_;
  // Entities without a handle of their own (R12) or with one already taken:
  // entity index, its block (npos for the ENTITIES section) and place in it.
  struct PendingId {
    std::size_t entity, block, position;
  };
  std::vector<PendingId> pendingIds_;
  std::unordered_set<std::uint64_t> entityHandles_;
  std::vector<bool> blockIdKnown_;
};

std::string_view startOf(const std::string& s) {
  std::string_view v(s);
  if (v.starts_with("\xEF\xBB\xBF")) v.remove_prefix(3);
  return v;
}

FileReader::FileReader(std::shared_ptr<const std::string> text)
    : text_(std::move(text)), reader_(startOf(*text_)) {
  c_.source = text_;
  c_.sections.clear();
  // Entities take a few hundred bytes each; room for them avoids rehashing.
  constexpr std::size_t kTypicalEntityBytes = 400;
  entityHandles_.reserve(text_->size() / kTypicalEntityBytes);
}

RawTag FileReader::need(int code, const char* what) {
  RawTag t;
  if (!reader_.next(t)) throw DxfError(reader_.line(), std::string("file ends where ") + what + " was expected");
  if (t.code != code)
    throw DxfError(t.line, std::string("expected ") + what + ", found group code " + std::to_string(t.code));
  return t;
}

TagRecord FileReader::readRecord(const RawTag& first) {
  TagRecord r;
  r.type = std::string(first.value);
  RecordHeaderScan scan;
  RawTag t;
  while (reader_.peek(t) && t.code != 0) {
    reader_.next(t);
    scan.take(t.code, t.value, t.line + 1, c_.encoding());
  }
  scan.fill(r);
  r.raw = std::string_view(first.start, static_cast<std::size_t>(reader_.position() - first.start));
  return r;
}

std::string_view FileReader::skipSection(const RawTag& sectionStart) {
  RawTag t;
  while (reader_.next(t)) {
    if (t.code == 0 && t.value == "ENDSEC")
      return std::string_view(sectionStart.start, static_cast<std::size_t>(reader_.position() - sectionStart.start));
    if (t.code == 0 && t.value == "EOF") break;
  }
  throw DxfError(sectionStart.line, "section has no ENDSEC");
}

void FileReader::readHeader() {
  RawTag t;
  while (reader_.next(t)) {
    if (t.code == 0) {
      if (t.value == "ENDSEC") return;
      throw DxfError(t.line, "unexpected \"" + std::string(t.value) + "\" in the HEADER section");
    }
    if (t.code == 9) {
      c_.header.push_back({std::string(t.value), {}});
      continue;
    }
    if (c_.header.empty()) throw DxfError(t.line, "header value before the first variable name");
    HeaderVariable& var = c_.header.back();
    var.tags.push_back({t.code, std::string(t.value)});
    if (var.name == "$ACADVER") c_.version = std::string(t.value);
    if (var.name == "$DWGCODEPAGE") c_.codepage = std::string(t.value);
    if (var.name == "$HANDSEED") {
      std::uint64_t seed = 0;
      if (tryParseHandle(t.value, seed)) c_.nextHandle = std::max(c_.nextHandle, seed);
    }
  }
  throw DxfError(reader_.line(), "HEADER section has no ENDSEC");
}

void FileReader::readClasses() {
  RawTag t;
  while (reader_.next(t)) {
    if (t.code != 0) throw DxfError(t.line, "expected a CLASS, found group code " + std::to_string(t.code));
    if (t.value == "ENDSEC") return;
    c_.classes.push_back(readRecord(t));
  }
  throw DxfError(reader_.line(), "CLASSES section has no ENDSEC");
}

void FileReader::readTables() {
  RawTag t;
  while (reader_.next(t)) {
    if (t.code != 0) throw DxfError(t.line, "expected a TABLE, found group code " + std::to_string(t.code));
    if (t.value == "ENDSEC") return;
    if (t.value != "TABLE") throw DxfError(t.line, "expected TABLE, found \"" + std::string(t.value) + "\"");
    SymbolTable table;
    table.head = readRecord(t);
    ctx_.maxHandle = std::max(ctx_.maxHandle, table.head.handle);
    while (true) {
      RawTag e = need(0, "a table entry or ENDTAB");
      if (e.value == "ENDTAB") {
        table.end = readRecord(e);
        break;
      }
      if (e.value == "ENDSEC" || e.value == "EOF") throw DxfError(e.line, "table has no ENDTAB");
      c_.records.push_back(readRecord(e));
      ctx_.maxHandle = std::max(ctx_.maxHandle, c_.records.back().handle);
      table.entries.push_back(c_.records.size() - 1);
    }
    c_.tables.push_back(std::move(table));
  }
  throw DxfError(reader_.line(), "TABLES section has no ENDSEC");
}

void FileReader::readBlocks() {
  RawTag t;
  while (reader_.next(t)) {
    if (t.code != 0) throw DxfError(t.line, "expected a BLOCK, found group code " + std::to_string(t.code));
    if (t.value == "ENDSEC") return;
    if (t.value != "BLOCK") throw DxfError(t.line, "expected BLOCK, found \"" + std::string(t.value) + "\"");
    BlockDefinition block;
    block.begin = readRecord(t);
    ctx_.maxHandle = std::max(ctx_.maxHandle, block.begin.handle);
    block.recordId = ctx_.markers ? block.begin.owner : 0;
    blockIdKnown_.push_back(block.recordId != 0);
    readEntities(block.entities, &block);
    RawTag end = need(0, "ENDBLK");
    if (end.value != "ENDBLK") throw DxfError(end.line, "block has no ENDBLK");
    block.end = readRecord(end);
    ctx_.maxHandle = std::max(ctx_.maxHandle, block.end.handle);
    c_.blocks.push_back(std::move(block));
  }
  throw DxfError(reader_.line(), "BLOCKS section has no ENDSEC");
}

// Reads entities up to ENDSEC or ENDBLK (left for the caller): those of the
// block being read, or of the ENTITIES section when block is null.
void FileReader::readEntities(std::vector<std::uint64_t>& order, const BlockDefinition* block) {
  RawTag t;
  while (reader_.peek(t)) {
    if (t.code != 0) throw DxfError(t.line, "expected an entity, found group code " + std::to_string(t.code));
    if (t.value == "ENDSEC" || t.value == "ENDBLK") return;
    if (t.value == "EOF") throw DxfError(t.line, "section has no ENDSEC");
    reader_.next(t);
    EntityRecord rec = readEntity(reader_, t, ctx_);
    if (block && block->recordId != 0) {
      rec.entity.owner = {block->recordId};
    } else if (block) {
      pending_.push_back({c_.entities.size(), PendingOwner::Space::kBlock, c_.blocks.size()});
    } else if (rec.entity.owner.isNull()) {
      pending_.push_back({c_.entities.size(),
                          rec.extras.paperSpaceFlag ? PendingOwner::Space::kPaper : PendingOwner::Space::kModel});
    }
    ctx_.maxHandle = std::max(ctx_.maxHandle, rec.entity.id.value);
    if (rec.entity.id.isNull() || !entityHandles_.insert(rec.entity.id.value).second)
      pendingIds_.push_back({c_.entities.size(), block ? c_.blocks.size() : std::string::npos, order.size()});
    order.push_back(rec.entity.id.value);
    c_.entities.push_back(std::move(rec));
  }
  throw DxfError(reader_.line(), "section has no ENDSEC");
}

void FileReader::readObjects() {
  RawTag t;
  while (reader_.next(t)) {
    if (t.code != 0) throw DxfError(t.line, "expected an object, found group code " + std::to_string(t.code));
    if (t.value == "ENDSEC") return;
    c_.records.push_back(readRecord(t));
    const TagRecord& r = c_.records.back();
    ctx_.maxHandle = std::max(ctx_.maxHandle, r.handle);
    if (c_.objects.empty() && r.type == "DICTIONARY") c_.namedObjects = r.handle;
    c_.objects.push_back(r.handle);
  }
  throw DxfError(reader_.line(), "OBJECTS section has no ENDSEC");
}

void FileReader::findSpaces() {
  for (const auto& b : c_.blocks) {
    if (sameName(b.begin.name, "*Model_Space") || sameName(b.begin.name, "$MODEL_SPACE")) c_.modelSpace = b.recordId;
    if (sameName(b.begin.name, "*Paper_Space") || sameName(b.begin.name, "$PAPER_SPACE")) c_.paperSpace = b.recordId;
  }
  for (const auto& t : c_.tables) {
    if (!sameName(t.head.name, "BLOCK_RECORD")) continue;
    for (std::size_t i : t.entries) {
      const TagRecord& r = c_.records[i];
      if (sameName(r.name, "*Model_Space") && c_.modelSpace == 0) c_.modelSpace = r.handle;
      if (sameName(r.name, "*Paper_Space") && c_.paperSpace == 0) c_.paperSpace = r.handle;
    }
  }
}

// Gives made-up ids to spaces and blocks the file has no records for, and
// points the entities that waited for them at the right one.
void FileReader::resolveOwners() {
  std::uint64_t next = std::max(c_.nextHandle, ctx_.maxHandle + 1);
  auto privateId = [&]() {
    c_.privateIds.push_back(next);
    return next++;
  };
  for (std::size_t i = 0; i < c_.blocks.size(); ++i)
    if (!blockIdKnown_[i]) c_.blocks[i].recordId = privateId();
  findSpaces();
  if (c_.modelSpace == 0) c_.modelSpace = privateId();
  if (c_.paperSpace == 0) c_.paperSpace = privateId();
  for (const PendingId& p : pendingIds_) {
    EntityRecord& e = c_.entities[p.entity];
    renumber(e, next++, c_.hasHandles);
    auto& order = p.block == std::string::npos ? c_.entitySection : c_.blocks[p.block].entities;
    order[p.position] = e.entity.id.value;
  }
  for (const PendingOwner& p : pending_) {
    auto& owner = c_.entities[p.entity].entity.owner.value;
    switch (p.space) {
      case PendingOwner::Space::kModel: owner = c_.modelSpace; break;
      case PendingOwner::Space::kPaper: owner = c_.paperSpace; break;
      case PendingOwner::Space::kBlock: owner = c_.blocks[p.block].recordId; break;
    }
  }
  c_.nextHandle = next;
}

DrawingContents FileReader::read() {
  std::string_view text = startOf(*text_);
  if (text.starts_with("AutoCAD Binary DXF")) throw DxfError(1, "binary DXF is not supported; save as ASCII DXF");
  c_.version = "AC1009";  // a file without a header is R12
  c_.hasHandles = false;
  ctx_.version = c_.version;
  ctx_.markers = false;
  std::size_t firstEnd = text.find('\n');
  if (firstEnd != std::string_view::npos && firstEnd > 0 && text[firstEnd - 1] == '\r') c_.lineEnd = "\r\n";
  RawTag t;
  bool sawEof = false;
  while (reader_.next(t)) {
    if (t.code == 999) continue;  // comment
    if (t.code != 0) throw DxfError(t.line, "expected SECTION or EOF, found group code " + std::to_string(t.code));
    if (t.value == "EOF") {
      sawEof = true;
      break;
    }
    if (t.value != "SECTION") throw DxfError(t.line, "expected SECTION or EOF, found \"" + std::string(t.value) + "\"");
    std::string name(need(2, "a section name").value);
    if (name == "HEADER") {
      // The header's version decides how everything after it is read; one
      // after other sections would change how those read when written back.
      if (!c_.sections.empty()) throw DxfError(t.line, "the HEADER section must be the first section, and only one");
      readHeader();
      ctx_.version = c_.version;
      ctx_.markers = hasSubclassMarkers(c_.version);
      ctx_.encoding = c_.encoding();
      c_.hasHandles = ctx_.markers;
      for (const auto& v : c_.header)
        if (v.name == "$HANDLING" && !v.tags.empty()) c_.hasHandles = c_.hasHandles || v.tags[0].value.find('1') != std::string::npos;
    } else if (name == "CLASSES") {
      readClasses();
    } else if (name == "TABLES") {
      readTables();
    } else if (name == "BLOCKS") {
      readBlocks();
    } else if (name == "ENTITIES") {
      readEntities(c_.entitySection, nullptr);
      need(0, "ENDSEC");
    } else if (name == "OBJECTS") {
      readObjects();
    } else {
      c_.sections.push_back({name, skipSection(t)});
      continue;
    }
    c_.sections.push_back({name, {}});
  }
  if (!sawEof) throw DxfError(reader_.line() > 1 ? reader_.line() - 1 : 1, "the file ends without an EOF marker");
  if (!hasSubclassMarkers(c_.version))
    for (const auto& e : c_.entities) c_.hasHandles = c_.hasHandles || !e.entity.id.isNull();
  resolveOwners();
  return std::move(c_);
}

}  // namespace

DrawingDatabase readDxf(std::shared_ptr<const std::string> text) {
  FileReader reader(std::move(text));
  return DrawingDatabase(reader.read());
}

DrawingDatabase readDxf(std::string_view text) { return readDxf(std::make_shared<const std::string>(text)); }

DrawingDatabase loadDxf(const std::filesystem::path& path) {
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) throw DxfError(0, "cannot open \"" + path.string() + "\": " + std::strerror(errno));
  auto text = std::make_shared<std::string>();
  std::fseek(f, 0, SEEK_END);
  long size = std::ftell(f);
  std::fseek(f, 0, SEEK_SET);
  if (size > 0) {
    text->resize(static_cast<std::size_t>(size));
    std::size_t got = std::fread(text->data(), 1, text->size(), f);
    text->resize(got);
  }
  bool failed = std::ferror(f) != 0;
  std::fclose(f);
  if (failed || size < 0) throw DxfError(0, "cannot read \"" + path.string() + "\"");
  return readDxf(std::shared_ptr<const std::string>(std::move(text)));
}

}  // namespace standalone
