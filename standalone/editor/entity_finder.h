#pragma once
// Finding entities of the drawing by a picked point, a window, a handle or
// drawing order, for picks and selections.
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <string_view>
#include <vector>

#include "ge/point.h"
#include "host/curves.h"
#include "host/drawing.h"

namespace standalone {

class EntityFinder {
 public:
  // Tells whether a layer is frozen or locked, so ALL leaves its entities out.
  using LayerTest = std::function<bool(const std::string& layer)>;

  EntityFinder(const host::Drawing& drawing, const host::CurveServices& curves, LayerTest frozenOrLocked = {})
      : drawing_(drawing), curves_(curves), frozenOrLocked_(std::move(frozenOrLocked)) {}

  // While a scope lives, each block's contents are read from the drawing
  // once, however many references show it. Every query opens one; the
  // outermost scope owns the memo.
  class QueryScope {
   public:
    explicit QueryScope(const EntityFinder& finder);
    ~QueryScope();
    QueryScope(const QueryScope&) = delete;
    QueryScope& operator=(const QueryScope&) = delete;

   private:
    const EntityFinder& finder_;
    bool owner_;
  };

  // While a scope lives, each entity's extents are computed once: the
  // drawing does not change during one selection, and extents of free-form
  // curves are what picks and windows spend their time on.
  class CacheScope {
   public:
    explicit CacheScope(const EntityFinder& finder) : finder_(finder), blocks_(finder) { finder_.cache_.emplace(); }
    ~CacheScope() { finder_.cache_.reset(); }
    CacheScope(const CacheScope&) = delete;
    CacheScope& operator=(const CacheScope&) = delete;

   private:
    const EntityFinder& finder_;
    QueryScope blocks_;
  };

  // Hidden (invisible) entities and those on frozen layers are neither picked
  // nor selected by any query but wholeDrawing() and byHandle(), which name
  // objects, not what is seen. A block reference is met only on what it
  // shows: its entities on frozen layers do not count.

  // The entity of the current space nearest to p in the XY plane within
  // aperture drawing units; of equal distances the one drawn last wins, as
  // it lies on top. Entities met on their own geometry (curves, what block
  // references draw, points) come before those met only on their box (texts,
  // hatches, images).
  std::optional<host::ObjectId> pickAt(const ge::Point3d& p, double aperture) const;
  // Entities of the current space wholly inside the rectangle of two corners
  // (window), or inside or crossing its edges (crossing), in drawing order.
  std::vector<host::ObjectId> inWindow(const ge::Point3d& a, const ge::Point3d& b, bool crossing) const;
  // Entities of the current space wholly inside the polygon of the points
  // (window polygon), or inside or crossing its edges (crossing polygon), in
  // drawing order; the polygon closes itself. Nothing for fewer than three points.
  std::vector<host::ObjectId> inPolygon(const std::vector<ge::Point3d>& polygon, bool crossing) const;
  // Entities of the current space that the fence (the open chain of the
  // points) passes through or touches, in drawing order.
  std::vector<host::ObjectId> alongFence(const std::vector<ge::Point3d>& fence) const;
  // Every visible entity of the current space in drawing order, except those on frozen or locked layers.
  std::vector<host::ObjectId> all() const;
  // Every entity of model space and of the current space (the whole drawing for "X").
  std::vector<host::ObjectId> wholeDrawing() const;
  // The entity created last in the current space.
  std::optional<host::ObjectId> last() const;
  // An entity by a typed handle: "#1F" or "(handent \"1F\")"; nothing when the
  // text is no handle or names no live entity.
  std::optional<host::ObjectId> byHandle(std::string_view text) const;

 private:
  // How far a pick is from an entity in XY: on its own geometry (curves,
  // block references, points) or only on its box (texts, hatches, images).
  struct PickDistance {
    double distance = 0;
    bool onGeometry = false;
  };
  // Nothing when the entity cannot be measured.
  std::optional<PickDistance> distanceTo(const host::Entity& e, const ge::Point3d& p) const;
  // Whether a crossing window (box) takes the entity whose extents are ext.
  bool crossesRectangle(const host::Entity& e, const ge::Extents3d& ext, const ge::Extents3d& box) const;
  // Whether a curve meets one of the segments of the chain of points in XY
  // (closed: the last point joins the first); nothing when the curve
  // services cannot tell. Defined in entity_finder_shapes.cpp.
  std::optional<bool> curveMeetsChain(const host::Entity& e, const ge::Extents3d& ext,
                                      const std::vector<ge::Point2d>& chain, bool closed) const;
  // Whether a window polygon (crossing: a crossing polygon) takes the entity whose extents are ext.
  bool polygonTakes(const host::Entity& e, const ge::Extents3d& ext, const std::vector<ge::Point2d>& polygon,
                    bool crossing) const;
  // Block contents as they show (entities on frozen layers left out), through
  // the memo while a query scope lives.
  host::BlockContentsLookup blockLookup() const;
  // Whether the entity is hidden: invisible, or on a frozen layer (asked
  // once per layer while a query scope lives).
  bool hidden(const host::Entity& e) const;
  // The entity's extents (from the cache while a scope lives); false when it has none.
  bool boxOf(const host::Entity& e, ge::Extents3d& ext) const;

  const host::Drawing& drawing_;
  const host::CurveServices& curves_;
  LayerTest frozenOrLocked_;
  mutable std::optional<std::unordered_map<std::uint64_t, std::optional<ge::Extents3d>>> cache_;
  mutable std::optional<std::unordered_map<std::string, std::shared_ptr<const host::BlockContents>>> blocks_;
  mutable std::unordered_map<std::string, bool> frozen_;  // per layer, while a query scope lives
};

// The extents of an entity as picks, windows and ZOOM see them: the curve
// services' extents (an estimate for texts), and for block references the box
// of their block's entities as placed. Nothing for what has no extents.
std::optional<ge::Extents3d> entityExtents(const host::Drawing& drawing, const host::CurveServices& curves,
                                           const host::EntityData& data);

// The handle a typed answer names: "#1F" or "(handent \"1F\")" (hexadecimal, case ignored).
std::optional<std::uint64_t> parseHandleAnswer(std::string_view text);

}  // namespace standalone
