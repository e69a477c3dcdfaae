// The picture loader fed with any bytes: it either refuses them or gives a
// picture whose size is within the limit and whose pixel buffer matches it;
// the hole grid of what it gives stays inside the picture. The limit is a
// million pixels here, so that tiny inputs claiming huge pictures do not
// spend the fuzzer's time on decoding alone.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "image/hole_grid.h"
#include "image/picture.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr long long kFuzzPixels = 1'000'000;
  image::LoadResult r = image::decodePicture({reinterpret_cast<const char*>(data), size}, kFuzzPixels);
  const auto* p = std::get_if<image::Picture>(&r);
  if (!p) return 0;
  require(p->width > 0 && p->height > 0);
  require(static_cast<long long>(p->width) * p->height <= kFuzzPixels);
  require(p->rgb.size() == static_cast<std::size_t>(p->width) * p->height * 3);
  image::HoleGrid g = image::holeGrid(*p, 7, false);
  for (const image::Hole& h : g.holes) {
    require(h.x > 0 && h.x < p->width && h.y > 0 && h.y < p->height);
    require(h.size >= 0 && h.size <= g.cell);
  }
  return 0;
}
