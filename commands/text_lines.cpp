#include "commands/text_lines.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>

#include "host/utf8.h"

namespace commands {

namespace {

constexpr std::string_view kUtf8Bom = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16LeBom = "\xFF\xFE";
constexpr std::string_view kUtf16BeBom = "\xFE\xFF";

bool isValidUtf8(std::string_view s) {
  std::size_t i = 0;
  while (i < s.size()) {
    // Eight plain ASCII bytes at a time: the common case.
    std::uint64_t eight = 0;
    if (s.size() - i >= 8 && (std::memcpy(&eight, s.data() + i, 8), (eight & 0x8080808080808080ull) == 0)) {
      i += 8;
      continue;
    }
    auto c = static_cast<unsigned char>(s[i]);
    if (c < 0x80) {
      ++i;
      continue;
    }
    int extra = (c >> 5) == 0x6 ? 1 : (c >> 4) == 0xE ? 2 : (c >> 3) == 0x1E ? 3 : -1;
    if (extra < 0 || s.size() - i <= static_cast<std::size_t>(extra)) return false;
    unsigned cp = c & (0x3F >> extra);
    for (int k = 1; k <= extra; ++k) {
      auto cc = static_cast<unsigned char>(s[i + k]);
      if ((cc & 0xC0) != 0x80) return false;
      cp = (cp << 6) | (cc & 0x3F);
    }
    // Overlong forms, surrogates and values past Unicode are not UTF-8.
    if ((extra == 1 && cp < 0x80) || (extra == 2 && cp < 0x800) || (extra == 3 && cp < 0x10000) ||
        (cp >= 0xD800 && cp <= 0xDFFF) || cp > 0x10FFFF)
      return false;
    i += extra + 1;
  }
  return true;
}

// UTF-16 after its byte-order mark; an odd last byte or a lone surrogate is
// not text. A NUL unit is not text either: no editor writes one into a text file.
std::optional<std::string> utf16ToUtf8(std::string_view bytes, bool bigEndian) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  auto unitAt = [&](std::size_t i) {
    auto b0 = static_cast<unsigned char>(bytes[i]), b1 = static_cast<unsigned char>(bytes[i + 1]);
    return bigEndian ? (b0 << 8 | b1) : (b1 << 8 | b0);
  };
  std::string out;
  out.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size(); i += 2) {
    unsigned u = unitAt(i);
    if (u == 0) return std::nullopt;
    if (u >= 0xD800 && u <= 0xDBFF) {
      if (i + 3 >= bytes.size()) return std::nullopt;
      unsigned low = unitAt(i + 2);
      if (low < 0xDC00 || low > 0xDFFF) return std::nullopt;
      u = 0x10000 + ((u - 0xD800) << 10) + (low - 0xDC00);
      i += 2;
    } else if (u >= 0xDC00 && u <= 0xDFFF) {
      return std::nullopt;
    }
    host::appendUtf8(out, u);
  }
  return out;
}

// GBK through iconv; nothing when a byte sequence is not GBK.
std::optional<std::string> gbkToUtf8(std::string_view bytes) {
  iconv_t cd = iconv_open("UTF-8", "GBK");
  if (cd == reinterpret_cast<iconv_t>(-1)) return std::nullopt;
  std::unique_ptr<void, int (*)(iconv_t)> closer(cd, iconv_close);
  std::string out(bytes.size() * 3 / 2 + 16, '\0');
  char* in = const_cast<char*>(bytes.data());
  std::size_t inLeft = bytes.size();
  std::size_t done = 0;
  while (inLeft > 0) {
    char* outPtr = out.data() + done;
    std::size_t outLeft = out.size() - done;
    std::size_t r = iconv(cd, &in, &inLeft, &outPtr, &outLeft);
    done = out.size() - outLeft;
    if (r != static_cast<std::size_t>(-1)) break;
    if (errno != E2BIG) return std::nullopt;
    out.resize(out.size() * 2);
  }
  out.resize(done);
  return out;
}

