#include "standalone/metafile/wmf_file.h"

#include <uwmf.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <limits>
#include <memory>
#include <optional>
#include <sstream>

#include "io/replace_file.h"

namespace standalone {

namespace {

// Byte offsets in the placeable header (META_PLACEABLE).
constexpr std::size_t kPlaceableBox = 6;
constexpr std::size_t kPlaceableChecksum = 20;
constexpr std::uint32_t kPlaceableKey = 0x9AC6CDD7;
// Bytes before a record's parameters: its size in words and its function.
constexpr std::size_t kRecordHead = 6;
// Metafiles larger than this are refused before they are read.
constexpr std::uintmax_t kMaxFileBytes = 256u << 20;

// libuemf's writing state, freed on every path.
struct Writer {
  WMFTRACK* track = nullptr;
  WMFHANDLES* handles = nullptr;
  ~Writer() {
    if (track) wmf_free(&track);
    if (handles) wmf_htable_free(&handles);
  }
  void append(char* record) {
    if (!record || wmf_append(reinterpret_cast<U_METARECORD*>(record), track, 1) != 0)
      throw WmfError("the metafile record could not be made");
  }
};

void putInt16(char* at, std::int16_t v) { std::memcpy(at, &v, 2); }

// The placeable header's box is the frame (libuemf puts it at the origin).
void setPlaceableBox(char* header, const WmfFrame& f) {
  putInt16(header + kPlaceableBox, f.left);
  putInt16(header + kPlaceableBox + 2, f.top);
  putInt16(header + kPlaceableBox + 4, f.right);
  putInt16(header + kPlaceableBox + 6, f.bottom);
  std::int16_t words[10];
  std::memcpy(words, header, sizeof words);
  std::uint16_t sum = static_cast<std::uint16_t>(U_16_checksum(words, 10));
  std::memcpy(header + kPlaceableChecksum, &sum, 2);
}

std::vector<U_POINT16> points16(const std::vector<WmfPoint>& part) {
  std::vector<U_POINT16> out;
  out.reserve(part.size());
  for (const WmfPoint& p : part) out.push_back(U_POINT16{p.x, p.y});
  return out;
}

void appendFigure(Writer& w, const WmfFigure& figure) {
  if (!figure.closed) {
    for (const auto& part : figure.parts) {
      // Long polylines go in pieces that share their joining points.
      for (std::size_t from = 0; from + 1 < part.size(); from += kWmfMaxPointsPerRecord - 1) {
        std::size_t to = std::min(part.size(), from + kWmfMaxPointsPerRecord);
        std::vector<WmfPoint> piece(part.begin() + static_cast<std::ptrdiff_t>(from),
                                    part.begin() + static_cast<std::ptrdiff_t>(to));
        std::vector<U_POINT16> pts = points16(piece);
        w.append(U_WMRPOLYLINE_set(static_cast<std::uint16_t>(pts.size()), pts.data()));
      }
    }
    return;
  }
  // Parts go together in POLYPOLYGON records of at most the record's points.
  std::vector<U_POINT16> pts;
  std::vector<std::uint16_t> counts;
  auto flush = [&] {
    if (counts.empty()) return;
    if (counts.size() == 1)
      w.append(U_WMRPOLYGON_set(counts[0], pts.data()));
    else
      w.append(U_WMRPOLYPOLYGON_set(static_cast<std::uint16_t>(counts.size()), counts.data(), pts.data()));
    pts.clear();
    counts.clear();
  };
  for (const auto& part : figure.parts) {
    if (part.size() < 2) continue;
    if (part.size() > kWmfMaxPointsPerRecord) throw WmfError("a polygon has too many points for a metafile");
    if (pts.size() + part.size() > kWmfMaxPointsPerRecord) flush();
    std::vector<U_POINT16> p = points16(part);
    pts.insert(pts.end(), p.begin(), p.end());
    counts.push_back(static_cast<std::uint16_t>(part.size()));
  }
  flush();
}

// Reading ------------------------------------------------------------------

class Reader {
 public:
  explicit Reader(std::string_view bytes) : begin_(bytes.data()), end_(bytes.data() + bytes.size()) {}

