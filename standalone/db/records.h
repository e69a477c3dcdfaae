#pragma once
// What a drawing keeps beside its entity records so that a DXF file comes out
// as it went in: the raw bytes of every record we did not change, the tags we
// do not interpret, and the file's section layout. Shared by the database and
// the DXF reader and writer; nothing else should need it.
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/entity.h"
#include "standalone/db/dxf_codepage.h"

namespace standalone {

// One DXF group: code and value text as it stands in the file (file encoding).
struct Tag {
  int code = 0;
  std::string value;
  bool operator==(const Tag&) const = default;
};
using TagList = std::vector<Tag>;

// A tag of an interpreted entity that the entity record has no field for. The
// anchor says where it stood: 0 before the first subclass marker, k after the
// k-th marker (1-based), kAnchorTail after the interpreted part (XDATA,
// embedded objects).
struct KeptTag {
  int code = 0;
  std::uint16_t anchor = 0;
  std::string_view value;  // points into the drawing's source bytes
};
inline constexpr std::uint16_t kAnchorTail = 0xFFFF;

// Groups of a VERTEX or SEQEND record that the polyline record has no field
// for (XDATA, colours of single vertices, ...), by the record's handle.
struct SubRecordKept {
  std::uint64_t handle = 0;
  std::vector<KeptTag> kept;
};

// Where a block reference puts its block: what its attributes move with.
struct InsertPlacement {
  ge::Point3d position;  // WCS
  ge::Vector3d scale{1, 1, 1};
  double rotation = 0;  // radians about the normal
  ge::Vector3d normal = ge::kZAxis;
  bool operator==(const InsertPlacement&) const = default;
};

// Per-entity data the record types of host/entity.h do not hold.
struct EntityExtras {
  std::vector<std::uint64_t> reactors;  // 102 {ACAD_REACTORS
  std::uint64_t extensionDictionary = 0;  // 102 {ACAD_XDICTIONARY
  std::vector<std::string_view> markers;  // subclass markers of the original, in order
  std::vector<KeptTag> kept;
  std::string_view attributeTail;  // ATTRIB ... SEQEND after an INSERT, as read
  InsertPlacement attributeBase;   // the INSERT's placement when its attributes were read
  bool paperSpaceFlag = false;     // group 67 was 1
  TagList otherTags;  // full tags of an uninterpreted entity once its properties were changed
  std::vector<SubRecordKept> subRecords;  // only those with something kept
  // 91 of each LWPOLYLINE vertex as read (R2010+), one per vertex, empty
  // where a vertex had none; meaningful only while the vertex count is unchanged.
  std::vector<std::string_view> vertexIds;
};

struct EntityRecord {
  host::Entity entity;
  EntityExtras extras;
  std::string_view raw;  // the original bytes; empty once changed or when created here
  bool erased = false;
};

// A record kept as a whole: table heads and entries, BLOCK/ENDBLK, classes,
// non-graphical objects and entities we do not interpret. Either the original
// bytes or, once edited or when created here, its full tag list (from the 0 tag).
struct TagRecord {
  std::string_view raw;
  TagList tags;
  // Cached from the tags.
  std::string type;         // value of the 0 tag
  std::uint64_t handle = 0;  // 5 (105 for DIMSTYLE)
  std::uint64_t owner = 0;   // 330 before the first subclass marker
  std::string name;          // first 2 tag, decoded to UTF-8
  bool erased = false;
};

struct HeaderVariable {
  std::string name;  // with the leading $
  TagList tags;
};

struct SymbolTable {
  TagRecord head;  // 0 TABLE ... up to the first entry
  std::vector<std::size_t> entries;  // indexes into DrawingContents::records
  TagRecord end;   // 0 ENDTAB
};

struct BlockDefinition {
  std::uint64_t recordId = 0;  // block table record handle; a private id in R12 files
  TagRecord begin;  // 0 BLOCK
  std::vector<std::uint64_t> entities;
  TagRecord end;    // 0 ENDBLK
};

// A section in file order; sections we do not know are written back from raw.
struct SectionSlot {
  std::string name;
  std::string_view raw;  // whole section, only for unknown ones
};

struct Slot {
  enum class Kind : std::uint8_t { kEntity, kRecord } kind;
  std::size_t index;
};

// The whole state of a drawing.
struct DrawingContents {
  std::shared_ptr<const std::string> source;  // the file's bytes; kept views point into it
  std::string version = "AC1032";
  std::string lineEnd = "\n";
  std::string codepage = "ANSI_1252";
  bool hasHandles = true;
  std::vector<SectionSlot> sections;
  std::vector<HeaderVariable> header;
  std::vector<TagRecord> classes;
  // Instances of each class as loaded: a CLASS entry's count is rewritten
  // only when the drawing's own count moved away from it.
  std::vector<std::size_t> classInstancesAtLoad;
  std::vector<SymbolTable> tables;
  std::vector<BlockDefinition> blocks;
  std::vector<std::uint64_t> entitySection;  // model space and active paper space, in order
  std::vector<std::uint64_t> objects;        // OBJECTS section order (handles into records)
  std::deque<EntityRecord> entities;
  std::deque<TagRecord> records;  // table entries and objects
  std::unordered_map<std::uint64_t, Slot> index;
  std::uint64_t nextHandle = 1;
  std::uint64_t modelSpace = 0, paperSpace = 0;
  std::uint64_t namedObjects = 0;
  std::uint64_t lastEntity = 0;
  std::vector<std::uint64_t> privateIds;  // ids made up for R12 spaces and blocks; never written

  TextEncoding encoding() const { return TextEncoding::forFile(version, codepage); }
};

// True when the version has subclass markers, handles and owners (R13 and later).
inline bool hasSubclassMarkers(std::string_view version) { return version > "AC1009"; }
// True when files of this version are UTF-8 (R2007 and later).
inline bool isUtf8Version(std::string_view version) { return version >= "AC1021"; }

}  // namespace standalone
