#include "commands/intersection_points.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <exception>
#include <thread>
#include <utility>

namespace commands {

namespace {

// Grid cells eight merge distances wide: a kept point nearer than the merge
// distance lies in the point's own cell or in the neighbour across an edge
// less than a merge distance away, so most points look at one cell; kept
// points lie at least a merge distance apart, so a cell holds few of them
// unless they are stacked in height.
constexpr double kCellSize = 8 * kMergeDistance;
// Points whose cells are fetched ahead of the walk: the table is far larger
// than the caches for big runs, and a miss per cell would rule the time.
constexpr std::size_t kLookAhead = 16;
// Cell indexes are clamped so that far-off points still get a cell.
constexpr double kLargestCell = 4.0e18;

std::int64_t cellOf(double v) {
  double c = std::floor(v / kCellSize);
  if (!(c > -kLargestCell)) return static_cast<std::int64_t>(-kLargestCell);  // also NaN
  if (c > kLargestCell) return static_cast<std::int64_t>(kLargestCell);
  return static_cast<std::int64_t>(c);
}

// Boxes are widened a little so that curves touching at a box edge still pair.
double padOf(const ge::Extents3d& box) {
  double size = std::max({std::abs(box.min.x), std::abs(box.max.x), std::abs(box.min.y), std::abs(box.max.y), 1.0});
  return size * 1e-9;
}

}  // namespace

// Kept points by grid cell: an open-addressing table from a cell to the
// newest kept point in it, the older ones chained behind it.
class IntersectionMerger::KeptGrid {
 public:
  explicit KeptGrid(std::size_t expected) {
    std::size_t capacity = 16;
    while (capacity < 2 * expected) capacity *= 2;
    slots_.assign(capacity, Slot{});
    next_.reserve(expected);
  }
  // The newest kept point of the cell, or kEnd.
  std::uint32_t head(std::int64_t cx, std::int64_t cy) const {
    std::uint32_t key = keyOf(cx, cy);
    for (std::size_t i = indexOf(key);; i = (i + 1) & (slots_.size() - 1)) {
      const Slot& s = slots_[i];
      if (s.head == kEnd) return kEnd;
      if (s.key == key) return s.head;
    }
  }
  void add(std::int64_t cx, std::int64_t cy, std::uint32_t point) {
    if (2 * (used_ + 1) > slots_.size()) grow();
    std::uint32_t key = keyOf(cx, cy);
    for (std::size_t i = indexOf(key);; i = (i + 1) & (slots_.size() - 1)) {
      Slot& s = slots_[i];
      if (s.head == kEnd) {
        s = {key, point};
        ++used_;
        next_.push_back(kEnd);
        return;
      }
      if (s.key == key) {
        next_.push_back(s.head);
        s.head = point;
        return;
      }
    }
  }
  std::uint32_t next(std::uint32_t point) const { return next_[point]; }
  void prefetch(std::int64_t cx, std::int64_t cy) const { __builtin_prefetch(&slots_[indexOf(keyOf(cx, cy))]); }

  static constexpr std::uint32_t kEnd = UINT32_MAX;

 private:
  // Eight bytes a slot, so that twice as many fit in the caches.
  struct Slot {
    std::uint32_t key = 0;
    std::uint32_t head = kEnd;
  };
  // A hash of the cell: the finaliser of MurmurHash3, so that neighbouring
  // cells land far apart and the linear probes stay short. Cells that share
  // a key share a chain; that only adds points to compare with.
  static std::uint32_t keyOf(std::int64_t cx, std::int64_t cy) {
    std::uint64_t h = (static_cast<std::uint64_t>(cx) << 32) ^ static_cast<std::uint32_t>(cy);
    h ^= h >> 33;
    h *= 0xFF51AFD7ED558CCDull;
    h ^= h >> 33;
    h *= 0xC4CEB9FE1A85EC53ull;
    h ^= h >> 33;
    return static_cast<std::uint32_t>(h);
  }
  // The table never has more than 2^32 slots, so the key holds the whole index.
  std::size_t indexOf(std::uint32_t key) const { return key & (slots_.size() - 1); }
  void grow() {
    std::vector<Slot> old = std::move(slots_);
    slots_.assign(old.size() * 2, Slot{});
    for (const Slot& s : old) {
      if (s.head == kEnd) continue;
      std::size_t i = indexOf(s.key);
      while (slots_[i].head != kEnd) i = (i + 1) & (slots_.size() - 1);
      slots_[i] = s;
    }
  }

