// The coordinate text file comes from anywhere: any bytes in any encoding.
// This target decodes the bytes as the file reader does and reads the lines
// as coordinates, and checks what the command relies on: lines come back as
// valid UTF-8 without line ends, every block has points, every error names a
// line of the file as it was read, plain lines read in place give what the
// full clean-up gives, and the encoding found agrees with the decoding.
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "commands/coordinate_file.h"
#include "commands/text_lines.h"

namespace {

bool validUtf8(std::string_view s) {
  for (std::size_t i = 0; i < s.size();) {
    auto c = static_cast<unsigned char>(s[i]);
    int extra = c < 0x80 ? 0 : (c >> 5) == 6 ? 1 : (c >> 4) == 14 ? 2 : (c >> 3) == 30 ? 3 : -1;
    if (extra < 0 || s.size() - i <= static_cast<std::size_t>(extra)) return false;
    for (int k = 1; k <= extra; ++k)
      if ((static_cast<unsigned char>(s[i + k]) & 0xC0) != 0x80) return false;
    i += extra + 1;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view bytes(reinterpret_cast<const char*>(data), size);
  auto lines = commands::decodeTextLines(std::string(bytes));
  if (!lines) return 0;
  for (std::size_t i = 0; i < lines->size(); ++i) {
    std::string_view line = lines->line(i);
    if (line.find('\n') != std::string_view::npos || !validUtf8(line)) __builtin_trap();
  }
  // The in-place reading of plain lines agrees with the full clean-up, which
  // a leading blank forces (it is trimmed away again).
  for (std::size_t i = 0; i < lines->size(); ++i) {
    std::string_view line = lines->line(i);
    commands::CoordinateLine fast = commands::parseCoordinateLine(line);
    commands::CoordinateLine full = commands::parseCoordinateLine(" " + std::string(line));
    if (fast.kind != full.kind) __builtin_trap();
    if (std::memcmp(&fast.point, &full.point, sizeof fast.point) != 0) __builtin_trap();
  }
  commands::CoordinateFile file = commands::readCoordinateLines(*lines);
  if (file.blocks.size() + file.errors.size() > lines->size()) __builtin_trap();
  for (const auto& block : file.blocks)
    if (block.empty()) __builtin_trap();
  for (const auto& e : file.errors) {
    if (e.lineNumber < 1 || static_cast<std::size_t>(e.lineNumber) > lines->size()) __builtin_trap();
    if (e.line != lines->line(e.lineNumber - 1)) __builtin_trap();
  }
  // Encoding detection agrees with decoding.
  if (!commands::detectEncoding(bytes)) __builtin_trap();
  return 0;
}
