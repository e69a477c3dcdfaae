#pragma once
// An embedded host over an empty drawing with the prompt probe registered,
// a settings file in a fresh temporary folder and the transcript in a string.
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>

#include "prompt_probe.h"
#include "standalone/editor/embedded_host.h"

namespace corvane_test {

// A fresh folder below the system's temporary folder, removed afterwards.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  std::filesystem::path path() const { return path_; }
  std::string file(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

class HostFixture {
 public:
  HostFixture();

  standalone::EmbeddedHost& host() { return *host_; }
  host::ObjectId addLine(ge::Point3d a, ge::Point3d b, const std::string& layer = "0");
  host::ObjectId addCircle(ge::Point3d c, double r, const std::string& layer = "0");
  host::ObjectId addText(ge::Point3d at, const std::string& text);

  // Runs a script; returns the transcript it produced.
  std::string run(const std::string& script);
  const standalone::SessionResult& result() const { return result_; }
  // The transcript of everything run so far.
  std::string transcript() const { return out_.str(); }

  TempDir dir;

 private:
  host::ObjectId append(host::Entity e);

  std::ostringstream out_;
  std::unique_ptr<standalone::EmbeddedHost> host_;
  standalone::SessionResult result_;
};

// The hexadecimal handle of an id, as selections and picks show it.
std::string hex(host::ObjectId id);

}  // namespace corvane_test
