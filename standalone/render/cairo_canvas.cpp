// Cairo back end of the canvas: one class for all file kinds, since cairo
// draws the same way on image, SVG and PDF surfaces.
#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>
#include <fontconfig/fontconfig.h>

#include <cmath>
#include <memory>
#include <numbers>

#include "io/replace_file.h"
#include "standalone/render/file_canvas.h"
#include "standalone/render/font_choice.h"
#include "standalone/render/pixel_canvas.h"
#include "standalone/render/render.h"
#include "standalone/render/render_error.h"
#include "standalone/render/text_placement.h"

namespace standalone {

namespace {

// Largest page we agree to allocate (pixels per side): 32768 is cairo's limit.
constexpr int kMaxPagePx = 32767;

std::string describe(const std::filesystem::path& file, const char* why) {
  return "Cannot write \"" + file.string() + "\": " + why;
}

class CairoCanvas : public FileCanvas {
 public:
  // Sizes are whole pixels for PNG; SVG and PDF pages may be fractional (points).
  CairoCanvas(FileFormat format, std::filesystem::path file, double widthPx, double heightPx)
      : format_(format), file_(std::move(file)) {
    if (!(widthPx > 0 && heightPx > 0 && widthPx <= kMaxPagePx && heightPx <= kMaxPagePx))
      throw RenderError(describe(file_, "the picture size must be 1 to 32767 pixels per side"));
    checkWritable();
    switch (format_) {
      case FileFormat::kPng:
        surface_ = cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(widthPx), static_cast<int>(heightPx));
        break;
      case FileFormat::kSvg:
        surface_ = cairo_svg_surface_create(part_->temporaryPath().c_str(), widthPx, heightPx);
        break;
      case FileFormat::kPdf:
        surface_ = cairo_pdf_surface_create(part_->temporaryPath().c_str(), widthPx, heightPx);
        break;
    }
    if (cairo_surface_status(surface_) != CAIRO_STATUS_SUCCESS) {
      std::string why = cairo_status_to_string(cairo_surface_status(surface_));
      cairo_surface_destroy(surface_);
      removePart();
      throw RenderError(describe(file_, why.c_str()));
    }
    cr_ = cairo_create(surface_);
    cairo_set_line_cap(cr_, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(cr_, CAIRO_LINE_JOIN_ROUND);
    cairo_set_fill_rule(cr_, CAIRO_FILL_RULE_EVEN_ODD);
    cairo_select_font_face(cr_, kFontFamily, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    paintBackground(kWhite);
  }
  // A canvas over the caller's pixels, for screens: nothing is written anywhere.
  CairoCanvas(unsigned char* pixels, int widthPx, int heightPx, int strideBytes) : format_(FileFormat::kPng) {
    surface_ = cairo_image_surface_create_for_data(pixels, CAIRO_FORMAT_RGB24, widthPx, heightPx, strideBytes);
    if (cairo_surface_status(surface_) != CAIRO_STATUS_SUCCESS) {
      std::string why = cairo_status_to_string(cairo_surface_status(surface_));
      cairo_surface_destroy(surface_);
      throw RenderError("Cannot paint the view: " + why);
    }
    cr_ = cairo_create(surface_);
    cairo_set_line_cap(cr_, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(cr_, CAIRO_LINE_JOIN_ROUND);
    cairo_set_fill_rule(cr_, CAIRO_FILL_RULE_EVEN_ODD);
    cairo_select_font_face(cr_, kFontFamily, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    // A screen repaints often: the quicker rasteriser (lines a pixel thin stay
    // crisp), and strokes of one colour and width gathered into one path.
    cairo_set_antialias(cr_, CAIRO_ANTIALIAS_NONE);
    batchStrokes_ = true;
  }
  ~CairoCanvas() override {
    flushStrokes();
    cairo_destroy(cr_);
    cairo_surface_destroy(surface_);
    if (!finished_) removePart();
  }
  CairoCanvas(const CairoCanvas&) = delete;
  CairoCanvas& operator=(const CairoCanvas&) = delete;

  void setView(const ViewTransform& view) override {
    // y up in the drawing, y down on the page: the view flips y.
    cairo_matrix_t m;
    cairo_matrix_init(&m, view.scale, 0, 0, -view.scale, view.pageCenter.x - view.center.x * view.scale,
                      view.pageCenter.y + view.center.y * view.scale);
    cairo_set_matrix(cr_, &m);
  }
  void clipToPage(const PageRect& r) override {
    flushStrokes();
    cairo_save(cr_);
    cairo_identity_matrix(cr_);
    cairo_rectangle(cr_, r.x, r.y, r.width, r.height);
    cairo_restore(cr_);
    cairo_clip(cr_);
  }
  void setColor(const Rgb& c) override {
    if (batchStrokes_ && hasColor_ && c == color_) return;
    flushStrokes();
    color_ = c;
    hasColor_ = true;
    cairo_set_source_rgb(cr_, c.r, c.g, c.b);
  }
  void setLineWidth(double px) override {
    if (px != lineWidthPx_) flushStrokes();
    lineWidthPx_ = px;
  }
  void moveTo(const ge::Point2d& p) override {
    ++pathOps_;
    cairo_move_to(cr_, p.x, p.y);
  }
  void lineTo(const ge::Point2d& p) override {
    ++pathOps_;
    cairo_line_to(cr_, p.x, p.y);
  }
  void arc(const ge::Point2d& c, double r, double a0, double a1, bool ccw) override {
    ++pathOps_;
    // The user space has y up, so cairo's increasing-angle arc runs counter-clockwise on the page.
    if (ccw)
      cairo_arc(cr_, c.x, c.y, r, a0, a1);
    else
      cairo_arc_negative(cr_, c.x, c.y, r, a0, a1);
  }
  void closePath() override { cairo_close_path(cr_); }
  void stroke() override {
    // Gathered strokes are painted when the colour or width changes, when
    // anything else is drawn, and when the path grows long.
    constexpr std::size_t kMostGatheredOps = 4096;
    if (batchStrokes_ && pathOps_ < kMostGatheredOps) {
      pendingStroke_ = true;
      return;
    }
    strokeNow();
  }
  void strokeNow() {
    pendingStroke_ = false;
    pathOps_ = 0;
    // Widths are page pixels: stroke with the identity matrix, the path stays where it is.
    cairo_save(cr_);
    cairo_identity_matrix(cr_);
    cairo_set_line_width(cr_, lineWidthPx_);
    if (batchStrokes_ && lineWidthPx_ <= 1.5) {
      // On a screen a thin line's caps and joins are below a pixel: the
      // plain ones cost far less to compute than round ones.
      cairo_set_line_cap(cr_, CAIRO_LINE_CAP_BUTT);
      cairo_set_line_join(cr_, CAIRO_LINE_JOIN_BEVEL);
    }
    cairo_stroke(cr_);
    cairo_restore(cr_);
  }
  // The gathered strokes must not become part of a filled area.
  void beginFill() override { flushStrokes(); }
  void fill() override {
    flushStrokes();  // a caller that did not say so beforehand
    cairo_fill(cr_);
    pathOps_ = 0;
  }
  void paintBackground(const Rgb& c) override {
    flushStrokes();
    cairo_save(cr_);
    setColor(c);
    cairo_paint(cr_);
    cairo_restore(cr_);
  }
  void text(const TextRun& run) override;
  void pageText(const std::string& utf8, const ge::Point2d& topLeftPx, double sizePx) override {
    flushStrokes();
    cairo_save(cr_);
    selectFaceFor(utf8);
    cairo_identity_matrix(cr_);
    cairo_set_font_size(cr_, sizePx);
    cairo_font_extents_t fe;
    cairo_font_extents(cr_, &fe);
    cairo_move_to(cr_, topLeftPx.x, topLeftPx.y + fe.ascent);
    cairo_show_text(cr_, utf8.c_str());
    cairo_new_path(cr_);
    cairo_restore(cr_);
  }

  void finish() override {
    flushStrokes();
    cairo_surface_flush(surface_);
    cairo_status_t status = CAIRO_STATUS_SUCCESS;
    if (format_ == FileFormat::kPng)
      status = cairo_surface_write_to_png(surface_, part_->temporaryPath().c_str());
    else {
      cairo_surface_finish(surface_);
      status = cairo_surface_status(surface_);
    }
    if (status != CAIRO_STATUS_SUCCESS) {
      removePart();
      throw RenderError(describe(file_, cairo_status_to_string(status)));
    }
    // The picture is complete: only now does it replace the named file.
    try {
      part_->commit();
    } catch (const io::FileWriteError& e) {
      removePart();
      throw RenderError(e.what());
    }
    finished_ = true;
  }

 private:
  // Fails early with a plain reason (missing folder, no permission) rather
  // than cairo's generic write error after all the drawing work. The picture
  // is written beside the file and renamed at the end, so a failure never
  // leaves a half-written file under the user's name.
  void checkWritable() {
    std::error_code ec;
    auto dir = file_.has_parent_path() ? file_.parent_path() : std::filesystem::path(".");
    if (!std::filesystem::is_directory(dir, ec)) throw RenderError(describe(file_, "the folder does not exist"));
    if (std::filesystem::is_directory(file_, ec)) throw RenderError(describe(file_, "it is a folder"));
    try {
      part_ = std::make_unique<io::FileReplacement>(file_);
    } catch (const io::FileWriteError&) {
      throw RenderError(describe(file_, "the folder is not writable"));
    }
  }
  void flushStrokes() {
    if (pendingStroke_) strokeNow();
  }
  // Drops the unfinished picture.
  void removePart() { part_.reset(); }

  void selectFaceFor(const std::string& utf8) { fonts_.select(cr_, utf8); }

  FileFormat format_;
  std::filesystem::path file_;
  std::unique_ptr<io::FileReplacement> part_;  // the picture until it is complete
  bool finished_ = false;
  cairo_surface_t* surface_ = nullptr;
  cairo_t* cr_ = nullptr;
  double lineWidthPx_ = 1;
  bool batchStrokes_ = false;  // screens only: files stroke every path as it comes
  bool pendingStroke_ = false;
  std::size_t pathOps_ = 0;
  Rgb color_;
  bool hasColor_ = false;
  FontChooser fonts_;  // for page captions
  TextPlacer placer_;
};

void CairoCanvas::text(const TextRun& run) {
  flushStrokes();
  cairo_save(cr_);
  if (placer_.place(cr_, run)) cairo_show_text(cr_, run.utf8.c_str());
  cairo_new_path(cr_);
  cairo_restore(cr_);
}

}  // namespace

std::unique_ptr<FileCanvas> openFileCanvas(FileFormat format, const std::filesystem::path& file, int widthPx,
                                           int heightPx) {
  return std::make_unique<CairoCanvas>(format, file, widthPx, heightPx);
}

std::unique_ptr<FileCanvas> openPdfCanvas(const std::filesystem::path& file, double widthPt, double heightPt) {
  return std::make_unique<CairoCanvas>(FileFormat::kPdf, file, widthPt, heightPt);
}

std::unique_ptr<Canvas> openPixelCanvas(unsigned char* pixels, int widthPx, int heightPx, int strideBytes) {
  if (widthPx <= 0 || heightPx <= 0 || widthPx > kMaxPagePx || heightPx > kMaxPagePx)
    throw RenderError("Cannot paint the view: the size must be 1 to 32767 pixels per side");
  return std::make_unique<CairoCanvas>(pixels, widthPx, heightPx, strideBytes);
}

void releaseFontCaches() {
  cairo_debug_reset_static_data();
  FcFini();
}

}  // namespace standalone
