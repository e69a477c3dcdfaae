#include "standalone/render/emitter.h"

#include <cmath>

#include "standalone/render/projection.h"

namespace standalone {

ge::Point2d Emitter::place(const ge::Point3d& p) const { return toXY(placement_.apply(p)); }

void Emitter::addArc(Path& path, const ge::Point3d& center, const ge::Vector3d& xAxis, const ge::Vector3d& yAxis,
                     double radius, double startAngle, double endAngle, bool ccw, bool continuing) const {
  auto pointAt = [&](double a) { return center + xAxis * (radius * std::cos(a)) + yAxis * (radius * std::sin(a)); };
  if (auto arc = projectArc(placement_, center, xAxis, yAxis, radius, startAngle, endAngle, ccw)) {
    if (!continuing) path.moveTo(place(pointAt(startAngle)));
    path.arc(*arc);
    return;
  }
  // Seen at a slant or through an unequal scale the arc is an ellipse: sample it.
  double sweep = endAngle - startAngle;
  int pieces = piecesForSweep(sweep);
  ge::PointList points;
  for (int i = 0; i <= pieces; ++i) points.push_back(pointAt(startAngle + sweep * i / pieces));
  addPoints(path, points, continuing);
}

void Emitter::addPoints(Path& path, const ge::PointList& points, bool continuing) const {
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (i == 0 && !continuing)
      path.moveTo(place(points[i]));
    else
      path.lineTo(place(points[i]));
  }
}

void Emitter::stroke(Path path) const {
  if (path.empty()) return;
  scene_.items.push_back({color_, lineWidthPx_, ScenePath{std::move(path), false}});
}

void Emitter::fill(Path path) const {
  if (path.empty()) return;
  scene_.items.push_back({color_, lineWidthPx_, ScenePath{std::move(path), true}});
}

void Emitter::text(TextRun run, const ge::Point3d& anchor, const ge::Vector3d& direction,
                   const ge::Vector3d& up) const {
  ge::Vector3d d = placement_.apply(direction.normalized()), u = placement_.apply(up.normalized());
  double dl = std::hypot(d.x, d.y), ul = std::hypot(u.x, u.y);
  if (dl == 0 || ul == 0) return;  // seen edge-on
  run.anchor = place(anchor);
  run.rotation = std::atan2(d.y, d.x);
  run.height *= ul;
  run.widthFactor *= dl / ul;
  run.fitWidth *= dl;
  // A mirrored placement is a turn plus one flip.
  if (d.x * u.y - d.y * u.x < 0) run.upsideDown = !run.upsideDown;
  scene_.items.push_back({color_, lineWidthPx_, std::move(run)});
}

void Emitter::marker(PointMarker m, const ge::Point3d& at) const {
  m.at = place(at);
  ge::Vector3d x = placement_.apply(ge::Vector3d{std::cos(m.rotation), std::sin(m.rotation), 0});
  m.rotation = std::atan2(x.y, x.x);
  scene_.items.push_back({color_, lineWidthPx_, m});
}

}  // namespace standalone
