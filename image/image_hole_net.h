#pragma once
// The hole-net dialog "Image to HoleNet" as a model without any toolkit: the
// loaded and the working picture, the contrast, brightness and size sliders,
// rows, invert, the hole shape, the preview picture and Do Drawing. A desktop
// dialog or the command line shows this state and forwards the user's actions.
//
// Choices of ours: the working picture is always the source with contrast and
// then brightness applied afresh (moving a slider back undoes it); the third
// slider is the "Size:" value, kept in step with its edit (0..100, start 50);
// "Rows:" starts at 60 and is kept to 1..10,000; holes of white cells (size 0)
// are not drawn.
#include <optional>
#include <string>

#include "frame/text.h"
#include "ge/point.h"
#include "host/host.h"
#include "image/hole_grid.h"
#include "image/hole_shapes.h"
#include "image/picture.h"

namespace image {

inline constexpr frame::Text kHoleNetTitle{"Image to HoleNet", "图像转网孔"};
inline constexpr frame::Text kLoadFilter{"图像(*.bmp;*.jpg;*.jpeg;*.png;*.gif) | *.bmp;*.jpg;*.jpeg;*.png;*.gif || ",
                                         "图像(*.bmp;*.jpg;*.jpeg;*.png;*.gif) | *.bmp;*.jpg;*.jpeg;*.png;*.gif || "};

// The picture area of the dialog: the window less its 190-pixel margin on the right.
inline constexpr int kPreviewWidth = 640;
inline constexpr int kPreviewHeight = 480;
inline constexpr Rgb kPreviewBackground{0xEE, 0xEE, 0xEE};
inline constexpr Rgb kPreviewHole{255, 0, 0};

inline constexpr int kDefaultRows = 60;
inline constexpr int kMostRows = 10'000;

enum class DisplayMode { kPreviewImage = 0, kPreviewHoleNet = 1 };

class ImageHoleNet {
 public:
  explicit ImageHoleNet(host::Host& host) : host_(host) {}

  // "Load Image" with a chosen file ("" when none was chosen): on failure the
  // dialog's message is shown and the picture loaded before stays.
  bool loadImage(const std::string& path);
  // Slider moves; positions outside 0..100 are clamped.
  void onContrastMoved(int position);
  void onBrightnessMoved(int position);
  void onSizeMoved(int position);  // the third slider and the "Size:" edit
  void onRowsEdit(int rows);
  void onInvert(bool checked) { invert_ = checked; }
  void onShape(HoleShape shape) { shape_ = shape; }
  void onDisplayMode(DisplayMode mode) { mode_ = mode; }
  // "Preview": shows the hole net in the picture area.
  void onPreview();
  // "Do Drawing": the prompts and the net in the drawing; the number of holes drawn.
  int onDoDrawing();

  // What the picture area shows now: the working picture or the hole net,
  // scaled by displayScale() onto the cleared area.
  Picture paint() const;
  // The hole grid of the working picture with the current rows and invert.
  HoleGrid grid() const;

  bool hasPicture() const { return source_.has_value(); }
  const Picture& working() const { return working_; }
  int contrast() const { return contrast_; }
  int brightness() const { return brightness_; }
  int size() const { return size_; }
  int rows() const { return rows_; }
  bool invert() const { return invert_; }
  HoleShape shape() const { return shape_; }
  DisplayMode displayMode() const { return mode_; }
  bool previewed() const { return previewed_; }
  double displayScale() const;
  const ge::Point3d& origin() const { return origin_; }
  double height() const { return height_; }

 private:
  void retone();
  void showLoadError(const LoadError& error, const std::string& path);
  // Picks the hole entity for shape kCopy; false when none was chosen.
  bool chooseHoleEntity();
  // Draws the holes of the grid; the number drawn.
  int drawHoles(const HoleGrid& grid);

  host::Host& host_;
  std::optional<Picture> source_;
  Picture working_;
  int contrast_ = 50, brightness_ = 50, size_ = 50, rows_ = kDefaultRows;
  bool invert_ = false;
  HoleShape shape_ = HoleShape::kCircle;
  DisplayMode mode_ = DisplayMode::kPreviewImage;
  bool previewed_ = false;
  host::ObjectId holeEntity_ = host::kNullId;
  ge::Point3d origin_;
  double height_ = 0;
};

}  // namespace image
