#pragma once
// Internal to the renderer: where the glyphs of a text run go. Pictures show
// the glyphs placed here and the metafile export takes their outlines from
// the same place, so a text has one layout whatever it is drawn on.
typedef struct _cairo cairo_t;

#include "standalone/render/canvas.h"
#include "standalone/render/font_choice.h"

namespace standalone {

class TextPlacer {
 public:
  // Chooses the run's face on the context and multiplies its transform so
  // that glyphs set at font size 1 from the origin land where the run's
  // glyphs belong (alignment, rotation, mirror flags, width factor, oblique
  // angle, fitted width). The caller saves and restores the context around
  // it; false when the run shows nothing.
  bool place(cairo_t* cr, const TextRun& run);

 private:
  // Height of a capital letter per unit of font size in our default face, and
  // the depth of its descenders per capital height; measured once.
  void measureCapital(cairo_t* cr);

  FontChooser fonts_;
  double capRatio_ = 0;
  double descentPerCap_ = 0.3;
};

}  // namespace standalone
