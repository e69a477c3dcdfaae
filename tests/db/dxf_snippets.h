#pragma once
// Inline DXF for the tests: groups written as "code value|code value|..." and
// a small but complete R2000+ file around a list of entities; entities to append.
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/entity.h"

namespace dbtest {

using Groups = std::vector<std::pair<int, std::string>>;

// Groups from "code value|code value|...": the value is everything after the
// first blank, so it may be empty or hold blanks of its own.
inline Groups groups(std::string_view text) {
  Groups out;
  while (!text.empty()) {
    auto bar = text.find('|');
    std::string_view pair = text.substr(0, bar);
    auto blank = pair.find(' ');
    out.emplace_back(std::stoi(std::string(pair.substr(0, blank))),
                     blank == std::string_view::npos ? "" : std::string(pair.substr(blank + 1)));
    text = bar == std::string_view::npos ? "" : text.substr(bar + 1);
  }
  return out;
}

inline Groups operator+(Groups a, const Groups& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

// An entity holding the record, for appending to a drawing.
inline host::Entity entityOf(host::EntityData data) {
  host::Entity e;
  e.data = std::move(data);
  return e;
}

// Groups as DXF text, codes right-aligned like AutoCAD writes them.
inline std::string dxf(const Groups& groups, const char* eol = "\n") {
  std::string out;
  for (const auto& [code, value] : groups) {
    std::string c = std::to_string(code);
    out += std::string(c.size() < 3 ? 3 - c.size() : 0, ' ') + c + eol + value + eol;
  }
  return out;
}
inline std::string dxf(std::string_view compact) { return dxf(groups(compact)); }

// The opening groups of an entity of model space with the given subclass.
inline Groups head(const std::string& type, const std::string& handle, const std::string& subclass) {
  return groups("0 " + type + "|5 " + handle + "|330 1F|100 AcDbEntity|8 0|100 " + subclass);
}

// A file of the version with model space (block record 1F) and the given
// entities; handles below 100 are taken, the seed is 100.
inline std::string drawing(const std::string& entities, const std::string& version = "AC1015",
                           const std::string& codepage = "ANSI_1252") {
  const std::string record = "|100 AcDbSymbolTableRecord|100 AcDb";
  const std::string blockEntity = "|100 AcDbEntity|8 0|100 AcDbBlock";
  std::string head = dxf(
      "0 SECTION|2 HEADER|9 $ACADVER|1 " + version + "|9 $DWGCODEPAGE|3 " + codepage +
      "|9 $HANDSEED|5 100|9 $PDMODE|70 35|9 $CLAYER|8 Walls|0 ENDSEC|0 SECTION|2 TABLES"
      "|0 TABLE|2 VPORT|5 8|330 0|100 AcDbSymbolTable|70 1|0 VPORT|5 29|330 8" + record +
      "ViewportTableRecord|2 *Active|70 0|12 150.5|22 -20.25|40 300.0|41 1.6|0 ENDTAB"
      "|0 TABLE|2 LAYER|5 2|330 0|100 AcDbSymbolTable|70 2"
      "|0 LAYER|5 10|330 2" + record + "LayerTableRecord|2 0|70 0|62 7|6 Continuous"
      "|0 LAYER|5 11|330 2" + record + "LayerTableRecord|2 Walls|70 4|62 -3|6 Continuous|0 ENDTAB"
      "|0 TABLE|2 BLOCK_RECORD|5 1|330 0|100 AcDbSymbolTable|70 3"
      "|0 BLOCK_RECORD|5 1F|330 1" + record + "BlockTableRecord|2 *Model_Space"
      "|0 BLOCK_RECORD|5 1B|330 1" + record + "BlockTableRecord|2 *Paper_Space"
      "|0 BLOCK_RECORD|5 40|330 1" + record + "BlockTableRecord|2 Door|0 ENDTAB|0 ENDSEC"
      "|0 SECTION|2 BLOCKS|0 BLOCK|5 20|330 1F" + blockEntity +
      "Begin|2 *Model_Space|70 0|10 0.0|20 0.0|30 0.0|3 *Model_Space|1 "
      "|0 ENDBLK|5 21|330 1F" + blockEntity + "End"
      "|0 BLOCK|5 1C|330 1B|100 AcDbEntity|67 1|8 0|100 AcDbBlockBegin|2 *Paper_Space|70 0|10 0.0|20 0.0|30 0.0"
      "|3 *Paper_Space|1 |0 ENDBLK|5 1D|330 1B|100 AcDbEntity|67 1|8 0|100 AcDbBlockEnd"
      "|0 BLOCK|5 41|330 40" + blockEntity + "Begin|2 Door|70 2|10 1.0|20 2.0|30 0.0|3 Door|1 "
      "|0 LINE|5 42|330 40|100 AcDbEntity|8 0|100 AcDbLine|10 0.0|20 0.0|30 0.0|11 1.0|21 0.0|31 0.0"
      "|0 ENDBLK|5 43|330 40" + blockEntity + "End|0 ENDSEC|0 SECTION|2 ENTITIES");
  std::string tail = dxf(
      "0 ENDSEC|0 SECTION|2 OBJECTS|0 DICTIONARY|5 C|330 0|100 AcDbDictionary|281 1|3 ACAD_GROUP|350 D"
      "|0 DICTIONARY|5 D|102 {ACAD_REACTORS|330 C|102 }|330 C|100 AcDbDictionary|281 1|0 ENDSEC|0 EOF");
  return head + entities + tail;
}

}  // namespace dbtest
