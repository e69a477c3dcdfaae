#include "tests/render/picture.h"

#include <cairo.h>

#include <algorithm>
#include <stdexcept>

namespace render_test {

Pixel Picture::at(int x, int y) const {
  std::uint32_t v = argb[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
  return {static_cast<int>((v >> 16) & 0xFF), static_cast<int>((v >> 8) & 0xFF), static_cast<int>(v & 0xFF)};
}

bool Picture::isInk(int x, int y) const {
  if (x < 0 || y < 0 || x >= width || y >= height) return false;
  Pixel p = at(x, y);
  return p.r + p.g + p.b < 600;
}

Pixel Picture::darkestNear(int x, int y, int r) const {
  Pixel best{255, 255, 255};
  for (int dy = -r; dy <= r; ++dy)
    for (int dx = -r; dx <= r; ++dx) {
      int cx = x + dx, cy = y + dy;
      if (cx < 0 || cy < 0 || cx >= width || cy >= height) continue;
      Pixel p = at(cx, cy);
      if (p.r + p.g + p.b < best.r + best.g + best.b) best = p;
    }
  return best;
}

bool Picture::inkNear(int x, int y, int r) const {
  Pixel p = darkestNear(x, y, r);
  return p.r + p.g + p.b < 600;
}

int Picture::inkCount(int x0, int y0, int x1, int y1) const {
  int n = 0;
  for (int y = std::max(0, y0); y < std::min(height, y1); ++y)
    for (int x = std::max(0, x0); x < std::min(width, x1); ++x) n += isInk(x, y);
  return n;
}

Picture loadPng(const std::filesystem::path& file) {
  cairo_surface_t* s = cairo_image_surface_create_from_png(file.c_str());
  if (cairo_surface_status(s) != CAIRO_STATUS_SUCCESS) {
    cairo_surface_destroy(s);
    throw std::runtime_error("cannot read PNG " + file.string());
  }
  Picture p;
  p.width = cairo_image_surface_get_width(s);
  p.height = cairo_image_surface_get_height(s);
  int stride = cairo_image_surface_get_stride(s);
  const unsigned char* data = cairo_image_surface_get_data(s);
  p.argb.resize(static_cast<std::size_t>(p.width) * static_cast<std::size_t>(p.height));
  for (int y = 0; y < p.height; ++y) {
    const auto* row = reinterpret_cast<const std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride);
    std::copy(row, row + p.width, p.argb.begin() + static_cast<std::ptrdiff_t>(y) * p.width);
  }
  cairo_surface_destroy(s);
  return p;
}

}  // namespace render_test
