#include "apps/corvane-workbench/drawing_view.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWheelEvent>
#include <algorithm>
#include <charconv>
#include <cmath>

#include "apps/corvane-workbench/session.h"
#include "standalone/editor/entity_finder.h"
#include "standalone/render/pixel_canvas.h"
#include "standalone/render/scene_builder.h"

namespace workbench {

namespace {

constexpr double kWheelStep = 1.25;     // zoom factor of one wheel notch
constexpr double kAperturePx = 10;      // snap aperture, pixels from the cursor
constexpr double kDragStartPx = 4;      // a press that moves farther is a drag
constexpr double kExtentsMargin = 1.06;  // zoom extents leaves a little room
constexpr int kJigSamples = 64;
constexpr double kSmallestTextPx = 3;  // smaller texts are drawn as a stroke, as CAD screens do
const QColor kWindowColor(40, 90, 220);
const QColor kCrossingColor(30, 160, 60);
const QColor kSnapColor(230, 140, 0);
const QColor kSelectColor(30, 110, 255);

std::string number(double v) {
  char buf[32];
  auto [end, ec] = std::to_chars(buf, buf + sizeof buf, v);
  return ec == std::errc() ? std::string(buf, end) : std::to_string(v);
}

QString pointText(const ge::Point3d& p) {
  std::string text = number(p.x) + "," + number(p.y);
  if (p.z != 0) text += "," + number(p.z);
  return QString::fromStdString(text);
}

short readShort(standalone::EmbeddedHost& h, const char* name, short fallback) {
  host::ResBuf v;
  if (h.sysvars().getVar(name, v) == host::RTNORM)
    if (const auto* s = std::get_if<std::int16_t>(&v.value)) return *s;
  return fallback;
}

double readReal(standalone::EmbeddedHost& h, const char* name, double fallback) {
  host::ResBuf v;
  if (h.sysvars().getVar(name, v) == host::RTNORM)
    if (const auto* d = std::get_if<double>(&v.value)) return *d;
  return fallback;
}

// The snap marker's shape tells which snap found the point, as the host draws them.
void drawSnapMarker(QPainter& p, const QPointF& at, SnapKind kind) {
  constexpr double r = 6;
  p.setPen(QPen(kSnapColor, 2));
  p.setBrush(Qt::NoBrush);
  QRectF box(at.x() - r, at.y() - r, 2 * r, 2 * r);
  switch (kind) {
    case SnapKind::kEndpoint:
      p.drawRect(box);
      break;
    case SnapKind::kMidpoint:
      p.drawPolygon(QPolygonF({QPointF(at.x(), at.y() - r), QPointF(at.x() + r, at.y() + r), QPointF(at.x() - r, at.y() + r)}));
      break;
    case SnapKind::kCenter:
      p.drawEllipse(box);
      break;
    case SnapKind::kIntersection:
      p.drawLine(box.topLeft(), box.bottomRight());
      p.drawLine(box.topRight(), box.bottomLeft());
      break;
    case SnapKind::kQuadrant:
      p.drawPolygon(QPolygonF({QPointF(at.x(), at.y() - r), QPointF(at.x() + r, at.y()), QPointF(at.x(), at.y() + r), QPointF(at.x() - r, at.y())}));
      break;
    case SnapKind::kPerpendicular:
      p.drawLine(QPointF(at.x() - r, at.y() + r), QPointF(at.x() + r, at.y() + r));
      p.drawLine(QPointF(at.x() - r, at.y() + r), QPointF(at.x() - r, at.y() - r));
      p.drawLine(QPointF(at.x() - r, at.y()), QPointF(at.x(), at.y()));
      p.drawLine(QPointF(at.x(), at.y()), QPointF(at.x(), at.y() + r));
      break;
    case SnapKind::kNearest:
      p.drawPolygon(QPolygonF({box.topLeft(), box.topRight(), box.bottomLeft(), box.bottomRight()}));
      break;
  }
}

}  // namespace

DrawingView::DrawingView(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMinimumSize(200, 150);
  setCursor(Qt::CrossCursor);
}

DrawingView::~DrawingView() = default;

void DrawingView::setSession(Session* session) {
  session_ = session;
  selection_.clear();
  drawingChanged();
  emit selectionChanged();
}

void DrawingView::drawingChanged() {
  scene_.reset();
  grid_.reset();
  pictureValid_ = false;
  if (session_) {
    // Entities a command erased leave the selection.
    std::erase_if(selection_, [&](host::ObjectId id) { return !session_->host().drawing().peek(id); });
  }
  update();
}

void DrawingView::setPrompt(standalone::InputKind kind, std::optional<ge::Point3d> base) {
  kind_ = kind;
  base_ = base;
  snap_.reset();
  jig_ = nullptr;  // a prompt that drags sets its own after this
  update();
}

void DrawingView::setRunningSnaps(bool on) {
  snapsOn_ = on;
  snap_.reset();
  update();
}

void DrawingView::setOrtho(bool on) {
  orthoOn_ = on;
  update();
}

void DrawingView::setJig(Jig jig) {
  jig_ = std::move(jig);
  update();
}

void DrawingView::clearSelection() {
  selection_.clear();
  update();
  emit selectionChanged();
}

void DrawingView::syncViewSize() {
  if (!session_) return;
  standalone::View& v = session_->host().view();
  int w = std::max(1, width()), h = std::max(1, height());
  if (v.widthPixels != w || v.heightPixels != h) {
    v.widthPixels = w;
    v.heightPixels = h;
    pictureValid_ = false;
  }
}

ge::Point2d DrawingView::toDrawing(const QPointF& at) const {
  if (!session_) return {at.x(), -at.y()};
  const standalone::View& v = session_->host().view();
  double upp = v.unitsPerPixel();
  return {v.center.x + (at.x() - v.widthPixels / 2.0) * upp, v.center.y - (at.y() - v.heightPixels / 2.0) * upp};
}

QPointF DrawingView::toWidget(const ge::Point2d& p) const {
  if (!session_) return {p.x, -p.y};
  const standalone::View& v = session_->host().view();
  double ppu = 1 / v.unitsPerPixel();
  return {v.widthPixels / 2.0 + (p.x - v.center.x) * ppu, v.heightPixels / 2.0 - (p.y - v.center.y) * ppu};
}

void DrawingView::zoomAbout(const QPointF& at, double factor) {
  if (!session_ || !(factor > 0)) return;
  syncViewSize();
  standalone::View& v = session_->host().view();
  ge::Point2d fixed = toDrawing(at);
  v.height /= factor;
  // The drawing point under the cursor stays under it.
  v.center = {fixed.x - (fixed.x - v.center.x) / factor, fixed.y - (fixed.y - v.center.y) / factor};
  pictureValid_ = false;
  update();
}

void DrawingView::panByPixels(const QPointF& delta) {
  if (!session_) return;
  standalone::View& v = session_->host().view();
  double upp = v.unitsPerPixel();
  v.center = {v.center.x - delta.x() * upp, v.center.y + delta.y() * upp};
  pictureValid_ = false;
  update();
}

void DrawingView::dragPan(const QPointF& delta) {
  if (!session_) return;
  standalone::View& v = session_->host().view();
  double upp = v.unitsPerPixel();
  v.center = {v.center.x - delta.x() * upp, v.center.y + delta.y() * upp};
  panShift_ += delta;
  update();
}

void DrawingView::endDragPan() {
  if (panShift_.isNull()) return;
  panShift_ = {};
  pictureValid_ = false;
  update();
}

void DrawingView::zoomExtents() {
  if (!session_) return;
  syncViewSize();
  buildScene();
  standalone::Box2d box = scene_->extents();
  if (!box.isValid()) return;
  standalone::View& v = session_->host().view();
  v.center = {(box.minX + box.maxX) / 2, (box.minY + box.maxY) / 2};
  double aspect = static_cast<double>(v.widthPixels) / v.heightPixels;
  double h = std::max(box.maxY - box.minY, (box.maxX - box.minX) / aspect) * kExtentsMargin;
  v.height = h > 0 ? h : 1;
  pictureValid_ = false;
  update();
}

void DrawingView::renderPicture() {
  syncViewSize();
  if (picture_.size() != size() || picture_.isNull()) picture_ = QImage(std::max(1, width()), std::max(1, height()), QImage::Format_RGB32);
  if (!session_) {
    picture_.fill(Qt::white);
    pictureValid_ = true;
    return;
  }
  standalone::EmbeddedHost& h = session_->host();
  buildScene();
  const standalone::View& v = h.view();
  std::unique_ptr<standalone::Canvas> canvas =
      standalone::openPixelCanvas(picture_.bits(), picture_.width(), picture_.height(), picture_.bytesPerLine());
  canvas->paintBackground(standalone::kWhite);
  standalone::PageRect page{0, 0, static_cast<double>(picture_.width()), static_cast<double>(picture_.height())};
  standalone::ViewTransform t = standalone::viewAt(v.center, v.height, page);
  canvas->setView(t);
  standalone::Box2d visible;
  visible.add(v.center.x - v.width() / 2, v.center.y - v.height / 2);
  visible.add(v.center.x + v.width() / 2, v.center.y + v.height / 2);
  standalone::PaintScale scale{t.scale, v.height, kSmallestTextPx, &visible, &boxes_};
  standalone::paintScene(*scene_, *canvas, scale);
  pictureValid_ = true;
}

void DrawingView::buildScene() {
  if (scene_ || !session_) return;
  standalone::EmbeddedHost& h = session_->host();
  standalone::SceneOptions o;
  o.pointMode = readShort(h, "PDMODE", 0);
  o.pointSize = readReal(h, "PDSIZE", 0);
  scene_ = std::make_unique<standalone::Scene>(standalone::buildScene(h.drawing(), o));
  boxes_ = standalone::itemBoxes(*scene_);
}

const QImage& DrawingView::picture() {
  if (!pictureValid_ || picture_.size() != size()) renderPicture();
  return picture_;
}

void DrawingView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (!panShift_.isNull() && pictureValid_) {
    painter.fillRect(rect(), Qt::white);
    painter.drawImage(panShift_, picture_);
  } else {
    panShift_ = {};
    painter.drawImage(0, 0, picture());
  }
  paintOverlay(painter);
}

