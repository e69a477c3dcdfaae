#include "standalone/editor/settings_file.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "standalone/editor/answer_parse.h"
#include "standalone/editor/answer_source.h"
#include "standalone/editor/errors.h"
#include "io/replace_file.h"

namespace standalone {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kHeader = "Windows Registry Editor Version 5.00";
// The host's text read fills a buffer of 4096 UTF-16 units with the terminating zero.
constexpr std::size_t kTextUnitsLimit = 4096;
constexpr std::size_t kHexBytesPerLine = 24;

std::string fullPath(std::string_view key) { return std::string(kUserRoot) + "\\" + std::string(key); }

std::size_t utf16Units(std::string_view utf8) {
  std::size_t units = 0;
  for (unsigned char c : utf8) {
    if ((c & 0xC0) != 0x80) ++units;       // one unit per code point start
    if ((c & 0xF8) == 0xF0) ++units;       // four-byte forms need a surrogate pair
  }
  return units;
}

struct LineParser {
  std::string_view line;
  int number;
  std::size_t pos = 0;

  [[noreturn]] void fail(const std::string& why) const {
    throw SettingsError("line " + std::to_string(number) + ": " + why);
  }
  // A double-quoted text with \\ and \" escapes, starting at pos.
  std::string quoted() {
    if (pos >= line.size() || line[pos] != '"') fail("expected a quoted text");
    std::string out;
    for (++pos; pos < line.size(); ++pos) {
      char c = line[pos];
      if (c == '"') {
        ++pos;
        return out;
      }
      if (c == '\\') {
        if (++pos >= line.size() || (line[pos] != '\\' && line[pos] != '"')) fail("bad escape in quoted text");
        c = line[pos];
      }
      out += c;
    }
    fail("quoted text without its closing quote");
  }
};

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::uint32_t parseDword(LineParser& p, std::string_view digits) {
  if (digits.empty() || digits.size() > 8) p.fail("a dword needs 1 to 8 hexadecimal digits");
  std::uint32_t v = 0;
  for (char c : digits) {
    int d = hexDigit(c);
    if (d < 0) p.fail("a dword needs hexadecimal digits");
    v = v << 4 | static_cast<std::uint32_t>(d);
  }
  return v;
}

void appendHexBytes(LineParser& p, std::string_view list, std::vector<std::uint8_t>& out) {
  std::size_t i = 0;
  while (i < list.size()) {
    while (i < list.size() && list[i] == ' ') ++i;
    if (i >= list.size()) break;
    if (i + 1 >= list.size() || hexDigit(list[i]) < 0 || hexDigit(list[i + 1]) < 0)
      p.fail("hex bytes are two hexadecimal digits each, separated by commas");
    out.push_back(static_cast<std::uint8_t>(hexDigit(list[i]) * 16 + hexDigit(list[i + 1])));
    i += 2;
    while (i < list.size() && list[i] == ' ') ++i;
    if (i < list.size()) {
      if (list[i] != ',') p.fail("hex bytes are separated by commas");
      ++i;
    }
  }
}

std::vector<std::string_view> splitLines(std::string_view text) {
  std::vector<std::string_view> lines;
  std::size_t start = 0;
  while (start <= text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    std::string_view line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines.push_back(line);
    if (end == text.size()) break;
    start = end + 1;
  }
  return lines;
}

std::string escapeQuoted(std::string_view text) {
  std::string out = "\"";
  for (char c : text) {
    if (c == '\\' || c == '"') out += '\\';
    out += c;
  }
  return out + "\"";
}

}  // namespace

const RegKey* RegDocument::findKey(std::string_view path) const {
  for (const RegKey& k : keys)
    if (equalsNoCase(k.path, path)) return &k;
  return nullptr;
}

RegKey* RegDocument::findKey(std::string_view path) {
  return const_cast<RegKey*>(static_cast<const RegDocument*>(this)->findKey(path));
}

const RegValue* RegDocument::findValue(std::string_view keyPath, std::string_view name) const {
  const RegKey* key = findKey(keyPath);
  if (!key) return nullptr;
  for (const RegValue& v : key->values)
    if (equalsNoCase(v.name, name)) return &v;
  return nullptr;
}

