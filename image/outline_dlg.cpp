#include "image/outline_dlg.h"

#include <cmath>
#include <filesystem>

#include "commands/thinning.h"
#include "frame/output.h"
#include "frame/prompts.h"
#include "geom/curve_builders.h"
#include "geom/curve_kind.h"
#include "image/external_trace.h"

namespace image {

namespace {

constexpr frame::Text kNotAPicture{"Load image error 2!", "载入图片错误2!"};
constexpr frame::Text kNoFileChosen{"No image file selected!", "未选中图像文件！"};
constexpr frame::Text kLoadFirst{"Please load the picture first", "请先载入图片"};
constexpr frame::Text kConvertError{"Error converting picture!", "转换图片错误！"};
constexpr frame::Text kCornerPrompt{"\nPlease specify the lower-left corner>>", "\n请指定左下角点>>"};
constexpr frame::Text kWidthPrompt{"\nPlease specify the width>>", "\n请指定宽度>>"};

// Thins a closed ring with the polyline thinning, the ring closed by its first point for the passes.
std::vector<ge::Point2d> thinRing(const std::vector<ge::Point2d>& ring, double merge) {
  if (merge <= 0 || ring.size() < 4) return ring;
  ge::PointList open;
  for (const ge::Point2d& p : ring) open.push_back({p.x, p.y, 0});
  open.push_back(open.front());
  ge::PointList thin = commands::thinningPasses(open, merge);
  if (thin.size() > 1 && thin.back().distanceTo(thin.front()) < 1e-12) thin.pop_back();
  if (thin.size() < 3) return ring;
  std::vector<ge::Point2d> out;
  for (const ge::Point3d& p : thin) out.push_back({p.x, p.y});
  return out;
}

// A spline fitted through the corners of a long straight piece bulges far
// from it; fit points this many pixels apart keep the curve on the outline.
constexpr double kSplineFitSpacing = 2.0;

// The ring with points added so that no piece is longer than spacing.
std::vector<ge::Point2d> densified(const std::vector<ge::Point2d>& ring, double spacing) {
  std::vector<ge::Point2d> out;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    ge::Point2d a = ring[i], b = ring[(i + 1) % ring.size()];
    int pieces = std::max(1, static_cast<int>(std::ceil(std::hypot(b.x - a.x, b.y - a.y) / spacing)));
    for (int k = 0; k < pieces; ++k)
      out.push_back({a.x + (b.x - a.x) * k / pieces, a.y + (b.y - a.y) * k / pieces});
  }
  return out;
}

}  // namespace

COutlineDlg::COutlineDlg(host::Host& host, frame::Settings& settings)
    : host_(host), settings_(settings), tracerBox_(settings.readInt(kSettingTracerBox) == 1) {}

bool COutlineDlg::loadImage(const std::string& path) {
  LoadResult result = loadPicture(path);
  if (const LoadError* error = std::get_if<LoadError>(&result)) {
    frame::messageBox(host_, error->failure == LoadFailure::kNoFile ? kNoFileChosen : kNotAPicture);
    return false;
  }
  source_ = std::move(std::get<Picture>(result));
  processed_.reset();
  return true;
}

void COutlineDlg::onColours(int count) { colours_ = frame::clampToRange(count, 2, 16); }
void COutlineDlg::onSmallestArea(int pixels) { smallestArea_ = frame::clampToRange(pixels, 1, 10000); }
void COutlineDlg::onTolerance(int tolerance) { tolerance_ = frame::clampToRange(tolerance, 0, 100); }

void COutlineDlg::onTracerBox(bool checked) {
  tracerBox_ = checked;
  settings_.writeInt(kSettingTracerBox, checked ? 1 : 0);
}

void COutlineDlg::onProcess() {
  if (source_) processed_ = classPicture(reduceColours(*source_, colours_));
}

std::vector<RegionOutline> COutlineDlg::outlines() const {
  std::vector<RegionOutline> out;
  if (!source_) return out;
  ColourClasses classes = reduceColours(*source_, colours_);
  int background = backgroundClass(classes);
  double diagonal = std::hypot(source_->width, source_->height);
  double merge = commands::thinningThresholds(diagonal, tolerance_).merge;
  TraceOptions options;
  options.speckleArea = smallestArea_;
  for (int k = 0; k < static_cast<int>(classes.palette.size()); ++k) {
    if (k == background) continue;
    for (const Outline& o : traceOutlines(classMask(classes, k), options))
      out.push_back({k, thinRing(o.points, merge)});
  }
  return out;
}

int COutlineDlg::vectorizeWithTracer() {
  std::string bmp = host_.platform.temporaryFileName(".bmp");
  bool saved = !bmp.empty() && saveBmp(shown(), bmp) && host_.platform.fileExists(bmp);
  if (!saved) {
    frame::print(host_, kConvertError);
    return 0;
  }
  bool inserted = traceBitmapFile(host_, settings_, bmp);
  std::error_code ignored;
  std::filesystem::remove(bmp, ignored);
  return inserted ? 1 : 0;
}

int COutlineDlg::onDoVectorize() {
  if (!source_) {
    frame::messageBox(host_, kLoadFirst);
    return 0;
  }
  if (tracerBox_) return vectorizeWithTracer();
  std::optional<ge::Point3d> corner = frame::askPoint(host_, kCornerPrompt);
  if (!corner) return 0;
  std::optional<double> width = frame::askDist(host_, kWidthPrompt, &*corner);
  if (!width) return 0;
  double scale = *width / source_->width;
  const bool spline = geom::curveKindIsSpline();
  int drawn = 0;
  for (const RegionOutline& o : outlines()) {
    ge::PointList points;
    for (const ge::Point2d& p : spline ? densified(o.points, kSplineFitSpacing) : o.points)
      points.push_back({corner->x + p.x * scale, corner->y + p.y * scale, corner->z});
    // A spline is fitted through the ring with its ends meeting (the builder
    // would make a closed request a polyline); a polyline is closed.
    if (spline) points.push_back(points.front());
    drawn += geom::makeCurveByPoints(host_, nullptr, points, geom::kColorCurrent, !spline, {}, {}) ? 1 : 0;
  }
  return drawn;
}

}  // namespace image
