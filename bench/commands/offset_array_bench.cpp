// Figures for the batch offset, the interpolated array and the coordinate
// file (never a test):
//   offset_array_bench ploffset [curves]  PLOFFSET, 10 copies on each side of
//                                         closed bulged 100-vertex polylines,
//                                         beside shapely's buffer of the same
//                                         polygons at the same 20 distances
//   offset_array_bench zb2pl [lines]      ZB2PL on a coordinate file, beside
//                                         numpy.loadtxt of the same file
//   offset_array_bench plarr [cells]      PLARR on a cells x cells array of a
//                                         10-vertex polyline: time and peak memory
// Run each mode in its own process so its peak memory is its own.
#include <sys/resource.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <numbers>
#include <sstream>
#include <string>

#include "bench/support/plugin_session.h"
#include "bench/support/timing.h"
#include "commands/coordinate_file.h"
#include "commands/text_lines.h"
#include "frame/module.h"
#include "standalone/editor/answer_source.h"
#include "standalone/editor/embedded_host.h"

namespace {

// Processor seconds of this process so far: steadier than the clock on a
// machine shared with other work, and what the Python references report too.
double cpuSeconds() {
  rusage u{};
  getrusage(RUSAGE_SELF, &u);
  return u.ru_utime.tv_sec + u.ru_utime.tv_usec / 1e6 + u.ru_stime.tv_sec + u.ru_stime.tv_usec / 1e6;
}

// Wall and processor seconds of one call.
struct Timing {
  double wall = 0, cpu = 0;
};
Timing timed(const std::function<void()>& f) {
  double cpu0 = cpuSeconds();
  double wall = benchsupport::bestSeconds(1, f);
  return {wall, cpuSeconds() - cpu0};
}

double peakMegabytes() {
  rusage u{};
  getrusage(RUSAGE_SELF, &u);
  return u.ru_maxrss / 1024.0;
}

// The plug-in's session, its scripts timed.
struct Session : bench_support::PluginSession {
  using PluginSession::PluginSession;
  Timing run(const std::string& script) {
    return timed([&] { PluginSession::run(script); });
  }
  std::size_t count() const {
    const auto& db = host->drawing();
    return db.entitiesOf(db.modelSpace()).size();
  }
};

std::string handleOf(host::ObjectId id) {
  char buf[24];
  std::snprintf(buf, sizeof buf, "#%llX", static_cast<unsigned long long>(id.value));
  return buf;
}

// A closed wavy ring of 100 vertices whose segments bulge alternately out and in.
host::LwPolyline wavyRing(double cx, double cy) {
  host::LwPolyline lw;
  lw.closed = true;
  for (int i = 0; i < 100; ++i) {
    double a = 2 * std::numbers::pi * i / 100;
    double r = 40 + 3 * std::sin(5 * a);
    lw.vertices.push_back({cx + r * std::cos(a), cy + r * std::sin(a), i % 2 ? 0.05 : -0.05});
  }
  return lw;
}

// The polygon shapely buffers: every arc cut into 8 chords.
void writeFlattened(std::ofstream& f, const host::LwPolyline& lw) {
  std::size_t n = lw.vertices.size();
  f << n * 8 << "\n";
  for (std::size_t i = 0; i < n; ++i) {
    const auto& a = lw.vertices[i];
    const auto& b = lw.vertices[(i + 1) % n];
    double dx = b.x - a.x, dy = b.y - a.y, chord = std::hypot(dx, dy);
    double sweep = 4 * std::atan(a.bulge), radius = chord / (2 * std::sin(sweep / 2));
    // Centre to the left of the chord for a counter-clockwise arc.
    double h = radius * std::cos(sweep / 2);
    double cx = (a.x + b.x) / 2 - dy / chord * h, cy = (a.y + b.y) / 2 + dx / chord * h;
    double start = std::atan2(a.y - cy, a.x - cx);
    for (int k = 0; k < 8; ++k) {
      double t = start + sweep * k / 8;
      f << cx + std::abs(radius) * std::cos(t) << " " << cy + std::abs(radius) * std::sin(t) << "\n";
    }
  }
}

void benchOffset(std::size_t curves) {
  standalone::DrawingDatabase db = standalone::DrawingDatabase::createEmpty();
  std::string polygons = "/tmp/corvane-bench-polygons.txt";
  std::ofstream f(polygons);
  f.precision(17);
  for (std::size_t c = 0; c < curves; ++c) {
    host::Entity e;
    host::LwPolyline ring = wavyRing(static_cast<double>(c % 40) * 100, static_cast<double>(c / 40) * 100);
    writeFlattened(f, ring);
    e.data = std::move(ring);
    db.append(e);
  }
  f.close();
  Session session(std::move(db));
  Timing t = session.run("PLOFFSET\nALL\n\nD\n10\n0.5\n");
  std::size_t made = session.count() - curves;
  std::size_t arcs = 0;
  const auto& drawing = session.host->drawing();
  for (host::ObjectId id : drawing.entitiesOf(drawing.modelSpace()))
    if (auto e = drawing.read(id))
      if (auto* lw = std::get_if<host::LwPolyline>(&e->data))
        for (const auto& v : lw->vertices) arcs += v.bulge != 0 ? 1 : 0;
  std::printf("PLOFFSET on %zu closed bulged 100-vertex polylines, 10 copies each side (0.5 apart): %.3f s "
              "(%.3f s processor), %zu copies, %zu arc segments in the drawing\n",
              curves, t.wall, t.cpu, made, arcs);
  std::fflush(stdout);
  std::string cmd = std::string(CORVANE_PYTHON) + " " + CORVANE_SHAPELY_BUFFER + " " + polygons + " 0.5 10";
  if (std::system(cmd.c_str()) != 0) std::printf("shapely reference could not run: %s\n", cmd.c_str());
  std::remove(polygons.c_str());
}

void benchCoordinateFile(std::size_t lines) {
  std::string path = "/tmp/corvane-bench-points.txt";
  {
    std::ofstream f(path);
    char buf[96];
    for (std::size_t i = 0; i < lines; ++i) {
      if (i % 100 == 99) {
        f << "\n";  // a block of 99 points, then a separator
        continue;
      }
      std::snprintf(buf, sizeof buf, "%.4f,%.4f,%.4f\n", i * 0.125, std::sin(i * 0.01) * 1000, 0.0);
      f << buf;
    }
  }
  std::ifstream in(path, std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(in)), {});
  std::size_t blocks = 0;
  Timing reader{1e300, 1e300};
  for (int round = 0; round < 3; ++round) {
    std::string file = bytes;  // the command hands its own bytes over, as this copy is
    Timing t = timed([&] {
      std::optional<std::string> text = commands::decodeText(std::move(file));
      blocks = commands::readCoordinateText(*text).blocks.size();
    });
    reader = {std::min(reader.wall, t.wall), std::min(reader.cpu, t.cpu)};
  }
  std::printf("coordinate file of %zu lines (%.1f MB): reader alone %.3f s (%.3f s processor, best of 3), "
              "%zu blocks\n",
              lines, bytes.size() / 1e6, reader.wall, reader.cpu, blocks);
  Session session(standalone::DrawingDatabase::createEmpty());
  Timing whole = session.run("ZB2PL\n" + path + "\n");
  std::printf("ZB2PL through the embedded host (file, reader, %zu polylines appended): %.3f s (%.3f s processor)\n",
              session.count(), whole.wall, whole.cpu);
  std::fflush(stdout);
  std::string cmd = std::string(CORVANE_PYTHON) + " " + CORVANE_NUMPY_LOADTXT + " " + path;
  if (std::system(cmd.c_str()) != 0) std::printf("numpy reference could not run: %s\n", cmd.c_str());
  std::remove(path.c_str());
}

