#include "host/entity.h"

namespace host {

namespace {
struct DxfNameOf {
  const char* operator()(const Line&) const { return "LINE"; }
  const char* operator()(const Circle&) const { return "CIRCLE"; }
  const char* operator()(const Arc&) const { return "ARC"; }
  const char* operator()(const Ellipse&) const { return "ELLIPSE"; }
  const char* operator()(const LwPolyline&) const { return "LWPOLYLINE"; }
  const char* operator()(const Polyline2d&) const { return "POLYLINE"; }
  const char* operator()(const Polyline3d&) const { return "POLYLINE"; }
  const char* operator()(const Spline&) const { return "SPLINE"; }
  const char* operator()(const Helix&) const { return "HELIX"; }
  const char* operator()(const Text&) const { return "TEXT"; }
  const char* operator()(const MText&) const { return "MTEXT"; }
  const char* operator()(const PointEntity&) const { return "POINT"; }
  const char* operator()(const BlockReference&) const { return "INSERT"; }
  const char* operator()(const Hatch&) const { return "HATCH"; }
  const char* operator()(const Image&) const { return "IMAGE"; }
  const char* operator()(const OtherEntity& o) const { return o.dxfName.c_str(); }
};
}  // namespace

const char* dxfName(const EntityData& data) { return std::visit(DxfNameOf{}, data); }

bool isCurve(const EntityData& data) {
  return std::holds_alternative<Line>(data) || std::holds_alternative<Circle>(data) ||
         std::holds_alternative<Arc>(data) || std::holds_alternative<Ellipse>(data) ||
         std::holds_alternative<LwPolyline>(data) || std::holds_alternative<Polyline2d>(data) ||
         std::holds_alternative<Polyline3d>(data) || std::holds_alternative<Spline>(data) ||
         std::holds_alternative<Helix>(data);
}

}  // namespace host
