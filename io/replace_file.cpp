#include "io/replace_file.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <system_error>

namespace io {

namespace {

std::filesystem::path folderOf(const std::filesystem::path& target) {
  return target.has_parent_path() ? target.parent_path() : std::filesystem::path(".");
}

std::string temporaryPrefix(const std::filesystem::path& target) { return "." + target.filename().string() + "."; }
constexpr std::string_view kTemporarySuffix = ".part";

// Permission bits for the new file: the target's if it exists, else the usual ones.
mode_t modeFor(const std::filesystem::path& target) {
  struct stat st {};
  if (::stat(target.c_str(), &st) == 0) return st.st_mode & 07777;
  mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

// The process id in a temporary's name ".NAME.PID.XXXXXX.part"; 0 when the
// name is not one of ours.
pid_t writerOf(std::string_view name, std::string_view prefix) {
  if (!name.starts_with(prefix) || !name.ends_with(kTemporarySuffix)) return 0;
  name.remove_prefix(prefix.size());
  name.remove_suffix(kTemporarySuffix.size());
  std::size_t dot = name.find('.');
  if (dot == std::string_view::npos || name.size() - dot - 1 != 6) return 0;
  pid_t pid = 0;
  auto [end, ec] = std::from_chars(name.data(), name.data() + dot, pid);
  return ec == std::errc{} && end == name.data() + dot && pid > 0 ? pid : 0;
}

bool runs(pid_t pid) { return ::kill(pid, 0) == 0 || errno == EPERM; }

}  // namespace

void removeStrayTemporaries(const std::filesystem::path& target) {
  std::string prefix = temporaryPrefix(target);
  std::error_code ec;
  for (const auto& entry : std::filesystem::directory_iterator(folderOf(target), ec)) {
    pid_t pid = writerOf(entry.path().filename().string(), prefix);
    if (pid != 0 && pid != ::getpid() && !runs(pid)) std::filesystem::remove(entry.path(), ec);
  }
}

FileReplacement::FileReplacement(std::filesystem::path target) : target_(std::move(target)) {
  removeStrayTemporaries(target_);
  std::string pattern =
      (folderOf(target_) / (temporaryPrefix(target_) + std::to_string(::getpid()) + ".XXXXXX.part")).string();
  fd_ = ::mkostemps(pattern.data(), static_cast<int>(kTemporarySuffix.size()), O_CLOEXEC);
  if (fd_ < 0) fail(std::string("cannot write beside it: ") + std::strerror(errno));
  temporary_ = pattern;
}

FileReplacement::~FileReplacement() {
  if (fd_ >= 0) ::close(fd_);
  if (!committed_ && !temporary_.empty()) ::unlink(temporary_.c_str());
}

void FileReplacement::fail(const std::string& reason) const {
  throw FileWriteError("cannot write \"" + target_.string() + "\": " + reason);
}

void FileReplacement::write(std::string_view bytes) {
  while (!bytes.empty()) {
    ssize_t n = ::write(fd_, bytes.data(), bytes.size());
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) fail(n < 0 ? std::strerror(errno) : "nothing was written");
    bytes.remove_prefix(static_cast<std::size_t>(n));
  }
}

void FileReplacement::commit() {
  if (::fchmod(fd_, modeFor(target_)) != 0 || ::fsync(fd_) != 0) fail(std::strerror(errno));
  int closed = ::close(fd_);
  fd_ = -1;
  if (closed != 0) fail(std::strerror(errno));
  if (std::rename(temporary_.c_str(), target_.c_str()) != 0) fail(std::strerror(errno));
  committed_ = true;
  // The rename itself survives a power cut once the folder is on the disk too.
  int dir = ::open(folderOf(target_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (dir >= 0) {
    ::fsync(dir);
    ::close(dir);
  }
}

void replaceFile(const std::filesystem::path& target, std::string_view text) {
  FileReplacement file(target);
  file.write(text);
  file.commit();
}

}  // namespace io
