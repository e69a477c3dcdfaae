#pragma once
// A fresh folder below /tmp for one test, removed with everything in it afterwards.
#include <cstdlib>
#include <filesystem>
#include <string>

namespace test_support {

class TempDir {
 public:
  // tag names the folder, to tell the suites' leftovers apart.
  explicit TempDir(const std::string& tag = "test") {
    std::string pattern = "/tmp/corvane-" + tag + "-XXXXXX";
    path_ = mkdtemp(pattern.data());
  }
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::string file(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

}  // namespace test_support
