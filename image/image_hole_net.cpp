#include "image/image_hole_net.h"

#include <algorithm>
#include <cmath>

#include "frame/output.h"
#include "frame/prompts.h"
#include "frame/selection.h"
#include "image/tone.h"

namespace image {

namespace {

constexpr frame::Text kNoFileChosen{"No image file selected!", "未选中图像文件！"};
constexpr frame::Text kCannotOpen{"GetLastError: %d -- Load image Error：%s", "GetLastError: %d -- Load image Error：%s"};
constexpr frame::Text kNotAPicture{"Load image error 2!", "载入图片错误2!"};
constexpr frame::Text kTooLarge{"The picture %s has %s pixels; at most 40,000,000 can be loaded.",
                                "图片%s有%s个像素，最多只能载入40,000,000个。"};
constexpr frame::Text kLoadFirst{"Please load the picture first", "请先载入图片"};
constexpr frame::Text kOriginPrompt{"\nPlease specify the origin>>", "\n请指定原点>>"};
constexpr frame::Text kHeightPrompt{"\nPlease specify the height>>", "\n请指定高度>>"};
constexpr frame::Text kEntityPrompt{
    "\nPlease select an entity(polyline, circle, ellipse or block) representing the hole:",
    "\n请选择一个代表网孔的物体（多段线、圆、椭圆或图块）:"};
constexpr frame::Text kPreviewFirst{"\nPlease make preview first.", "\n建议先预览调整！"};

constexpr frame::Text kDrawingProgress{"Drawing holes", "绘制网孔"};
// Nets with more holes than this show a progress meter while they are drawn.
constexpr std::size_t kProgressFromHoles = 20'000;

constexpr int kSliderMin = 0, kSliderMax = 100;

// Paints a filled ellipse (here a circle) of radius r centred at (cx, cy).
void fillDisc(Picture& canvas, double cx, double cy, double r, Rgb colour) {
  if (!(r > 0)) return;
  int x0 = std::max(0, static_cast<int>(std::floor(cx - r))), x1 = std::min(canvas.width - 1, static_cast<int>(cx + r));
  int y0 = std::max(0, static_cast<int>(std::floor(cy - r))), y1 = std::min(canvas.height - 1, static_cast<int>(cy + r));
  for (int y = y0; y <= y1; ++y)
    for (int x = x0; x <= x1; ++x) {
      double dx = x + 0.5 - cx, dy = y + 0.5 - cy;
      if (dx * dx + dy * dy <= r * r) canvas.set(x, y, colour);
    }
}

}  // namespace

bool ImageHoleNet::loadImage(const std::string& path) {
  LoadResult result = loadPicture(path);
  if (const LoadError* error = std::get_if<LoadError>(&result)) {
    showLoadError(*error, path);
    return false;
  }
  source_ = std::move(std::get<Picture>(result));
  previewed_ = false;
  retone();
  return true;
}

void ImageHoleNet::showLoadError(const LoadError& error, const std::string& path) {
  switch (error.failure) {
    case LoadFailure::kNoFile: frame::messageBox(host_, kNoFileChosen); break;
    case LoadFailure::kCannotOpen: frame::messageBox(host_, kCannotOpen, error.systemError, path); break;
    case LoadFailure::kNotAPicture: frame::messageBox(host_, kNotAPicture); break;
    case LoadFailure::kTooLarge: frame::messageBox(host_, kTooLarge, path, error.detail); break;
  }
}

void ImageHoleNet::retone() {
  if (source_) working_ = adjustTone(*source_, contrast_, brightness_);
}

void ImageHoleNet::onContrastMoved(int position) {
  contrast_ = frame::clampToRange(position, kSliderMin, kSliderMax);
  retone();
}

void ImageHoleNet::onBrightnessMoved(int position) {
  brightness_ = frame::clampToRange(position, kSliderMin, kSliderMax);
  retone();
}

void ImageHoleNet::onSizeMoved(int position) { size_ = frame::clampToRange(position, kSliderMin, kSliderMax); }

void ImageHoleNet::onRowsEdit(int rows) { rows_ = frame::clampToRange(rows, 1, kMostRows); }

void ImageHoleNet::onPreview() {
  mode_ = DisplayMode::kPreviewHoleNet;
  previewed_ = true;
}

HoleGrid ImageHoleNet::grid() const { return source_ ? holeGrid(working_, rows_, invert_) : HoleGrid{}; }

double ImageHoleNet::displayScale() const {
  if (!source_) return 1.0;
  return std::min(static_cast<double>(kPreviewWidth) / working_.width,
                  static_cast<double>(kPreviewHeight) / working_.height);
}

Picture ImageHoleNet::paint() const {
  Picture canvas = blankPicture(kPreviewWidth, kPreviewHeight, kPreviewBackground);
  if (!source_) return canvas;
  double scale = displayScale();
  if (mode_ == DisplayMode::kPreviewImage) {
    int w = std::min(kPreviewWidth, static_cast<int>(working_.width * scale));
    int h = std::min(kPreviewHeight, static_cast<int>(working_.height * scale));
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x)
        canvas.set(x, y, working_.at(std::min(working_.width - 1, static_cast<int>(x / scale)),
                                     std::min(working_.height - 1, static_cast<int>(y / scale))));
    return canvas;
  }
  double factor = sizeFactor(size_);
  for (const Hole& hole : grid().holes) fillDisc(canvas, hole.x * scale, hole.y * scale, factor * hole.size * 0.5 * scale, kPreviewHole);
  return canvas;
}

