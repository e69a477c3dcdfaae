#pragma once
// The layer list: each layer's name, whether it is on, frozen and locked,
// and its colour; a double click on a name makes that layer current.
#include <QTreeWidget>

namespace workbench {

class Session;

class LayerPanel : public QTreeWidget {
  Q_OBJECT

 public:
  explicit LayerPanel(QWidget* parent = nullptr);
  void setSession(Session* session);
  // Shows the drawing's layers afresh.
  void refresh();

 signals:
  // A layer changed: the drawing must be shown again.
  void layersChanged();

 private:
  void onItemChanged(QTreeWidgetItem* item, int column);
  void onDoubleClick(QTreeWidgetItem* item, int column);

  Session* session_ = nullptr;
  bool filling_ = false;
};

}  // namespace workbench