void DrawingView::paintOverlay(QPainter& painter) {
  if (!session_) return;
  painter.setRenderHint(QPainter::Antialiasing);
  standalone::EmbeddedHost& h = session_->host();
  // Selected entities: their grips.
  for (host::ObjectId id : selection_) {
    const host::Entity* e = h.drawing().peek(id);
    if (!e) continue;
    painter.setPen(QPen(kSelectColor, 1));
    painter.setBrush(kSelectColor);
    for (const ge::Point3d& g : gripPointsOf(*e, h.host().curves)) {
      QPointF at = toWidget({g.x, g.y});
      painter.drawRect(QRectF(at.x() - 3, at.y() - 3, 6, 6));
    }
  }
  // The rubber band from the base point, and the jig.
  if (cursor_ && kind_ == standalone::InputKind::kPoint) {
    ge::Point3d p = pointFor(*cursor_);
    if (base_) {
      painter.setPen(QPen(Qt::darkGray, 1, Qt::DashLine));
      painter.drawLine(toWidget({base_->x, base_->y}), toWidget({p.x, p.y}));
    }
    if (jig_) {
      painter.setPen(QPen(QColor(200, 30, 30), 1.5));
      painter.setBrush(Qt::NoBrush);
      for (const host::EntityData& curve : jig_(p)) {
        double length = 0, end = 0;
        if (h.host().curves.getEndParam(curve, end) != host::ErrorStatus::eOk ||
            h.host().curves.getDistAtParam(curve, end, length) != host::ErrorStatus::eOk)
          continue;
        QPainterPath path;
        for (int i = 0; i <= kJigSamples; ++i) {
          ge::Point3d q;
          if (h.host().curves.getPointAtDist(curve, length * i / kJigSamples, q) != host::ErrorStatus::eOk) continue;
          QPointF w = toWidget({q.x, q.y});
          if (path.elementCount() == 0) path.moveTo(w);
          else path.lineTo(w);
        }
        painter.drawPath(path);
      }
    }
  }
  // The selection window: solid from left to right, dashed crossing from right to left.
  if (pressAt_ && cursor_ && dragging_) {
    bool crossing = cursor_->x() < pressAt_->x();
    QColor c = crossing ? kCrossingColor : kWindowColor;
    painter.setPen(QPen(c, 1, crossing ? Qt::DashLine : Qt::SolidLine));
    QColor fill = c;
    fill.setAlpha(40);
    painter.setBrush(fill);
    painter.drawRect(QRectF(*pressAt_, *cursor_).normalized());
  }
  if (snap_) drawSnapMarker(painter, toWidget({snap_->point.x, snap_->point.y}), snap_->kind);
}

