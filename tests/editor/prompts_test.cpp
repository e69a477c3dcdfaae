// Every prompt kind driven by a script through the embedded host, checked on
// the transcript as the host's command line shows it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host_fixture.h"

namespace corvane_test {
namespace {

using ::testing::HasSubstr;

// "PROBE\n<kind>\n<bits>\n<keywords>\n<answers...>\nQuit\n"
std::string probe(const std::string& kind, int bits, const std::string& keywords, const std::string& answers) {
  return "PROBE\n" + kind + "\n" + std::to_string(bits) + "\n" + keywords + "\n" + answers + "\nQuit\n";
}

// One probe run on a fresh host: the prompt kind, its bits and keywords, the
// answers typed and the part of the transcript they must produce.
struct ProbeCase {
  const char* name;
  std::string kind;
  int bits;
  std::string keywords, answers, expected;
};

class OneProbe : public ::testing::TestWithParam<ProbeCase> {};

TEST_P(OneProbe, Transcript) {
  const ProbeCase& c = GetParam();
  HostFixture f;
  EXPECT_THAT(f.run(probe(c.kind, c.bits, c.keywords, c.answers)), HasSubstr(c.expected));
  EXPECT_FALSE(f.lastResult().failure) << "the probe ends every run with Quit";
}

const ProbeCase kProbeCases[] = {
    // Refused answers are asked again with the host's complaint.
    {"IntRefused", "Int", 0, "", "abc\n40000\n1.5\n12",
     "Enter an integer: abc\nRequires an integer value.\n"
     "Enter an integer: 40000\nRequires an integer between -32768 and 32767.\n"
     "Enter an integer: 1.5\nRequires an integer value.\nEnter an integer: 12\n-> RTNORM 12\n"},
    // ^C cancels the prompt and the command goes on.
    {"IntCancel", "Int", 0, "", "^C", "Enter an integer: ^C\n*Cancel*\n-> RTCAN\n"},
    {"IntEnterGivesNone", "Int", 0, "", "", "Enter an integer: \n-> RTNONE\n"},
    // RSG_NONULL: the empty answer is refused and the prompt comes again.
    {"IntNonNullAsksAgain", "Int", 1, "", "\n7", "Enter an integer: \nEnter an integer: 7\n-> RTNORM 7\n"},
    {"IntNonZero", "Int", 2, "", "0\n-2", "Enter an integer: 0\nValue must be nonzero.\nEnter an integer: -2\n-> RTNORM -2\n"},
    {"IntNonNegative", "Int", 4, "", "-1\n0",
     "Enter an integer: -1\nValue must not be negative.\nEnter an integer: 0\n-> RTNORM 0\n"},
    {"IntPositive", "Int", 6, "", "0\n-5\n3",
     "Enter an integer: 0\nValue must be positive and nonzero.\nEnter an integer: -5\n"
     "Value must be positive and nonzero.\nEnter an integer: 3\n-> RTNORM 3\n"},
    {"IntKeywordByCapital", "Int", 6, "Multiple", "m", "-> RTKWORD Multiple\n"},
    {"IntKeywordByPrefix", "Int", 6, "Multiple", "mul", "-> RTKWORD Multiple\n"},
    // RSG_OTHER hands any text back as a keyword; with RSG_NONULL, Enter is an empty one.
    {"IntOtherText", "Int", 128, "", "hello", "-> RTKWORD hello\n"},
    {"IntOtherEnter", "Int", 129, "", "", "Enter an integer: \n-> RTKWORD \n"},
    {"RealComplaints", "Real", 6, "", "x\n-0.5\n1.5e1",
     "Enter a real: x\nRequires numeric value.\nEnter a real: -0.5\nValue must be positive and nonzero.\n"
     "Enter a real: 1.5e1\n-> RTNORM 15\n"},
    {"DistNumber", "Dist", 0, "", "2.5", "-> RTNORM 2.5\n"},
    {"DistTwoPoints", "Dist", 0, "", "0,0\n3,4", "Enter a distance: 0,0\nSpecify second point: 3,4\n-> RTNORM 5\n"},
    {"DistRefused", "Dist", 0, "", "abc\n1", "Enter a distance: abc\nRequires numeric distance or two points.\n"},
    // With a base point (1,1) one point is enough.
    {"DistFromBase", "Base", 0, "", "4,5", "Enter a distance: 4,5\n-> RTNORM 5\n"},
    {"DistIn3d", "Dist", 0, "", "0,0,0\n3,4,12", "-> RTNORM 13\n"},
    {"Dist2dBitIgnoresHeight", "Dist", 64, "", "0,0,0\n3,4,12", "-> RTNORM 5\n"},
    {"KwordCapital", "Kword", 0, "Yes No", "n", "Enter a keyword: n\n-> RTNORM No\n"},
    {"KwordWholeWord", "Kword", 0, "Yes No", "YES", "-> RTNORM Yes\n"},
    {"KwordInvalid", "Kword", 0, "Yes No", "nox\n",
     "Enter a keyword: nox\nInvalid option keyword.\nEnter a keyword: \n-> RTNONE\n"},
    // Local keywords answer with their global form; "_" asks for the global one directly.
    {"KwordLocalToGlobal", "Kword", 0, "Ja Nein LTyp _ Yes No Ltype", "j", "-> RTNORM Yes\n"},
    {"KwordGlobalDirectly", "Kword", 0, "Ja Nein LTyp _ Yes No Ltype", "_no", "-> RTNORM No\n"},
    {"KwordLocalPrefix", "Kword", 0, "Ja Nein LTyp _ Yes No Ltype", "lty", "-> RTNORM Ltype\n"},
    // An explicit abbreviation after a comma.
    {"KwordCommaAbbreviation", "Kword", 0, "LTYPE,LT Layer", "lt", "-> RTNORM LTYPE\n"},
};

INSTANTIATE_TEST_SUITE_P(Prompts, OneProbe, ::testing::ValuesIn(kProbeCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(PointPrompt, AbsoluteRelativeAndInvalid) {
  HostFixture f;
  std::string t = f.run("PROBE\nPoint\n0\n\n1,2\nPoint\n0\n\n@1,1\nPoint\n0\n\n@\nPoint\n0\n\nfoo\n1,2,3\nQuit\n");
  EXPECT_THAT(t, HasSubstr("Enter a point: 1,2\n-> RTNORM 1,2,0\n"));
  EXPECT_THAT(t, HasSubstr("Enter a point: @1,1\n-> RTNORM 2,3,0\n"));
  EXPECT_THAT(t, HasSubstr("Enter a point: @\n-> RTNORM 2,3,0\n"));
  EXPECT_THAT(t, HasSubstr("Enter a point: foo\nInvalid point.\nEnter a point: 1,2,3\n-> RTNORM 1,2,3\n"));
}

TEST(StringPrompt, SpacesEndAnAnswerUnlessTheWholeLineIsTaken) {
  HostFixture f;
  EXPECT_THAT(f.run("PROBE\nLine hello big world\nQuit\n"), HasSubstr("-> RTNORM [hello big world]\n"));
  std::string t = f.run("PROBE\nString hello Quit\n");
  EXPECT_THAT(t, HasSubstr("Enter a text: hello\n-> RTNORM [hello]\nProbe"));
  std::string longLine(140, 'a');
  EXPECT_THAT(f.run("PROBE\nLine " + longLine + "\nQuit\n"), HasSubstr("[" + std::string(132, 'a') + "]"));
}

TEST(Pick, UsesThePickBoxMeasuredInPixelsOfTheViewAndTakesTheNearestEntityOrAHandle) {
  HostFixture f;
  host::ObjectId line = f.add(host::Line{{0, 0, 0}, {10, 0, 0}});
  // View height 10 over 1000 pixels and PICKBOX 3: the box reaches 0.03 units.
  EXPECT_THAT(f.run("PROBE Pick 5,0.02 Quit\n"), HasSubstr("-> RTNORM " + handleOf(line) + " LINE at 5,0.02,0\n"));
  std::string miss = f.run("PROBE Pick 5,0.05 Quit\n");
  EXPECT_THAT(miss, HasSubstr("Nothing found at 5,0.05,0.\n-> RTERROR\n"));
  // Zooming out doubles the view height and with it the box.
  EXPECT_THAT(f.run("ZOOM 0.5x\nPROBE Pick 5,0.05 Quit\n"), HasSubstr("-> RTNORM " + handleOf(line) + " LINE"));
  host::ObjectId circle = f.add(host::Circle{{5, 1, 0}, 0.99});
  EXPECT_THAT(f.run("PROBE Pick 5,0.011 Quit\n"), HasSubstr("-> RTNORM " + handleOf(circle) + " CIRCLE"));
  EXPECT_THAT(f.run("PROBE Pick #" + handleOf(circle) + " Quit\n"), HasSubstr("-> RTNORM " + handleOf(circle) + " CIRCLE"));
}

// A desktop's dialogs stand in for the command line's forms: the file
// question while the user answers and FILEDIA is 1, every message box.
class FakeDialogs : public standalone::DesktopDialogs {
 public:
  void messageBox(std::string_view caption, std::string_view text) override {
    shown += std::string(caption) + ": " + std::string(text) + "\n";
  }
  std::optional<std::string> fileName(std::string_view title, std::string_view defaultName, std::string_view filter,
                                      bool forSaving) override {
    shown += std::string(title) + " <" + std::string(defaultName) + "> " + std::string(filter) +
             (forSaving ? " save\n" : " open\n");
    return chosen;
  }
  std::optional<std::string> chosen;
  std::string shown;
};

// Without dialogs both are asked and shown on the command line.
TEST(FileNamesAndMessageBoxes, GoToTheDesktopsDialogsWhenThereAreAny) {
  struct Case {
    const char* script;
    bool dialogs;
    std::optional<std::string> chosen;
    const char* transcript;  // a part of it
    const char* shown;       // what the dialogs showed
  } cases[] = {
      {"PROBE File\n\nQuit\n", false, {}, "Save report as <report>: \n-> RTNORM [report.xls]\n", ""},
      {"PROBE File\n\"/tmp/my report.html\"\nQuit\n", false, {}, "-> RTNORM [/tmp/my report.html]\n", ""},
      {"PROBE File\n/tmp/dir.v2/table\nQuit\n", false, {}, "-> RTNORM [/tmp/dir.v2/table.xls]\n", ""},
      {"PROBE Message Quit\n", false, {},
       "Probe [Int/Real/Dist/Base/Point/Kword/String/Line/Pick/Select/File/Message/Quit]: Message\n"
       "[Corvane] Nothing was selected.\n", ""},
      {"PROBE File Quit\n", true, "/tmp/table", "-> RTNORM [/tmp/table.xls]\n", "Save report as <report> *.xls|*.xls| save\n"},
      {"PROBE File Quit\n", true, {}, "File\n-> RTCAN\n", "Save report as <report> *.xls|*.xls| save\n"},
      {"PROBE Message Quit\n", true, {}, "Message\nProbe", "Corvane: Nothing was selected.\n"},
      {"SETVAR FILEDIA 0 PROBE File\n\nQuit\n", true, {}, "Save report as <report>: \n-> RTNORM [report.xls]\n", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.script);
    HostFixture f;
    FakeDialogs dialogs;
    dialogs.chosen = c.chosen;
    if (c.dialogs) f.host().editor().setDialogs(&dialogs);
    EXPECT_THAT(f.run(c.script), HasSubstr(c.transcript));
    EXPECT_EQ(dialogs.shown, c.shown);
  }
}

}  // namespace
}  // namespace corvane_test
