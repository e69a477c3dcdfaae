#pragma once
// Colour regions of a picture for the vectorizer: the picture reduced to a
// few colours, each pixel labelled with the nearest one, and the pixels of
// one colour as a two-colour mask the outline tracer reads.
#include <vector>

#include "image/picture.h"

namespace image {

struct ColourClasses {
  std::vector<Rgb> palette;          // the kept colours, most frequent first
  std::vector<std::uint8_t> classOf;  // per pixel, row by row: index into palette
  int width = 0, height = 0;
};

// Reduces the picture to at most `count` colours by popularity: the mean
// colours of the most populated cells of a 16 x 16 x 16 colour grid; then
// every pixel takes the nearest of them. Anti-aliased edge colours are rare,
// so they join the shapes on either side instead of becoming regions.
ColourClasses reduceColours(const Picture& picture, int count);

// The picture each pixel of which shows its class's colour (what "Process" shows).
Picture classPicture(const ColourClasses& classes);

// Black where the pixel belongs to the class, white elsewhere.
Picture classMask(const ColourClasses& classes, int colourIndex);

// The class most frequent along the picture's border: the background.
int backgroundClass(const ColourClasses& classes);

}  // namespace image
