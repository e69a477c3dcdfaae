// Message pairs and the printf-style formatter behind every printed text.
#include <gtest/gtest.h>

#include "frame/language.h"
#include "frame/text.h"

namespace {

using frame::format;
using frame::formatPrintf;

struct LanguageGuard {
  ~LanguageGuard() { frame::setChinese(false); }
};

TEST(Format, PlaceholdersTakeTheirArgumentsInOrder) {
  EXPECT_EQ(formatPrintf("%d of %s at %.2f", {3LL, std::string_view("curves"), 1.005}), "3 of curves at 1.00");
  EXPECT_EQ(format({"%s=%u, %x, %c", ""}, "n", 42u, 255, 'A'), "n=42, ff, A");
  EXPECT_EQ(format({"[%5d|%-5d|%05.1f]", ""}, 42, 7, 3.14159), "[   42|7    |003.1]");
  EXPECT_EQ(format({"%*d|%.*f", ""}, 4, 9, 3, 2.0), "   9|2.000");
  EXPECT_EQ(formatPrintf("100%% done", {}), "100% done");
  EXPECT_EQ(format({"%ld %lf %lld", ""}, 5L, 0.5, 6LL), "5 0.500000 6");
}

TEST(Format, Utf8TextPassesThroughUntouched) {
  EXPECT_EQ(format({"", "\n【Corvane】 %s 已成功加载。"}, "0.1.0"), "")
      << "the English literal is empty, so the Chinese one must not be chosen in English mode";
  frame::setChinese(true);
  LanguageGuard guard;
  EXPECT_EQ(format({"", "\n【Corvane】 %s 已成功加载。"}, "0.1.0"), "\n【Corvane】 0.1.0 已成功加载。");
  EXPECT_EQ(format({"", "共%d条曲线"}, 12), "共12条曲线");
}

TEST(Format, MissingOrMismatchedArgumentsNeverReadGarbage) {
  // A conversion without its argument is copied as it stands.
  EXPECT_EQ(formatPrintf("%d and %s", {1LL}), "1 and %s");
  EXPECT_EQ(formatPrintf("%s", {}), "%s");
  // %n is never honoured; unknown conversions stay literal.
  EXPECT_EQ(formatPrintf("%n%q", {1LL, 2LL}), "%n%q");
  // A number for %s prints its text; a text for %d prints the text; a whole number for %f is widened.
  EXPECT_EQ(formatPrintf("%s|%d|%.1f", {7LL, std::string_view("x"), 2LL}), "7|x|2.0");
  // A conversion cut off at the end of the text is kept.
  EXPECT_EQ(formatPrintf("50%", {1LL}), "50%");
  EXPECT_EQ(formatPrintf("a%-", {}), "a%-");
}

TEST(Format, HostileWidthsAreNotHonoured) {
  EXPECT_EQ(formatPrintf("%999999999d", {1LL}), "%999999999d");
  std::string star = formatPrintf("%*d", {1000000000LL, 1LL});
  EXPECT_EQ(star.size(), 4096u) << "a width taken from the arguments is capped";
}

}  // namespace
