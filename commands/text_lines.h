#pragma once
// Lines of a text file written by hand in any of the encodings a Windows text
// editor saves: UTF-8 with or without a byte-order mark, UTF-16 (little or
// big endian) with a byte-order mark, or GBK (the Simplified Chinese code page).
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace commands {

enum class TextEncoding { kUtf8, kUtf16LittleEndian, kUtf16BigEndian, kGbk };

// The encoding of the bytes: a byte-order mark decides; otherwise UTF-8 when
// the bytes are valid UTF-8, else GBK. Nothing when the bytes are not text (a
// NUL outside UTF-16, or bytes that are neither UTF-8 nor GBK).
std::optional<TextEncoding> detectEncoding(std::string_view bytes);

// A file's text as UTF-8 and where each of its lines lies in it (kept as
// offsets, so that a million lines are not a million strings).
struct TextLines {
  struct Span {
    std::size_t begin = 0, end = 0;
  };
  std::string text;
  std::vector<Span> spans;

  std::size_t size() const { return spans.size(); }
  std::string_view line(std::size_t i) const {
    return std::string_view(text).substr(spans[i].begin, spans[i].end - spans[i].begin);
  }
  std::vector<std::string> all() const;
};

// The file's text as UTF-8: a byte-order mark dropped, UTF-16 and GBK
// converted, UTF-8 bytes kept as they are (without a copy when moved in).
// Nothing when the bytes are not text.
std::optional<std::string> decodeText(std::string bytes);

// How many lines the text has, split as decodeTextLines splits it.
std::size_t lineCount(std::string_view text);

// The file's lines as UTF-8 without their line ends, as a text reader gives
// them: split at line feeds, a carriage return before the feed dropped, and no
// line after a final line feed. Nothing when the bytes are not text. UTF-8
// bytes become the text as they are, without a copy when they are moved in.
std::optional<TextLines> decodeTextLines(std::string bytes);

}  // namespace commands
