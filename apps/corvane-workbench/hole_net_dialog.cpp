#include "apps/corvane-workbench/hole_net_dialog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QImage>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QVBoxLayout>
#include <cstring>


namespace workbench {

namespace {

QImage toImage(const image::Picture& p) {
  QImage img(p.width, p.height, QImage::Format_RGB888);
  for (int y = 0; y < p.height; ++y)
    std::memcpy(img.scanLine(y), &p.rgb[static_cast<std::size_t>(y) * p.width * 3], static_cast<std::size_t>(p.width) * 3);
  return img;
}

QSlider* slider0to100(QWidget* parent, int value) {
  auto* s = new QSlider(Qt::Horizontal, parent);
  s->setRange(0, 100);
  s->setValue(value);
  return s;
}

}  // namespace

HoleNetDialog::HoleNetDialog(image::ImageHoleNet& model, QWidget* parent) : QDialog(parent), model_(model) {
  setObjectName("holeNetDialog");
  std::string_view title = image::kHoleNetTitle.chosen();
  setWindowTitle(QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size())));
  picture_ = new QLabel(this);
  picture_->setFixedSize(image::kPreviewWidth, image::kPreviewHeight);
  picture_->setAlignment(Qt::AlignCenter);

  auto* load = new QPushButton("Load Image", this);
  connect(load, &QPushButton::clicked, this, &HoleNetDialog::chooseImage);
  contrast_ = slider0to100(this, model_.contrast());
  brightness_ = slider0to100(this, model_.brightness());
  size_ = slider0to100(this, model_.size());
  rows_ = new QLineEdit(QString::number(model_.rows()), this);
  rows_->setValidator(new QIntValidator(1, image::kMostRows, rows_));
  sizeEdit_ = new QLineEdit(QString::number(model_.size()), this);
  sizeEdit_->setValidator(new QIntValidator(0, 100, sizeEdit_));
  connect(contrast_, &QSlider::valueChanged, this, [this](int v) {
    model_.onContrastMoved(v);
    showPicture();
  });
  connect(brightness_, &QSlider::valueChanged, this, [this](int v) {
    model_.onBrightnessMoved(v);
    showPicture();
  });
  connect(size_, &QSlider::valueChanged, this, [this](int v) {
    model_.onSizeMoved(v);
    sizeEdit_->setText(QString::number(model_.size()));
    showPicture();
  });
  connect(sizeEdit_, &QLineEdit::textEdited, this, [this](const QString& t) { size_->setValue(t.toInt()); });
  connect(rows_, &QLineEdit::textEdited, this, [this](const QString& t) {
    model_.onRowsEdit(t.toInt());
    showPicture();
  });

  showImage_ = new QRadioButton("PreviewImage", this);
  showNet_ = new QRadioButton("PreviewHoleNet", this);
  showImage_->setChecked(true);
  connect(showImage_, &QRadioButton::toggled, this, [this](bool on) {
    model_.onDisplayMode(on ? image::DisplayMode::kPreviewImage : image::DisplayMode::kPreviewHoleNet);
    showPicture();
  });
  invert_ = new QCheckBox("BlockWhiteInvert", this);
  connect(invert_, &QCheckBox::toggled, this, [this](bool on) {
    model_.onInvert(on);
    showPicture();
  });
  auto* shapes = new QGroupBox(this);
  auto* shapeRow = new QHBoxLayout(shapes);
  auto* shapeGroup = new QButtonGroup(this);
  const char* names[] = {"Circle", "Squart", "Diamond", "Select..."};
  for (int i = 0; i < 4; ++i) {
    auto* r = new QRadioButton(names[i], shapes);
    r->setChecked(i == static_cast<int>(model_.shape()));
    shapeGroup->addButton(r, i);
    shapeRow->addWidget(r);
  }
  connect(shapeGroup, &QButtonGroup::idClicked, this,
          [this](int id) { model_.onShape(static_cast<image::HoleShape>(id)); });

  auto* previewButton = new QPushButton("Preview", this);
  connect(previewButton, &QPushButton::clicked, this, &HoleNetDialog::preview);
  auto* drawButton = new QPushButton("Do Drawing", this);
  drawButton->setObjectName("doDrawing");
  connect(drawButton, &QPushButton::clicked, this, &HoleNetDialog::doDrawing);
  auto* closeButton = new QPushButton("Close", this);
  connect(closeButton, &QPushButton::clicked, this, &QDialog::accept);

  auto* form = new QFormLayout;
  form->addRow(load);
  form->addRow("Contrast:", contrast_);
  form->addRow("Brightness:", brightness_);
  form->addRow("Rows:", rows_);
  auto* sizeRow = new QHBoxLayout;
  sizeRow->addWidget(sizeEdit_);
  sizeRow->addWidget(size_, 1);
  form->addRow("Size:", sizeRow);
  form->addRow(showImage_);
  form->addRow(showNet_);
  form->addRow(invert_);
  form->addRow(shapes);
  form->addRow(previewButton);
  form->addRow(drawButton);
  form->addRow(closeButton);
  auto* layout = new QHBoxLayout(this);
  layout->addWidget(picture_);
  layout->addLayout(form);
  showPicture();
}

bool HoleNetDialog::loadImage(const QString& path) {
  bool ok = model_.loadImage(path.toStdString());
  showPicture();
  return ok;
}

void HoleNetDialog::chooseImage() {
  QString path = QFileDialog::getOpenFileName(this, "Load Image", QString(),
                                              QString::fromUtf8("图像(*.bmp *.jpg *.jpeg *.png *.gif)"));
  loadImage(path);
}

void HoleNetDialog::showPicture() {
  picture_->setPixmap(QPixmap::fromImage(toImage(model_.paint())));
}

void HoleNetDialog::preview() {
  model_.onPreview();
  showNet_->setChecked(true);
  showPicture();
}

void HoleNetDialog::doDrawing() {
  // The dialog steps aside while the prompts wait for the drawing.
  hide();
  model_.onDoDrawing();
  show();
}

}  // namespace workbench
