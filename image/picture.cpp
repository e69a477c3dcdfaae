#include "image/picture.h"

#include <cerrno>
#include <climits>
#include <fstream>
#include <algorithm>
#include <memory>

#include <stb_image.h>
#include <stb_image_write.h>

namespace image {

namespace {

struct StbFree {
  void operator()(unsigned char* p) const { stbi_image_free(p); }
};

// Depth of the source as the picture loader of the host names it.
int sourceBitsOf(int components) {
  switch (components) {
    case 1: return 8;
    case 2:
    case 4: return 32;
    default: return 24;
  }
}

// The formats read here, told by their first bytes. The decoder knows more
// (TGA, PSD, HDR, ...), and TGA has no signature at all, so that almost any
// bytes would otherwise pass for a picture.
bool hasKnownSignature(std::string_view b) {
  return b.starts_with("BM") || b.starts_with("\xFF\xD8\xFF") || b.starts_with("\x89PNG\r\n\x1A\n") ||
         b.starts_with("GIF87a") || b.starts_with("GIF89a");
}

}  // namespace

Picture blankPicture(int width, int height, Rgb fill) {
  Picture p;
  p.width = width;
  p.height = height;
  p.rgb.resize(static_cast<std::size_t>(width) * height * 3);
  for (std::size_t i = 0; i < p.rgb.size(); i += 3) {
    p.rgb[i] = fill.r, p.rgb[i + 1] = fill.g, p.rgb[i + 2] = fill.b;
  }
  return p;
}

LoadResult decodePicture(std::string_view bytes, long long maxPixels) {
  if (bytes.empty() || bytes.size() > static_cast<std::size_t>(INT_MAX))
    return LoadError{LoadFailure::kNotAPicture, 0, "empty or oversized file"};
  if (!hasKnownSignature(bytes)) return LoadError{LoadFailure::kNotAPicture, 0, "not BMP, JPEG, PNG or GIF"};
  const auto* data = reinterpret_cast<const stbi_uc*>(bytes.data());
  int length = static_cast<int>(bytes.size());
  int w = 0, h = 0, components = 0;
  // The size is read from the header first so that a huge picture is refused
  // before any pixel memory is taken.
  if (!stbi_info_from_memory(data, length, &w, &h, &components))
    return LoadError{LoadFailure::kNotAPicture, 0, stbi_failure_reason() ? stbi_failure_reason() : ""};
  if (w <= 0 || h <= 0) return LoadError{LoadFailure::kNotAPicture, 0, "no pixels"};
  if (static_cast<long long>(w) * h > maxPixels)
    return LoadError{LoadFailure::kTooLarge, 0, std::to_string(w) + " x " + std::to_string(h)};
  std::unique_ptr<unsigned char, StbFree> pixels(stbi_load_from_memory(data, length, &w, &h, &components, 3));
  if (!pixels) return LoadError{LoadFailure::kNotAPicture, 0, stbi_failure_reason() ? stbi_failure_reason() : ""};
  Picture p;
  p.width = w;
  p.height = h;
  p.sourceBits = sourceBitsOf(components);
  p.rgb.assign(pixels.get(), pixels.get() + static_cast<std::size_t>(w) * h * 3);
  return p;
}

LoadResult loadPicture(const std::string& path) {
  if (path.empty()) return LoadError{LoadFailure::kNoFile, 0, {}};
  errno = 0;
  std::ifstream in(path, std::ios::binary);
  if (!in) return LoadError{LoadFailure::kCannotOpen, errno ? errno : ENOENT, path};
  // One read of the whole file: a character-wise copy costs more than decoding.
  std::string bytes;
  in.seekg(0, std::ios::end);
  std::streamoff size = in.tellg();
  in.seekg(0, std::ios::beg);
  if (size > 0) {
    bytes.resize(static_cast<std::size_t>(size));
    in.read(bytes.data(), size);
    bytes.resize(static_cast<std::size_t>(std::max<std::streamoff>(in.gcount(), 0)));
  }
  if (in.bad()) return LoadError{LoadFailure::kCannotOpen, errno ? errno : EIO, path};
  return decodePicture(bytes);
}

bool savePng(const Picture& picture, const std::string& path) {
  if (picture.empty()) return false;
  return stbi_write_png(path.c_str(), picture.width, picture.height, 3, picture.rgb.data(), picture.width * 3) != 0;
}

bool saveBmp(const Picture& picture, const std::string& path) {
  if (picture.empty()) return false;
  return stbi_write_bmp(path.c_str(), picture.width, picture.height, 3, picture.rgb.data()) != 0;
}

}  // namespace image
