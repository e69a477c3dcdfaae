#pragma once
// The one drawing surface behind every output: PNG, SVG and PDF files here,
// and any screen view that implements it. Coordinates are drawing units in the
// XY plane (y up); the canvas maps them to the page through its view. Line
// widths are in page pixels so that thin lines stay visible at any zoom.
#include <string>

#include "ge/point.h"
#include "standalone/render/color.h"
#include "standalone/render/view.h"

namespace standalone {

enum class TextVAlign { kBaseline, kBottom, kMiddle, kTop };

// A single line of text placed in drawing units.
struct TextRun {
  std::string utf8;
  ge::Point2d anchor;       // the alignment point
  double height = 1;        // capital height in drawing units
  double rotation = 0;      // radians, counter-clockwise from +X
  double widthFactor = 1;   // horizontal stretch of the glyphs
  double oblique = 0;       // radians, slant of the glyphs to the right
  bool backward = false;    // mirrored left to right
  bool upsideDown = false;  // mirrored top to bottom
  double hAlign = 0;        // 0 anchor at the left end, 0.5 centre, 1 right end
  TextVAlign vAlign = TextVAlign::kBaseline;
  // When set, the run is stretched to this width (drawing units) along its
  // direction; with fitHeightToo the height scales with it (the "aligned" mode).
  double fitWidth = 0;
  bool fitHeightToo = false;
  // The font its text style names (a family, or a font file such as
  // "romans.shx" or "arial.ttf"); empty: our default family.
  std::string font;
};

class Canvas {
 public:
  virtual ~Canvas() = default;

  // The view used for the following drawing calls.
  virtual void setView(const ViewTransform& view) = 0;
  virtual void setColor(const Rgb& color) = 0;
  // Width of stroked lines in page pixels.
  virtual void setLineWidth(double px) = 0;

  virtual void moveTo(const ge::Point2d& p) = 0;
  virtual void lineTo(const ge::Point2d& p) = 0;
  // Continues the path along a circular arc (angles in radians from +X, the
  // sweep counter-clockwise when ccw), joined by a straight piece from the
  // current point to the arc's start.
  virtual void arc(const ge::Point2d& center, double radius, double startAngle, double endAngle, bool ccw) = 0;
  virtual void closePath() = 0;
  // Strokes and clears the current path.
  virtual void stroke() = 0;
  // Fills and clears the current path; overlapping sub-paths make holes (even-odd rule).
  virtual void fill() = 0;
  // Says that the path traced next is to be filled: a canvas that gathers
  // strokes into one path paints them first.
  virtual void beginFill() {}
  // Fills the whole page with a colour.
  virtual void paintBackground(const Rgb& color) = 0;

  virtual void text(const TextRun& run) = 0;
  // A caption in page pixels at a page position (top-left of the text box).
  virtual void pageText(const std::string& utf8, const ge::Point2d& topLeftPx, double sizePx) = 0;
};

}  // namespace standalone