RegDocument parseRegText(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  if (!isCleanUtf8(text)) throw SettingsError("not UTF-8 text");
  std::vector<std::string_view> lines = splitLines(text);
  RegDocument doc;
  bool sawHeader = false;
  for (std::size_t n = 0; n < lines.size(); ++n) {
    LineParser p{lines[n], static_cast<int>(n + 1)};
    std::string_view line = lines[n];
    if (line.empty() || line.front() == ';') continue;
    if (!sawHeader) {
      if (line != kHeader) p.fail("the file must start with \"" + std::string(kHeader) + "\"");
      sawHeader = true;
      continue;
    }
    if (line.front() == '[') {
      if (line.back() != ']' || line.size() < 3) p.fail("a key line is [PATH]");
      std::string_view path = line.substr(1, line.size() - 2);
      if (path.front() == '-') p.fail("key deletion is not supported");
      if (!doc.findKey(path)) doc.keys.push_back({std::string(path), {}});
      continue;
    }
    if (doc.keys.empty()) p.fail("a value before the first key");
    RegValue value;
    if (line.front() == '@') {
      p.pos = 1;
    } else {
      value.name = p.quoted();
    }
    if (p.pos >= line.size() || line[p.pos] != '=') p.fail("expected = after the value name");
    std::string_view rhs = line.substr(p.pos + 1);
    if (rhs.starts_with("\"")) {
      p.pos += 1;
      std::string s = p.quoted();
      if (p.pos != line.size()) p.fail("text after the closing quote");
      value.data = std::move(s);
    } else if (rhs.starts_with("dword:")) {
      value.data = parseDword(p, rhs.substr(6));
    } else if (rhs.starts_with("hex:")) {
      std::vector<std::uint8_t> bytes;
      std::string_view list = rhs.substr(4);
      // A trailing backslash continues the list on the next line.
      while (list.ends_with("\\")) {
        appendHexBytes(p, list.substr(0, list.size() - 1), bytes);
        if (++n >= lines.size()) p.fail("hex list continued past the end of the file");
        p = LineParser{lines[n], static_cast<int>(n + 1)};
        list = lines[n];
      }
      appendHexBytes(p, list, bytes);
      value.data = std::move(bytes);
    } else {
      p.fail("unsupported value type (expected \"text\", dword: or hex:)");
    }
    RegKey& key = doc.keys.back();
    auto same = std::find_if(key.values.begin(), key.values.end(),
                             [&](const RegValue& v) { return equalsNoCase(v.name, value.name); });
    if (same != key.values.end()) *same = std::move(value);
    else key.values.push_back(std::move(value));
  }
  if (!sawHeader) throw SettingsError("line 1: the file must start with \"" + std::string(kHeader) + "\"");
  return doc;
}

std::string formatRegText(const RegDocument& doc) {
  std::ostringstream out;
  out << kHeader << "\n";
  for (const RegKey& key : doc.keys) {
    out << "\n[" << key.path << "]\n";
    for (const RegValue& v : key.values) {
      out << (v.name.empty() ? std::string("@") : escapeQuoted(v.name)) << "=";
      if (const auto* dword = std::get_if<std::uint32_t>(&v.data)) {
        char buf[16];
        std::snprintf(buf, sizeof buf, "dword:%08x", *dword);
        out << buf;
      } else if (const auto* s = std::get_if<std::string>(&v.data)) {
        out << escapeQuoted(*s);
      } else {
        const auto& bytes = std::get<std::vector<std::uint8_t>>(v.data);
        out << "hex:";
        for (std::size_t i = 0; i < bytes.size(); ++i) {
          char buf[4];
          std::snprintf(buf, sizeof buf, "%02x", bytes[i]);
          out << buf;
          if (i + 1 < bytes.size()) out << ((i + 1) % kHexBytesPerLine == 0 ? ",\\\n  " : ",");
        }
      }
      out << "\n";
    }
  }
  return out.str();
}

std::string defaultSettingsPath() {
  if (const char* over = std::getenv("CORVANE_SETTINGS"); over && *over) return over;
  if (const char* xdg = std::getenv("XDG_CONFIG_HOME"); xdg && *xdg)
    return (fs::path(xdg) / "corvane" / "settings.reg").string();
  const char* home = std::getenv("HOME");
  return (fs::path(home && *home ? home : ".") / ".config" / "corvane" / "settings.reg").string();
}

SettingsFile::SettingsFile(std::string path, std::function<void(const std::string&)> warn)
    : path_(std::move(path)), warn_(std::move(warn)) {}

