// Text, MTEXT, point glyphs, hatches and image frames as scene items.
#include <cmath>
#include <numbers>

#include "standalone/render/emitter.h"
#include "standalone/render/nurbs.h"
#include "standalone/render/projection.h"
#include "standalone/text/text_codes.h"

namespace standalone {

namespace {

// Distance between MTEXT baselines per unit of text height (line spacing factor 1).
constexpr double kMTextLinePitch = 5.0 / 3.0;

enum TextJustify { kLeft = 0, kCenter = 1, kRight = 2, kAligned = 3, kMiddle = 4, kFit = 5 };

std::string fontOf(const std::string& style, const AnnotationStyle& annotation) {
  return annotation.fontOf ? annotation.fontOf(style) : std::string();
}

void emit(const host::Text& t, const Emitter& out, const AnnotationStyle& style) {
  ge::Matrix3d ocs = ocsToWorld(t.normal);
  TextRun run;
  run.utf8 = plainText(t.text);
  run.font = fontOf(t.style, style);
  run.height = t.height;
  run.widthFactor = t.widthFactor > 0 ? t.widthFactor : 1;
  run.oblique = t.oblique;
  run.backward = (t.mirrorFlags & 2) != 0;
  run.upsideDown = (t.mirrorFlags & 4) != 0;
  ge::Point3d anchor = t.position;
  ge::Vector3d dir = ocs.apply(ge::Vector3d{std::cos(t.rotation), std::sin(t.rotation), 0});
  if (t.horizontalJustify == kAligned || t.horizontalJustify == kFit) {
    // The text runs from the first to the second alignment point.
    ge::Vector3d span = t.alignmentPoint - t.position;
    if (span.length() > 0) {
      // A backward text still starts at the first point: its mirrored glyphs run back along the span.
      dir = run.backward ? -span : span;
      run.fitWidth = span.length();
      run.fitHeightToo = t.horizontalJustify == kAligned;
    }
  } else if (t.horizontalJustify != kLeft || t.verticalJustify != 0) {
    anchor = t.alignmentPoint;
    run.hAlign = t.horizontalJustify == kRight ? 1 : t.horizontalJustify == kLeft ? 0 : 0.5;
    run.vAlign = t.horizontalJustify == kMiddle ? TextVAlign::kMiddle
                 : t.verticalJustify == 1       ? TextVAlign::kBottom
                 : t.verticalJustify == 2       ? TextVAlign::kMiddle
                 : t.verticalJustify == 3       ? TextVAlign::kTop
                                                : TextVAlign::kBaseline;
  }
  ge::Vector3d up = ocs.apply(ge::kZAxis).cross(dir);
  out.text(std::move(run), anchor, dir, up);
}

// Paragraphs wrapped at the reference width when there is one.
std::vector<std::string> mtextLines(const host::MText& t, TextMeasurer& measurer) {
  std::vector<std::string> lines;
  for (const auto& paragraph : plainMTextLines(t.text)) {
    if (t.referenceWidth <= 0 || paragraph.empty()) {
      lines.push_back(paragraph);
      continue;
    }
    for (auto& line : measurer.wrap(paragraph, t.height, t.referenceWidth)) lines.push_back(std::move(line));
  }
  return lines;
}

void emit(const host::MText& t, const Emitter& out, const AnnotationStyle& style) {
  std::vector<std::string> lines = mtextLines(t, style.measurer);
  std::string font = fontOf(t.style, style);
  ge::Vector3d normal = t.normal.normalized().length() > 0 ? t.normal.normalized() : ge::kZAxis;
  ge::Vector3d dir = t.xDirection - normal * t.xDirection.dot(normal);
  if (dir.length() == 0) dir = ocsToWorld(normal).apply(ge::kXAxis);
  dir = dir.normalized();
  ge::Vector3d up = normal.cross(dir);
  // Attachment 1..9: rows top, middle, bottom; columns left, centre, right.
  int attachment = std::clamp(t.attachment, 1, 9) - 1;
  int row = attachment / 3, column = attachment % 3;
  double pitch = t.height * kMTextLinePitch;
  double blockHeight = t.height + pitch * static_cast<double>(lines.size() - 1);
  double topOffset = row == 0 ? 0 : row == 1 ? blockHeight / 2 : blockHeight;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].empty()) continue;
    TextRun run;
    run.utf8 = lines[i];
    run.font = font;
    run.height = t.height;
    run.hAlign = column * 0.5;
    double baseline = topOffset - t.height - pitch * static_cast<double>(i);
    out.text(std::move(run), t.position + up * baseline, dir, up);
  }
}

void emit(const host::PointEntity& p, const Emitter& out, int pointMode, double pointSize) {
  PointMarker m;
  m.mode = pointMode;
  m.size = pointSize;
  m.rotation = p.xAxisAngle;
  out.marker(m, p.position);
}

