#include "commands/batch_offset.h"

#include <cstdlib>
#include <string>

#include "geom/append.h"
#include "geom/curve_orientation.h"
#include "geom/sampling.h"

namespace commands {

namespace {

// Curves shorter than this are not offset.
constexpr double kShortestCurve = 0.0001;
// A parsed spacing below this takes its predecessor's value; a first one
// below it makes the list invalid.
constexpr double kSmallestListSpacing = 0.0001;

std::string replaceAll(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

std::string_view trimmed(std::string_view s) {
  constexpr std::string_view kBlanks = " \t\r\n\f\v";
  std::size_t first = s.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return s.substr(first, s.find_last_not_of(kBlanks) - first + 1);
}

// The leading number of a piece, 0 when it has none (as wcstod reads it).
double leadingNumber(const std::string& piece) { return std::strtod(piece.c_str(), nullptr); }

}  // namespace

OffsetSide offsetSideOfKeyword(std::string_view keyword) {
  if (keyword.starts_with('I')) return OffsetSide::kInner;
  if (keyword.starts_with('O')) return OffsetSide::kOutside;
  return OffsetSide::kBoth;
}

SpacingList parseSpacingList(std::string_view text) {
  std::string clean = replaceAll(std::string(trimmed(text)), "，", ",");
  clean = replaceAll(std::move(clean), " ", "");
  clean = replaceAll(std::move(clean), "/", ",");

  SpacingList list;
  list.spacings.fill(-1.0);
  int read = 0;
  if (!clean.empty()) {
    std::size_t begin = 0;
    while (read < kMostCopiesPerSide) {
      std::size_t comma = clean.find(',', begin);
      list.spacings[read++] = leadingNumber(clean.substr(begin, comma - begin));
      if (comma == std::string::npos) break;
      begin = comma + 1;
    }
  }
  int given = std::max(read, 1);
  for (int k = given; k < kMostCopiesPerSide; ++k) list.spacings[k] = list.spacings[given - 1];
  for (int k = 1; k < kMostCopiesPerSide; ++k)
    if (list.spacings[k] < kSmallestListSpacing) list.spacings[k] = list.spacings[k - 1];
  list.valid = read > 0 && list.spacings[0] > kSmallestListSpacing;
  return list;
}

namespace {

// Appends the host's offsets at one signed distance; the number appended.
int addOffsets(host::Host& host, const host::Entity& source, const host::EntityData& oriented, double distance) {
  std::vector<host::EntityData> results;
  if (host.curves.getOffsetCurves(oriented, distance, results) != host::ErrorStatus::eOk) return 0;
  int added = 0;
  for (host::EntityData& data : results) {
    host::Entity copy;
    copy.props = source.props;
    copy.props.layer = host.drawing.currentLayer();
    copy.props.color = host.drawing.currentColor();
    copy.data = std::move(data);
    if (geom::appendBesideSource(host.drawing, source.id, copy) == host::ErrorStatus::eOk) ++added;
  }
  return added;
}

}  // namespace

int offsetCopies(host::Host& host, host::ObjectId source, OffsetSide side, int count, const Spacings& spacings) {
  std::optional<host::Entity> entity = host.drawing.read(source);
  if (!entity || !host::isCurve(entity->data)) return 0;
  if (geom::curveLength(host.curves, entity->data) < kShortestCurve) return 0;
  host::EntityData oriented = entity->data;
  geom::orientForOffset(host.curves, oriented);
  int made = 0;
  double distance = 0;
  for (int k = 0; k < count && k < kMostCopiesPerSide; ++k) {
    distance += spacings[k];
    if (side != OffsetSide::kInner) made += addOffsets(host, *entity, oriented, distance);
    if (side != OffsetSide::kOutside) made += addOffsets(host, *entity, oriented, -distance);
  }
  return made;
}

}  // namespace commands
