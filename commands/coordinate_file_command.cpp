// ZB2PL: one polyline for every block of coordinate lines in a text file.
#include <filesystem>
#include <fstream>
#include <iterator>

#include "commands/coordinate_file.h"
#include "commands/offset_array_commands.h"
#include "commands/text_lines.h"
#include "frame/progress.h"
#include "frame/output.h"
#include "geom/curve_builders.h"

namespace commands {

namespace {

// The dialog's title and filter are the same in both languages.
constexpr std::string_view kDialogTitle = "请选择一个坐标列表文件";
constexpr std::string_view kDialogFilter = "txt坐标文件(*.txt)|*.txt";
constexpr frame::Text kTooFewLines{"\nToo few lines in file！", "\n文件中行数太少！"};
constexpr frame::Text kErrorLine{"\nError in line %d, data discarded, please check: [%s]",
                                 "\n第 %d 行错误，数据被抛弃，请检查: 【%s】"};
constexpr frame::Text kAdded{"\nAdded < %d> polylines.", "\nAdded < %d> polylines."};
constexpr frame::Text kReadError{"\nRead File <%s> Error.", "\nRead File <%s> Error."};

// A coordinate file beyond this is refused unread: at some 30 bytes a point
// it is millions of points more than a drawing can use.
constexpr std::uintmax_t kLargestFile = std::uintmax_t{1} << 30;

// The whole file, or nothing when it cannot be opened, read or is too large.
std::optional<std::string> readWholeFile(const std::string& path) {
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) return std::nullopt;
  std::uintmax_t size = std::filesystem::file_size(path, ec);
  if (ec || size > kLargestFile) return std::nullopt;
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  std::string bytes(size, '\0');
  if (!in.read(bytes.data(), static_cast<std::streamsize>(size))) return std::nullopt;
  return bytes;
}

}  // namespace

void drawPolylineByTxtFile(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::string path;
  // The filter's extension: the dialog shows *.txt, the prompt adds .txt to a bare name.
  std::string_view extension = kDialogFilter.substr(kDialogFilter.rfind('.') + 1);
  if (host.editor.getFileName(kDialogTitle, "", extension, false, path) != host::RTNORM) return;

  std::optional<std::string> bytes = readWholeFile(path);
  std::optional<std::string> text;
  if (bytes) text = decodeText(std::move(*bytes));
  if (!text) {
    frame::print(host, kReadError, path);
    return;
  }
  if (lineCount(*text) <= 1) {
    frame::print(host, kTooFewLines);
    return;
  }
  CoordinateFile file = readCoordinateText(*text);
  for (const CoordinateError& e : file.errors) frame::print(host, kErrorLine, e.lineNumber, e.line);
  int made = 0;
  {
    frame::ProgressMeter meter(host.editor, context.localName, file.blocks.size());
    for (std::size_t i = 0; i < file.blocks.size(); ++i) {
      if (geom::buildPolyline(host, host::kNullId, file.blocks[i], false)) ++made;
      meter.step(i + 1);
    }
  }
  frame::print(host, kAdded, made);
}

}  // namespace commands
