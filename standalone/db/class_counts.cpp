#include "standalone/db/class_counts.h"

#include <string_view>
#include <unordered_map>

#include "standalone/db/tag_record.h"

namespace standalone {

std::string classDxfName(const TagRecord& classRecord) {
  return findValue(tagsOf(classRecord), 1).value_or("");
}

std::vector<std::size_t> classInstanceCounts(const DrawingContents& c) {
  std::vector<std::size_t> counts(c.classes.size(), 0);
  std::vector<std::string> names;
  names.reserve(c.classes.size());
  for (const auto& r : c.classes) names.push_back(classDxfName(r));
  std::unordered_map<std::string_view, std::size_t> slot;
  for (std::size_t i = 0; i < names.size(); ++i)
    if (!names[i].empty()) slot.emplace(names[i], i);
  if (slot.empty()) return counts;
  auto count = [&](std::string_view type) {
    if (auto it = slot.find(type); it != slot.end()) ++counts[it->second];
  };
  for (const auto& e : c.entities)
    if (!e.erased) count(host::dxfName(e.entity.data));
  for (const auto& r : c.records)
    if (!r.erased) count(r.type);
  return counts;
}

}  // namespace standalone
