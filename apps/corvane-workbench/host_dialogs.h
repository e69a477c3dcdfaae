#pragma once
// The host's message boxes and file-name prompts as Qt dialogs: a QMessageBox
// and a QFileDialog with the prompt's filter and starting name.
#include <QString>
#include <QStringList>
#include <string_view>

#include "standalone/editor/desktop_dialogs.h"

class QWidget;

namespace workbench {

class HostDialogs final : public standalone::DesktopDialogs {
 public:
  explicit HostDialogs(QWidget* parent) : parent_(parent) {}
  void messageBox(std::string_view caption, std::string_view text) override;
  std::optional<std::string> fileName(std::string_view title, std::string_view defaultName, std::string_view filter,
                                      bool forSaving) override;

 private:
  QWidget* parent_;
};

// The name filters of a QFileDialog for a filter in the host's form
// ("Text(*.txt)|*.txt|Pictures|*.png;*.bmp|"): "Text(*.txt)", "Pictures (*.png *.bmp)".
QStringList qtNameFilters(std::string_view hostFilter);

}  // namespace workbench
