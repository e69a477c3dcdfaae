#include "commands/coordinate_file.h"

#include <array>
#include <charconv>
#include <cstdlib>
#include <cstdint>
#include <cstring>
#include <optional>
#include <thread>

namespace commands {

namespace {

constexpr std::string_view kWhite = " \t\r\n\f\v";

bool isWhite(char c) { return kWhite.find(c) != std::string_view::npos; }

std::string_view trimmed(std::string_view s) {
  std::size_t first = s.find_first_not_of(kWhite);
  if (first == std::string_view::npos) return {};
  return s.substr(first, s.find_last_not_of(kWhite) - first + 1);
}

// The longest leading number of a NUL-terminated field, 0 when it has none,
// as wcstod reads it. from_chars takes the common case; strtod whatever it
// leaves (leading blanks or "+", hexadecimal, values out of range).
double leadingNumber(const char* field, const char* end) {
  double value = 0;
  auto [stop, error] = std::from_chars(field, end, value);
  bool plain = error == std::errc() && !(stop < end && (*stop == 'x' || *stop == 'X'));
  return plain ? value : std::strtod(field, nullptr);
}

// The clean-up of a line into `out`: trimmed, an end-of-line comment cut,
// the other separators turned into ",", blanks removed. `out` has room for
// the whole line (the clean-up never lengthens it) and a terminator.
std::size_t cleanUp(std::string_view line, char* out) {
  std::string_view text = trimmed(line);
  if (std::size_t comment = text.find("//", 1); comment != std::string_view::npos) text = text.substr(0, comment);
  constexpr std::string_view kWideSeparators[] = {"，", "；", "、"};
  std::size_t n = 0;
  for (std::size_t i = 0; i < text.size();) {
    char c = text[i];
    if (c == ' ') {
      ++i;
    } else if (c == ';' || c == '|') {
      out[n++] = ',';
      ++i;
    } else if (static_cast<unsigned char>(c) >= 0x80) {
      bool replaced = false;
      for (std::string_view sep : kWideSeparators) {
        if (text.substr(i).starts_with(sep)) {
          out[n++] = ',';
          i += sep.size();
          replaced = true;
          break;
        }
      }
      if (!replaced) out[n++] = text[i++];
    } else {
      out[n++] = text[i++];
    }
  }
  out[n] = '\0';
  return n;
}

bool blankField(const char* begin, const char* end) {
  for (const char* p = begin; p < end; ++p)
    if (!isWhite(*p)) return false;
  return true;
}

// Up to three fields of a cleaned line, each cut off by a NUL in place of its comma.
struct Fields {
  int count = 0;
  std::array<const char*, 3> begin{};
  std::array<const char*, 3> end{};
};

Fields split(char* text, std::size_t size) {
  Fields f;
  if (size == 0) return f;
  char* p = text;
  char* stop = text + size;
  for (;;) {
    char* comma = static_cast<char*>(std::memchr(p, ',', static_cast<std::size_t>(stop - p)));
    char* fieldEnd = comma ? comma : stop;
    if (f.count < 3) {
      f.begin[f.count] = p;
      f.end[f.count] = fieldEnd;
    }
    ++f.count;
    if (!comma) return f;
    *comma = '\0';
    p = comma + 1;
  }
}

CoordinateLine parseCleaned(char* text, std::size_t size) {
  Fields f = split(text, size);
  if (f.count < 2) return {};
  if (blankField(f.begin[0], f.end[0]) || blankField(f.begin[1], f.end[1])) return {CoordinateLine::Kind::kError, {}};
  double z = f.count >= 3 ? leadingNumber(f.begin[2], f.end[2]) : 0.0;
  return {CoordinateLine::Kind::kPoint,
          {leadingNumber(f.begin[0], f.end[0]), leadingNumber(f.begin[1], f.end[1]), z}};
}

}  // namespace

namespace {

// Characters of a line that needs no clean-up and whose numbers from_chars
// reads exactly as wcstod would: digits, signs of numbers and exponents, ".".
constexpr std::array<bool, 256> kPlainNumberChars = [] {
  std::array<bool, 256> t{};
  for (char c : std::string_view("0123456789.-eE,")) t[static_cast<unsigned char>(c)] = true;
  return t;
}();

// A whole field of plain decimal digits ("-12.345", "6e3") whose digits fit
// a double exactly and whose power of ten is at most 22: one division or
// multiplication of two exact values, so correctly rounded, as strtod rounds
// (Clinger's fast path). Nothing for anything else.
std::optional<double> exactDecimal(const char* p, const char* end) {
  constexpr std::uint64_t kExactMantissa = std::uint64_t{1} << 53;
  constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  bool negative = p < end && *p == '-';
  if (negative) ++p;
  std::uint64_t mantissa = 0;
  int digits = 0, scale = 0;
  for (; p < end && *p >= '0' && *p <= '9'; ++p, ++digits) mantissa = mantissa * 10 + (*p - '0');
  if (p < end && *p == '.') {
    for (++p; p < end && *p >= '0' && *p <= '9'; ++p, ++digits, --scale) mantissa = mantissa * 10 + (*p - '0');
  }
  if (digits == 0 || digits > 15) return std::nullopt;  // 15 digits always fit 2^53
  if (p < end && (*p == 'e' || *p == 'E')) {
    ++p;
    bool down = p < end && *p == '-';
    if (down) ++p;
    int e = 0, expDigits = 0;
    for (; p < end && *p >= '0' && *p <= '9' && expDigits < 4; ++p, ++expDigits) e = e * 10 + (*p - '0');
    if (expDigits == 0) return std::nullopt;
    scale += down ? -e : e;
  }
  if (p != end || mantissa > kExactMantissa || scale < -22 || scale > 22) return std::nullopt;
  double value = static_cast<double>(mantissa);
  value = scale < 0 ? value / kPowers[-scale] : value * kPowers[scale];
  return negative ? -value : value;
}

// The commonest line, two or three plain decimals ("-12.345", at most 15
// digits each) between commas, read in one pass with exactDecimal's
// arithmetic, so to the same doubles; nothing for any other line.
std::optional<CoordinateLine> parseSimple(std::string_view line) {
  constexpr double kPowers[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  auto digit = [](char c) { return static_cast<unsigned>(c - '0') < 10; };
  const char* p = line.data();
  const char* end = p + line.size();
  std::array<double, 3> xyz{};
  int fields = 0;
  for (;;) {
    bool negative = p < end && *p == '-';
    if (negative) ++p;
    std::uint64_t mantissa = 0;
    int digits = 0, scale = 0;
    for (; p < end && digit(*p); ++p, ++digits) mantissa = mantissa * 10 + static_cast<unsigned>(*p - '0');
    if (p < end && *p == '.')
      for (++p; p < end && digit(*p); ++p, ++digits, --scale) mantissa = mantissa * 10 + static_cast<unsigned>(*p - '0');
    if (digits == 0 || digits > 15) return std::nullopt;
    double value = scale < 0 ? static_cast<double>(mantissa) / kPowers[-scale] : static_cast<double>(mantissa);
    xyz[fields++] = negative ? -value : value;
    if (p == end) break;
    if (*p != ',' || fields == 3) return std::nullopt;
    ++p;
  }
  if (fields < 2) return std::nullopt;
  return CoordinateLine{CoordinateLine::Kind::kPoint, {xyz[0], xyz[1], xyz[2]}};
}

// The common line "x,y,z" read in place, or nothing when it needs the full
// clean-up (blanks, other separators, comments, words, signs "+").
std::optional<CoordinateLine> parsePlain(std::string_view line) {
  std::array<std::size_t, 4> commas{};
  int count = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    auto c = static_cast<unsigned char>(line[i]);
    if (!kPlainNumberChars[c]) return std::nullopt;
    if (c == ',' && count < 4) commas[count++] = i;
  }
  if (count == 0) return std::nullopt;  // one field or none: a separator, left to the full reading
  std::size_t end1 = commas[0], end2 = count > 1 ? commas[1] : line.size();
  if (end1 == 0 || end2 == end1 + 1) return CoordinateLine{CoordinateLine::Kind::kError, {}};
  auto number = [&](std::size_t begin, std::size_t end) -> std::optional<double> {
    double v = 0;
    if (begin >= end) return 0.0;
    if (std::optional<double> exact = exactDecimal(line.data() + begin, line.data() + end)) return exact;
    auto [stop, error] = std::from_chars(line.data() + begin, line.data() + end, v);
    if (error == std::errc::invalid_argument) return 0.0;
    if (error != std::errc()) return std::nullopt;  // out of range: strtod's infinity or zero
    (void)stop;
    return v;
  };
  std::optional<double> x = number(0, end1), y = number(end1 + 1, end2), z = 0.0;
  if (count > 1) z = number(end2 + 1, count > 2 ? commas[2] : line.size());
  if (!x || !y || !z) return std::nullopt;
  return CoordinateLine{CoordinateLine::Kind::kPoint, {*x, *y, *z}};
}

}  // namespace

CoordinateLine parseCoordinateLine(std::string_view line) {
  if (std::optional<CoordinateLine> simple = parseSimple(line)) return *simple;
  if (std::optional<CoordinateLine> plain = parsePlain(line)) return *plain;
  std::array<char, 256> small;
  if (line.size() < small.size()) return parseCleaned(small.data(), cleanUp(line, small.data()));
  std::string large(line.size() + 1, '\0');
  return parseCleaned(large.data(), cleanUp(line, large.data()));
}

namespace {

// Lines read from one place to another: the runs of points between the
// separator lines, the first run continuing what came before the range and
// the last one open at its end, and the error lines numbered from the
// range's first line.
struct LineRange {
  std::vector<ge::PointList> runs{1};
  std::vector<CoordinateError> errors;
  std::size_t lines = 0;
};

// The lines of text[from, to), where `from` starts a line and `to` ends one
// or the text; split as decodeTextLines splits them.
LineRange readRange(std::string_view text, std::size_t from, std::size_t to) {
  LineRange range;
  std::size_t lastBlock = 0;
  const char* p = text.data() + from;
  const char* stop = text.data() + to;
  while (p < stop) {
    const char* feed = static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(stop - p)));
    const char* end = feed ? feed : stop;
    std::string_view line(p, static_cast<std::size_t>(end - p - (end > p && end[-1] == '\r' ? 1 : 0)));
    CoordinateLine parsed = parseCoordinateLine(line);
    switch (parsed.kind) {
      case CoordinateLine::Kind::kPoint: {
        ge::PointList& run = range.runs.back();
        // Blocks tend to be alike: room for the last one's points at once.
        if (run.empty()) run.reserve(lastBlock);
        run.push_back(parsed.point);
        break;
      }
      case CoordinateLine::Kind::kError: range.errors.push_back({static_cast<int>(range.lines + 1), std::string(line)}); break;
      case CoordinateLine::Kind::kSeparator:
        // The first run may continue a block from before the range, so its
        // end is kept even when the range has no points in it yet.
        if (!range.runs.back().empty() || range.runs.size() == 1) {
          lastBlock = range.runs.back().size();
          range.runs.emplace_back();
        }
        break;
    }
    ++range.lines;
    if (!feed) break;
    p = feed + 1;
  }
  return range;
}

