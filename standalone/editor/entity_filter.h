#pragma once
// Selection filters as the host's ssget takes them: DXF group code/value pairs
// that must all hold, with -4 "<or" ... "or>", "<and" ... "and>" and
// "<not" ... "not>" groups. Understood codes: 0 entity type, 8 layer (both
// with the wildcards "*" and "?" and comma-separated alternatives, ASCII case
// ignored) and 62 colour number. A pair with any other code matches nothing,
// so an unsupported filter never selects more than asked.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/entity.h"
#include "host/resbuf.h"

namespace standalone {

class EntityFilter {
 public:
  // Accepts every entity.
  EntityFilter() = default;
  // The filter a list describes; nothing when the groups do not balance or a value has the wrong type.
  static std::optional<EntityFilter> parse(const host::ResBufList& list);

  bool accepts(const host::Entity& entity) const;

  struct Node;

 private:
  std::shared_ptr<const Node> root_;  // null: accept all
};

// Wildcard match of the host's selection filters: "*" any run, "?" one
// character, "," between alternatives; ASCII case ignored.
bool wildcardMatch(std::string_view pattern, std::string_view text);

}  // namespace standalone
