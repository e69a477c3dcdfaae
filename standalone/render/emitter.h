#pragma once
// Internal to the renderer: turns the geometry of one entity, placed by the
// block references it is drawn through, into scene items of one colour.
#include <functional>
#include <string>

#include "ge/matrix.h"
#include "host/entity.h"
#include "standalone/render/scene.h"
#include "standalone/render/text_metrics.h"

namespace standalone {

class Emitter {
 public:
  Emitter(Scene& scene, const ge::Matrix3d& placement, const Rgb& color, double lineWidthPx)
      : scene_(scene), placement_(placement), color_(color), lineWidthPx_(lineWidthPx) {}

  const ge::Matrix3d& placement() const { return placement_; }
  // A world point placed and projected onto XY.
  ge::Point2d place(const ge::Point3d& p) const;

  // Appends an arc in the plane of xAxis, yAxis through centre (world), as a
  // true arc when it stays circular in XY, else as sampled points. Starts a
  // new sub-path unless continuing.
  void addArc(Path& path, const ge::Point3d& center, const ge::Vector3d& xAxis, const ge::Vector3d& yAxis,
              double radius, double startAngle, double endAngle, bool ccw, bool continuing) const;
  // Appends straight pieces through world points.
  void addPoints(Path& path, const ge::PointList& points, bool continuing) const;

  void stroke(Path path) const;
  void fill(Path path) const;
  // A text line whose direction and up vectors are given in world space
  // (lengths ignored); placement turns, scales and mirrors it.
  void text(TextRun run, const ge::Point3d& anchor, const ge::Vector3d& direction, const ge::Vector3d& up) const;
  void marker(PointMarker marker, const ge::Point3d& at) const;

 private:
  Scene& scene_;
  ge::Matrix3d placement_;
  Rgb color_;
  double lineWidthPx_;
};

// Draws a curve entity (line, circle, arc, ellipse, polylines, spline, helix);
// false when the data is not a curve kind.
bool emitCurve(const host::EntityData& data, const Emitter& out);

// How annotations are drawn: the drawing's PDMODE and PDSIZE, and the font
// measurer that lays out MTEXT paragraphs.
struct AnnotationStyle {
  int pointMode = 0;
  double pointSize = 0;
  TextMeasurer& measurer;
  // The font a text style names (Drawing::textStyleFont); none: the default family.
  std::function<std::string(const std::string&)> fontOf;
};

// Draws a text, mtext, point, hatch or image; false for other kinds.
bool emitAnnotation(const host::EntityData& data, const Emitter& out, const AnnotationStyle& style);

}  // namespace standalone