  WmfPicture read() {
    if (end_ - begin_ < static_cast<std::ptrdiff_t>(U_SIZE_WMRHEADER))
      throw WmfError("the file is too short to be a Windows metafile");
    U_WMRPLACEABLE placeable{};
    U_WMRHEADER header{};
    int offset = wmfheader_get(begin_, end_, &placeable, &header);
    if (offset <= 0) throw WmfError("the file is not a Windows metafile (no valid header)");
    bool hasBox = placeable.Key == kPlaceableKey;
    if (hasBox) {
      picture_.frame = WmfFrame{placeable.Dst.left, placeable.Dst.top, placeable.Dst.right, placeable.Dst.bottom};
      if (placeable.Inch > 0) picture_.unitsPerInch = placeable.Inch;
    }
    const char* at = begin_ + offset;
    bool ended = false;
    while (!ended) {
      if (at >= end_) throw WmfError("the metafile ends without its end record");
      std::size_t size = U_WMRRECSAFE_get(at, end_);
      if (size < kRecordHead || size > static_cast<std::size_t>(end_ - at))
        throw WmfError("the metafile has a damaged record");
      ended = record(at, size);
      at += size;
    }
    endRun();
    if (!hasBox) picture_.frame = window_ ? *window_ : extents();
    return std::move(picture_);
  }

 private:
  // Handles one record; true at the end record.
  bool record(const char* at, std::size_t size) {
    auto type = static_cast<unsigned char>(at[4]);
    switch (type) {
      case U_WMR_EOF:
        return true;
      case U_WMR_POLYGON:
      case U_WMR_POLYLINE: {
        endRun();
        std::uint16_t n = 0;
        const char* data = nullptr;
        int ok = type == U_WMR_POLYGON ? U_WMRPOLYGON_get(at, &n, &data) : U_WMRPOLYLINE_get(at, &n, &data);
        if (!ok || !fits(at, size, data, 4u * n)) throw WmfError("the metafile has a damaged polygon record");
        picture_.figures.push_back({{points(data, n)}, type == U_WMR_POLYGON});
        break;
      }
      case U_WMR_POLYPOLYGON: {
        endRun();
        std::uint16_t parts = 0;
        const std::uint16_t* countsAt = nullptr;
        const char* data = nullptr;
        if (!U_WMRPOLYPOLYGON_get(at, &parts, &countsAt, &data) ||
            !fits(at, size, reinterpret_cast<const char*>(countsAt), 2u * parts))
          throw WmfError("the metafile has a damaged polygon record");
        WmfFigure figure{{}, true};
        std::size_t used = 0;
        for (std::uint16_t i = 0; i < parts; ++i) {
          std::uint16_t n = 0;
          std::memcpy(&n, reinterpret_cast<const char*>(countsAt) + 2u * i, 2);
          if (!fits(at, size, data + 4 * used, 4u * n)) throw WmfError("the metafile has a damaged polygon record");
          figure.parts.push_back(points(data + 4 * used, n));
          used += n;
        }
        picture_.figures.push_back(std::move(figure));
        break;
      }
      case U_WMR_RECTANGLE: {
        endRun();
        U_RECT16 r{};
        if (size < kRecordHead + 8 || !U_WMRRECTANGLE_get(at, &r))
          throw WmfError("the metafile has a damaged rectangle record");
        picture_.figures.push_back({{{{r.left, r.top}, {r.right, r.top}, {r.right, r.bottom}, {r.left, r.bottom}}}, true});
        break;
      }
      case U_WMR_MOVETO:
      case U_WMR_LINETO: {
        U_POINT16 p{};
        int ok = type == U_WMR_MOVETO ? U_WMRMOVETO_get(at, &p) : U_WMRLINETO_get(at, &p);
        if (size < kRecordHead + 4 || !ok) throw WmfError("the metafile has a damaged line record");
        if (type == U_WMR_MOVETO) {
          endRun();
        } else {
          if (run_.empty()) run_.push_back(current_);
          run_.push_back({p.x, p.y});
        }
        current_ = {p.x, p.y};
        break;
      }
      case U_WMR_SETWINDOWORG:
      case U_WMR_SETWINDOWEXT: {
        U_POINT16 p{};
        int ok = type == U_WMR_SETWINDOWORG ? U_WMRSETWINDOWORG_get(at, &p) : U_WMRSETWINDOWEXT_get(at, &p);
        if (size < kRecordHead + 4 || !ok) throw WmfError("the metafile has a damaged window record");
        // The records hold y before x; libuemf gives them back as a point.
        if (type == U_WMR_SETWINDOWORG) origin_ = {p.x, p.y};
        else extent_ = {p.x, p.y};
        if (extent_.x != 0 && extent_.y != 0)
          window_ = WmfFrame{origin_.x, origin_.y, clamp16(origin_.x + extent_.x), clamp16(origin_.y + extent_.y)};
        break;
      }
      default:
        break;  // pens, brushes, text and pictures carry no figures we bring in
    }
    return false;
  }

