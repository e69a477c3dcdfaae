// Figures for the polyline commands (never a test):
//   commands_bench plyh [vertices]  thinning of one long polyline: the passes
//                                   and merge alone, the whole PLYH command
//                                   through the embedded host, and shapely's
//                                   simplify (GEOS) on the same points
//   commands_bench pldf [curves]    PLDF on many 100-point polylines: time and peak memory
//   commands_bench plmap4 [curves]  PLMAP4 of 50-point polylines into a fence of four
//                                   400-vertex wavy polylines, results as polylines
// Run each mode in its own process so its peak memory is its own.
#include <sys/resource.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <tuple>

#include "bench/support/plugin_session.h"
#include "commands/thinning.h"
#include "frame/module.h"
#include "geom/curve_kind.h"
#include "standalone/editor/answer_source.h"
#include "standalone/editor/embedded_host.h"
#include "standalone/hostcmds/polyline_edit.h"

namespace {

double seconds(const std::function<void()>& f) {
  auto t0 = std::chrono::steady_clock::now();
  f();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
}

double peakMegabytes() {
  rusage u{};
  getrusage(RUSAGE_SELF, &u);
  return u.ru_maxrss / 1024.0;
}

// A slow wave with small deterministic jitter: most vertices add little to the shape.
ge::PointList wigglyLine(std::size_t n) {
  ge::PointList pts(n);
  std::uint64_t state = 12345;
  for (std::size_t i = 0; i < n; ++i) {
    state = state * 6364136223846793005ull + 1442695040888963407ull;
    double jitter = (static_cast<double>(state >> 11) / 9007199254740992.0 - 0.5) * 0.01;
    pts[i] = {i * 0.01, 5 * std::sin(i * 0.0007) + jitter, 0};
  }
  return pts;
}

// The plug-in's session with the host's PEDIT, which some commands drive.
struct Session : bench_support::PluginSession {
  explicit Session(standalone::DrawingDatabase db)
      : PluginSession(std::move(db), [](standalone::EmbeddedHost& h) { standalone::addPolylineEditCommands(h.hostCommands()); }) {}
};

std::string handleOf(host::ObjectId id) {
  char buf[24];
  std::snprintf(buf, sizeof buf, "#%llX", static_cast<unsigned long long>(id.value));
  return buf;
}

void benchThinning(std::size_t n) {
  ge::PointList pts = wigglyLine(n);
  ge::Extents3d box;
  for (const auto& p : pts) box.add(p);
  // PLYH at its default answer 1: T = 0.5.
  commands::ThinningThresholds t = commands::thinningThresholds(box.diagonal(), 0.5);

  std::size_t kept = 0;
  double best = 1e9;
  for (int round = 0; round < 5; ++round) {
    ge::PointList copy = pts;
    best = std::min(best, seconds([&] { kept = commands::thinPolylinePoints(std::move(copy), t).size(); }));
  }
  std::printf("PLYH passes+merge on %zu vertices: %.4f s (best of 5), %zu vertices kept, D = %.4g\n", n, best, kept,
              t.merge);

  std::string pointsFile = "/tmp/corvane-bench-points.bin";
  {
    std::ofstream f(pointsFile, std::ios::binary);
    for (const auto& p : pts) f.write(reinterpret_cast<const char*>(&p.x), 2 * sizeof(double));
  }
  char tol[32];
  std::snprintf(tol, sizeof tol, "%.17g", t.merge);
  std::string cmd = std::string(CORVANE_PYTHON) + " " + CORVANE_SHAPELY_BENCH + " " + pointsFile + " " + tol;
  std::fflush(stdout);
  if (std::system(cmd.c_str()) != 0) std::printf("shapely reference could not run: %s\n", cmd.c_str());
  std::remove(pointsFile.c_str());

  standalone::DrawingDatabase db = standalone::DrawingDatabase::createEmpty();
  host::Entity e;
  host::LwPolyline lw;
  for (const auto& p : pts) lw.vertices.push_back({p.x, p.y});
  e.data = std::move(lw);
  db.append(e);
  Session session(std::move(db));
  // The host's own queries the command makes on the polyline, for comparison.
  const host::CurveServices& curves = session.host->host().curves;
  ge::Extents3d ext;
  double extentsTime = seconds([&] { curves.getGeomExtents(e.data, ext); });
  double endParam = 0, length = 0;
  double lengthTime = seconds([&] {
    curves.getEndParam(e.data, endParam);
    curves.getDistAtParam(e.data, endParam, length);
  });
  double readTime = seconds([&] { session.host->drawing().read(e.id); });
  std::printf("host queries on it: extents %.4f s, length (end param + distance) %.4f s, one read %.4f s\n",
              extentsTime, lengthTime, readTime);
  double whole = seconds([&] { session.run("PLYH\n" + handleOf(e.id) + "\n\n1\n"); });
  std::printf("PLYH command through the embedded host (selection, extents, read, thin, append, erase): %.4f s\n",
              whole);
  std::string transcript = session.out.str();
  std::size_t at = transcript.find("Vertexs befor");
  if (at != std::string::npos) std::printf("  %s\n", transcript.substr(at, transcript.find('\n', at) - at).c_str());
}

void benchDivide(std::size_t curves) {
  double baseline = peakMegabytes();
  standalone::DrawingDatabase db = standalone::DrawingDatabase::createEmpty();
  for (std::size_t c = 0; c < curves; ++c) {
    host::Entity e;
    host::LwPolyline lw;
    double y0 = static_cast<double>(c) * 3;
    for (int i = 0; i < 100; ++i) lw.vertices.push_back({i * 1.0, y0 + std::sin(i * 0.3 + c)});
    e.data = std::move(lw);
    db.append(e);
  }
  Session session(std::move(db));
  double before = peakMegabytes();
  double t = seconds([&] { session.run("PLDF\nALL\n\n16\n"); });
  std::string transcript = session.out.str();
  std::size_t at = transcript.find("Processed <");
  std::printf("PLDF on %zu curves of 100 points (16 points each): %.3f s, %s\n", curves, t,
              at == std::string::npos ? "no count line" : transcript.substr(at, transcript.find('.', at) - at).c_str());
  std::printf("  peak memory: %.1f MB for the process (%.1f MB before the drawing, %.1f MB before PLDF)\n",
              peakMegabytes(), baseline, before);
}

void benchMap(std::size_t curves) {
  standalone::DrawingDatabase db = standalone::DrawingDatabase::createEmpty();
  auto append = [&db](host::LwPolyline lw) {
    host::Entity e;
    e.data = std::move(lw);
    db.append(e);
    return e.id;
  };
  // The fence's sides wave across their straight course and meet exactly at the corners.
  constexpr int kSide = 400;
  auto side = [](ge::Point2d a, ge::Point2d b, double amplitude, double waves) {
    host::LwPolyline lw;
    ge::Point2d normal{-(b.y - a.y), b.x - a.x};
    double len = std::hypot(normal.x, normal.y);
    for (int i = 0; i <= kSide; ++i) {
      double f = double(i) / kSide, w = amplitude * std::sin(f * waves * 2 * 3.141592653589793);
      lw.vertices.push_back({a.x + (b.x - a.x) * f + normal.x / len * w, a.y + (b.y - a.y) * f + normal.y / len * w});
    }
    return lw;
  };
  std::string fence;
  for (auto [a, b, amp, waves] : {std::tuple{ge::Point2d{0, 0}, ge::Point2d{100, 0}, 3.0, 3.0},
                                  {ge::Point2d{100, 0}, ge::Point2d{100, 60}, 2.0, 2.0},
                                  {ge::Point2d{0, 60}, ge::Point2d{100, 60}, 5.0, 1.5},
                                  {ge::Point2d{0, 0}, ge::Point2d{0, 60}, 2.0, 2.5}})
    fence += handleOf(append(side(a, b, amp, waves))) + "\n";
  for (std::size_t c = 0; c < curves; ++c) {
    host::LwPolyline lw;
    for (int i = 0; i < 50; ++i) lw.vertices.push_back({200 + i * 0.8, c * 0.5 + std::sin(i * 0.5 + c)});
    append(std::move(lw));
  }
  Session session(std::move(db));
  geom::setCurveKindIsSpline(false);
  double t = seconds([&] { session.run("PLMAP4\nW 190,-5 250," + std::to_string(curves * 0.5 + 5) + "\n\n" + fence); });
  std::size_t vertices = 0, made = 0;
  const auto& drawing = session.host->drawing();
  for (host::ObjectId id : drawing.entitiesOf(drawing.modelSpace()))
    if (auto e = drawing.read(id); e && std::holds_alternative<host::LwPolyline>(e->data)) {
      vertices += std::get<host::LwPolyline>(e->data).vertices.size();
      ++made;
    }
  made -= 4 + curves;
  std::printf("PLMAP4 of %zu curves of 50 points into a fence of four %d-vertex polylines: %.3f s, "
              "%zu results, %.1f vertices each on average\n",
              curves, kSide + 1, t, made, made ? double(vertices - (4 * (kSide + 1) + 50 * curves)) / made : 0.0);
}

}  // namespace

int main(int argc, char** argv) {
  std::string mode = argc > 1 ? argv[1] : "plyh";
  std::size_t size = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 0;
  if (mode == "plyh") benchThinning(size ? size : 1000000);
  else if (mode == "pldf") benchDivide(size ? size : 10000);
  else if (mode == "plmap4") benchMap(size ? size : 100);
  else {
    std::fprintf(stderr, "usage: commands_bench plyh|pldf|plmap4 [size]\n");
    return 2;
  }
  return 0;
}
