// DXF load and save figures: each measurement runs in a child process so its
// peak memory is its own. Prints a line per file; never fails on time.
//   db_bench generate DIR    make the benchmark drawings (kept if present)
//   db_bench FILE...         measure load, save, load+save and peak memory, then
//                            the same with every entity changed before the save
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>

#include "bench/db/drawings.h"
#include "standalone/db/dxf_reader.h"
#include "standalone/db/dxf_writer.h"

namespace {

using Clock = std::chrono::steady_clock;

struct Figures {
  double loadSeconds = 0, saveSeconds = 0;        // wall clock
  double loadCpuSeconds = 0, saveCpuSeconds = 0;  // user + system: what the work costs on an idle machine
  std::size_t entities = 0;
};

double since(Clock::time_point t) { return std::chrono::duration<double>(Clock::now() - t).count(); }

double cpuSeconds() {
  struct rusage u {};
  getrusage(RUSAGE_SELF, &u);
  return static_cast<double>(u.ru_utime.tv_sec + u.ru_stime.tv_sec) +
         static_cast<double>(u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

// With rewriteAll every entity is written back before saving, so the save
// regenerates each one from its record instead of copying its bytes.
Figures loadAndSave(const std::string& in, const std::string& out, bool rewriteAll) {
  Figures f;
  double c0 = cpuSeconds();
  auto t0 = Clock::now();
  auto db = standalone::loadDxf(in);
  f.loadSeconds = since(t0);
  double c1 = cpuSeconds();
  f.loadCpuSeconds = c1 - c0;
  auto ids = db.entitiesOf(db.modelSpace());
  f.entities = ids.size();
  if (rewriteAll)
    for (auto id : ids) db.write(*db.read(id));
  c1 = cpuSeconds();
  auto t1 = Clock::now();
  standalone::saveDxf(db, out);
  f.saveSeconds = since(t1);
  f.saveCpuSeconds = cpuSeconds() - c1;
  return f;
}

// Runs the work in a child; returns the figures and the child's peak RSS in bytes.
bool measure(const std::string& in, const std::string& out, bool rewriteAll, Figures& f, long& peakBytes) {
  int fds[2];
  if (pipe(fds) != 0) return false;
  pid_t pid = fork();
  if (pid == 0) {
    close(fds[0]);
    Figures got{};
    try {
      got = loadAndSave(in, out, rewriteAll);
    } catch (const std::exception& e) {
      std::fprintf(stderr, "%s\n", e.what());
      _exit(1);
    }
    (void)!write(fds[1], &got, sizeof got);
    _exit(0);
  }
  close(fds[1]);
  bool ok = read(fds[0], &f, sizeof f) == static_cast<ssize_t>(sizeof f);
  close(fds[0]);
  int status = 0;
  struct rusage usage {};
  wait4(pid, &status, 0, &usage);
  peakBytes = usage.ru_maxrss * 1024L;
  return ok && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::string(argv[1]) == "generate") {
    std::filesystem::path dir(argv[2]);
    std::filesystem::create_directories(dir);
    bench::makeMixedDrawing(dir / "mixed_100k_r2010.dxf");
    bench::makeBigPolyline(dir / "polyline_1m_r2010.dxf");
    return 0;
  }
  if (argc < 2) {
    std::fprintf(stderr, "usage: db_bench generate DIR | db_bench FILE...\n");
    return 2;
  }
  std::printf("%-24s %6s %8s %15s %15s %15s %8s %9s\n", "file", "MB", "entities", "load s wall/cpu", "save s wall/cpu",
              "both wall/cpu", "peak MB", "peak/size");
  for (int i = 1; i < argc; ++i) {
    for (bool rewriteAll : {false, true}) {
      std::string in = argv[i], out = in + ".bench-out.dxf";
      double mb = static_cast<double>(std::filesystem::file_size(in)) / 1e6;
      Figures f;
      long peak = 0;
      // The first run warms the page cache; the second is reported.
      measure(in, out, rewriteAll, f, peak);
      if (!measure(in, out, rewriteAll, f, peak)) {
        std::printf("%-28s failed\n", in.c_str());
        continue;
      }
      std::filesystem::remove(out);
      std::string name = std::filesystem::path(in).filename().string();
      if (rewriteAll) name = "  all entities rewritten";
      std::printf("%-24s %6.1f %8zu %7.3f/%7.3f %7.3f/%7.3f %7.3f/%7.3f %8.1f %9.2f\n", name.c_str(), mb, f.entities,
                  f.loadSeconds, f.loadCpuSeconds, f.saveSeconds, f.saveCpuSeconds, f.loadSeconds + f.saveSeconds,
                  f.loadCpuSeconds + f.saveCpuSeconds, static_cast<double>(peak) / 1e6,
                  static_cast<double>(peak) / 1e6 / mb);
    }
  }
  return 0;
}
