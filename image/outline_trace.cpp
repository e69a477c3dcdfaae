#include "image/outline_trace.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include <potracelib.h>

namespace image {

namespace {

constexpr int kWordBits = static_cast<int>(sizeof(potrace_word) * 8);

struct ParamFree {
  void operator()(potrace_param_t* p) const { potrace_param_free(p); }
};
struct StateFree {
  void operator()(potrace_state_t* s) const { potrace_state_free(s); }
};

// The two-colour reading as potrace's bitmap; picture row y goes to scanline
// height − 1 − y so that the traced coordinates run upward.
std::vector<potrace_word> darkBits(const Picture& picture, int wordsPerLine) {
  std::vector<potrace_word> map(static_cast<std::size_t>(wordsPerLine) * picture.height, 0);
  for (int y = 0; y < picture.height; ++y) {
    potrace_word* line = &map[static_cast<std::size_t>(picture.height - 1 - y) * wordsPerLine];
    const std::uint8_t* p = &picture.rgb[static_cast<std::size_t>(y) * picture.width * 3];
    for (int x = 0; x < picture.width; ++x, p += 3)
      if (isDark({p[0], p[1], p[2]})) line[x / kWordBits] |= potrace_word(1) << (kWordBits - 1 - x % kWordBits);
  }
  return map;
}

ge::Point2d pointOf(const potrace_dpoint_t& p) { return {p.x, p.y}; }

// A cubic Bézier from a through b, c to d, as pieces no farther than flatness
// from the curve (the control polygon's deviation bounds the curve's).
void addBezier(std::vector<ge::Point2d>& out, ge::Point2d a, ge::Point2d b, ge::Point2d c, ge::Point2d d,
               double flatness) {
  double dev = std::max(std::hypot(a.x - 2 * b.x + c.x, a.y - 2 * b.y + c.y),
                        std::hypot(b.x - 2 * c.x + d.x, b.y - 2 * c.y + d.y));
  // Pieces of a cubic with second differences of size dev stray at most
  // (3/4)·dev/n² from it (n pieces); solve for n.
  int n = std::clamp(static_cast<int>(std::ceil(std::sqrt(0.75 * dev / flatness))), 1, 64);
  for (int i = 1; i <= n; ++i) {
    double t = static_cast<double>(i) / n, u = 1 - t;
    double w0 = u * u * u, w1 = 3 * u * u * t, w2 = 3 * u * t * t, w3 = t * t * t;
    out.push_back({w0 * a.x + w1 * b.x + w2 * c.x + w3 * d.x, w0 * a.y + w1 * b.y + w2 * c.y + w3 * d.y});
  }
}

Outline outlineOf(const potrace_path_t& path, double flatness) {
  Outline o;
  o.hole = path.sign == '-';
  const potrace_curve_t& curve = path.curve;
  if (curve.n == 0) return o;
  ge::Point2d at = pointOf(curve.c[curve.n - 1][2]);
  for (int i = 0; i < curve.n; ++i) {
    const potrace_dpoint_t* c = curve.c[i];
    if (curve.tag[i] == POTRACE_CORNER) {
      o.points.push_back(pointOf(c[1]));
      o.points.push_back(pointOf(c[2]));
    } else {
      addBezier(o.points, at, pointOf(c[0]), pointOf(c[1]), pointOf(c[2]), flatness);
    }
    at = pointOf(c[2]);
  }
  return o;  // the last point closes on the first: the start was the end of the last segment
}

}  // namespace

bool isDark(Rgb c) { return 299 * c.r + 587 * c.g + 114 * c.b < 128 * 1000; }

std::vector<Outline> traceOutlines(const Picture& picture, const TraceOptions& options) {
  std::vector<Outline> outlines;
  if (picture.empty()) return outlines;
  int wordsPerLine = (picture.width + kWordBits - 1) / kWordBits;
  std::vector<potrace_word> map = darkBits(picture, wordsPerLine);
  potrace_bitmap_t bitmap{picture.width, picture.height, wordsPerLine, map.data()};
  std::unique_ptr<potrace_param_t, ParamFree> param(potrace_param_default());
  if (!param) return outlines;
  param->turdsize = options.speckleArea;
  param->alphamax = options.cornerLimit;
  std::unique_ptr<potrace_state_t, StateFree> state(potrace_trace(param.get(), &bitmap));
  if (!state || state->status != POTRACE_STATUS_OK) return outlines;
  for (const potrace_path_t* p = state->plist; p; p = p->next) {
    Outline o = outlineOf(*p, options.flatness);
    if (o.points.size() >= 3) outlines.push_back(std::move(o));
  }
  return outlines;
}

}  // namespace image
