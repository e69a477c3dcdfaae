#pragma once
// A raster picture in memory and loading one from a file (BMP, JPEG, PNG,
// GIF; 8-bit palette or grey, 24-bit and 32-bit). Pixels are kept as red,
// green, blue bytes, rows top to bottom; the alpha of 32-bit pictures is
// dropped, as the hole net and the tracer read only the colour.
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace image {

struct Rgb {
  std::uint8_t r = 0, g = 0, b = 0;
  bool operator==(const Rgb&) const = default;
};

struct Picture {
  int width = 0;
  int height = 0;
  int sourceBits = 24;             // 8, 24 or 32: the depth of the file it came from
  std::vector<std::uint8_t> rgb;   // width * height * 3 bytes

  bool empty() const { return width <= 0 || height <= 0; }
  Rgb at(int x, int y) const {
    const std::uint8_t* p = &rgb[(static_cast<std::size_t>(y) * width + x) * 3];
    return {p[0], p[1], p[2]};
  }
  void set(int x, int y, Rgb c) {
    std::uint8_t* p = &rgb[(static_cast<std::size_t>(y) * width + x) * 3];
    p[0] = c.r, p[1] = c.g, p[2] = c.b;
  }
};

// A picture of the given size filled with one colour.
Picture blankPicture(int width, int height, Rgb fill);

// The largest picture loaded: 40 million pixels (about 7,300 x 5,500), so
// that a picture and its working copy stay well below a gigabyte.
inline constexpr long long kMaxPicturePixels = 40'000'000;

// Why a picture could not be loaded.
enum class LoadFailure {
  kNoFile,       // no file name was given
  kCannotOpen,   // the file could not be opened or read (systemError holds errno)
  kNotAPicture,  // not a picture of a format read here, or damaged / truncated
  kTooLarge,     // more pixels than kMaxPicturePixels
};

struct LoadError {
  LoadFailure failure = LoadFailure::kNotAPicture;
  int systemError = 0;
  std::string detail;  // the decoder's reason, for the log
};

using LoadResult = std::variant<Picture, LoadError>;

// Decodes a picture held in memory; only BMP, JPEG, PNG and GIF are taken,
// of at most maxPixels pixels (a few hundred bytes of JPEG can claim millions).
LoadResult decodePicture(std::string_view bytes, long long maxPixels = kMaxPicturePixels);
// Reads and decodes a picture file.
LoadResult loadPicture(const std::string& path);

// Writes the picture as PNG / as 24-bit BMP; false when the file could not be written.
bool savePng(const Picture& picture, const std::string& path);
bool saveBmp(const Picture& picture, const std::string& path);

}  // namespace image
