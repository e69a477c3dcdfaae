#pragma once
// Work on records kept as tag lists: reading them out of their raw bytes,
// the common header (handle, owner, reactors), dictionary entries, and the
// conversion between tags and the host's typed result buffers.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/resbuf.h"
#include "standalone/db/dxf_codepage.h"
#include "standalone/db/records.h"

namespace standalone {

// All tags of raw record text (starting with its 0 group).
TagList tokenize(std::string_view raw);
// The record's tags: its edited list, or its raw bytes read into tags.
TagList tagsOf(const TagRecord& record);
// Switches the record to an editable tag list and returns it.
TagList& editTags(TagRecord& record);
// The common header of a record, read tag by tag after its 0 group: the
// handle (the first 5, or 105 for DIMSTYLE), the owner (a 330 before the
// first subclass marker) and the name (the first 2), leaving out the tags
// inside 102 application groups. The file reader and the cache of edited
// records both read headers here, so a record means the same either way.
class RecordHeaderScan {
 public:
  // Takes the next tag; line is the tag's line in a file, 0 when it has none.
  // A handle group that holds no hexadecimal handle throws DxfError.
  void take(int code, std::string_view value, std::size_t line, const TextEncoding& enc);
  // Copies what was found into the record.
  void fill(TagRecord& record) const;

 private:
  std::uint64_t handle_ = 0, owner_ = 0;
  std::string name_;
  bool inGroup_ = false, seenMarker_ = false, seenName_ = false;
};

// Recomputes type, handle, owner and name from the record's content.
void refreshCache(TagRecord& record, const TextEncoding& enc);
// A new record from tags (cache filled).
TagRecord makeRecord(TagList tags, const TextEncoding& enc);

// Index just past the common header (0, 5, 102 groups, 330 owner): where the
// object's own data begins.
std::size_t bodyStart(const TagList& tags);
std::vector<std::uint64_t> reactorsIn(const TagList& tags);
void setReactors(TagList& tags, const std::vector<std::uint64_t>& reactors);
void setOwner(TagList& tags, std::uint64_t owner);
// Sets the record's own handle (5 just after the 0 group).
void setHandle(TagList& tags, std::uint64_t handle);
// Gives a loaded entity a new handle; it is then written from its record
// (an uninterpreted one from its tags) instead of its original bytes.
void renumber(EntityRecord& e, std::uint64_t handle, bool writeHandles);
// The value of the first tag with the code at or after `from`; nothing if absent.
std::optional<std::string> findValue(const TagList& tags, int code, std::size_t from = 0);
// Replaces the first tag with the code at or after `from`, or appends one.
void setValue(TagList& tags, int code, std::string value, std::size_t from = 0);

// Dictionary entries: 3 key followed by 350 or 360 handle.
struct DictionaryEntry {
  std::string key;
  std::uint64_t handle = 0;
};
std::vector<DictionaryEntry> dictionaryEntries(const TagList& tags);
void setDictionaryEntry(TagList& tags, const std::string& key, std::uint64_t handle);
bool removeDictionaryEntry(TagList& tags, const std::string& key);

// Tags to typed result buffers (type = group code) and back; text is UTF-8 in
// the buffers and file-encoded in the tags.
host::ResBuf toResBuf(const Tag& tag, const TextEncoding& enc);
host::ResBufList toResBufs(const TagList& tags, std::size_t from, const TextEncoding& enc);
// A point value becomes its x, y (and z) groups (code, code+10, code+20).
void appendTags(TagList& tags, const host::ResBuf& rb, const TextEncoding& enc);

// Case-insensitive comparison of ASCII names (layer, block and key names).
bool sameName(std::string_view a, std::string_view b);

}  // namespace standalone
