// TEXT and MTEXT codes read as plain text. Text extents, pictures and R12
// stand-ins all read text here; the rows marked "once disagreed" are where
// separate readers gave different text before.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "standalone/text/text_codes.h"

namespace {

using Lines = std::vector<std::string>;

struct TextCase {
  const char* raw;
  const char* plain;
};

TEST(TextCodes, TextContentShowsTheCharactersItsCodesName) {
  const TextCase cases[] = {
      {"45%%d %%c10 %%p0.1 100%%%", "45\u00B0 \u230010 \u00B10.1 100%"},
      {"%%C50%%D", "\u230050\u00B0"},     // codes are read in either case
      {"%%uunder%%u%%oover", "underover"},  // switches show nothing
      {"%%065%%1747", "A\u00AE7"},          // %%nnn takes exactly three digits
      {"%%65 %%6", "%%65 %%6"},             // once disagreed: fewer digits are no code
      {"50% and %%", "50% and %%"},
      {"\\U+4E2D\\U+6587", "\u4E2D\u6587"},
      {"\\U+4E2", "\\U+4E2"},  // four hex digits or none
  };
  for (const TextCase& c : cases) EXPECT_EQ(standalone::plainText(c.raw), c.plain) << c.raw;
}

struct MTextCase {
  const char* raw;
  Lines lines;
};

TEST(TextCodes, MTextContentGivesPlainLines) {
  const MTextCase cases[] = {
      {"AB\\PCDEF", {"AB", "CDEF"}},
      {"one\ntwo", {"one", "two"}},
      {"col\\Nnext", {"col", "next"}},    // once disagreed: a column break drew nothing
      {"above\\Xbelow", {"above", "below"}},  // once disagreed: the picture showed an "X"
      {"1\\S12/3;", {"112/3"}},           // once disagreed: the extents measured "12" only
      {"\\S1^2; \\S3#4;", {"1/2 3/4"}},
      {"{\\fArial|b1|i0;Big} \\H2.5x;text\\~!", {"Big text !"}},
      {"\\C1;red\\Lline\\l\\O\\o\\K\\k", {"redline"}},
      {"a\\\\P\\{b\\}", {"a\\P{b}"}},
      {"\\\\U+0041", {"\\U+0041"}},  // an escaped backslash starts no code
      {"45%%d \\U+00B0C", {"45\u00B0 \u00B0C"}},
      {"abc\\H2", {"abc"}},  // a code cut off at the end
      {"abc\\", {"abc\\"}},
      {"", {""}},
  };
  for (const MTextCase& c : cases) EXPECT_EQ(standalone::plainMTextLines(c.raw), c.lines) << c.raw;
}

}  // namespace
