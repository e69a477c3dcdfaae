#pragma once
// Contrast and brightness of the hole-net dialog. Both factors jump on
// purpose at the slider's middle (contrast 49 gives 49.5, 50 gives 1.5;
// brightness 49 gives 0.49, 50 gives 1.0): the dialog has always behaved so
// and pictures tuned with it must come out the same.
#include "image/picture.h"

namespace image {

// Contrast factor of slider position c (0..100).
double contrastFactor(int c);
// Brightness factor of slider position b (0..100).
double brightnessFactor(int b);

// One channel v (0..255) through each formula: (v - 128)·k + 128 and v·m,
// truncated toward zero, then limited to 0..255.
int contrastChannel(int v, double k);
int brightnessChannel(int v, double m);

// The working picture: the source with contrast, then brightness, applied to
// every pixel's red, green and blue.
Picture adjustTone(const Picture& source, int contrast, int brightness);

}  // namespace image
