// Writes the pixels of a picture as the picture loader decodes them, as a
// binary PPM (P6), so that a check in another language can read them.
#include <cstdio>
#include <fstream>
#include <variant>

#include "image/picture.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: picture_pixels PICTURE OUT.ppm\n");
    return 2;
  }
  image::LoadResult r = image::loadPicture(argv[1]);
  const auto* p = std::get_if<image::Picture>(&r);
  if (!p) {
    std::fprintf(stderr, "picture_pixels: %s is not a picture\n", argv[1]);
    return 1;
  }
  std::ofstream out(argv[2], std::ios::binary);
  out << "P6\n" << p->width << " " << p->height << "\n255\n";
  out.write(reinterpret_cast<const char*>(p->rgb.data()), static_cast<std::streamsize>(p->rgb.size()));
  return out ? 0 : 1;
}
