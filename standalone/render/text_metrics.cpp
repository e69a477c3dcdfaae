#include "standalone/render/text_metrics.h"

#include <cairo.h>

#include "standalone/render/font_choice.h"
#include "standalone/render/text_metrics.h"

namespace standalone {

namespace {

// Splits text into pieces that may end a line: a word with its following
// spaces, or a single CJK character.
std::vector<std::string> breakPieces(const std::string& utf8) {
  std::vector<std::string> pieces(1);
  for (std::size_t i = 0; i < utf8.size();) {
    auto c = static_cast<unsigned char>(utf8[i]);
    std::size_t len = c < 0x80 ? 1 : (c >> 5) == 6 ? 2 : (c >> 4) == 14 ? 3 : (c >> 3) == 30 ? 4 : 1;
    std::string ch = utf8.substr(i, len);
    bool cjk = c >= 0xE3 && len >= 3;  // U+3000 and above: CJK punctuation, kana, ideographs
    bool afterSpace = !pieces.back().empty() && pieces.back().back() == ' ';
    if ((cjk || (afterSpace && ch != " ")) && !pieces.back().empty()) pieces.emplace_back();
    pieces.back() += ch;
    if (cjk) pieces.emplace_back();
    i += len;
  }
  if (pieces.back().empty()) pieces.pop_back();
  return pieces;
}

std::string trimRight(std::string s) {
  while (!s.empty() && s.back() == ' ') s.pop_back();
  return s;
}

}  // namespace

struct TextMeasurer::Cairo {
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1);
  cairo_t* cr = cairo_create(surface);
  FontChooser fonts;
  ~Cairo() {
    cairo_destroy(cr);
    cairo_surface_destroy(surface);
  }
};

TextMeasurer::TextMeasurer() : cairo_(std::make_unique<Cairo>()) {}
TextMeasurer::~TextMeasurer() = default;

double TextMeasurer::advance(const std::string& utf8, double capHeight) {
  if (utf8.empty()) return 0;
  cairo_t* cr = cairo_->cr;
  cairo_save(cr);
  cairo_set_font_size(cr, 100);
  // Sizes come from the default face's capital, as the canvas sets them.
  cairo_text_extents_t cap, text;
  cairo_->fonts.select(cr, "H");
  cairo_text_extents(cr, "H", &cap);
  cairo_->fonts.select(cr, utf8);
  cairo_text_extents(cr, utf8.c_str(), &text);
  cairo_restore(cr);
  return cap.height > 0 ? text.x_advance / cap.height * capHeight : 0;
}

std::vector<std::string> TextMeasurer::wrap(const std::string& utf8, double capHeight, double maxWidth) {
  std::vector<std::string> lines;
  std::string current;
  for (const auto& piece : breakPieces(utf8)) {
    std::string candidate = current + piece;
    if (!current.empty() && advance(trimRight(candidate), capHeight) > maxWidth) {
      lines.push_back(trimRight(current));
      current = piece;
    } else {
      current = candidate;
    }
  }
  if (!current.empty() || lines.empty()) lines.push_back(trimRight(current));
  return lines;
}

}  // namespace standalone
