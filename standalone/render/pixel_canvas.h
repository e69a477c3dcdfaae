#pragma once
// A canvas over a caller's pixel buffer, for views on a screen: 32 bits a
// pixel, xRGB in the machine's byte order (cairo's RGB24, Qt's Format_RGB32),
// strideBytes a row. The buffer must outlive the canvas.
#include <memory>

#include "standalone/render/canvas.h"

namespace standalone {

// Throws RenderError when the size is not 1 to 32767 pixels per side.
std::unique_ptr<Canvas> openPixelCanvas(unsigned char* pixels, int widthPx, int heightPx, int strideBytes);

}  // namespace standalone
