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

struct Conversion {
  const char* from;
  const char* to;
};

TEST(CodePage, WritesTheCharacterOrAQuestionMark) {
  const Conversion cases[] = {
      {"Index width=5%", "Index width=5%"},
      {"序号", "\xD0\xF2\xBA\xC5"},
      {"Lines、Arcs", "Lines\xA1\xA2" "Arcs"},
      {"a\xF0\x9F\x98\x80" "b", "a?b"},  // no such character in the code page
      {"\xE2\x82\xAC", "\x80"},          // the euro sign of code page 936
      {"x\xE5\xBA" "y", "x?y"},          // a sequence cut short
      {"\xFF\xC0" "z", "??z"},           // bytes that are no UTF-8
  };
  for (const Conversion& c : cases) EXPECT_EQ(reports::toCodePage936(c.from), c.to) << c.from;
}

TEST(NameRule, EveryXlsBecomesHtml) {
  const Conversion cases[] = {{"/tmp/a.xls", "/tmp/a.html"},        {"a.txt", "a.txt"}, {"x.xls.xls", "x.html.html"},
                              {"/d.xls/b.xlsx", "/d.html/b.htmlx"}, {"a.XLS", "a.XLS"}, {"", ""}};
  for (const Conversion& c : cases) EXPECT_EQ(reports::htmlNameFor(c.from), c.to) << c.from;
}

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
