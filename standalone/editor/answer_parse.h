#pragma once
// Reading typed answers: whole numbers, reals, points and keywords, by the
// host's rules for its command line.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ge/point.h"

namespace standalone {

// A whole number in the host's 16-bit range (-32768..32767), decimal with an optional sign.
std::optional<int> parseInteger(std::string_view text);
// True when the text is a whole number of any size (so the complaint can tell
// "not an integer" from "out of range").
bool looksLikeInteger(std::string_view text);
// A finite decimal number ("2", "-0.5", ".25", "1e3").
std::optional<double> parseReal(std::string_view text);

// A typed point: "x,y" or "x,y,z" absolute, "@dx,dy(,dz)" relative to the last
// point, "@" alone the last point itself.
struct PointAnswer {
  ge::Point3d value;
  bool relative = false;
  bool hasZ = false;
};
std::optional<PointAnswer> parsePoint(std::string_view text);
// The point an answer names, given the last point entered.
ge::Point3d resolvePoint(const PointAnswer& answer, const ge::Point3d& lastPoint);

// The keyword list of initGet: "Close Open", abbreviations by capital letters
// ("LType" answers to "LT", "LTY", ...), an explicit abbreviation after a
// comma ("LTYPE,LT"), and global forms after "_" ("Ja Nein _ Yes No").
class KeywordList {
 public:
  KeywordList() = default;
  explicit KeywordList(std::string_view list);

  bool empty() const { return local_.empty(); }
  // The keyword an answer selects: the global form when the list has global
  // forms, else the keyword as spelled in the list. A leading "_" asks for the
  // global form by its own spelling.
  std::optional<std::string> match(std::string_view answer) const;

 private:
  struct Keyword {
    std::string full;   // as spelled, without the ",abbrev" part
    std::string abbrev;  // the shortest accepted answer (upper case)
  };
  static Keyword makeKeyword(std::string_view token);
  static bool answers(const Keyword& k, std::string_view upperAnswer);

  std::vector<Keyword> local_;
  std::vector<Keyword> global_;  // same length as local_ when present
};

// ASCII upper case (keywords and command names are ASCII).
std::string toUpperAscii(std::string_view text);
// Case-insensitive ASCII equality.
bool equalsNoCase(std::string_view a, std::string_view b);
// A real printed as the host prints it on its command line: up to 8 significant digits, no trailing zeros.
std::string displayReal(double value);
// "x,y,z" with displayReal for each coordinate.
std::string displayPoint(const ge::Point3d& p);

}  // namespace standalone
