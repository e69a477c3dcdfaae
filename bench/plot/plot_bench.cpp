// PDF plots and undo on the 100,000-entity drawing; prints figures, never
// fails on time.
//   plot_bench DIR    makes DIR/mixed_100k_r2010.dxf when missing, then times
//     - `corvane DRAWING -c "" --pdf OUT` end to end (load, plugin, plot),
//     - the plot alone (plotDrawingToPdf, fitted on A3 and at the view),
//     - one recorded change of a single entity and its undo and redo.
#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "bench/db/drawings.h"
#include "bench/support/timing.h"
#include "standalone/db/dxf_reader.h"
#include "standalone/render/plot.h"
#include "standalone/render/render.h"

namespace fs = std::filesystem;

// CPU seconds (user + system) of the finished child processes so far: on a
// shared machine the wall clock also counts the waiting for a core.
double childCpuSeconds() {
  struct rusage u {};
  getrusage(RUSAGE_CHILDREN, &u);
  return static_cast<double>(u.ru_utime.tv_sec + u.ru_stime.tv_sec) +
         static_cast<double>(u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: plot_bench DIR\n");
    return 2;
  }
  fs::path dir(argv[1]);
  fs::create_directories(dir);
  fs::path drawing = dir / "mixed_100k_r2010.dxf", pdf = dir / "plot.pdf";
  bench::makeMixedDrawing(drawing);

  // The program as a user runs it; the settings go to a scratch file.
  std::string command = "CORVANE_SETTINGS='" + (dir / "settings.reg").string() + "' '" CORVANE_PROGRAM "' '" +
                        drawing.string() + "' -c '' --no-pages --pdf '" + pdf.string() + "' > /dev/null";
  bool ok = true;
  double cpu0 = childCpuSeconds();
  double program = benchsupport::bestSeconds(3, [&] { ok = ok && std::system(command.c_str()) == 0; });
  double programCpu = (childCpuSeconds() - cpu0) / 3;
  if (!ok) {
    std::fprintf(stderr, "corvane --pdf failed\n");
    return 1;
  }
  std::printf("corvane --pdf, 100,000 entities, A4 fitted, end to end: %.3f s wall (best of 3), %.3f s CPU (mean)"
              " (PDF %.1f MB)\n", program, programCpu, static_cast<double>(fs::file_size(pdf)) / 1e6);

  standalone::DrawingDatabase db = standalone::loadDxf(drawing);
  standalone::PlotSettings a3;
  a3.paper = *standalone::paperSizeByName("A3");
  a3.landscape = true;
  double fitted = benchsupport::bestSeconds(3, [&] { standalone::plotDrawingToPdf(db, pdf, a3); });
  standalone::PlotSettings view = a3;
  view.window = standalone::PlotWindow{{0, 0}, 200, 100};
  view.scale = 1;
  double window = benchsupport::bestSeconds(3, [&] { standalone::plotDrawingToPdf(db, pdf, view); });
  std::printf("plot alone (drawing loaded): A3 fitted %.3f s, a 200 x 100 window at 1:1 %.3f s\n", fitted, window);

  // Undo costs per command: the first change copies the drawing's lists and
  // index once; restoring swaps them back.
  host::ObjectId first = db.entitiesOf(db.modelSpace()).front();
  standalone::DrawingChange change;
  double record = benchsupport::bestSeconds(5, [&] {
    db.startRecording();
    db.write(*db.read(first));
    change = db.takeRecording();
  });
  double undoRedo = benchsupport::bestSeconds(5, [&] { change = db.restore(db.restore(std::move(change))); });
  std::printf("undo: recording a one-entity command %.4f s, undo + redo of it %.4f s\n", record, undoRedo);
  standalone::releaseFontCaches();
  return 0;
}
