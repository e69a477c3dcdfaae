// The report file's code page, its name rule, and a page that replaces an
// existing file only when it is complete.
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "reports/gbk_text.h"
#include "reports/report_file.h"
#include "reports/report_page.h"
#include "tests/support/temp_dir.h"

namespace {

std::string contentOf(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

struct Coding {
  const char* utf8;
  const char* cp936;
};

class CodePage : public ::testing::TestWithParam<Coding> {};

TEST_P(CodePage, WritesTheCharacterOrAQuestionMark) {
  EXPECT_EQ(reports::toCodePage936(GetParam().utf8), GetParam().cp936);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, CodePage,
    ::testing::Values(Coding{"Index width=5%", "Index width=5%"},
                      Coding{"序号", "\xD0\xF2\xBA\xC5"},
                      Coding{"Lines、Arcs", "Lines\xA1\xA2" "Arcs"},
                      Coding{"a\xF0\x9F\x98\x80" "b", "a?b"},          // no such character in the code page
                      Coding{"\xE2\x82\xAC", "\x80"},                  // the euro sign of code page 936
                      Coding{"x\xE5\xBA" "y", "x?y"},                  // a sequence cut short
                      Coding{"\xFF\xC0" "z", "??z"}));                 // bytes that are no UTF-8

struct Naming {
  const char* chosen;
  const char* written;
};

class NameRule : public ::testing::TestWithParam<Naming> {};

TEST_P(NameRule, EveryXlsBecomesHtml) { EXPECT_EQ(reports::htmlNameFor(GetParam().chosen), GetParam().written); }

INSTANTIATE_TEST_SUITE_P(Names, NameRule,
                         ::testing::Values(Naming{"/tmp/a.xls", "/tmp/a.html"}, Naming{"a.txt", "a.txt"},
                                           Naming{"x.xls.xls", "x.html.html"},
                                           Naming{"/d.xls/b.xlsx", "/d.html/b.htmlx"}, Naming{"a.XLS", "a.XLS"},
                                           Naming{"", ""}));

TEST(ReportFile, AnExistingFileStaysWholeUntilThePageIsComplete) {
  test_support::TempDir dir("reports");
  std::string path = dir.file("r.html");
  std::ofstream(path) << "old page";
  {
    auto file = reports::ReportFile::create(path);
    ASSERT_TRUE(file);
    file->write("<p>表</p>\n");
    EXPECT_EQ(contentOf(path), "old page");
  }  // given up: nothing of it stays
  EXPECT_EQ(contentOf(path), "old page");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1);

  auto file = reports::ReportFile::create(path);
  ASSERT_TRUE(file);
  std::string row(100000, 'x');
  for (int i = 0; i < 5; ++i) file->write(row + "\n");  // beyond one gathering of text
  EXPECT_EQ(contentOf(path), "old page");
  ASSERT_TRUE(file->commit());
  std::string written = contentOf(path);
  EXPECT_EQ(written.size(), 5 * (row.size() + 2));
  EXPECT_EQ(written.substr(row.size(), 2), "\r\n");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1);
}

TEST(ReportFile, AFolderThatCannotTakeTheFileGivesNothing) {
  test_support::TempDir dir("reports");
  EXPECT_FALSE(reports::ReportFile::create(dir.file("missing") + "/r.html"));
  EXPECT_FALSE(reports::ReportFile::create(dir.path().string())) << "a folder of that name";
  EXPECT_FALSE(reports::ReportFile::create(""));
}

TEST(ReportPage, CaptionCellsKeepTheDoubledPercentSignAndNumbersDoNot) {
  EXPECT_EQ(reports::plainCell(5, reports::kWhite, "&nbsp;"),
            "    <td width=5%% valign=top bgcolor=#FFFFFF><div align=center>&nbsp;</div></td>\n");
  EXPECT_EQ(reports::formattedCell(15, reports::kGreen, reports::measureText(-0.0004)),
            "    <td width=15% valign=top bgcolor=#99FF99><div align=center>-0.000</div></td>\n");
  EXPECT_EQ(reports::measureText(1e300).size(), 305u) << "the longest numbers fit";
}

}  // namespace
