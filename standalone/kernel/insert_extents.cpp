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
    if (auto path = pathOf(e)) {
      Path mapped;
      for (const Piece& p : path->pieces) mapped.pieces.push_back(mappedPiece(p, m));
      return pathExtents(mapped);
    }
    if (const auto* t = std::get_if<host::Text>(&e)) return corners(textBox(*t), m);
    if (const auto* t = std::get_if<host::MText>(&e)) return corners(mtextBox(*t), m);
    if (const auto* ref = std::get_if<host::BlockReference>(&e)) return reference(*ref, m, depth);
    if (const auto* pt = std::get_if<host::PointEntity>(&e)) return ge::Extents3d{m.apply(pt->position), m.apply(pt->position)};
    if (const auto* im = std::get_if<host::Image>(&e)) {
      ge::Vector3d u = im->uVector * im->widthPixels, v = im->vVector * im->heightPixels;
      return corners(TextBox{im->insertion, im->insertion + u, im->insertion + u + v, im->insertion + v}, m);
    }
    // Hatches and the rest: the corners of their own box, a safe bound.
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
