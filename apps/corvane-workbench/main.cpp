// corvane-workbench [DRAWING.dxf]: the desktop workbench.
#include <QApplication>
#include <QTimer>

#include "apps/corvane-workbench/main_window.h"
#include "standalone/render/render.h"

int main(int argc, char** argv) {
  int code = 0;
  {
    QApplication app(argc, argv);
    QApplication::setApplicationName("Corvane Workbench");
    workbench::MainWindow window;
    window.show();
    QStringList args = QApplication::arguments();
    if (args.size() > 1) {
      QString path = args[1];
      QTimer::singleShot(0, &window, [&window, path] {
        if (window.openDrawing(path)) {}
      });
    }
    code = QApplication::exec();
  }
  standalone::releaseFontCaches();
  return code;
}
