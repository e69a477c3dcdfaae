#include "standalone/kernel/text_extents.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <numbers>

#include "host/utf8.h"
#include "standalone/kernel/ocs.h"
#include "standalone/text/text_codes.h"

namespace standalone::kernel {

namespace {

// Estimated advances in text heights. The text height is the capital height;
// an average Latin character of the common drafting fonts is about three
// quarters of it wide, a CJK character a little more than the full em. The
// renderer's rough box uses the same figures.
constexpr double kNarrowAdvance = 0.75;
constexpr double kWideAdvance = 1.4;
// UTF-8 lead bytes from here on start characters of U+3000 and above (CJK).
constexpr unsigned char kFirstWideLeadByte = 0xE3;
// Distance between MTEXT baselines per unit of text height (line spacing factor 1).
constexpr double kMTextLinePitch = 5.0 / 3.0;
// The host refuses obliquing angles beyond this; larger stored values are clamped.
constexpr double kMaxOblique = 85.0 * std::numbers::pi / 180.0;

enum TextJustify { kLeft = 0, kCenter = 1, kRight = 2, kAligned = 3, kMiddle = 4, kFit = 5 };
enum TextVertical { kBaseline = 0, kBottom = 1, kVerticalMiddle = 2, kTop = 3 };

struct Placement {
  ge::Point3d anchor;
  ge::Vector3d dir, up;  // unit vectors in WCS
};

// The box corners of the local rectangle [x0, x1] × [y0, y1] (text heights
// along up, drawing units along dir), sheared by the oblique angle and mirrored.
TextBox placeBox(const Placement& p, double x0, double x1, double y0, double y1, double shear, bool backward,
                 bool upsideDown) {
  TextBox box;
  const double xs[4] = {x0, x1, x1, x0}, ys[4] = {y0, y0, y1, y1};
  for (int k = 0; k < 4; ++k) {
    double x = xs[k] + ys[k] * shear, y = ys[k];
    if (backward) x = -x;
    if (upsideDown) y = -y;
    box[k] = p.anchor + p.dir * x + p.up * y;
  }
  return box;
}

bool isFinite(const ge::Point3d& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }
bool isFinite(const ge::Vector3d& v) { return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z); }

// The box when every corner is a finite point; nothing when the sizes overflowed.
std::optional<TextBox> finiteBox(const TextBox& box) {
  for (const ge::Point3d& c : box)
    if (!isFinite(c)) return std::nullopt;
  return box;
}

// Unit normal of a record; the Z axis for a zero or broken one.
ge::Vector3d unitNormal(const ge::Vector3d& n) {
  ge::Vector3d u = n.normalized();
  return isFinite(u) && u.length() > 0 ? u : ge::kZAxis;
}

// Widths in drawing units of the lines of one paragraph wrapped at width
// (greedy at spaces; a word longer than the width keeps a line of its own).
std::vector<double> wrappedWidths(const std::string& paragraph, double height, double width) {
  std::vector<double> widths;
  double space = kNarrowAdvance * height, current = -1;  // -1: the line has no word yet
  std::size_t start = 0;
  while (start <= paragraph.size()) {
    std::size_t end = paragraph.find(' ', start);
    if (end == std::string::npos) end = paragraph.size();
    double word = estimatedWidthInHeights(std::string_view(paragraph).substr(start, end - start)) * height;
    if (current < 0) {
      current = word;
    } else if (current + space + word <= width) {
      current += space + word;
    } else {
      widths.push_back(current);
      current = word;
    }
    start = end + 1;
  }
  widths.push_back(std::max(current, 0.0));
  return widths;
}

}  // namespace

double estimatedWidthInHeights(std::string_view plainUtf8) {
  double ems = 0;
  for (unsigned char c : plainUtf8)
    if ((c & 0xC0) != 0x80) ems += c >= kFirstWideLeadByte ? kWideAdvance : kNarrowAdvance;
  return ems;
}


std::optional<TextBox> textBox(const host::Text& t) {
  if (!(std::isfinite(t.height) && t.height > 0) || !isFinite(t.position) || !std::isfinite(t.rotation))
    return std::nullopt;
  std::string plain = plainText(t.text);
  if (plain.empty()) return std::nullopt;
  double widthFactor = std::isfinite(t.widthFactor) && t.widthFactor > 0 ? t.widthFactor : 1.0;
  double width = estimatedWidthInHeights(plain) * t.height * widthFactor;
  double oblique = std::isfinite(t.oblique) ? std::clamp(t.oblique, -kMaxOblique, kMaxOblique) : 0.0;
  double shear = std::tan(oblique);
  bool backward = (t.mirrorFlags & 2) != 0, upsideDown = (t.mirrorFlags & 4) != 0;

  Frame f = ocsFrame(unitNormal(t.normal));
  Placement p{t.position, f.x * std::cos(t.rotation) + f.y * std::sin(t.rotation), {}};
  double x0 = 0, y0 = 0;
  int h = t.horizontalJustify, v = t.verticalJustify;
  if (h == kAligned || h == kFit) {
    // The text runs from the first to the second alignment point.
    ge::Vector3d span = t.alignmentPoint - t.position;
    span = span - f.z * span.dot(f.z);
    if (isFinite(span) && span.length() > 0) {
      p.dir = span.normalized();
      width = span.length();
    }
  } else if (h != kLeft || v != kBaseline) {
    if (!isFinite(t.alignmentPoint)) return std::nullopt;
    p.anchor = t.alignmentPoint;
    x0 = h == kRight ? -width : h == kLeft ? 0 : -width / 2;
    y0 = h == kMiddle || v == kVerticalMiddle ? -t.height / 2 : v == kTop ? -t.height : 0;
  }
  p.up = f.z.cross(p.dir);
  return finiteBox(placeBox(p, x0, x0 + width, y0, y0 + t.height, shear, backward, upsideDown));
}

std::optional<TextBox> mtextBox(const host::MText& t) {
  if (!(std::isfinite(t.height) && t.height > 0) || !isFinite(t.position)) return std::nullopt;
  std::vector<std::string> lines = plainMTextLines(t.text);
  bool wraps = std::isfinite(t.referenceWidth) && t.referenceWidth > 0;
  double width = wraps ? t.referenceWidth : 0;
  std::size_t lineCount = 0;
  bool anyText = false;
  for (const std::string& line : lines) {
    anyText = anyText || !line.empty();
    std::vector<double> widths =
        wraps ? wrappedWidths(line, t.height, t.referenceWidth)
              : std::vector<double>{estimatedWidthInHeights(line) * t.height};
    lineCount += widths.size();
    for (double w : widths) width = std::max(width, w);
  }
  if (!anyText) return std::nullopt;

  ge::Vector3d n = unitNormal(t.normal);
  ge::Vector3d dir = isFinite(t.xDirection) ? t.xDirection - n * t.xDirection.dot(n) : ge::Vector3d{};
  dir = dir.length() > 0 ? dir.normalized() : ocsFrame(n).x;
  Placement p{t.position, dir, n.cross(dir)};
  // Attachment 1..9: rows top, middle, bottom; columns left, centre, right.
  int attachment = std::clamp(t.attachment, 1, 9) - 1;
  int row = attachment / 3, column = attachment % 3;
  double height = t.height + t.height * kMTextLinePitch * static_cast<double>(lineCount - 1);
  double x0 = -width * column / 2.0;
  double y1 = row == 0 ? 0 : row == 1 ? height / 2 : height;  // top of the box above the anchor
  return finiteBox(placeBox(p, x0, x0 + width, y1 - height, y1, 0, false, false));
}

}  // namespace standalone::kernel
