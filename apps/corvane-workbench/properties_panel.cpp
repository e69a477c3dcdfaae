#include "apps/corvane-workbench/properties_panel.h"

#include <QHeaderView>
#include <cstdio>

#include "apps/corvane-workbench/session.h"
#include "standalone/db/dxf_tags.h"

namespace workbench {

namespace {

QString num(double v) { return QString::number(v, 'g', 10); }
QString pt(const ge::Point3d& p) { return num(p.x) + ", " + num(p.y) + (p.z != 0 ? ", " + num(p.z) : QString()); }
QString colorText(const host::Color& c) {
  if (c.index == 256) return "ByLayer";
  if (c.index == 0) return "ByBlock";
  return QString::number(c.index);
}

}  // namespace

PropertiesPanel::PropertiesPanel(QWidget* parent) : QTreeWidget(parent) {
  setObjectName("properties");
  setColumnCount(2);
  setHeaderLabels({"Property", "Value"});
  setRootIsDecorated(false);
  header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
}

void PropertiesPanel::add(const QString& name, const QString& value) {
  auto* item = new QTreeWidgetItem(this);
  item->setText(0, name);
  item->setText(1, value);
}

void PropertiesPanel::showSelection(const std::vector<host::ObjectId>& selection) {
  clear();
  if (!session_ || selection.empty()) return;
  if (selection.size() > 1) {
    add("Selected", QString::number(selection.size()) + " entities");
    return;
  }
  std::optional<host::Entity> e = session_->host().drawing().read(selection.front());
  if (!e) return;
  const host::CurveServices& curves = session_->host().host().curves;
  add("Handle", QString::fromStdString(standalone::formatHandle(e->id.value)));
  add("Layer", QString::fromStdString(e->props.layer));
  add("Colour", colorText(e->props.color));
  std::visit(
      [&](const auto& d) {
        using T = std::decay_t<decltype(d)>;
        if constexpr (std::is_same_v<T, host::Line>) {
          add("Kind", "Line");
          add("Start", pt(d.start));
          add("End", pt(d.end));
        } else if constexpr (std::is_same_v<T, host::Circle>) {
          add("Kind", "Circle");
          add("Centre", pt(d.center));
          add("Radius", num(d.radius));
        } else if constexpr (std::is_same_v<T, host::Arc>) {
          add("Kind", "Arc");
          add("Centre", pt(d.center));
          add("Radius", num(d.radius));
          add("Start angle", num(d.startAngle * 180 / 3.141592653589793));
          add("End angle", num(d.endAngle * 180 / 3.141592653589793));
        } else if constexpr (std::is_same_v<T, host::LwPolyline>) {
          add("Kind", "Polyline");
          add("Vertices", QString::number(d.vertices.size()));
          add("Closed", d.closed ? "Yes" : "No");
          add("Elevation", num(d.elevation));
        } else if constexpr (std::is_same_v<T, host::Spline>) {
          add("Kind", "Spline");
          add("Degree", QString::number(d.degree));
          add("Control points", QString::number(d.controlPoints.size()));
          add("Fit points", QString::number(d.fitPoints.size()));
        } else if constexpr (std::is_same_v<T, host::Ellipse>) {
          add("Kind", "Ellipse");
          add("Centre", pt(d.center));
          add("Ratio", num(d.ratio));
        } else if constexpr (std::is_same_v<T, host::Text>) {
          add("Kind", "Text");
          add("Text", QString::fromStdString(d.text));
        } else {
          add("Kind", "Other");
        }
      },
      e->data);
  double end = 0, length = 0;
  if (curves.getEndParam(e->data, end) == host::ErrorStatus::eOk &&
      curves.getDistAtParam(e->data, end, length) == host::ErrorStatus::eOk)
    add("Length", num(length));
  ge::Extents3d box;
  if (curves.getGeomExtents(e->data, box) == host::ErrorStatus::eOk) {
    add("Extents min", pt(box.min));
    add("Extents max", pt(box.max));
  }
}

}  // namespace workbench
