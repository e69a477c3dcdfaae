#include "reports/report_file.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

#include "reports/gbk_text.h"

namespace reports {

namespace {

// Text is gathered up to this many bytes before it goes to the file.
constexpr std::size_t kFlushBytes = 1 << 16;

// The folder part of a path, "." when it has none.
std::string folderOf(const std::string& path) {
  std::filesystem::path p(path);
  std::string folder = p.parent_path().string();
  return folder.empty() ? "." : folder;
}

}  // namespace

std::optional<ReportFile> ReportFile::create(const std::string& path) {
  if (path.empty()) return std::nullopt;
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec)) return std::nullopt;
  std::string pattern = folderOf(path) + "/.corvane-report-XXXXXX";
  int fd = mkstemp(pattern.data());
  if (fd < 0) return std::nullopt;
  std::FILE* file = fdopen(fd, "wb");
  if (!file) {
    close(fd);
    unlink(pattern.c_str());
    return std::nullopt;
  }
  return ReportFile(path, pattern, file);
}

ReportFile::ReportFile(std::string path, std::string asidePath, std::FILE* file)
    : path_(std::move(path)), asidePath_(std::move(asidePath)), file_(file) {}

ReportFile::ReportFile(ReportFile&& o) noexcept
    : path_(std::move(o.path_)),
      asidePath_(std::move(o.asidePath_)),
      file_(o.file_),
      failed_(o.failed_),
      buffer_(std::move(o.buffer_)) {
  o.file_ = nullptr;
  o.asidePath_.clear();
}

ReportFile::~ReportFile() { discard(); }

void ReportFile::discard() {
  if (file_) std::fclose(file_);
  file_ = nullptr;
  if (!asidePath_.empty()) unlink(asidePath_.c_str());
  asidePath_.clear();
}

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
  if (buffer_.size() >= kFlushBytes) {
    if (file_ && std::fwrite(buffer_.data(), 1, buffer_.size(), file_) != buffer_.size()) failed_ = true;
    buffer_.clear();
  }
}

bool ReportFile::commit() {
  if (!file_) return false;
  if (!buffer_.empty() && std::fwrite(buffer_.data(), 1, buffer_.size(), file_) != buffer_.size()) failed_ = true;
  buffer_.clear();
  if (std::fflush(file_) != 0 || fsync(fileno(file_)) != 0) failed_ = true;
  // mkstemp makes the file private; a report is as readable as any new file.
  mode_t mask = umask(0);
  umask(mask);
  fchmod(fileno(file_), 0666 & ~mask);
  bool closed = std::fclose(file_) == 0;
  file_ = nullptr;
  if (failed_ || !closed || std::rename(asidePath_.c_str(), path_.c_str()) != 0) {
    discard();
    return false;
  }
  asidePath_.clear();
  return true;
}

}  // namespace reports
