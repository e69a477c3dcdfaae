#include "formula/draw.h"

#include "formula/generators.h"
#include "geom/curve_builders.h"

namespace formula {
namespace {

// The host's SURFTAB1, 6 (its initial value) when it cannot be read.
int surftab1(const host::Host& host) {
  host::ResBuf value;
  if (host.sysvars.getVar("SURFTAB1", value) != host::RTNORM) return 6;
  if (auto* s = std::get_if<std::int16_t>(&value.value)) return *s;
  if (auto* l = std::get_if<std::int32_t>(&value.value)) return *l;
  return 6;
}

// The id of the entity the curve maker appended last: the new tail of the current space.
host::ObjectId makeOne(const host::Host& host, const ge::PointList& points, int color, bool closed) {
  const host::ObjectId space = host.drawing.currentSpace();
  const std::size_t before = host.drawing.entitiesOf(space).size();
  if (!geom::makeCurveByPoints(host, nullptr, points, color, closed, {}, {})) return host::kNullId;
  std::vector<host::ObjectId> after = host.drawing.entitiesOf(space);
  return after.size() > before ? after.back() : host::kNullId;
}

void eraseAll(const host::Host& host, DrawnIds& drawn) {
  for (host::ObjectId id : drawn)
    if (host.drawing.read(id)) host.drawing.erase(id);
  drawn.clear();
}

}  // namespace

std::array<int, kParamCount> generatorParams(int row, const std::array<int, kParamCount>& values) {
  std::array<int, kParamCount> clamped = values;
  if (row < 0 || row >= kCurveCount) return clamped;
  for (int k = 0; k < kParamCount; ++k) clamped[k] = englishCatalogue()[row].params[k].clamp(values[k]);
  return clamped;
}

DrawnIds makeCurves(const host::Host& host, const std::vector<ge::PointList>& lists, int color, bool closed) {
  DrawnIds ids;
  for (const auto& points : lists)
    if (host::ObjectId id = makeOne(host, points, color, closed)) ids.push_back(id);
  return ids;
}

int drawFormulaCurve(const host::Host& host, int row, const ge::Point3d& origin,
                     const std::array<int, kParamCount>& values, DrawnIds& drawn) {
  if (row < 0 || row >= kCurveCount) return 0;
  eraseAll(host, drawn);
  GeneratorInput input{origin, generatorParams(row, values), surftab1(host)};
  int made = 0;
  for (const GeneratedCurve& curve : generateFormulaCurve(row, input)) {
    if (host::ObjectId id = makeOne(host, curve.points, curve.color, curve.closed)) {
      drawn.push_back(id);
      ++made;
    }
  }
  host.editor.updateDisplay();
  return made;
}

}  // namespace formula