void benchArray(int cells) {
  double baseline = peakMegabytes();
  standalone::DrawingDatabase db = standalone::DrawingDatabase::createEmpty();
  host::Entity a, b;
  host::LwPolyline la, lb;
  for (int i = 0; i < 10; ++i) {
    la.vertices.push_back({i * 1.0, std::sin(i * 0.7), 0.1});
    lb.vertices.push_back({5000 + i * 2.0, 5000 + std::cos(i * 0.7), -0.1});
  }
  a.data = la, b.data = lb;
  db.append(a);
  db.append(b);
  Session session(std::move(db));
  double before = peakMegabytes();
  std::string n = std::to_string(cells);
  Timing t = session.run("PLARR\n" + handleOf(a.id) + "\n" + handleOf(b.id) + "\n" + n + "\n" + n + "\n\n");
  std::printf("PLARR %d x %d cells of a 10-vertex polyline: %.3f s (%.3f s processor), %zu polylines\n", cells,
              cells, t.wall, t.cpu, session.count() - 2);
  std::printf("  peak memory: %.1f MB for the process (%.1f MB at start, %.1f MB before PLARR)\n", peakMegabytes(),
              baseline, before);
}

}  // namespace

int main(int argc, char** argv) {
  std::string mode = argc > 1 ? argv[1] : "ploffset";
  std::size_t size = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 0;
  if (mode == "ploffset") benchOffset(size ? size : 1000);
  else if (mode == "zb2pl") benchCoordinateFile(size ? size : 1000000);
  else if (mode == "plarr") benchArray(size ? static_cast<int>(size) : 1000);
  else {
    std::fprintf(stderr, "usage: offset_array_bench ploffset|zb2pl|plarr [size]\n");
    return 2;
  }
  return 0;
}
