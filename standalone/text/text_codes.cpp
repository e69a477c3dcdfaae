#include "standalone/text/text_codes.h"

#include <cctype>
#include <cstdint>

#include "host/utf8.h"

namespace standalone {

namespace {

bool isHex(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }
bool isDigit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }

// Reads "\U+XXXX" (exactly four hex digits) at raw[i], the backslash; on
// success appends the character and moves i past the code.
bool takeUnicodeEscape(std::string_view raw, std::size_t& i, std::string& out) {
  constexpr std::size_t kLength = 7;
  if (raw.size() < i + kLength || raw.substr(i + 1, 2) != "U+") return false;
  std::uint32_t cp = 0;
  for (std::size_t j = i + 3; j < i + kLength; ++j) {
    if (!isHex(raw[j])) return false;
    char c = static_cast<char>(std::tolower(static_cast<unsigned char>(raw[j])));
    cp = cp * 16 + static_cast<std::uint32_t>(c <= '9' ? c - '0' : c - 'a' + 10);
  }
  host::appendUtf8(out, cp);
  i += kLength;
  return true;
}

// Reads a %% code at raw[i] (which starts with "%%"); on success appends what
// it shows and moves i past it.
bool takePercentCode(std::string_view raw, std::size_t& i, std::string& out) {
  if (i + 2 >= raw.size()) return false;
  char code = static_cast<char>(std::tolower(static_cast<unsigned char>(raw[i + 2])));
  const char* shown = nullptr;
  switch (code) {
    case 'd': shown = "\u00B0"; break;
    case 'c': shown = "\u2300"; break;
    case 'p': shown = "\u00B1"; break;
    case '%': shown = "%"; break;
    case 'u':
    case 'o': shown = ""; break;
    default: break;
  }
  if (shown) {
    out += shown;
    i += 3;
    return true;
  }
  if (i + 4 < raw.size() && isDigit(raw[i + 2]) && isDigit(raw[i + 3]) && isDigit(raw[i + 4])) {
    host::appendUtf8(out, static_cast<std::uint32_t>((raw[i + 2] - '0') * 100 + (raw[i + 3] - '0') * 10 +
                                                     (raw[i + 4] - '0')));
    i += 5;
    return true;
  }
  return false;
}

// Position after the ';' that ends a code's argument, or the end of the text.
std::size_t pastArgument(std::string_view raw, std::size_t from) {
  std::size_t semi = raw.find(';', from);
  return semi == std::string_view::npos ? raw.size() : semi + 1;
}

}  // namespace

std::string plainText(std::string_view raw) {
  std::string out;
  out.reserve(raw.size());
  for (std::size_t i = 0; i < raw.size();) {
    if (raw[i] == '\\' && takeUnicodeEscape(raw, i, out)) continue;
    if (raw.substr(i, 2) == "%%" && takePercentCode(raw, i, out)) continue;
    out += raw[i++];
  }
  return out;
}

std::vector<std::string> plainMTextLines(std::string_view raw) {
  std::vector<std::string> lines(1);
  for (std::size_t i = 0; i < raw.size();) {
    char c = raw[i];
    if (c == '{' || c == '}') {
      ++i;
      continue;
    }
    if (c == '\n') {
      lines.emplace_back();
      ++i;
      continue;
    }
    if (raw.substr(i, 2) == "%%" && takePercentCode(raw, i, lines.back())) continue;
    if (c != '\\' || i + 1 >= raw.size()) {
      lines.back() += c;
      ++i;
      continue;
    }
    if (takeUnicodeEscape(raw, i, lines.back())) continue;
    char code = raw[i + 1];
    i += 2;
    switch (code) {
      case 'P':
      case 'N':
      case 'X':
        lines.emplace_back();
        break;
      case '~':
        lines.back() += ' ';
        break;
      case '\\':
      case '{':
      case '}':
        lines.back() += code;
        break;
      case 'L': case 'l': case 'O': case 'o': case 'K': case 'k':
        break;
      case 'S': {
        std::size_t end = pastArgument(raw, i);
        std::string_view body = raw.substr(i, end - i);
        if (!body.empty() && body.back() == ';') body.remove_suffix(1);
        for (char b : body) lines.back() += (b == '^' || b == '#') ? '/' : b;
        i = end;
        break;
      }
      case 'A': case 'C': case 'c': case 'F': case 'f': case 'H': case 'Q': case 'T': case 'W': case 'p':
        i = pastArgument(raw, i);
        break;
      default:
        lines.back() += code;
    }
  }
  return lines;
}

}  // namespace standalone
