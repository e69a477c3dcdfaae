#include "standalone/db/dxf_codepage.h"

#include <iconv.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <memory>

#include "host/utf8.h"

namespace standalone {

namespace {

bool isPlainAscii(std::string_view s) {
  for (unsigned char c : s)
    if (c >= 0x80 || c == '\\') return false;
  return true;
}

// iconv name of a DXF code page name ("ANSI_936" -> "GBK").
std::string iconvName(std::string_view codepage) {
  std::string_view digits = codepage;
  if (digits.starts_with("ANSI_") || digits.starts_with("ansi_")) digits.remove_prefix(5);
  if (digits == "936") return "GBK";
  if (digits == "950") return "BIG5";
  if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos) return "CP1252";
  return "CP" + std::string(digits);
}

// Length of the UTF-8 sequence starting with byte c (1 for a stray byte).
std::size_t utf8Length(unsigned char c) {
  if (c >= 0xF0) return 4;
  if (c >= 0xE0) return 3;
  if (c >= 0xC0) return 2;
  return 1;
}

std::uint32_t utf8CodePoint(std::string_view s) {
  auto b = [&](std::size_t i) { return static_cast<std::uint32_t>(static_cast<unsigned char>(s[i])); };
  switch (s.size()) {
    case 2: return ((b(0) & 0x1F) << 6) | (b(1) & 0x3F);
    case 3: return ((b(0) & 0x0F) << 12) | ((b(1) & 0x3F) << 6) | (b(2) & 0x3F);
    case 4: return ((b(0) & 0x07) << 18) | ((b(1) & 0x3F) << 12) | ((b(2) & 0x3F) << 6) | (b(3) & 0x3F);
    default: return b(0);
  }
}

struct IconvCloser {
  void operator()(void* cd) const { iconv_close(static_cast<iconv_t>(cd)); }
};
using IconvHandle = std::unique_ptr<void, IconvCloser>;

IconvHandle openIconv(const std::string& to, const std::string& from) {
  iconv_t cd = iconv_open(to.c_str(), from.c_str());
  if (cd == reinterpret_cast<iconv_t>(-1)) return nullptr;
  return IconvHandle(cd);
}

// Converts one piece; false when iconv refuses it.
bool convert(void* cd, std::string_view in, std::string& out) {
  char buf[64];
  char* inPtr = const_cast<char*>(in.data());
  std::size_t inLeft = in.size();
  while (inLeft > 0) {
    char* outPtr = buf;
    std::size_t outLeft = sizeof buf;
    std::size_t r = iconv(static_cast<iconv_t>(cd), &inPtr, &inLeft, &outPtr, &outLeft);
    out.append(buf, static_cast<std::size_t>(outPtr - buf));
    if (r == static_cast<std::size_t>(-1) && errno != E2BIG) return false;
  }
  return true;
}

// Replaces \U+nnnn escapes of a UTF-8 string by the characters.
std::string resolveEscapes(std::string_view s) {
  std::string out;
  out.reserve(s.size());
  for (std::size_t i = 0; i < s.size(); ++i) {
    if (s[i] == '\\' && i + 7 <= s.size() && (s[i + 1] == 'U' || s[i + 1] == 'u') && s[i + 2] == '+') {
      std::uint32_t cp = 0;
      auto [ptr, ec] = std::from_chars(s.data() + i + 3, s.data() + i + 7, cp, 16);
      if (ec == std::errc{} && ptr == s.data() + i + 7) {
        host::appendUtf8(out, cp);
        i += 6;
        continue;
      }
    }
    out += s[i];
  }
  return out;
}

}  // namespace

TextEncoding TextEncoding::forFile(std::string_view version, std::string_view codepage) {
  TextEncoding enc;
  enc.utf8 = version >= "AC1021";
  if (!codepage.empty()) enc.codepage = std::string(codepage);
  return enc;
}

std::string decodeText(std::string_view fileText, const TextEncoding& enc) {
  if (isPlainAscii(fileText)) return std::string(fileText);
  if (enc.utf8) return resolveEscapes(fileText);
  std::string utf8;
  IconvHandle cd = openIconv("UTF-8", iconvName(enc.codepage));
  if (!cd) return resolveEscapes(fileText);
  // Byte by byte on failure, so one bad byte does not lose the rest.
  if (!convert(cd.get(), fileText, utf8)) {
    utf8.clear();
    for (unsigned char c : fileText) {
      if (c < 0x80) {
        utf8 += static_cast<char>(c);
      } else {
        host::appendUtf8(utf8, 0xFFFD);
      }
    }
  }
  return resolveEscapes(utf8);
}

std::string encodeText(std::string_view utf8, const TextEncoding& enc) {
  if (enc.utf8) return std::string(utf8);
  bool ascii = true;
  for (unsigned char c : utf8) ascii = ascii && c < 0x80;
  if (ascii) return std::string(utf8);
  IconvHandle cd = openIconv(iconvName(enc.codepage), "UTF-8");
  std::string out;
  for (std::size_t i = 0; i < utf8.size();) {
    std::size_t n = std::min(utf8Length(static_cast<unsigned char>(utf8[i])), utf8.size() - i);
    std::string_view ch = utf8.substr(i, n);
    i += n;
    if (n == 1 && static_cast<unsigned char>(ch[0]) < 0x80) {
      out += ch;
      continue;
    }
    std::string piece;
    if (cd && convert(cd.get(), ch, piece)) {
      out += piece;
      continue;
    }
    if (cd) iconv(static_cast<iconv_t>(cd.get()), nullptr, nullptr, nullptr, nullptr);
    char esc[16];
    std::uint32_t cp = utf8CodePoint(ch);
    auto [ptr, ec] = std::to_chars(esc, esc + sizeof esc, cp, 16);
    (void)ec;
    std::string hex(esc, ptr);
    for (char& c : hex) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    out += "\\U+" + std::string(4 - std::min<std::size_t>(4, hex.size()), '0') + hex;
  }
  return out;
}

}  // namespace standalone
