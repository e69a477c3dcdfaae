// The plug-in's dialogs as desktop windows, driven as a user would: the
// formula dialog draws the chosen curve at an origin clicked in the view,
// the hole-net dialog draws a picture's holes, the about box shows the about text.
#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QSlider>
#include <QTest>
#include <QTimer>

#include "apps/corvane-workbench/drawing_view.h"
#include "apps/corvane-workbench/formula_dialog.h"
#include "apps/corvane-workbench/host_dialogs.h"
#include "apps/corvane-workbench/hole_net_dialog.h"
#include "apps/corvane-workbench/session.h"
#include "standalone/editor/settings_file.h"
#include "tests/workbench/workbench_fixture.h"

namespace workbench_test {
namespace {

template <class T>
T* openDialog(const char* name) {
  for (QWidget* w : QApplication::topLevelWidgets())
    if (w->objectName() == name && w->isVisible()) return qobject_cast<T*>(w);
  return nullptr;
}

QAction* corvaneItem(workbench::MainWindow& w, const QString& macro) {
  for (QAction* a : w.corvaneMenu()->actions())
    if (a->data().toString() == macro) return a;
  return nullptr;
}

TEST_F(WorkbenchTest, TheFormulaDialogDrawsTheChosenCurveAtAClickedOrigin) {
  QAction* formula = corvaneItem(window(), "^C^C_ZORL_FORMULA");
  ASSERT_NE(formula, nullptr);
  workbench::FormulaDialog* dialog = nullptr;
  std::size_t previewed = 0, afterSlider = 0;
  workbench::DrawingView& view = *window().view();
  play({{[&] { return (dialog = openDialog<workbench::FormulaDialog>("formulaDialog")) != nullptr; },
         [&] {
           EXPECT_EQ(dialog->windowTitle(), "Math Formula Curves");
           EXPECT_EQ(dialog->list()->count(), 71);
           dialog->list()->setCurrentRow(5);  // "6. Hyperbola": three parameters, the fourth hidden
           EXPECT_TRUE(dialog->slider(2)->isVisibleTo(dialog));
           EXPECT_FALSE(dialog->slider(3)->isVisibleTo(dialog));
           dialog->slider(0)->setValue(dialog->slider(0)->minimum() + 1);
           EXPECT_EQ(dialog->edit(0)->text().toInt(), dialog->slider(0)->value());  // in step
           dialog->curveKind()->setCurrentIndex(1);                               // polylines
           screenshot(*dialog, "workbench-formula-dialog.png");
           QTimer::singleShot(0, dialog, &workbench::FormulaDialog::preview);
         }},
        {[&] { return window().waiting() && !dialog->isVisible(); },  // stepped aside for the pick
         [&] { QTest::mouseClick(&view, Qt::LeftButton, Qt::NoModifier, view.toWidget({0, 0}).toPoint()); }},
        {[&] { return dialog->isVisible() && !window().waiting(); },
         [&] {
           previewed = modelSpaceSize();
           // A slider moved after the preview redraws in place: the old curve goes.
           dialog->slider(1)->setValue(dialog->slider(1)->value() + 1);
           afterSlider = modelSpaceSize();
           QTimer::singleShot(0, dialog, &workbench::FormulaDialog::closeDialog);
         }}});
  formula->trigger();
  runUntilPlayed();
  EXPECT_GT(previewed, 0u);
  EXPECT_EQ(afterSlider, previewed);
  EXPECT_EQ(modelSpaceSize(), previewed);
  standalone::SettingsFile settings(dir_.file("settings.reg"), [](const std::string&) {});
  EXPECT_EQ(settings.readInt(standalone::kCorvaneKey, "formula_ListIndex"), 5u);
  EXPECT_EQ(settings.readInt(standalone::kCorvaneKey, "formula_curveIsPline"), 1u);

  std::string out = dir_.file("formula.dxf");
  ASSERT_TRUE(window().saveDrawingAs(QString::fromStdString(out)));
  std::string dump = dumpWithEzdxf(out);
  EXPECT_GE(countOf(dump, "LWPOLYLINE") + countOf(dump, "POLYLINE2d"), 1) << dump;
}

TEST_F(WorkbenchTest, TheHoleNetDialogDrawsThePicturesHoles) {
  workbench::HoleNetDialog* dialog = nullptr;
  std::size_t holes = 0;
  play({{[&] { return (dialog = openDialog<workbench::HoleNetDialog>("holeNetDialog")) != nullptr; },
         [&] {
           EXPECT_EQ(dialog->windowTitle(), "Image to HoleNet");
           EXPECT_TRUE(dialog->loadImage(QString(CORVANE_SAMPLES) + "/image/rocket.jpg"));
           dialog->rows()->clear();
           QTest::keyClicks(dialog->rows(), "30");  // typed, so the edit tells the model
           dialog->preview();
           screenshot(*dialog, "workbench-hole-net-dialog.png");
           // Do Drawing asks for the origin and the height with the dialog aside.
           window().submitLine("0,0");
           window().submitLine("100");
           QTimer::singleShot(0, dialog, &workbench::HoleNetDialog::doDrawing);
         }},
        {[&] { return dialog->isVisible() && modelSpaceSize() > 0; },
         [&] {
           holes = modelSpaceSize();
           QTimer::singleShot(0, dialog, &QDialog::accept);
         }}});
  window().submitLine("txwk");
  runUntilPlayed();
  EXPECT_GT(holes, 100u);
  EXPECT_NE(transcript().find("Please specify the height"), std::string::npos) << transcript();
}

TEST_F(WorkbenchTest, TheAboutBoxShowsTheAboutText) {
  QString shown;
  QTimer poll;
  QObject::connect(&poll, &QTimer::timeout, [&] {
    for (QWidget* w : QApplication::topLevelWidgets())
      if (auto* box = qobject_cast<QMessageBox*>(w); box && box->isVisible() && box->objectName() == "aboutBox") {
        shown = box->text();
        screenshot(*box, "workbench-about-box.png");
        box->accept();
      }
  });
  poll.start(20);
  window().runMacro("^C^C_ZORL_ABOUT");
  runUntilIdle();
  ASSERT_TRUE(runUntil([&] { return !shown.isEmpty(); }));
  EXPECT_TRUE(shown.contains("Corvane")) << shown.toStdString();
}

TEST(HostDialogFilters, BecomeQtNameFilters) {
  EXPECT_EQ(workbench::qtNameFilters("EXCEL File(*.xls)|*.xls|"), QStringList{"EXCEL File(*.xls)"});
  EXPECT_EQ(workbench::qtNameFilters("Pictures|*.png;*.bmp|Text|*.txt"),
            (QStringList{"Pictures (*.png *.bmp)", "Text (*.txt)"}));
  EXPECT_EQ(workbench::qtNameFilters(""), QStringList{});
}

}  // namespace
}  // namespace workbench_test
