#pragma once
// Pictures of a drawing and of point lists: PNG, SVG and PDF files on a white
// page with y up. Used by PNGOUT, the --png/--svg options of the corvane
// program and the preview pictures of formula curves.
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "ge/point.h"
#include "host/drawing.h"
#include "standalone/render/render_error.h"
#include "standalone/render/view.h"

namespace standalone {

struct RenderOptions {
  int widthPx = 1600, heightPx = 1000;
  // The view to show (drawing units); without them the drawing's extents are
  // fitted with a margin.
  std::optional<ge::Point2d> viewCenter;
  std::optional<double> viewHeight;
  double marginFraction = 0.03;  // free page on each side when fitting
  int pointMode = 0;             // PDMODE
  double pointSize = 0;          // PDSIZE
};

// The view a render with these options uses: pass it to map pixels of the
// picture back to drawing coordinates (ViewTransform::toDrawing).
ViewTransform planView(const host::Drawing& drawing, const RenderOptions& options);

// Frees cairo's and fontconfig's process-wide font caches. Call once, when
// no picture is drawn any more (at program exit), so that leak checkers see
// only the memory the program itself holds.
void releaseFontCaches();

// Draws model space into a PNG / SVG / PDF file. Throws RenderError when the
// file cannot be written; the named file is then left as it was.
void renderDrawingToPng(const host::Drawing& drawing, const std::filesystem::path& file, const RenderOptions& options);
void renderDrawingToSvg(const host::Drawing& drawing, const std::filesystem::path& file, const RenderOptions& options);
void renderDrawingToPdf(const host::Drawing& drawing, const std::filesystem::path& file, const RenderOptions& options);

// Draws point lists as open polylines (XY, z ignored), fitted to the picture.
void renderPointListsToPng(const std::vector<ge::PointList>& lists, const std::filesystem::path& file, int widthPx,
                           int heightPx);

// One picture of a review sheet: a caption under the curves it shows.
struct SheetCell {
  std::string caption;  // UTF-8
  std::vector<ge::PointList> lists;
};

// A sheet of square cells, columns across, rows as many as needed; each cell
// shows its point lists fitted above its caption.
void renderSheetToPng(const std::vector<SheetCell>& cells, const std::filesystem::path& file, int columns, int cellPx);

}  // namespace standalone
