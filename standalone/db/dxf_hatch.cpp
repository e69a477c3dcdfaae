#include "standalone/db/dxf_hatch.h"

#include <cmath>

#include "standalone/db/dxf_out.h"
#include "standalone/db/ocs.h"

namespace standalone {

namespace {

// Sequential reader of the strictly ordered boundary groups.
class Pull {
 public:
  explicit Pull(TagReader& r) : r_(r) {}

  RawTag need(int code) {
    RawTag t;
    if (!r_.peek(t)) throw DxfError(r_.line(), "hatch boundary ends early");
    if (t.code != code)
      throw DxfError(t.line, "expected group code " + std::to_string(code) + " in a hatch boundary, found " +
                                 std::to_string(t.code));
    r_.next(t);
    return t;
  }
  double real(int code) { return parseReal(need(code)); }
  int integer(int code) { return static_cast<int>(parseInteger(need(code))); }
  bool next(int code) {
    RawTag t;
    return r_.peek(t) && t.code == code;
  }
  std::size_t plausible(int n) const { return r_.plausibleCount(n); }
  ge::Point2d point(int code) {
    double x = real(code);
    return {x, real(code + 10)};
  }

 private:
  TagReader& r_;
};

// Counts come from the file: refuse absurd ones before reserving memory.
int checkedCount(Pull&, int n, const RawTag& tag) {
  constexpr int kMaxCount = 50'000'000;
  if (n < 0 || n > kMaxCount) throw DxfError(tag.line + 1, "impossible count " + std::to_string(n));
  return n;
}

int count(Pull& p, int code) {
  RawTag t = p.need(code);
  return checkedCount(p, static_cast<int>(parseInteger(t)), t);
}

// Clockwise arcs store the angles mirrored (360 - a); the record keeps
// counter-clockwise values.
double angleIn(double storedDegrees, bool ccw) { return (ccw ? storedDegrees : 360.0 - storedDegrees) * kDegree; }
double angleOut(double radians, bool ccw) {
  double deg = radians / kDegree;
  return ccw ? deg : 360.0 - deg;
}

host::HatchSplineEdge readSpline(Pull& p, bool fitData) {
  host::HatchSplineEdge s;
  s.degree = p.integer(94);
  s.rational = p.integer(73) != 0;
  s.periodic = p.integer(74) != 0;
  int knots = count(p, 95), controls = count(p, 96);
  s.knots.reserve(p.plausible(knots));
  for (int i = 0; i < knots; ++i) s.knots.push_back(p.real(40));
  for (int i = 0; i < controls; ++i) {
    s.controlPoints.push_back(p.point(10));
    if (p.next(42)) s.weights.push_back(p.real(42));
  }
  if (fitData && p.next(97)) {
    int fits = count(p, 97);
    for (int i = 0; i < fits; ++i) s.fitPoints.push_back(p.point(11));
    if (p.next(12)) s.startTangent = p.point(12);
    if (p.next(13)) s.endTangent = p.point(13);
  }
  return s;
}

host::HatchEdge readEdge(Pull& p, bool fitData) {
  RawTag typeTag = p.need(72);
  switch (parseInteger(typeTag)) {
    case 1: {
      host::HatchLineEdge l;
      l.start = p.point(10);
      l.end = p.point(11);
      return l;
    }
    case 2: {
      host::HatchArcEdge a;
      a.center = p.point(10);
      a.radius = p.real(40);
      double s = p.real(50), e = p.real(51);
      a.counterClockwise = p.integer(73) != 0;
      a.startAngle = angleIn(s, a.counterClockwise);
      a.endAngle = angleIn(e, a.counterClockwise);
      return a;
    }
    case 3: {
      host::HatchEllipseEdge el;
      el.center = p.point(10);
      el.majorAxis = p.point(11);
      el.ratio = p.real(40);
      double s = p.real(50), e = p.real(51);
      el.counterClockwise = p.integer(73) != 0;
      el.startAngle = angleIn(s, el.counterClockwise);
      el.endAngle = angleIn(e, el.counterClockwise);
      return el;
    }
    case 4:
      return readSpline(p, fitData);
    default:
      throw DxfError(typeTag.line + 1, "unknown hatch edge type \"" + std::string(typeTag.value) + "\"");
  }
}

host::HatchPath readPath(Pull& p, bool fitData) {
  host::HatchPath path;
  path.flags = p.integer(92);
  if (path.flags & 2) {
    p.integer(72);  // has-bulge flag; the 42 groups speak for themselves
    path.polylineClosed = p.integer(73) != 0;
    int n = count(p, 93);
    path.polyline.reserve(p.plausible(n));
    for (int i = 0; i < n; ++i) {
      host::LwVertex v;
      v.x = p.real(10);
      v.y = p.real(20);
      if (p.next(42)) v.bulge = p.real(42);  // some writers add 42 without the has-bulge flag
      path.polyline.push_back(v);
    }
  } else {
    int n = count(p, 93);
    for (int i = 0; i < n; ++i) path.edges.push_back(readEdge(p, fitData));
  }
  if (p.next(97)) {
    int n = count(p, 97);
    for (int i = 0; i < n; ++i) path.sourceHandles.push_back(parseHandle(p.need(330)));
  }
  return path;
}

struct EdgeWriter {
  DxfOut& out;
  bool fitData;
  void operator()(const host::HatchLineEdge& l) const {
    out.integer(72, 1);
    out.point2(10, l.start.x, l.start.y);
    out.point2(11, l.end.x, l.end.y);
  }
  void operator()(const host::HatchArcEdge& a) const {
    out.integer(72, 2);
    out.point2(10, a.center.x, a.center.y);
    out.real(40, a.radius);
    out.real(50, angleOut(a.startAngle, a.counterClockwise));
    out.real(51, angleOut(a.endAngle, a.counterClockwise));
    out.integer(73, a.counterClockwise ? 1 : 0);
  }
  void operator()(const host::HatchEllipseEdge& e) const {
    out.integer(72, 3);
    out.point2(10, e.center.x, e.center.y);
    out.point2(11, e.majorAxis.x, e.majorAxis.y);
    out.real(40, e.ratio);
    out.real(50, angleOut(e.startAngle, e.counterClockwise));
    out.real(51, angleOut(e.endAngle, e.counterClockwise));
    out.integer(73, e.counterClockwise ? 1 : 0);
  }
  void operator()(const host::HatchSplineEdge& s) const {
    out.integer(72, 4);
    out.integer(94, s.degree);
    out.integer(73, s.rational ? 1 : 0);
    out.integer(74, s.periodic ? 1 : 0);
    out.integer(95, static_cast<std::int64_t>(s.knots.size()));
    out.integer(96, static_cast<std::int64_t>(s.controlPoints.size()));
    for (double k : s.knots) out.real(40, k);
    for (std::size_t i = 0; i < s.controlPoints.size(); ++i) {
      out.point2(10, s.controlPoints[i].x, s.controlPoints[i].y);
      if (i < s.weights.size()) out.real(42, s.weights[i]);
    }
    if (!fitData) return;
    out.integer(97, static_cast<std::int64_t>(s.fitPoints.size()));
    for (const auto& f : s.fitPoints) out.point2(11, f.x, f.y);
    if (s.startTangent) out.point2(12, s.startTangent->x, s.startTangent->y);
    if (s.endTangent) out.point2(13, s.endTangent->x, s.endTangent->y);
  }
};

}  // namespace

std::vector<host::HatchPath> readHatchPaths(TagReader& reader, int count, bool fitData) {
  Pull p(reader);
  if (count < 0 || count > 10'000'000) throw DxfError(reader.line(), "impossible hatch path count");
  std::vector<host::HatchPath> paths;
  for (int i = 0; i < count; ++i) paths.push_back(readPath(p, fitData));
  return paths;
}

std::vector<host::HatchPatternLine> readHatchPatternLines(TagReader& reader, int n) {
  Pull p(reader);
  if (n < 0 || n > 1'000'000) throw DxfError(reader.line(), "impossible hatch pattern line count");
  std::vector<host::HatchPatternLine> lines;
  for (int i = 0; i < n; ++i) {
    host::HatchPatternLine line;
    line.angle = p.real(53) * kDegree;
    line.base = {p.real(43), p.real(44)};
    line.offset = {p.real(45), p.real(46)};
    int dashes = count(p, 79);
    line.dashes.reserve(p.plausible(dashes));
    for (int k = 0; k < dashes; ++k) line.dashes.push_back(p.real(49));
    lines.push_back(std::move(line));
  }
  return lines;
}

std::vector<ge::Point2d> readHatchSeeds(TagReader& reader, int n) {
  Pull p(reader);
  if (n < 0 || n > 10'000'000) throw DxfError(reader.line(), "impossible hatch seed point count");
  std::vector<ge::Point2d> seeds;
  seeds.reserve(p.plausible(n));
  for (int i = 0; i < n; ++i) seeds.push_back(p.point(10));
  return seeds;
}

void writeHatchPattern(DxfOut& out, const host::Hatch& h) {
  out.integer(75, h.style);
  out.integer(76, h.patternType);
  bool pattern = !h.solidFill || !h.patternLines.empty() || h.patternAngle != 0 || h.patternScale != 1 ||
                 h.patternDouble;
  if (pattern) {
    out.real(52, h.patternAngle / kDegree);
    out.real(41, h.patternScale);
    out.integer(77, h.patternDouble ? 1 : 0);
    out.integer(78, static_cast<std::int64_t>(h.patternLines.size()));
    for (const host::HatchPatternLine& line : h.patternLines) {
      out.real(53, line.angle / kDegree);
      out.real(43, line.base.x);
      out.real(44, line.base.y);
      out.real(45, line.offset.x);
      out.real(46, line.offset.y);
      out.integer(79, static_cast<std::int64_t>(line.dashes.size()));
      for (double d : line.dashes) out.real(49, d);
    }
  }
  if (h.pixelSize) out.real(47, *h.pixelSize);
  out.integer(98, static_cast<std::int64_t>(h.seeds.size()));
  for (const ge::Point2d& s : h.seeds) out.point2(10, s.x, s.y);
}

void writeHatchPaths(DxfOut& out, const std::vector<host::HatchPath>& paths, bool fitData) {
  out.integer(91, static_cast<std::int64_t>(paths.size()));
  for (const auto& path : paths) {
    out.integer(92, path.flags);
    if (path.flags & 2) {
      bool bulges = false;
      for (const auto& v : path.polyline) bulges = bulges || v.bulge != 0;
      out.integer(72, bulges ? 1 : 0);
      out.integer(73, path.polylineClosed ? 1 : 0);
      out.integer(93, static_cast<std::int64_t>(path.polyline.size()));
      for (const auto& v : path.polyline) {
        out.point2(10, v.x, v.y);
        if (bulges) out.real(42, v.bulge);
      }
    } else {
      out.integer(93, static_cast<std::int64_t>(path.edges.size()));
      for (const auto& e : path.edges) std::visit(EdgeWriter{out, fitData}, e);
    }
    out.integer(97, static_cast<std::int64_t>(path.sourceHandles.size()));
    for (auto h : path.sourceHandles) out.handle(330, h);
  }
}

}  // namespace standalone
