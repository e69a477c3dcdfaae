#pragma once
// The raster vectorizer's dialog as a model without any toolkit. Its steps,
// in the order a draftsman works through them:
//   1. "Load Image": a picture (BMP, JPEG, PNG, GIF).
//   2. "Colours:" (2..16, start 2): the picture is reduced to that many
//      colours; "Process" shows the reduced picture. The colour along the
//      border is the background and is not traced.
//   3. "Smallest area:" (pixels, 1..10000, start 16): outlines enclosing no
//      more than this are outliers (specks, noise) and are dropped.
//   4. "Tolerance:" (0..100, start 1): the optimisation thins the traced
//      points with the polyline thinning (merge distance 0.001 x tolerance x
//      the picture's diagonal); 0 keeps every traced point.
//   5. "Do Vectorize": asks for the lower-left point and the width of the
//      picture in the drawing, and draws each colour region's outlines as
//      closed curves, polylines or fitted splines as the curve-kind flag says
//      (a spline's fit points are at most 2 pixels apart, so that it keeps to
//      straight edges instead of bulging between corners).
// With the box "Trace with the external tracer" set (stored as
// VectorizeGjCtrl), Do Vectorize hands the picture to the tracer program
// instead: the processed picture when "Process" was used, else the loaded one.
// What the tracer gives is inserted as one block reference and left as it is
// (no post-processing): the outlines stay together and can be exploded.
#include <optional>
#include <string>

#include "frame/settings.h"
#include "ge/point.h"
#include "host/host.h"
#include "image/colour_regions.h"
#include "image/outline_trace.h"
#include "image/picture.h"

namespace image {

inline constexpr std::string_view kSettingTracerBox = "VectorizeGjCtrl";

// One outline of the vectorizer, in pixels (y upward from the picture's lower-left corner).
struct RegionOutline {
  int colourIndex = 0;
  std::vector<ge::Point2d> points;  // closed ring, first point not repeated
};

class COutlineDlg {
 public:
  COutlineDlg(host::Host& host, frame::Settings& settings);

  bool loadImage(const std::string& path);
  void onColours(int count);
  void onSmallestArea(int pixels);
  void onTolerance(int tolerance);
  void onTracerBox(bool checked);
  // "Process": reduces the colours; the picture area shows the result.
  void onProcess();
  // "Do Vectorize": the outlines drawn (or handed to the tracer); the number of curves drawn.
  int onDoVectorize();

  // The outlines the current settings give, before they are placed in the drawing.
  std::vector<RegionOutline> outlines() const;

  bool hasPicture() const { return source_.has_value(); }
  const Picture& shown() const { return processed_ ? *processed_ : *source_; }
  int colours() const { return colours_; }
  int smallestArea() const { return smallestArea_; }
  int tolerance() const { return tolerance_; }
  bool tracerBox() const { return tracerBox_; }

 private:
  int vectorizeWithTracer();

  host::Host& host_;
  frame::Settings& settings_;
  std::optional<Picture> source_;
  std::optional<Picture> processed_;
  int colours_ = 2, smallestArea_ = 16, tolerance_ = 1;
  bool tracerBox_ = false;
};

}  // namespace image
