#include "standalone/editor/entity_filter.h"

#include "standalone/editor/answer_parse.h"

namespace standalone {

struct EntityFilter::Node {
  enum class Kind { kAnd, kOr, kNot, kTest } kind = Kind::kAnd;
  host::ResBuf test;                              // for kTest
  std::vector<std::shared_ptr<const Node>> children;  // for the groups
};

namespace {

using Node = EntityFilter::Node;

bool matchOne(std::string_view pattern, std::string_view text) {
  // Iterative glob with back-tracking to the last "*".
  std::size_t p = 0, t = 0, star = std::string_view::npos, mark = 0;
  while (t < text.size()) {
    if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == text[t])) {
      ++p;
      ++t;
    } else if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      mark = t;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      t = ++mark;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

std::optional<std::string> groupMarker(const host::ResBuf& rb) {
  if (rb.type != -4) return std::nullopt;
  const auto* s = std::get_if<std::string>(&rb.value);
  if (!s) return std::nullopt;
  return toUpperAscii(*s);
}

// Parses items up to the closing marker (empty at the top level); pos advances past it.
std::optional<std::vector<std::shared_ptr<const Node>>> parseItems(const host::ResBufList& list, std::size_t& pos,
                                                                   const std::string& closing, int depth) {
  std::vector<std::shared_ptr<const Node>> items;
  if (depth > 64) return std::nullopt;
  while (pos < list.size()) {
    const host::ResBuf& rb = list[pos++];
    std::optional<std::string> marker = groupMarker(rb);
    if (!marker) {
      if (rb.type == -4) return std::nullopt;
      auto node = std::make_shared<Node>();
      node->kind = Node::Kind::kTest;
      node->test = rb;
      items.push_back(node);
      continue;
    }
    if (*marker == closing) return items;
    Node::Kind kind;
    std::string close;
    if (*marker == "<OR") kind = Node::Kind::kOr, close = "OR>";
    else if (*marker == "<AND") kind = Node::Kind::kAnd, close = "AND>";
    else if (*marker == "<NOT") kind = Node::Kind::kNot, close = "NOT>";
    else return std::nullopt;
    auto children = parseItems(list, pos, close, depth + 1);
    if (!children || (kind == Node::Kind::kNot && children->size() != 1)) return std::nullopt;
    auto node = std::make_shared<Node>();
    node->kind = kind;
    node->children = std::move(*children);
    items.push_back(node);
  }
  if (!closing.empty()) return std::nullopt;  // a group left open
  return items;
}

bool testPair(const host::ResBuf& test, const host::Entity& e) {
  const auto* text = std::get_if<std::string>(&test.value);
  switch (test.type) {
    case 0:
      return text && wildcardMatch(*text, host::dxfName(e.data));
    case 8:
      return text && wildcardMatch(*text, e.props.layer);
    case 62: {
      if (const auto* s = std::get_if<std::int16_t>(&test.value)) return e.props.color.index == *s;
      if (const auto* l = std::get_if<std::int32_t>(&test.value)) return e.props.color.index == *l;
      return false;
    }
    default:
      return false;
  }
}

bool evaluate(const Node& n, const host::Entity& e) {
  switch (n.kind) {
    case Node::Kind::kTest:
      return testPair(n.test, e);
    case Node::Kind::kAnd:
      for (const auto& c : n.children)
        if (!evaluate(*c, e)) return false;
      return true;
    case Node::Kind::kOr:
      for (const auto& c : n.children)
        if (evaluate(*c, e)) return true;
      return false;
    case Node::Kind::kNot:
      return !evaluate(*n.children.front(), e);
  }
  return false;
}

}  // namespace

bool wildcardMatch(std::string_view pattern, std::string_view text) {
  std::string p = toUpperAscii(pattern), t = toUpperAscii(text);
  std::size_t start = 0;
  while (start <= p.size()) {
    std::size_t comma = p.find(',', start);
    if (comma == std::string::npos) comma = p.size();
    if (matchOne(std::string_view(p).substr(start, comma - start), t)) return true;
    start = comma + 1;
  }
  return false;
}

std::optional<EntityFilter> EntityFilter::parse(const host::ResBufList& list) {
  std::size_t pos = 0;
  auto items = parseItems(list, pos, "", 0);
  if (!items) return std::nullopt;
  EntityFilter f;
  auto root = std::make_shared<Node>();
  root->kind = Node::Kind::kAnd;
  root->children = std::move(*items);
  f.root_ = root;
  return f;
}

bool EntityFilter::accepts(const host::Entity& entity) const { return !root_ || evaluate(*root_, entity); }

}  // namespace standalone
