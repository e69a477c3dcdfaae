#pragma once
// "Image to HoleNet" on the desktop: a Qt dialog over the hole-net dialog
// model. The picture area shows the model's painting; Do Drawing hides the
// dialog while the drawing view answers the origin and height prompts.
#include <QDialog>

#include "image/image_hole_net.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QSlider;

namespace workbench {

class HoleNetDialog : public QDialog {
  Q_OBJECT

 public:
  explicit HoleNetDialog(image::ImageHoleNet& model, QWidget* parent = nullptr);

  // "Load Image" with a chosen file (the button asks with a file dialog).
  bool loadImage(const QString& path);
  QSlider* contrast() { return contrast_; }
  QLineEdit* rows() { return rows_; }

 public slots:
  void preview();
  void doDrawing();

 private:
  void showPicture();
  void chooseImage();

  image::ImageHoleNet& model_;
  QLabel* picture_ = nullptr;
  QSlider* contrast_ = nullptr;
  QSlider* brightness_ = nullptr;
  QSlider* size_ = nullptr;
  QLineEdit* rows_ = nullptr;
  QLineEdit* sizeEdit_ = nullptr;
  QCheckBox* invert_ = nullptr;
  QRadioButton* showImage_ = nullptr;
  QRadioButton* showNet_ = nullptr;
};

}  // namespace workbench