  std::vector<Slot> slots_;
  std::vector<std::uint32_t> next_;  // by kept point: the point kept before it in its cell
  std::size_t used_ = 0;
};

namespace {

// The cell of a coordinate and the neighbouring cells that can hold a point
// nearer than the merge distance: a neighbour only across a near edge.
struct CellSpan {
  std::int64_t cell, low, high;
};

CellSpan spanOf(double v) {
  double scaled = v / kCellSize;
  std::int64_t c = cellOf(v);
  double within = scaled - std::floor(scaled);
  // The margin covers the rounding of the scaled coordinate.
  constexpr double kReach = kMergeDistance / kCellSize + 1e-6;
  return {c, within < kReach ? c - 1 : c, within > 1 - kReach ? c + 1 : c};
}

}  // namespace

IntersectionMerger::IntersectionMerger() : grid_(std::make_unique<KeptGrid>(1024)) {}
IntersectionMerger::~IntersectionMerger() = default;

void IntersectionMerger::add(const ge::PointList& next) {
  KeptGrid& grid = *grid_;
  for (std::size_t i = 0; i < next.size(); ++i) {
    if (i + kLookAhead < next.size()) {
      CellSpan ax = spanOf(next[i + kLookAhead].x), ay = spanOf(next[i + kLookAhead].y);
      for (std::int64_t cx = ax.low; cx <= ax.high; ++cx)
        for (std::int64_t cy = ay.low; cy <= ay.high; ++cy) grid.prefetch(cx, cy);
    }
    const ge::Point3d& p = next[i];
    CellSpan x = spanOf(p.x), y = spanOf(p.y);
    bool near = false;
    for (std::int64_t cx = x.low; cx <= x.high && !near; ++cx)
      for (std::int64_t cy = y.low; cy <= y.high && !near; ++cy)
        for (std::uint32_t k = grid.head(cx, cy); k != KeptGrid::kEnd; k = grid.next(k))
          if (!(p.distanceTo(kept_[k]) >= kMergeDistance)) {
            near = true;
            break;
          }
    if (near) continue;
    grid.add(x.cell, y.cell, static_cast<std::uint32_t>(kept_.size()));
    kept_.push_back(p);
  }
}

ge::PointList IntersectionMerger::take() {
  grid_ = std::make_unique<KeptGrid>(1024);
  return std::exchange(kept_, {});
}

ge::PointList mergeIntersections(const ge::PointList& raw) {
  IntersectionMerger merger;
  merger.add(raw);
  return merger.take();
}

namespace {

// Up to this many curves every pair of boxes is compared directly: that is
// quicker than sorting the pairs a sweep finds.
constexpr std::size_t kDirectPairing = 4096;

// Every pair compared, the rows coming out in order.
std::vector<std::vector<std::size_t>> pairsByScan(const std::vector<ge::Extents3d>& boxes) {
  const std::size_t n = boxes.size();
  std::vector<double> minX(n), maxX(n), minY(n), maxY(n);
  std::vector<bool> valid(n);
  for (std::size_t i = 0; i < n; ++i) {
    valid[i] = boxes[i].isValid();
    double pad = valid[i] ? padOf(boxes[i]) : 0;
    minX[i] = boxes[i].min.x - pad, maxX[i] = boxes[i].max.x + pad;
    minY[i] = boxes[i].min.y - pad, maxY[i] = boxes[i].max.y + pad;
  }
  std::vector<std::vector<std::size_t>> rows(n);
  for (std::size_t i = 0; i < n; ++i)
    for (std::size_t j = i + 1; j < n; ++j)
      if (!valid[i] || !valid[j] ||
          (minX[j] <= maxX[i] && minX[i] <= maxX[j] && minY[j] <= maxY[i] && minY[i] <= maxY[j]))
        rows[i].push_back(j);
  return rows;
}

}  // namespace

std::vector<std::vector<std::size_t>> overlappingPairs(const std::vector<ge::Extents3d>& boxes) {
  const std::size_t n = boxes.size();
  if (n <= kDirectPairing) return pairsByScan(boxes);
  std::vector<std::vector<std::size_t>> rows(n);
  std::vector<std::size_t> boxed, unboxed;
  for (std::size_t i = 0; i < n; ++i) (boxes[i].isValid() ? boxed : unboxed).push_back(i);
  auto pairUp = [&](std::size_t a, std::size_t b) { rows[std::min(a, b)].push_back(std::max(a, b)); };
  // Sort and sweep along x: a box meets the boxes still open when it starts.
  std::sort(boxed.begin(), boxed.end(), [&](std::size_t a, std::size_t b) { return boxes[a].min.x < boxes[b].min.x; });
  std::vector<double> pads(n);
  for (std::size_t i : boxed) pads[i] = padOf(boxes[i]);
  std::vector<std::size_t> open;
  for (std::size_t i : boxed) {
    const ge::Extents3d& b = boxes[i];
    double pad = pads[i];
    std::erase_if(open, [&](std::size_t k) { return boxes[k].max.x + pads[k] < b.min.x - pad; });
    for (std::size_t k : open) {
      const ge::Extents3d& o = boxes[k];
      double both = pad + pads[k];
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

namespace {

// The pairs of curves whose extents overlap, by the first curve of the pair.
std::vector<std::vector<std::size_t>> pairsOf(const host::CurveServices& curves,
                                              const std::vector<host::EntityData>& data) {
  std::vector<ge::Extents3d> boxes(data.size());
  for (std::size_t i = 0; i < data.size(); ++i)
    if (curves.getGeomExtents(data[i], boxes[i]) != host::ErrorStatus::eOk) boxes[i] = ge::Extents3d{};
  return overlappingPairs(boxes);
}

// The points of curve i with the later curves it pairs with. A failed
// intersection adds no points and the walk goes on.
void collectRow(const host::CurveServices& curves, const std::vector<host::EntityData>& data,
                const std::vector<std::size_t>& row, std::size_t i, ge::PointList& out) {
  for (std::size_t j : row) curves.intersectWith(data[i], data[j], host::Intersect::kOnBothOperands, out);
}

}  // namespace

ge::PointList collectAmongCurves(const host::CurveServices& curves, const std::vector<host::EntityData>& data,
                                 const ProgressFn& progress) {
  std::vector<std::vector<std::size_t>> rows = pairsOf(curves, data);
  ge::PointList raw;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    collectRow(curves, data, rows[i], i, raw);
    if (progress && !progress(i + 1, rows.size())) break;
  }
  return raw;
}

ge::PointList collectAndMergeAmongCurves(const host::CurveServices& curves, const std::vector<host::EntityData>& data,
                                         const ProgressFn& progress) {
  std::vector<std::vector<std::size_t>> rows = pairsOf(curves, data);
  IntersectionMerger merger;
  if (!curves.callableFromWorkerThreads() || std::thread::hardware_concurrency() < 2) {
    ge::PointList row;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      row.clear();
      collectRow(curves, data, rows[i], i, row);
      merger.add(row);
      if (progress && !progress(i + 1, rows.size())) break;
    }
    return merger.take();
  }
  // The worker fills the rows in order and publishes how many are done; this
  // thread merges each row once it is published and frees it.
  std::vector<ge::PointList> collected(rows.size());
  std::atomic<std::size_t> ready{0};
  std::atomic<bool> stop{false};
  std::exception_ptr failure;
  {
    std::jthread worker([&] {
      try {
        for (std::size_t i = 0; i < rows.size() && !stop.load(std::memory_order_relaxed); ++i) {
          collectRow(curves, data, rows[i], i, collected[i]);
          ready.store(i + 1, std::memory_order_release);
          ready.notify_one();
        }
      } catch (...) {
        failure = std::current_exception();
      }
      // Wakes the merging thread for good, also after a failure or a stop.
      ready.store(rows.size() + 1, std::memory_order_release);
      ready.notify_one();
    });
    for (std::size_t i = 0; i < rows.size(); ++i) {
      std::size_t now = ready.load(std::memory_order_acquire);
      while (now <= i) {
        ready.wait(now, std::memory_order_acquire);
        now = ready.load(std::memory_order_acquire);
      }
      if (now > rows.size() && failure) break;  // the row may be half done
      merger.add(collected[i]);
      collected[i] = ge::PointList();
      if (progress && !progress(i + 1, rows.size())) {
        stop.store(true, std::memory_order_relaxed);
        break;
      }
    }
  }
  if (failure) std::rethrow_exception(failure);
  return merger.take();
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
