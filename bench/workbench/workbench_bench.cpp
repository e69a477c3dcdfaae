// workbench_bench [DIR]: the workbench's figures on the 100,000-entity mixed
// drawing (made in DIR, default /tmp/corvane-bench, unless it is there):
//   open: the drawing loaded, the plug-in loaded, the first full view painted;
//   pan: frames per second while the view is panned and painted anew;
//   LibreCAD's "librecad dxf2pdf" of the same drawing, when LibreCAD is installed.
// Runs under QT_QPA_PLATFORM=offscreen; never fails on time.
#include <QApplication>
#include <QPixmap>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "apps/corvane-workbench/drawing_view.h"
#include "apps/corvane-workbench/main_window.h"
#include "bench/db/drawings.h"
#include "standalone/editor/settings_file.h"
#include "standalone/render/render.h"

namespace {

using Clock = std::chrono::steady_clock;
double since(Clock::time_point t) { return std::chrono::duration<double>(Clock::now() - t).count(); }

constexpr int kPanFrames = 20;
constexpr double kPanStepPx = 15;

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  std::filesystem::path dir = argc > 1 ? argv[1] : "/tmp/corvane-bench";
  std::filesystem::create_directories(dir);
  std::filesystem::path drawing = dir / "mixed_100k_r2010.dxf";
  bench::makeMixedDrawing(drawing);
  std::string settings = (dir / "workbench-settings.reg").string();
  {
    standalone::SettingsFile file(settings, [](const std::string&) {});
    file.writeText(standalone::kCorvaneKey, "Location", std::string(CORVANE_WORKBENCH_DIR) + "/");
    file.writeInt(standalone::kCorvaneKey, "pagetimes", 5);
  }
  {
    QApplication app(argc, argv);
    workbench::MainWindow window(settings, false);
    window.resize(1600, 1000);
    window.show();
    QApplication::processEvents();
    workbench::DrawingView& view = *window.view();

    Clock::time_point start = Clock::now();
    if (!window.openDrawing(QString::fromStdString(drawing.string()))) {
      std::fprintf(stderr, "workbench_bench: cannot open %s\n", drawing.c_str());
      return 1;
    }
    double opened = since(start);
    QPixmap first = view.grab();  // one full paint: the picture rendered and blitted
    double painted = since(start);
    std::printf("workbench: open %.2f s, first full view %dx%d painted at %.2f s\n", opened, first.width(),
                first.height(), painted);

    Clock::time_point panStart = Clock::now();
    for (int i = 0; i < kPanFrames; ++i) {
      view.panByPixels({i < kPanFrames / 2 ? kPanStepPx : -kPanStepPx, 0});
      view.grab();
    }
    double panSeconds = since(panStart);
    std::printf("workbench: panning the whole drawing, %.1f frames/s (%d frames in %.2f s)\n", kPanFrames / panSeconds,
                kPanFrames, panSeconds);
    // Panning by hand: the picture moves with the hand, the drawing is painted
    // anew when the hand lets go.
    panStart = Clock::now();
    for (int i = 0; i < kPanFrames; ++i) {
      view.dragPan({kPanStepPx, 0});
      view.grab();
    }
    double dragSeconds = since(panStart);
    Clock::time_point release = Clock::now();
    view.endDragPan();
    view.grab();
    std::printf("workbench: panning by hand, %.1f frames/s while the hand moves, %.2f s to paint anew on release\n",
                kPanFrames / dragSeconds, since(release));
    // Zoomed in on a tenth of the drawing: fewer entities fall into the view.
    view.zoomAbout(QPointF(view.width() / 2.0, view.height() / 2.0), 10);
    view.grab();
    panStart = Clock::now();
    for (int i = 0; i < kPanFrames; ++i) {
      view.panByPixels({i < kPanFrames / 2 ? kPanStepPx : -kPanStepPx, 0});
      view.grab();
    }
    panSeconds = since(panStart);
    std::printf("workbench: panning zoomed in 10x, %.1f frames/s\n", kPanFrames / panSeconds);
    window.setWindowModified(false);
  }
  standalone::releaseFontCaches();

  if (std::getenv("CORVANE_BENCH_NO_LIBRECAD")) return 0;
  if (std::system("command -v librecad >/dev/null 2>&1") == 0) {
    std::filesystem::path pdf = dir / "mixed_100k_librecad.pdf";
    std::string command = "QT_QPA_PLATFORM=offscreen librecad dxf2pdf -a -o '" + pdf.string() + "' '" +
                          drawing.string() + "' >/dev/null 2>&1";
    Clock::time_point start = Clock::now();
    int rc = std::system(command.c_str());
    double seconds = since(start);
    std::printf("LibreCAD dxf2pdf of the same drawing: %.2f s (exit %d)\n", seconds, rc);
  } else {
    std::printf("LibreCAD is not installed: no comparison\n");
  }
  return 0;
}
