#include "apps/corvane-workbench/host_dialogs.h"

#include <QFileDialog>
#include <QMessageBox>

namespace workbench {

namespace {

QString qs(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size())); }

}  // namespace

QStringList qtNameFilters(std::string_view hostFilter) {
  QStringList parts = qs(hostFilter).split('|');
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QString caption = parts[i].trimmed(), patterns = parts[i + 1].split(';', Qt::SkipEmptyParts).join(' ');
    if (patterns.isEmpty()) continue;
    // Qt reads the patterns from the caption's last brackets: a caption
    // that shows them already stays as it is.
    if (!caption.endsWith("(" + patterns + ")")) caption += (caption.isEmpty() ? "(" : " (") + patterns + ")";
    filters << caption;
  }
  return filters;
}

void HostDialogs::messageBox(std::string_view caption, std::string_view text) {
  QMessageBox box(QMessageBox::NoIcon, qs(caption), qs(text).trimmed(), QMessageBox::Ok, parent_);
  box.setObjectName("hostMessageBox");
  box.exec();
}

std::optional<std::string> HostDialogs::fileName(std::string_view title, std::string_view defaultName,
                                                 std::string_view filter, bool forSaving) {
  // Qt's own dialog, the same on every desktop and under the offscreen platform.
  // A title made for the command line starts on a line of its own.
  QFileDialog dialog(parent_, qs(title).trimmed());
  dialog.setObjectName("hostFileDialog");
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  dialog.setAcceptMode(forSaving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(forSaving ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  QStringList filters = qtNameFilters(filter);
  if (!filters.join(' ').contains("(*)")) filters << "All files (*)";
  dialog.setNameFilters(filters);
  if (!defaultName.empty()) dialog.selectFile(qs(defaultName));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  return dialog.selectedFiles().front().toStdString();
}

}  // namespace workbench
