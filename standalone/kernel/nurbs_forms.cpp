#include "standalone/kernel/nurbs_forms.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace standalone::kernel {

Nurbs conicArc(const ge::Point3d& c, const ge::Vector3d& u, const ge::Vector3d& v, double start, double sweep) {
  int pieces = std::max(1, static_cast<int>(std::ceil(sweep / (std::numbers::pi / 2) - 1e-9)));
  double delta = sweep / pieces, w = std::cos(delta / 2);
  auto at = [&](double t, double scale) { return c + (u * std::cos(t) + v * std::sin(t)) * scale; };
  Nurbs n;
  n.degree = 2;
  n.knots = {start, start, start};
  n.controlPoints.push_back(at(start, 1));
  n.weights.push_back(1);
  for (int i = 0; i < pieces; ++i) {
    double t0 = start + i * delta;
    n.controlPoints.push_back(at(t0 + delta / 2, 1 / w));
    n.weights.push_back(w);
    n.controlPoints.push_back(at(t0 + delta, 1));
    n.weights.push_back(1);
    double k = i + 1 == pieces ? start + sweep : t0 + delta;
    n.knots.insert(n.knots.end(), {k, k});
  }
  n.knots.push_back(start + sweep);
  return n;
}


std::optional<Nurbs> nurbsOfBulgedPath(const Path& path) {
  Nurbs out;
  out.degree = 2;
  for (size_t i = 0; i < path.pieces.size(); ++i) {
    const Piece& piece = path.pieces[i];
    Nurbs part;
    if (auto* l = std::get_if<LinePiece>(&piece.geometry)) {
      part = Nurbs{2, {0, 0, 0, 1, 1, 1}, {l->a, l->a + (l->b - l->a) * 0.5, l->b}, {1, 1, 1}};
    } else if (auto* a = std::get_if<ArcPiece>(&piece.geometry)) {
      // A clockwise arc is the counter-clockwise one of the mirrored frame.
      double sign = a->sweep < 0 ? -1 : 1;
      part = conicArc(a->center, a->x * a->radius, a->y * (a->radius * sign), a->start * sign, std::abs(a->sweep));
    } else {
      return std::nullopt;
    }
    // Map the part's knots onto i .. i+1 and append, sharing the joint.
    double k0 = part.knots.front(), k1 = part.knots.back();
    for (auto& k : part.knots) k = k1 > k0 ? i + (k - k0) / (k1 - k0) : i;
    size_t skip = out.controlPoints.empty() ? 0 : 1;
    out.controlPoints.insert(out.controlPoints.end(), part.controlPoints.begin() + skip, part.controlPoints.end());
    out.weights.insert(out.weights.end(), part.weights.begin() + skip, part.weights.end());
    if (out.knots.empty()) out.knots.assign(part.knots.begin(), part.knots.end() - 1);
    else out.knots.insert(out.knots.end(), part.knots.begin() + 3, part.knots.end() - 1);
  }
  if (out.controlPoints.empty()) return std::nullopt;
  out.knots.push_back(out.knots.back());
  return out;
}

}  // namespace standalone::kernel
