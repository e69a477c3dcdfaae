#include "standalone/kernel/text_extents.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <numbers>

#include "host/utf8.h"
#include "standalone/kernel/ocs.h"

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

// A %% control code at s[i] (which starts with "%%"): appends what it shows
// and moves i past it.
void takePercentCode(std::string_view s, std::size_t& i, std::string& out) {
  std::size_t rest = s.size() - i;
  char code = rest > 2 ? static_cast<char>(std::tolower(static_cast<unsigned char>(s[i + 2]))) : '\0';
  if (code == 'c' || code == 'd' || code == 'p') {
    out += 'o';  // diameter, degree, plus-minus: one narrow character each
    i += 3;
  } else if (code == 'u' || code == 'o') {
    i += 3;
  } else if (code == '%') {
    out += '%';
    i += 3;
  } else if (rest >= 5 && std::isdigit(static_cast<unsigned char>(s[i + 2])) &&
             std::isdigit(static_cast<unsigned char>(s[i + 3])) && std::isdigit(static_cast<unsigned char>(s[i + 4]))) {
    out += 'o';
    i += 5;
  } else {
    out += "%%";
    i += 2;
  }
}

bool isHexDigits(std::string_view s) {
  return std::all_of(s.begin(), s.end(), [](char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; });
}

// The longer part of a stack's content "a^b", "a/b" or "a#b".
std::string_view longerStackPart(std::string_view stack) {
  std::size_t split = stack.find_first_of("^/#");
  if (split == std::string_view::npos) return stack;
  std::string_view top = stack.substr(0, split), bottom = stack.substr(split + 1);
  return top.size() >= bottom.size() ? top : bottom;
}

// Index just past the next ';' from i (the end of a code's argument), or the end.
std::size_t pastSemicolon(std::string_view s, std::size_t i) {
  std::size_t j = s.find(';', i);
  return j == std::string_view::npos ? s.size() : j + 1;
}

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

std::string plainTextContent(std::string_view content) {
  std::string out;
  for (std::size_t i = 0; i < content.size();) {
    if (content.substr(i, 2) == "%%") {
      takePercentCode(content, i, out);
    } else {
      out += content[i++];
    }
  }
  return out;
}

std::vector<std::string> mtextPlainLines(std::string_view s) {
  std::vector<std::string> lines(1);
  for (std::size_t i = 0; i < s.size();) {
    char c = s[i];
    if (c == '{' || c == '}') {
      ++i;
    } else if (c == '\n') {
      lines.emplace_back();
      ++i;
    } else if (s.substr(i, 2) == "%%") {
      takePercentCode(s, i, lines.back());
    } else if (c != '\\' || i + 1 == s.size()) {
      lines.back() += c;
      ++i;
    } else {
      char code = s[i + 1];
      i += 2;
      switch (code) {
        case 'P': case 'N': case 'X':  // paragraph, column and dimension-line breaks
          lines.emplace_back();
          break;
        case '~':
          lines.back() += ' ';
          break;
        case 'S': {
          std::size_t end = pastSemicolon(s, i);
          std::string_view stack = s.substr(i, end - i);
          if (stack.ends_with(';')) stack.remove_suffix(1);
          lines.back() += longerStackPart(stack);
          i = end;
          break;
        }
        case 'U':
          if (i + 5 <= s.size() && s[i] == '+' && isHexDigits(s.substr(i + 1, 4))) {
            host::appendUtf8(lines.back(), static_cast<unsigned>(std::stoul(std::string(s.substr(i + 1, 4)), nullptr, 16)));
            i += 5;
          } else {
            lines.back() += code;
          }
          break;
        case 'A': case 'C': case 'c': case 'F': case 'f': case 'H': case 'Q': case 'T': case 'W': case 'p':
          i = pastSemicolon(s, i);  // a code with an argument up to ';'
          break;
        case 'L': case 'l': case 'O': case 'o': case 'K': case 'k':
          break;  // underline, overline and strike-through switches
        default:
          lines.back() += code;  // \\, \{, \} and unknown codes show the character
      }
    }
  }
  return lines;
}

std::optional<TextBox> textBox(const host::Text& t) {
  if (!(std::isfinite(t.height) && t.height > 0) || !isFinite(t.position) || !std::isfinite(t.rotation))
    return std::nullopt;
  std::string plain = plainTextContent(t.text);
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
  std::vector<std::string> lines = mtextPlainLines(t.text);
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
