#include "image/tone.h"

#include <algorithm>
#include <array>

namespace image {

double contrastFactor(int c) { return c >= 50 ? c / 50.0 * 1.5 : c + 0.5; }

double brightnessFactor(int b) { return b < 50 ? b / 100.0 : b / 50.0; }

int contrastChannel(int v, double k) { return std::clamp(static_cast<int>((v - 128) * k + 128), 0, 255); }

int brightnessChannel(int v, double m) { return std::clamp(static_cast<int>(v * m), 0, 255); }

Picture adjustTone(const Picture& source, int contrast, int brightness) {
  // Both formulas act on each channel alone, so one table of 256 entries does the whole picture.
  double k = contrastFactor(contrast), m = brightnessFactor(brightness);
  std::array<std::uint8_t, 256> table{};
  for (int v = 0; v < 256; ++v) table[v] = static_cast<std::uint8_t>(brightnessChannel(contrastChannel(v, k), m));
  Picture out = source;
  for (std::uint8_t& byte : out.rgb) byte = table[byte];
  return out;
}

}  // namespace image
