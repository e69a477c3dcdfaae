#include "standalone/db/dxf_entity_reader.h"

#include <cmath>

#include "standalone/db/attribute_placement.h"
#include "standalone/db/dxf_hatch.h"
#include "standalone/db/dxf_subrecords.h"
#include "standalone/db/entity_props.h"
#include "standalone/db/ocs.h"

namespace standalone {

namespace {

enum class Kind { kLine, kCircle, kArc, kEllipse, kLwPolyline, kPolyline, kSpline, kHelix, kText, kMText,
                  kPoint, kInsert, kHatch, kImage, kOther };

Kind kindOf(std::string_view type) {
  static constexpr std::pair<std::string_view, Kind> kKinds[] = {
      {"LINE", Kind::kLine},     {"CIRCLE", Kind::kCircle}, {"ARC", Kind::kArc},
      {"ELLIPSE", Kind::kEllipse}, {"LWPOLYLINE", Kind::kLwPolyline}, {"POLYLINE", Kind::kPolyline},
      {"SPLINE", Kind::kSpline}, {"HELIX", Kind::kHelix},   {"TEXT", Kind::kText},
      {"MTEXT", Kind::kMText},   {"POINT", Kind::kPoint},   {"INSERT", Kind::kInsert},
      {"HATCH", Kind::kHatch},   {"IMAGE", Kind::kImage}};
  for (auto [name, kind] : kKinds)
    if (name == type) return kind;
  return Kind::kOther;
}

host::EntityData emptyData(Kind kind, std::string_view type) {
  switch (kind) {
    case Kind::kLine: return host::Line{};
    case Kind::kCircle: return host::Circle{};
    case Kind::kArc: return host::Arc{};
    case Kind::kEllipse: return host::Ellipse{};
    case Kind::kLwPolyline: return host::LwPolyline{};
    case Kind::kPolyline: return host::Polyline2d{};  // becomes 3D or Other once the flags are known
    case Kind::kSpline: return host::Spline{};
    case Kind::kHelix: return host::Helix{};
    case Kind::kText: return host::Text{};
    case Kind::kMText: return host::MText{};
    case Kind::kPoint: return host::PointEntity{};
    case Kind::kInsert: return host::BlockReference{};
    case Kind::kHatch: return host::Hatch{};
    case Kind::kImage: return host::Image{};
    case Kind::kOther: break;
  }
  return host::OtherEntity{std::string(type)};
}

// Sets one coordinate of a point from a group whose code ends in 0, 1, 2 or 3
// (x for 10-18, y for 20-28, z for 30-38).
void setCoord(ge::Point3d& p, int code, double v) {
  int axis = code / 10;
  (axis == 1 ? p.x : axis == 2 ? p.y : p.z) = v;
}
void setCoord(ge::Vector3d& p, int code, double v) {
  int axis = code / 10;
  (axis == 1 ? p.x : axis == 2 ? p.y : p.z) = v;
}
void setNormal(ge::Vector3d& n, int code, double v) {
  (code == 210 ? n.x : code == 220 ? n.y : n.z) = v;
}
bool isNormalCode(int code) { return code == 210 || code == 220 || code == 230; }
// Point group of the family: 10 -> 10/20/30, 11 -> 11/21/31, ...
bool isPointCode(int code, int base) { return code == base || code == base + 10 || code == base + 20; }

// Interim state while an entity's groups come in.
struct Scratch {
  std::string mtext;
  bool mtextXDir = false;
  double mtextAngle = 0;
  bool mtextHasAngle = false;
  bool textHasAlignment = false;
  int polylineFlags = 0;
  bool hatchPathsDone = false;
  std::size_t splineKnots = 0, splineControls = 0, splineFits = 0;
};

class BodyReader {
 public:
  BodyReader(TagReader& r, EntityRecord& rec, EntityReadContext& ctx, Kind kind)
      : r_(r), rec_(rec), ctx_(ctx), kind_(kind), keep_(kind != Kind::kOther) {}

  void run();
  Scratch& scratch() { return s_; }

