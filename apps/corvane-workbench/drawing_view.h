#pragma once
// The drawing on the screen: model space painted by the renderer into an
// image that is blitted on every paint, zoomed by the wheel about the
// cursor, panned with the middle button (or Shift and the left button).
// Clicks answer the waiting prompt as the prompt wants (a snapped point, a
// pick, a window from left to right or a crossing from right to left); at
// the "Command:" prompt they select entities to show and edit.
#include <QImage>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "apps/corvane-workbench/snaps.h"
#include "standalone/editor/answer_source.h"
#include "standalone/render/scene.h"

namespace workbench {

class Session;

class DrawingView : public QWidget {
  Q_OBJECT

 public:
  explicit DrawingView(QWidget* parent = nullptr);
  ~DrawingView() override;

  // The drawing shown; null shows nothing. The view keeps no other state of it.
  void setSession(Session* session);
  // The drawing changed: the picture is made anew from it.
  void drawingChanged();
  // What the waiting prompt wants (kCommand when none waits).
  void setPrompt(standalone::InputKind kind, std::optional<ge::Point3d> base);
  void zoomExtents();
  // Zooms by factor (above 1 closer) about a widget position.
  void zoomAbout(const QPointF& at, double factor);
  void panByPixels(const QPointF& delta);
  // Panning by hand: the picture made before moves with the hand and the
  // drawing is painted anew when the hand lets go (endDragPan).
  void dragPan(const QPointF& delta);
  void endDragPan();

  bool runningSnaps() const { return snapsOn_; }
  void setRunningSnaps(bool on);
  bool ortho() const { return orthoOn_; }
  void setOrtho(bool on);

  // Entities selected at the "Command:" prompt.
  const std::vector<host::ObjectId>& selection() const { return selection_; }
  void clearSelection();

  // A live preview while a point is dragged (a jig): the entities to show
  // for a cursor point, drawn over the drawing and forgotten afterwards.
  using Jig = std::function<std::vector<host::EntityData>(const ge::Point3d&)>;
  void setJig(Jig jig);
  bool hasJig() const { return static_cast<bool>(jig_); }
  // What the jig shows for a cursor point (nothing without one).
  std::vector<host::EntityData> jigAt(const ge::Point3d& cursor) const {
    return jig_ ? jig_(cursor) : std::vector<host::EntityData>{};
  }

  // Moves grip number grip (as gripPointsOf lists them) of a selected entity
  // to a point and writes the entity back, so that its reactors (connectors
  // that follow it) hear of it; false when that grip cannot be moved.
  bool moveGrip(host::ObjectId id, std::size_t grip, const ge::Point3d& to);

  // Drawing point of a widget position and back.
  ge::Point2d toDrawing(const QPointF& at) const;
  QPointF toWidget(const ge::Point2d& p) const;
  // The picture of the drawing for the present view, made now (what paint shows).
  const QImage& picture();
  // The point a click at a widget position gives at a point prompt (snapped, ortho).
  ge::Point3d pointFor(const QPointF& at);

 signals:
  // An answer made in the view, to be typed as a command-line line.
  void answered(const QString& line);
  void selectionChanged();
  // The view changed the drawing itself (a grip was moved).
  void drawingEdited();
  void cursorMoved(double x, double y);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void syncViewSize();
  void renderPicture();
  void buildScene();
  void paintOverlay(class QPainter& painter);
  void updateSnap(const QPointF& at);
  double apertureUnits() const;
  void clickAt(const QPointF& at);
  void windowFrom(const QPointF& a, const QPointF& b);
  void pickAtCommandPrompt(const QPointF& at, bool add);
  EntityGrid& grid();

  Session* session_ = nullptr;
  std::unique_ptr<standalone::Scene> scene_;
  std::vector<standalone::Box2d> boxes_;  // of the scene's items, to leave out what the view misses
  std::unique_ptr<EntityGrid> grid_;
  QImage picture_;
  bool pictureValid_ = false;
  QPointF panShift_;  // how far the picture has moved with the hand since it was made
  standalone::InputKind kind_ = standalone::InputKind::kCommand;
  std::optional<ge::Point3d> base_;
  bool snapsOn_ = true;
  bool orthoOn_ = false;
  std::optional<SnapHit> snap_;
  std::vector<host::ObjectId> selection_;
  Jig jig_;
  std::optional<QPointF> cursor_;
  std::optional<QPointF> pressAt_;  // left button down here
  std::optional<QPointF> panFrom_;
  struct GripDrag {
    host::ObjectId id;
    std::size_t grip = 0;
  };
  std::optional<GripDrag> gripDrag_;
  std::optional<GripDrag> gripAt(const QPointF& at) const;
  bool dragging_ = false;
};

}  // namespace workbench
