#include "apps/corvane-workbench/layer_panel.h"

#include <QHeaderView>
#include <QInputDialog>

#include "apps/corvane-workbench/session.h"
#include "standalone/render/color.h"

namespace workbench {

namespace {
enum Column { kName, kOn, kFrozen, kLocked, kColor };
}  // namespace

LayerPanel::LayerPanel(QWidget* parent) : QTreeWidget(parent) {
  setObjectName("layers");
  setColumnCount(5);
  setHeaderLabels({"Layer", "On", "Frozen", "Locked", "Colour"});
  setRootIsDecorated(false);
  header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  connect(this, &QTreeWidget::itemChanged, this, &LayerPanel::onItemChanged);
  connect(this, &QTreeWidget::itemDoubleClicked, this, &LayerPanel::onDoubleClick);
}

void LayerPanel::setSession(Session* session) {
  session_ = session;
  refresh();
}

void LayerPanel::refresh() {
  filling_ = true;
  clear();
  if (session_) {
    standalone::DrawingDatabase& db = session_->host().drawing();
    std::string current = db.currentLayer();
    for (const standalone::LayerState& layer : db.layerStates()) {
      auto* item = new QTreeWidgetItem(this);
      item->setText(kName, QString::fromStdString(layer.name));
      item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
      item->setCheckState(kOn, layer.on ? Qt::Checked : Qt::Unchecked);
      item->setCheckState(kFrozen, layer.frozen ? Qt::Checked : Qt::Unchecked);
      item->setCheckState(kLocked, layer.locked ? Qt::Checked : Qt::Unchecked);
      item->setText(kColor, QString::number(layer.color));
      standalone::Rgb rgb = standalone::aciToRgb(layer.color);
      item->setBackground(kColor, QColor::fromRgbF(rgb.r, rgb.g, rgb.b));
      bool dark = 0.3 * rgb.r + 0.59 * rgb.g + 0.11 * rgb.b < 0.5;
      item->setForeground(kColor, dark ? Qt::white : Qt::black);
      if (layer.name == current) {
        QFont bold = item->font(kName);
        bold.setBold(true);
        item->setFont(kName, bold);
      }
    }
  }
  filling_ = false;
}

void LayerPanel::onItemChanged(QTreeWidgetItem* item, int column) {
  if (filling_ || !session_ || (column != kOn && column != kFrozen && column != kLocked)) return;
  standalone::DrawingDatabase& db = session_->host().drawing();
  for (standalone::LayerState layer : db.layerStates()) {
    if (QString::fromStdString(layer.name) != item->text(kName)) continue;
    layer.on = item->checkState(kOn) == Qt::Checked;
    layer.frozen = item->checkState(kFrozen) == Qt::Checked;
    layer.locked = item->checkState(kLocked) == Qt::Checked;
    db.setLayerState(layer);
    session_->markModified();
    emit layersChanged();
    return;
  }
}

void LayerPanel::onDoubleClick(QTreeWidgetItem* item, int column) {
  if (!session_) return;
  standalone::DrawingDatabase& db = session_->host().drawing();
  if (column == kColor) {
    bool ok = false;
    int color = QInputDialog::getInt(this, "Layer colour", "Colour number (1-255):", item->text(kColor).toInt(), 1,
                                     255, 1, &ok);
    if (!ok) return;
    for (standalone::LayerState layer : db.layerStates())
      if (QString::fromStdString(layer.name) == item->text(kName)) {
        layer.color = color;
        db.setLayerState(layer);
      }
  } else {
    session_->host().sysvars().setVar("CLAYER", host::ResBuf::text(item->text(kName).toStdString()));
  }
  session_->markModified();
  refresh();
  emit layersChanged();
}

}  // namespace workbench