 private:
  void appGroup(const RawTag& open);
  // Keeps a group the record has no field for. A number or handle group must
  // hold one even so: written back elsewhere (a changed kind, an R12 file,
  // before the owner) it may be read as a field.
  void keep(const RawTag& t) {
    if (!keep_) return;
    switch (groupValueKind(t.code)) {
      case GroupValue::kReal: parseReal(t); break;
      case GroupValue::kInt16: case GroupValue::kInt32: case GroupValue::kInt64: case GroupValue::kBool:
        parseInteger(t);
        break;
      case GroupValue::kHandle: parseHandle(t); break;  // a second 330 may be read as the owner
      default:
        if (t.code == 5 || t.code == 105) parseHandle(t);  // may be read as the handle
        break;
    }
    keepAsIs(t);
  }
  // Keeps a group that is read back the same way whatever it holds (inside a
  // 102 group).
  void keepAsIs(const RawTag& t) {
    if (keep_) rec_.extras.kept.push_back({t.code, anchor_, t.value});
  }
  bool kindTag(const RawTag& t);
  bool lineTag(host::Line& d, const RawTag& t);
  bool circleTag(ge::Point3d& c, double& radius, double& thickness, ge::Vector3d& n, const RawTag& t);
  bool splineTag(host::Spline& d, const RawTag& t);
  bool helixTag(host::Helix& d, const RawTag& t);
  bool textTag(host::Text& d, const RawTag& t);
  bool mtextTag(host::MText& d, const RawTag& t);
  bool lwTag(host::LwPolyline& d, const RawTag& t);
  bool polylineTag(host::Polyline2d& d, const RawTag& t);
  bool insertTag(host::BlockReference& d, const RawTag& t);
  bool hatchTag(host::Hatch& d, const RawTag& t);
  bool hatchTailTag(host::Hatch& d, const RawTag& t);
  bool imageTag(host::Image& d, const RawTag& t);

