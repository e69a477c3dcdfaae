#include "commands/interpolation.h"

#include <cassert>
#include <cmath>

namespace commands {

double ease(double s, double acceleration) {
  double e = 2 * std::abs(acceleration) + 1;
  return acceleration < 0 ? 1 - std::pow(1 - s, e) : std::pow(s, e);
}

BlendPolyline blendCell(const BlendPolyline& a, const BlendPolyline& b, double u, double w) {
  assert(a.size() == b.size());
  double mean = (u + w) * 0.5;
  BlendPolyline out(a.size());
  for (std::size_t k = 0; k < a.size(); ++k) {
    const BlendVertex& va = a[k];
    const BlendVertex& vb = b[k];
    out[k].p = {va.p.x + (vb.p.x - va.p.x) * w, va.p.y + (vb.p.y - va.p.y) * u, va.p.z + (vb.p.z - va.p.z) * mean};
    out[k].bulge = va.bulge + (vb.bulge - va.bulge) * mean;
  }
  return out;
}

}  // namespace commands
