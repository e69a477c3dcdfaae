#pragma once
// The embedded drawing and curve kernel behind small fakes of the editor and
// the stores: enough host to draw formula curves, answer prompts from a
// script and read back what was drawn.
#include <algorithm>
#include <memory>

#include <gtest/gtest.h>

#include "frame/command_context.h"
#include "frame/language.h"
#include "frame/settings.h"
#include "geom/curve_kind.h"
#include "host/host.h"
#include "standalone/db/database.h"
#include "standalone/kernel/curve_kernel.h"
#include "tests/frame/fake_host.h"

namespace formula_test {

using frame_test::Reply;

// A keyword answered at a keyword prompt.
inline Reply keyword(std::string k) { return {host::RTNORM, std::move(k)}; }

struct FormulaHost {
  frame_test::FakeEditor editor;
  standalone::DrawingDatabase drawing = standalone::DrawingDatabase::createEmpty();
  standalone::CurveKernel curves;
  frame_test::FakeSystemVariables sysvars;
  frame_test::FakeCommandStack commandStack;
  frame_test::FakeHostCommands hostCommands;
  frame_test::FakeDemandLoad demandLoad;
  frame_test::FakeSettingsStore& store;  // shared between runs, as the registry is
  frame_test::FakePlatform platform;
  host::Host host{editor, drawing, curves, sysvars, commandStack, hostCommands, demandLoad, store, platform};
  frame::Settings settings{store};

  explicit FormulaHost(frame_test::FakeSettingsStore& s) : store(s) {
    sysvars.vars["SURFTAB1"] = host::ResBuf::shortInt(6);
  }

  // Entities of model space in drawing order.
  std::vector<host::Entity> modelSpace() const {
    std::vector<host::Entity> out;
    for (host::ObjectId id : drawing.entitiesOf(drawing.modelSpace()))
      if (auto e = drawing.read(id)) out.push_back(*e);
    return out;
  }
  // The texts of model space (the frame's labels), in drawing order.
  std::vector<std::string> labels() const {
    std::vector<std::string> out;
    for (const auto& e : modelSpace())
      if (auto* t = std::get_if<host::Text>(&e.data)) out.push_back(t->text);
    return out;
  }
};

inline bool contains(const std::vector<std::string>& list, const std::string& item) {
  return std::find(list.begin(), list.end(), item) != list.end();
}

// A fresh host over a settings store that outlives it, as the registry outlives
// a session; the language and the curve kind are put back afterwards.
template <class Base = ::testing::Test>
class FormulaFixture : public Base {
 protected:
  frame_test::FakeSettingsStore store;
  std::unique_ptr<FormulaHost> h = std::make_unique<FormulaHost>(store);

  void TearDown() override {
    frame::setChinese(false);
    geom::setCurveKindIsSpline(true);
  }
  void storeInt(std::string_view name, std::uint32_t v) { store.writeInt(frame::kSettingsKey, name, v); }
  std::optional<std::uint32_t> stored(std::string_view name) { return store.readInt(frame::kSettingsKey, name); }
};

// A command run with scripted replies.
class CommandTest : public FormulaFixture<> {
 protected:
  void run(frame::CommandFunction command, const std::vector<Reply>& replies, std::string_view global = "",
           std::string_view local = "") {
    h->editor.replies.assign(replies.begin(), replies.end());
    frame::CommandContext ctx{h->host, h->settings, global, local};
    command(ctx);
  }
};

// The points an entity was built through: polyline vertices (at the
// elevation), 3D polyline vertices, spline fit points, line ends.
inline ge::PointList pointsOf(const host::Entity& e) {
  ge::PointList pts;
  if (auto* pl = std::get_if<host::LwPolyline>(&e.data)) {
    for (const auto& v : pl->vertices) pts.push_back({v.x, v.y, pl->elevation});
  } else if (auto* p3 = std::get_if<host::Polyline3d>(&e.data)) {
    for (const auto& v : p3->vertices) pts.push_back(v.position);
  } else if (auto* sp = std::get_if<host::Spline>(&e.data)) {
    pts = sp->fitPoints;
  } else if (auto* line = std::get_if<host::Line>(&e.data)) {
    pts = {line->start, line->end};
  }
  return pts;
}

}  // namespace formula_test