void DrawingView::resizeEvent(QResizeEvent*) {
  syncViewSize();
  pictureValid_ = false;
}

void DrawingView::wheelEvent(QWheelEvent* event) {
  double notches = event->angleDelta().y() / 120.0;
  if (notches != 0) zoomAbout(event->position(), std::pow(kWheelStep, notches));
  event->accept();
}

double DrawingView::apertureUnits() const {
  if (!session_) return 1;
  return kAperturePx * session_->host().view().unitsPerPixel();
}

EntityGrid& DrawingView::grid() {
  if (!grid_) grid_ = std::make_unique<EntityGrid>(session_->host().drawing(), session_->host().host().curves);
  return *grid_;
}

void DrawingView::updateSnap(const QPointF& at) {
  snap_.reset();
  if (!session_ || !snapsOn_ || kind_ != standalone::InputKind::kPoint) return;
  ge::Point2d p = toDrawing(at);
  double aperture = apertureUnits();
  std::vector<host::ObjectId> near = grid().near(p, aperture);
  snap_ = findSnap(session_->host().drawing(), session_->host().host().curves, near, {p.x, p.y, 0}, aperture, base_,
                   kAllSnaps);
}

ge::Point3d DrawingView::pointFor(const QPointF& at) {
  ge::Point2d p = toDrawing(at);
  if (snap_) return snap_->point;
  ge::Point3d point{p.x, p.y, 0};
  if (orthoOn_ && base_) point = orthoPoint(*base_, point);
  return point;
}

