#pragma once
// A report page being written: the text goes to a file aside of the chosen
// name, in code page 936 with CR LF line ends and no byte-order mark, and
// only the finished page is renamed over the name. Until then an existing
// file of that name stays whole; a page given up leaves nothing behind, and
// one left by a killed process is removed by the next report of that name.
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace io {
class FileReplacement;
}

namespace reports {

class ReportFile {
 public:
  // Creates the file aside in the folder of path; nothing when the folder
  // cannot take a new file.
  static std::optional<ReportFile> create(const std::string& path);

  ReportFile(ReportFile&&) noexcept;
  ReportFile& operator=(ReportFile&&) = delete;
  ReportFile(const ReportFile&) = delete;
  // A page not committed is removed.
  ~ReportFile();

  // Appends UTF-8 text; "\n" becomes CR LF.
  void write(std::string_view text);
  // Finishes the page and puts it in place of path; false (and nothing left
  // aside) when writing or the rename failed.
  bool commit();

  const std::string& path() const { return path_; }

 private:
  ReportFile(std::string path, std::unique_ptr<io::FileReplacement> file);
  // Hands the gathered text to the file; false once any write failed.
  bool flush();

  std::string path_;
  std::unique_ptr<io::FileReplacement> file_;  // empty once committed or given up
  std::string buffer_;
};

}  // namespace reports
