#pragma once
// Widths of text as the renderer's fonts set it, for laying out MTEXT.
#include <memory>
#include <string>
#include <vector>

namespace standalone {

class TextMeasurer {
 public:
  TextMeasurer();
  ~TextMeasurer();
  TextMeasurer(const TextMeasurer&) = delete;
  TextMeasurer& operator=(const TextMeasurer&) = delete;

  // Advance width of one line of text at a capital height, both in drawing units.
  double advance(const std::string& utf8, double capHeight);

  // Breaks a line into lines no wider than maxWidth (drawing units) at spaces,
  // and between CJK characters, which need none. A word wider than maxWidth
  // stands on its own line.
  std::vector<std::string> wrap(const std::string& utf8, double capHeight, double maxWidth);

 private:
  struct Cairo;
  std::unique_ptr<Cairo> cairo_;
};

}  // namespace standalone
