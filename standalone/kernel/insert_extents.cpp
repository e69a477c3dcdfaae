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

ge::Extents3d translated(const ge::Extents3d& e, const ge::Vector3d& v) {
  ge::Extents3d out;
  out.add(e.min + v);
  out.add(e.max + v);
  return out;
}

std::optional<ge::Extents3d> boxOfCorners(const std::optional<TextBox>& box, const ge::Matrix3d& m) {
  if (!box) return std::nullopt;
  ge::Extents3d out;
  for (const ge::Point3d& c : *box) out.add(m.apply(c));
  return out;
}

std::optional<ge::Extents3d> validOrNothing(const ge::Extents3d& e) {
  if (!e.isValid()) return std::nullopt;
  return e;
}

// A chain of straight pieces through the points (parameters 0, 1, 2, ...).
Path polygonPath(const std::vector<ge::Point3d>& points) {
  Path path;
  for (std::size_t i = 0; i + 1 < points.size(); ++i)
    path.pieces.push_back({LinePiece{points[i], points[i + 1]}, double(i), double(i + 1)});
  return path;
}

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

TextBox imageCorners(const host::Image& im) {
  ge::Vector3d u = im.uVector * im.widthPixels, v = im.vVector * im.heightPixels;
  return {im.insertion, im.insertion + u, im.insertion + u + v, im.insertion + v};
}

Path mappedPath(const Path& path, const ge::Matrix3d& m) {
  Path mapped;
  mapped.closed = path.closed;
  for (const Piece& p : path.pieces) {
    if (const auto* l = std::get_if<LinePiece>(&p.geometry)) {
      mapped.pieces.push_back({LinePiece{m.apply(l->a), m.apply(l->b)}, p.p0, p.p1});
    } else if (const auto* a = std::get_if<ArcPiece>(&p.geometry)) {
      double lo = std::min(a->start, a->start + a->sweep), hi = std::max(a->start, a->start + a->sweep);
      mapped.pieces.push_back(
          {EllipsePiece{m.apply(a->center), m.apply(a->x * a->radius), m.apply(a->y * a->radius)}, lo, hi});
    } else if (const auto* e = std::get_if<EllipsePiece>(&p.geometry)) {
      mapped.pieces.push_back({EllipsePiece{m.apply(e->center), m.apply(e->major), m.apply(e->minor)}, p.p0, p.p1});
    } else {
      Nurbs n = std::get<Nurbs>(p.geometry);
      for (auto& c : n.controlPoints) c = m.apply(c);
      mapped.pieces.push_back({std::move(n), p.p0, p.p1});
    }
  }
  return mapped;
}

std::vector<Path> hatchBoundary(const host::Hatch& h) {
  Frame f = ocsFrame(h.normal.length() > 0 ? h.normal : ge::kZAxis);
  auto world = [&](const ge::Point2d& p) { return ocsToWorld(f, p.x, p.y, h.elevation); };
  std::vector<Path> out;
  auto addCurve = [&](const host::EntityData& curve) {
    if (std::optional<Path> path = pathOf(curve)) out.push_back(std::move(*path));
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
        out.push_back(polygonPath({world(l->start), world(l->end)}));
      } else if (const auto* a = std::get_if<host::HatchArcEdge>(&edge)) {
        host::Arc arc{world(a->center), a->radius, a->startAngle, a->endAngle, 0, f.z};
        if (!a->counterClockwise) std::swap(arc.startAngle, arc.endAngle);  // a clockwise edge covers end to start
        addCurve(arc);
      } else if (const auto* el = std::get_if<host::HatchEllipseEdge>(&edge)) {
        addCurve(host::Ellipse{world(el->center), f.x * el->majorAxis.x + f.y * el->majorAxis.y, f.z, el->ratio});
      } else if (const auto* sp = std::get_if<host::HatchSplineEdge>(&edge)) {
        std::vector<ge::Point3d> control, fit;
        for (const auto& p : sp->controlPoints) control.push_back(world(p));
        for (const auto& p : sp->fitPoints) fit.push_back(world(p));
        for (const auto* points : {&control, &fit})
          if (points->size() == 1) out.push_back(polygonPath({points->front(), points->front()}));
          else if (points->size() > 1) out.push_back(polygonPath(*points));
      }
    }
  }
  return out;
}

