#pragma once
// Uniform grid over boxes of segments, for "which segments are near here"
// queries in offsets. About two cells per box, and cells no smaller than a
// typical box or query, so a query touches a handful of cells.
#include <algorithm>
#include <cmath>
#include <vector>

#include "standalone/kernel/intersect2d.h"

namespace standalone::kernel {

struct Box2 {
  double minX = 0, minY = 0, maxX = 0, maxY = 0;
};

class SpatialGrid {
 public:
  // minCell: the smallest cell worth having, about the size of the queries.
  explicit SpatialGrid(const std::vector<Box2>& boxes, double minCell = 0) : boxes_(boxes) {
    if (boxes.empty()) return;
    Box2 all = boxes[0];
    double sumSize = 0;
    for (const auto& b : boxes) {
      all.minX = std::min(all.minX, b.minX), all.minY = std::min(all.minY, b.minY);
      all.maxX = std::max(all.maxX, b.maxX), all.maxY = std::max(all.maxY, b.maxY);
      sumSize += std::max(b.maxX - b.minX, b.maxY - b.minY);
    }
    origin_ = {all.minX, all.minY};
    double w = all.maxX - all.minX, h = all.maxY - all.minY;
    double extent = std::max({w, h, 1e-300});
    // About two cells per box, never finer than a typical box.
    double perCell = std::sqrt(std::max(w * h, extent * extent * 1e-6) / (2.0 * boxes.size()));
    cell_ = std::max({sumSize / boxes.size(), perCell, extent / 4096, minCell});
    if (!(cell_ > 0)) cell_ = extent;
    nx_ = std::clamp(static_cast<long>((all.maxX - all.minX) / cell_) + 1, 1L, 4096L);
    ny_ = std::clamp(static_cast<long>((all.maxY - all.minY) / cell_) + 1, 1L, 4096L);
    // Cells as one array of box indices with an offset per cell: two passes
    // (count, then fill) instead of a vector per cell.
    cellStart_.assign(nx_ * ny_ + 1, 0);
    for (size_t i = 0; i < boxes.size(); ++i) forCells(boxes[i], [&](long c) { ++cellStart_[c + 1]; });
    for (size_t c = 1; c < cellStart_.size(); ++c) cellStart_[c] += cellStart_[c - 1];
    entries_.resize(cellStart_.back());
    std::vector<size_t> fill(cellStart_.begin(), cellStart_.end() - 1);
    for (size_t i = 0; i < boxes.size(); ++i) forCells(boxes[i], [&](long c) { entries_[fill[c]++] = i; });
  }

  // Calls f(index) once for every box that overlaps the query box, until f returns true.
  template <typename F>
  void query(const Box2& q, F f) const {
    if (entries_.empty()) return;
    ++stamp_;
    if (seen_.size() != boxes_.size()) seen_.assign(boxes_.size(), 0);
    long x0 = cellX(q.minX), x1 = cellX(q.maxX), y0 = cellY(q.minY), y1 = cellY(q.maxY);
    for (long y = y0; y <= y1; ++y)
      for (long x = x0; x <= x1; ++x)
        for (size_t k = cellStart_[y * nx_ + x], end = cellStart_[y * nx_ + x + 1]; k < end; ++k) {
          size_t i = entries_[k];
          if (seen_[i] == stamp_) continue;
          seen_[i] = stamp_;
          const Box2& b = boxes_[i];
          if (b.minX <= q.maxX && q.minX <= b.maxX && b.minY <= q.maxY && q.minY <= b.maxY && f(i)) return;
        }
  }

  const Box2& box(size_t i) const { return boxes_[i]; }

 private:
  template <typename F>
  void forCells(const Box2& b, F f) const {
    long x0 = cellX(b.minX), x1 = cellX(b.maxX), y0 = cellY(b.minY), y1 = cellY(b.maxY);
    for (long y = y0; y <= y1; ++y)
      for (long x = x0; x <= x1; ++x) f(y * nx_ + x);
  }
  long cellX(double x) const { return std::clamp(static_cast<long>(std::floor((x - origin_.x) / cell_)), 0L, nx_ - 1); }
  long cellY(double y) const { return std::clamp(static_cast<long>(std::floor((y - origin_.y) / cell_)), 0L, ny_ - 1); }

  std::vector<Box2> boxes_;
  Vec2 origin_;
  double cell_ = 1;
  long nx_ = 1, ny_ = 1;
  std::vector<size_t> cellStart_, entries_;
  mutable std::vector<unsigned> seen_;
  mutable unsigned stamp_ = 0;
};

}  // namespace standalone::kernel