RegDocument SettingsFile::load(bool* damaged) const {
  if (damaged) *damaged = false;
  std::ifstream in(path_, std::ios::binary);
  if (!in) return {};
  std::ostringstream text;
  text << in.rdbuf();
  try {
    return parseRegText(text.str());
  } catch (const SettingsError&) {
    if (damaged) *damaged = true;
    return {};
  }
}

std::optional<std::uint32_t> SettingsFile::readInt(std::string_view key, std::string_view name) const {
  RegDocument doc = load(nullptr);
  const RegValue* v = doc.findValue(fullPath(key), name);
  if (!v) return std::nullopt;
  if (const auto* i = std::get_if<std::uint32_t>(&v->data)) return *i;
  return std::nullopt;
}

std::optional<std::string> SettingsFile::readText(std::string_view key, std::string_view name) const {
  RegDocument doc = load(nullptr);
  const RegValue* v = doc.findValue(fullPath(key), name);
  if (!v) return std::nullopt;
  const auto* s = std::get_if<std::string>(&v->data);
  if (!s || utf16Units(*s) + 1 > kTextUnitsLimit) return std::nullopt;
  return *s;
}

std::optional<std::vector<std::uint8_t>> SettingsFile::readBytes(std::string_view key, std::string_view name) const {
  RegDocument doc = load(nullptr);
  const RegValue* v = doc.findValue(fullPath(key), name);
  if (!v) return std::nullopt;
  if (const auto* b = std::get_if<std::vector<std::uint8_t>>(&v->data)) return *b;
  return std::nullopt;
}

std::vector<RegValue> SettingsFile::list(std::string_view key) const {
  RegDocument doc = load(nullptr);
  const RegKey* k = doc.findKey(fullPath(key));
  return k ? k->values : std::vector<RegValue>{};
}

void SettingsFile::moveDamagedAside() {
  std::string aside = path_ + ".damaged";
  for (int n = 1; fs::exists(aside); ++n) aside = path_ + ".damaged." + std::to_string(n);
  std::error_code ec;
  fs::rename(path_, aside, ec);
  if (ec) throw SettingsError("cannot move the damaged settings file " + path_ + " aside: " + ec.message());
  if (warn_) warn_("The settings file " + path_ + " was damaged and is kept as " + aside + ".");
}

bool SettingsFile::update(const std::function<bool(RegDocument&)>& change) {
  try {
    bool damaged = false;
    RegDocument doc = load(&damaged);
    if (!change(doc)) return false;
    if (damaged) moveDamagedAside();
    fs::path target(path_);
    if (target.has_parent_path()) fs::create_directories(target.parent_path());
    io::replaceFile(target, formatRegText(doc));
    return true;
  } catch (const std::exception& e) {
    if (warn_) warn_(std::string("Cannot write the settings file: ") + e.what());
    return false;
  }
}

bool SettingsFile::store(std::string_view key, RegValue value, bool createKey) {
  return update([&](RegDocument& doc) {
    std::string path = fullPath(key);
    RegKey* k = doc.findKey(path);
    if (!k) {
      if (!createKey) return false;
      doc.keys.push_back({path, {}});
      k = &doc.keys.back();
    }
    auto same = std::find_if(k->values.begin(), k->values.end(),
                             [&](const RegValue& v) { return equalsNoCase(v.name, value.name); });
    if (same != k->values.end()) same->data = std::move(value.data);
    else k->values.push_back(std::move(value));
    return true;
  });
}

bool SettingsFile::writeKey(std::string_view key, std::vector<RegValue> values) {
  return update([&](RegDocument& doc) {
    std::string path = fullPath(key);
    RegKey* k = doc.findKey(path);
    if (!k) {
      doc.keys.push_back({path, {}});
      k = &doc.keys.back();
    }
    k->values = std::move(values);
    return true;
  });
}

bool SettingsFile::writeInt(std::string_view key, std::string_view name, std::uint32_t value) {
  return store(key, {std::string(name), value}, true);
}

bool SettingsFile::writeText(std::string_view key, std::string_view name, std::string_view value) {
  return store(key, {std::string(name), std::string(value)}, true);
}

bool SettingsFile::writeBytes(std::string_view key, std::string_view name, const std::vector<std::uint8_t>& value) {
  return store(key, {std::string(name), value}, false);
}

}  // namespace standalone
