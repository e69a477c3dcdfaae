// A command's file prompt answered in Qt's real file dialog (FILEDIA 1): the
// dialog shows the prompt's title and filter, the chosen file is what the
// command reads, and cancelling the dialog cancels the command.
#include <QPushButton>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QTimer>
#include <fstream>

#include "tests/workbench/workbench_fixture.h"

namespace workbench_test {
namespace {

QFileDialog* openFileDialog() {
  for (QWidget* w : QApplication::topLevelWidgets())
    if (auto* d = qobject_cast<QFileDialog*>(w); d && d->isVisible() && d->objectName() == "hostFileDialog") return d;
  return nullptr;
}

// A dialog left open would hold the test inside its modal loop for good:
// after the time runs out it is closed, so the test fails instead of hanging.
class DialogWatchdog {
 public:
  explicit DialogWatchdog(int ms) {
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, [] {
      if (QFileDialog* d = openFileDialog()) d->reject();
    });
    timer_.start(ms);
  }

 private:
  QTimer timer_;
};

TEST_F(WorkbenchTest, AFilePromptIsAnsweredInQtsFileDialog) {
  std::string points = dir_.file("points.txt");
  std::ofstream(points) << "0,0\n10,0\n10,10\n\n";
  struct Case {
    const char* name;
    bool choose;        // type the file's name and press Open, or Cancel
    std::size_t drawn;  // polylines the command then adds
  };
  for (const Case& c : {Case{"chosen", true, 1}, Case{"cancelled", false, 0}}) {
    SCOPED_TRACE(c.name);
    std::size_t before = modelSpaceSize();
    QString title;
    QStringList filters;
    bool openMode = false;
    play({{[&] { return openFileDialog() != nullptr; },
           [&] {
             QFileDialog* dialog = openFileDialog();
             title = dialog->windowTitle();
             filters = dialog->nameFilters();
             openMode = dialog->acceptMode() == QFileDialog::AcceptOpen;
             if (!c.choose) {
               QTimer::singleShot(0, dialog, &QDialog::reject);
               return;
             }
             // As a user would: the name typed into the dialog's own field,
             // then its Open button.
             auto* name = dialog->findChild<QLineEdit*>("fileNameEdit");
             auto* buttons = dialog->findChild<QDialogButtonBox*>("buttonBox");
             ASSERT_NE(name, nullptr);
             ASSERT_NE(buttons, nullptr);
             name->setText(QString::fromStdString(points));
             QPushButton* open = buttons->button(QDialogButtonBox::Open);
             ASSERT_NE(open, nullptr);
             QTimer::singleShot(0, open, [open] { open->click(); });
           }}});
    DialogWatchdog watchdog(15000);
    window().submitLine("zb2pl");
    runUntilPlayed();
    EXPECT_EQ(title, QString::fromUtf8("请选择一个坐标列表文件"));
    // The filter comes from the prompt's extension, as in the host's file prompts.
    EXPECT_TRUE(filters.contains("*.txt (*.txt)")) << filters.join(" | ").toStdString();
    EXPECT_TRUE(openMode);
    EXPECT_EQ(modelSpaceSize() - before, c.drawn) << transcript();
    EXPECT_EQ(transcript().find("Error"), std::string::npos) << transcript();
  }
  std::string out = dir_.file("chosen.dxf");
  ASSERT_TRUE(window().saveDrawingAs(QString::fromStdString(out)));
  std::string dump = dumpWithEzdxf(out);
  EXPECT_EQ(countOf(dump, "LWPOLYLINE") + countOf(dump, "POLYLINE2d"), 1) << dump;
}

}  // namespace
}  // namespace workbench_test
