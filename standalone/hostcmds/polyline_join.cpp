// PEDIT Join, on one polyline or over Multiple, and Edit vertex.
#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

#include "host/codes.h"
#include "standalone/hostcmds/polyline_edit.h"
#include "standalone/kernel/ocs.h"

namespace standalone {

namespace {

// Ends closer than this fraction of their size meet (rounding only; Join
// without a fuzz distance joins touching ends).
constexpr double kMeetTolerance = 1e-9;

bool meet(const host::LwVertex& a, const host::LwVertex& b) {
  double size = std::max({1.0, std::abs(a.x), std::abs(a.y), std::abs(b.x), std::abs(b.y)});
  return std::hypot(a.x - b.x, a.y - b.y) <= kMeetTolerance * size;
}

// A 2D polyline without its fitting: the frame it was fitted to.
host::Polyline2d decurved(host::Polyline2d p) {
  host::EntityData d = std::move(p);
  decurvePolyline(d);
  return std::get<host::Polyline2d>(std::move(d));
}

host::LwPolyline asLightweight(const host::Polyline2d& p) {
  host::LwPolyline lw;
  for (const host::Vertex2d& v : p.vertices)
    lw.vertices.push_back({v.position.x, v.position.y, v.bulge, v.startWidth, v.endWidth});
  lw.closed = p.closed;
  lw.elevation = p.elevation;
  lw.normal = p.normal;
  return lw;
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
  if (std::holds_alternative<host::Polyline2d>(d)) {
    host::LwPolyline lw = asLightweight(decurved(std::get<host::Polyline2d>(d)));
    if (!lw.closed && lw.vertices.size() >= 2) return lw;
  }
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

// Closes a polyline whose ends meet, without the repeated vertex.
void closeWhenEndsMeet(host::LwPolyline& p) {
  if (p.vertices.size() > 2 && meet(p.vertices.front(), p.vertices.back())) {
    p.vertices.pop_back();
    p.closed = true;
  }
}

// Where the line through a0, a1 crosses the line through b0, b1; nothing for
// parallel lines.
std::optional<host::LwVertex> crossing(const host::LwVertex& a0, const host::LwVertex& a1, const host::LwVertex& b0,
                                       const host::LwVertex& b1) {
  double ax = a1.x - a0.x, ay = a1.y - a0.y, bx = b1.x - b0.x, by = b1.y - b0.y;
  double denom = ax * by - ay * bx;
  if (std::abs(denom) <= 1e-12 * std::hypot(ax, ay) * std::hypot(bx, by)) return std::nullopt;
  double t = ((b0.x - a0.x) * by - (b0.y - a0.y) * bx) / denom;
  return host::LwVertex{a0.x + t * ax, a0.y + t * ay};
}

double gap(const host::LwVertex& a, const host::LwVertex& b) { return std::hypot(a.x - b.x, a.y - b.y); }

// Bridges the target's end to the piece's start, which lie apart by at most
// the fuzz distance, and appends the piece; the segments added, or -1 when
// the join type cannot bridge them.
int bridgeAtEnd(host::LwPolyline& target, const host::LwPolyline& piece, double fuzz, JoinType type) {
  host::LwVertex& end = target.vertices.back();
  const host::LwVertex& start = piece.vertices.front();
  int segments = static_cast<int>(piece.vertices.size()) - 1;
  if (meet(end, start)) {
    appendAtEnd(target, piece);
    return segments;
  }
  if (type != JoinType::kAdd) {
    const host::LwVertex& before = target.vertices[target.vertices.size() - 2];
    const host::LwVertex& after = piece.vertices[1];
    bool straight = before.bulge == 0 && start.bulge == 0;
    std::optional<host::LwVertex> meetAt = straight ? crossing(before, end, start, after) : std::nullopt;
    if (straight && !meetAt && !crossing(before, end, end, start)) {
      // Both ends on one line: the bridge is the extension itself.
      end.bulge = 0;
      target.vertices.insert(target.vertices.end(), piece.vertices.begin(), piece.vertices.end());
      target.vertices.back().bulge = 0;
      return segments + 1;
    }
    if (meetAt && gap(*meetAt, end) <= fuzz && gap(*meetAt, start) <= fuzz) {
      end.x = meetAt->x, end.y = meetAt->y, end.bulge = 0;
      target.vertices.insert(target.vertices.end(), piece.vertices.begin() + 1, piece.vertices.end());
      target.vertices.back().bulge = 0;
      return segments;
    }
    if (type == JoinType::kExtend) return -1;
  }
  end.bulge = 0;
  target.vertices.insert(target.vertices.end(), piece.vertices.begin(), piece.vertices.end());
  target.vertices.back().bulge = 0;
  return segments + 1;
}

}  // namespace

int joinPolylines(std::vector<host::LwPolyline>& polylines, double fuzz, JoinType type,
                  std::vector<std::size_t>& joinedInto) {
  const std::size_t n = polylines.size();
  joinedInto.resize(n);
  for (std::size_t i = 0; i < n; ++i) joinedInto[i] = i;
  auto open = [&](std::size_t i) {
    return joinedInto[i] == i && !polylines[i].closed && polylines[i].vertices.size() >= 2;
  };
  int added = 0;
  for (std::size_t t = 0; t < n; ++t) {
    while (open(t)) {
      host::LwPolyline& target = polylines[t];
      // Ends of other polylines within the fuzz distance of the target's
      // ends, nearest first; the first that can be bridged is taken.
      struct Candidate {
        double distance;
        std::size_t piece;
        bool atTargetEnd, atPieceEnd;
      };
      std::vector<Candidate> near;
      for (std::size_t p = 0; p < n; ++p) {
        if (p == t || !open(p)) continue;
        const host::LwPolyline& piece = polylines[p];
        if (piece.elevation != target.elevation || piece.normal != target.normal) continue;
        for (bool atTargetEnd : {true, false})
          for (bool atPieceEnd : {false, true}) {
            const host::LwVertex& a = atTargetEnd ? target.vertices.back() : target.vertices.front();
            const host::LwVertex& b = atPieceEnd ? piece.vertices.back() : piece.vertices.front();
            if (gap(a, b) <= fuzz || meet(a, b)) near.push_back({gap(a, b), p, atTargetEnd, atPieceEnd});
          }
      }
      std::stable_sort(near.begin(), near.end(),
                       [](const Candidate& x, const Candidate& y) { return x.distance < y.distance; });
      bool joinedOne = false;
      for (const Candidate& c : near) {
        // The target is run so that the join is at its end, and the piece so
        // that the join is at its start.
        host::LwPolyline joined = c.atTargetEnd ? target : reversed(target);
        host::LwPolyline piece = c.atPieceEnd ? reversed(polylines[c.piece]) : polylines[c.piece];
        int segments = bridgeAtEnd(joined, piece, fuzz, type);
        if (segments < 0) continue;
        target = c.atTargetEnd ? std::move(joined) : reversed(joined);
        joinedInto[c.piece] = t;
        added += segments;
        joinedOne = true;
        break;
      }
      if (!joinedOne) break;
    }
    if (joinedInto[t] == t && !polylines[t].closed) closeWhenEndsMeet(polylines[t]);
  }
  return added;
}

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
  if (added > 0) closeWhenEndsMeet(target);
  return added;
}

int joinTo2dPolyline(host::Polyline2d& target, const std::vector<host::EntityData>& pieces, std::vector<bool>& used) {
  used.assign(pieces.size(), false);
  host::Polyline2d frame = decurved(target);
  host::LwPolyline lw = asLightweight(frame);
  int added = joinToPolyline(lw, pieces, used);
  if (added == 0) return 0;
  // The target's own vertices run in order from `first` (pieces joined at
  // its start come before them); they keep their handles and flags.
  const std::size_t n = frame.vertices.size();
  std::size_t first = 0;
  while (first < lw.vertices.size() && (lw.vertices[first].x != frame.vertices[0].position.x ||
                                        lw.vertices[first].y != frame.vertices[0].position.y))
    ++first;
  std::vector<host::Vertex2d> vertices;
  for (std::size_t j = 0; j < lw.vertices.size(); ++j) {
    const host::LwVertex& v = lw.vertices[j];
    host::Vertex2d out;
    if (j >= first && j - first < n) out = frame.vertices[j - first];
    out.position = {v.x, v.y, frame.elevation};
    out.bulge = v.bulge;
    out.startWidth = v.startWidth, out.endWidth = v.endWidth;
    vertices.push_back(out);
  }
  frame.vertices = std::move(vertices);
  frame.closed = lw.closed;
  target = std::move(frame);
  return added;
}

namespace {

bool meet3d(const ge::Point3d& a, const ge::Point3d& b) {
  double size = std::max({1.0, std::abs(a.x), std::abs(a.y), std::abs(a.z), std::abs(b.x), std::abs(b.y), std::abs(b.z)});
  return a.distanceTo(b) <= kMeetTolerance * size;
}

// World points of a straight planar polyline; nothing when a segment bulges.
std::optional<std::vector<ge::Point3d>> straightInWorld(const host::LwPolyline& lw) {
  if (lw.closed || lw.vertices.size() < 2) return std::nullopt;
  kernel::Frame f = kernel::ocsFrame(lw.normal);
  std::vector<ge::Point3d> out;
  for (const host::LwVertex& v : lw.vertices) {
    if (v.bulge != 0) return std::nullopt;
    out.push_back(kernel::ocsToWorld(f, v.x, v.y, lw.elevation));
  }
  return out;
}

// What a 3D polyline can take: lines, open 3D polylines (without their
// fitting) and open straight 2D polylines, as points in order.
std::optional<std::vector<ge::Point3d>> asStraightPiece(const host::EntityData& d) {
  if (auto* line = std::get_if<host::Line>(&d)) return std::vector<ge::Point3d>{line->start, line->end};
  if (std::holds_alternative<host::Polyline3d>(d)) {
    host::EntityData copy = d;
    decurvePolyline(copy);
    const auto& p = std::get<host::Polyline3d>(copy);
    if (p.closed || p.vertices.size() < 2) return std::nullopt;
    std::vector<ge::Point3d> out;
    for (const host::Vertex3d& v : p.vertices) out.push_back(v.position);
    return out;
  }
  if (auto* lw = std::get_if<host::LwPolyline>(&d)) return straightInWorld(*lw);
  if (auto* p2 = std::get_if<host::Polyline2d>(&d)) return straightInWorld(asLightweight(decurved(*p2)));
  return std::nullopt;
}

}  // namespace

int joinTo3dPolyline(host::Polyline3d& target, const std::vector<host::EntityData>& pieces, std::vector<bool>& used) {
  used.assign(pieces.size(), false);
  host::EntityData d = target;
  decurvePolyline(d);
  host::Polyline3d result = std::get<host::Polyline3d>(std::move(d));
  if (result.closed || result.vertices.size() < 2) return 0;
  auto& v = result.vertices;
  int added = 0;
  for (bool grew = true; grew;) {
    grew = false;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      if (used[i]) continue;
      std::optional<std::vector<ge::Point3d>> piece = asStraightPiece(pieces[i]);
      if (!piece) continue;
      std::vector<ge::Point3d>& pts = *piece;
      if (meet3d(pts.back(), v.back().position) || meet3d(pts.front(), v.front().position))
        std::reverse(pts.begin(), pts.end());
      if (meet3d(pts.front(), v.back().position)) {
        for (std::size_t k = 1; k < pts.size(); ++k) v.push_back(host::Vertex3d{pts[k]});
      } else if (meet3d(pts.back(), v.front().position)) {
        v.insert(v.begin(), pts.size() - 1, host::Vertex3d{});
        for (std::size_t k = 0; k + 1 < pts.size(); ++k) v[k] = host::Vertex3d{pts[k]};
      } else {
        continue;
      }
      used[i] = grew = true;
      added += static_cast<int>(pts.size()) - 1;
    }
  }
  if (added == 0) return 0;
  if (v.size() > 2 && meet3d(v.front().position, v.back().position)) {
    v.pop_back();
    result.closed = true;
  }
  target = std::move(result);
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
