// PEDIT Join and Edit vertex on one polyline.
#include <cmath>
#include <optional>
#include <string>

#include "host/codes.h"
#include "standalone/hostcmds/polyline_edit.h"

namespace standalone {

namespace {

// Ends closer than this fraction of their size meet (rounding only; Join
// without a fuzz distance joins touching ends).
constexpr double kMeetTolerance = 1e-9;

bool meet(const host::LwVertex& a, const host::LwVertex& b) {
  double size = std::max({1.0, std::abs(a.x), std::abs(a.y), std::abs(b.x), std::abs(b.y)});
  return std::hypot(a.x - b.x, a.y - b.y) <= kMeetTolerance * size;
}

// A line or arc in the XY plane, or an open lightweight polyline with the
// target's normal, as a lightweight polyline; nothing for other pieces.
std::optional<host::LwPolyline> asPiece(const host::EntityData& d) {
  if (auto* line = std::get_if<host::Line>(&d)) {
    if (line->start.z != line->end.z) return std::nullopt;
    host::LwPolyline lw;
    lw.vertices = {{line->start.x, line->start.y}, {line->end.x, line->end.y}};
    lw.elevation = line->start.z;
    return lw;
  }
  if (auto* arc = std::get_if<host::Arc>(&d)) {
    if (arc->normal != ge::kZAxis) return std::nullopt;
    double sweep = std::remainder(arc->endAngle - arc->startAngle, 2 * M_PI);
    if (sweep <= 0) sweep += 2 * M_PI;
    host::LwPolyline lw;
    lw.vertices = {{arc->center.x + arc->radius * std::cos(arc->startAngle),
                    arc->center.y + arc->radius * std::sin(arc->startAngle), std::tan(sweep / 4)},
                   {arc->center.x + arc->radius * std::cos(arc->endAngle),
                    arc->center.y + arc->radius * std::sin(arc->endAngle)}};
    lw.elevation = arc->center.z;
    return lw;
  }
  if (auto* lw = std::get_if<host::LwPolyline>(&d); lw && !lw->closed && lw->vertices.size() >= 2) return *lw;
  return std::nullopt;
}

// The piece run the other way: vertices reversed, each bulge moved to the
// segment before and negated.
host::LwPolyline reversed(const host::LwPolyline& p) {
  host::LwPolyline r = p;
  std::size_t n = p.vertices.size();
  for (std::size_t i = 0; i < n; ++i) {
    r.vertices[i] = p.vertices[n - 1 - i];
    r.vertices[i].bulge = i + 1 < n ? -p.vertices[n - 2 - i].bulge : 0;
  }
  return r;
}

// Adds the piece after the target's end when its start meets that end.
bool appendAtEnd(host::LwPolyline& target, const host::LwPolyline& piece) {
  if (!meet(target.vertices.back(), piece.vertices.front())) return false;
  target.vertices.back().bulge = piece.vertices.front().bulge;
  target.vertices.insert(target.vertices.end(), piece.vertices.begin() + 1, piece.vertices.end());
  target.vertices.back().bulge = 0;
  return true;
}

}  // namespace

int joinToPolyline(host::LwPolyline& target, const std::vector<host::EntityData>& pieces, std::vector<bool>& used) {
  used.assign(pieces.size(), false);
  if (target.closed || target.vertices.size() < 2) return 0;
  int added = 0;
  for (bool grew = true; grew;) {
    grew = false;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      if (used[i]) continue;
      std::optional<host::LwPolyline> piece = asPiece(pieces[i]);
      if (!piece || piece->elevation != target.elevation || piece->normal != target.normal) continue;
      int segments = static_cast<int>(piece->vertices.size()) - 1;
      bool joined = appendAtEnd(target, *piece) || appendAtEnd(target, reversed(*piece));
      if (!joined) {
        // At the start: join to the target run backwards, then turn it back.
        host::LwPolyline back = reversed(target);
        joined = appendAtEnd(back, reversed(*piece)) || appendAtEnd(back, *piece);
        if (joined) target = reversed(back);
      }
      if (!joined) continue;
      used[i] = grew = true;
      added += segments;
    }
  }
  // A polyline whose ends now meet is closed, without the repeated vertex.
  if (added > 0 && target.vertices.size() > 2 && meet(target.vertices.front(), target.vertices.back())) {
    target.vertices.pop_back();
    target.closed = true;
  }
  return added;
}

bool moveVertex(host::EntityData& polyline, std::size_t index, const ge::Point3d& to) {
  if (auto* lw = std::get_if<host::LwPolyline>(&polyline); lw && index < lw->vertices.size()) {
    lw->vertices[index].x = to.x, lw->vertices[index].y = to.y;
    return true;
  }
  if (auto* p2 = std::get_if<host::Polyline2d>(&polyline); p2 && index < p2->vertices.size()) {
    p2->vertices[index].position.x = to.x, p2->vertices[index].position.y = to.y;
    return true;
  }
  if (auto* p3 = std::get_if<host::Polyline3d>(&polyline); p3 && index < p3->vertices.size()) {
    p3->vertices[index].position = to;
    return true;
  }
  return false;
}

bool insertVertexAfter(host::EntityData& polyline, std::size_t index, const ge::Point3d& at) {
  if (auto* lw = std::get_if<host::LwPolyline>(&polyline); lw && index < lw->vertices.size()) {
    lw->vertices[index].bulge = 0;  // the segment is split: both halves straight
    lw->vertices.insert(lw->vertices.begin() + index + 1, host::LwVertex{at.x, at.y});
    return true;
  }
  if (auto* p2 = std::get_if<host::Polyline2d>(&polyline); p2 && index < p2->vertices.size()) {
    p2->vertices[index].bulge = 0;
    host::Vertex2d v;
    v.position = {at.x, at.y, p2->elevation};
    p2->vertices.insert(p2->vertices.begin() + index + 1, v);
    return true;
  }
  if (auto* p3 = std::get_if<host::Polyline3d>(&polyline); p3 && index < p3->vertices.size()) {
    p3->vertices.insert(p3->vertices.begin() + index + 1, host::Vertex3d{at});
    return true;
  }
  return false;
}

std::size_t vertexCount(const host::EntityData& polyline) {
  if (auto* lw = std::get_if<host::LwPolyline>(&polyline)) return lw->vertices.size();
  if (auto* p2 = std::get_if<host::Polyline2d>(&polyline)) return p2->vertices.size();
  if (auto* p3 = std::get_if<host::Polyline3d>(&polyline)) return p3->vertices.size();
  return 0;
}

}  // namespace standalone
