#include "standalone/db/tag_record.h"

#include <algorithm>
#include <cctype>

#include "standalone/db/dxf_tags.h"

namespace standalone {

namespace {

bool isGroupOpen(const Tag& t) { return t.code == 102 && !t.value.empty() && t.value.front() == '{'; }
bool isGroupClose(const Tag& t) { return t.code == 102 && t.value == "}"; }

// [first, last) of the 102 group with the given name in the header; nothing if absent.
std::optional<std::pair<std::size_t, std::size_t>> headerGroup(const TagList& tags, std::string_view name) {
  std::size_t end = bodyStart(tags);
  for (std::size_t i = 0; i < end; ++i) {
    if (!isGroupOpen(tags[i]) || tags[i].value.substr(1) != name) continue;
    std::size_t j = i + 1;
    while (j < tags.size() && !isGroupClose(tags[j])) ++j;
    return std::make_pair(i, std::min(j + 1, tags.size()));
  }
  return std::nullopt;
}

}  // namespace

bool sameName(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return std::toupper(static_cast<unsigned char>(x)) == std::toupper(static_cast<unsigned char>(y));
         });
}

TagList tokenize(std::string_view raw) {
  TagList tags;
  TagReader reader(raw);
  RawTag t;
  while (reader.next(t)) tags.push_back({t.code, std::string(t.value)});
  return tags;
}

TagList tagsOf(const TagRecord& record) { return record.raw.empty() ? record.tags : tokenize(record.raw); }

TagList& editTags(TagRecord& record) {
  if (!record.raw.empty()) {
    record.tags = tokenize(record.raw);
    record.raw = {};
  }
  return record.tags;
}

void RecordHeaderScan::take(int code, std::string_view value, std::size_t line, const TextEncoding& enc) {
  if (code == 102) {
    inGroup_ = !value.empty() && value.front() == '{';
    return;
  }
  if (inGroup_) return;
  if (code == 100) seenMarker_ = true;
  if ((code == 5 || code == 105) && handle_ == 0 && !tryParseHandle(value, handle_))
    throw DxfError(line, "expected a hexadecimal handle for group code " + std::to_string(code) + ", found \"" +
                             std::string(value.substr(0, 40)) + "\"");
  if (code == 330 && !seenMarker_ && owner_ == 0) tryParseHandle(value, owner_);
  if (code == 2 && !seenName_) {
    name_ = decodeText(value, enc);
    seenName_ = true;
  }
}

void RecordHeaderScan::fill(TagRecord& record) const {
  record.handle = handle_;
  record.owner = owner_;
  record.name = name_;
}

void refreshCache(TagRecord& record, const TextEncoding& enc) {
  TagList tags = tagsOf(record);
  record.type = tags.empty() ? std::string() : tags.front().value;
  RecordHeaderScan scan;
  for (std::size_t i = 1; i < tags.size(); ++i) scan.take(tags[i].code, tags[i].value, 0, enc);
  scan.fill(record);
}

TagRecord makeRecord(TagList tags, const TextEncoding& enc) {
  TagRecord r;
  r.tags = std::move(tags);
  refreshCache(r, enc);
  return r;
}

std::size_t bodyStart(const TagList& tags) {
  bool inGroup = false;
  for (std::size_t i = 1; i < tags.size(); ++i) {
    const Tag& t = tags[i];
    if (isGroupOpen(t)) inGroup = true;
    if (isGroupClose(t)) {
      inGroup = false;
      continue;
    }
    if (inGroup || t.code == 5 || t.code == 105) continue;
    if (t.code == 330) return i + 1;
    return i;
  }
  return tags.size();
}

std::vector<std::uint64_t> reactorsIn(const TagList& tags) {
  std::vector<std::uint64_t> out;
  if (auto g = headerGroup(tags, "ACAD_REACTORS")) {
    for (std::size_t i = g->first + 1; i < g->second; ++i) {
      std::uint64_t h = 0;
      if (tags[i].code == 330 && tryParseHandle(tags[i].value, h)) out.push_back(h);
    }
  }
  return out;
}

void setReactors(TagList& tags, const std::vector<std::uint64_t>& reactors) {
  std::size_t at = 0;
  if (auto g = headerGroup(tags, "ACAD_REACTORS")) {
    tags.erase(tags.begin() + static_cast<std::ptrdiff_t>(g->first),
               tags.begin() + static_cast<std::ptrdiff_t>(g->second));
    at = g->first;
  } else {
    // Just after the handle.
    at = 1;
    while (at < tags.size() && (tags[at].code == 5 || tags[at].code == 105)) ++at;
  }
  if (reactors.empty()) return;
  TagList group{{102, "{ACAD_REACTORS"}};
  for (std::uint64_t h : reactors) group.push_back({330, formatHandle(h)});
  group.push_back({102, "}"});
  tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(at), group.begin(), group.end());
}

void setOwner(TagList& tags, std::uint64_t owner) {
  std::size_t body = bodyStart(tags);
  if (body > 0 && body <= tags.size() && tags[body - 1].code == 330) {
    tags[body - 1].value = formatHandle(owner);
  } else {
    tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(body), Tag{330, formatHandle(owner)});
  }
}

void setHandle(TagList& tags, std::uint64_t handle) {
  if (tags.size() > 1 && tags[1].code == 5) {
    tags[1].value = formatHandle(handle);
  } else {
    tags.insert(tags.begin() + (tags.empty() ? 0 : 1), Tag{5, formatHandle(handle)});
  }
}

