#pragma once
// Screen colours of entities: the standard 256-entry index palette, true
// colours, and the rules that pick an entity's colour on a white page.
#include <cstdint>
#include <optional>

#include "host/entity.h"

namespace standalone {

// A colour with channels 0..1.
struct Rgb {
  double r = 0, g = 0, b = 0;
  bool operator==(const Rgb&) const = default;
};

inline constexpr Rgb kBlack{0, 0, 0};
inline constexpr Rgb kWhite{1, 1, 1};

// Colour of an index colour 1..255 from the standard palette for a white page;
// index 7 (white on the host's dark screen) is black. Indices outside 1..255
// give black.
Rgb aciToRgb(int index);

// A packed 0xRRGGBB value as a colour.
Rgb packedToRgb(std::uint32_t rgb);

// The colour an entity is drawn in. byBlock is the resolved colour of the
// block reference the entity is drawn through (black at the top level);
// byLayer is the colour of the entity's layer when the drawing knows it.
Rgb resolveColor(const host::Color& color, const Rgb& byBlock, const std::optional<host::Color>& byLayer);

}  // namespace standalone