void DrawingView::mousePressEvent(QMouseEvent* event) {
  setFocus();
  bool pan = event->button() == Qt::MiddleButton ||
             (event->button() == Qt::LeftButton && (event->modifiers() & Qt::ShiftModifier) &&
              kind_ != standalone::InputKind::kCommand);
  if (pan) {
    panFrom_ = event->position();
    setCursor(Qt::ClosedHandCursor);
    return;
  }
  if (event->button() == Qt::LeftButton) {
    if (kind_ == standalone::InputKind::kCommand && (gripDrag_ = gripAt(event->position()))) return;
    pressAt_ = event->position();
    dragging_ = false;
  }
  if (event->button() == Qt::RightButton && kind_ != standalone::InputKind::kCommand) emit answered(QString());
}

void DrawingView::mouseMoveEvent(QMouseEvent* event) {
  cursor_ = event->position();
  if (panFrom_) {
    dragPan(event->position() - *panFrom_);
    panFrom_ = event->position();
    return;
  }
  if (pressAt_ && (event->position() - *pressAt_).manhattanLength() > kDragStartPx &&
      (kind_ == standalone::InputKind::kSelection || kind_ == standalone::InputKind::kCommand))
    dragging_ = true;
  updateSnap(event->position());
  ge::Point2d p = toDrawing(event->position());
  emit cursorMoved(p.x, p.y);
  update();
}

void DrawingView::mouseReleaseEvent(QMouseEvent* event) {
  if (panFrom_ && (event->button() == Qt::MiddleButton || event->button() == Qt::LeftButton)) {
    panFrom_.reset();
    endDragPan();
    setCursor(Qt::CrossCursor);
    return;
  }
  if (event->button() == Qt::LeftButton && gripDrag_) {
    GripDrag g = *gripDrag_;
    gripDrag_.reset();
    updateSnap(event->position());
    ge::Point2d p = toDrawing(event->position());
    moveGrip(g.id, g.grip, {p.x, p.y, 0});
    return;
  }
  if (event->button() != Qt::LeftButton || !pressAt_) return;
  QPointF from = *pressAt_;
  pressAt_.reset();
  if (dragging_) {
    dragging_ = false;
    windowFrom(from, event->position());
  } else {
    updateSnap(event->position());
    if (kind_ == standalone::InputKind::kCommand) pickAtCommandPrompt(event->position(), event->modifiers() & Qt::ShiftModifier);
    else clickAt(event->position());
  }
  update();
}

void DrawingView::clickAt(const QPointF& at) {
  if (!session_) return;
  switch (kind_) {
    case standalone::InputKind::kPoint:
      emit answered(pointText(pointFor(at)));
      break;
    case standalone::InputKind::kPick:
    case standalone::InputKind::kSelection: {
      ge::Point2d p = toDrawing(at);
      emit answered(pointText({p.x, p.y, 0}));
      break;
    }
    default:
      break;
  }
}