// The sweep of an arc or ellipse edge of a hatch boundary: angles are
// measured counter-clockwise (a DXF clockwise edge's mirrored angles are
// undone on reading) and the edge walks from start to end in its own
// direction, so a clockwise edge from pi to 0 covers the upper half.
struct Sweep {
  double from = 0, to = 0;
};
Sweep edgeSweep(double start, double end, bool ccw) {
  return {start, ccw ? start + ccwSweep(start, end) : start - ccwSweep(end, start)};
}

// One closed boundary path of a hatch, in world space after the OCS.
void addHatchPath(const host::HatchPath& hp, const ge::Matrix3d& ocs, double elevation, const Emitter& out,
                  Path& path) {
  auto world = [&](double x, double y) { return ocs.apply(ge::Point3d{x, y, elevation}); };
  ge::Vector3d ax = ocs.apply(ge::kXAxis), ay = ocs.apply(ge::kYAxis);
  if (hp.flags & 2) {
    const auto& v = hp.polyline;
    if (v.empty()) return;
    path.moveTo(out.place(world(v[0].x, v[0].y)));
    std::size_t segments = hp.polylineClosed ? v.size() : v.size() - 1;
    for (std::size_t i = 0; i < segments; ++i) {
      const auto& a = v[i];
      const auto& b = v[(i + 1) % v.size()];
      if (auto arc = bulgeToArc({a.x, a.y}, {b.x, b.y}, a.bulge))
        out.addArc(path, world(arc->center.x, arc->center.y), ax, ay, arc->radius, arc->startAngle, arc->endAngle,
                   arc->ccw, true);
      else
        path.lineTo(out.place(world(b.x, b.y)));
    }
    path.close();
    return;
  }
  bool continuing = false;
  for (const auto& edge : hp.edges) {
    if (auto* l = std::get_if<host::HatchLineEdge>(&edge)) {
      out.addPoints(path, {world(l->start.x, l->start.y), world(l->end.x, l->end.y)}, continuing);
    } else if (auto* a = std::get_if<host::HatchArcEdge>(&edge)) {
      Sweep sw = edgeSweep(a->startAngle, a->endAngle, a->counterClockwise);
      out.addArc(path, world(a->center.x, a->center.y), ax, ay, a->radius, sw.from, sw.to, a->counterClockwise,
                 continuing);
    } else if (auto* e = std::get_if<host::HatchEllipseEdge>(&edge)) {
      ge::Vector3d major{e->majorAxis.x, e->majorAxis.y, 0},
          minor{-e->majorAxis.y * e->ratio, e->majorAxis.x * e->ratio, 0};
      Sweep sw = edgeSweep(e->startAngle, e->endAngle, e->counterClockwise);
      int pieces = piecesForSweep(sw.to - sw.from);
      ge::PointList pts;
      for (int i = 0; i <= pieces; ++i) {
        double t = sw.from + (sw.to - sw.from) * i / pieces;
        ge::Vector3d off = major * std::cos(t) + minor * std::sin(t);
        pts.push_back(world(e->center.x + off.x, e->center.y + off.y));
      }
      out.addPoints(path, pts, continuing);
    } else if (auto* s = std::get_if<host::HatchSplineEdge>(&edge)) {
      host::Spline sp;
      sp.degree = s->degree;
      sp.knots = s->knots;
      sp.weights = s->weights;
      for (const auto& c : s->controlPoints) sp.controlPoints.push_back({c.x, c.y, 0});
      for (const auto& f : s->fitPoints) sp.fitPoints.push_back({f.x, f.y, 0});
      ge::PointList pts;
      for (const auto& p : splineDrawingPoints(sp)) pts.push_back(world(p.x, p.y));
      out.addPoints(path, pts, continuing);
    }
    continuing = !path.empty();
  }
  if (continuing) path.close();
}

void emit(const host::Hatch& h, const Emitter& out) {
  ge::Matrix3d ocs = ocsToWorld(h.normal);
  Path path;
  for (const auto& hp : h.paths) addHatchPath(hp, ocs, h.elevation, out, path);
  // Solid hatches are filled (even-odd, so islands stay open); patterns are outlined.
  if (h.solidFill)
    out.fill(std::move(path));
  else
    out.stroke(std::move(path));
}

void emit(const host::Image& im, const Emitter& out) {
  ge::Vector3d u = im.uVector * im.widthPixels, v = im.vVector * im.heightPixels;
  Path path;
  out.addPoints(path, {im.insertion, im.insertion + u, im.insertion + u + v, im.insertion + v}, false);
  path.close();
  out.stroke(std::move(path));
}

}  // namespace

bool emitAnnotation(const host::EntityData& data, const Emitter& out, const AnnotationStyle& style) {
  if (auto* text = std::get_if<host::Text>(&data))
    emit(*text, out, style);
  else if (auto* mText = std::get_if<host::MText>(&data))
    emit(*mText, out, style);
  else if (auto* point = std::get_if<host::PointEntity>(&data))
    emit(*point, out, style.pointMode, style.pointSize);
  else if (auto* hatch = std::get_if<host::Hatch>(&data))
    emit(*hatch, out);
  else if (auto* image = std::get_if<host::Image>(&data))
    emit(*image, out);
  else
    return false;
  return true;
}

}  // namespace standalone
