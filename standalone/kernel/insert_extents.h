#pragma once
// Entities placed by an affine map (block references: scale, rotation,
// normal, arrays; non-uniform scales included): their extents and the point
// of their geometry nearest to a given point, following nested references.
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "ge/extents.h"
#include "ge/matrix.h"
#include "host/curves.h"
#include "host/entity.h"
#include "standalone/kernel/path.h"
#include "standalone/kernel/text_extents.h"

namespace standalone::kernel {

// Block references nested deeper than this are not looked into (and a block
// that refers to itself stops here).
inline constexpr int kMaxBlockNesting = 16;

// Maps block coordinates into the world for a reference (its first array
// cell): the base point moved to the origin, scaled, rotated about the
// reference's normal, placed in its OCS at its position.
ge::Matrix3d blockTransform(const host::BlockReference& ref, const ge::Point3d& basePoint);

// World offset between neighbouring array cells: along the rotated X axis of
// the reference for columns, along its rotated Y axis for rows (spacings in
// drawing units, not scaled).
ge::Vector3d arrayColumnStep(const host::BlockReference& ref);
ge::Vector3d arrayRowStep(const host::BlockReference& ref);

// A path mapped by an affine map piece by piece. A circular arc becomes the
// elliptical arc c + cos t·M(r x) + sin t·M(r y) over its angles, exact for
// any affine map; NURBS are affinely invariant, so their control points are mapped.
Path mappedPath(const Path& path, const ge::Matrix3d& m);

// The boundary of a hatch as world paths: polyline paths and line, arc and
// ellipse edges as the curves they are (a whole ellipse for an elliptic edge,
// safe whatever its angle convention), spline edges as their control polygon
// (which holds the curve).
std::vector<Path> hatchBoundary(const host::Hatch& h);

// Corners of an image's frame, counter-clockwise from its insertion point
// (width pixels along u, height pixels along v).
TextBox imageCorners(const host::Image& im);

// The point of an entity's geometry nearest to a point, and how far it is.
struct Nearest {
  ge::Point3d point;
  double distance = std::numeric_limits<double>::infinity();
};

// One walk through an entity and the blocks it refers to; each block's
// contents are looked up once per walk.
class BlockWalker {
 public:
  BlockWalker(const host::CurveServices& curves, const host::BlockContentsLookup& blocks)
      : curves_(curves), blocks_(blocks) {}

  // The block's contents; null when the lookup has no such block.
  std::shared_ptr<const host::BlockContents> contents(const std::string& name);

  // Extents of an entity mapped by m: curves and hatch boundaries piece by
  // piece, texts and images by the corners of their box, block references
  // through their blocks (nothing beyond kMaxBlockNesting), other kinds by the
  // corners of their own extents. Nothing when the entity has none.
  std::optional<ge::Extents3d> extents(const host::EntityData& e, const ge::Matrix3d& m, int depth = 0);

  // Offers the point of an entity mapped by m nearest to p to best: curves
  // and hatch boundaries, points, texts and images by their box (a point
  // inside the box is its own nearest), block references through their blocks.
  void nearest(const host::EntityData& e, const ge::Matrix3d& m, const ge::Point3d& p, Nearest& best,
               int depth = 0);  // defined in insert_nearest.cpp

 private:
  // Extents of the first array cell of a reference placed under m.
  std::optional<ge::Extents3d> cellExtents(const host::BlockReference& ref, const ge::Matrix3d& m, int depth);
  std::optional<ge::Extents3d> referenceExtents(const host::BlockReference& ref, const ge::Matrix3d& m, int depth);
  void nearestInReference(const host::BlockReference& ref, const ge::Matrix3d& m, const ge::Point3d& p,
                          Nearest& best, int depth);

  const host::CurveServices& curves_;
  const host::BlockContentsLookup& blocks_;
  std::unordered_map<std::string, std::shared_ptr<const host::BlockContents>> memo_;
};

}  // namespace standalone::kernel
