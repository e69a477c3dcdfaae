#pragma once
// The properties of the selected entity: kind, handle, layer, colour and the
// numbers that define its shape, read from the drawing when the selection changes.
#include <QTreeWidget>
#include <vector>

#include "host/object_id.h"

namespace workbench {

class Session;

class PropertiesPanel : public QTreeWidget {
  Q_OBJECT

 public:
  explicit PropertiesPanel(QWidget* parent = nullptr);
  void setSession(Session* session) { session_ = session; }
  void showSelection(const std::vector<host::ObjectId>& selection);

 private:
  void add(const QString& name, const QString& value);
  Session* session_ = nullptr;
};

}  // namespace workbench
