#include "host_fixture.h"

#include <atomic>
#include <cstdio>
#include <unistd.h>

#include "standalone/editor/answer_source.h"

namespace corvane_test {

TempDir::TempDir() {
  static std::atomic<int> counter{0};
  path_ = std::filesystem::temp_directory_path() /
          ("corvane-test-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
  std::filesystem::create_directories(path_);
}

TempDir::~TempDir() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

HostFixture::HostFixture() {
  standalone::EmbeddedHostOptions options;
  options.settingsPath = dir.file("settings.reg");
  options.modulePath = dir.file("corvane");
  host_ = std::make_unique<standalone::EmbeddedHost>(standalone::DrawingDatabase::createEmpty(), out_, options);
  registerPromptProbe(host_->host());
}

host::ObjectId HostFixture::append(host::Entity e) {
  host_->drawing().append(e);
  return e.id;
}

host::ObjectId HostFixture::addLine(ge::Point3d a, ge::Point3d b, const std::string& layer) {
  host::Entity e;
  e.props.layer = layer;
  e.data = host::Line{a, b};
  return append(e);
}

host::ObjectId HostFixture::addCircle(ge::Point3d c, double r, const std::string& layer) {
  host::Entity e;
  e.props.layer = layer;
  host::Circle circle;
  circle.center = c;
  circle.radius = r;
  e.data = circle;
  return append(e);
}

host::ObjectId HostFixture::addText(ge::Point3d at, const std::string& text) {
  host::Entity e;
  host::Text t;
  t.position = at;
  t.height = 1;
  t.text = text;
  e.data = t;
  return append(e);
}

std::string HostFixture::run(const std::string& script) {
  std::size_t before = out_.str().size();
  standalone::ScriptReader reader = standalone::ScriptReader::fromText("test.scr", script);
  result_ = host_->run(reader);
  return out_.str().substr(before);
}

std::string hex(host::ObjectId id) {
  char buf[24];
  std::snprintf(buf, sizeof buf, "%llX", static_cast<unsigned long long>(id.value));
  return buf;
}

}  // namespace corvane_test
