#include "tests/workbench/workbench_fixture.h"

#include <QElapsedTimer>
#include <QTimer>
#include <array>
#include <cstdio>
#include <sstream>

#include "apps/corvane-workbench/command_panel.h"
#include "apps/corvane-workbench/session.h"
#include "standalone/editor/settings_file.h"
#include "standalone/render/render.h"

namespace workbench_test {

WorkbenchTest::WorkbenchTest() {
  std::string settings = dir_.file("settings.reg");
  {
    standalone::SettingsFile file(settings, [](const std::string&) {});
    file.writeText(standalone::kCorvaneKey, "Location", std::string(CORVANE_WORKBENCH_DIR) + "/");
    file.writeInt(standalone::kCorvaneKey, "pagetimes", 5);  // no about box at load
  }
  window_ = std::make_unique<workbench::MainWindow>(settings, false);
  window_->resize(1200, 800);
  window_->show();
  QObject::connect(window_.get(), &workbench::MainWindow::promptWaiting, [this] { ++prompts_; });
  QApplication::processEvents();
}

void WorkbenchTest::play(std::vector<Step> steps) {
  steps_ = std::move(steps);
  nextStep_ = 0;
  player_ = std::make_unique<QTimer>();
  QObject::connect(player_.get(), &QTimer::timeout, [this] {
    if (nextStep_ < steps_.size() && steps_[nextStep_].when()) {
      Step& s = steps_[nextStep_++];
      s.act();
    }
  });
  player_->start(10);
}

void WorkbenchTest::runUntilPlayed(int timeoutMs) {
  bool done = runUntil([this] { return nextStep_ >= steps_.size() && !window_->busy(); }, timeoutMs);
  if (player_) player_->stop();
  ASSERT_TRUE(done) << "the play stopped before step " << nextStep_ + 1 << " of " << steps_.size() << ":\n"
                    << transcript();
  QApplication::processEvents();
}

WorkbenchTest::~WorkbenchTest() {
  player_.reset();
  if (window_) window_->setWindowModified(false);
  window_.reset();
}

bool WorkbenchTest::runUntil(const std::function<bool()>& condition, int timeoutMs) {
  QElapsedTimer clock;
  clock.start();
  while (!condition()) {
    if (clock.elapsed() > timeoutMs) return false;
    QApplication::processEvents(QEventLoop::AllEvents, 20);
  }
  return true;
}

void WorkbenchTest::runUntilIdle(int timeoutMs) {
  // Let queued starts run first, then wait for the command to end.
  QApplication::processEvents();
  ASSERT_TRUE(runUntil([this] { return !window_->busy(); }, timeoutMs)) << "the command did not end:\n" << transcript();
  QApplication::processEvents();
}

bool WorkbenchTest::openDemo() {
  return window_->openDrawing(QString::fromStdString(std::string(CORVANE_SAMPLES) + "/demo.dxf"));
}

standalone::DrawingDatabase& WorkbenchTest::db() { return window_->session()->host().drawing(); }

std::size_t WorkbenchTest::modelSpaceSize() { return db().entitiesOf(db().modelSpace()).size(); }

std::string WorkbenchTest::dumpWithEzdxf(const std::string& dxfPath) {
  return pythonOutput(std::string(CORVANE_DUMP_DXF) + " '" + dxfPath + "'");
}

std::string WorkbenchTest::pythonOutput(const std::string& arguments) {
  std::string command = std::string(CORVANE_PYTHON) + " " + arguments + " 2>&1";
  std::string out;
  if (FILE* pipe = popen(command.c_str(), "r")) {
    std::array<char, 4096> buf;
    std::size_t n;
    while ((n = fread(buf.data(), 1, buf.size(), pipe)) > 0) out.append(buf.data(), n);
    pclose(pipe);
  }
  return out;
}

int WorkbenchTest::countOf(const std::string& dump, const std::string& kind) {
  std::istringstream lines(dump);
  int n = 0;
  for (std::string line; std::getline(lines, line);) n += line.starts_with(kind + " ");
  return n;
}

void WorkbenchTest::screenshot(QWidget& widget, const QString& name) {
  QByteArray folder = qgetenv("CORVANE_WORKBENCH_SHOTS");
  if (folder.isEmpty()) return;
  widget.grab().save(QString::fromUtf8(folder) + "/" + name);
}

std::string WorkbenchTest::transcript() { return window_->commandPanel()->transcriptText().toStdString(); }

}  // namespace workbench_test

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  int code = 0;
  {
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    code = RUN_ALL_TESTS();
  }
  standalone::releaseFontCaches();
  return code;
}
