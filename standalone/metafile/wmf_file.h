#pragma once
// Windows metafiles (WMF) of straight-edged figures, written and read with
// libuemf: what WMFOUT writes and WMFIN brings in. Coordinates are the
// metafile's logical units, 16-bit, y down.
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace standalone {

// A metafile could not be written or read; the message says why.
class WmfError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct WmfPoint {
  std::int16_t x = 0, y = 0;
  bool operator==(const WmfPoint&) const = default;
};

// One drawing record: a closed figure (a polygon, or a polygon with holes,
// written as one POLYPOLYGON) or open polylines.
struct WmfFigure {
  std::vector<std::vector<WmfPoint>> parts;
  bool closed = false;
  bool operator==(const WmfFigure&) const = default;
};

// The picture's frame in logical units (y down): what a reader shows.
struct WmfFrame {
  std::int16_t left = 0, top = 0, right = 0, bottom = 0;
  bool operator==(const WmfFrame&) const = default;
  int width() const { return right - left; }
  int height() const { return bottom - top; }
};

struct WmfPicture {
  WmfFrame frame;
  std::uint16_t unitsPerInch = 1440;
  std::vector<WmfFigure> figures;
};

// Most points one record holds (its counts are 16-bit).
inline constexpr std::size_t kWmfMaxPointsPerRecord = 32000;

// Writes a placeable metafile: the frame as its bounding box and window,
// figures without fill (a null brush) drawn with a black pen. Written beside
// the file and renamed over it when complete. Throws WmfError.
void writeWmf(const std::filesystem::path& file, const WmfPicture& picture);

// Reads the figures of a metafile: POLYGON, POLYPOLYGON and RECTANGLE as
// closed figures, POLYLINE and MOVETO/LINETO runs as open ones; other
// records are passed over. The frame is the placeable header's box, else
// the last window the file sets, else the extents of its figures. Throws
// WmfError for anything that is not a well-formed metafile.
WmfPicture parseWmf(std::string_view bytes);
WmfPicture readWmf(const std::filesystem::path& file);

}  // namespace standalone
