#pragma once
// The shapes of a scene as flat outlines: paths with their arcs cut into
// straight pieces and texts as the contours of their glyphs, placed as the
// pictures place them. The metafile export writes these.
#include <memory>
#include <vector>

#include "ge/point.h"
#include "standalone/render/scene.h"

namespace standalone {

// One flat piece of a shape in the target plane; a closed one returns from
// its last point to its first (which is not repeated).
struct Outline {
  std::vector<ge::Point2d> points;
  bool closed = false;
};

// An affine map from the drawing's XY plane to the target plane:
// (x, y) -> (xx x + xy y + x0, yx x + yy y + y0).
struct PlaneMap {
  double xx = 1, yx = 0, xy = 0, yy = 1, x0 = 0, y0 = 0;
};

class OutlineTracer {
 public:
  // tolerance: the largest distance, in target units, between a curve and
  // the straight pieces that stand for it.
  OutlineTracer(const PlaneMap& map, double tolerance);
  ~OutlineTracer();
  OutlineTracer(const OutlineTracer&) = delete;
  OutlineTracer& operator=(const OutlineTracer&) = delete;

  // The outlines of one scene item: each sub-path of a path, each contour of
  // a text's glyphs (closed); point markers give none.
  std::vector<Outline> outlinesOf(const SceneItem& item);

 private:
  struct Cairo;
  std::unique_ptr<Cairo> cairo_;
};

}  // namespace standalone
