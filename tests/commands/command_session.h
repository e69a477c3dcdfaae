#pragma once
// A drawing saved as DXF, loaded into the embedded host with the plug-in's
// module and the host's PEDIT, driven by a script in the chosen language,
// and the result saved as DXF again for an independent reader.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/host_session.h"
#include "tests/support/languages.h"

namespace commands_test {

enum class Language { kEnglish, kChinese };

class CommandSession : public test_support::HostSession {
 public:
  explicit CommandSession(Language language);
  ~CommandSession();

  // Adds an entity to the drawing that will be saved and loaded; its id.
  host::ObjectId add(host::EntityData data, const std::string& layer = "0", int color = 256);
  // Saves the drawing as DXF, loads that file into a fresh host and loads the module.
  void start();
  // Loads a DXF file made elsewhere into a fresh host instead of the added entities.
  void startFrom(const std::filesystem::path& dxf);
  // The entity as the running host holds it, if it is still there.
  std::optional<host::Entity> read(host::ObjectId id) { return host().drawing().read(id); }
  // Live entities of model space in drawing order.
  std::vector<host::Entity> entities();
  template <class T>
  std::vector<host::Entity> entitiesOf() {
    std::vector<host::Entity> out;
    for (auto& e : entities())
      if (std::holds_alternative<T>(e.data)) out.push_back(e);
    return out;
  }
  // Saves the drawing after the commands and reads it back with ezdxf: one
  // line per model-space entity (see dump_dxf.py).
  std::vector<std::string> readBackWithEzdxf();
  bool chinese() const { return language_ == Language::kChinese; }
  // The literal of the session's language.
  const char* pick(const char* en, const char* zh) const { return chinese() ? zh : en; }
  // Success when the transcript holds the text; a failure showing the transcript otherwise.
  testing::AssertionResult says(const std::string& transcript, const std::string& text) const;
  // The same for the literal of the session's language.
  testing::AssertionResult says(const std::string& transcript, const char* en, const char* zh) const {
    return says(transcript, pick(en, zh));
  }
  // The count line most commands end with, in the session's language.
  std::string processed(int n) const;
  // A system variable of the running host.
  host::ResBuf sysvar(const char* name);

 private:
  Language language_;
  standalone::DrawingDatabase draft_;
};

// Names the instances of a suite run once per language.
inline std::string languageName(const testing::TestParamInfo<Language>& info) {
  return info.param == Language::kChinese ? "Chinese" : "English";
}

// Every end-to-end suite runs once per language over a fresh session.
class CommandTest : public ::testing::TestWithParam<Language> {
 protected:
  CommandSession s{GetParam()};
};

// "#1F": the handle answer of a selection prompt.
std::string pickOf(host::ObjectId id);
// The answers that pick each entity and end the selection.
std::string selectionOf(std::initializer_list<host::ObjectId> ids);
// Expects the same points within 1e-9, in order.
void expectPoints(const ge::PointList& got, const ge::PointList& want);

// Record builders.
host::LwPolyline lwThrough(const std::vector<ge::Point2d>& pts, bool closed = false, double elevation = 0);
host::Polyline2d old2dThrough(const std::vector<ge::Point2d>& pts, bool closed = false);
host::Polyline3d poly3dThrough(const std::vector<ge::Point3d>& pts, bool closed = false);
ge::PointList verticesOf(const host::Entity& e);

using test_support::countOf;

}  // namespace commands_test
