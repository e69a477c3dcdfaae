#include "image/colour_regions.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace image {

namespace {

int cellOf(const std::uint8_t* p) { return (p[0] >> 4) << 8 | (p[1] >> 4) << 4 | (p[2] >> 4); }

int distance2(Rgb a, const std::uint8_t* p) {
  int dr = a.r - p[0], dg = a.g - p[1], db = a.b - p[2];
  return dr * dr + dg * dg + db * db;
}

}  // namespace

ColourClasses reduceColours(const Picture& picture, int count) {
  ColourClasses out;
  out.width = picture.width;
  out.height = picture.height;
  if (picture.empty()) return out;
  count = std::clamp(count, 1, 255);
  struct Cell {
    long long n = 0, r = 0, g = 0, b = 0;
  };
  std::vector<Cell> cells(4096);
  const std::size_t pixels = static_cast<std::size_t>(picture.width) * picture.height;
  for (std::size_t i = 0; i < pixels; ++i) {
    const std::uint8_t* p = &picture.rgb[i * 3];
    Cell& c = cells[cellOf(p)];
    ++c.n, c.r += p[0], c.g += p[1], c.b += p[2];
  }
  std::vector<int> order(cells.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return cells[a].n > cells[b].n; });
  for (int k = 0; k < count && cells[order[k]].n > 0; ++k) {
    const Cell& c = cells[order[k]];
    out.palette.push_back({static_cast<std::uint8_t>(c.r / c.n), static_cast<std::uint8_t>(c.g / c.n),
                           static_cast<std::uint8_t>(c.b / c.n)});
  }
  // Every colour of a grid cell lies close to the others of the cell, so the
  // nearest palette colour is found once per cell that occurs.
  std::array<int, 4096> nearestOfCell;
  nearestOfCell.fill(-1);
  out.classOf.resize(pixels);
  for (std::size_t i = 0; i < pixels; ++i) {
    const std::uint8_t* p = &picture.rgb[i * 3];
    int cell = cellOf(p);
    if (nearestOfCell[cell] < 0) {
      int best = 0;
      for (int k = 1; k < static_cast<int>(out.palette.size()); ++k)
        if (distance2(out.palette[k], p) < distance2(out.palette[best], p)) best = k;
      nearestOfCell[cell] = best;
    }
    out.classOf[i] = static_cast<std::uint8_t>(nearestOfCell[cell]);
  }
  return out;
}

Picture classPicture(const ColourClasses& classes) {
  Picture p = blankPicture(classes.width, classes.height, {});
  for (std::size_t i = 0; i < classes.classOf.size(); ++i) {
    Rgb c = classes.palette[classes.classOf[i]];
    p.rgb[i * 3] = c.r, p.rgb[i * 3 + 1] = c.g, p.rgb[i * 3 + 2] = c.b;
  }
  return p;
}

Picture classMask(const ColourClasses& classes, int colourIndex) {
  Picture p = blankPicture(classes.width, classes.height, {255, 255, 255});
  for (std::size_t i = 0; i < classes.classOf.size(); ++i)
    if (classes.classOf[i] == colourIndex) p.rgb[i * 3] = p.rgb[i * 3 + 1] = p.rgb[i * 3 + 2] = 0;
  return p;
}

int backgroundClass(const ColourClasses& classes) {
  if (classes.palette.empty()) return -1;
  std::vector<int> counts(classes.palette.size());
  const int w = classes.width, h = classes.height;
  auto count = [&](int x, int y) { ++counts[classes.classOf[static_cast<std::size_t>(y) * w + x]]; };
  for (int x = 0; x < w; ++x) count(x, 0), count(x, h - 1);
  for (int y = 0; y < h; ++y) count(0, y), count(w - 1, y);
  return static_cast<int>(std::max_element(counts.begin(), counts.end()) - counts.begin());
}

}  // namespace image
