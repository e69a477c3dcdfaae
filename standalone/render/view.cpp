#include "standalone/render/view.h"

#include <algorithm>
#include <cmath>

namespace standalone {

void Box2d::add(double x, double y) {
  if (!std::isfinite(x) || !std::isfinite(y)) return;  // broken data must not spoil the view
  if (!isValid()) {
    minX = maxX = x;
    minY = maxY = y;
    return;
  }
  minX = std::min(minX, x);
  maxX = std::max(maxX, x);
  minY = std::min(minY, y);
  maxY = std::max(maxY, y);
}

void Box2d::add(const Box2d& b) {
  if (!b.isValid()) return;
  add(b.minX, b.minY);
  add(b.maxX, b.maxY);
}

ge::Point2d ViewTransform::toPage(const ge::Point2d& p) const {
  return {pageCenter.x + (p.x - center.x) * scale, pageCenter.y - (p.y - center.y) * scale};
}

ge::Point2d ViewTransform::toDrawing(const ge::Point2d& px) const {
  return {center.x + (px.x - pageCenter.x) / scale, center.y - (px.y - pageCenter.y) / scale};
}

ViewTransform viewAt(const ge::Point2d& center, double height, const PageRect& page) {
  ViewTransform v;
  v.scale = height > 0 && page.height > 0 ? page.height / height : 1.0;
  v.center = center;
  v.pageCenter = {page.x + page.width / 2, page.y + page.height / 2};
  return v;
}

ViewTransform fitView(const Box2d& box, const PageRect& page, double marginFraction) {
  Box2d b = box;
  if (!b.isValid()) b = {-0.5, -0.5, 0.5, 0.5};
  double w = b.maxX - b.minX, h = b.maxY - b.minY;
  // A single point or a straight horizontal/vertical run still needs a scale.
  double span = std::max({w, h, 1e-9 * (std::abs(b.minX) + std::abs(b.minY)), 1e-12});
  w = std::max(w, span * 1e-3);
  h = std::max(h, span * 1e-3);
  double usableW = page.width * (1 - 2 * marginFraction), usableH = page.height * (1 - 2 * marginFraction);
  double scale = std::min(usableW / w, usableH / h);
  ge::Point2d center{(b.minX + b.maxX) / 2, (b.minY + b.maxY) / 2};
  return viewAt(center, page.height / scale, page);
}

}  // namespace standalone
