#pragma once
// The bilinearly blended Coons patch of a fence of four curves, the fence's
// orientation from its curves' ends, and adaptive sampling of a mapped curve.
#include <array>
#include <functional>
#include <vector>

#include "ge/point.h"

namespace commands {

// One side of the fence: the point at a fraction 0..1 of its length, running
// bottom and top from left to right, left and right from bottom to top.
using FenceSide = std::function<ge::Point3d(double)>;

// S(u,v) = (1-v)B(u) + vT(u) + (1-u)L(v) + uR(v) minus the bilinear blend of
// the corners. The corners are taken from the ends of the left and right
// sides, so the bottom and top sides are reproduced exactly, corners included.
class CoonsPatch {
 public:
  CoonsPatch(FenceSide bottom, FenceSide right, FenceSide top, FenceSide left);
  ge::Point3d at(double u, double v) const;

 private:
  FenceSide bottom_, right_, top_, left_;
  ge::Point3d l0_, l1_, r0_, r1_;
};

struct CurveEnds {
  ge::Point3d start, end;
};

// Which of the four sides (bottom, right, top, left) run against the patch's
// directions, and the widest gap left between meeting ends.
struct FenceOrientation {
  std::array<bool, 4> reversed{};
  double widestGap = 0;
};

// The orientation of the sides whose meeting ends (bottom-left, bottom-right,
// right-top, top-left) lie closest together.
FenceOrientation orientFence(const std::array<CurveEnds, 4>& sides);

// Parameters t of the image C(t) between the breaks (ascending, the curve's
// corners among them), refined by halving until the chord of each step is
// within `tolerance` of the image at its middle and quarter points.
struct MappedSample {
  std::vector<double> params;
  std::vector<ge::Point3d> points;
};
MappedSample sampleMapped(const std::function<ge::Point3d(double)>& image, const std::vector<double>& breaks,
                          double tolerance);

// Distance from p to the segment ab.
double distanceToSegment(const ge::Point3d& p, const ge::Point3d& a, const ge::Point3d& b);

}  // namespace commands
