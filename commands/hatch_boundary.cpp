// CHBJ: the boundaries of the selected hatches as polylines on each hatch's
// layer; an associative hatch is associated with its restored boundaries.
#include "commands/hatch_boundary.h"

#include <cmath>
#include <numbers>

#include "commands/commands.h"
#include "commands/selection_set.h"
#include "frame/output.h"
#include "frame/progress.h"
#include "frame/selection.h"

namespace commands {

namespace {

constexpr double kTurn = 2 * std::numbers::pi;

constexpr SelectionTexts kSelection{{"Please select hatches >\n", "请选择填充图案>\n"},
                                    {"No hatches selected.\n", "未选中填充图案。\n"},
                                    {"No hatches selected.\n", "未选中填充图案。\n"}};
constexpr frame::Text kDone{"\nRestored the boundaries of <%d > hatch(es): <%d > polyline(s) OK.",
                            "\n恢复了< %d >个填充图案的边界，共< %d >条多段线。 "};

// The signed sweep of an edge from start to end, counter-clockwise or not,
// never zero: equal angles make a full turn.
double sweepOf(double start, double end, bool ccw) {
  double s = std::fmod(ccw ? end - start : start - end, kTurn);
  if (s <= 1e-12) s += kTurn;
  return ccw ? s : -s;
}

ge::Point2d ellipsePoint(const host::HatchEllipseEdge& e, double t) {
  ge::Point2d minor{-e.majorAxis.y * e.ratio, e.majorAxis.x * e.ratio};
  return {e.center.x + e.majorAxis.x * std::cos(t) + minor.x * std::sin(t),
          e.center.y + e.majorAxis.y * std::cos(t) + minor.y * std::sin(t)};
}

// One edge as a run of vertices (each with the bulge to the next) and its end.
struct EdgeRun {
  std::vector<host::LwVertex> vertices;
  ge::Point2d end;

  void reverse() {
    std::vector<host::LwVertex> back;
    ge::Point2d next = end;
    for (auto it = vertices.rbegin(); it != vertices.rend(); ++it) {
      back.push_back({next.x, next.y, -it->bulge});
      next = {it->x, it->y};
    }
    end = next;
    vertices = std::move(back);
  }
  ge::Point2d start() const { return {vertices.front().x, vertices.front().y}; }
};

double distance(ge::Point2d a, ge::Point2d b) { return std::hypot(a.x - b.x, a.y - b.y); }

class EdgeRuns {
 public:
  explicit EdgeRuns(const host::CurveServices& curves) : curves_(curves) {}

  std::optional<EdgeRun> of(const host::HatchEdge& edge) const {
    EdgeRun run;
    if (const auto* l = std::get_if<host::HatchLineEdge>(&edge)) {
      run.vertices.push_back({l->start.x, l->start.y, 0});
      run.end = l->end;
    } else if (const auto* a = std::get_if<host::HatchArcEdge>(&edge)) {
      double sweep = sweepOf(a->startAngle, a->endAngle, a->counterClockwise);
      auto at = [&](double t) {
        return ge::Point2d{a->center.x + a->radius * std::cos(t), a->center.y + a->radius * std::sin(t)};
      };
      // Halves past half a turn keep each bulge at most 1.
      int parts = std::abs(sweep) > std::numbers::pi ? 2 : 1;
      for (int k = 0; k < parts; ++k) {
        ge::Point2d p = at(a->startAngle + sweep * k / parts);
        run.vertices.push_back({p.x, p.y, std::tan(sweep / parts / 4)});
      }
      run.end = at(a->startAngle + sweep);
    } else if (const auto* e = std::get_if<host::HatchEllipseEdge>(&edge)) {
      double sweep = sweepOf(e->startAngle, e->endAngle, e->counterClockwise);
      int n = std::max(8, static_cast<int>(std::ceil(std::abs(sweep) / kTurn * kChordsPerTurn)));
      for (int k = 0; k < n; ++k) {
        ge::Point2d p = ellipsePoint(*e, e->startAngle + sweep * k / n);
        run.vertices.push_back({p.x, p.y, 0});
      }
      run.end = ellipsePoint(*e, e->startAngle + sweep);
    } else if (const auto* s = std::get_if<host::HatchSplineEdge>(&edge)) {
      if (!spline(*s, run)) return std::nullopt;
    }
    if (run.vertices.empty()) return std::nullopt;
    return run;
  }

