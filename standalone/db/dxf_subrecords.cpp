#include "standalone/db/dxf_subrecords.h"

#include <algorithm>

#include "standalone/db/ocs.h"

namespace standalone {

namespace {

void setCoord(ge::Point3d& p, int code, double v) {
  int axis = code / 10;
  (axis == 1 ? p.x : axis == 2 ? p.y : p.z) = v;
}


struct VertexData {
  ge::Point3d position;
  double startWidth = 0, endWidth = 0, bulge = 0, tangent = 0;
  int flags = 0;
  std::uint64_t handle = 0;
  bool hasWidths = false;
};

// Reads one VERTEX record's groups (its 0 group already consumed); groups
// the vertex record has no field for go to kept.
VertexData readVertex(TagReader& r, EntityReadContext& ctx, std::vector<KeptTag>& kept) {
  VertexData v;
  RawTag t;
  bool tail = false, marker = false;
  while (r.peek(t) && t.code != 0) {
    r.next(t);
    if (t.code == 1001) tail = true;
    if (!tail) {
      if (t.code == 100) marker = true;
      switch (t.code) {
        case 5: v.handle = parseHandle(t); ctx.maxHandle = std::max(ctx.maxHandle, v.handle); continue;
        case 10: case 20: case 30: setCoord(v.position, t.code, parseReal(t)); continue;
        case 40: v.startWidth = parseReal(t); v.hasWidths = true; continue;
        case 41: v.endWidth = parseReal(t); v.hasWidths = true; continue;
        case 42: v.bulge = parseReal(t); continue;
        case 50: v.tangent = parseReal(t) * kDegree; continue;
        case 70: v.flags = static_cast<int>(parseInteger(t)); continue;
        case 8: case 100: continue;  // the polyline's layer and the fixed markers are written anew
        case 330: if (!marker) continue; break;
        default: break;
      }
    }
    kept.push_back({t.code, tail ? kAnchorTail : std::uint16_t{0}, t.value});
  }
  return v;
}

// Reads a SEQEND's groups; what is not its handle, owner or layer is kept.
std::uint64_t readSeqend(TagReader& r, EntityReadContext& ctx, std::vector<KeptTag>& kept) {
  RawTag t;
  std::uint64_t handle = 0;
  bool marker = false;
  while (r.peek(t) && t.code != 0) {
    r.next(t);
    if (t.code == 100) marker = true;
    if (t.code == 5 && handle == 0 && tryParseHandle(t.value, handle)) {
      ctx.maxHandle = std::max(ctx.maxHandle, handle);
    } else if (t.code != 8 && t.code != 100 && !(t.code == 330 && !marker)) {
      kept.push_back({t.code, 0, t.value});
    }
  }
  return handle;
}

// Skips a record's groups, noting its handle.
std::uint64_t skipRecord(TagReader& r, EntityReadContext& ctx) {
  RawTag t;
  std::uint64_t handle = 0;
  while (r.peek(t) && t.code != 0) {
    r.next(t);
    if (t.code == 5 && handle == 0 && tryParseHandle(t.value, handle))
      ctx.maxHandle = std::max(ctx.maxHandle, handle);
  }
  return handle;
}

}  // namespace

bool nextIs(TagReader& r, std::string_view type) {
  RawTag t;
  return r.peek(t) && t.code == 0 && t.value == type;
}

void readPolylineVertices(TagReader& r, EntityRecord& rec, EntityReadContext& ctx, int flags) {
  std::vector<VertexData> vertices;
  RawTag t;
  std::vector<KeptTag> kept;
  auto keepFor = [&](std::uint64_t handle) {
    if (!kept.empty()) rec.extras.subRecords.push_back({handle, std::move(kept)});
    kept.clear();
  };
  while (nextIs(r, "VERTEX")) {
    r.next(t);
    vertices.push_back(readVertex(r, ctx, kept));
    keepFor(vertices.back().handle);
  }
  std::uint64_t seqend = 0;
  if (nextIs(r, "SEQEND")) {
    r.next(t);
    seqend = readSeqend(r, ctx, kept);
    keepFor(seqend);
  }
  auto two = std::get<host::Polyline2d>(rec.entity.data);
  if (flags & (16 | 64)) {  // polygon mesh or polyface mesh: kept as they are
    rec.entity.data = host::OtherEntity{"POLYLINE"};
    rec.extras.kept.clear();
    rec.extras.subRecords.clear();
    return;
  }
  if (flags & 8) {
    host::Polyline3d p;
    p.closed = flags & 1;
    p.splineFit = flags & 4;
    p.curveType = two.curveType;
    p.seqendHandle = seqend;
    for (const auto& v : vertices) p.vertices.push_back({v.position, v.flags, v.handle});
    rec.entity.data = std::move(p);
    return;
  }
  two.closed = flags & 1;
  two.curveFit = flags & 2;
  two.splineFit = flags & 4;
  two.plinegen = flags & 128;
  two.seqendHandle = seqend;
  for (const auto& v : vertices) {
    host::Vertex2d out{v.position, v.bulge, v.startWidth, v.endWidth, v.tangent, v.flags, v.handle};
    if (!v.hasWidths) out.startWidth = two.defaultStartWidth, out.endWidth = two.defaultEndWidth;
    two.vertices.push_back(out);
  }
  rec.entity.data = std::move(two);
}

void readAttributes(TagReader& r, EntityRecord& rec, EntityReadContext& ctx) {
  const char* begin = r.position();
  RawTag t;
  bool any = false;
  while (nextIs(r, "ATTRIB")) {
    r.next(t);
    skipRecord(r, ctx);
    any = true;
  }
  if (any && nextIs(r, "SEQEND")) {
    r.next(t);
    skipRecord(r, ctx);
  }
  if (any) rec.extras.attributeTail = std::string_view(begin, static_cast<std::size_t>(r.position() - begin));
}

}  // namespace standalone
