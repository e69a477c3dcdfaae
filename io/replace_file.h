#pragma once
// Replacing a file whole: the new content goes to a temporary beside the
// target, is flushed to the disk and only then renamed over the target, so
// the target is either its old self or the complete new file, whatever
// happens on the way (a full disk, a killed process, a power cut).
//
// Temporaries are named ".NAME.PID.XXXXXX.part" beside NAME. One left by a
// process that was killed while writing is removed by the next replacement
// of the same file, once its process no longer runs.
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace io {

// A file could not be written; the message names the file and the reason.
class FileWriteError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class FileReplacement {
 public:
  // Removes stray temporaries of the target and creates a fresh one.
  explicit FileReplacement(std::filesystem::path target);
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;
  // Removes the temporary unless commit() succeeded.
  ~FileReplacement();

  // Where the new content goes, for writers that open files by name (cairo).
  const std::filesystem::path& temporaryPath() const { return temporary_; }
  // Appends bytes to the temporary.
  void write(std::string_view bytes);
  // Flushes the temporary to the disk, gives it the target's permissions
  // and renames it over the target.
  void commit();

 private:
  [[noreturn]] void fail(const std::string& reason) const;

  std::filesystem::path target_, temporary_;
  int fd_ = -1;
  bool committed_ = false;
};

// Replaces the file with the text in one step.
void replaceFile(const std::filesystem::path& target, std::string_view text);

// Stray temporaries of the target left by processes that no longer run, removed.
void removeStrayTemporaries(const std::filesystem::path& target);

}  // namespace io
