#pragma once
// A report page built here from the page format's own templates, separately
// from the code that writes reports, to compare written pages byte for byte.
#include <cstdio>
#include <iconv.h>
#include <string>
#include <vector>

namespace commands_test {

class ExpectedPage {
 public:
  ExpectedPage(const std::string& fullPath, const std::string& caption) {
    text_ = "<html>\n<head>\n<meta http-equiv=\"Content-Type\" content=\"text/html; charset=gb2312\">\n";
    text_ += "<title>" + fullPath +
             "</title>\n<style type=\"text/css\">\n<!--\n.STYLE1 {font-size: 18px}\n-->\n</style>\n</head>\n<body>\n"
             "<p align=center class=STYLE1>" +
             caption + "</p>\n";
    text_ += "<table border=1 cellspacing=0 bordercolor=#000000 width = 100% style=border-collapse:collapse>\n";
  }

  // A row of cells; a cell's content is a caption word or "&nbsp;" when it
  // is not a number, and goes through printf when it is.
  struct Cell {
    int width;
    enum Kind { kWord, kIndex, kMeasure } kind;
    std::string word;
    double value = 0;
  };
  static Cell word(int width, const std::string& w) { return {width, Cell::kWord, w}; }
  static Cell blank(int width) { return {width, Cell::kWord, "&nbsp;"}; }
  static Cell index(int width, int n) { return {width, Cell::kIndex, "", double(n)}; }
  static Cell measure(int width, double v) { return {width, Cell::kMeasure, "", v}; }

  void row(const std::vector<Cell>& cells, const char* colour = "#FFFFFF") {
    text_ += "  <tr>\n";
    for (const Cell& c : cells) {
      // The template of the cell, its doubled percent sign included.
      std::string tmpl = "    <td width=" + std::to_string(c.width) + "%% valign=top bgcolor=" + colour +
                         "><div align=center>";
      char buf[512];
      if (c.kind == Cell::kWord) {
        text_ += tmpl + c.word + "</div></td>\n";
      } else if (c.kind == Cell::kIndex) {
        std::snprintf(buf, sizeof buf, (tmpl + "%d</div></td>\n").c_str(), int(c.value));
        text_ += buf;
      } else {
        std::snprintf(buf, sizeof buf, (tmpl + "%.3f</div></td>\n").c_str(), c.value);
        text_ += buf;
      }
    }
    text_ += "  </tr>\n";
  }

  // The page's bytes: code page 936, CR LF line ends.
  std::string bytes() const {
    std::string page = text_ + "</table>\n" + "<br>\n" + "</body>\n" + "</html>\n";
    std::string crlf;
    for (char c : page) {
      if (c == '\n') crlf += '\r';
      crlf += c;
    }
    iconv_t cd = iconv_open("GBK", "UTF-8");
    std::string out(crlf.size() * 2, '\0');
    char* in = crlf.data();
    char* o = out.data();
    std::size_t inLeft = crlf.size(), outLeft = out.size();
    iconv(cd, &in, &inLeft, &o, &outLeft);
    iconv_close(cd);
    out.resize(out.size() - outLeft);
    return out;
  }

 private:
  std::string text_;
};

}  // namespace commands_test
