#pragma once
// Plots: the drawing, or a window of it such as the current view, on a sheet
// of paper as a PDF page, at a scale or fitted. The file is written aside and
// renamed over the target only when complete.
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "ge/point.h"
#include "host/drawing.h"
#include "standalone/render/render.h"

namespace standalone {

struct PaperSize {
  double widthMm = 210, heightMm = 297;  // portrait
};

// "A0".."A5", "B4", "B5", "Letter", "Legal", "Tabloid" (any case), or
// "WIDTHxHEIGHT" in millimetres ("420x297"); nothing for anything else.
std::optional<PaperSize> paperSizeByName(std::string_view name);

// A rectangle of the drawing to plot (drawing units).
struct PlotWindow {
  ge::Point2d center;
  double width = 0, height = 0;
};

struct PlotSettings {
  PaperSize paper;
  bool landscape = false;  // the paper's long side across
  // Paper millimetres per drawing unit (1:100 with millimetre units is
  // 0.01); nothing: the area is fitted into the paper inside the margins.
  std::optional<double> scale;
  double marginMm = 10;
  // What to plot: nothing for the drawing's extents.
  std::optional<PlotWindow> window;
  int pointMode = 0;       // PDMODE
  double pointSize = 0;    // PDSIZE
};

// Model space on one PDF page. Throws RenderError when the settings make no
// page (a margin that leaves no paper, a scale that is not positive) or the
// file cannot be written; the named file is then left as it was.
void plotDrawingToPdf(const host::Drawing& drawing, const std::filesystem::path& file, const PlotSettings& settings);

// A plot scale as typed: "fit", "1:100" (paper millimetres : drawing units),
// "2:1" or a plain factor ("0.01"). Nothing for anything else; a scale that is
// nothing inside means fit.
std::optional<std::optional<double>> parsePlotScale(std::string_view text);

}  // namespace standalone
