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

// One host for every row, in order: "P" answers with the set the row before chose.
TEST_F(SelectionTest, AnswersModesAndFilters) {
  struct Case {
    const char *mode, *types, *layer;
    std::string answers;
    std::vector<std::string> expected;  // parts of the transcript
  } cases[] = {
      // ALL with a type filter counts what was filtered out.
      {".", "LINE,ARC,CIRCLE", ".", "ALL\n",
       {"Select objects: ALL\n4 found\n1 was filtered out.\nSelect objects: \n", "-> RTNORM " + ids({inside, crossing, circle})}},
      {".", ".", "walls", "ALL\n", {"-> RTNORM " + ids({crossing, circle})}},
      // Texts are picked and windowed by an estimated box: "label" at 0,5 with height 1 is about 3 units wide.
      {".", ".", ".", "1,5.5\n", {"-> RTNORM " + ids({text})}},
      {".", ".", ".", "W -1,4 4,7\n", {"-> RTNORM " + ids({text})}},
      {".", ".", ".", "W -1,4 2,7\n", {"0 found"}},  // cuts through it
      // A window takes what is inside, a crossing also what touches it.
      {".", ".", ".", "C 0,0 5,4\n", {"-> RTNORM " + ids({inside, crossing, circle})}},
      {".", ".", ".", "W 0,0 5,4\n",
       {"Select objects: W\nSpecify first corner: 0,0\nSpecify opposite corner: 5,4\n2 found\n",
        "-> RTNORM " + ids({inside, circle})}},
      {".", ".", ".", "P\n", {"-> RTNORM " + ids({inside, circle})}},
      {"P", "CIRCLE", ".", "", {"-> RTNORM " + ids({circle})}},
      {".", ".", ".", "L\n", {"-> RTNORM " + ids({text})}},
      {"L", ".", ".", "", {"-> RTNORM " + ids({text})}},
      // Points, handles and duplicates.
      {".", ".", ".", "1.5,1.5\n#" + handleOf(crossing) + "\n1.5,1.5\n(handent \"" + handleOf(circle) + "\")\n",
       {"Select objects: 1.5,1.5\n1 found\n", "1 found, 2 total\n", "1 found (1 duplicate), 2 total\n",
        "-> RTNORM " + ids({inside, crossing, circle})}},
      {".", ".", ".", "ALL\nR\n1.5,1.5\n",
       {"Remove objects: 1.5,1.5\n1 found, 1 removed, 3 total\n", "-> RTNORM " + ids({crossing, circle, text})}},
      // The programmatic modes.
      {"X", "LINE", ".", "", {"-> RTNORM " + ids({inside, crossing})}},
      {"_W", ".", ".", "0,0\n5,4", {"-> RTNORM " + ids({inside, circle})}},
      {"C", ".", ".", "0,0\n5,4", {"-> RTNORM " + ids({inside, crossing, circle})}},
      {"X", "HATCH", ".", "", {"-> RTERROR"}},
      {":S", ".", ".", "1.5,1.5", {"Select objects: 1.5,1.5\n1 found\n-> RTNORM " + ids({inside})}},  // one attempt
      // An empty selection is an error, cancel is cancel.
      {".", ".", ".", "50,50\n", {"0 found\nSelect objects: \n-> RTERROR"}},
      {".", ".", ".", "ALL\n^C", {"Select objects: ^C\n*Cancel*\n-> RTCAN"}},
      {".", ".", ".", "nonsense\n", {"*Invalid selection*\n"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.mode) + " " + c.types + " " + c.layer + " | " + c.answers);
    std::string t = f.run(select(c.mode, c.types, c.layer, c.answers));
    for (const std::string& part : c.expected) EXPECT_THAT(t, HasSubstr(part));
  }
}

TEST_F(SelectionTest, CrossingWindowThatOnlyOverlapsTheExtentsSelectsNothing) {
  // The window lies inside the circle's box but clear of the circle itself.
  f.add(host::Circle{{20, 20, 0}, 5});
  EXPECT_THAT(f.run(select(".", ".", ".", "C 19.5,19.5 20.5,20.5\n")), HasSubstr("0 found\n"));
}

}  // namespace
}  // namespace corvane_test
