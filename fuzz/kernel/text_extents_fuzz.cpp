// Fuzz target of the text box estimates: TEXT and MTEXT content from a
// drawing (control codes, formatting codes, broken UTF-8) with any sizes,
// angles and justifications, also placed inside a scaled block reference.
// A box, when there is one, has finite corners.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "standalone/kernel/curve_kernel.h"
#include "standalone/kernel/text_extents.h"
#include "standalone/text/text_codes.h"

namespace {

// Reads fixed-size values from the front of the input; zeros once it runs out.
class Bytes {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
  double real() {
    double v = 0;
    take(&v, sizeof v);
    return v;
  }
  int small() {
    std::uint8_t v = 0;
    take(&v, 1);
    return v % 12;
  }
  std::string rest() { return {reinterpret_cast<const char*>(data_), size_}; }

 private:
  void take(void* out, std::size_t n) {
    if (size_ < n) return;
    std::memcpy(out, data_, n);
    data_ += n;
    size_ -= n;
  }
  const std::uint8_t* data_;
  std::size_t size_;
};

void checkFinite(const std::optional<standalone::kernel::TextBox>& box) {
  if (!box) return;
  for (const ge::Point3d& c : *box)
    if (!std::isfinite(c.x) || !std::isfinite(c.y) || !std::isfinite(c.z)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes in(data, size);
  host::Text t;
  t.height = in.real();
  t.widthFactor = in.real();
  t.rotation = in.real();
  t.oblique = in.real();
  t.alignmentPoint = {in.real(), in.real(), 0};
  t.horizontalJustify = in.small();
  t.verticalJustify = in.small();
  t.mirrorFlags = in.small();
  host::MText m;
  m.height = t.height;
  m.referenceWidth = in.real();
  m.attachment = in.small() - 1;
  m.xDirection = {in.real(), in.real(), 0};
  double scale = in.real();
  t.text = m.text = in.rest();

  using namespace standalone::kernel;
  checkFinite(textBox(t));
  checkFinite(mtextBox(m));
  standalone::plainText(t.text);
  standalone::plainMTextLines(m.text);

  standalone::CurveKernel kernel;
  host::BlockContents block{{}, {t, m}};
  auto shared = std::make_shared<const host::BlockContents>(block);
  host::BlockContentsLookup lookup = [&](const std::string&) { return shared; };
  ge::Extents3d ext;
  host::BlockReference ref{"B", {}, {scale, 1, 1}};
  kernel.getBlockReferenceExtents(ref, lookup, ext);
  ge::Point3d nearest;
  kernel.getBlockReferenceClosestPoint(ref, lookup, {1, 1, 0}, nearest);
  return 0;
}
