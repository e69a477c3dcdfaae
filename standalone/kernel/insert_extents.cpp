#include "standalone/kernel/insert_extents.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <unordered_map>

#include "standalone/kernel/curve_kernel.h"
#include "standalone/kernel/ocs.h"
#include "standalone/kernel/path.h"
#include "standalone/kernel/path_query.h"
#include "standalone/kernel/text_extents.h"

namespace standalone {

using host::ErrorStatus;

namespace kernel {

namespace {

ge::Vector3d rotatedAxis(const host::BlockReference& ref, double angle) {
  Frame f = ocsFrame(ref.normal.length() > 0 ? ref.normal : ge::kZAxis);
  return f.x * std::cos(angle) + f.y * std::sin(angle);
}

// A piece mapped by an affine map. A circular arc becomes the elliptical arc
// c + cos t·M(r x) + sin t·M(r y) over its angles, which is exact for any
// affine map; NURBS are affinely invariant, so their control points are mapped.
Piece mappedPiece(const Piece& p, const ge::Matrix3d& m) {
  if (const auto* l = std::get_if<LinePiece>(&p.geometry)) return {LinePiece{m.apply(l->a), m.apply(l->b)}, p.p0, p.p1};
  if (const auto* a = std::get_if<ArcPiece>(&p.geometry)) {
    double lo = std::min(a->start, a->start + a->sweep), hi = std::max(a->start, a->start + a->sweep);
    return {EllipsePiece{m.apply(a->center), m.apply(a->x * a->radius), m.apply(a->y * a->radius)}, lo, hi};
  }
  if (const auto* e = std::get_if<EllipsePiece>(&p.geometry))
    return {EllipsePiece{m.apply(e->center), m.apply(e->major), m.apply(e->minor)}, p.p0, p.p1};
  Nurbs n = std::get<Nurbs>(p.geometry);
  for (auto& c : n.controlPoints) c = m.apply(c);
  return {std::move(n), p.p0, p.p1};
}

// Extents of a path mapped piece by piece; nothing for an empty path.
std::optional<ge::Extents3d> mappedPathExtents(const Path& path, const ge::Matrix3d& m) {
  Path mapped;
  for (const Piece& p : path.pieces) mapped.pieces.push_back(mappedPiece(p, m));
  ge::Extents3d e = pathExtents(mapped);
  if (!e.isValid()) return std::nullopt;
  return e;
}

// Extents of a hatch's boundary mapped by m: polyline paths and line, arc and
// ellipse edges as the curves they are (a whole ellipse for an elliptic edge,
// a safe bound whatever its angle convention), spline edges by their control
// and fit points (the convex hull property).
std::optional<ge::Extents3d> mappedHatchExtents(const host::Hatch& h, const ge::Matrix3d& m) {
  Frame f = ocsFrame(h.normal.length() > 0 ? h.normal : ge::kZAxis);
  auto world = [&](const ge::Point2d& p) { return ocsToWorld(f, p.x, p.y, h.elevation); };
  ge::Extents3d out;
  auto addCurve = [&](const host::EntityData& curve) {
    if (auto path = pathOf(curve))
      if (auto e = mappedPathExtents(*path, m)) out.add(*e);
  };
  for (const host::HatchPath& path : h.paths) {
    if (path.flags & 2) {
      host::LwPolyline pl;
      pl.vertices = path.polyline;
      pl.closed = path.polylineClosed;
      pl.elevation = h.elevation;
      pl.normal = f.z;
      addCurve(pl);
      continue;
    }
    for (const host::HatchEdge& edge : path.edges) {
      if (const auto* l = std::get_if<host::HatchLineEdge>(&edge)) {
        out.add(m.apply(world(l->start)));
        out.add(m.apply(world(l->end)));
      } else if (const auto* a = std::get_if<host::HatchArcEdge>(&edge)) {
        host::Arc arc{world(a->center), a->radius, a->startAngle, a->endAngle, 0, f.z};
        if (!a->counterClockwise) std::swap(arc.startAngle, arc.endAngle);  // a clockwise edge covers end to start
        addCurve(arc);
      } else if (const auto* el = std::get_if<host::HatchEllipseEdge>(&edge)) {
        addCurve(host::Ellipse{world(el->center), f.x * el->majorAxis.x + f.y * el->majorAxis.y, f.z, el->ratio});
      } else if (const auto* sp = std::get_if<host::HatchSplineEdge>(&edge)) {
        for (const auto& p : sp->controlPoints) out.add(m.apply(world(p)));
        for (const auto& p : sp->fitPoints) out.add(m.apply(world(p)));
      }
    }
  }
  if (!out.isValid()) return std::nullopt;
  return out;
}

ge::Extents3d translated(const ge::Extents3d& e, const ge::Vector3d& v) {
  ge::Extents3d out;
  out.add(e.min + v);
  out.add(e.max + v);
  return out;
}

// One walk through an entity and the blocks it refers to; each block's
// contents are looked up once per walk.
class Walker {
 public:
  Walker(const host::CurveServices& curves, const host::BlockContentsLookup& blocks) : curves_(curves), blocks_(blocks) {}

  const std::shared_ptr<const host::BlockContents>& contents(const std::string& name) {
    auto [it, fresh] = memo_.try_emplace(name);
    if (fresh && blocks_) it->second = blocks_(name);
    return it->second;
  }

