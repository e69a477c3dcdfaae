#include "image/raster_tools.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <optional>

namespace image {

namespace {

// Labels connected areas of pixels for which inArea holds (4-connected), by
// flood fill with an explicit stack; -1 marks pixels outside every area.
struct Labels {
  std::vector<int> label;
  std::vector<int> size;         // pixels per label
  std::vector<PixelPoint> first;  // first pixel of each label, row by row
  std::vector<bool> touchesBorder;
};

template <class InArea>
Labels labelAreas(const Picture& picture, InArea inArea) {
  const int w = picture.width, h = picture.height;
  Labels l;
  l.label.assign(static_cast<std::size_t>(w) * h, -1);
  std::vector<bool> member(l.label.size());
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) member[static_cast<std::size_t>(y) * w + x] = inArea(picture.at(x, y));
  std::vector<int> stack;
  for (int start = 0; start < w * h; ++start) {
    if (!member[start] || l.label[start] >= 0) continue;
    int id = static_cast<int>(l.size.size());
    l.size.push_back(0);
    l.first.push_back({start % w, start / w});
    l.touchesBorder.push_back(false);
    stack.push_back(start);
    l.label[start] = id;
    while (!stack.empty()) {
      int at = stack.back();
      stack.pop_back();
      int x = at % w, y = at / w;
      ++l.size[id];
      if (x == 0 || y == 0 || x == w - 1 || y == h - 1) l.touchesBorder[id] = true;
      auto visit = [&](int nx, int ny) {
        if (nx < 0 || ny < 0 || nx >= w || ny >= h) return;
        int n = ny * w + nx;
        if (member[n] && l.label[n] < 0) {
          l.label[n] = id;
          stack.push_back(n);
        }
      };
      visit(x + 1, y), visit(x - 1, y), visit(x, y + 1), visit(x, y - 1);
    }
  }
  return l;
}

}  // namespace

bool BackgroundTest::operator()(Rgb c) const {
  return std::abs(c.r - background.r) <= tolerance && std::abs(c.g - background.g) <= tolerance &&
         std::abs(c.b - background.b) <= tolerance;
}

Rgb borderColour(const Picture& picture) {
  if (picture.empty()) return {};
  std::map<std::uint32_t, int> counts;
  auto count = [&](int x, int y) {
    Rgb c = picture.at(x, y);
    ++counts[(std::uint32_t(c.r) << 16) | (std::uint32_t(c.g) << 8) | c.b];
  };
  for (int x = 0; x < picture.width; ++x) count(x, 0), count(x, picture.height - 1);
  for (int y = 0; y < picture.height; ++y) count(0, y), count(picture.width - 1, y);
  auto best = std::max_element(counts.begin(), counts.end(), [](auto& a, auto& b) { return a.second < b.second; });
  std::uint32_t v = best->first;
  return {static_cast<std::uint8_t>(v >> 16), static_cast<std::uint8_t>(v >> 8), static_cast<std::uint8_t>(v)};
}

std::vector<PixelPoint> regionSeeds(const Picture& picture, const BackgroundTest& background, int minArea) {
  std::vector<PixelPoint> seeds;
  if (picture.empty()) return seeds;
  Labels l = labelAreas(picture, background);
  // The outside area: the largest area touching the border.
  int outside = -1;
  for (int i = 0; i < static_cast<int>(l.size.size()); ++i)
    if (l.touchesBorder[i] && (outside < 0 || l.size[i] > l.size[outside])) outside = i;
  if (outside >= 0) seeds.push_back(l.first[outside]);
  else if (!l.size.empty()) seeds.push_back(l.first[0]);
  for (int i = 0; i < static_cast<int>(l.size.size()); ++i)
    if (i != outside && !l.touchesBorder[i] && l.size[i] >= minArea) seeds.push_back(l.first[i]);
  return seeds;
}

std::vector<PixelPoint> outerContour(const Picture& picture, const BackgroundTest& background) {
  std::vector<PixelPoint> contour;
  if (picture.empty()) return contour;
  const int w = picture.width, h = picture.height;
  Labels figure = labelAreas(picture, [&](Rgb c) { return !background(c); });
  if (figure.size.empty()) return contour;
  int largest = static_cast<int>(std::max_element(figure.size.begin(), figure.size.end()) - figure.size.begin());
  auto inPart = [&](int x, int y) {
    return x >= 0 && y >= 0 && x < w && y < h && figure.label[static_cast<std::size_t>(y) * w + x] == largest;
  };
  // Moore-neighbour tracing with Jacob's stopping rule (Gonzalez & Woods,
  // Digital Image Processing, boundary following): from each contour pixel the
  // neighbours are scanned clockwise on screen from the background pixel we
  // came by; the first pixel of the part is the next contour pixel, and the
  // neighbour scanned just before it becomes the new backtrack.
  static constexpr int kDx[8] = {-1, -1, 0, 1, 1, 1, 0, -1};  // W, NW, N, NE, E, SE, S, SW
  static constexpr int kDy[8] = {0, -1, -1, -1, 0, 1, 1, 1};
  auto directionOf = [](int dx, int dy) {
    for (int d = 0; d < 8; ++d)
      if (kDx[d] == dx && kDy[d] == dy) return d;
    return 0;
  };
  struct Step {
    PixelPoint at;
    int back = 0;
    bool operator==(const Step&) const = default;
  };
  // The next contour pixel and its backtrack; nothing for a part of one pixel.
  auto advance = [&](const Step& s) -> std::optional<Step> {
    for (int k = 1; k <= 8; ++k) {
      int d = (s.back + k) % 8;
      if (!inPart(s.at.x + kDx[d], s.at.y + kDy[d])) continue;
      int before = (d + 7) % 8;
      return Step{{s.at.x + kDx[d], s.at.y + kDy[d]}, directionOf(kDx[before] - kDx[d], kDy[before] - kDy[d])};
    }
    return std::nullopt;
  };
  // The part's first pixel in row order: its west neighbour is not in the part.
  const PixelPoint start = figure.first[largest];
  contour.push_back(start);
  std::optional<Step> first = advance({start, 0});
  if (!first) return contour;
  // Jacob's rule: the trace is closed when the first move repeats.
  Step at = *first;
  const std::size_t limit = static_cast<std::size_t>(w) * h * 4 + 8;
  do {
    contour.push_back(at.at);
    at = *advance(at);
  } while (!(at == *first) && contour.size() < limit);
  contour.pop_back();  // the start again
  return contour;
}

PixelMapping PixelMapping::ofView(ge::Point2d viewCentre, double viewHeight, int width, int height) {
  return {viewCentre, height > 0 ? viewHeight / height : 1.0, width, height};
}

ge::Point3d PixelMapping::toDrawing(double x, double y) const {
  return {centre.x + (x - width / 2.0) * unitsPerPixel, centre.y - (y - height / 2.0) * unitsPerPixel, 0};
}

ge::Point3d PixelMapping::toDrawing(PixelPoint p) const { return toDrawing(p.x + 0.5, p.y + 0.5); }

PixelPoint PixelMapping::toPixel(const ge::Point3d& p) const {
  return {static_cast<int>(std::floor((p.x - centre.x) / unitsPerPixel + width / 2.0)),
          static_cast<int>(std::floor((centre.y - p.y) / unitsPerPixel + height / 2.0))};
}

}  // namespace image
