#include "reports/report_file.h"

#include <algorithm>
#include <filesystem>

#include "io/replace_file.h"
#include "reports/gbk_text.h"

namespace reports {

namespace {

// Text is gathered up to this many bytes before it goes to the file.
constexpr std::size_t kFlushBytes = 1 << 16;

}  // namespace

std::optional<ReportFile> ReportFile::create(const std::string& path) {
  std::error_code ec;
  if (path.empty() || std::filesystem::is_directory(path, ec)) return std::nullopt;
  try {
    return ReportFile(path, std::make_unique<io::FileReplacement>(path));
  } catch (const io::FileWriteError&) {
    return std::nullopt;
  }
}

ReportFile::ReportFile(std::string path, std::unique_ptr<io::FileReplacement> file)
    : path_(std::move(path)), file_(std::move(file)) {}

ReportFile::ReportFile(ReportFile&&) noexcept = default;

// The replacement removes its temporary when it goes uncommitted.
ReportFile::~ReportFile() = default;

void ReportFile::write(std::string_view text) {
  // Numbers and tags are ASCII, which the code page keeps as it is.
  bool ascii = std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  std::string coded = ascii ? std::string() : toCodePage936(text);
  std::string_view rest = ascii ? text : std::string_view(coded);
  for (std::size_t end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
    buffer_.append(rest.data(), end);
    buffer_ += "\r\n";
    rest.remove_prefix(end + 1);
  }
  buffer_.append(rest);
  if (buffer_.size() >= kFlushBytes) flush();
}

bool ReportFile::flush() {
  if (!file_) return false;
  try {
    file_->write(buffer_);
    buffer_.clear();
    return true;
  } catch (const io::FileWriteError&) {
    file_.reset();  // a page that lost text is given up
    return false;
  }
}

bool ReportFile::commit() {
  if (!flush()) return false;
  try {
    file_->commit();
    file_.reset();
    return true;
  } catch (const io::FileWriteError&) {
    file_.reset();
    return false;
  }
}

}  // namespace reports
