// BOUNDARY and -BOUNDARY run by scripts on the embedded host over a floor
// plan of loose lines and arcs, the areas of what they make measured by
// GEOS; hidden entities left out of boundaries, picks and selections.
#include "standalone/hostcmds/boundary.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <numbers>

#include "geos_oracle.h"
#include "image/picture.h"
#include "standalone/db/database.h"
#include "standalone/db/dxf_reader.h"
#include "standalone/db/dxf_writer.h"
#include "standalone/hostcmds/edit_commands.h"
#include "standalone/hostcmds/pngout.h"
#include "standalone/kernel/curve_kernel.h"
#include "tests/support/scripted_host.h"

namespace contours_test {
namespace {

using standalone::kernel::BulgePiece;
using standalone::kernel::Loop;
using standalone::kernel::Vec2;

class Boundary : public ::testing::Test {
 protected:
  Boundary() : h_("boundary") {}

  // Two rooms side by side, 10 x 8 and 6 x 8, with a bay window (an arc)
  // on the left room's bottom wall; walls overshoot their corners.
  void floorPlan() {
    wall({-0.5, 0}, {3, 0});
    arc_ = add(host::Arc{{5, 0, 0}, 2, std::numbers::pi, 0});  // bulges downwards, out of the room
    wall({7, 0}, {16.5, 0});
    wall({0, -0.5}, {0, 8.5});
    between_ = wall({10, -0.5}, {10, 8.5});
    wall({16, -0.5}, {16, 8.5});
    wall({-0.5, 8}, {16.5, 8});
  }
  host::ObjectId wall(Vec2 a, Vec2 b) { return add(host::Line{{a.x, a.y, 0}, {b.x, b.y, 0}}); }
  host::ObjectId add(host::EntityData data) {
    host::Entity e;
    e.data = std::move(data);
    draft_.append(e);
    return e.id;
  }
  void start() {
    h_.startHost(std::move(draft_), h_.root() / "corvane", [this](standalone::EmbeddedHost& h) {
      command_ = standalone::addBoundaryCommands(h.hostCommands());
      standalone::addEditCommands(h.hostCommands());
      standalone::addPngOutCommand(h.hostCommands());
    });
  }
  std::vector<host::Entity> polylines() {
    std::vector<host::Entity> out;
    auto& db = h_.host().drawing();
    for (host::ObjectId id : db.entitiesOf(db.modelSpace()))
      if (auto e = db.read(id); e && std::holds_alternative<host::LwPolyline>(e->data)) out.push_back(*e);
    return out;
  }
  void hide(host::ObjectId id) {
    host::Entity e = *h_.host().drawing().read(id);
    e.props.invisible = true;
    h_.host().drawing().write(e);
  }
  std::size_t count() {
    auto& db = h_.host().drawing();
    return db.entitiesOf(db.modelSpace()).size();
  }
  static double areaOf(const host::Entity& e) {
    double a = 0;
    EXPECT_EQ(standalone::CurveKernel().getArea(e.data, a), host::ErrorStatus::eOk);
    return a;
  }
  // The pieces of every line and arc of the running drawing, for GEOS.
  std::vector<BulgePiece> drawnPieces() {
    std::vector<BulgePiece> out;
    auto& db = h_.host().drawing();
    for (host::ObjectId id : db.entitiesOf(db.modelSpace()))
      if (auto e = db.read(id); e && !e->props.invisible && !std::holds_alternative<host::LwPolyline>(e->data))
        for (const BulgePiece& p : standalone::boundaryPiecesOf(e->data)) out.push_back(p);
    return out;
  }