void renumber(EntityRecord& e, std::uint64_t handle, bool writeHandles) {
  e.entity.id = {handle};
  if (!writeHandles || e.raw.empty()) return;
  if (std::holds_alternative<host::OtherEntity>(e.entity.data)) {
    if (e.extras.otherTags.empty()) e.extras.otherTags = tokenize(e.raw);
    setHandle(e.extras.otherTags, handle);
  }
  e.raw = {};
}

std::optional<std::string> findValue(const TagList& tags, int code, std::size_t from) {
  for (std::size_t i = from; i < tags.size(); ++i)
    if (tags[i].code == code) return tags[i].value;
  return std::nullopt;
}

void setValue(TagList& tags, int code, std::string value, std::size_t from) {
  for (std::size_t i = from; i < tags.size(); ++i) {
    if (tags[i].code == code) {
      tags[i].value = std::move(value);
      return;
    }
  }
  tags.push_back({code, std::move(value)});
}

std::vector<DictionaryEntry> dictionaryEntries(const TagList& tags) {
  std::vector<DictionaryEntry> out;
  for (std::size_t i = bodyStart(tags); i + 1 < tags.size(); ++i) {
    if (tags[i].code != 3) continue;
    const Tag& next = tags[i + 1];
    std::uint64_t h = 0;
    if ((next.code == 350 || next.code == 360) && tryParseHandle(next.value, h)) out.push_back({tags[i].value, h});
  }
  return out;
}

void setDictionaryEntry(TagList& tags, const std::string& key, std::uint64_t handle) {
  for (std::size_t i = bodyStart(tags); i + 1 < tags.size(); ++i) {
    if (tags[i].code == 3 && (tags[i + 1].code == 350 || tags[i + 1].code == 360) && sameName(tags[i].value, key)) {
      tags[i + 1].value = formatHandle(handle);
      return;
    }
  }
  // Hard-owned (360) when the dictionary says so with 280 1, else soft (350).
  auto hard = findValue(tags, 280, bodyStart(tags));
  int code = hard && hard->find('1') != std::string::npos ? 360 : 350;
  tags.push_back({3, key});
  tags.push_back({code, formatHandle(handle)});
}

bool removeDictionaryEntry(TagList& tags, const std::string& key) {
  for (std::size_t i = bodyStart(tags); i + 1 < tags.size(); ++i) {
    if (tags[i].code == 3 && (tags[i + 1].code == 350 || tags[i + 1].code == 360) && sameName(tags[i].value, key)) {
      tags.erase(tags.begin() + static_cast<std::ptrdiff_t>(i), tags.begin() + static_cast<std::ptrdiff_t>(i + 2));
      return true;
    }
  }
  return false;
}

host::ResBuf toResBuf(const Tag& tag, const TextEncoding& enc) {
  host::ResBuf rb;
  rb.type = tag.code;
  RawTag raw{tag.code, tag.value, 0, nullptr};
  double d = 0;
  std::uint64_t h = 0;
  switch (groupValueKind(tag.code)) {
    case GroupValue::kReal:
      rb.value = tryParseReal(tag.value, d) ? d : 0.0;
      break;
    case GroupValue::kInt16:
    case GroupValue::kBool:
      rb.value = tryParseReal(tag.value, d) ? static_cast<std::int16_t>(d) : std::int16_t{0};
      break;
    case GroupValue::kInt32:
      rb.value = tryParseReal(tag.value, d) ? static_cast<std::int32_t>(d) : std::int32_t{0};
      break;
    case GroupValue::kInt64:
      rb.value = tryParseReal(tag.value, d) ? d : 0.0;
      break;
    case GroupValue::kHandle:
      rb.value = host::ObjectId{tryParseHandle(tag.value, h) ? h : 0};
      break;
    case GroupValue::kBinary:
      rb.value = tag.value;
      break;
    case GroupValue::kText:
      rb.value = decodeText(tag.value, enc);
      break;
  }
  (void)raw;
  return rb;
}

host::ResBufList toResBufs(const TagList& tags, std::size_t from, const TextEncoding& enc) {
  host::ResBufList out;
  for (std::size_t i = from; i < tags.size(); ++i) out.push_back(toResBuf(tags[i], enc));
  return out;
}

void appendTags(TagList& tags, const host::ResBuf& rb, const TextEncoding& enc) {
  struct Visitor {
    TagList& tags;
    int code;
    const TextEncoding& enc;
    void operator()(std::monostate) const { tags.push_back({code, ""}); }
    void operator()(std::int16_t v) const { tags.push_back({code, std::to_string(v)}); }
    void operator()(std::int32_t v) const { tags.push_back({code, std::to_string(v)}); }
    void operator()(double v) const {
      if (groupValueKind(code) == GroupValue::kReal) {
        tags.push_back({code, formatReal(v)});
      } else {
        tags.push_back({code, std::to_string(static_cast<long long>(v))});
      }
    }
    void operator()(const std::string& s) const {
      tags.push_back({code, groupValueKind(code) == GroupValue::kText ? encodeText(s, enc) : s});
    }
    void operator()(const ge::Point2d& p) const {
      tags.push_back({code, formatReal(p.x)});
      tags.push_back({code + 10, formatReal(p.y)});
    }
    void operator()(const ge::Point3d& p) const {
      tags.push_back({code, formatReal(p.x)});
      tags.push_back({code + 10, formatReal(p.y)});
      tags.push_back({code + 20, formatReal(p.z)});
    }
    void operator()(host::ObjectId id) const { tags.push_back({code, formatHandle(id.value)}); }
  };
  std::visit(Visitor{tags, rb.type, enc}, rb.value);
}

}  // namespace standalone
