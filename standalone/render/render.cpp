#include "standalone/render/render.h"

#include <algorithm>

#include "standalone/render/file_canvas.h"
#include "standalone/render/scene.h"
#include "standalone/render/scene_builder.h"

namespace standalone {

namespace {

// Margin around point-list previews and sheet cells, as a share of the picture.
constexpr double kPreviewMargin = 0.05;
// Caption band of a sheet cell: text size and band height in pixels.
constexpr double kCaptionPx = 13;
constexpr double kCaptionBandPx = 22;
// Line width of preview curves in pixels.
constexpr double kPreviewLineWidthPx = 1.5;
// The thin frame that separates sheet cells.
constexpr Rgb kCellFrameColor{0.8, 0.8, 0.8};

PageRect pageOf(const RenderOptions& o) {
  return {0, 0, static_cast<double>(o.widthPx), static_cast<double>(o.heightPx)};
}

ViewTransform viewFor(const Scene& scene, const RenderOptions& o) {
  PageRect page = pageOf(o);
  if (o.viewCenter && o.viewHeight && *o.viewHeight > 0) return viewAt(*o.viewCenter, *o.viewHeight, page);
  ViewTransform v = fitView(scene.extents(), page, o.marginFraction);
  if (o.viewCenter) v.center = *o.viewCenter;
  if (o.viewHeight && *o.viewHeight > 0) v = viewAt(v.center, *o.viewHeight, page);
  return v;
}

SceneOptions sceneOptions(const RenderOptions& o) {
  SceneOptions s;
  s.pointMode = o.pointMode;
  s.pointSize = o.pointSize;
  return s;
}

void renderDrawing(const host::Drawing& drawing, const std::filesystem::path& file, const RenderOptions& o,
                   FileFormat format) {
  auto canvas = openFileCanvas(format, file, o.widthPx, o.heightPx);
  Scene scene = buildScene(drawing, sceneOptions(o));
  ViewTransform view = viewFor(scene, o);
  canvas->setView(view);
  paintScene(scene, *canvas, {view.scale, view.viewHeight(pageOf(o))});
  canvas->finish();
}

Scene pointListScene(const std::vector<ge::PointList>& lists) {
  Scene scene;
  for (const auto& list : lists) {
    if (list.empty()) continue;
    Path path;
    path.moveTo({list[0].x, list[0].y});
    for (std::size_t i = 1; i < list.size(); ++i) path.lineTo({list[i].x, list[i].y});
    scene.items.push_back({kBlack, kPreviewLineWidthPx, ScenePath{std::move(path), false}});
  }
  return scene;
}

// Outlines a page rectangle (pixels) in a light grey.
void framePageRect(Canvas& canvas, const PageRect& r) {
  // With unit scale and both centres at the origin, drawing (x, -y) is page pixel (x, y).
  ViewTransform page;
  canvas.setView(page);
  canvas.setColor(kCellFrameColor);
  canvas.setLineWidth(1);
  canvas.moveTo({r.x + 0.5, -(r.y + 0.5)});
  canvas.lineTo({r.x + r.width - 0.5, -(r.y + 0.5)});
  canvas.lineTo({r.x + r.width - 0.5, -(r.y + r.height - 0.5)});
  canvas.lineTo({r.x + 0.5, -(r.y + r.height - 0.5)});
  canvas.closePath();
  canvas.stroke();
}

}  // namespace

ViewTransform planView(const host::Drawing& drawing, const RenderOptions& options) {
  return viewFor(buildScene(drawing, sceneOptions(options)), options);
}

void renderDrawingToPng(const host::Drawing& drawing, const std::filesystem::path& file, const RenderOptions& options) {
  renderDrawing(drawing, file, options, FileFormat::kPng);
}

void renderDrawingToSvg(const host::Drawing& drawing, const std::filesystem::path& file, const RenderOptions& options) {
  renderDrawing(drawing, file, options, FileFormat::kSvg);
}

void renderDrawingToPdf(const host::Drawing& drawing, const std::filesystem::path& file, const RenderOptions& options) {
  renderDrawing(drawing, file, options, FileFormat::kPdf);
}

void renderPointListsToPng(const std::vector<ge::PointList>& lists, const std::filesystem::path& file, int widthPx,
                           int heightPx) {
  auto canvas = openFileCanvas(FileFormat::kPng, file, widthPx, heightPx);
  Scene scene = pointListScene(lists);
  PageRect page{0, 0, static_cast<double>(widthPx), static_cast<double>(heightPx)};
  ViewTransform view = fitView(scene.extents(), page, kPreviewMargin);
  canvas->setView(view);
  paintScene(scene, *canvas, {view.scale, view.viewHeight(page)});
  canvas->finish();
}

void renderSheetToPng(const std::vector<SheetCell>& cells, const std::filesystem::path& file, int columns, int cellPx) {
  columns = std::max(1, columns);
  int rows = std::max(1, static_cast<int>((cells.size() + static_cast<std::size_t>(columns) - 1) / columns));
  auto canvas = openFileCanvas(FileFormat::kPng, file, columns * cellPx, rows * cellPx);
  for (std::size_t i = 0; i < cells.size(); ++i) {
    double x = static_cast<double>(i % columns) * cellPx, y = static_cast<double>(i / columns) * cellPx;
    double captionBand = std::min(kCaptionBandPx, cellPx / 3.0);
    PageRect picture{x, y, static_cast<double>(cellPx), cellPx - captionBand};
    framePageRect(*canvas, {x, y, static_cast<double>(cellPx), static_cast<double>(cellPx)});
    Scene scene = pointListScene(cells[i].lists);
    ViewTransform view = fitView(scene.extents(), picture, kPreviewMargin);
    canvas->setView(view);
    paintScene(scene, *canvas, {view.scale, view.viewHeight(picture)});
    canvas->setColor(kBlack);
    canvas->pageText(cells[i].caption, {x + 4, y + cellPx - captionBand + 2}, std::min(kCaptionPx, captionBand * 0.7));
  }
  canvas->finish();
}

}  // namespace standalone
