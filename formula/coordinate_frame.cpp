#include "formula/coordinate_frame.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "ge/extents.h"

namespace formula {
namespace {

// Text alignment codes of the host (DXF groups 72 and 73).
constexpr int kHorizontalRight = 2, kHorizontalMid = 4;
constexpr int kVerticalMiddle = 2, kVerticalTop = 3;

host::ObjectId appendEntity(const host::Host& host, host::EntityData data) {
  host::Entity e;
  e.props = host.drawing.defaultProps();
  e.data = std::move(data);
  if (host.drawing.append(e, host.drawing.currentSpace()) != host::ErrorStatus::eOk) return host::kNullId;
  return e.id;
}

host::ObjectId appendLine(const host::Host& host, const ge::Point3d& a, const ge::Point3d& b) {
  return appendEntity(host, host::Line{a, b});
}

host::ObjectId appendLabel(const host::Host& host, const ge::Point3d& at, double height, int value, int horizontal,
                           int vertical) {
  host::Text text;
  text.position = at;
  text.alignmentPoint = at;
  text.height = height;
  text.text = std::to_string(value);
  text.horizontalJustify = horizontal;
  text.verticalJustify = vertical;
  return appendEntity(host, text);
}

// Ticks k * step for k from the first at or below low to the first at or above high.
std::pair<int, int> tickRange(double low, double high, double step) {
  return {static_cast<int>(std::floor(low / step + 1e-9)), static_cast<int>(std::ceil(high / step - 1e-9))};
}

void keep(DrawnIds& ids, host::ObjectId id) {
  if (id) ids.push_back(id);
}

}  // namespace

std::optional<FrameReach> reachAround(const host::Host& host, const DrawnIds& ids, const ge::Point3d& origin) {
  ge::Extents3d box;
  for (host::ObjectId id : ids) {
    auto entity = host.drawing.read(id);
    ge::Extents3d ext;
    if (entity && host.curves.getGeomExtents(entity->data, ext) == host::ErrorStatus::eOk) box.add(ext);
  }
  if (!box.isValid()) return std::nullopt;
  return FrameReach{std::min(0.0, box.min.x - origin.x), std::max(0.0, box.max.x - origin.x),
                    std::min(0.0, box.min.y - origin.y), std::max(0.0, box.max.y - origin.y)};
}

double tickStep(const FrameReach& reach) {
  double longest = std::max({-reach.negX, reach.posX, -reach.negY, reach.posY});
  double rough = longest / 5;
  if (!(rough > 1)) return 1;
  double power = std::pow(10.0, std::floor(std::log10(rough)));
  for (double factor : {1.0, 2.0, 5.0})
    if (factor * power >= rough) return factor * power;
  return 10 * power;
}

DrawnIds drawCoordinateFrame(const host::Host& host, const ge::Point3d& origin, const FrameReach& reach) {
  const double step = tickStep(reach), tick = step * 0.15, height = step * 0.25;
  DrawnIds ids;
  auto [x0, x1] = tickRange(reach.negX, reach.posX, step);
  auto [y0, y1] = tickRange(reach.negY, reach.posY, step);
  keep(ids, appendLine(host, origin + ge::Vector3d{x0 * step, 0, 0}, origin + ge::Vector3d{x1 * step, 0, 0}));
  keep(ids, appendLine(host, origin + ge::Vector3d{0, y0 * step, 0}, origin + ge::Vector3d{0, y1 * step, 0}));
  for (int k = x0; k <= x1; ++k) {
    ge::Point3d at = origin + ge::Vector3d{k * step, 0, 0};
    keep(ids, appendLine(host, at, at + ge::Vector3d{0, tick, 0}));
    keep(ids, appendLabel(host, at - ge::Vector3d{0, tick, 0}, height, static_cast<int>(std::lround(k * step)),
                          kHorizontalMid, kVerticalTop));
  }
  for (int k = y0; k <= y1; ++k) {
    if (k == 0) continue;  // the X axis already labels the origin
    ge::Point3d at = origin + ge::Vector3d{0, k * step, 0};
    keep(ids, appendLine(host, at, at + ge::Vector3d{tick, 0, 0}));
    keep(ids, appendLabel(host, at - ge::Vector3d{tick, 0, 0}, height, static_cast<int>(std::lround(k * step)),
                          kHorizontalRight, kVerticalMiddle));
  }
  return ids;
}

}  // namespace formula
