#include "standalone/render/scene.h"

#include <cmath>
#include <numbers>

namespace standalone {

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

// Angle a moved into [from, from + 2 pi).
double angleFrom(double from, double a) {
  double d = std::fmod(a - from, kTwoPi);
  return from + (d < 0 ? d + kTwoPi : d);
}

void addArcExtents(const PathArc& a, Box2d& box) {
  // A counter-clockwise sweep from lo to hi covers the same points as the arc.
  double lo = a.ccw ? a.startAngle : a.endAngle, hi = a.ccw ? a.endAngle : a.startAngle;
  double sweep = hi - lo;
  if (std::abs(sweep) < kTwoPi) sweep = angleFrom(0, sweep);
  auto addAt = [&](double t) { box.add(a.center.x + a.radius * std::cos(t), a.center.y + a.radius * std::sin(t)); };
  addAt(lo);
  addAt(lo + sweep);
  for (int q = 0; q < 4; ++q) {
    double t = angleFrom(lo, q * std::numbers::pi / 2);
    if (t - lo <= sweep) addAt(t);
  }
}

// Rough box of a text run: Latin glyphs about 0.75 of the capital height
// wide, CJK ones (three-byte UTF-8 and up) about 1.4.
void addTextExtents(const TextRun& t, Box2d& box) {
  double ems = 0;
  for (unsigned char c : t.utf8) ems += (c & 0xC0) == 0x80 ? 0.0 : c >= 0xE3 ? 1.4 : 0.75;
  double w = t.fitWidth > 0 ? t.fitWidth : t.height * t.widthFactor * ems;
  double h = t.height;
  double x0 = -t.hAlign * w, y0 = t.vAlign == TextVAlign::kTop ? -h : t.vAlign == TextVAlign::kMiddle ? -h / 2 : 0;
  double c = std::cos(t.rotation), s = std::sin(t.rotation);
  for (double dx : {x0, x0 + w})
    for (double dy : {y0 - 0.25 * h, y0 + h}) box.add(t.anchor.x + c * dx - s * dy, t.anchor.y + s * dx + c * dy);
}

bool isFinite(const ge::Point2d& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

// A path with a non-finite number anywhere (broken data) is not drawn at all.
bool isFinite(const Path& path) {
  for (const auto& op : path.ops) {
    if (auto* m = std::get_if<PathMove>(&op); m && !isFinite(m->to)) return false;
    if (auto* l = std::get_if<PathLine>(&op); l && !isFinite(l->to)) return false;
    if (auto* a = std::get_if<PathArc>(&op); a && !(isFinite(a->center) && std::isfinite(a->radius) &&
                                                    std::isfinite(a->startAngle) && std::isfinite(a->endAngle)))
      return false;
  }
  return true;
}

bool isFinite(const TextRun& t) {
  return isFinite(t.anchor) && std::isfinite(t.height) && std::isfinite(t.rotation) && std::isfinite(t.widthFactor) &&
         std::isfinite(t.oblique) && std::isfinite(t.fitWidth);
}

void tracePath(const Path& path, Canvas& canvas) {
  for (const auto& op : path.ops) {
    if (auto* m = std::get_if<PathMove>(&op))
      canvas.moveTo(m->to);
    else if (auto* l = std::get_if<PathLine>(&op))
      canvas.lineTo(l->to);
    else if (auto* a = std::get_if<PathArc>(&op))
      canvas.arc(a->center, a->radius, a->startAngle, a->endAngle, a->ccw);
    else
      canvas.closePath();
  }
}

// Strokes a path in pieces of a few hundred operations. Stroking one long,
// self-crossing path (a helix of many turns seen from above) costs time
// quadratic in its crossings; pieces look the same and stay fast.
// Straight pieces shorter than this many pixels are merged into the next
// one: they change nothing visible and dense sampling would cost dearly.
constexpr double kMinPiecePx = 0.25;

void strokeInPieces(const Path& path, Canvas& canvas, double pixelsPerUnit) {
  constexpr std::size_t kOpsPerStroke = 256;
  double minPiece = kMinPiecePx / pixelsPerUnit;
  std::size_t sinceStroke = 0;
  ge::Point2d subpathStart, current;
  bool split = false;  // the current sub-path was cut, so a close must be drawn as a line
  for (std::size_t i = 0; i < path.ops.size(); ++i) {
    const PathOp& op = path.ops[i];
    if (auto* m = std::get_if<PathMove>(&op)) {
      canvas.moveTo(m->to);
      subpathStart = current = m->to;
      split = false;
    } else if (auto* l = std::get_if<PathLine>(&op)) {
      bool nextIsLine = i + 1 < path.ops.size() && std::holds_alternative<PathLine>(path.ops[i + 1]);
      if (nextIsLine && std::hypot(l->to.x - current.x, l->to.y - current.y) < minPiece) continue;
      canvas.lineTo(l->to);
      current = l->to;
    } else if (auto* a = std::get_if<PathArc>(&op)) {
      canvas.arc(a->center, a->radius, a->startAngle, a->endAngle, a->ccw);
      current = {a->center.x + a->radius * std::cos(a->endAngle), a->center.y + a->radius * std::sin(a->endAngle)};
    } else {
      if (split)
        canvas.lineTo(subpathStart);
      else
        canvas.closePath();
      current = subpathStart;
    }
    if (++sinceStroke >= kOpsPerStroke) {
      canvas.stroke();
      canvas.moveTo(current);
      sinceStroke = 0;
      split = true;
    }
  }
  canvas.stroke();
}

void paintMarker(const PointMarker& m, Canvas& canvas, double viewHeight) {
  double size = markerSize(m, viewHeight), h = size / 2;
  double c = std::cos(m.rotation), s = std::sin(m.rotation);
  auto at = [&](double dx, double dy) { return ge::Point2d{m.at.x + c * dx - s * dy, m.at.y + s * dx + c * dy}; };
  auto seg = [&](double x0, double y0, double x1, double y1) {
    canvas.moveTo(at(x0, y0));
    canvas.lineTo(at(x1, y1));
  };
  switch (m.mode & 7) {
    case 0:
      seg(0, 0, 0, 0);
      break;  // a dot: round caps make a zero-length stroke visible
    case 2:
      seg(-h, 0, h, 0), seg(0, -h, 0, h);
      break;
    case 3:
      seg(-h, -h, h, h), seg(-h, h, h, -h);
      break;
    case 4:
      seg(0, 0, 0, h);
      break;
    default:
      break;  // 1: nothing at the point itself
  }
  if (m.mode & 32) {
    canvas.moveTo(at(h, 0));
    canvas.arc(m.at, h, m.rotation, m.rotation + kTwoPi, true);
  }
  if (m.mode & 64) {
    canvas.moveTo(at(-h, -h));
    canvas.lineTo(at(h, -h));
    canvas.lineTo(at(h, h));
    canvas.lineTo(at(-h, h));
    canvas.closePath();
  }
  canvas.stroke();
}

}  // namespace

double markerSize(const PointMarker& m, double viewHeight) {
  if (m.size > 0) return m.size;
  if (m.size < 0) return -m.size / 100 * viewHeight;
  return 0.05 * viewHeight;
}

void addPathExtents(const Path& path, Box2d& box) {
  for (const auto& op : path.ops) {
    if (auto* m = std::get_if<PathMove>(&op))
      box.add(m->to.x, m->to.y);
    else if (auto* l = std::get_if<PathLine>(&op))
      box.add(l->to.x, l->to.y);
    else if (auto* a = std::get_if<PathArc>(&op))
      addArcExtents(*a, box);
  }
}

Box2d Scene::extents() const {
  Box2d box;
  for (const auto& item : items) {
    if (auto* p = std::get_if<ScenePath>(&item.shape))
      addPathExtents(p->path, box);
    else if (auto* t = std::get_if<TextRun>(&item.shape))
      addTextExtents(*t, box);
    else if (auto* m = std::get_if<PointMarker>(&item.shape))
      box.add(m->at.x, m->at.y);
  }
  return box;
}

std::vector<Box2d> itemBoxes(const Scene& scene) {
  std::vector<Box2d> boxes;
  boxes.reserve(scene.items.size());
  for (const auto& item : scene.items) {
    Box2d box;
    if (auto* p = std::get_if<ScenePath>(&item.shape))
      addPathExtents(p->path, box);
    else if (auto* t = std::get_if<TextRun>(&item.shape))
      addTextExtents(*t, box);
    else if (auto* m = std::get_if<PointMarker>(&item.shape))
      box.add(m->at.x, m->at.y);
    boxes.push_back(box);
  }
  return boxes;
}

namespace {

bool overlaps(const Box2d& a, const Box2d& b) {
  return a.minX <= b.maxX && b.minX <= a.maxX && a.minY <= b.maxY && b.minY <= a.maxY;
}

// A text too small to read: a line through the middle of where it stands.
void paintTextStroke(const TextRun& t, Canvas& canvas) {
  double ems = 0;
  for (unsigned char c : t.utf8) ems += (c & 0xC0) == 0x80 ? 0.0 : c >= 0xE3 ? 1.4 : 0.75;
  double w = t.fitWidth > 0 ? t.fitWidth : t.height * t.widthFactor * ems;
  double x0 = -t.hAlign * w;
  double y = t.vAlign == TextVAlign::kTop ? -t.height / 2 : t.vAlign == TextVAlign::kMiddle ? 0 : t.height / 2;
  double c = std::cos(t.rotation), s = std::sin(t.rotation);
  auto at = [&](double dx) { return ge::Point2d{t.anchor.x + c * dx - s * y, t.anchor.y + s * dx + c * y}; };
  canvas.moveTo(at(x0));
  canvas.lineTo(at(x0 + w));
  canvas.stroke();
}

}  // namespace

void paintScene(const Scene& scene, Canvas& canvas, const PaintScale& scale) {
  double viewHeight = scale.viewHeight;
  bool cull = scale.visible && scale.boxes && scale.boxes->size() == scene.items.size();
  for (std::size_t i = 0; i < scene.items.size(); ++i) {
    const SceneItem& item = scene.items[i];
    if (cull && (*scale.boxes)[i].isValid() && !overlaps((*scale.boxes)[i], *scale.visible)) continue;
    canvas.setColor(item.color);
    canvas.setLineWidth(item.lineWidthPx);
    if (auto* p = std::get_if<ScenePath>(&item.shape)) {
      if (!isFinite(p->path)) continue;
      if (p->filled) {
        canvas.beginFill();
        tracePath(p->path, canvas);
        canvas.fill();
      } else {
        strokeInPieces(p->path, canvas, scale.pixelsPerUnit);
      }
    } else if (auto* t = std::get_if<TextRun>(&item.shape)) {
      if (!isFinite(*t)) continue;
      if (t->height * scale.pixelsPerUnit < scale.smallestTextPx) paintTextStroke(*t, canvas);
      else canvas.text(*t);
    } else if (auto* m = std::get_if<PointMarker>(&item.shape)) {
      if (isFinite(m->at) && std::isfinite(m->rotation) && std::isfinite(markerSize(*m, viewHeight)))
        paintMarker(*m, canvas, viewHeight);
    }
  }
}

}  // namespace standalone
