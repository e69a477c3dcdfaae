#pragma once
// The coordinate text file: one point per line, blocks of points ended by
// separator lines. Each line is cleaned up and split into fields:
//   1. trimmed; "//" after the first character starts a comment that is cut;
//   2. "，" ";" "；" "、" "|" become ",", and every blank " " is removed, so
//      blank-separated numbers run together into one field;
//   3. split at "," keeping empty pieces (a line without a comma is one field,
//      or none when empty); fields 1 and 2 are trimmed and must not be empty.
// Three or more fields make a 3D point, two a point with z = 0, fewer a
// separator (an empty line, a word, a line beginning with "//"). A field that
// is not a number reads as 0 (its leading number, as wcstod reads it).
#include <string>
#include <string_view>
#include <vector>

#include "commands/text_lines.h"
#include "ge/point.h"

namespace commands {

struct CoordinateLine {
  enum class Kind { kPoint, kSeparator, kError };
  Kind kind = Kind::kSeparator;
  ge::Point3d point;
};

CoordinateLine parseCoordinateLine(std::string_view line);

// A line that had a point's field count but an empty first or second field.
struct CoordinateError {
  int lineNumber = 0;  // 1-based
  std::string line;    // as read, before the clean-up
};

// The file read through: the blocks of points a separator line ended (a
// block still open at the end of the file is not drawn) and the error lines,
// each in file order. A block of a single point is kept: the builder decides.
struct CoordinateFile {
  std::vector<ge::PointList> blocks;
  std::vector<CoordinateError> errors;
};

// The file's text as decodeText gives it, split into lines as decodeTextLines
// splits it; large texts are read in two halves at once.
CoordinateFile readCoordinateText(std::string_view text);
// Lines without their line ends.
CoordinateFile readCoordinateLines(const std::vector<std::string>& lines);
CoordinateFile readCoordinateLines(const TextLines& lines);

}  // namespace commands
