#include "standalone/render/font_choice.h"

#include <cairo-ft.h>
#include <cairo.h>
#include <fontconfig/fontconfig.h>

#include <set>
#include <utility>

namespace standalone {

namespace {

// Text beyond Latin, Greek and Cyrillic needs a face chosen for its characters.
bool needsCoveringFont(const std::vector<std::uint32_t>& cps) {
  for (std::uint32_t cp : cps)
    if (cp >= 0x2000 && cp != 0x2300) return true;  // the diameter sign is in the default face
  return false;
}

// Family names of common Windows font files, by lower-case stem.
constexpr std::pair<std::string_view, std::string_view> kWindowsFonts[] = {
    {"arial", "Arial"},         {"arialn", "Arial Narrow"},   {"times", "Times New Roman"},
    {"cour", "Courier New"},    {"calibri", "Calibri"},       {"tahoma", "Tahoma"},
    {"verdana", "Verdana"},     {"simsun", "SimSun"},         {"simhei", "SimHei"},
    {"simkai", "KaiTi"},        {"simfang", "FangSong"},      {"msyh", "Microsoft YaHei"},
};

std::string lowerAscii(std::string_view s) {
  std::string out(s);
  for (char& c : out)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return out;
}

// A face fontconfig picks for covering all the characters, preferring the
// given family, then our default; the caller owns the reference.
cairo_font_face_t* coveringFace(const std::vector<std::uint32_t>& cps, const std::string& family) {
  FcPattern* pattern = FcPatternCreate();
  if (family != kFontFamily) FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
  FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(kFontFamily));
  FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>("sans-serif"));
  FcCharSet* chars = FcCharSetCreate();
  for (std::uint32_t cp : cps) FcCharSetAddChar(chars, cp);
  FcPatternAddCharSet(pattern, FC_CHARSET, chars);
  FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
  FcDefaultSubstitute(pattern);
  FcResult result;
  FcPattern* match = FcFontMatch(nullptr, pattern, &result);
  cairo_font_face_t* face = cairo_ft_font_face_create_for_pattern(match ? match : pattern);
  if (match) FcPatternDestroy(match);
  FcCharSetDestroy(chars);
  FcPatternDestroy(pattern);
  return face;
}

}  // namespace

std::string familyForFont(std::string_view font) {
  std::size_t slash = font.find_last_of("/\\");
  if (slash != std::string_view::npos) font.remove_prefix(slash + 1);
  std::size_t dot = font.rfind('.');
  if (font.empty()) return kFontFamily;
  if (dot == std::string_view::npos) return std::string(font);  // a family name
  std::string extension = lowerAscii(font.substr(dot + 1)), stem = lowerAscii(font.substr(0, dot));
  if (extension != "ttf" && extension != "ttc" && extension != "otf") return kFontFamily;  // SHX and others
  for (const auto& [file, family] : kWindowsFonts)
    if (stem == file) return std::string(family);
  return std::string(font.substr(0, dot));
}

std::vector<std::uint32_t> codePoints(const std::string& utf8) {
  std::vector<std::uint32_t> out;
  for (std::size_t i = 0; i < utf8.size();) {
    auto c = static_cast<unsigned char>(utf8[i]);
    int extra = c < 0x80 ? 0 : (c >> 5) == 6 ? 1 : (c >> 4) == 14 ? 2 : (c >> 3) == 30 ? 3 : -1;
    if (extra < 0 || i + static_cast<std::size_t>(extra) >= utf8.size()) {
      ++i;
      continue;
    }
    std::uint32_t cp = extra == 0 ? c : c & (0x3F >> extra);
    for (int k = 1; k <= extra; ++k) cp = (cp << 6) | (static_cast<unsigned char>(utf8[i + k]) & 0x3F);
    out.push_back(cp);
    i += static_cast<std::size_t>(extra) + 1;
  }
  return out;
}

FontChooser::~FontChooser() {
  for (auto& [key, face] : faces_) cairo_font_face_destroy(face);
}

void FontChooser::select(cairo_t* cr, const std::string& utf8, const std::string& font) {
  std::string family = familyForFont(font);
  std::vector<std::uint32_t> cps = codePoints(utf8);
  if (!needsCoveringFont(cps)) {
    cairo_select_font_face(cr, family.c_str(), CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    return;
  }
  std::set<std::uint32_t> blocks;
  for (std::uint32_t cp : cps) blocks.insert(cp >> 8);
  std::string key = family + "|";
  for (std::uint32_t b : blocks) key += std::to_string(b) + ",";
  auto it = faces_.find(key);
  if (it == faces_.end()) it = faces_.emplace(key, coveringFace(cps, family)).first;
  cairo_set_font_face(cr, it->second);
}

}  // namespace standalone