  standalone::DrawingDatabase draft_ = standalone::DrawingDatabase::createEmpty("AC1027");
  test_support::ScriptedHost h_;
  std::shared_ptr<standalone::BoundaryCommand> command_;
  host::ObjectId arc_, between_;
};

std::string pick(host::ObjectId id) { return "#" + test_support::handleOf(id) + "\n"; }

TEST_F(Boundary, TracesEachRoomAtItsPointKeepingArcs) {
  floorPlan();
  start();
  std::size_t before = count();
  std::string t = h_.run("-BOUNDARY\n2,2\n13,4\n\n");
  EXPECT_NE(t.find("BOUNDARY created 2 polylines"), std::string::npos) << t;
  std::vector<host::Entity> made = polylines();
  ASSERT_EQ(made.size(), 2u);
  EXPECT_EQ(count(), before + 2) << "the walls stay";
  GeosFaces geos(drawnPieces());
  EXPECT_EQ(geos.count(), 2u) << drawnPieces().size();
  EXPECT_NEAR(std::abs(areaOf(made[0])), geos.areaAt({2, 2}), 1e-4);
  EXPECT_NEAR(std::abs(areaOf(made[0])), 80 + 2 * std::numbers::pi, 1e-9);
  EXPECT_NEAR(std::abs(areaOf(made[1])), 48, 1e-9);
  const auto& room = std::get<host::LwPolyline>(made[0].data);
  EXPECT_TRUE(room.closed);
  EXPECT_EQ(
      std::count_if(room.vertices.begin(), room.vertices.end(), [](const host::LwVertex& v) { return v.bulge != 0; }),
      1)
      << "the bay is one arc";
  EXPECT_EQ(made[0].props.layer, h_.host().drawing().currentLayer());
  EXPECT_EQ(command_->builds(), 1) << "both rooms from one arrangement";
}

TEST_F(Boundary, IslandsOutsideAndTheCache) {
  floorPlan();
  add(host::Circle{{5, 4, 0}, 1.5});  // a table in the left room
  start();
  std::string t = h_.run("BOUNDARY\n2,2\n\n");
  EXPECT_NE(t.find("BOUNDARY created 2 polylines"), std::string::npos) << t;
  std::vector<host::Entity> made = polylines();
  ASSERT_EQ(made.size(), 2u);
  EXPECT_NEAR(std::abs(areaOf(made[0])) - std::abs(areaOf(made[1])),
              80 + 2 * std::numbers::pi - 2.25 * std::numbers::pi, 1e-9);
  // Outside every room: nothing made, the message instead.
  t = h_.run("-BOUNDARY\n30,30\n\n");
  EXPECT_NE(t.find("A closed boundary cannot be determined."), std::string::npos) << t;
  EXPECT_EQ(polylines().size(), 2u);
  // Island detection off: the room alone.
  h_.run("-BOUNDARY\nA\nI\nN\n2,2\n\n");
  EXPECT_EQ(polylines().size(), 3u);
  EXPECT_EQ(command_->builds(), 1) << "nothing changed but the boundaries made";
  // A drawing change makes the next call build again: the wall between the
  // rooms goes, and the boundaries made so far with it.
  std::string erase = "ERASE\n" + pick(between_);
  for (const host::Entity& e : polylines()) erase += pick(e.id);
  h_.run(erase + "\n-BOUNDARY\n13,4\n\n");
  EXPECT_EQ(command_->builds(), 2);
  EXPECT_NEAR(std::abs(areaOf(polylines().back())), 128 + 2 * std::numbers::pi, 1e-9);
}

// A wall half a unit short: closed by a gap tolerance above that, not below.
TEST_F(Boundary, GapToleranceClosesAShortWall) {
  wall({0, 0}, {10, 0});
  wall({10, 0}, {10, 10});
  wall({10, 10}, {0, 10});
  wall({0, 10}, {0, 0.5});
  start();
  h_.run("-BOUNDARY\n5,5\n\nSETVAR\nHPGAPTOL\n0.4\n-BOUNDARY\n5,5\n\n");
  EXPECT_TRUE(polylines().empty());
  h_.run("SETVAR\nHPGAPTOL\n0.6\n-BOUNDARY\n5,5\n\n");
  ASSERT_EQ(polylines().size(), 1u);
  EXPECT_NEAR(std::abs(areaOf(polylines()[0])), 100, 1e-9);
}

// Hidden entities are not part of a boundary, are not picked or selected,
// and their flag survives a DXF round trip, as an independent reader sees.
TEST_F(Boundary, HiddenEntities) {
  floorPlan();
  start();
  auto& db = h_.host().drawing();
  host::ObjectId between = between_;
  hide(between);
  h_.run("-BOUNDARY\n2,2\n\n");
  ASSERT_EQ(polylines().size(), 1u);
  EXPECT_NEAR(std::abs(areaOf(polylines()[0])), 128 + 2 * std::numbers::pi, 1e-9) << "the two rooms as one";
  // Neither a pick on it, nor a window around it, nor ALL takes it.
  h_.run("ERASE\n" + pick(polylines()[0].id) + "\nERASE\n10,6\n\nERASE\nW 9,-1 11,9\n\n");
  EXPECT_TRUE(db.read(between));
  h_.run("ERASE\nALL\n\n");
  EXPECT_TRUE(db.read(between));
  EXPECT_EQ(count(), 1u) << "all else went";
  std::filesystem::path out = h_.root() / "hidden.dxf";
  standalone::saveDxf(db, out);
  EXPECT_TRUE(standalone::loadDxf(out).read(between)->props.invisible);
  std::string check = std::string(CORVANE_PYTHON) + " -c \"import ezdxf,sys; d=ezdxf.readfile(sys.argv[1]); " +
                      "es=list(d.modelspace()); sys.exit(0 if len(es)==1 and es[0].dxf.invisible==1 else 1)\" " +
                      out.string();
  EXPECT_EQ(std::system(check.c_str()), 0) << "ezdxf sees one entity, invisible";
}

// PNGOUT draws the view at its pixel size and leaves hidden entities out.
TEST_F(Boundary, PngOutDrawsTheViewWithoutHiddenEntities) {
  wall({-5, 2}, {5, 2});  // drawn
  host::ObjectId hiddenWall = wall({-5, -2}, {5, -2});
  start();
  hide(hiddenWall);
  std::filesystem::path file = h_.root() / "view.png";
  h_.run("ZOOM\nC\n0,0\n10\nPNGOUT\n" + file.string() + "\n\n");
  image::LoadResult loaded = image::loadPicture(file.string());
  const image::Picture* picture = std::get_if<image::Picture>(&loaded);
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->width, 1600);
  EXPECT_EQ(picture->height, 1000);
  // Rows through y = 2 (pixel row 300) and y = -2 (row 700): ink only on the first.
  auto inkOnRow = [&](int row) {
    int ink = 0;
    for (int dy = -2; dy <= 2; ++dy)
      for (int x = 0; x < picture->width; ++x) ink += picture->at(x, row + dy) != picture->at(0, 0);
    return ink;
  };
  EXPECT_GT(inkOnRow(300), 500);
  EXPECT_EQ(inkOnRow(700), 0);
}

}  // namespace
}  // namespace contours_test
