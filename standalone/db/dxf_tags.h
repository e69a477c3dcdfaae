#pragma once
// Lowest DXF layer: splits ASCII DXF text into group-code/value pairs without
// copying, and parses values. Every failure is a DxfError naming the line.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace standalone {

// A DXF file that cannot be read or written. line() is the 1-based line the
// problem was found on, 0 when it is not about a line (a file that cannot be opened).
class DxfError : public std::runtime_error {
 public:
  DxfError(std::size_t line, const std::string& message);
  std::size_t line() const { return line_; }

 private:
  std::size_t line_;
};

// One group as it stands in the text: the code, the value line without its
// line end, and where the group starts.
struct RawTag {
  int code = 0;
  std::string_view value;
  std::size_t line = 0;         // line of the group code
  const char* start = nullptr;  // first byte of the group-code line
};

class TagReader {
 public:
  // Reads text whose first line has the given number.
  explicit TagReader(std::string_view text, std::size_t firstLine = 1);

  // The next group; false at the end of the text. Throws DxfError for a group
  // code that is not a number or a code without a value line.
  bool next(RawTag& tag);
  // The next group without consuming it.
  bool peek(RawTag& tag);
  // First byte not yet consumed (the start of the peeked group if any).
  const char* position() const { return hasPeeked_ ? peeked_.start : pos_; }
  std::size_t line() const { return hasPeeked_ ? peeked_.line : line_; }
  const char* end() const { return end_; }
  // How many items a count read from the file may reserve room for: no more
  // than the rest of the text could hold, at two short groups per item.
  std::size_t plausibleCount(std::int64_t count) const {
    constexpr std::size_t kMinBytesPerItem = 8;
    std::size_t limit = static_cast<std::size_t>(end_ - position()) / kMinBytesPerItem;
    return count <= 0 ? 0 : std::min(static_cast<std::size_t>(count), limit);
  }

 private:
  bool scan(RawTag& tag);
  std::string_view readLine();

  const char* pos_;
  const char* end_;
  std::size_t line_;
  RawTag peeked_;
  bool hasPeeked_ = false;
};

// Value parsers; throw DxfError naming the value's line.
double parseReal(const RawTag& tag);
std::int64_t parseInteger(const RawTag& tag);
std::uint64_t parseHandle(const RawTag& tag);
// Lenient forms for places where a bad value is not the reader's business.
bool tryParseReal(std::string_view text, double& out);
bool tryParseHandle(std::string_view text, std::uint64_t& out);

// Kind of value a group code carries.
enum class GroupValue { kText, kReal, kInt16, kInt32, kInt64, kBool, kHandle, kBinary };
GroupValue groupValueKind(int code);

// Text forms of values as this writer puts them into files.
void appendReal(std::string& out, double v);
void appendInteger(std::string& out, std::int64_t v);
void appendHandle(std::string& out, std::uint64_t h);
std::string formatReal(double v);
std::string formatHandle(std::uint64_t h);

}  // namespace standalone