 private:
  bool spline(const host::HatchSplineEdge& s, EdgeRun& run) const {
    host::Spline sp;
    sp.degree = s.degree;
    sp.knots = s.knots;
    sp.weights = s.weights;
    if (s.rational) sp.flags |= 4;
    if (s.periodic) sp.flags |= 2;
    for (const auto& c : s.controlPoints) sp.controlPoints.push_back({c.x, c.y, 0});
    for (const auto& f : s.fitPoints) sp.fitPoints.push_back({f.x, f.y, 0});
    if (s.startTangent) sp.startTangent = ge::Vector3d{s.startTangent->x, s.startTangent->y, 0};
    if (s.endTangent) sp.endTangent = ge::Vector3d{s.endTangent->x, s.endTangent->y, 0};
    host::EntityData data = sp;
    double p0 = 0, p1 = 0;
    if (curves_.getStartParam(data, p0) != host::ErrorStatus::eOk ||
        curves_.getEndParam(data, p1) != host::ErrorStatus::eOk)
      return false;
    std::size_t spans = sp.controlPoints.size() > static_cast<std::size_t>(sp.degree)
                            ? sp.controlPoints.size() - static_cast<std::size_t>(sp.degree)
                            : std::max<std::size_t>(sp.fitPoints.size(), 2) - 1;
    int n = static_cast<int>(spans) * kChordsPerSpan;
    for (int k = 0; k <= n; ++k) {
      ge::Point3d p;
      if (curves_.getPointAtParam(data, p0 + (p1 - p0) * k / n, p) != host::ErrorStatus::eOk) return false;
      if (k < n)
        run.vertices.push_back({p.x, p.y, 0});
      else
        run.end = {p.x, p.y};
    }
    return true;
  }
  const host::CurveServices& curves_;
};

}  // namespace

std::optional<host::LwPolyline> boundaryOfPath(const host::HatchPath& path, const host::Hatch& hatch,
                                               const host::CurveServices& curves) {
  host::LwPolyline pl;
  pl.closed = true;
  pl.elevation = hatch.elevation;
  pl.normal = hatch.normal;
  if (path.flags & 2) {
    for (const host::LwVertex& v : path.polyline) pl.vertices.push_back({v.x, v.y, v.bulge});
    pl.closed = path.polylineClosed;
  } else {
    EdgeRuns runs(curves);
    std::vector<EdgeRun> chain;
    for (const host::HatchEdge& e : path.edges)
      if (std::optional<EdgeRun> run = runs.of(e)) chain.push_back(std::move(*run));
    // Each edge runs on from where the one before ended; the first runs
    // towards the second.
    if (chain.size() > 1) {
      ge::Point2d s1 = chain[1].start(), e1 = chain[1].end;
      if (std::min(distance(chain[0].start(), s1), distance(chain[0].start(), e1)) <
          std::min(distance(chain[0].end, s1), distance(chain[0].end, e1)))
        chain[0].reverse();
    }
    for (std::size_t i = 1; i < chain.size(); ++i)
      if (distance(chain[i].end, chain[i - 1].end) < distance(chain[i].start(), chain[i - 1].end)) chain[i].reverse();
    for (const EdgeRun& run : chain) {
      // Where one edge ends the next begins: a repeated point is dropped.
      for (const host::LwVertex& v : run.vertices)
        if (pl.vertices.empty() || std::hypot(pl.vertices.back().x - v.x, pl.vertices.back().y - v.y) > 1e-10 ||
            pl.vertices.back().bulge != 0)
          pl.vertices.push_back(v);
    }
    // The last edge ends where the first began.
    if (pl.vertices.size() > 1 &&
        std::hypot(pl.vertices.back().x - pl.vertices.front().x, pl.vertices.back().y - pl.vertices.front().y) < 1e-10)
      pl.vertices.pop_back();
  }
  if (pl.vertices.size() < 2) return std::nullopt;
  return pl;
}

void restoreHatchBoundary(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<std::vector<host::ObjectId>> ids = selectForCommand(host, kSelection, singleTypeFilter("HATCH"));
  if (!ids) return;
  int hatches = 0, made = 0;
  frame::ProgressMeter meter(host.editor, context.localName, ids->size());
  for (std::size_t i = 0; i < ids->size(); ++i) {
    meter.step(i + 1);
    std::optional<host::Entity> e = host.drawing.read((*ids)[i]);
    if (!e || !std::holds_alternative<host::Hatch>(e->data)) continue;
    host::Hatch hatch = std::get<host::Hatch>(e->data);
    bool any = false;
    for (host::HatchPath& path : hatch.paths) {
      std::optional<host::LwPolyline> pl = boundaryOfPath(path, hatch, host.curves);
      if (!pl) continue;
      host::Entity boundary;
      boundary.props = host.drawing.defaultProps();
      boundary.props.layer = e->props.layer;
      boundary.data = std::move(*pl);
      if (host.drawing.append(boundary, host.drawing.ownerOf(e->id)) != host::ErrorStatus::eOk) continue;
      ++made;
      any = true;
      if (hatch.associative) {
        // The path follows its restored boundary from now on.
        for (std::uint64_t old : path.sourceHandles) host.drawing.removeReactor({old}, e->id);
        path.sourceHandles = {boundary.id.value};
        host.drawing.addReactor(boundary.id, e->id);
      }
    }
    if (any) ++hatches;
    if (any && hatch.associative) {
      e->data = hatch;
      host.drawing.write(*e);
    }
  }
  frame::print(host, kDone, hatches, made);
}

}  // namespace commands