  static bool fits(const char* record, std::size_t size, const char* data, std::size_t bytes) {
    return data >= record + kRecordHead && data <= record + size &&
           bytes <= static_cast<std::size_t>(record + size - data);
  }
  static std::vector<WmfPoint> points(const char* data, std::size_t n) {
    std::vector<WmfPoint> out(n);
    for (std::size_t i = 0; i < n; ++i) {
      std::memcpy(&out[i].x, data + 4 * i, 2);
      std::memcpy(&out[i].y, data + 4 * i + 2, 2);
    }
    return out;
  }
  static std::int16_t clamp16(int v) {
    return static_cast<std::int16_t>(std::clamp(v, -32768, 32767));
  }
  void endRun() {
    if (run_.size() >= 2) picture_.figures.push_back({{std::move(run_)}, false});
    run_.clear();
  }
  WmfFrame extents() const {
    int l = 32767, t = 32767, r = -32768, b = -32768;
    for (const WmfFigure& f : picture_.figures)
      for (const auto& part : f.parts)
        for (const WmfPoint& p : part) {
          l = std::min<int>(l, p.x), r = std::max<int>(r, p.x);
          t = std::min<int>(t, p.y), b = std::max<int>(b, p.y);
        }
    if (l > r) return {};
    return {clamp16(l), clamp16(t), clamp16(r), clamp16(b)};
  }

  const char* begin_;
  const char* end_;
  WmfPicture picture_;
  WmfPoint current_, origin_, extent_;
  std::optional<WmfFrame> window_;
  std::vector<WmfPoint> run_;  // points of a MOVETO/LINETO run
};

}  // namespace

void writeWmf(const std::filesystem::path& file, const WmfPicture& picture) {
  const WmfFrame& f = picture.frame;
  if (f.width() <= 0 || f.height() <= 0 || f.width() > 32767 || f.height() > 32767)
    throw WmfError("the metafile frame is empty or too large");
  if (picture.unitsPerInch == 0) throw WmfError("the metafile has no unit size");
  std::unique_ptr<io::FileReplacement> part;
  try {
    part = std::make_unique<io::FileReplacement>(file);
  } catch (const io::FileWriteError& e) {
    throw WmfError(e.what());
  }
  Writer w;
  if (wmf_start(part->temporaryPath().c_str(), 1u << 16, 1u << 16, &w.track) != 0 ||
      wmf_htable_create(16, 16, &w.handles) != 0)
    throw WmfError("Cannot write \"" + file.string() + "\": the metafile could not be started");
  U_PAIRF inches{static_cast<float>(f.width()) / picture.unitsPerInch,
                 static_cast<float>(f.height()) / picture.unitsPerInch};
  char* header = U_WMRHEADER_set(&inches, picture.unitsPerInch);
  if (!header) throw WmfError("the metafile header could not be made");
  setPlaceableBox(header, f);
  if (wmf_header_append(reinterpret_cast<U_METARECORD*>(header), w.track, 1) != 0)
    throw WmfError("the metafile header could not be made");
  w.append(U_WMRSETWINDOWORG_set(U_POINT16{f.left, f.top}));
  w.append(U_WMRSETWINDOWEXT_set(U_POINT16{static_cast<std::int16_t>(f.width()), static_cast<std::int16_t>(f.height())}));
  // Outlines only: a null brush leaves polygons unfilled.
  std::uint32_t brush = 0;
  w.append(wcreatebrushindirect_set(&brush, w.handles, U_WLOGBRUSH_set(U_BS_NULL, U_RGB(0, 0, 0), 0)));
  w.append(wselectobject_set(brush, w.handles));
  for (const WmfFigure& figure : picture.figures) appendFigure(w, figure);
  w.append(U_WMREOF_set());
  if (wmf_finish(w.track) != 0) throw WmfError("Cannot write \"" + file.string() + "\": the disk refused it");
  try {
    part->commit();
  } catch (const io::FileWriteError& e) {
    throw WmfError(e.what());
  }
}

WmfPicture parseWmf(std::string_view bytes) { return Reader(bytes).read(); }

WmfPicture readWmf(const std::filesystem::path& file) {
  std::error_code ec;
  std::uintmax_t size = std::filesystem::file_size(file, ec);
  if (ec) throw WmfError("Cannot open \"" + file.string() + "\"");
  if (size > kMaxFileBytes) throw WmfError("\"" + file.string() + "\" is too large for a metafile");
  std::ifstream in(file, std::ios::binary);
  if (!in) throw WmfError("Cannot open \"" + file.string() + "\"");
  std::ostringstream bytes;
  bytes << in.rdbuf();
  try {
    return parseWmf(bytes.str());
  } catch (const WmfError& e) {
    throw WmfError("\"" + file.string() + "\": " + e.what());
  }
}

}  // namespace standalone
