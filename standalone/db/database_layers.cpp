// The layer table as a list of layers, and changes to one layer's colour,
// visibility and flags.
#include <cmath>
#include <cstdlib>

#include "standalone/db/database.h"
#include "standalone/db/dxf_tags.h"
#include "standalone/db/tag_record.h"

namespace standalone {

namespace {
constexpr int kFrozen = 1, kLocked = 4;  // LAYER flags (group 70)
}  // namespace

std::vector<LayerState> DrawingDatabase::layerStates() const {
  std::vector<LayerState> out;
  for (const std::string& name : layerNames()) {
    const TagRecord* r = findTableEntry("LAYER", name);
    if (!r) continue;
    TagList tags = tagsOf(*r);
    std::size_t body = bodyStart(tags);
    LayerState s;
    s.name = name;
    double v = 0;
    if (auto c = findValue(tags, 62, body); c && tryParseReal(*c, v)) {
      s.on = v >= 0;
      s.color = std::abs(static_cast<int>(v));
    }
    if (auto f = findValue(tags, 70, body); f && tryParseReal(*f, v)) {
      s.frozen = static_cast<int>(v) & kFrozen;
      s.locked = static_cast<int>(v) & kLocked;
    }
    out.push_back(s);
  }
  return out;
}

bool DrawingDatabase::setLayerState(const LayerState& state) {
  if (state.color < 1 || state.color > 255) return false;
  TagRecord* r = const_cast<TagRecord*>(findTableEntry("LAYER", state.name));
  if (!r) return false;
  TagList& tags = editTags(*r);
  std::size_t body = bodyStart(tags);
  double v = 0;
  int flags = 0;
  if (auto f = findValue(tags, 70, body); f && tryParseReal(*f, v)) flags = static_cast<int>(v);
  flags = (flags & ~(kFrozen | kLocked)) | (state.frozen ? kFrozen : 0) | (state.locked ? kLocked : 0);
  setValue(tags, 70, std::to_string(flags), body);
  setValue(tags, 62, std::to_string(state.on ? state.color : -state.color), body);
  return true;
}

}  // namespace standalone
