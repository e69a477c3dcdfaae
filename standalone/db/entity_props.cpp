#include "standalone/db/entity_props.h"

#include <algorithm>

#include "standalone/db/dxf_tags.h"
#include "standalone/db/tag_record.h"

namespace standalone {

namespace {
constexpr int kPropertyCodes[] = {8, 6, 62, 420, 370, 48, 60};
bool isPropertyCode(int code) {
  return std::find(std::begin(kPropertyCodes), std::end(kPropertyCodes), code) != std::end(kPropertyCodes);
}
}  // namespace

TagList propertyTags(const host::EntityProps& props, const TextEncoding& enc) {
  TagList tags;
  tags.push_back({8, encodeText(props.layer.empty() ? "0" : props.layer, enc)});
  if (!props.linetype.empty()) tags.push_back({6, encodeText(props.linetype, enc)});
  if (props.color.index != host::Color::kByLayer) tags.push_back({62, std::to_string(props.color.index)});
  if (props.color.trueColor) tags.push_back({420, std::to_string(*props.color.trueColor & 0xFFFFFFu)});
  if (props.lineweight != -1) tags.push_back({370, std::to_string(props.lineweight)});
  if (props.linetypeScale != 1.0) tags.push_back({48, formatReal(props.linetypeScale)});
  if (props.invisible) tags.push_back({60, "1"});
  return tags;
}

void applyProps(TagList& tags, const host::EntityProps& props, const TextEncoding& enc, bool markers) {
  std::size_t begin = bodyStart(tags);
  if (markers) {
    for (std::size_t i = begin; i < tags.size(); ++i) {
      if (tags[i].code == 100 && tags[i].value == "AcDbEntity") {
        begin = i + 1;
        break;
      }
    }
  }
  std::size_t end = begin;
  while (end < tags.size() && tags[end].code != 100 && tags[end].code < 1000) ++end;
  tags.erase(std::remove_if(tags.begin() + static_cast<std::ptrdiff_t>(begin),
                            tags.begin() + static_cast<std::ptrdiff_t>(end),
                            [](const Tag& t) { return isPropertyCode(t.code); }),
             tags.begin() + static_cast<std::ptrdiff_t>(end));
  TagList fresh = propertyTags(props, enc);
  tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(begin), fresh.begin(), fresh.end());
}

bool readPropertyTag(int code, std::string_view value, host::EntityProps& props, const TextEncoding& enc,
                     std::size_t line) {
  RawTag t{code, value, line, nullptr};
  switch (code) {
    case 8: props.layer = decodeText(value, enc); return true;
    case 6:
      props.linetype = decodeText(value, enc);
      if (sameName(props.linetype, "BYLAYER")) props.linetype.clear();
      return true;
    case 62: props.color.index = static_cast<int>(parseInteger(t)); return true;
    case 420: props.color.trueColor = static_cast<std::uint32_t>(parseInteger(t)) & 0xFFFFFFu; return true;
    case 370: props.lineweight = static_cast<int>(parseInteger(t)); return true;
    case 48: props.linetypeScale = parseReal(t); return true;
    case 60: props.invisible = parseInteger(t) != 0; return true;
    default: return false;
  }
}

}  // namespace standalone