bool ImageHoleNet::chooseHoleEntity() {
  holeEntity_ = frame::pickOne(host_, kEntityPrompt, frame::PickKind::kClosedShapesAndBlocks);
  return holeEntity_ != host::kNullId;
}

int ImageHoleNet::onDoDrawing() {
  if (!source_) {
    frame::messageBox(host_, kLoadFirst);
    return 0;
  }
  std::optional<ge::Point3d> origin = frame::askPoint(host_, kOriginPrompt);
  if (!origin) return 0;
  std::optional<double> height = frame::askDist(host_, kHeightPrompt, &*origin);
  if (!height) return 0;
  origin_ = *origin;
  height_ = *height;
  if (shape_ == HoleShape::kCopy && !chooseHoleEntity()) return 0;
  if (!previewed_) frame::print(host_, kPreviewFirst);
  return drawHoles(grid());
}

int ImageHoleNet::drawHoles(const HoleGrid& grid) {
  double s = height_ / working_.height;
  double factor = sizeFactor(size_);
  std::optional<host::Entity> model;
  ge::Extents3d modelExtents;
  if (shape_ == HoleShape::kCopy) {
    model = host_.drawing.read(holeEntity_);
    if (!model) return 0;
    if (const auto* ref = std::get_if<host::BlockReference>(&model->data))
      host_.curves.getBlockReferenceExtents(*ref, host::blockContentsOf(host_.drawing), modelExtents);
    else
      host_.curves.getGeomExtents(model->data, modelExtents);
    if (!copyTransform(modelExtents, {}, 1.0)) return 0;  // an entity without size
  }
  const bool meter = grid.holes.size() > kProgressFromHoles;
  if (meter) host_.editor.setProgressMeter(kDrawingProgress.chosen(), 0, static_cast<int>(grid.holes.size()));
  int drawn = 0, done = 0;
  for (const Hole& hole : grid.holes) {
    if (meter && ++done % 1024 == 0) host_.editor.setProgressMeterPos(done);
    double extent = hole.size * s * factor;
    if (!(extent > 0)) continue;
    ge::Point3d at{origin_.x + hole.x * s, origin_.y - hole.y * s, origin_.z};
    host::Entity e;
    if (model) {
      e.props = model->props;
      e.data = model->data;
      if (host_.curves.transformBy(e.data, *copyTransform(modelExtents, at, extent)) != host::ErrorStatus::eOk) continue;
    } else {
      e.props = host_.drawing.defaultProps();
      e.data = *holeEntity(shape_, at, extent);
    }
    if (host_.drawing.append(e) == host::ErrorStatus::eOk) ++drawn;
  }
  if (meter) host_.editor.restoreStatusBar();
  return drawn;
}

}  // namespace image
