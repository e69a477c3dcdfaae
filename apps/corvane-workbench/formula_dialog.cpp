#include "apps/corvane-workbench/formula_dialog.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPixmap>
#include <QPushButton>
#include <QSlider>
#include <QVBoxLayout>

#include "formula/preview_pictures.h"

namespace workbench {

namespace {
constexpr int kPictureSide = 220;
QString qs(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size())); }
}  // namespace

FormulaDialog::FormulaDialog(formula::CMainDlgDlg& model, std::string pluginFolder, QWidget* parent)
    : QDialog(parent), model_(model), pluginFolder_(std::move(pluginFolder)) {
  setObjectName("formulaDialog");
  model_.onInitDialog();
  std::array<std::string_view, 6> captions = model_.controlCaptions();
  setWindowTitle(qs(model_.title()));

  list_ = new QListWidget(this);
  for (const formula::FormulaCurveDef& row : model_.catalogue()) list_->addItem(qs(row.name));
  list_->setMinimumWidth(230);
  connect(list_, &QListWidget::currentRowChanged, this, [this](int row) {
    if (showing_) return;
    model_.onSelectionChange(row);
    showModel();
  });

  auto* params = new QVBoxLayout;
  for (int k = 0; k < formula::kParamCount; ++k) {
    Group& g = groups_[k];
    g.box = new QGroupBox(qs(captions[k]), this);
    g.caption = new QLabel(g.box);
    g.edit = new QLineEdit(g.box);
    g.edit->setMaximumWidth(70);
    g.edit->setObjectName(QString("edit%1").arg(k + 1));
    g.slider = new QSlider(Qt::Horizontal, g.box);
    g.slider->setObjectName(QString("slider%1").arg(k + 1));
    auto* row = new QHBoxLayout(g.box);
    row->addWidget(g.caption);
    row->addWidget(g.edit);
    row->addWidget(g.slider, 1);
    params->addWidget(g.box);
    connect(g.edit, &QLineEdit::textEdited, this, [this, k](const QString& text) {
      if (showing_) return;
      model_.onEditChange(k, text.toStdString());
      showModel();
    });
    connect(g.slider, &QSlider::valueChanged, this, [this, k](int position) {
      if (showing_) return;
      // A live redraw may run: the drawing behind the dialog changes with the slider.
      model_.onSliderMoved(k, position);
      showModel();
    });
  }

  kind_ = new QComboBox(this);
  kind_->addItem(qs(model_.curveKindText(0)));
  kind_->addItem(qs(model_.curveKindText(1)));
  connect(kind_, &QComboBox::currentIndexChanged, this, [this](int index) {
    if (!showing_) model_.onCurveKindChange(index);
  });
  drawUcs_ = new QCheckBox(qs(captions[4]), this);
  connect(drawUcs_, &QCheckBox::toggled, this, [this](bool on) {
    if (!showing_) model_.onDrawUcsChange(on);
  });
  auto* previewButton = new QPushButton(qs(captions[5]), this);
  previewButton->setObjectName("previewButton");
  connect(previewButton, &QPushButton::clicked, this, &FormulaDialog::preview);

  picture_ = new QLabel(this);
  picture_->setFixedSize(kPictureSide, kPictureSide);
  picture_->setAlignment(Qt::AlignCenter);
  picture_->setFrameShape(QFrame::StyledPanel);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &FormulaDialog::closeDialog);

  auto* right = new QVBoxLayout;
  right->addWidget(picture_, 0, Qt::AlignHCenter);
  right->addLayout(params);
  auto* options = new QHBoxLayout;
  options->addWidget(kind_);
  options->addWidget(drawUcs_);
  options->addStretch(1);
  options->addWidget(previewButton);
  right->addLayout(options);
  right->addStretch(1);
  right->addWidget(buttons);
  auto* layout = new QHBoxLayout(this);
  layout->addWidget(list_);
  layout->addLayout(right, 1);
  showModel();
}

void FormulaDialog::showModel() {
  showing_ = true;
  list_->setCurrentRow(model_.selectedIndex());
  for (int k = 0; k < formula::kParamCount; ++k) {
    const formula::ParamGroupView& view = model_.group(k);
    Group& g = groups_[k];
    g.caption->setVisible(view.visible);
    g.edit->setVisible(view.visible);
    g.slider->setVisible(view.visible);
    g.caption->setText(qs(view.caption));
    g.slider->setRange(view.rangeMin, view.rangeMax);
    g.slider->setValue(view.sliderPos);
    if (g.edit->text() != qs(view.editText)) g.edit->setText(qs(view.editText));
  }
  kind_->setCurrentIndex(model_.curveKindIndex() > 0 ? 1 : 0);
  drawUcs_->setChecked(model_.drawUcs());
  showPicture();
  showing_ = false;
}

void FormulaDialog::showPicture() {
  QPixmap pixmap(QString::fromStdString(formula::previewPicturePath(pluginFolder_, model_.pictureId())));
  if (pixmap.isNull()) {
    picture_->setText(qs(formula::kPictureNotLoaded));
    return;
  }
  picture_->setPixmap(pixmap.scaled(picture_->size(), Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

template <class Action>
void FormulaDialog::withDialogHidden(Action action) {
  // The host's editor bracket: the dialog steps aside while the prompt waits
  // for a click in the drawing, and comes back afterwards.
  hide();
  action();
  if (!closed_) show();
  showModel();
}

void FormulaDialog::preview() {
  withDialogHidden([this] { model_.onPreview(); });
}

void FormulaDialog::closeDialog() {
  if (closed_) return;
  closed_ = true;
  hide();
  model_.onClose();
  done(QDialog::Accepted);
}

void FormulaDialog::closeEvent(QCloseEvent* event) {
  event->ignore();
  closeDialog();
}

}  // namespace workbench
