#pragma once
// Boxes of single-line and multi-line texts without a font engine: the width
// of a character is an estimate per character class, not a measured glyph.
// Good enough to pick, window and zoom to a label; the renderer measures
// real glyphs.
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ge/point.h"
#include "host/entity.h"

namespace standalone::kernel {

// Corners of a text's box in WCS: lower-left, lower-right, upper-right,
// upper-left as the text reads (mirror flags and oblique applied).
using TextBox = std::array<ge::Point3d, 4>;

// Estimated advance of plain UTF-8 text in multiples of the text height:
// about 0.75 for Latin and other narrow characters, 1.4 for CJK and other
// characters of three or more UTF-8 bytes. An estimate, not a font metric.
double estimatedWidthInHeights(std::string_view plainUtf8);

// Box of a TEXT: height × estimated width × width factor from its alignment
// point by its justification (aligned and fit texts span their two alignment
// points), rotated in the text's OCS. Nothing for an empty text or a height
// that is not a positive finite number.
std::optional<TextBox> textBox(const host::Text& t);

// Box of an MTEXT: the reference width when there is one (lines wrapped at
// it), otherwise the longest line; lines 5/3 of the height apart; placed by
// the attachment point along the X direction in the plane of the normal.
// Vertical drawing direction is not modelled (taken as left to right).
std::optional<TextBox> mtextBox(const host::MText& t);

}  // namespace standalone::kernel
