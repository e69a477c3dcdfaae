#include "standalone/render/text_codes.h"

#include <cctype>
#include <cstdint>

#include "host/utf8.h"

namespace standalone {

namespace {

bool isHex(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }

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

// Position after the ';' that ends a code argument, or the end of the text.
std::size_t skipArgument(std::string_view raw, std::size_t from) {
  std::size_t semi = raw.find(';', from);
  return semi == std::string_view::npos ? raw.size() : semi + 1;
}

}  // namespace

std::string plainText(std::string_view raw) {
  std::string out;
  for (std::size_t i = 0; i < raw.size(); ++i) {
    if (raw[i] == '\\' && takeUnicodeEscape(raw, i, out)) {
      --i;
      continue;
    }
    if (raw[i] != '%' || i + 2 >= raw.size() || raw[i + 1] != '%') {
      out += raw[i];
      continue;
    }
    char code = static_cast<char>(std::tolower(static_cast<unsigned char>(raw[i + 2])));
    switch (code) {
      case 'd':
        out += "\u00B0";
        break;
      case 'c':
        out += "\u2300";
        break;
      case 'p':
        out += "\u00B1";
        break;
      case '%':
        out += "%";
        break;
      case 'u':
      case 'o':
        break;
      default:
        if (std::isdigit(static_cast<unsigned char>(code))) {
          // %%nnn: the character with that code.
          std::size_t j = i + 2;
          std::uint32_t cp = 0;
          while (j < raw.size() && j < i + 5 && std::isdigit(static_cast<unsigned char>(raw[j])))
            cp = cp * 10 + static_cast<std::uint32_t>(raw[j++] - '0');
          host::appendUtf8(out, cp);
          i = j - 1;
          continue;
        }
        out += raw.substr(i, 3);
    }
    i += 2;
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
    if (c != '\\' || i + 1 >= raw.size()) {
      lines.back() += c;
      ++i;
      continue;
    }
    if (takeUnicodeEscape(raw, i, lines.back())) continue;
    char code = raw[i + 1];
    switch (code) {
      case 'P':
        lines.emplace_back();
        i += 2;
        break;
      case '~':
        lines.back() += ' ';
        i += 2;
        break;
      case '\\':
      case '{':
      case '}':
        lines.back() += code;
        i += 2;
        break;
      case 'L':
      case 'l':
      case 'O':
      case 'o':
      case 'K':
      case 'k':
      case 'N':
        i += 2;
        break;
      case 'S': {
        // Stacked text "a^b;", "a/b;" or "a#b;" reads as a fraction.
        std::size_t end = skipArgument(raw, i + 2);
        std::string_view body = raw.substr(i + 2, end - (i + 2));
        if (!body.empty() && body.back() == ';') body.remove_suffix(1);
        for (char b : body) lines.back() += (b == '^' || b == '#') ? '/' : b;
        i = end;
        break;
      }
      case 'A':
      case 'C':
      case 'c':
      case 'F':
      case 'f':
      case 'H':
      case 'Q':
      case 'T':
      case 'W':
      case 'p':
        i = skipArgument(raw, i + 2);
        break;
      default:
        lines.back() += code;
        i += 2;
        break;
    }
  }
  for (auto& line : lines) line = plainText(line);
  return lines;
}

}  // namespace standalone
