#include "apps/corvane-workbench/snaps.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "standalone/editor/entity_finder.h"

namespace workbench {

namespace {

constexpr int kMostCells = 512;         // per side of the grid
constexpr int kMostCellsPerItem = 256;  // larger items are kept aside and always checked
constexpr double kTwoPi = 2 * std::numbers::pi;

double distanceXY(const ge::Point3d& a, const ge::Point3d& b) { return std::hypot(a.x - b.x, a.y - b.y); }

struct Candidate {
  std::vector<std::pair<ge::Point3d, SnapKind>> points;
  void add(const ge::Point3d& p, SnapKind k) { points.emplace_back(p, k); }
};

ge::Point3d onCircle(const ge::Point3d& c, double r, double angle) {
  return {c.x + r * std::cos(angle), c.y + r * std::sin(angle), c.z};
}

// True when angle lies on the counter-clockwise sweep from start to end.
bool withinSweep(double angle, double start, double end) {
  double sweep = std::fmod(end - start + 2 * kTwoPi, kTwoPi);
  double at = std::fmod(angle - start + 2 * kTwoPi, kTwoPi);
  return at <= sweep + 1e-12;
}

// The foot of the perpendicular from p to the segment a-b, when it falls on it.
std::optional<ge::Point3d> footOnSegment(const ge::Point3d& a, const ge::Point3d& b, const ge::Point3d& p) {
  double dx = b.x - a.x, dy = b.y - a.y, len2 = dx * dx + dy * dy;
  if (len2 <= 0) return std::nullopt;
  double t = ((p.x - a.x) * dx + (p.y - a.y) * dy) / len2;
  if (t < 0 || t > 1) return std::nullopt;
  return ge::Point3d{a.x + t * dx, a.y + t * dy, a.z + t * (b.z - a.z)};
}

void addCircleLike(Candidate& c, const ge::Point3d& center, double r, const std::optional<ge::Point3d>& base,
                   double start, double end) {
  c.add(center, SnapKind::kCenter);
  bool full = end - start >= kTwoPi;  // a circle: every angle is on it
  auto on = [&](double angle) { return full || withinSweep(angle, start, end); };
  for (int q = 0; q < 4; ++q) {
    double a = q * std::numbers::pi / 2;
    if (on(a)) c.add(onCircle(center, r, a), SnapKind::kQuadrant);
  }
  if (base) {
    double a = std::atan2(base->y - center.y, base->x - center.x);
    for (double foot : {a, a + std::numbers::pi})
      if (on(foot)) c.add(onCircle(center, r, foot), SnapKind::kPerpendicular);
  }
}

// The middle of a straight or bulged segment from a to b.
ge::Point3d segmentMiddle(const ge::Point3d& a, const ge::Point3d& b, double bulge) {
  double dx = b.x - a.x, dy = b.y - a.y, chord = std::hypot(dx, dy);
  if (bulge == 0 || chord == 0) return {(a.x + b.x) / 2, (a.y + b.y) / 2, (a.z + b.z) / 2};
  // The arc's middle lies the sagitta away from the chord's middle, to the
  // right of the chord for a counter-clockwise (positive) bulge.
  double sagitta = bulge * chord / 2;
  return {(a.x + b.x) / 2 + sagitta * dy / chord, (a.y + b.y) / 2 - sagitta * dx / chord, a.z};
}

void addSegment(Candidate& c, const ge::Point3d& a, const ge::Point3d& b, double bulge,
                const std::optional<ge::Point3d>& base) {
  c.add(segmentMiddle(a, b, bulge), SnapKind::kMidpoint);
  if (base && (bulge == 0 || distanceXY(a, b) == 0))
    if (auto f = footOnSegment(a, b, *base)) c.add(*f, SnapKind::kPerpendicular);
}

Candidate snapPointsOf(const host::Entity& e, const host::CurveServices& curves,
                       const std::optional<ge::Point3d>& base) {
  Candidate c;
  std::visit(
      [&](const auto& d) {
        using T = std::decay_t<decltype(d)>;
        if constexpr (std::is_same_v<T, host::Line>) {
          c.add(d.start, SnapKind::kEndpoint);
          c.add(d.end, SnapKind::kEndpoint);
          addSegment(c, d.start, d.end, 0, base);
        } else if constexpr (std::is_same_v<T, host::Circle>) {
          addCircleLike(c, d.center, d.radius, base, 0, kTwoPi);
        } else if constexpr (std::is_same_v<T, host::Arc>) {
          c.add(onCircle(d.center, d.radius, d.startAngle), SnapKind::kEndpoint);
          c.add(onCircle(d.center, d.radius, d.endAngle), SnapKind::kEndpoint);
          double sweep = std::fmod(d.endAngle - d.startAngle + 2 * kTwoPi, kTwoPi);
          c.add(onCircle(d.center, d.radius, d.startAngle + sweep / 2), SnapKind::kMidpoint);
          addCircleLike(c, d.center, d.radius, base, d.startAngle, d.endAngle);
        } else if constexpr (std::is_same_v<T, host::Ellipse>) {
          c.add(d.center, SnapKind::kCenter);
          ge::Vector3d minor{-d.majorAxis.y * d.ratio, d.majorAxis.x * d.ratio, 0};
          for (int s : {1, -1}) {
            c.add(d.center + d.majorAxis * s, SnapKind::kQuadrant);
            c.add(d.center + minor * s, SnapKind::kQuadrant);
          }
        } else if constexpr (std::is_same_v<T, host::LwPolyline>) {
          std::size_t n = d.vertices.size();
          for (std::size_t i = 0; i < n; ++i) {
            ge::Point3d a{d.vertices[i].x, d.vertices[i].y, d.elevation};
            c.add(a, SnapKind::kEndpoint);
            if (i + 1 < n || (d.closed && n > 1)) {
              const host::LwVertex& next = d.vertices[(i + 1) % n];
              addSegment(c, a, {next.x, next.y, d.elevation}, d.vertices[i].bulge, base);
            }
          }
        } else {
          ge::Point3d p;
          if (curves.getStartPoint(e.data, p) == host::ErrorStatus::eOk) c.add(p, SnapKind::kEndpoint);
          if (curves.getEndPoint(e.data, p) == host::ErrorStatus::eOk) c.add(p, SnapKind::kEndpoint);
        }
      },
      e.data);
  return c;
}

}  // namespace

EntityGrid::EntityGrid(const host::Drawing& drawing, const host::CurveServices& curves) {
  ge::Extents3d all;
  std::unordered_map<std::string, bool> frozenLayers;
  for (host::ObjectId id : drawing.entitiesOf(drawing.modelSpace())) {
    std::optional<host::Entity> e = drawing.read(id);
    if (!e || e->props.invisible) continue;
    // What is not shown is not snapped to.
    auto [frozen, fresh] = frozenLayers.try_emplace(e->props.layer, false);
    if (fresh) frozen->second = drawing.isLayerFrozen(e->props.layer);
    if (frozen->second) continue;
    if (std::optional<ge::Extents3d> box = standalone::entityExtents(drawing, curves, e->data)) {
      items_.push_back({id, *box});
      all.add(*box);
    }
  }
  if (items_.empty()) return;
  minX_ = all.min.x;
  minY_ = all.min.y;
  double w = all.max.x - all.min.x, h = all.max.y - all.min.y;
  int side = std::clamp(static_cast<int>(std::sqrt(static_cast<double>(items_.size()))), 1, kMostCells);
  cell_ = std::max({w, h, 1e-9}) / side;
  columns_ = static_cast<int>(w / cell_) + 1;
  rows_ = static_cast<int>(h / cell_) + 1;
  cells_.resize(static_cast<std::size_t>(columns_) * rows_);
  for (int i = 0; i < static_cast<int>(items_.size()); ++i) {
    const ge::Extents3d& b = items_[i].box;
    int x0 = cellOf(b.min.x, true), x1 = cellOf(b.max.x, true);
    int y0 = cellOf(b.min.y, false), y1 = cellOf(b.max.y, false);
    if ((x1 - x0 + 1) * (y1 - y0 + 1) > kMostCellsPerItem) {
      large_.push_back(i);
      continue;
    }
    for (int y = y0; y <= y1; ++y)
      for (int x = x0; x <= x1; ++x) cells_[static_cast<std::size_t>(y) * columns_ + x].push_back(i);
  }
}

int EntityGrid::cellOf(double v, bool column) const {
  double origin = column ? minX_ : minY_;
  int limit = (column ? columns_ : rows_) - 1;
  double at = std::floor((v - origin) / cell_);
  return static_cast<int>(std::clamp(at, 0.0, static_cast<double>(std::max(limit, 0))));
}

std::vector<host::ObjectId> EntityGrid::near(const ge::Point2d& p, double radius) const {
  std::vector<host::ObjectId> found;
  if (items_.empty()) return found;
  auto close = [&](const Item& it) {
    return p.x >= it.box.min.x - radius && p.x <= it.box.max.x + radius && p.y >= it.box.min.y - radius &&
           p.y <= it.box.max.y + radius;
  };
  std::unordered_set<int> seen;
  int x0 = cellOf(p.x - radius, true), x1 = cellOf(p.x + radius, true);
  int y0 = cellOf(p.y - radius, false), y1 = cellOf(p.y + radius, false);
  for (int y = y0; y <= y1; ++y)
    for (int x = x0; x <= x1; ++x)
      for (int i : cells_[static_cast<std::size_t>(y) * columns_ + x])
        if (seen.insert(i).second && close(items_[i])) found.push_back(items_[i].id);
  for (int i : large_)
    if (close(items_[i])) found.push_back(items_[i].id);
  return found;
}

std::optional<SnapHit> findSnap(const host::Drawing& drawing, const host::CurveServices& curves,
                                const std::vector<host::ObjectId>& candidates, const ge::Point3d& cursor,
                                double aperture, const std::optional<ge::Point3d>& base, int enabled) {
  std::optional<SnapHit> exact, perpendicular, nearest;
  double exactD = aperture, perpD = aperture, nearD = aperture;
  std::vector<host::Entity> entities;
  for (host::ObjectId id : candidates)
    if (std::optional<host::Entity> e = drawing.read(id)) entities.push_back(std::move(*e));
  auto consider = [&](const ge::Point3d& p, SnapKind k) {
    if (!(enabled & snapBit(k))) return;
    double d = distanceXY(p, cursor);
    std::optional<SnapHit>* slot = k == SnapKind::kPerpendicular ? &perpendicular : &exact;
    double& best = k == SnapKind::kPerpendicular ? perpD : exactD;
    if (d <= best) {
      best = d;
      *slot = SnapHit{p, k};
    }
  };
  for (const host::Entity& e : entities) {
    for (const auto& [p, k] : snapPointsOf(e, curves, base).points) consider(p, k);
    ge::Point3d on;
    if ((enabled & snapBit(SnapKind::kNearest)) &&
        curves.getClosestPointTo(e.data, cursor, on) == host::ErrorStatus::eOk) {
      double d = distanceXY(on, cursor);
      if (d <= nearD) {
        nearD = d;
        nearest = SnapHit{on, SnapKind::kNearest};
      }
    }
  }
  if (enabled & snapBit(SnapKind::kIntersection)) {
    constexpr std::size_t kMostPairs = 12;  // a dense spot is not worth a stall
    std::size_t n = std::min(entities.size(), kMostPairs);
    for (std::size_t i = 0; i < n; ++i)
      for (std::size_t j = i + 1; j < n; ++j) {
        std::vector<ge::Point3d> points;
        if (curves.intersectWith(entities[i].data, entities[j].data, host::Intersect::kOnBothOperands, points) !=
            host::ErrorStatus::eOk)
          continue;
        for (const ge::Point3d& p : points) consider(p, SnapKind::kIntersection);
      }
  }
  if (exact) return exact;
  if (perpendicular) return perpendicular;
  return nearest;
}

std::vector<ge::Point3d> gripPointsOf(const host::Entity& entity, const host::CurveServices& curves) {
  std::vector<ge::Point3d> grips;
  for (const auto& [p, k] : snapPointsOf(entity, curves, std::nullopt).points)
    if (k != SnapKind::kPerpendicular) grips.push_back(p);
  return grips;
}

std::optional<double> bulgeThrough(const ge::Point2d& a, const ge::Point2d& b, const ge::Point2d& p) {
  // The angle alpha at p between a and b is an inscribed angle: the arc from
  // a to b through p turns through 2 pi - 2 alpha, so its bulge, the tangent
  // of a quarter of that, is cot(alpha / 2) = (|u||v| + u.v) / |u x v|.
  double ux = a.x - p.x, uy = a.y - p.y, vx = b.x - p.x, vy = b.y - p.y;
  double lengths = std::hypot(ux, uy) * std::hypot(vx, vy), dot = ux * vx + uy * vy, cross = ux * vy - uy * vx;
  if (lengths == 0) return std::nullopt;
  if (std::abs(cross) <= 1e-12 * lengths) {
    if (dot < 0) return 0.0;  // on the chord: a straight segment
    return std::nullopt;      // beyond an end: no arc passes
  }
  // Counter-clockwise (positive) when p lies right of a to b, where u x v is negative.
  return (lengths + dot) / -cross;
}

bool moveLwPolylineGrip(host::LwPolyline& pl, const ge::Point3d& from, const ge::Point3d& to) {
  std::size_t n = pl.vertices.size();
  for (std::size_t i = 0; i < n; ++i)
    if (pl.vertices[i].x == from.x && pl.vertices[i].y == from.y) {
      pl.vertices[i].x = to.x;
      pl.vertices[i].y = to.y;
      return true;
    }
  for (std::size_t i = 0; i < n && n > 1 && (i + 1 < n || pl.closed); ++i) {
    host::LwVertex &a = pl.vertices[i], &b = pl.vertices[(i + 1) % n];
    ge::Point3d middle = segmentMiddle({a.x, a.y, pl.elevation}, {b.x, b.y, pl.elevation}, a.bulge);
    if (middle.x != from.x || middle.y != from.y) continue;
    if (a.bulge == 0) {
      // A straight segment moves whole.
      double dx = to.x - from.x, dy = to.y - from.y;
      a.x += dx, a.y += dy, b.x += dx, b.y += dy;
      return true;
    }
    std::optional<double> bulge = bulgeThrough({a.x, a.y}, {b.x, b.y}, {to.x, to.y});
    if (!bulge) return false;
    a.bulge = *bulge;
    return true;
  }
  return false;
}

ge::Point3d orthoPoint(const ge::Point3d& base, const ge::Point3d& p) {
  if (std::abs(p.x - base.x) >= std::abs(p.y - base.y)) return {p.x, base.y, base.z};
  return {base.x, p.y, base.z};
}

}  // namespace workbench