  TagReader& r_;
  EntityRecord& rec_;
  EntityReadContext& ctx_;
  Kind kind_;
  bool keep_;
  std::uint16_t anchor_ = 0;
  std::string_view marker_;
  Scratch s_;
};

void BodyReader::run() {
  bool tail = false, haveHandle = false, haveOwner = false;
  RawTag t;
  while (r_.peek(t) && t.code != 0) {
    r_.next(t);
    if (tail) {
      if (keep_) rec_.extras.kept.push_back({t.code, kAnchorTail, t.value});
      continue;
    }
    if (t.code == 1001 || t.code == 101) {  // XDATA or an embedded object: kept as they are
      tail = true;
      if (keep_) rec_.extras.kept.push_back({t.code, kAnchorTail, t.value});
      continue;
    }
    if (t.code == 102 && !t.value.empty() && t.value.front() == '{') {
      appGroup(t);
      continue;
    }
    if (t.code == 100) {
      rec_.extras.markers.push_back(t.value);
      anchor_ = static_cast<std::uint16_t>(rec_.extras.markers.size());
      marker_ = t.value;
      continue;
    }
    if (anchor_ == 0 && t.code == 5 && !haveHandle) {
      rec_.entity.id = {parseHandle(t)};
      haveHandle = true;
      continue;
    }
    if (anchor_ == 0 && t.code == 330 && !haveOwner && ctx_.markers) {
      rec_.entity.owner = {parseHandle(t)};
      haveOwner = true;
      continue;
    }
    if (t.code == 67 && (anchor_ == 0 || marker_ == "AcDbEntity")) {
      rec_.extras.paperSpaceFlag = parseInteger(t) != 0;
      continue;
    }
    if ((anchor_ == 0 || marker_ == "AcDbEntity") &&
        readPropertyTag(t.code, t.value, rec_.entity.props, ctx_.encoding, t.line + 1))
      continue;
    if (keep_ && kindTag(t)) continue;
    keep(t);
  }
}

void BodyReader::appGroup(const RawTag& open) {
  std::string_view name = open.value.substr(1);
  bool reactors = anchor_ == 0 && name == "ACAD_REACTORS";
  bool xdict = anchor_ == 0 && name == "ACAD_XDICTIONARY";
  if (!reactors && !xdict) keepAsIs(open);
  RawTag t;
  while (r_.peek(t) && t.code != 0) {
    r_.next(t);
    if (t.code == 102) {
      if (!reactors && !xdict) keepAsIs(t);
      return;
    }
    if (reactors && t.code == 330) {
      rec_.extras.reactors.push_back(parseHandle(t));
    } else if (xdict && t.code == 360) {
      rec_.extras.extensionDictionary = parseHandle(t);
    } else if (!reactors && !xdict) {
      keepAsIs(t);
    }
  }
}

bool BodyReader::kindTag(const RawTag& t) {
  auto& d = rec_.entity.data;
  switch (kind_) {
    case Kind::kLine: return lineTag(std::get<host::Line>(d), t);
    case Kind::kCircle: {
      auto& c = std::get<host::Circle>(d);
      return circleTag(c.center, c.radius, c.thickness, c.normal, t);
    }
    case Kind::kArc: {
      auto& a = std::get<host::Arc>(d);
      if (t.code == 50) return a.startAngle = parseReal(t) * kDegree, true;
      if (t.code == 51) return a.endAngle = parseReal(t) * kDegree, true;
      return circleTag(a.center, a.radius, a.thickness, a.normal, t);
    }
    case Kind::kEllipse: {
      auto& e = std::get<host::Ellipse>(d);
      if (isPointCode(t.code, 10)) return setCoord(e.center, t.code, parseReal(t)), true;
      if (isPointCode(t.code, 11)) return setCoord(e.majorAxis, t.code - 1, parseReal(t)), true;
      if (isNormalCode(t.code)) return setNormal(e.normal, t.code, parseReal(t)), true;
      if (t.code == 40) return e.ratio = parseReal(t), true;
      if (t.code == 41) return e.startParam = parseReal(t), true;
      if (t.code == 42) return e.endParam = parseReal(t), true;
      return false;
    }
    case Kind::kLwPolyline: return lwTag(std::get<host::LwPolyline>(d), t);
    case Kind::kPolyline: return polylineTag(std::get<host::Polyline2d>(d), t);
    case Kind::kSpline: return splineTag(std::get<host::Spline>(d), t);
    case Kind::kHelix: {
      auto& h = std::get<host::Helix>(d);
      return marker_ == "AcDbHelix" ? helixTag(h, t) : splineTag(h.curve, t);
    }
    case Kind::kText: return textTag(std::get<host::Text>(d), t);
    case Kind::kMText: return mtextTag(std::get<host::MText>(d), t);
    case Kind::kPoint: {
      auto& p = std::get<host::PointEntity>(d);
      if (isPointCode(t.code, 10)) return setCoord(p.position, t.code, parseReal(t)), true;
      if (isNormalCode(t.code)) return setNormal(p.normal, t.code, parseReal(t)), true;
      if (t.code == 39) return p.thickness = parseReal(t), true;
      if (t.code == 50) return p.xAxisAngle = parseReal(t) * kDegree, true;
      return false;
    }
    case Kind::kInsert: return insertTag(std::get<host::BlockReference>(d), t);
    case Kind::kHatch: return hatchTag(std::get<host::Hatch>(d), t);
    case Kind::kImage: return imageTag(std::get<host::Image>(d), t);
    case Kind::kOther: return false;
  }
  return false;
}

bool BodyReader::lineTag(host::Line& d, const RawTag& t) {
  if (isPointCode(t.code, 10)) return setCoord(d.start, t.code, parseReal(t)), true;
  if (isPointCode(t.code, 11)) return setCoord(d.end, t.code - 1, parseReal(t)), true;
  if (isNormalCode(t.code)) return setNormal(d.normal, t.code, parseReal(t)), true;
  if (t.code == 39) return d.thickness = parseReal(t), true;
  return false;
}

bool BodyReader::circleTag(ge::Point3d& c, double& radius, double& thickness, ge::Vector3d& n, const RawTag& t) {
  if (isPointCode(t.code, 10)) return setCoord(c, t.code, parseReal(t)), true;
  if (isNormalCode(t.code)) return setNormal(n, t.code, parseReal(t)), true;
  if (t.code == 40) return radius = parseReal(t), true;
  if (t.code == 39) return thickness = parseReal(t), true;
  return false;
}

bool BodyReader::splineTag(host::Spline& d, const RawTag& t) {
  switch (t.code) {
    case 70: d.flags = static_cast<int>(parseInteger(t)); return true;
    case 71: d.degree = static_cast<int>(parseInteger(t)); return true;
    case 72: case 73: case 74: {
      std::int64_t n = parseInteger(t);
      if (n < 0 || n > 100'000'000) throw DxfError(t.line + 1, "impossible count " + std::to_string(n));
      (t.code == 72 ? s_.splineKnots : t.code == 73 ? s_.splineControls : s_.splineFits) = static_cast<std::size_t>(n);
      if (t.code == 72) d.knots.reserve(r_.plausibleCount(n));
      if (t.code == 73) d.controlPoints.reserve(r_.plausibleCount(n));
      return true;
    }
    case 42: d.knotTolerance = parseReal(t); return true;
    case 43: d.controlTolerance = parseReal(t); return true;
    case 44: d.fitTolerance = parseReal(t); return true;
    case 40: d.knots.push_back(parseReal(t)); return true;
    case 41: d.weights.push_back(parseReal(t)); return true;
    case 10: d.controlPoints.push_back({parseReal(t), 0, 0}); return true;
    case 11: d.fitPoints.push_back({parseReal(t), 0, 0}); return true;
    case 20: case 30:
      if (d.controlPoints.empty()) return false;
      setCoord(d.controlPoints.back(), t.code, parseReal(t));
      return true;
    case 21: case 31:
      if (d.fitPoints.empty()) return false;
      setCoord(d.fitPoints.back(), t.code - 1, parseReal(t));
      return true;
    case 12: case 22: case 32:
      if (!d.startTangent) d.startTangent = ge::Vector3d{};
      setCoord(*d.startTangent, t.code - 2, parseReal(t));
      return true;
    case 13: case 23: case 33:
      if (!d.endTangent) d.endTangent = ge::Vector3d{};
      setCoord(*d.endTangent, t.code - 3, parseReal(t));
      return true;
    case 210: case 220: case 230: setNormal(d.normal, t.code, parseReal(t)); return true;
    default: return false;
  }
}

bool BodyReader::helixTag(host::Helix& d, const RawTag& t) {
  switch (t.code) {
    case 90: case 91: parseInteger(t); return true;  // release numbers; the writer puts its own
    case 10: case 20: case 30: setCoord(d.axisBase, t.code, parseReal(t)); return true;
    case 11: case 21: case 31: setCoord(d.startPoint, t.code - 1, parseReal(t)); return true;
    case 12: case 22: case 32: setCoord(d.axisVector, t.code - 2, parseReal(t)); return true;
    case 40: d.topRadius = parseReal(t); return true;
    case 41: d.turns = parseReal(t); return true;
    case 42: d.turnHeight = parseReal(t); return true;
    case 290: d.counterClockwise = parseInteger(t) != 0; return true;
    case 280: d.constrain = static_cast<int>(parseInteger(t)); return true;
    default: return false;
  }
}

bool BodyReader::textTag(host::Text& d, const RawTag& t) {
  if (isPointCode(t.code, 10)) return setCoord(d.position, t.code, parseReal(t)), true;
  if (isPointCode(t.code, 11)) {
    s_.textHasAlignment = true;
    return setCoord(d.alignmentPoint, t.code - 1, parseReal(t)), true;
  }
  if (isNormalCode(t.code)) return setNormal(d.normal, t.code, parseReal(t)), true;
  switch (t.code) {
    case 1: d.text = decodeText(t.value, ctx_.encoding); return true;
    case 7: d.style = decodeText(t.value, ctx_.encoding); return true;
    case 39: d.thickness = parseReal(t); return true;
    case 40: d.height = parseReal(t); return true;
    case 41: d.widthFactor = parseReal(t); return true;
    case 50: d.rotation = parseReal(t) * kDegree; return true;
    case 51: d.oblique = parseReal(t) * kDegree; return true;
    case 71: d.mirrorFlags = static_cast<int>(parseInteger(t)); return true;
    case 72: d.horizontalJustify = static_cast<int>(parseInteger(t)); return true;
    case 73: d.verticalJustify = static_cast<int>(parseInteger(t)); return true;
    default: return false;
  }
}

bool BodyReader::mtextTag(host::MText& d, const RawTag& t) {
  if (isPointCode(t.code, 10)) return setCoord(d.position, t.code, parseReal(t)), true;
  if (isPointCode(t.code, 11)) {
    s_.mtextXDir = true;
    return setCoord(d.xDirection, t.code - 1, parseReal(t)), true;
  }
  if (isNormalCode(t.code)) return setNormal(d.normal, t.code, parseReal(t)), true;
  switch (t.code) {
    case 1: case 3: s_.mtext += t.value; return true;
    case 7: d.style = decodeText(t.value, ctx_.encoding); return true;
    case 40: d.height = parseReal(t); return true;
    case 41: d.referenceWidth = parseReal(t); return true;
    case 71: d.attachment = static_cast<int>(parseInteger(t)); return true;
    case 72: d.drawingDirection = static_cast<int>(parseInteger(t)); return true;
    case 50:
      s_.mtextAngle = parseReal(t) * kDegree;
      s_.mtextHasAngle = true;
      return true;
    default: return false;
  }
}

bool BodyReader::lwTag(host::LwPolyline& d, const RawTag& t) {
  switch (t.code) {
    case 90: {
      std::int64_t n = parseInteger(t);
      if (n < 0 || n > 100'000'000) throw DxfError(t.line + 1, "impossible vertex count " + std::to_string(n));
      d.vertices.reserve(r_.plausibleCount(n));
      return true;
    }
    case 70: {
      int f = static_cast<int>(parseInteger(t));
      d.closed = f & 1;
      d.plinegen = f & 128;
      return true;
    }
    case 43: d.constantWidth = parseReal(t); return true;
    case 38: d.elevation = parseReal(t); return true;
    case 39: d.thickness = parseReal(t); return true;
    case 10: d.vertices.push_back({parseReal(t), 0, 0, 0, 0}); return true;
    case 91: {  // vertex identifier, written back while the vertex count stays the same
      if (d.vertices.empty()) return false;
      parseInteger(t);
      rec_.extras.vertexIds.resize(d.vertices.size());
      rec_.extras.vertexIds.back() = t.value;
      return true;
    }
    case 20: case 40: case 41: case 42: {
      if (d.vertices.empty()) return false;
      double v = parseReal(t);
      auto& last = d.vertices.back();
      (t.code == 20 ? last.y : t.code == 40 ? last.startWidth : t.code == 41 ? last.endWidth : last.bulge) = v;
      return true;
    }
    case 210: case 220: case 230: setNormal(d.normal, t.code, parseReal(t)); return true;
    default: return false;
  }
}

bool BodyReader::polylineTag(host::Polyline2d& d, const RawTag& t) {
  switch (t.code) {
    case 66: parseInteger(t); return true;  // "vertices follow": always written
    case 10: case 20: parseReal(t); return true;  // always zero
    case 30: d.elevation = parseReal(t); return true;
    case 70: s_.polylineFlags = static_cast<int>(parseInteger(t)); return true;
    case 40: d.defaultStartWidth = parseReal(t); return true;
    case 41: d.defaultEndWidth = parseReal(t); return true;
    case 75: d.curveType = static_cast<host::PolyCurveType>(parseInteger(t)); return true;
    case 39: d.thickness = parseReal(t); return true;
    case 210: case 220: case 230: setNormal(d.normal, t.code, parseReal(t)); return true;
    default: return false;
  }
}

bool BodyReader::insertTag(host::BlockReference& d, const RawTag& t) {
  if (isPointCode(t.code, 10)) return setCoord(d.position, t.code, parseReal(t)), true;
  if (isNormalCode(t.code)) return setNormal(d.normal, t.code, parseReal(t)), true;
  switch (t.code) {
    case 66: d.hasAttributes = parseInteger(t) != 0; return true;
    case 2: d.blockName = decodeText(t.value, ctx_.encoding); return true;
    case 41: d.scale.x = parseReal(t); return true;
    case 42: d.scale.y = parseReal(t); return true;
    case 43: d.scale.z = parseReal(t); return true;
    case 50: d.rotation = parseReal(t) * kDegree; return true;
    case 70: d.columnCount = static_cast<int>(parseInteger(t)); return true;
    case 71: d.rowCount = static_cast<int>(parseInteger(t)); return true;
    case 44: d.columnSpacing = parseReal(t); return true;
    case 45: d.rowSpacing = parseReal(t); return true;
    default: return false;
  }
}

bool BodyReader::hatchTag(host::Hatch& d, const RawTag& t) {
  if (s_.hatchPathsDone) return hatchTailTag(d, t);
  if (isPointCode(t.code, 10)) {
    if (t.code == 30) d.elevation = parseReal(t);
    else parseReal(t);
    return true;
  }
  if (isNormalCode(t.code)) return setNormal(d.normal, t.code, parseReal(t)), true;
  switch (t.code) {
    case 2: d.patternName = decodeText(t.value, ctx_.encoding); return true;
    case 70: d.solidFill = parseInteger(t) != 0; return true;
    case 71: d.associative = parseInteger(t) != 0; return true;
    case 91:
      d.paths = readHatchPaths(r_, static_cast<int>(parseInteger(t)), ctx_.version >= "AC1024");
      s_.hatchPathsDone = true;
      return true;
    default: return false;
  }
}

// The groups after the paths: style, pattern, seed points. Anything else
// there (gradient groups, ...) is kept and written back after them.
bool BodyReader::hatchTailTag(host::Hatch& d, const RawTag& t) {
  switch (t.code) {
    case 75: d.style = static_cast<int>(parseInteger(t)); return true;
    case 76: d.patternType = static_cast<int>(parseInteger(t)); return true;
    case 52: d.patternAngle = parseReal(t) * kDegree; return true;
    case 41: d.patternScale = parseReal(t); return true;
    case 77: d.patternDouble = parseInteger(t) != 0; return true;
    case 78: d.patternLines = readHatchPatternLines(r_, static_cast<int>(parseInteger(t))); return true;
    case 47: d.pixelSize = parseReal(t); return true;
    case 98: d.seeds = readHatchSeeds(r_, static_cast<int>(parseInteger(t))); return true;
    default: return false;
  }
}

bool BodyReader::imageTag(host::Image& d, const RawTag& t) {
  if (isPointCode(t.code, 10)) return setCoord(d.insertion, t.code, parseReal(t)), true;
  if (isPointCode(t.code, 11)) return setCoord(d.uVector, t.code - 1, parseReal(t)), true;
  if (isPointCode(t.code, 12)) return setCoord(d.vVector, t.code - 2, parseReal(t)), true;
  switch (t.code) {
    case 13: d.widthPixels = parseReal(t); return true;
    case 23: d.heightPixels = parseReal(t); return true;
    case 340: d.imageDefHandle = parseHandle(t); return true;
    case 70: d.displayFlags = static_cast<int>(parseInteger(t)); return true;
    default: return false;
  }
}

// Turns what the file holds in object coordinates into world coordinates.
void finish(EntityRecord& rec, Scratch& s, EntityReadContext& ctx) {
  auto& d = rec.entity.data;
  if (auto* c = std::get_if<host::Circle>(&d)) c->center = ocsToWorld(c->center, c->normal);
  if (auto* a = std::get_if<host::Arc>(&d)) a->center = ocsToWorld(a->center, a->normal);
  if (auto* t = std::get_if<host::Text>(&d)) {
    if (!s.textHasAlignment) t->alignmentPoint = t->position;
    t->position = ocsToWorld(t->position, t->normal);
    t->alignmentPoint = ocsToWorld(t->alignmentPoint, t->normal);
  }
  if (auto* b = std::get_if<host::BlockReference>(&d)) b->position = ocsToWorld(b->position, b->normal);
  if (auto* lw = std::get_if<host::LwPolyline>(&d); lw && !rec.extras.vertexIds.empty())
    rec.extras.vertexIds.resize(lw->vertices.size());
  if (auto* m = std::get_if<host::MText>(&d)) {
    m->text = decodeText(s.mtext, ctx.encoding);
    if (!s.mtextXDir && s.mtextHasAngle) {
      OcsFrame f = OcsFrame::of(m->normal);
      m->xDirection = f.x * std::cos(s.mtextAngle) + f.y * std::sin(s.mtextAngle);
    }
  }
}

}  // namespace

EntityRecord readEntity(TagReader& reader, const RawTag& first, EntityReadContext& ctx) {
  EntityRecord rec;
  Kind kind = kindOf(first.value);
  rec.entity.data = emptyData(kind, first.value);
  BodyReader body(reader, rec, ctx, kind);
  body.run();
  if (kind == Kind::kPolyline) readPolylineVertices(reader, rec, ctx, body.scratch().polylineFlags);
  if (kind == Kind::kInsert || nextIs(reader, "ATTRIB")) readAttributes(reader, rec, ctx);
  if (kind != Kind::kOther) finish(rec, body.scratch(), ctx);
  if (auto* ref = std::get_if<host::BlockReference>(&rec.entity.data)) rec.extras.attributeBase = placementOf(*ref);
  if (std::holds_alternative<host::OtherEntity>(rec.entity.data)) rec.extras.kept.clear();
  rec.raw = std::string_view(first.start, static_cast<std::size_t>(reader.position() - first.start));
  return rec;
}

}  // namespace standalone
