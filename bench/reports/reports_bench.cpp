// Figures for the reports and batch intersections (never a test):
//   reports_bench pljd [segments]    PLJD on long random segments: collecting
//                                    and merging alone, then the whole command
//                                    with mode-1 marks, beside a numpy
//                                    brute-force count and shapely's noding of
//                                    the same segments
//   reports_bench pllist [vertices]  PLLIST of one long polyline: time and MB/s of the page
// CORVANE_BENCH_NO_PYTHON=1 leaves out the python figures (shapely's noding takes a minute).
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>

#include "bench/support/plugin_session.h"
#include "commands/intersection_points.h"
#include "frame/module.h"
#include "standalone/editor/answer_source.h"
#include "standalone/editor/embedded_host.h"

namespace {

double cpuSeconds() {
  rusage u{};
  getrusage(RUSAGE_SELF, &u);
  return u.ru_utime.tv_sec + u.ru_stime.tv_sec + (u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

// Processor time of the calling thread: the figure least disturbed by other
// work on a shared machine.
double threadSeconds(const std::function<void()>& f) {
  timespec a{}, b{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &a);
  f();
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &b);
  return static_cast<double>(b.tv_sec - a.tv_sec) + (b.tv_nsec - a.tv_nsec) / 1e9;
}

double seconds(const std::function<void()>& f) {
  auto t0 = std::chrono::steady_clock::now();
  f();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
}

// Deterministic numbers in [0, 1).
struct Lcg {
  std::uint64_t state = 2024;
  double next() {
    state = state * 6364136223846793005ull + 1442695040888963407ull;
    return static_cast<double>(state >> 11) / 9007199254740992.0;
  }
};

using Session = bench_support::PluginSession;

void benchIntersections(std::size_t n) {
  Lcg rng;
  std::vector<host::EntityData> lines;
  std::string segmentsFile = "/tmp/corvane-bench-segments.bin";
  {
    std::ofstream f(segmentsFile, std::ios::binary);
    for (std::size_t i = 0; i < n; ++i) {
      double xy[4] = {rng.next() * 1000, rng.next() * 1000, rng.next() * 1000, rng.next() * 1000};
      f.write(reinterpret_cast<const char*>(xy), sizeof xy);
      lines.push_back(host::Line{{xy[0], xy[1], 0}, {xy[2], xy[3], 0}});
    }
  }
  std::string cmd = std::string(CORVANE_PYTHON) + " " + CORVANE_CROSSINGS_REFERENCE + " " + segmentsFile;
  std::fflush(stdout);
  if (std::getenv("CORVANE_BENCH_NO_PYTHON") == nullptr && std::system(cmd.c_str()) != 0) std::printf("python reference could not run: %s\n", cmd.c_str());
  std::remove(segmentsFile.c_str());

  standalone::DrawingDatabase db = standalone::DrawingDatabase::createEmpty();
  for (const auto& l : lines) {
    host::Entity e;
    e.data = l;
    db.append(e);
  }
  Session session(std::move(db));
  const host::CurveServices& curves = session.host->host().curves;
  ge::PointList raw, kept;
  double collect = 1e300, merge = 1e300, collectCpu = 1e300, mergeCpu = 1e300;
  for (int round = 0; round < 3; ++round) {
    collect = std::min(collect, seconds([&] {
      collectCpu = std::min(collectCpu, threadSeconds([&] { raw = commands::collectAmongCurves(curves, lines); }));
    }));
    merge = std::min(merge, seconds([&] {
      mergeCpu = std::min(mergeCpu, threadSeconds([&] { kept = commands::mergeIntersections(raw); }));
    }));
  }
  double both = 1e300;
  for (int round = 0; round < 3; ++round)
    both = std::min(both, seconds([&] { kept = commands::collectAndMergeAmongCurves(curves, lines); }));
  std::printf("PLJD collect and merge as the command runs them (a worker collects while the merge goes on): "
              "%.3f s, %zu kept (best of 3)\n", both, kept.size());
  std::printf("PLJD collect on %zu segments: %.3f s, %zu raw points; merge: %.3f s, %zu kept; together %.3f s "
              "(best of 3; processor time %.3f + %.3f = %.3f s)\n",
              n, collect, raw.size(), merge, kept.size(), collect + merge, collectCpu, mergeCpu,
              collectCpu + mergeCpu);
  double whole = seconds([&] { session.run("PLJD\nALL\n\n1\n"); });
  std::size_t points = 0;
  auto& drawing = session.host->drawing();
  for (host::ObjectId id : drawing.entitiesOf(drawing.modelSpace()))
    if (auto e = drawing.read(id); e && std::holds_alternative<host::PointEntity>(e->data)) ++points;
  std::printf("PLJD command with mode-1 marks through the embedded host: %.3f s, %zu point entities\n", whole,
              points);
}

void benchPolylineList(std::size_t n) {
  standalone::DrawingDatabase db = standalone::DrawingDatabase::createEmpty();
  host::Entity e;
  host::LwPolyline lw;
  Lcg rng;
  for (std::size_t i = 0; i < n; ++i) lw.vertices.push_back({i * 0.5, rng.next() * 100 - 50});
  e.data = std::move(lw);
  db.append(e);
  Session session(std::move(db));
  char handle[32];
  std::snprintf(handle, sizeof handle, "#%llX", static_cast<unsigned long long>(e.id.value));
  std::string page = session.dir + "/list.html";
  double cpu0 = cpuSeconds();
  double t = seconds([&] { session.run("PLLIST\n" + std::string(handle) + "\n\n" + session.dir + "/list.xls\nN\n\n"); });
  double cpu = cpuSeconds() - cpu0;
  std::error_code ec;
  double megabytes = static_cast<double>(std::filesystem::file_size(page, ec)) / 1e6;
  if (ec) {
    std::printf("PLLIST wrote no page:\n%s\n", session.out.str().c_str());
    return;
  }
  std::printf("PLLIST of one %zu-vertex polyline: %.3f s, page %.1f MB, %.1f MB/s "
              "(%.3f s of processor time, %.1f MB/s; the rest waits for the disk to take the page)\n",
              n, t, megabytes, megabytes / t, cpu, megabytes / cpu);
}

}  // namespace

int main(int argc, char** argv) {
  std::string mode = argc > 1 ? argv[1] : "pljd";
  std::size_t size = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 0;
  if (mode == "pljd") benchIntersections(size ? size : 2000);
  else if (mode == "pllist") benchPolylineList(size ? size : 1000000);
  else {
    std::fprintf(stderr, "usage: reports_bench pljd|pllist [size]\n");
    return 2;
  }
  return 0;
}
