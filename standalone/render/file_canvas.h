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
};

// A white page of widthPx x heightPx for the given file. Throws RenderError
// when the size is not positive or the file cannot be created.
std::unique_ptr<FileCanvas> openFileCanvas(FileFormat format, const std::filesystem::path& file, int widthPx,
                                           int heightPx);

}  // namespace standalone
