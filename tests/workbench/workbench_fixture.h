#pragma once
// A workbench window on Qt's offscreen platform with its own settings file,
// whose plug-in folder is the workbench program's (menu files, pictures).
#include <QApplication>
#include <QString>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "apps/corvane-workbench/main_window.h"
#include "standalone/db/database.h"
#include "tests/support/temp_dir.h"

namespace workbench_test {

class WorkbenchTest : public ::testing::Test {
 protected:
  WorkbenchTest();
  ~WorkbenchTest() override;

  workbench::MainWindow& window() { return *window_; }
  // Opens samples/demo.dxf; false when it could not be opened.
  bool openDemo();
  // The open drawing and how many entities its model space holds.
  standalone::DrawingDatabase& db();
  std::size_t modelSpaceSize();
  // A step of a user's play: done once its condition holds. Commands wait
  // for answers inside nested event loops, so the play is driven by a timer
  // that runs inside them, never by code after the command was started.
  struct Step {
    std::function<bool()> when;
    std::function<void()> act;
  };
  // Starts the play; runUntilPlayed() then runs the window until every step
  // was taken and no command runs.
  void play(std::vector<Step> steps);
  void runUntilPlayed(int timeoutMs = 30000);
  // How many prompts have waited for an answer so far.
  int promptsWaited() const { return prompts_; }

  // Lets the window run until no command runs and nothing waits to start
  // (or the time runs out, which fails the test).
  void runUntilIdle(int timeoutMs = 20000);
  // Runs the window until the condition holds; false when the time ran out.
  bool runUntil(const std::function<bool()>& condition, int timeoutMs = 20000);
  // Entities of model space, by DXF kind as ezdxf reads the saved file.
  std::string dumpWithEzdxf(const std::string& dxfPath);
  // What the Python that has ezdxf prints for these arguments (stderr too).
  std::string pythonOutput(const std::string& arguments);
  int countOf(const std::string& dump, const std::string& kind);
  // Writes a picture of the widget into the screenshot folder (CORVANE_WORKBENCH_SHOTS) when one is given.
  void screenshot(QWidget& widget, const QString& name);
  std::string transcript();

  test_support::TempDir dir_{"workbench"};
  std::unique_ptr<workbench::MainWindow> window_;
  std::vector<Step> steps_;
  std::size_t nextStep_ = 0;
  std::unique_ptr<class QTimer> player_;
  int prompts_ = 0;
};

}  // namespace workbench_test