bool hasNul(std::string_view s) { return s.find('\0') != std::string_view::npos; }

// ASCII without a NUL, the usual coordinate file: UTF-8 that needs no
// decoding. Thirty-two bytes a step: a byte at or above 0x80, or a zero
// byte, sets its top bit in the combined word.
bool isPlainAscii(std::string_view s) {
  constexpr std::uint64_t kOnes = 0x0101010101010101ull, kTops = 0x8080808080808080ull;
  auto suspect = [&](std::size_t at) {
    std::uint64_t w;
    std::memcpy(&w, s.data() + at, 8);
    return w | ((w - kOnes) & ~w);
  };
  std::size_t i = 0;
  for (; s.size() - i >= 32; i += 32)
    if ((suspect(i) | suspect(i + 8) | suspect(i + 16) | suspect(i + 24)) & kTops) return false;
  for (; i < s.size(); ++i)
    if (s[i] == '\0' || static_cast<unsigned char>(s[i]) >= 0x80) return false;
  return true;
}

std::vector<TextLines::Span> splitLines(std::string_view text) {
  std::vector<TextLines::Span> spans;
  spans.reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1);
  std::size_t begin = 0;
  while (begin < text.size()) {
    std::size_t end = text.find('\n', begin);
    std::size_t stop = end == std::string_view::npos ? text.size() : end;
    std::size_t lineEnd = stop > begin && text[stop - 1] == '\r' ? stop - 1 : stop;
    spans.push_back({begin, lineEnd});
    if (end == std::string_view::npos) break;
    begin = end + 1;
  }
  return spans;
}

}  // namespace

std::optional<TextEncoding> detectEncoding(std::string_view bytes) {
  if (isPlainAscii(bytes)) return TextEncoding::kUtf8;  // no mark either: its bytes are not ASCII
  if (bytes.starts_with(kUtf8Bom)) {
    if (hasNul(bytes) || !isValidUtf8(bytes.substr(kUtf8Bom.size()))) return std::nullopt;
    return TextEncoding::kUtf8;
  }
  if (bytes.starts_with(kUtf16LeBom)) return TextEncoding::kUtf16LittleEndian;
  if (bytes.starts_with(kUtf16BeBom)) return TextEncoding::kUtf16BigEndian;
  if (hasNul(bytes)) return std::nullopt;
  if (isValidUtf8(bytes)) return TextEncoding::kUtf8;
  if (gbkToUtf8(bytes)) return TextEncoding::kGbk;
  return std::nullopt;
}

std::vector<std::string> TextLines::all() const {
  std::vector<std::string> out;
  for (std::size_t i = 0; i < size(); ++i) out.emplace_back(line(i));
  return out;
}

std::optional<std::string> decodeText(std::string bytes) {
  std::optional<TextEncoding> encoding = detectEncoding(bytes);
  if (!encoding) return std::nullopt;
  std::optional<std::string> text;
  switch (*encoding) {
    case TextEncoding::kUtf8:
      if (bytes.starts_with(kUtf8Bom)) bytes.erase(0, kUtf8Bom.size());
      text = std::move(bytes);
      break;
    case TextEncoding::kUtf16LittleEndian: text = utf16ToUtf8(std::string_view(bytes).substr(2), false); break;
    case TextEncoding::kUtf16BigEndian: text = utf16ToUtf8(std::string_view(bytes).substr(2), true); break;
    case TextEncoding::kGbk: text = gbkToUtf8(bytes); break;
  }
  return text;
}

std::size_t lineCount(std::string_view text) {
  if (text.empty()) return 0;
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + (text.back() == '\n' ? 0 : 1);
}

std::optional<TextLines> decodeTextLines(std::string bytes) {
  std::optional<std::string> text = decodeText(std::move(bytes));
  if (!text) return std::nullopt;
  TextLines lines;
  lines.text = std::move(*text);
  lines.spans = splitLines(lines.text);
  return lines;
}

}  // namespace commands
