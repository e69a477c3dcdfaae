// The main window: open, the Corvane menu and the command line, the view's
// clicks and windows at prompts and at "Command:", save and read back.
#include <fstream>

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QTest>

#include "apps/corvane-workbench/command_panel.h"
#include "apps/corvane-workbench/drawing_view.h"
#include "apps/corvane-workbench/layer_panel.h"
#include "apps/corvane-workbench/properties_panel.h"
#include "apps/corvane-workbench/session.h"
#include "tests/workbench/workbench_fixture.h"

namespace workbench_test {
namespace {

int countKind(workbench::MainWindow& w, std::size_t variantIndex) {
  standalone::DrawingDatabase& db = w.session()->host().drawing();
  int n = 0;
  for (host::ObjectId id : db.entitiesOf(db.modelSpace()))
    if (const host::Entity* e = db.peek(id); e && e->data.index() == variantIndex) ++n;
  return n;
}
constexpr std::size_t kLwPolylineIndex = 4;  // in host::EntityData
constexpr std::size_t kSplineIndex = 7;

QAction* menuAction(QMenu* menu, const QString& label) {
  for (QAction* a : menu->actions())
    if (a->text() == label) return a;
  return nullptr;
}

TEST_F(WorkbenchTest, OpensRunsFromTheMenuAndTypedTurnsALayerOffAndSavesWhatEzdxfReads) {
  ASSERT_TRUE(openDemo());
  EXPECT_FALSE(window().isWindowModified());
  EXPECT_EQ(window().layerPanel()->topLevelItemCount(), 5);
  // The Corvane menu is the one the plug-in loaded from its menu file.
  QAction* divide = menuAction(window().corvaneMenu(), "Divide polylines");
  ASSERT_NE(divide, nullptr);
  EXPECT_EQ(window().corvaneMenu()->title(), "Corvane");

  int polylines = countKind(window(), kLwPolylineIndex);
  divide->trigger();
  window().submitLine("W 0,10 50,20  8");
  runUntilIdle();
  EXPECT_EQ(countKind(window(), kLwPolylineIndex), polylines + 1) << transcript();
  EXPECT_NE(transcript().find("Command: _ZORL_PLDevide"), std::string::npos) << transcript();

  // Typed, with the answers on the same line as the script rules allow.
  std::size_t entities = modelSpaceSize();
  window().commandPanel()->typeLine("PLBH 0,15   ");
  runUntilIdle();
  std::size_t after = modelSpaceSize();
  EXPECT_GT(after, entities) << transcript();
  EXPECT_TRUE(window().isWindowModified());
  EXPECT_EQ(window().commandPanel()->history().back(), "PLBH 0,15   ");
  screenshot(window(), "workbench-main-window.png");

  // Edit > Undo takes the typed command back whole, Edit > Redo brings it again.
  QMenu* editMenu = nullptr;
  for (QAction* a : window().menuBar()->actions())
    if (a->text() == "&Edit") editMenu = a->menu();
  ASSERT_NE(editMenu, nullptr);
  menuAction(editMenu, "&Undo")->trigger();
  runUntilIdle();
  EXPECT_EQ(modelSpaceSize(), entities) << transcript();
  menuAction(editMenu, "&Redo")->trigger();
  runUntilIdle();
  EXPECT_EQ(modelSpaceSize(), after) << transcript();

  // A plot of the drawing on A3 landscape, fitted.
  standalone::PlotSettings plot;
  plot.paper = *standalone::paperSizeByName("A3");
  plot.landscape = true;
  std::string pdf = dir_.file("plot.pdf");
  ASSERT_TRUE(window().plotToPdf(QString::fromStdString(pdf), plot));
  std::ifstream pdfFile(pdf, std::ios::binary);
  std::string head(5, '\0');
  pdfFile.read(head.data(), 5);
  EXPECT_EQ(head, "%PDF-");

  // A layer turned off leaves the picture and is saved so.
  window().view()->zoomExtents();
  QImage shown = window().view()->picture().copy();
  for (standalone::LayerState layer : db().layerStates())
    if (layer.name == "Outline") {
      layer.on = false;
      ASSERT_TRUE(db().setLayerState(layer));
    }
  window().view()->drawingChanged();
  EXPECT_NE(window().view()->picture(), shown);

  std::string out = dir_.file("saved.dxf");
  ASSERT_TRUE(window().saveDrawingAs(QString::fromStdString(out)));
  EXPECT_FALSE(window().isWindowModified());
  EXPECT_EQ(pythonOutput("-c \"import ezdxf,sys; print(ezdxf.readfile(sys.argv[1]).layers.get('Outline').is_off())\" '" +
                         out + "'"),
            "True\n");
  std::string dump = dumpWithEzdxf(out);
  EXPECT_EQ(countOf(dump, "LWPOLYLINE"), polylines + 1) << dump;
  int lines = 0;
  for (char c : dump) lines += c == '\n';
  EXPECT_EQ(static_cast<std::size_t>(lines - countOf(dump, "HEADER")), after) << dump;
}

TEST_F(WorkbenchTest, UnsavedChangesAreAskedAboutBeforeTheyAreLost) {
  ASSERT_TRUE(openDemo());
  window().submitLine("PLDF W 0,10 50,20  8");
  runUntilIdle();
  ASSERT_TRUE(window().isWindowModified());
  QMessageBox::StandardButton reply = QMessageBox::Cancel;
  int asked = 0;
  QTimer answerer;
  QObject::connect(&answerer, &QTimer::timeout, [&] {
    for (QWidget* w : QApplication::topLevelWidgets())
      if (auto* box = qobject_cast<QMessageBox*>(w); box && box->isVisible()) {
        ++asked;
        box->button(reply)->click();
      }
  });
  answerer.start(10);
  EXPECT_FALSE(openDemo());  // Cancel keeps the changed drawing
  EXPECT_EQ(asked, 1);
  EXPECT_TRUE(window().isWindowModified());
  reply = QMessageBox::Discard;
  EXPECT_TRUE(openDemo());
  EXPECT_EQ(asked, 2);
  EXPECT_FALSE(window().isWindowModified());
  EXPECT_TRUE(openDemo());  // nothing to lose: no question
  EXPECT_EQ(asked, 2);
}

TEST_F(WorkbenchTest, AMenuPickCancelsTheRunningCommandAndRunsItsOwn) {
  ASSERT_TRUE(openDemo());
  std::size_t entities = modelSpaceSize();
  play({{[&] { return window().waiting(); }, [&] { window().runMacro("^C^C_ZORL_PLBH"); }},
        {[&] { return window().waiting() && transcript().find("Command: _ZORL_PLBH") != std::string::npos; },
         [&] { window().submitLine("^C"); }}});
  window().submitLine("PLDF");
  runUntilPlayed();
  EXPECT_EQ(modelSpaceSize(), entities) << transcript();
  EXPECT_FALSE(window().busy());
}

TEST_F(WorkbenchTest, PointPromptsTakeSnappedClicksFromTheView) {
  ASSERT_TRUE(openDemo());
  workbench::DrawingView& view = *window().view();
  view.zoomExtents();
  QApplication::processEvents();
  standalone::DrawingDatabase& db = this->db();
  // The demo's first line: its ends are where the connector must start and end exactly.
  std::optional<host::Line> line;
  for (host::ObjectId id : db.entitiesOf(db.modelSpace()))
    if (const host::Entity* e = db.peek(id))
      if (const auto* l = std::get_if<host::Line>(&e->data); l && !line) line = *l;
  ASSERT_TRUE(line);
  int splines = countKind(window(), kSplineIndex);
  auto clickNear = [&](const ge::Point3d& end) {
    // A click three pixels off the end snaps onto it.
    QPoint at = (view.toWidget({end.x, end.y}) + QPointF(3, -2)).toPoint();
    QTest::mouseMove(&view, at);
    QTest::mouseClick(&view, Qt::LeftButton, Qt::NoModifier, at);
  };
  play({{[&] { return window().waiting() && promptsWaited() == 1; }, [&] { clickNear(line->start); }},
        {[&] { return window().waiting() && promptsWaited() == 2; }, [&] { clickNear(line->end); }}});
  window().submitLine("linkLine00");
  runUntilPlayed();
  ASSERT_EQ(countKind(window(), kSplineIndex), splines + 1) << transcript();
  const host::Entity* made = db.peek(db.lastEntity());
  ASSERT_NE(made, nullptr);
  const auto& spline = std::get<host::Spline>(made->data);
  ASSERT_EQ(spline.fitPoints.size(), 2u);
  EXPECT_EQ(spline.fitPoints[0], line->start);
  EXPECT_EQ(spline.fitPoints[1], line->end);
}

TEST_F(WorkbenchTest, PlAffClickPreviewsOneStepAtTheCursorWithoutChangingTheDrawing) {
  ASSERT_TRUE(openDemo());
  workbench::DrawingView& view = *window().view();
  standalone::DrawingDatabase& db = this->db();
  auto shapes = [&] {
    std::vector<std::pair<host::ObjectId, host::EntityData>> out;
    for (host::ObjectId id : db.entitiesOf(db.modelSpace())) out.emplace_back(id, db.read(id)->data);
    return out;
  };
  const ge::Point3d cursor{30, 20, 0};
  std::vector<host::EntityData> shown;
  std::vector<std::pair<host::ObjectId, host::EntityData>> before;
  bool jigDuringPrompt = false, unchangedByPreview = false;
  play({{[&] { return window().waiting() && transcript().find("Pick a point to apply") != std::string::npos; },
         [&] {
           jigDuringPrompt = view.hasJig();
           before = shapes();
           std::uint64_t changes = db.changeCount();
           shown = view.jigAt(cursor);
           QTest::mouseMove(&view, QPoint(50, 60));
           view.grab();  // paints the dragged shapes over the drawing
           unchangedByPreview = db.changeCount() == changes && shapes() == before;
           window().submitLine("30,20");  // one step where the preview was
           window().submitLine("");       // Enter ends the command
         }}});
  // The line along y = -10 influences everything; the defaults answer the rest.
  window().submitLine("plAffClick 0,-10  ALL       ");
  runUntilPlayed();
  EXPECT_TRUE(jigDuringPrompt);
  EXPECT_TRUE(unchangedByPreview);
  EXPECT_FALSE(view.hasJig());  // the preview ends with its prompt
  ASSERT_GT(shown.size(), 1u);
  // First the carried influence curve, centred on the cursor...
  ge::Extents3d box;
  ASSERT_EQ(window().session()->host().host().curves.getGeomExtents(shown[0], box), host::ErrorStatus::eOk);
  EXPECT_NEAR((box.min.x + box.max.x) / 2, cursor.x, 1e-9);
  EXPECT_NEAR((box.min.y + box.max.y) / 2, cursor.y, 1e-9);
  // ...then exactly what the step at that point made of the affected objects.
  std::vector<host::EntityData> stepped;
  for (const auto& [id, data] : before)
    if (std::optional<host::Entity> now = db.read(id); now && now->data != data) stepped.push_back(now->data);
  EXPECT_EQ(std::vector<host::EntityData>(shown.begin() + 1, shown.end()), stepped);
  EXPECT_NE(transcript().find("Applied the influence <1 > time(s)."), std::string::npos) << transcript();
}

TEST_F(WorkbenchTest, AGripMovedOnALinkedShapeTakesItsConnectorAlong) {
  standalone::DrawingDatabase& db = this->db();
  auto rectangle = [&](double x0, double x1) {
    host::Entity e;
    e.props = db.defaultProps();
    host::LwPolyline pl;
    pl.vertices = {{x0, 0}, {x1, 0}, {x1, 10}, {x0, 10}};
    pl.closed = true;
    e.data = pl;
    db.append(e);
    return e.id;
  };
  host::ObjectId left = rectangle(0, 10);
  rectangle(30, 40);
  workbench::DrawingView& view = *window().view();
  view.drawingChanged();
  view.zoomExtents();
  window().submitLine("linkLineAuto 10,5 30,5");
  runUntilIdle();
  host::ObjectId connector = db.lastEntity();
  ASSERT_TRUE(std::holds_alternative<host::Spline>(db.peek(connector)->data)) << transcript();
  // Pick the left shape at "Command:", then drag the middle grip of its right side to the right.
  QPoint edge = view.toWidget({0, 5}).toPoint();
  QTest::mouseClick(&view, Qt::LeftButton, Qt::NoModifier, edge);
  ASSERT_EQ(view.selection(), std::vector<host::ObjectId>{left});
  QPoint grip = view.toWidget({10, 5}).toPoint(), to = view.toWidget({20, 5}).toPoint();
  QTest::mousePress(&view, Qt::LeftButton, Qt::NoModifier, grip);
  QTest::mouseMove(&view, to);
  QTest::mouseRelease(&view, Qt::LeftButton, Qt::NoModifier, to);
  const auto& shape = std::get<host::LwPolyline>(db.peek(left)->data);
  // The side moved whole: both its corners by the same offset.
  EXPECT_NEAR(shape.vertices[1].x, 20, view.toDrawing({1, 0}).x - view.toDrawing({0, 0}).x);
  EXPECT_EQ(shape.vertices[2].x, shape.vertices[1].x);
  EXPECT_DOUBLE_EQ(shape.vertices[2].y - 10, shape.vertices[1].y);
  // The connector's start follows the middle of the shape's right side.
  const auto& spline = std::get<host::Spline>(db.peek(connector)->data);
  ASSERT_FALSE(spline.fitPoints.empty());
  EXPECT_NEAR(spline.fitPoints.front().x, shape.vertices[1].x, 1e-9);
  EXPECT_NEAR(spline.fitPoints.front().y, (shape.vertices[1].y + shape.vertices[2].y) / 2, 1e-9);
  EXPECT_TRUE(window().isWindowModified());
}

TEST_F(WorkbenchTest, WindowsSelectInsideAndCrossingsWhatTheyTouch) {
  ASSERT_TRUE(openDemo());
  workbench::DrawingView& view = *window().view();
  view.zoomExtents();
  QApplication::processEvents();
  auto drag = [&](QPoint a, QPoint b) {
    QTest::mousePress(&view, Qt::LeftButton, Qt::NoModifier, a);
    QTest::mouseMove(&view, (a + b) / 2);
    QTest::mouseMove(&view, b);
    QTest::mouseRelease(&view, Qt::LeftButton, Qt::NoModifier, b);
    QApplication::processEvents();
    return view.selection().size();
  };
  // Zoomed to the extents, the corners of the view lie round everything.
  QPoint lo(1, view.height() - 2), hi(view.width() - 2, 1), mid(view.width() / 2, 1);
  std::size_t total = modelSpaceSize();
  EXPECT_EQ(drag(lo, hi), total);              // a window round everything
  std::size_t windowHalf = drag(lo, mid);
  std::size_t crossingHalf = drag(mid, lo);  // the same box, right to left
  EXPECT_LT(windowHalf, crossingHalf);
  EXPECT_LE(crossingHalf, total);
  EXPECT_GT(window().propertiesPanel()->topLevelItemCount(), 0);
}

TEST_F(WorkbenchTest, TheWheelZoomsAboutTheCursorAndTheViewPans) {
  ASSERT_TRUE(openDemo());
  workbench::DrawingView& view = *window().view();
  QPointF at(view.width() * 0.3, view.height() * 0.7);
  ge::Point2d before = view.toDrawing(at);
  double height = window().session()->host().view().height;
  view.zoomAbout(at, 2);
  ge::Point2d after = view.toDrawing(at);
  EXPECT_NEAR(after.x, before.x, 1e-9 * height);
  EXPECT_NEAR(after.y, before.y, 1e-9 * height);
  EXPECT_DOUBLE_EQ(window().session()->host().view().height, height / 2);
  ge::Point2d centre = window().session()->host().view().center;
  view.panByPixels({10, 0});
  EXPECT_LT(window().session()->host().view().center.x, centre.x);  // the drawing follows the hand
}

}  // namespace
}  // namespace workbench_test
