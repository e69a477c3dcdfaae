#pragma once
// Internal to the renderer: picks the cairo font face for a text. Latin text
// uses our default family; text with other scripts (CJK above all) gets a
// face fontconfig chooses for covering its characters.
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

typedef struct _cairo cairo_t;
typedef struct _cairo_font_face cairo_font_face_t;

namespace standalone {

// Font family for all text; fontconfig substitutes the nearest installed face.
inline constexpr const char* kFontFamily = "DejaVu Sans";

// The font family that stands for the font a text style names. SHX fonts
// (and an empty name) have no outlines to take: they are drawn in our default
// family, and characters it lacks (Chinese above all) in a face fontconfig
// finds for them (WenQuanYi Micro Hei or Noto Sans CJK). A TrueType file
// gets the family of its common Windows name (arial.ttf: Arial, simsun.ttc:
// SimSun, ...), else its stem; fontconfig then picks the installed face
// nearest to that family. A family name stays as it is.
std::string familyForFont(std::string_view font);

// Code points of UTF-8 text; malformed bytes are skipped.
std::vector<std::uint32_t> codePoints(const std::string& utf8);

class FontChooser {
 public:
  FontChooser() = default;
  ~FontChooser();
  FontChooser(const FontChooser&) = delete;
  FontChooser& operator=(const FontChooser&) = delete;

  // Sets the face for the text in the font a text style names (see
  // familyForFont) on the context, inside the caller's save/restore.
  void select(cairo_t* cr, const std::string& utf8, const std::string& font = "");

 private:
  // Faces by the set of 256-code-point blocks the text uses.
  std::map<std::string, cairo_font_face_t*> faces_;
};

}  // namespace standalone
