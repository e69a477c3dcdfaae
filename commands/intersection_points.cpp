#include "commands/intersection_points.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>

namespace commands {

namespace {

// Grid cells twice the merge distance wide: a kept point nearer than the
// merge distance always lies in one of the nine cells around a point, even
// after the rounding of the cell arithmetic.
constexpr double kCellSize = 2 * kMergeDistance;
// Cell indexes are clamped so that far-off points still get a cell.
constexpr double kLargestCell = 4.0e18;

std::int64_t cellOf(double v) {
  double c = std::floor(v / kCellSize);
  if (!(c > -kLargestCell)) return static_cast<std::int64_t>(-kLargestCell);  // also NaN
  if (c > kLargestCell) return static_cast<std::int64_t>(kLargestCell);
  return static_cast<std::int64_t>(c);
}

std::uint64_t cellKey(std::int64_t cx, std::int64_t cy) {
  return static_cast<std::uint64_t>(cx) * 0x9E3779B97F4A7C15ull ^ static_cast<std::uint64_t>(cy);
}

// Boxes are widened a little so that curves touching at a box edge still pair.
double padOf(const ge::Extents3d& box) {
  double size = std::max({std::abs(box.min.x), std::abs(box.max.x), std::abs(box.min.y), std::abs(box.max.y), 1.0});
  return size * 1e-9;
}

}  // namespace

ge::PointList mergeIntersections(const ge::PointList& raw) {
  ge::PointList kept;
  // Cell key -> the first kept point in it; next chains the kept points of a cell.
  std::unordered_map<std::uint64_t, std::uint32_t> first;
  std::vector<std::uint32_t> next;
  constexpr std::uint32_t kEnd = UINT32_MAX;
  first.reserve(raw.size());
  for (const ge::Point3d& p : raw) {
    std::int64_t cx = cellOf(p.x), cy = cellOf(p.y);
    bool near = false;
    for (std::int64_t dx = -1; dx <= 1 && !near; ++dx)
      for (std::int64_t dy = -1; dy <= 1 && !near; ++dy) {
        auto it = first.find(cellKey(cx + dx, cy + dy));
        if (it == first.end()) continue;
        for (std::uint32_t k = it->second; k != kEnd; k = next[k])
          if (!(p.distanceTo(kept[k]) >= kMergeDistance)) {
            near = true;
            break;
          }
      }
    if (near) continue;
    auto index = static_cast<std::uint32_t>(kept.size());
    kept.push_back(p);
    auto [it, added] = first.try_emplace(cellKey(cx, cy), index);
    next.push_back(added ? kEnd : it->second);
    if (!added) it->second = index;
  }
  return kept;
}

std::vector<std::vector<std::size_t>> overlappingPairs(const std::vector<ge::Extents3d>& boxes) {
  const std::size_t n = boxes.size();
  std::vector<std::vector<std::size_t>> rows(n);
  std::vector<std::size_t> boxed, unboxed;
  for (std::size_t i = 0; i < n; ++i) (boxes[i].isValid() ? boxed : unboxed).push_back(i);
  auto pairUp = [&](std::size_t a, std::size_t b) { rows[std::min(a, b)].push_back(std::max(a, b)); };
  // Sort and sweep along x: a box meets the boxes still open when it starts.
  std::sort(boxed.begin(), boxed.end(), [&](std::size_t a, std::size_t b) { return boxes[a].min.x < boxes[b].min.x; });
  std::vector<std::size_t> open;
  for (std::size_t i : boxed) {
    const ge::Extents3d& b = boxes[i];
    double pad = padOf(b);
    std::erase_if(open, [&](std::size_t k) { return boxes[k].max.x + padOf(boxes[k]) < b.min.x - pad; });
    for (std::size_t k : open) {
      const ge::Extents3d& o = boxes[k];
      double both = pad + padOf(o);
      if (o.min.y <= b.max.y + both && b.min.y <= o.max.y + both) pairUp(i, k);
    }
    open.push_back(i);
  }
  for (std::size_t u : unboxed)
    for (std::size_t k = 0; k < n; ++k)
      if (k != u && (boxes[k].isValid() || k > u)) pairUp(u, k);
  for (auto& row : rows) std::sort(row.begin(), row.end());
  return rows;
}

ge::PointList collectAmongCurves(const host::CurveServices& curves, const std::vector<host::EntityData>& data,
                                 const ProgressFn& progress) {
  std::vector<ge::Extents3d> boxes(data.size());
  for (std::size_t i = 0; i < data.size(); ++i)
    if (curves.getGeomExtents(data[i], boxes[i]) != host::ErrorStatus::eOk) boxes[i] = ge::Extents3d{};
  std::vector<std::vector<std::size_t>> rows = overlappingPairs(boxes);
  ge::PointList raw;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    // A failed intersection adds no points and the walk goes on.
    for (std::size_t j : rows[i]) curves.intersectWith(data[i], data[j], host::Intersect::kOnBothOperands, raw);
    if (progress && !progress(i + 1, rows.size())) break;
  }
  return raw;
}

ge::PointList collectWithCurve(const host::CurveServices& curves, const host::EntityData& picked,
                               const std::vector<host::EntityData>& others) {
  ge::PointList raw;
  for (const host::EntityData& other : others)
    curves.intersectWith(picked, other, host::Intersect::kOnBothOperands, raw);
  return raw;
}

void orderAlongCurve(const host::CurveServices& curves, const host::EntityData& picked, ge::PointList& points) {
  if (points.empty()) return;
  std::vector<std::pair<double, ge::Point3d>> along;
  along.reserve(points.size());
  for (const ge::Point3d& p : points) {
    double d = 0;
    if (curves.getDistAtPoint(picked, p, d) != host::ErrorStatus::eOk) d = 0;
    along.emplace_back(d, p);
  }
  std::stable_sort(along.begin(), along.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  for (std::size_t i = 0; i < points.size(); ++i) points[i] = along[i].second;
  ge::Point3d start, end;
  if (curves.getStartPoint(picked, start) == host::ErrorStatus::eOk &&
      curves.getEndPoint(picked, end) == host::ErrorStatus::eOk &&
      points.front().distanceTo(start) > points.front().distanceTo(end))
    std::reverse(points.begin(), points.end());
}

}  // namespace commands
