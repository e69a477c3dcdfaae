#include "standalone/db/dxf_tags.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace standalone {

namespace {

std::string_view trimmed(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) s.remove_suffix(1);
  return s;
}

std::string shown(std::string_view s) {
  constexpr std::size_t kMaxShown = 40;
  std::string out(s.substr(0, kMaxShown));
  if (s.size() > kMaxShown) out += "...";
  return out;
}

[[noreturn]] void badValue(const RawTag& tag, const char* what) {
  throw DxfError(tag.line + 1, std::string("expected ") + what + " for group code " + std::to_string(tag.code) +
                                   ", found \"" + shown(tag.value) + "\"");
}

}  // namespace

DxfError::DxfError(std::size_t line, const std::string& message)
    : std::runtime_error(line > 0 ? "line " + std::to_string(line) + ": " + message : message), line_(line) {}

TagReader::TagReader(std::string_view text, std::size_t firstLine)
    : pos_(text.data()), end_(text.data() + text.size()), line_(firstLine) {}

std::string_view TagReader::readLine() {
  const char* nl = static_cast<const char*>(std::memchr(pos_, '\n', static_cast<std::size_t>(end_ - pos_)));
  const char* lineEnd = nl ? nl : end_;
  std::string_view s(pos_, static_cast<std::size_t>(lineEnd - pos_));
  if (!s.empty() && s.back() == '\r') s.remove_suffix(1);
  pos_ = nl ? nl + 1 : end_;
  ++line_;
  return s;
}

// Group code of a line such as "  0" or "100": optional blanks, digits,
// optional blanks; false for anything else.
bool parseGroupCode(std::string_view line, int& code) {
  std::size_t i = 0, n = line.size();
  while (i < n && line[i] == ' ') ++i;
  bool negative = i < n && line[i] == '-';
  if (negative) ++i;
  std::size_t digitsStart = i;
  int value = 0;
  while (i < n && line[i] >= '0' && line[i] <= '9' && i - digitsStart < 6) value = value * 10 + (line[i++] - '0');
  if (i == digitsStart) return false;
  while (i < n && (line[i] == ' ' || line[i] == '\t' || line[i] == '\r')) ++i;
  code = negative ? -value : value;
  return i == n;
}

bool TagReader::scan(RawTag& tag) {
  if (pos_ >= end_) return false;
  tag.start = pos_;
  tag.line = line_;
  std::string_view codeLine = readLine();
  if (!parseGroupCode(codeLine, tag.code))
    throw DxfError(tag.line, "expected a group code, found \"" + shown(trimmed(codeLine)) + "\"");
  if (pos_ >= end_) throw DxfError(tag.line, "group code " + std::to_string(tag.code) + " has no value (file ends)");
  tag.value = readLine();
  return true;
}

bool TagReader::next(RawTag& tag) {
  if (hasPeeked_) {
    tag = peeked_;
    hasPeeked_ = false;
    return true;
  }
  return scan(tag);
}

bool TagReader::peek(RawTag& tag) {
  if (!hasPeeked_) {
    if (!scan(peeked_)) return false;
    hasPeeked_ = true;
  }
  tag = peeked_;
  return true;
}

bool tryParseReal(std::string_view text, double& out) {
  std::string_view s = trimmed(text);
  if (!s.empty() && s.front() == '+') s.remove_prefix(1);
  if (s.empty()) return false;
  auto [ptr, ec] = std::from_chars(s.data(), s.data() + s.size(), out);
  return ec == std::errc{} && ptr == s.data() + s.size() && std::isfinite(out);
}

double parseReal(const RawTag& tag) {
  double v = 0;
  if (!tryParseReal(tag.value, v)) badValue(tag, "a number");
  return v;
}

