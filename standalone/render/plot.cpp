#include "standalone/render/plot.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "standalone/render/file_canvas.h"
#include "standalone/render/render_error.h"
#include "standalone/render/scene.h"
#include "standalone/render/scene_builder.h"

namespace standalone {

namespace {

constexpr double kPointsPerMm = 72.0 / 25.4;

struct NamedPaper {
  const char* name;
  PaperSize size;
};
constexpr std::array kPapers{
    NamedPaper{"A0", {841, 1189}},   NamedPaper{"A1", {594, 841}},   NamedPaper{"A2", {420, 594}},
    NamedPaper{"A3", {297, 420}},    NamedPaper{"A4", {210, 297}},   NamedPaper{"A5", {148, 210}},
    NamedPaper{"B4", {250, 353}},    NamedPaper{"B5", {176, 250}},   NamedPaper{"LETTER", {215.9, 279.4}},
    NamedPaper{"LEGAL", {215.9, 355.6}}, NamedPaper{"TABLOID", {279.4, 431.8}},
};

std::string upper(std::string_view text) {
  std::string out(text);
  for (char& c : out)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return out;
}

std::optional<double> positiveNumber(std::string_view text) {
  double v = 0;
  auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
  if (ec != std::errc() || end != text.data() + text.size() || !std::isfinite(v) || v <= 0) return std::nullopt;
  return v;
}

}  // namespace

std::optional<PaperSize> paperSizeByName(std::string_view name) {
  std::string key = upper(name);
  for (const NamedPaper& p : kPapers)
    if (key == p.name) return p.size;
  std::size_t x = key.find('X');
  if (x == std::string::npos) return std::nullopt;
  std::optional<double> w = positiveNumber(std::string_view(key).substr(0, x));
  std::optional<double> h = positiveNumber(std::string_view(key).substr(x + 1));
  if (!w || !h) return std::nullopt;
  return PaperSize{*w, *h};
}

std::optional<std::optional<double>> parsePlotScale(std::string_view text) {
  if (upper(text) == "FIT") return std::optional<double>{};
  std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) {
    if (std::optional<double> v = positiveNumber(text)) return std::optional<double>{*v};
    return std::nullopt;
  }
  std::optional<double> paper = positiveNumber(text.substr(0, colon));
  std::optional<double> drawing = positiveNumber(text.substr(colon + 1));
  if (!paper || !drawing) return std::nullopt;
  return std::optional<double>{*paper / *drawing};
}

void plotDrawingToPdf(const host::Drawing& drawing, const std::filesystem::path& file, const PlotSettings& s) {
  double shortSide = std::min(s.paper.widthMm, s.paper.heightMm), longSide = std::max(s.paper.widthMm, s.paper.heightMm);
  double paperW = s.landscape ? longSide : shortSide, paperH = s.landscape ? shortSide : longSide;
  double usableW = paperW - 2 * s.marginMm, usableH = paperH - 2 * s.marginMm;
  if (!(usableW > 0 && usableH > 0 && s.marginMm >= 0))
    throw RenderError("Cannot plot to \"" + file.string() + "\": the margins leave no paper");
  if (s.scale && !(*s.scale > 0 && std::isfinite(*s.scale)))
    throw RenderError("Cannot plot to \"" + file.string() + "\": the scale must be positive");

  SceneOptions options;
  options.pointMode = s.pointMode;
  options.pointSize = s.pointSize;
  Scene scene = buildScene(drawing, options);
  // The area: the window asked for, else the drawing's extents (the unit
  // square about the origin when the drawing is empty).
  ge::Point2d center;
  double areaW = 1, areaH = 1;
  if (s.window) {
    center = s.window->center;
    areaW = s.window->width;
    areaH = s.window->height;
  } else if (Box2d box = scene.extents(); box.isValid()) {
    center = {(box.minX + box.maxX) / 2, (box.minY + box.maxY) / 2};
    areaW = box.maxX - box.minX;
    areaH = box.maxY - box.minY;
  }
  // Paper millimetres per drawing unit; a line or a point is fitted by its one extent.
  double mmPerUnit = 0;
  if (s.scale) {
    mmPerUnit = *s.scale;
  } else {
    double byW = areaW > 0 ? usableW / areaW : INFINITY, byH = areaH > 0 ? usableH / areaH : INFINITY;
    mmPerUnit = std::min(byW, byH);
    if (!std::isfinite(mmPerUnit)) mmPerUnit = 1;
  }

  PageRect page{0, 0, paperW * kPointsPerMm, paperH * kPointsPerMm};
  ViewTransform view;
  view.scale = mmPerUnit * kPointsPerMm;
  view.center = center;
  view.pageCenter = {page.width / 2, page.height / 2};
  // Paper outside the margins, and outside the window when one is plotted, stays blank.
  PageRect clip{s.marginMm * kPointsPerMm, s.marginMm * kPointsPerMm, usableW * kPointsPerMm, usableH * kPointsPerMm};
  if (s.window) {
    double halfW = s.window->width * view.scale / 2, halfH = s.window->height * view.scale / 2;
    double left = std::max(clip.x, view.pageCenter.x - halfW), top = std::max(clip.y, view.pageCenter.y - halfH);
    double right = std::min(clip.x + clip.width, view.pageCenter.x + halfW);
    double bottom = std::min(clip.y + clip.height, view.pageCenter.y + halfH);
    clip = {left, top, std::max(0.0, right - left), std::max(0.0, bottom - top)};
  }
  auto canvas = openPdfCanvas(file, page.width, page.height);
  // Fitted extents lie inside the margins already; a clip would make cairo
  // repeat it, with the whole graphics state, before every stroke.
  if (s.window || s.scale) canvas->clipToPage(clip);
  canvas->setView(view);
  paintScene(scene, *canvas, {view.scale, view.viewHeight(page)});
  canvas->finish();
}

}  // namespace standalone