  std::optional<ge::Extents3d> extents(const host::EntityData& e, const ge::Matrix3d& m, int depth) {
    if (auto path = pathOf(e)) return mappedPathExtents(*path, m);
    if (const auto* t = std::get_if<host::Text>(&e)) return corners(textBox(*t), m);
    if (const auto* t = std::get_if<host::MText>(&e)) return corners(mtextBox(*t), m);
    if (const auto* ref = std::get_if<host::BlockReference>(&e)) return reference(*ref, m, depth);
    if (const auto* pt = std::get_if<host::PointEntity>(&e)) return ge::Extents3d{m.apply(pt->position), m.apply(pt->position)};
    if (const auto* im = std::get_if<host::Image>(&e)) {
      ge::Vector3d u = im->uVector * im->widthPixels, v = im->vVector * im->heightPixels;
      return corners(TextBox{im->insertion, im->insertion + u, im->insertion + u + v, im->insertion + v}, m);
    }
    if (const auto* h = std::get_if<host::Hatch>(&e)) return mappedHatchExtents(*h, m);
    // The rest: the corners of their own box, a safe bound.
    ge::Extents3d own;
    if (curves_.getGeomExtents(e, own) != ErrorStatus::eOk || !own.isValid()) return std::nullopt;
    ge::Extents3d out;
    for (double x : {own.min.x, own.max.x})
      for (double y : {own.min.y, own.max.y})
        for (double z : {own.min.z, own.max.z}) out.add(m.apply(ge::Point3d{x, y, z}));
    return out;
  }

 private:
  static std::optional<ge::Extents3d> corners(const std::optional<TextBox>& box, const ge::Matrix3d& m) {
    if (!box) return std::nullopt;
    ge::Extents3d out;
    for (const ge::Point3d& c : *box) out.add(m.apply(c));
    return out;
  }

  // The block's entities under m × the reference's own map; the array's
  // cells are translations of the first, so their union is the first cell's
  // box moved to the three far corners of the array.
  std::optional<ge::Extents3d> reference(const host::BlockReference& ref, const ge::Matrix3d& m, int depth) {
    if (depth >= kMaxBlockNesting) return std::nullopt;
    std::shared_ptr<const host::BlockContents> block = contents(ref.blockName);
    if (!block) return std::nullopt;
    ge::Matrix3d placed = m * blockTransform(ref, block->basePoint);
    ge::Extents3d cell;
    for (const host::EntityData& child : block->entities)
      if (std::optional<ge::Extents3d> part = extents(child, placed, depth + 1)) cell.add(*part);
    if (!cell.isValid()) return std::nullopt;
    ge::Vector3d columns = m.apply(arrayColumnStep(ref) * std::max(ref.columnCount - 1, 0));
    ge::Vector3d rows = m.apply(arrayRowStep(ref) * std::max(ref.rowCount - 1, 0));
    ge::Extents3d all = cell;
    all.add(translated(cell, columns));
    all.add(translated(cell, rows));
    all.add(translated(cell, columns + rows));
    return all;
  }

  const host::CurveServices& curves_;
  const host::BlockContentsLookup& blocks_;
  std::unordered_map<std::string, std::shared_ptr<const host::BlockContents>> memo_;
};

}  // namespace

ge::Matrix3d blockTransform(const host::BlockReference& ref, const ge::Point3d& basePoint) {
  Frame f = ocsFrame(ref.normal.length() > 0 ? ref.normal : ge::kZAxis);
  ge::Matrix3d scale;
  scale(0, 0) = ref.scale.x;
  scale(1, 1) = ref.scale.y;
  scale(2, 2) = ref.scale.z;
  return ge::Matrix3d::fromFrame(ref.position, f.x, f.y, f.z) * ge::Matrix3d::rotation(ref.rotation, ge::kZAxis) *
         scale * ge::Matrix3d::translation(ge::Point3d{} - basePoint);
}

ge::Vector3d arrayColumnStep(const host::BlockReference& ref) {
  return rotatedAxis(ref, ref.rotation) * ref.columnSpacing;
}

ge::Vector3d arrayRowStep(const host::BlockReference& ref) {
  return rotatedAxis(ref, ref.rotation + std::numbers::pi / 2) * ref.rowSpacing;
}

std::optional<ge::Extents3d> mappedExtents(const host::CurveServices& curves, const host::EntityData& e,
                                           const ge::Matrix3d& m, const host::BlockContentsLookup& blocks) {
  Walker walker(curves, blocks);
  return walker.extents(e, m, 0);
}

}  // namespace kernel

ErrorStatus CurveKernel::getBlockReferenceExtents(const host::BlockReference& ref,
                                                  const host::BlockContentsLookup& blocks, ge::Extents3d& ext) const {
  kernel::Walker walker(*this, blocks);
  if (!walker.contents(ref.blockName)) return ErrorStatus::eKeyNotFound;
  std::optional<ge::Extents3d> found = walker.extents(ref, ge::Matrix3d(), 0);
  if (!found || !found->isValid()) return ErrorStatus::eDegenerateGeometry;
  ext = *found;
  return ErrorStatus::eOk;
}

}  // namespace standalone
