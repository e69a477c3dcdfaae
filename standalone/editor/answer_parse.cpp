#include "standalone/editor/answer_parse.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace standalone {

std::string toUpperAscii(std::string_view text) {
  std::string out(text);
  for (char& c : out)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return out;
}

bool equalsNoCase(std::string_view a, std::string_view b) { return toUpperAscii(a) == toUpperAscii(b); }

bool looksLikeInteger(std::string_view text) {
  if (!text.empty() && (text[0] == '+' || text[0] == '-')) text.remove_prefix(1);
  if (text.empty()) return false;
  for (char c : text)
    if (c < '0' || c > '9') return false;
  return true;
}

std::optional<int> parseInteger(std::string_view text) {
  if (!looksLikeInteger(text)) return std::nullopt;
  if (text[0] == '+') text.remove_prefix(1);
  long long v = 0;
  auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
  if (ec != std::errc{} || ptr != text.data() + text.size()) return std::nullopt;
  if (v < -32768 || v > 32767) return std::nullopt;
  return static_cast<int>(v);
}

std::optional<double> parseReal(std::string_view text) {
  if (!text.empty() && text[0] == '+') text.remove_prefix(1);
  if (text.empty()) return std::nullopt;
  // from_chars would also take "inf" and "nan", which are not numbers a user types.
  char first = text[0] == '-' && text.size() > 1 ? text[1] : text[0];
  if (!(first == '.' || (first >= '0' && first <= '9'))) return std::nullopt;
  double v = 0;
  auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
  if (ec != std::errc{} || ptr != text.data() + text.size() || !std::isfinite(v)) return std::nullopt;
  return v;
}

std::optional<PointAnswer> parsePoint(std::string_view text) {
  PointAnswer answer;
  if (!text.empty() && text[0] == '@') {
    answer.relative = true;
    text.remove_prefix(1);
    if (text.empty()) return answer;  // "@": the last point
  }
  double coords[3] = {0, 0, 0};
  int count = 0;
  while (true) {
    std::size_t comma = text.find(',');
    std::string_view part = text.substr(0, comma);
    if (count == 3) return std::nullopt;
    std::optional<double> v = parseReal(part);
    if (!v) return std::nullopt;
    coords[count++] = *v;
    if (comma == std::string_view::npos) break;
    text.remove_prefix(comma + 1);
  }
  if (count < 2) return std::nullopt;
  answer.value = {coords[0], coords[1], coords[2]};
  answer.hasZ = count == 3;
  return answer;
}

ge::Point3d resolvePoint(const PointAnswer& answer, const ge::Point3d& lastPoint) {
  if (!answer.relative) return answer.value;
  return lastPoint + answer.value.asVector();
}

KeywordList::Keyword KeywordList::makeKeyword(std::string_view token) {
  Keyword k;
  std::size_t comma = token.find(',');
  if (comma != std::string_view::npos) {
    k.full = std::string(token.substr(0, comma));
    k.abbrev = toUpperAscii(token.substr(comma + 1));
    return k;
  }
  k.full = std::string(token);
  // The leading capitals are the abbreviation; capitals elsewhere ("eXit")
  // are an abbreviation of their own; no capitals: the whole word is needed.
  std::string lead;
  for (char c : token) {
    if (c >= 'A' && c <= 'Z') lead += c;
    else break;
  }
  if (!lead.empty()) {
    k.abbrev = lead;
    return k;
  }
  std::string caps;
  for (char c : token)
    if (c >= 'A' && c <= 'Z') caps += c;
  k.abbrev = caps.empty() ? toUpperAscii(token) : caps;
  return k;
}

bool KeywordList::answers(const Keyword& k, std::string_view upperAnswer) {
  if (upperAnswer.empty()) return false;
  std::string full = toUpperAscii(k.full);
  if (upperAnswer == full || upperAnswer == k.abbrev) return true;
  // Any longer prefix of the keyword that starts with the abbreviation.
  return full.starts_with(k.abbrev) && upperAnswer.size() >= k.abbrev.size() && full.starts_with(upperAnswer);
}

KeywordList::KeywordList(std::string_view list) {
  bool inGlobal = false;
  std::size_t i = 0;
  while (i < list.size()) {
    while (i < list.size() && list[i] == ' ') ++i;
    std::size_t end = list.find(' ', i);
    if (end == std::string_view::npos) end = list.size();
    std::string_view token = list.substr(i, end - i);
    i = end;
    if (token.empty()) continue;
    if (token == "_") {
      inGlobal = true;
      continue;
    }
    (inGlobal ? global_ : local_).push_back(makeKeyword(token));
  }
  if (global_.size() != local_.size()) global_.clear();  // a malformed global part is ignored
}

std::optional<std::string> KeywordList::match(std::string_view answer) const {
  std::string upper = toUpperAscii(answer);
  const std::vector<Keyword>& globals = global_.empty() ? local_ : global_;
  if (upper.starts_with("_")) {
    std::string_view rest = std::string_view(upper).substr(1);
    for (const Keyword& k : globals)
      if (answers(k, rest)) return k.full;
    return std::nullopt;
  }
  for (std::size_t i = 0; i < local_.size(); ++i)
    if (answers(local_[i], upper)) return globals[i].full;
  return std::nullopt;
}

std::string displayReal(double value) {
  if (value == 0) return "0";  // also for -0
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.8g", value);
  return buf;
}

std::string displayPoint(const ge::Point3d& p) {
  return displayReal(p.x) + "," + displayReal(p.y) + "," + displayReal(p.z);
}

}  // namespace standalone
