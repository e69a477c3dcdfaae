#include "standalone/db/database.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "standalone/db/class_counts.h"
#include "standalone/db/dxf_tags.h"
#include "standalone/db/entity_props.h"
#include "standalone/db/minimal_drawing.h"
#include "standalone/db/tag_record.h"

namespace standalone {

using host::ErrorStatus;
using host::ObjectId;

namespace {


// The handles of an old-style polyline's vertices and end marker.
std::vector<std::uint64_t> subHandles(const host::EntityData& data) {
  std::vector<std::uint64_t> out;
  if (auto* p = std::get_if<host::Polyline2d>(&data)) {
    for (const auto& v : p->vertices) out.push_back(v.handle);
    out.push_back(p->seqendHandle);
  } else if (auto* p3 = std::get_if<host::Polyline3d>(&data)) {
    for (const auto& v : p3->vertices) out.push_back(v.handle);
    out.push_back(p3->seqendHandle);
  }
  return out;
}

// Gives the vertices and end marker of an old-style polyline fresh handles
// where they have none, or one that is not among `own` (copied from another
// polyline, or repeated within this one).
void giveSubHandles(host::EntityData& data, const std::vector<std::uint64_t>& own, DrawingDatabase& db) {
  std::vector<std::uint64_t> used;
  auto fix = [&](std::uint64_t& h) {
    bool ours = h != 0 && std::find(own.begin(), own.end(), h) != own.end() &&
                std::find(used.begin(), used.end(), h) == used.end();
    if (!ours) h = db.newHandle();
    used.push_back(h);
  };
  if (auto* p = std::get_if<host::Polyline2d>(&data)) {
    for (auto& v : p->vertices) fix(v.handle);
    fix(p->seqendHandle);
  } else if (auto* p3 = std::get_if<host::Polyline3d>(&data)) {
    for (auto& v : p3->vertices) fix(v.handle);
    fix(p3->seqendHandle);
  }
}

// Kept tags that still fit after an entity changed kind: the common part
// (anchored at AcDbEntity, which becomes the only marker) and the tail.
void dropKindTags(EntityExtras& x) {
  auto isCommon = [&](const KeptTag& k) {
    return k.anchor >= 1 && k.anchor <= x.markers.size() && x.markers[k.anchor - 1] == "AcDbEntity";
  };
  std::erase_if(x.kept, [&](const KeptTag& k) { return k.anchor != 0 && k.anchor != kAnchorTail && !isCommon(k); });
  for (auto& k : x.kept)
    if (k.anchor != 0 && k.anchor != kAnchorTail) k.anchor = 1;
  x.markers = {"AcDbEntity"};
  x.vertexIds.clear();
}

}  // namespace

DrawingDatabase::DrawingDatabase(DrawingContents contents) : c_(std::move(contents)) {
  std::uint64_t maxHandle = 0;
  for (const auto& e : c_.entities) maxHandle = std::max(maxHandle, e.entity.id.value);
  for (const auto& r : c_.records) maxHandle = std::max(maxHandle, r.handle);
  for (std::uint64_t id : c_.privateIds) maxHandle = std::max(maxHandle, id);
  c_.nextHandle = std::max(c_.nextHandle, maxHandle + 1);

  c_.index.clear();
  c_.index.reserve(c_.entities.size() + c_.records.size());
  for (std::size_t i = 0; i < c_.records.size(); ++i) {
    TagRecord& r = c_.records[i];
    if (r.handle == 0) continue;
    if (!c_.index.emplace(r.handle, Slot{Slot::Kind::kRecord, i}).second) {
      // A repeated handle: the later record gets a fresh one.
      r.handle = c_.nextHandle++;
      setValue(editTags(r), r.type == "DIMSTYLE" ? 105 : 5, formatHandle(r.handle));
      c_.index.emplace(r.handle, Slot{Slot::Kind::kRecord, i});
    }
  }
  for (std::size_t i = 0; i < c_.entities.size(); ++i) {
    EntityRecord& e = c_.entities[i];
    if (e.entity.id.isNull() || !c_.index.emplace(e.entity.id.value, Slot{Slot::Kind::kEntity, i}).second) {
      renumber(e, c_.nextHandle++, c_.hasHandles);
      c_.index.emplace(e.entity.id.value, Slot{Slot::Kind::kEntity, i});
    }
  }
  for (const auto& e : c_.entities)
    if (e.entity.owner.value == c_.modelSpace) c_.lastEntity = e.entity.id.value;
  c_.classInstancesAtLoad = classInstanceCounts(c_);
}

DrawingDatabase DrawingDatabase::createEmpty(std::string version) {
  return DrawingDatabase(minimalContents(std::move(version)));
}

// ---- look-ups ----

EntityRecord* DrawingDatabase::liveEntity(std::uint64_t handle) {
  auto* e = const_cast<EntityRecord*>(std::as_const(*this).liveEntity(handle));
  if (e) touchEntity(c_.index.at(handle).index);
  return e;
}

const EntityRecord* DrawingDatabase::liveEntity(std::uint64_t handle) const {
  auto it = c_.index.find(handle);
  if (it == c_.index.end() || it->second.kind != Slot::Kind::kEntity) return nullptr;
  const EntityRecord& e = c_.entities[it->second.index];
  return e.erased ? nullptr : &e;
}

TagRecord* DrawingDatabase::liveRecord(std::uint64_t handle) {
  auto* r = const_cast<TagRecord*>(std::as_const(*this).liveRecord(handle));
  if (r) touchRecord(c_.index.at(handle).index);
  return r;
}

const TagRecord* DrawingDatabase::liveRecord(std::uint64_t handle) const {
  auto it = c_.index.find(handle);
  if (it == c_.index.end() || it->second.kind != Slot::Kind::kRecord) return nullptr;
  const TagRecord& r = c_.records[it->second.index];
  return r.erased ? nullptr : &r;
}

const TagRecord* DrawingDatabase::findTableEntry(std::string_view table, std::string_view name) const {
  for (const auto& t : c_.tables) {
    if (!sameName(t.head.name, table)) continue;
    for (std::size_t i : t.entries) {
      const TagRecord& r = c_.records[i];
      if (!r.erased && sameName(r.name, name)) return &r;
    }
  }
  return nullptr;
}

SymbolTable* DrawingDatabase::findTable(std::string_view table) {
  for (auto& t : c_.tables)
    if (sameName(t.head.name, table)) return &t;
  return nullptr;
}

BlockDefinition* DrawingDatabase::blockOf(std::uint64_t recordId) {
  return const_cast<BlockDefinition*>(std::as_const(*this).blockOf(recordId));
}

const BlockDefinition* DrawingDatabase::blockOf(std::uint64_t recordId) const {
  for (const auto& b : c_.blocks)
    if (b.recordId == recordId) return &b;
  return nullptr;
}

bool DrawingDatabase::inEntitySection(std::uint64_t owner) const {
  return owner != 0 && (owner == c_.modelSpace || owner == c_.paperSpace);
}

HeaderVariable* DrawingDatabase::findHeader(std::string_view name) {
  return const_cast<HeaderVariable*>(std::as_const(*this).findHeader(name));
}


// ---- names, layers, blocks ----

std::vector<std::string> DrawingDatabase::layerNames() const {
  std::vector<std::string> out;
  for (const auto& t : c_.tables) {
    if (!sameName(t.head.name, "LAYER")) continue;
    for (std::size_t i : t.entries)
      if (!c_.records[i].erased) out.push_back(c_.records[i].name);
  }
  return out;
}

std::vector<std::string> DrawingDatabase::blockNames() const {
  std::vector<std::string> out;
  for (const auto& b : c_.blocks) out.push_back(b.begin.name);
  return out;
}

int DrawingDatabase::layerFlags(const std::string& layer) const {
  const TagRecord* r = findTableEntry("LAYER", layer);
  if (!r) return 0;
  TagList tags = tagsOf(*r);
  auto flags = findValue(tags, 70, bodyStart(tags));
  double f = 0;
  if (!flags || !tryParseReal(*flags, f)) return 0;
  return static_cast<int>(f);
}

bool DrawingDatabase::isLayerFrozenOrLocked(const std::string& layer) const { return (layerFlags(layer) & (1 | 4)) != 0; }

bool DrawingDatabase::isLayerFrozen(const std::string& layer) const { return (layerFlags(layer) & 1) != 0; }

std::optional<host::Color> DrawingDatabase::layerColor(const std::string& layer) const {
  const TagRecord* r = findTableEntry("LAYER", layer);
  if (!r) return std::nullopt;
  TagList tags = tagsOf(*r);
  std::size_t body = bodyStart(tags);
  host::Color color{7, std::nullopt};
  double d = 0;
  if (auto s = findValue(tags, 62, body); s && tryParseReal(*s, d)) color.index = static_cast<int>(d);
  if (auto s = findValue(tags, 420, body); s && tryParseReal(*s, d))
    color.trueColor = static_cast<std::uint32_t>(d) & 0xFFFFFFu;
  return color;
}

std::optional<std::string> DrawingDatabase::textStyleFont(const std::string& style) const {
  const TagRecord* r = findTableEntry("STYLE", style);
  if (!r) return std::nullopt;
  TagList tags = tagsOf(*r);
  std::size_t body = bodyStart(tags);
  // The family of a TrueType font is kept in the style's ACAD extended data.
  if (auto family = findValue(tags, 1000, body); family && !family->empty()) return *family;
  std::string file = findValue(tags, 3, body).value_or("");
  if (file.empty()) return std::nullopt;
  if (file.find('.') == std::string::npos) file += ".shx";
  return file;
}

ge::Point3d DrawingDatabase::blockBasePoint(ObjectId blockRecord) const {
  const BlockDefinition* b = blockOf(blockRecord.value);
  if (!b) return {};
  TagList tags = tagsOf(b->begin);
  ge::Point3d p;
  double d = 0;
  std::size_t body = bodyStart(tags);
  if (auto s = findValue(tags, 10, body); s && tryParseReal(*s, d)) p.x = d;
  if (auto s = findValue(tags, 20, body); s && tryParseReal(*s, d)) p.y = d;
  if (auto s = findValue(tags, 30, body); s && tryParseReal(*s, d)) p.z = d;
  return p;
}

const host::Entity* DrawingDatabase::peek(ObjectId id) const {
  const EntityRecord* e = liveEntity(id.value);
  return e ? &e->entity : nullptr;
}

// ---- entities ----

std::optional<host::Entity> DrawingDatabase::read(ObjectId id) const {
  const EntityRecord* e = liveEntity(id.value);
  if (!e) return std::nullopt;
  return e->entity;
}

ErrorStatus DrawingDatabase::write(const host::Entity& entity) {
  ++changes_;
  ErrorStatus es = writeRecord(entity);
  if (es == ErrorStatus::eOk && modified_) modified_(entity.id);
  return es;
}

ErrorStatus DrawingDatabase::writeRecord(const host::Entity& entity) {
  if (entity.id.isNull()) return ErrorStatus::eNullObjectId;
  auto it = c_.index.find(entity.id.value);
  if (it == c_.index.end() || it->second.kind != Slot::Kind::kEntity) return ErrorStatus::eInvalidInput;
  EntityRecord& e = c_.entities[it->second.index];
  if (e.erased) return ErrorStatus::eWasErased;
  touchEntity(it->second.index);
  bool wasOther = std::holds_alternative<host::OtherEntity>(e.entity.data);
  if (wasOther) {
    if (!std::holds_alternative<host::OtherEntity>(entity.data)) return ErrorStatus::eNotApplicable;
    if (entity.props == e.entity.props) return ErrorStatus::eOk;
    if (e.extras.otherTags.empty()) e.extras.otherTags = tokenize(e.raw);
    applyProps(e.extras.otherTags, entity.props, c_.encoding(), hasSubclassMarkers(c_.version));
    e.entity.props = entity.props;
    e.raw = {};
    return ErrorStatus::eOk;
  }
  if (std::holds_alternative<host::OtherEntity>(entity.data)) return ErrorStatus::eNotApplicable;
  if (entity.data.index() != e.entity.data.index()) {
    dropKindTags(e.extras);
    e.extras.attributeTail = {};
  }
  std::uint64_t owner = e.entity.owner.value;
  std::vector<std::uint64_t> own = subHandles(e.entity.data);
  e.entity = entity;
  e.entity.owner = {owner};
  giveSubHandles(e.entity.data, own, *this);
  e.raw = {};
  return ErrorStatus::eOk;
}

ErrorStatus DrawingDatabase::erase(ObjectId id) {
  ++changes_;
  if (EntityRecord* e = liveEntity(id.value)) {
    e->erased = true;
    return ErrorStatus::eOk;
  }
  if (TagRecord* r = liveRecord(id.value)) {
    r->erased = true;
    return ErrorStatus::eOk;
  }
  return id.isNull() ? ErrorStatus::eNullObjectId : ErrorStatus::eWasErased;
}

ErrorStatus DrawingDatabase::append(host::Entity& entity, ObjectId owner) {
  if (owner.isNull()) owner = currentSpace();
  if (!isBlockRecord(owner)) return ErrorStatus::eInvalidInput;
  if (std::holds_alternative<host::OtherEntity>(entity.data)) return ErrorStatus::eNotApplicable;
  ++changes_;
  BlockDefinition* block = inEntitySection(owner.value) ? nullptr : blockOf(owner.value);
  if (!inEntitySection(owner.value) && !block) return ErrorStatus::eInvalidInput;
  entity.id = {newHandle()};
  entity.owner = owner;
  EntityRecord rec;
  rec.entity = entity;
  giveSubHandles(rec.entity.data, {}, *this);
  c_.entities.push_back(std::move(rec));
  c_.index.emplace(entity.id.value, Slot{Slot::Kind::kEntity, c_.entities.size() - 1});
  (block ? block->entities : c_.entitySection).push_back(entity.id.value);
  if (owner.value == c_.modelSpace) c_.lastEntity = entity.id.value;
  return ErrorStatus::eOk;
}

ObjectId DrawingDatabase::ownerOf(ObjectId id) const {
  if (const EntityRecord* e = liveEntity(id.value)) return e->entity.owner;
  if (const TagRecord* r = liveRecord(id.value)) return {r->owner};
  return host::kNullId;
}

bool DrawingDatabase::isBlockRecord(ObjectId id) const {
  if (id.isNull()) return false;
  if (inEntitySection(id.value) || blockOf(id.value)) return true;
  const TagRecord* r = liveRecord(id.value);
  return r && r->type == "BLOCK_RECORD";
}

std::optional<ObjectId> DrawingDatabase::findBlock(const std::string& name) const {
  for (const auto& b : c_.blocks)
    if (sameName(b.begin.name, name)) return ObjectId{b.recordId};
  return std::nullopt;
}

std::vector<ObjectId> DrawingDatabase::entitiesOf(ObjectId blockRecord) const {
  std::vector<ObjectId> out;
  const std::vector<std::uint64_t>* list = nullptr;
  if (inEntitySection(blockRecord.value)) {
    list = &c_.entitySection;
  } else if (const BlockDefinition* b = blockOf(blockRecord.value)) {
    list = &b->entities;
  } else {
    return out;
  }
  out.reserve(list->size());
  for (std::uint64_t h : *list) {
    const EntityRecord* e = liveEntity(h);
    if (e && e->entity.owner == blockRecord) out.push_back({h});
  }
  return out;
}

// ---- defaults ----

std::string DrawingDatabase::currentLayer() const {
  if (auto v = headerVariable("$CLAYER"); v && !v->empty())
    if (auto* s = std::get_if<std::string>(&v->front().value); s && !s->empty()) return *s;
  return "0";
}

host::Color DrawingDatabase::currentColor() const {
  host::Color color;
  if (auto v = headerVariable("$CECOLOR"); v && !v->empty())
    if (auto* i = std::get_if<std::int16_t>(&v->front().value)) color.index = *i;
  return color;
}

host::EntityProps DrawingDatabase::defaultProps() const {
  host::EntityProps p;
  p.layer = currentLayer();
  p.color = currentColor();
  if (auto v = headerVariable("$CELTYPE"); v && !v->empty())
    if (auto* s = std::get_if<std::string>(&v->front().value); s && !sameName(*s, "BYLAYER")) p.linetype = *s;
  if (auto v = headerVariable("$CELTSCALE"); v && !v->empty())
    if (auto* d = std::get_if<double>(&v->front().value)) p.linetypeScale = *d;
  return p;
}

}  // namespace standalone
