// PLARR: a two-dimensional array of polylines between two lightweight
// polylines of equal vertex count; x follows the columns, y the rows.
#include "commands/interpolation.h"
#include "commands/offset_array_commands.h"
#include "frame/progress.h"
#include "frame/output.h"
#include "frame/prompts.h"
#include "frame/selection.h"
#include "geom/append.h"

namespace commands {

namespace {

constexpr frame::Text kFirstPrompt{"\nPlease select the first LWPolyline: ", "\n请选择第一根多段线： "};
constexpr frame::Text kSecondPrompt{"\nPlease select the second LWPolyline: ", "\n请选择第二根多段线： "};
constexpr frame::Text kRowsPrompt{"\nPlease input the array rows[2--1000](9):", "\n请阵列行数[2--1000](9):"};
constexpr frame::Text kColumnsPrompt{"\nPlease input the array columns[2--1000](12):", "\n请阵列列数[2--1000](12):"};
constexpr frame::Text kAccelerationPrompt{
    "\nPlease enter the interpolation density acceleration, the allowable value is -100 (deceleration) ~ 100 "
    "(acceleration), the default value is 0:",
    "\n请输入间插疏密加速度，允许值 -100（减速） ~ 100（加速），默认值0:"};
constexpr frame::Text kSelectedNothing{"\nSelected nothing.", "\n未选中。"};
constexpr frame::Text kNotLwPolyline{"\nPolyline unexpected error.", "\n多段线意外错误。"};
constexpr frame::Text kVertexCountsDiffer{
    "\nThe number of vertices of two polylines is different and cannot be interpolated.",
    "\n两根多段线顶点数量不同，不能间插。"};

BlendPolyline blendVerticesOf(const host::LwPolyline& lw) {
  BlendPolyline out;
  for (const auto& v : lw.vertices) out.push_back({{v.x, v.y, lw.elevation}, v.bulge});
  return out;
}

host::LwPolyline lwOf(const BlendPolyline& vertices, bool closed, const ge::Vector3d& normal) {
  host::LwPolyline lw;
  for (const auto& v : vertices) lw.vertices.push_back({v.p.x, v.p.y, v.bulge});
  lw.elevation = vertices.empty() ? 0 : vertices.front().p.z;
  lw.closed = closed;
  lw.normal = normal;
  return lw;
}

}  // namespace

void plineInterArray(frame::CommandContext& context) {
  host::Host& host = context.host;
  host::ObjectId firstId = frame::pickOne(host, kFirstPrompt, frame::PickKind::kLwPolylines);
  if (firstId.isNull()) {
    frame::print(host, kSelectedNothing);
    return;
  }
  host::ObjectId secondId = frame::pickOne(host, kSecondPrompt, frame::PickKind::kLwPolylines);
  int rows = frame::askInt(host, kRowsPrompt, 9, 2, 1000);
  int columns = frame::askInt(host, kColumnsPrompt, 12, 2, 1000);

  std::optional<host::Entity> first = host.drawing.read(firstId);
  if (!first) return;
  std::optional<host::Entity> second = host.drawing.read(secondId);
  if (!second) return;
  const auto* a = std::get_if<host::LwPolyline>(&first->data);
  const auto* b = std::get_if<host::LwPolyline>(&second->data);
  if (!a || !b) {
    frame::print(host, kNotLwPolyline);
    return;
  }
  if (a->vertices.size() != b->vertices.size()) {
    frame::print(host, kVertexCountsDiffer);
    return;
  }
  double acceleration = frame::askInt(host, kAccelerationPrompt, 0, -100, 100, host::RSG_NOLIM) / 100.0;

  BlendPolyline va = blendVerticesOf(*a), vb = blendVerticesOf(*b);
  frame::ProgressMeter meter(host.editor, context.localName, static_cast<std::size_t>(columns));
  for (int j = 0; j < columns; ++j) {
    for (int i = 0; i < rows; ++i) {
      if ((i == 0 && j == 0) || (i == rows - 1 && j == columns - 1)) continue;  // A and B themselves
      double u = ease(static_cast<double>(i) / (rows - 1), acceleration);
      double w = ease(static_cast<double>(j) / (columns - 1), acceleration);
      host::Entity cell;
      cell.props = host.drawing.defaultProps();
      cell.data = lwOf(blendCell(va, vb, u, w), a->closed, a->normal);
      geom::appendToCurrentSpace(host.drawing, cell);
    }
    meter.step(static_cast<std::size_t>(j) + 1);
  }
}

}  // namespace commands