void DrawingView::windowFrom(const QPointF& a, const QPointF& b) {
  if (!session_) return;
  bool crossing = b.x() < a.x();
  ge::Point2d p = toDrawing(a), q = toDrawing(b);
  if (kind_ == standalone::InputKind::kSelection) {
    emit answered(QString(crossing ? "C " : "W ") + pointText({p.x, p.y, 0}) + " " + pointText({q.x, q.y, 0}));
    return;
  }
  if (kind_ != standalone::InputKind::kCommand) return;
  standalone::EmbeddedHost& h = session_->host();
  standalone::EntityFinder finder(h.drawing(), h.host().curves);
  std::vector<host::ObjectId> found = finder.inWindow({p.x, p.y, 0}, {q.x, q.y, 0}, crossing);
  selection_ = found;
  emit selectionChanged();
}

void DrawingView::pickAtCommandPrompt(const QPointF& at, bool add) {
  if (!session_) return;
  standalone::EmbeddedHost& h = session_->host();
  standalone::EntityFinder finder(h.drawing(), h.host().curves);
  ge::Point2d p = toDrawing(at);
  double aperture = readShort(h, "PICKBOX", 3) * h.view().unitsPerPixel();
  std::optional<host::ObjectId> id = finder.pickAt({p.x, p.y, 0}, aperture);
  if (!add) selection_.clear();
  if (id && std::find(selection_.begin(), selection_.end(), *id) == selection_.end()) selection_.push_back(*id);
  emit selectionChanged();
}

std::optional<DrawingView::GripDrag> DrawingView::gripAt(const QPointF& at) const {
  if (!session_) return std::nullopt;
  constexpr double kGripPx = 5;
  standalone::EmbeddedHost& h = session_->host();
  for (host::ObjectId id : selection_) {
    const host::Entity* e = h.drawing().peek(id);
    if (!e) continue;
    std::vector<ge::Point3d> grips = gripPointsOf(*e, h.host().curves);
    for (std::size_t i = 0; i < grips.size(); ++i) {
      QPointF g = toWidget({grips[i].x, grips[i].y});
      if (std::abs(g.x() - at.x()) <= kGripPx && std::abs(g.y() - at.y()) <= kGripPx) return GripDrag{id, i};
    }
  }
  return std::nullopt;
}

bool DrawingView::moveGrip(host::ObjectId id, std::size_t grip, const ge::Point3d& to) {
  if (!session_) return false;
  standalone::EmbeddedHost& h = session_->host();
  std::optional<host::Entity> e = h.drawing().read(id);
  if (!e) return false;
  std::vector<ge::Point3d> grips = gripPointsOf(*e, h.host().curves);
  if (grip >= grips.size()) return false;
  ge::Point3d from = grips[grip];
  bool moved = std::visit(
      [&](auto& d) {
        using T = std::decay_t<decltype(d)>;
        if constexpr (std::is_same_v<T, host::LwPolyline>) {
          return moveLwPolylineGrip(d, from, to);
        } else if constexpr (std::is_same_v<T, host::Line>) {
          if (d.start == from) d.start = to;
          else if (d.end == from) d.end = to;
          else {
            ge::Vector3d shift = to - from;
            d.start = d.start + shift;
            d.end = d.end + shift;
          }
          return true;
        } else if constexpr (std::is_same_v<T, host::Circle>) {
          if (d.center == from) d.center = to;
          else d.radius = std::hypot(to.x - d.center.x, to.y - d.center.y);
          return d.radius > 0;
        } else {
          // Other kinds move whole by any grip.
          return h.host().curves.transformBy(e->data, ge::Matrix3d::translation(to - from)) == host::ErrorStatus::eOk;
        }
      },
      e->data);
  if (!moved || h.drawing().write(*e) != host::ErrorStatus::eOk) return false;
  session_->markModified();
  drawingChanged();
  emit drawingEdited();
  return true;
}

void DrawingView::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_F3:
      setRunningSnaps(!snapsOn_);
      break;
    case Qt::Key_F8:
      setOrtho(!orthoOn_);
      break;
    case Qt::Key_Escape:
      if (kind_ == standalone::InputKind::kCommand) clearSelection();
      else emit answered(QStringLiteral("^C"));
      break;
    default:
      QWidget::keyPressEvent(event);
  }
}

}  // namespace workbench
