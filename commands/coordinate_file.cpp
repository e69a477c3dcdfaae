#include "commands/coordinate_file.h"

#include <cstdlib>

namespace commands {

namespace {

constexpr std::string_view kWhite = " \t\r\n\f\v";

std::string_view trimmed(std::string_view s) {
  std::size_t first = s.find_first_not_of(kWhite);
  if (first == std::string_view::npos) return {};
  return s.substr(first, s.find_last_not_of(kWhite) - first + 1);
}

// The longest leading number of a field, 0 when it has none. Leading white
// space is skipped as wcstod skips it; the copy gives strtod its terminator.
double leadingNumber(std::string_view field) {
  std::string text(field);
  return std::strtod(text.c_str(), nullptr);
}

// The clean-up of steps 1 and 2 into a line that splits at ",".
std::string cleanedUp(std::string_view line) {
  std::string_view text = trimmed(line);
  if (std::size_t comment = text.find("//", 1); comment != std::string_view::npos) text = text.substr(0, comment);
  constexpr std::string_view kSeparators[] = {"，", ";", "；", "、", "|"};
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    if (text[i] == ' ') {
      ++i;
      continue;
    }
    bool replaced = false;
    for (std::string_view sep : kSeparators) {
      if (text.substr(i).starts_with(sep)) {
        out += ',';
        i += sep.size();
        replaced = true;
        break;
      }
    }
    if (!replaced) out += text[i++];
  }
  return out;
}

std::vector<std::string_view> fieldsOf(std::string_view text) {
  std::vector<std::string_view> fields;
  if (text.empty()) return fields;
  std::size_t begin = 0;
  for (;;) {
    std::size_t comma = text.find(',', begin);
    fields.push_back(text.substr(begin, comma == std::string_view::npos ? std::string_view::npos : comma - begin));
    if (comma == std::string_view::npos) return fields;
    begin = comma + 1;
  }
}

}  // namespace

CoordinateLine parseCoordinateLine(std::string_view line) {
  std::string text = cleanedUp(line);
  std::vector<std::string_view> fields = fieldsOf(text);
  if (fields.size() < 2) return {};
  std::string_view x = trimmed(fields[0]), y = trimmed(fields[1]);
  if (x.empty() || y.empty()) return {CoordinateLine::Kind::kError, {}};
  double z = fields.size() >= 3 ? leadingNumber(fields[2]) : 0.0;
  return {CoordinateLine::Kind::kPoint, {leadingNumber(x), leadingNumber(y), z}};
}

CoordinateFile readCoordinateLines(const std::vector<std::string>& lines) {
  CoordinateFile file;
  ge::PointList current;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    CoordinateLine parsed = parseCoordinateLine(lines[i]);
    switch (parsed.kind) {
      case CoordinateLine::Kind::kPoint: current.push_back(parsed.point); break;
      case CoordinateLine::Kind::kError: file.errors.push_back({static_cast<int>(i + 1), lines[i]}); break;
      case CoordinateLine::Kind::kSeparator:
        if (!current.empty()) file.blocks.push_back(std::move(current));
        current.clear();
        break;
    }
  }
  return file;
}

}  // namespace commands
