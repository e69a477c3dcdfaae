// The drawing's non-graphical side: header variables, the active view,
// dictionaries, objects and persistent reactors.
#include <algorithm>
#include <cctype>

#include "standalone/db/database.h"
#include "standalone/db/dxf_tags.h"
#include "standalone/db/minimal_drawing.h"
#include "standalone/db/tag_record.h"

namespace standalone {

using host::ErrorStatus;
using host::ObjectId;

namespace {

std::string headerName(std::string_view name) {
  std::string out = name.starts_with('$') ? std::string(name) : "$" + std::string(name);
  for (char& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return out;
}

}  // namespace

const HeaderVariable* DrawingDatabase::findHeader(std::string_view name) const {
  std::string key = headerName(name);
  for (const auto& h : c_.header)
    if (h.name == key) return &h;
  return nullptr;
}

// ---- header and view ----

std::optional<host::ResBufList> DrawingDatabase::headerVariable(std::string_view name) const {
  const HeaderVariable* h = findHeader(name);
  if (!h) return std::nullopt;
  return toResBufs(h->tags, 0, c_.encoding());
}

void DrawingDatabase::setHeaderVariable(std::string_view name, host::ResBufList values) {
  touchFrame();
  TagList tags;
  for (const auto& rb : values) appendTags(tags, rb, c_.encoding());
  if (HeaderVariable* h = findHeader(name)) {
    h->tags = std::move(tags);
  } else {
    c_.header.push_back({headerName(name), std::move(tags)});
  }
  if (headerName(name) == "$DWGCODEPAGE" && !values.empty())
    if (auto* s = std::get_if<std::string>(&values.front().value)) c_.codepage = *s;
}

std::optional<ActiveView> DrawingDatabase::activeView() const {
  const TagRecord* vp = findTableEntry("VPORT", "*ACTIVE");
  if (!vp) return std::nullopt;
  TagList tags = tagsOf(*vp);
  ActiveView v;
  double d = 0;
  auto real = [&](int code, double& out) {
    if (auto s = findValue(tags, code) ; s && tryParseReal(*s, d)) out = d;
  };
  real(12, v.center.x);
  real(22, v.center.y);
  real(40, v.height);
  real(41, v.aspect);
  return v;
}

void DrawingDatabase::setActiveView(const ActiveView& view) {
  touchFrame();
  const TagRecord* found = findTableEntry("VPORT", "*ACTIVE");
  if (found) touchRecord(static_cast<std::size_t>(std::find_if(c_.records.begin(), c_.records.end(),
                                                                 [&](const TagRecord& r) { return &r == found; }) -
                                                    c_.records.begin()));
  if (!found) {
    SymbolTable* table = findTable("VPORT");
    if (!table) {
      c_.tables.insert(c_.tables.begin(), emptyTable("VPORT", c_.version, c_.hasHandles ? newHandle() : 0));
      refreshCache(c_.tables.front().head, c_.encoding());
      table = &c_.tables.front();
    }
    std::uint64_t h = c_.hasHandles ? newHandle() : 0;
    c_.records.push_back(makeRecord(activeViewportTags(c_.version, h, table->head.handle), c_.encoding()));
    table->entries.push_back(c_.records.size() - 1);
    if (h) c_.index.emplace(h, Slot{Slot::Kind::kRecord, c_.records.size() - 1});
    found = &c_.records.back();
  }
  TagRecord& vp = const_cast<TagRecord&>(*found);
  TagList& tags = editTags(vp);
  std::size_t body = bodyStart(tags);
  setValue(tags, 12, formatReal(view.center.x), body);
  setValue(tags, 22, formatReal(view.center.y), body);
  setValue(tags, 40, formatReal(view.height), body);
  setValue(tags, 41, formatReal(view.aspect), body);
}

// ---- dictionaries and objects ----

std::optional<ObjectId> DrawingDatabase::dictionaryLookup(ObjectId dictionary, const std::string& key) const {
  const TagRecord* d = liveRecord(dictionary.value);
  if (!d) return std::nullopt;
  for (const auto& entry : dictionaryEntries(tagsOf(*d)))
    if (sameName(entry.key, encodeText(key, c_.encoding()))) return ObjectId{entry.handle};
  return std::nullopt;
}

ErrorStatus DrawingDatabase::dictionarySet(ObjectId dictionary, const std::string& key, ObjectId object) {
  TagRecord* d = liveRecord(dictionary.value);
  if (!d) return ErrorStatus::eInvalidInput;
  if (key.empty()) return ErrorStatus::eInvalidInput;
  TagRecord* obj = liveRecord(object.value);
  if (!obj) return ErrorStatus::eInvalidInput;
  setDictionaryEntry(editTags(*d), encodeText(key, c_.encoding()), object.value);
  // An object in a dictionary is owned by it and has it as a reactor.
  TagList& tags = editTags(*obj);
  if (obj->owner == 0 || obj->owner != dictionary.value) {
    setOwner(tags, dictionary.value);
    obj->owner = dictionary.value;
  }
  auto reactors = reactorsIn(tags);
  if (std::find(reactors.begin(), reactors.end(), dictionary.value) == reactors.end()) {
    reactors.push_back(dictionary.value);
    setReactors(tags, reactors);
  }
  return ErrorStatus::eOk;
}

ErrorStatus DrawingDatabase::dictionaryRemove(ObjectId dictionary, const std::string& key) {
  TagRecord* d = liveRecord(dictionary.value);
  if (!d) return ErrorStatus::eInvalidInput;
  if (!dictionaryLookup(dictionary, key)) return ErrorStatus::eKeyNotFound;
  removeDictionaryEntry(editTags(*d), encodeText(key, c_.encoding()));
  return ErrorStatus::eOk;
}

std::optional<host::DbObject> DrawingDatabase::readObject(ObjectId id) const {
  const TagRecord* r = liveRecord(id.value);
  if (!r) return std::nullopt;
  TagList tags = tagsOf(*r);
  return host::DbObject{id, {r->owner}, r->type, toResBufs(tags, bodyStart(tags), c_.encoding())};
}

ErrorStatus DrawingDatabase::writeObject(host::DbObject& object) {
  if (object.dxfName.empty()) return ErrorStatus::eInvalidInput;
  TagList body;
  bool hasMarker = std::any_of(object.data.begin(), object.data.end(), [](auto& rb) { return rb.type == 100; });
  if (!hasMarker && hasSubclassMarkers(c_.version)) {
    if (object.dxfName == "XRECORD") body.push_back({100, "AcDbXrecord"});
    if (object.dxfName == "DICTIONARY") body.push_back({100, "AcDbDictionary"});
  }
  for (const auto& rb : object.data) appendTags(body, rb, c_.encoding());
  if (object.id.isNull()) {
    std::uint64_t h = newHandle();
    TagList tags{{0, object.dxfName}, {5, formatHandle(h)}, {330, formatHandle(object.owner.value)}};
    tags.insert(tags.end(), body.begin(), body.end());
    c_.records.push_back(makeRecord(std::move(tags), c_.encoding()));
    c_.index.emplace(h, Slot{Slot::Kind::kRecord, c_.records.size() - 1});
    c_.objects.push_back(h);
    object.id = {h};
    return ErrorStatus::eOk;
  }
  TagRecord* r = liveRecord(object.id.value);
  if (!r) return ErrorStatus::eInvalidInput;
  TagList& tags = editTags(*r);
  tags.resize(bodyStart(tags));
  tags.insert(tags.end(), body.begin(), body.end());
  tags.front().value = object.dxfName;
  if (!object.owner.isNull()) setOwner(tags, object.owner.value);
  refreshCache(*r, c_.encoding());
  return ErrorStatus::eOk;
}

std::vector<ObjectId> DrawingDatabase::reactorsOf(ObjectId id) const {
  std::vector<ObjectId> out;
  if (const EntityRecord* e = liveEntity(id.value)) {
    for (auto h : e->extras.reactors) out.push_back({h});
  } else if (const TagRecord* r = liveRecord(id.value)) {
    for (auto h : reactorsIn(tagsOf(*r))) out.push_back({h});
  }
  return out;
}

namespace {

// An entity's reactor list changed: an uninterpreted entity carries it in its
// kept tags, and either kind is written from its record from now on.
void writeReactors(EntityRecord& e) {
  if (std::holds_alternative<host::OtherEntity>(e.entity.data)) {
    if (e.extras.otherTags.empty()) e.extras.otherTags = tokenize(e.raw);
    setReactors(e.extras.otherTags, e.extras.reactors);
  }
  e.raw = {};
}

}  // namespace

ErrorStatus DrawingDatabase::addReactor(ObjectId id, ObjectId reactor) {
  if (reactor.isNull()) return ErrorStatus::eNullObjectId;
  if (EntityRecord* e = liveEntity(id.value)) {
    auto& list = e->extras.reactors;
    if (std::find(list.begin(), list.end(), reactor.value) != list.end()) return ErrorStatus::eOk;
    list.push_back(reactor.value);
    writeReactors(*e);
    return ErrorStatus::eOk;
  }
  if (TagRecord* r = liveRecord(id.value)) {
    TagList& tags = editTags(*r);
    auto list = reactorsIn(tags);
    if (std::find(list.begin(), list.end(), reactor.value) == list.end()) {
      list.push_back(reactor.value);
      setReactors(tags, list);
    }
    return ErrorStatus::eOk;
  }
  return ErrorStatus::eInvalidInput;
}

ErrorStatus DrawingDatabase::removeReactor(ObjectId id, ObjectId reactor) {
  if (EntityRecord* e = liveEntity(id.value)) {
    auto& list = e->extras.reactors;
    auto it = std::find(list.begin(), list.end(), reactor.value);
    if (it == list.end()) return ErrorStatus::eKeyNotFound;
    list.erase(it);
    writeReactors(*e);
    return ErrorStatus::eOk;
  }
  if (TagRecord* r = liveRecord(id.value)) {
    auto list = reactorsIn(tagsOf(*r));
    auto it = std::find(list.begin(), list.end(), reactor.value);
    if (it == list.end()) return ErrorStatus::eKeyNotFound;
    list.erase(it);
    setReactors(editTags(*r), list);
    return ErrorStatus::eOk;
  }
  return ErrorStatus::eInvalidInput;
}

}  // namespace standalone
