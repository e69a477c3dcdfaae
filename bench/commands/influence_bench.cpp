// Figures for PLAFFECT (never a test): 10 influence curves acting on 10,000
// polylines of 100 vertices, through the embedded host with the plug-in
// loaded. Time and peak memory; run each mode in its own process so its peak
// memory is its own.
//   influence_bench rigid [polylines]   moved, turned and scaled whole
//   influence_bench bend [polylines]    bent point by point and rebuilt
#include <sys/resource.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "bench/support/timing.h"
#include "frame/module.h"
#include "standalone/editor/answer_source.h"
#include "standalone/editor/embedded_host.h"

namespace {

double peakMegabytes() {
  rusage u{};
  getrusage(RUSAGE_SELF, &u);
  return u.ru_maxrss / 1024.0;
}

constexpr int kInfluenceCurves = 10;
constexpr int kVertices = 100;

// Polylines in rows of 100, each a zigzag 10 wide; influence curves are
// vertical lines spread over the rows' width.
standalone::DrawingDatabase drawing(int polylines, std::string& influenceHandles) {
  standalone::DrawingDatabase db = standalone::DrawingDatabase::createEmpty();
  for (int k = 0; k < polylines; ++k) {
    host::LwPolyline lw;
    double x0 = (k % 100) * 12.0, y0 = (k / 100) * 12.0;
    for (int i = 0; i < kVertices; ++i) lw.vertices.push_back({x0 + 10.0 * i / (kVertices - 1), y0 + (i % 2) * 0.5});
    host::Entity e;
    e.data = std::move(lw);
    db.append(e);
  }
  double height = (polylines / 100 + 1) * 12.0;
  for (int c = 0; c < kInfluenceCurves; ++c) {
    host::Entity e;
    double x = 60 + c * 120.0;
    e.data = host::Line{{x, -10, 0}, {x + 30, height + 10, 0}};
    db.append(e);
    char handle[24];
    std::snprintf(handle, sizeof handle, "#%llX\n", static_cast<unsigned long long>(e.id.value));
    influenceHandles += handle;
  }
  return db;
}

}  // namespace

int main(int argc, char** argv) {
  std::string mode = argc > 1 ? argv[1] : "rigid";
  int polylines = argc > 2 ? std::atoi(argv[2]) : 10000;
  if (mode != "rigid" && mode != "bend") {
    std::fprintf(stderr, "usage: influence_bench rigid|bend [polylines]\n");
    return 2;
  }
  std::string influences;
  standalone::DrawingDatabase db = drawing(polylines, influences);
  char pattern[] = "/tmp/corvane-bench-XXXXXX";
  std::string dir = mkdtemp(pattern);
  std::ofstream(dir + "/settings.reg") << "Windows Registry Editor Version 5.00\n\n"
                                          "[HKEY_CURRENT_USER\\Software\\Brightvale\\Corvane]\n"
                                          "\"pagetimes\"=dword:0000000a\n";
  standalone::EmbeddedHostOptions options;
  options.settingsPath = dir + "/settings.reg";
  options.modulePath = dir + "/corvane";
  std::ostringstream transcript;
  auto host = std::make_unique<standalone::EmbeddedHost>(std::move(db), transcript, options);
  auto module = std::make_unique<frame::Module>(host->host());
  module->acrxEntryPoint(frame::AppMsg::kInitAppMsg);
  // Strength 5, distance 20, move, rotate, scale, rigid as the mode says.
  std::string script = "ZOOM\nC\n0,0\n100\nPLAFFECT\n" + influences + "\nALL\n\n5\n20\nY\nY\nY\n" +
                       (mode == "rigid" ? "Y\n" : "N\n");
  double before = peakMegabytes();
  double t = benchsupport::bestSeconds(1, [&] {
    auto source = standalone::ScriptReader::fromText("bench.scr", script);
    host->run(source);
  });
  std::printf("PLAFFECT %s: %d influence curves on %d polylines of %d vertices: %.2f s, peak memory %.0f MB "
              "(%.0f MB before the command)\n",
              mode.c_str(), kInfluenceCurves, polylines, kVertices, t, peakMegabytes(), before);
  if (std::getenv("INFLUENCE_BENCH_TRANSCRIPT")) std::printf("%s\n", transcript.str().c_str());
  module.reset();
  host.reset();
  std::system(("rm -rf " + dir).c_str());
  return 0;
}
