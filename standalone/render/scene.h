#pragma once
// A drawing flattened to what a canvas can show: paths, filled areas, text
// runs and point markers in the XY plane, each with its colour. Built once
// from the drawing, measured for the view, then painted on any canvas.
#include <variant>
#include <vector>

#include "ge/point.h"
#include "standalone/render/canvas.h"
#include "standalone/render/color.h"
#include "standalone/render/view.h"

namespace standalone {

struct PathMove {
  ge::Point2d to;
};
struct PathLine {
  ge::Point2d to;
};
// A circular arc continuing the path (angles in radians from +X).
struct PathArc {
  ge::Point2d center;
  double radius = 0;
  double startAngle = 0, endAngle = 0;
  bool ccw = true;
};
struct PathClose {};
using PathOp = std::variant<PathMove, PathLine, PathArc, PathClose>;

struct Path {
  std::vector<PathOp> ops;

  void moveTo(const ge::Point2d& p) { ops.push_back(PathMove{p}); }
  void lineTo(const ge::Point2d& p) { ops.push_back(PathLine{p}); }
  void arc(const PathArc& a) { ops.push_back(a); }
  void close() { ops.push_back(PathClose{}); }
  bool empty() const { return ops.empty(); }
};

// The point glyph of a POINT entity: PDMODE bits and its size rule.
struct PointMarker {
  ge::Point2d at;
  double rotation = 0;  // radians
  int mode = 0;         // 0 dot, 1 none, 2 +, 3 x, 4 tick; +32 circle, +64 square
  double size = 0;      // >0 drawing units, 0 5 % of the view height, <0 percent of the view height
};

struct ScenePath {
  Path path;
  bool filled = false;
};

struct SceneItem {
  Rgb color = kBlack;
  double lineWidthPx = 1;
  std::variant<ScenePath, TextRun, PointMarker> shape;
};

struct Scene {
  std::vector<SceneItem> items;

  // Extents of everything in the scene; text by an estimate of its box.
  Box2d extents() const;
};

// Size of a point glyph in drawing units for a view of the given height.
double markerSize(const PointMarker& m, double viewHeight);

// What painting needs to know of the view the canvas shows.
struct PaintScale {
  double pixelsPerUnit = 1;  // page pixels per drawing unit
  double viewHeight = 1;     // drawing units; sizes the point glyphs whose size is relative
  // A screen's level of detail (pictures and files keep every detail): text
  // runs whose height is below this many pixels are drawn as a line where
  // their text would stand; 0 draws every glyph.
  double smallestTextPx = 0;
  // When given (with one box per item, from itemBoxes), items whose box
  // misses the visible box (drawing units) are not painted.
  const Box2d* visible = nullptr;
  const std::vector<Box2d>* boxes = nullptr;
};

// The box of each item of the scene, in item order (texts by their estimate).
std::vector<Box2d> itemBoxes(const Scene& scene);

// Paints the scene on the canvas in its current view.
void paintScene(const Scene& scene, Canvas& canvas, const PaintScale& scale);

// Adds the extents of one path (arcs by their true bulge, not their chord).
void addPathExtents(const Path& path, Box2d& box);

}  // namespace standalone
