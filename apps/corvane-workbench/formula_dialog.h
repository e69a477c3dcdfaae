#pragma once
// "Math Formula Curves" on the desktop: a Qt dialog that shows the state of
// the formula dialog model and forwards every user action to it. Picking
// the origin hides the dialog while the drawing view answers the prompt.
#include <QDialog>
#include <array>

#include "formula/main_dlg.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QSlider;

namespace workbench {

class FormulaDialog : public QDialog {
  Q_OBJECT

 public:
  FormulaDialog(formula::CMainDlgDlg& model, std::string pluginFolder, QWidget* parent = nullptr);

  // OK and the window's close both close the dialog as the model closes (the final draw).
  QListWidget* list() { return list_; }
  QSlider* slider(int slot) { return groups_[slot].slider; }
  QLineEdit* edit(int slot) { return groups_[slot].edit; }
  QComboBox* curveKind() { return kind_; }

 public slots:
  void preview();
  void closeDialog();
  // Escape closes as the window's close does.
  void reject() override { closeDialog(); }

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  struct Group {
    QGroupBox* box = nullptr;
    QLabel* caption = nullptr;
    QLineEdit* edit = nullptr;
    QSlider* slider = nullptr;
  };
  void showModel();
  void showPicture();
  // Runs a model action that may ask for a point with the dialog hidden.
  template <class Action>
  void withDialogHidden(Action action);

  formula::CMainDlgDlg& model_;
  std::string pluginFolder_;
  QListWidget* list_ = nullptr;
  std::array<Group, formula::kParamCount> groups_;
  QComboBox* kind_ = nullptr;
  QCheckBox* drawUcs_ = nullptr;
  QLabel* picture_ = nullptr;
  bool showing_ = false;  // the widgets are being set from the model
  bool closed_ = false;
};

}  // namespace workbench
