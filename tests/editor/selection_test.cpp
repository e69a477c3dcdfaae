// Selection sets through the script: every answer form at "Select objects:",
// the programmatic modes, filters and the count lines.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host_fixture.h"

namespace corvane_test {
namespace {

using ::testing::HasSubstr;

// PROBE Select with a mode ("." ordinary), types ("." any) and a layer ("." any).
std::string select(const std::string& mode, const std::string& types, const std::string& layer,
                   const std::string& answers) {
  return "PROBE\nSelect\n" + mode + "\n" + types + "\n" + layer + "\n" + answers + "\nQuit\n";
}

class SelectionTest : public ::testing::Test {
 protected:
  SelectionTest() {
    inside = f.add(host::Line{{1, 1, 0}, {2, 2, 0}});
    crossing = f.add(host::Line{{3, 3, 0}, {8, 3, 0}}, "Walls");
    circle = f.add(host::Circle{{4, 1, 0}, 0.5}, "Walls");
    text = f.add(host::Text{{0, 5, 0}, {}, 1, "label"});
  }
  std::string ids(std::initializer_list<host::ObjectId> list) {
    std::string out = std::to_string(list.size()) + ":";
    for (host::ObjectId id : list) out += " " + handleOf(id);
    return out;
  }

  HostFixture f;
  host::ObjectId inside, crossing, circle, text;
};

TEST_F(SelectionTest, AllWithATypeFilterCountsWhatWasFilteredOut) {
  std::string t = f.run(select(".", "LINE,ARC,CIRCLE", ".", "ALL\n"));
  EXPECT_THAT(t, HasSubstr("Select objects: ALL\n4 found\n1 was filtered out.\nSelect objects: \n"));
  EXPECT_THAT(t, HasSubstr("-> RTNORM " + ids({inside, crossing, circle})));
}

TEST_F(SelectionTest, TextsArePickedAndWindowedByAnEstimatedBox) {
  // "label" at 0,5 with height 1: about 3 units wide.
  EXPECT_THAT(f.run(select(".", ".", ".", "1,5.5\n")), HasSubstr("-> RTNORM " + ids({text})));
  EXPECT_THAT(f.run(select(".", ".", ".", "W -1,4 4,7\n")), HasSubstr("-> RTNORM " + ids({text})));
  EXPECT_THAT(f.run(select(".", ".", ".", "W -1,4 2,7\n")), HasSubstr("0 found"));  // cuts through it
}

TEST_F(SelectionTest, LayerFilter) {
  EXPECT_THAT(f.run(select(".", ".", "walls", "ALL\n")), HasSubstr("-> RTNORM " + ids({crossing, circle})));
}

TEST_F(SelectionTest, WindowTakesWhatIsInsideCrossingAlsoWhatTouches) {
  std::string w = f.run(select(".", ".", ".", "W 0,0 5,4\n"));
  EXPECT_THAT(w, HasSubstr("Select objects: W\nSpecify first corner: 0,0\nSpecify opposite corner: 5,4\n2 found\n"));
  EXPECT_THAT(w, HasSubstr("-> RTNORM " + ids({inside, circle})));
  EXPECT_THAT(f.run(select(".", ".", ".", "C 0,0 5,4\n")), HasSubstr("-> RTNORM " + ids({inside, crossing, circle})));
}

TEST_F(SelectionTest, CrossingWindowThatOnlyOverlapsTheExtentsSelectsNothing) {
  // The window lies inside the circle's box but clear of the circle itself.
  f.add(host::Circle{{20, 20, 0}, 5});
  EXPECT_THAT(f.run(select(".", ".", ".", "C 19.5,19.5 20.5,20.5\n")), HasSubstr("0 found\n"));
}

TEST_F(SelectionTest, PointsHandlesAndDuplicates) {
  std::string t = f.run(select(".", ".", ".", "1.5,1.5\n#" + handleOf(crossing) + "\n1.5,1.5\n(handent \"" + handleOf(circle) +
                                                  "\")\n"));
  EXPECT_THAT(t, HasSubstr("Select objects: 1.5,1.5\n1 found\n"));
  EXPECT_THAT(t, HasSubstr("1 found, 2 total\n"));
  EXPECT_THAT(t, HasSubstr("1 found (1 duplicate), 2 total\n"));
  EXPECT_THAT(t, HasSubstr("-> RTNORM " + ids({inside, crossing, circle})));
}

TEST_F(SelectionTest, RemoveModeTakesObjectsOut) {
  std::string t = f.run(select(".", ".", ".", "ALL\nR\n1.5,1.5\n"));
  EXPECT_THAT(t, HasSubstr("Remove objects: 1.5,1.5\n1 found, 1 removed, 3 total\n"));
  EXPECT_THAT(t, HasSubstr("-> RTNORM " + ids({crossing, circle, text})));
}

TEST_F(SelectionTest, LastAndPrevious) {
  EXPECT_THAT(f.run(select(".", ".", ".", "L\n")), HasSubstr("-> RTNORM " + ids({text})));
  f.run(select(".", ".", ".", "W 0,0 5,4\n"));
  EXPECT_THAT(f.run(select(".", ".", ".", "P\n")), HasSubstr("-> RTNORM " + ids({inside, circle})));
  EXPECT_THAT(f.run(select("P", "CIRCLE", ".", "")), HasSubstr("-> RTNORM " + ids({circle})));
  EXPECT_THAT(f.run(select("L", ".", ".", "")), HasSubstr("-> RTNORM " + ids({text})));
}

TEST_F(SelectionTest, ProgrammaticModes) {
  EXPECT_THAT(f.run(select("X", "LINE", ".", "")), HasSubstr("-> RTNORM " + ids({inside, crossing})));
  EXPECT_THAT(f.run(select("_W", ".", ".", "0,0\n5,4")), HasSubstr("-> RTNORM " + ids({inside, circle})));
  EXPECT_THAT(f.run(select("C", ".", ".", "0,0\n5,4")), HasSubstr("-> RTNORM " + ids({inside, crossing, circle})));
  EXPECT_THAT(f.run(select("X", "HATCH", ".", "")), HasSubstr("-> RTERROR"));
}

TEST_F(SelectionTest, SingleModeEndsAfterOneAttempt) {
  std::string t = f.run(select(":S", ".", ".", "1.5,1.5"));
  EXPECT_THAT(t, HasSubstr("Select objects: 1.5,1.5\n1 found\n-> RTNORM " + ids({inside})));
}

TEST_F(SelectionTest, EmptySelectionIsAnErrorAndCancelIsCancel) {
  EXPECT_THAT(f.run(select(".", ".", ".", "50,50\n")), HasSubstr("0 found\nSelect objects: \n-> RTERROR"));
  EXPECT_THAT(f.run(select(".", ".", ".", "ALL\n^C")), HasSubstr("Select objects: ^C\n*Cancel*\n-> RTCAN"));
  EXPECT_THAT(f.run(select(".", ".", ".", "nonsense\n")), HasSubstr("*Invalid selection*\n"));
}

}  // namespace
}  // namespace corvane_test
