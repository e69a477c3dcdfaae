#pragma once
// Canvases that write a picture file: PNG, SVG or PDF pages of a size in pixels.
#include <filesystem>
#include <memory>

#include "standalone/render/canvas.h"

namespace standalone {

enum class FileFormat { kPng, kSvg, kPdf };

class FileCanvas : public Canvas {
 public:
  // Writes the file (PNG when finished; SVG and PDF are streamed and closed
  // here). Throws RenderError when the file cannot be written.
  virtual void finish() = 0;
  // From now on only this rectangle of the page (pixels, origin top-left) is painted.
  virtual void clipToPage(const PageRect& rect) = 0;
};

// A white page of widthPx x heightPx for the given file. Throws RenderError
// when the size is not positive or the file cannot be created.
std::unique_ptr<FileCanvas> openFileCanvas(FileFormat format, const std::filesystem::path& file, int widthPx,
                                           int heightPx);
// A white PDF page of the given size in points (1/72 inch), for paper sizes.
std::unique_ptr<FileCanvas> openPdfCanvas(const std::filesystem::path& file, double widthPt, double heightPt);

}  // namespace standalone