// Texts of this many bytes are read in two halves at once, where there are
// two processors: reading the numbers is the work, and the halves meet only
// where a block runs across the middle.
constexpr std::size_t kBytesForTwoHalves = 512 * 1024;

}  // namespace

CoordinateFile readCoordinateText(std::string_view text) {
  std::vector<LineRange> parts;
  // The halves meet at the line start nearest after the middle.
  std::size_t middle = text.size() / 2;
  if (text.size() >= kBytesForTwoHalves) middle = text.find('\n', middle);
  if (text.size() >= kBytesForTwoHalves && middle != std::string_view::npos && std::thread::hardware_concurrency() >= 2) {
    ++middle;
    LineRange second;
    {
      std::jthread worker([&] { second = readRange(text, middle, text.size()); });
      parts.push_back(readRange(text, 0, middle));
    }
    parts.push_back(std::move(second));
  } else {
    parts.push_back(readRange(text, 0, text.size()));
  }
  // A run closed by a separator is a block; the run still open at the end of
  // the file is not drawn. An open run at the end of a part continues in the
  // first run of the next.
  CoordinateFile file;
  ge::PointList open;
  std::size_t linesBefore = 0;
  for (LineRange& part : parts) {
    for (std::size_t r = 0; r < part.runs.size(); ++r) {
      ge::PointList& run = part.runs[r];
      if (r == 0 && !open.empty()) {
        open.insert(open.end(), run.begin(), run.end());
      } else {
        open = std::move(run);
      }
      if (r + 1 < part.runs.size() && !open.empty()) {
        file.blocks.push_back(std::move(open));
        open.clear();
      }
    }
    for (CoordinateError& e : part.errors) {
      e.lineNumber += static_cast<int>(linesBefore);
      file.errors.push_back(std::move(e));
    }
    linesBefore += part.lines;
  }
  return file;
}

CoordinateFile readCoordinateLines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) (text += line) += '\n';
  return readCoordinateText(text);
}

CoordinateFile readCoordinateLines(const TextLines& lines) { return readCoordinateText(lines.text); }

}  // namespace commands