std::shared_ptr<const host::BlockContents> BlockWalker::contents(const std::string& name) {
  auto [it, fresh] = memo_.try_emplace(name);
  if (fresh && blocks_) it->second = blocks_(name);
  return it->second;
}

std::optional<ge::Extents3d> BlockWalker::extents(const host::EntityData& e, const ge::Matrix3d& m, int depth) {
  if (std::optional<Path> path = pathOf(e)) return validOrNothing(pathExtents(mappedPath(*path, m)));
  if (const auto* t = std::get_if<host::Text>(&e)) return boxOfCorners(textBox(*t), m);
  if (const auto* t = std::get_if<host::MText>(&e)) return boxOfCorners(mtextBox(*t), m);
  if (const auto* im = std::get_if<host::Image>(&e)) return boxOfCorners(imageCorners(*im), m);
  if (const auto* ref = std::get_if<host::BlockReference>(&e)) return referenceExtents(*ref, m, depth);
  if (const auto* pt = std::get_if<host::PointEntity>(&e)) return ge::Extents3d{m.apply(pt->position), m.apply(pt->position)};
  if (const auto* h = std::get_if<host::Hatch>(&e)) {
    ge::Extents3d out;
    for (const Path& path : hatchBoundary(*h)) out.add(pathExtents(mappedPath(path, m)));
    return validOrNothing(out);
  }
  // The rest: the corners of their own box, a safe bound.
  ge::Extents3d own;
  if (curves_.getGeomExtents(e, own) != ErrorStatus::eOk || !own.isValid()) return std::nullopt;
  ge::Extents3d out;
  for (double x : {own.min.x, own.max.x})
    for (double y : {own.min.y, own.max.y})
      for (double z : {own.min.z, own.max.z}) out.add(m.apply(ge::Point3d{x, y, z}));
  return out;
}

std::optional<ge::Extents3d> BlockWalker::cellExtents(const host::BlockReference& ref, const ge::Matrix3d& m,
                                                      int depth) {
  if (depth >= kMaxBlockNesting) return std::nullopt;
  std::shared_ptr<const host::BlockContents> block = contents(ref.blockName);
  if (!block) return std::nullopt;
  ge::Matrix3d placed = m * blockTransform(ref, block->basePoint);
  ge::Extents3d cell;
  for (const host::EntityData& child : block->entities)
    if (std::optional<ge::Extents3d> part = extents(child, placed, depth + 1)) cell.add(*part);
  return validOrNothing(cell);
}

// The array's cells are translations of the first, so their union is the
// first cell's box moved to the three far corners of the array.
std::optional<ge::Extents3d> BlockWalker::referenceExtents(const host::BlockReference& ref, const ge::Matrix3d& m,
                                                           int depth) {
  std::optional<ge::Extents3d> cell = cellExtents(ref, m, depth);
  if (!cell) return std::nullopt;
  ge::Vector3d columns = m.apply(arrayColumnStep(ref) * std::max(ref.columnCount - 1, 0));
  ge::Vector3d rows = m.apply(arrayRowStep(ref) * std::max(ref.rowCount - 1, 0));
  ge::Extents3d all = *cell;
  all.add(translated(*cell, columns));
  all.add(translated(*cell, rows));
  all.add(translated(*cell, columns + rows));
  return all;
}

}  // namespace kernel

ErrorStatus CurveKernel::getBlockReferenceExtents(const host::BlockReference& ref,
                                                  const host::BlockContentsLookup& blocks, ge::Extents3d& ext) const {
  kernel::BlockWalker walker(*this, blocks);
  if (!walker.contents(ref.blockName)) return ErrorStatus::eKeyNotFound;
  std::optional<ge::Extents3d> found = walker.extents(ref, ge::Matrix3d());
  if (!found || !found->isValid()) return ErrorStatus::eDegenerateGeometry;
  ext = *found;
  return ErrorStatus::eOk;
}

}  // namespace standalone