std::int64_t parseInteger(const RawTag& tag) {
  std::string_view s = trimmed(tag.value);
  if (!s.empty() && s.front() == '+') s.remove_prefix(1);
  std::int64_t v = 0;
  auto [ptr, ec] = std::from_chars(s.data(), s.data() + s.size(), v);
  if (ec != std::errc{} || s.empty()) badValue(tag, "a whole number");
  if (ptr != s.data() + s.size()) {
    // Some writers put reals into integer groups ("1.0"); accept whole values.
    double d = 0;
    constexpr double kLimit = 9.0e18;  // inside the range of a 64-bit integer
    if (!tryParseReal(s, d) || d != std::floor(d) || std::fabs(d) > kLimit) badValue(tag, "a whole number");
    v = static_cast<std::int64_t>(d);
  }
  return v;
}

bool tryParseHandle(std::string_view text, std::uint64_t& out) {
  std::string_view s = trimmed(text);
  if (s.empty() || s.size() > 16) return false;
  auto [ptr, ec] = std::from_chars(s.data(), s.data() + s.size(), out, 16);
  return ec == std::errc{} && ptr == s.data() + s.size();
}

std::uint64_t parseHandle(const RawTag& tag) {
  std::uint64_t h = 0;
  if (!tryParseHandle(tag.value, h)) badValue(tag, "a hexadecimal handle");
  return h;
}

GroupValue groupValueKind(int code) {
  if (code >= 10 && code <= 59) return GroupValue::kReal;
  if (code >= 60 && code <= 79) return GroupValue::kInt16;
  if (code >= 90 && code <= 99) return GroupValue::kInt32;
  if (code == 105) return GroupValue::kHandle;
  if (code >= 110 && code <= 149) return GroupValue::kReal;
  if (code >= 160 && code <= 169) return GroupValue::kInt64;
  if (code >= 170 && code <= 179) return GroupValue::kInt16;
  if (code >= 210 && code <= 239) return GroupValue::kReal;
  if (code >= 270 && code <= 289) return GroupValue::kInt16;
  if (code >= 290 && code <= 299) return GroupValue::kBool;
  if (code >= 310 && code <= 319) return GroupValue::kBinary;
  if (code >= 320 && code <= 369) return GroupValue::kHandle;
  if (code >= 370 && code <= 389) return GroupValue::kInt16;
  if (code >= 390 && code <= 399) return GroupValue::kHandle;
  if (code >= 400 && code <= 409) return GroupValue::kInt16;
  if (code >= 420 && code <= 429) return GroupValue::kInt32;
  if (code >= 440 && code <= 459) return GroupValue::kInt32;
  if (code >= 460 && code <= 469) return GroupValue::kReal;
  if (code == 1004) return GroupValue::kBinary;
  if (code == 1005) return GroupValue::kHandle;
  if (code >= 1010 && code <= 1059) return GroupValue::kReal;
  if (code >= 1060 && code <= 1070) return GroupValue::kInt16;
  if (code == 1071) return GroupValue::kInt32;
  return GroupValue::kText;
}

void appendReal(std::string& out, double v) {
  char buf[32];
  auto [ptr, ec] = std::to_chars(buf, buf + sizeof buf, v);
  (void)ec;
  std::string_view s(buf, static_cast<std::size_t>(ptr - buf));
  out += s;
  // Other readers expect a decimal point in a real.
  if (s.find_first_of(".en") == std::string_view::npos) out += ".0";
}

void appendInteger(std::string& out, std::int64_t v) {
  char buf[24];
  auto [ptr, ec] = std::to_chars(buf, buf + sizeof buf, v);
  (void)ec;
  out.append(buf, ptr);
}

void appendHandle(std::string& out, std::uint64_t h) {
  char buf[20];
  auto [ptr, ec] = std::to_chars(buf, buf + sizeof buf, h, 16);
  (void)ec;
  for (char* c = buf; c != ptr; ++c)
    if (*c >= 'a' && *c <= 'f') *c = static_cast<char>(*c - 'a' + 'A');
  out.append(buf, ptr);
}

std::string formatReal(double v) {
  std::string s;
  appendReal(s, v);
  return s;
}

std::string formatHandle(std::uint64_t h) {
  std::string s;
  appendHandle(s, h);
  return s;
}

}  // namespace standalone
