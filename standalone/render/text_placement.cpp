#include "standalone/render/text_placement.h"

#include <cairo.h>

#include <cmath>

namespace standalone {

void TextPlacer::measureCapital(cairo_t* cr) {
  cairo_save(cr);
  cairo_identity_matrix(cr);
  fonts_.select(cr, "H");
  cairo_set_font_size(cr, 100);
  cairo_text_extents_t te;
  cairo_text_extents(cr, "H", &te);
  capRatio_ = te.height > 0 ? te.height / 100 : 0.73;
  cairo_font_extents_t fe;
  cairo_font_extents(cr, &fe);
  descentPerCap_ = fe.descent / 100 / capRatio_;
  cairo_restore(cr);
}

bool TextPlacer::place(cairo_t* cr, const TextRun& run) {
  if (run.utf8.empty() || !(run.height > 0)) return false;
  if (capRatio_ <= 0) measureCapital(cr);
  double fontSize = run.height / capRatio_;
  fonts_.select(cr, run.utf8, run.font);
  cairo_set_font_size(cr, 1.0);
  cairo_text_extents_t unit;
  cairo_text_extents(cr, run.utf8.c_str(), &unit);
  double width = unit.x_advance * fontSize * run.widthFactor;
  double sx = run.widthFactor, sy = 1;
  if (run.fitWidth > 0 && width > 0) {
    double k = run.fitWidth / width;
    sx *= k;
    if (run.fitHeightToo) sy *= k;
    width = run.fitWidth;
  }
  double height = run.height * sy;
  cairo_translate(cr, run.anchor.x, run.anchor.y);
  cairo_rotate(cr, run.rotation);
  cairo_scale(cr, run.backward ? -1 : 1, run.upsideDown ? -1 : 1);
  // Alignment shifts in the text's own frame (y up, baseline at 0).
  double dy = 0;
  switch (run.vAlign) {
    case TextVAlign::kBaseline:
      dy = 0;
      break;
    case TextVAlign::kBottom:
      dy = descentPerCap_ * height;
      break;  // about one descender below the baseline
    case TextVAlign::kMiddle:
      dy = -height / 2;
      break;
    case TextVAlign::kTop:
      dy = -height;
      break;
  }
  cairo_translate(cr, -run.hAlign * width, dy);
  // Glyphs are laid out y down: flip, stretch and slant them.
  cairo_matrix_t glyph;
  cairo_matrix_init(&glyph, fontSize * sx, 0, -std::tan(run.oblique) * fontSize * sy, -fontSize * sy, 0, 0);
  cairo_transform(cr, &glyph);
  cairo_move_to(cr, 0, 0);
  cairo_set_font_size(cr, 1.0);
  return true;
}

}  // namespace standalone
