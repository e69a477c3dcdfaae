// The readers of typed and outside text: answers, script lines, menu files
// and queued expressions.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "standalone/editor/answer_parse.h"
#include "standalone/editor/answer_source.h"
#include "standalone/editor/errors.h"
#include "standalone/editor/expression.h"
#include "standalone/editor/menu_file.h"

namespace corvane_test {
namespace {

using namespace standalone;
using ::testing::HasSubstr;

TEST(AnswerParse, IntegersKeepToTheHostsSixteenBitRange) {
  const std::pair<const char*, std::optional<int>> cases[] = {
      {"32767", 32767}, {"-32768", -32768}, {"+5", 5}, {"32768", {}}, {"1.0", {}}, {"", {}}, {"-", {}}};
  for (const auto& [text, value] : cases) EXPECT_EQ(parseInteger(text), value) << text;
  EXPECT_TRUE(looksLikeInteger("32768"));
}

TEST(AnswerParse, RealsRefuseWhatIsNoNumber) {
  EXPECT_EQ(parseReal(".25"), 0.25);
  EXPECT_EQ(parseReal("-1e3"), -1000);
  for (const char* bad : {"inf", "nan", "1,5", "1.5x", "", "+", "1e999"}) EXPECT_FALSE(parseReal(bad)) << bad;
}

// Plain points, "@" and a refused word are checked at the point prompt end to end.
TEST(AnswerParse, RelativePointsWithHeightAndMalformedPoints) {
  auto r = parsePoint("@1,-1,2");
  ASSERT_TRUE(r);
  EXPECT_EQ(resolvePoint(*r, {1, 1, 1}), (ge::Point3d{2, 0, 3}));
  for (const char* bad : {"1", "1,2,3,4", "1,,2", "a,b", "1,2,", "@@1,1"}) EXPECT_FALSE(parsePoint(bad)) << bad;
}

TEST(AnswerParse, KeywordAbbreviations) {
  // Capitals, whole words, local and global forms are checked at the keyword prompt end to end.
  KeywordList k("Yes No eXit LTYPE,LT");
  // "ex" is neither the capital letters nor the whole word.
  const std::pair<const char*, std::optional<std::string>> cases[] = {
      {"ye", "Yes"}, {"x", "eXit"}, {"exit", "eXit"}, {"ex", {}}, {"lty", "LTYPE"}, {"l", {}}, {"", {}}};
  for (const auto& [text, keyword] : cases) EXPECT_EQ(k.match(text), keyword) << text;
  KeywordList mismatched("Ja Nein _ Yes");  // a global part of the wrong length is ignored
  EXPECT_EQ(mismatched.match("j"), "Ja");
}

TEST(AnswerParse, RealsPrintLikeTheCommandLine) {
  EXPECT_EQ(displayReal(2.5), "2.5");
  EXPECT_EQ(displayReal(-0.0), "0");
  EXPECT_EQ(displayReal(1.0 / 3), "0.33333333");
  EXPECT_EQ(displayPoint({1, 2, 0}), "1,2,0");
}

std::vector<std::string> words(ScriptReader r) {
  std::vector<std::string> out;
  while (auto w = r.nextWord()) out.push_back(*w);
  return out;
}

TEST(ScriptReader, SpacesAndLineEndsAnswerPrompts) {
  using V = std::vector<std::string>;
  EXPECT_EQ(words(ScriptReader::fromText("s", "LINE 0,0 1,1\n\n")), (V{"LINE", "0,0", "1,1", ""}));
  EXPECT_EQ(words(ScriptReader::fromText("s", "A  B\r\n")), (V{"A", "", "B"}));
  EXPECT_EQ(words(ScriptReader::fromText("s", "; note\nA\n;B\n")), (V{"A"}));
  EXPECT_EQ(words(ScriptReader::fromText("s", "MENULOAD \"my menu.cuix\" X")), (V{"MENULOAD", "my menu.cuix", "X"}));
  EXPECT_EQ(words(ScriptReader::fromText("s", "(handent \"1F\") 2")), (V{"(handent \"1F\")", "2"}));
  EXPECT_EQ(words(ScriptReader::fromText("s", "")), V{});
}

TEST(ScriptReader, LineAnswersTakeTheRestOfTheLine) {
  ScriptReader r = ScriptReader::fromText("s", "TEXT hello big world\nnext\n");
  EXPECT_EQ(r.nextWord(), "TEXT");
  EXPECT_EQ(r.nextLine(), "hello big world");
  EXPECT_EQ(r.nextWord(), "next");
  EXPECT_FALSE(r.nextWord());
  EXPECT_TRUE(r.atEnd());
}

TEST(ScriptReader, BadTextIsRefusedWithTheLineNumber) {
  ScriptReader r = ScriptReader::fromText("demo.scr", "ZOOM E\nbad \xC3\x28 text\n");
  EXPECT_EQ(r.nextWord(), "ZOOM");
  EXPECT_EQ(r.nextWord(), "E");
  try {
    r.nextWord();
    FAIL() << "no error";
  } catch (const ScriptError& e) {
    EXPECT_STREQ(e.what(), "demo.scr line 2: not UTF-8 text");
  }
  // NUL, overlong and surrogate encodings are no clean text.
  for (std::string bad : {std::string("a\0b", 3), std::string("\xE0\x80\xAF"), std::string("\xED\xA0\x80")})
    EXPECT_FALSE(isCleanUtf8(bad));
  EXPECT_TRUE(isCleanUtf8("多段线 ok"));
}

TEST(MenuFile, ParsesGroupsPopupsItemsAndSeparators) {
  MenuGroup g = parseMenuText(
      "# comment\nCORVANE-MENU 1\nGROUP CORVANE\nPOPUP POP1 Corvane 曲线\nITEM 等分 | ^C^C_ZORL_PLDevide\n"
      "SEPARATOR\nITEM About | ^C^C_ZORL_ABOUT\n");
  EXPECT_EQ(g.name, "CORVANE");
  ASSERT_EQ(g.popups.size(), 1u);
  EXPECT_EQ(g.popups[0].label, "Corvane 曲线");
  ASSERT_EQ(g.popups[0].items.size(), 3u);
  EXPECT_EQ(g.popups[0].items[0], (MenuItem{"等分", "^C^C_ZORL_PLDevide", false}));
  EXPECT_TRUE(g.popups[0].items[1].separator);
}

TEST(MenuFile, ErrorsNameTheLine) {
  auto why = [](const std::string& text) {
    try {
      parseMenuText(text);
    } catch (const MenuError& e) {
      return std::string(e.what());
    }
    return std::string("accepted");
  };
  EXPECT_EQ(why("GROUP X\n"), "line 1: a menu file starts with \"CORVANE-MENU 1\"");
  EXPECT_EQ(why("CORVANE-MENU 1\nGROUP X\nPOPUP P1 A\nITEM no bar\n"), "line 4: ITEM needs a label, \" | \" and a macro");
  EXPECT_EQ(why("CORVANE-MENU 1\nGROUP X\nPOPUP P1 A\nPOPUP p1 B\n"), "line 4: the alias p1 is used twice");
  EXPECT_EQ(why("CORVANE-MENU 1\nGROUP X\n"), "no POPUP menu");
  EXPECT_EQ(why("CORVANE-MENU 1\nGROUP X Y\n"), "line 2: GROUP needs a name of letters, digits, _ or -");
  EXPECT_EQ(why("CORVANE-MENU 1\nBOGUS\n"), "line 2: unknown statement \"BOGUS\"");
}

TEST(MenuSet, PopupsGoOnTheBarByPosition) {
  MenuSet m;
  MenuGroup g = parseMenuText("CORVANE-MENU 1\nGROUP G\nPOPUP A First\nPOPUP B Second\n");
  EXPECT_TRUE(m.load(g));
  EXPECT_FALSE(m.load(g));
  EXPECT_TRUE(m.insertPopup(12, "g", "b"));
  EXPECT_TRUE(m.insertPopup(1, "G", "A"));
  EXPECT_FALSE(m.insertPopup(1, "G", "C"));
  EXPECT_EQ(m.menuBar(), (std::vector<std::string>{"G.A", "G.B"}));
}

class FakeExpressionHost : public ExpressionHost {
 public:
  bool isMenuGroupLoaded(std::string_view g) override { return g == "LOADED"; }
  void command(const std::vector<Expr>& args) override {
    for (const Expr& a : args) commands.push_back(a.kind == Expr::Kind::kString ? a.text : printExpression(a));
  }
  bool menuCommand(std::string_view text) override {
    menu = std::string(text);
    return true;
  }
  std::vector<std::string> commands;
  std::string menu;
};

TEST(Expressions, TheMenuLoadingFormsRun) {
  FakeExpressionHost h;
  evaluateExpression(readExpression("(if(null(menugroup \"CORVANE\"))(command \"menuload\" \"C:\\\\m\\\\a.cuix\")) "), h);
  EXPECT_EQ(h.commands, (std::vector<std::string>{"menuload", "C:\\m\\a.cuix"}));
  h.commands.clear();
  evaluateExpression(readExpression("(if (null (menugroup \"LOADED\")) (command \"menuload\" \"x\"))"), h);
  EXPECT_TRUE(h.commands.empty());
  evaluateExpression(readExpression("(menucmd \"P12=+CORVANE.POP1\")"), h);
  EXPECT_EQ(h.menu, "P12=+CORVANE.POP1");
}

TEST(Expressions, AnythingElseIsAnError) {
  FakeExpressionHost h;
  for (const char* bad : {"(setq a 1)", "(if)", "(command (foo))", "abc", "(menugroup 1)"})
    EXPECT_THROW(evaluateExpression(readExpression(bad), h), ExpressionError) << bad;
  for (const char* unreadable : {"(", ")", "(a \"b)", "(a) (b)", ""})
    EXPECT_THROW(readExpression(unreadable), ExpressionError) << unreadable;
  EXPECT_EQ(printExpression(readExpression("(1 \"a\" nil t)")), "(1 \"a\" nil T)");
}

}  // namespace
}  // namespace corvane_test
