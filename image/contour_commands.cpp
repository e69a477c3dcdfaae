// INOFFSET: inner offsets of every enclosed area of the selected entities,
// found on a picture of the view and traced by the host's BOUNDARY.
#include "image/contour_commands.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>
#include <vector>

#include "commands/batch_offset.h"
#include "commands/thinning.h"
#include "frame/output.h"
#include "frame/prompts.h"
#include "frame/selection.h"
#include "frame/sysvars.h"
#include "image/picture.h"
#include "image/raster_tools.h"

namespace image {

namespace {

constexpr frame::Text kSelectPrompt{"\nPleas Select all entities for InnerOffset:",
                                    "\n请选择需要产生内轮廓的所有物体："};
constexpr frame::Text kManyObjects{
    "\nMore objects selected, it may take a long time to calculate the inner contour. Are you sure to "
    "continue[Y/N]（N）:",
    "\n您选择了较多的物体，计算内轮廓可能需要较长时间，确认继续吗？[Y/N]（N）:"};
constexpr frame::Text kCountPrompt{"\nOffset times[1]:", "\n偏移根数[1]:"};
constexpr frame::Text kDistancePrompt{"\nPlease enter the offset distance:", "\n请输入偏移距离:"};
constexpr frame::Text kDistanceOrListPrompt{"\nOffset Distance[Multi dist(M)]:", "\n请输入偏移距离[多个不同间距(M)]:"};
constexpr frame::Text kListPrompt{
    "\nPlease enter multiple offset distances（eg: offset 5 times, and distance are 9,2,1,1,1, then you can "
    "enter:9,2,1,1,1 or 9,2,1）: ",
    "\n请输入多个偏移距离（如偏移5次，以此间距为9、2、1、1、1，则可以输入：9,2,1,1,1 或 9,2,1）: "};

constexpr frame::Text kOutlinePrompt{"\nPleas Select all entities for outline:", "\n请选择需要产生外轮廓的所有物体："};
constexpr frame::Text kRoughQuestion{
    "\nThe figure is too complex, so we first created a rough outline for you. If you are satisfied, answer y and "
    "finish directly. Will n continue to work hard to create a precise outline? ",
    "\n图形太复杂，为此我们先为您创建了粗略外轮廓，如果满意，回答 Y 直接结束，N 将继续努力创建精确轮廓？ "};
constexpr frame::Text kClosedInside{"\nTemporary closure of internal objects <%d>.", "\n临时关闭内部物体<%d>个."};

// More selected entities than this run the rough stage of makeOutline first.
constexpr std::size_t kComplexFigure = 1000;
// A traced contour needs more points than this to make a rough outline.
constexpr std::size_t kFewestContourPoints = 100;

// More selected entities than this ask before going on.
constexpr std::size_t kManyEntities = 100;
// Background areas smaller than this many pixels are specks between strokes, not rooms.
constexpr int kSmallestArea = 9;

// The entities of the current space not in the selection, made invisible
// while the command runs and shown again at its end.
class HiddenOthers {
 public:
  HiddenOthers(host::Host& host, const std::vector<host::ObjectId>& selection) : host_(host) {
    std::set<host::ObjectId> chosen(selection.begin(), selection.end());
    for (host::ObjectId id : host.drawing.entitiesOf(host.drawing.currentSpace())) {
      if (chosen.count(id)) continue;
      std::optional<host::Entity> e = host.drawing.read(id);
      if (!e || e->props.invisible) continue;
      e->props.invisible = true;
      if (host.drawing.write(*e) == host::ErrorStatus::eOk) ids_.push_back(id);
    }
  }
  void show() {
    for (host::ObjectId id : ids_)
      if (std::optional<host::Entity> e = host_.drawing.read(id)) {
        e->props.invisible = false;
        host_.drawing.write(*e);
      }
    ids_.clear();
  }
  // Hides one more entity, to be shown with the others.
  void hide(host::ObjectId id) {
    std::optional<host::Entity> e = host_.drawing.read(id);
    if (!e || e->props.invisible) return;
    e->props.invisible = true;
    if (host_.drawing.write(*e) == host::ErrorStatus::eOk) ids_.push_back(id);
  }
  bool contains(host::ObjectId id) const { return std::find(ids_.begin(), ids_.end(), id) != ids_.end(); }

 private:
  host::Host& host_;
  std::vector<host::ObjectId> ids_;
};

// The enclosed areas of the view as seeds (outside first) and the mapping
// of their pixels to the drawing; nothing when the picture cannot be made.
struct ViewAreas {
  std::vector<PixelPoint> seeds;
  PixelMapping mapping;
};

std::optional<ViewAreas> areasOfView(host::Host& host) {
  std::string file = host.platform.temporaryFileName(".PNG");
  host.hostCommands.command({host::ResBuf::text("_PNGOUT"), host::ResBuf::text(file), host::ResBuf::enter()});
  LoadResult loaded = loadPicture(file);
  std::error_code ignored;
  std::filesystem::remove(file, ignored);
  const Picture* picture = std::get_if<Picture>(&loaded);
  if (!picture || picture->empty()) return std::nullopt;
  // The embedded host keeps no profile colour for its background: the
  // picture's border tells it, as the view's background shows there.
  BackgroundTest background{borderColour(*picture)};
  ge::Point3d centre;
  double height = 0;
  frame::getSysVar(host, "VIEWCTR", centre);
  frame::getSysVar(host, "VIEWSIZE", height);
  return ViewAreas{regionSeeds(*picture, background, kSmallestArea),
                   PixelMapping::ofView({centre.x, centre.y}, height, picture->width, picture->height)};
}

host::ObjectId lastEntity(host::Host& host) {
  std::vector<host::ObjectId> ids = host.drawing.entitiesOf(host.drawing.currentSpace());
  return ids.empty() ? host::kNullId : ids.back();
}

// The offset count and distances of INOFFSET; nothing ends without offsetting.
std::optional<std::pair<int, commands::Spacings>> askOffsets(host::Host& host) {
  int count = frame::askInt(host, kCountPrompt, 1, 1, commands::kMostCopiesPerSide);
  commands::Spacings spacings;
  spacings.fill(-1.0);
  if (count == 1) {
    std::optional<double> d = frame::askDist(host, kDistancePrompt);
    if (!d || *d < 0.0001) return std::nullopt;
    spacings[0] = *d;
    return std::pair{count, spacings};
  }
  double d = -1.0;
  frame::Answer answer = frame::askDistOrKeyword(host, kDistanceOrListPrompt, "M", d);
  if (answer.result == host::RTKWORD) {
    std::string text;
    while (true) {  // asked again, without a message, until a line comes
      host.editor.initGet(host::RSG_NONULL, "");
      if (host.editor.getString(true, kListPrompt.chosen(), text) == host::RTNORM && !text.empty()) break;
    }
    // Whether the list reads as valid does not change what follows.
    spacings = commands::parseSpacingList(text).spacings;
    return std::pair{count, spacings};
  }
  if (answer.result != host::RTNORM || d < 0.00001) return std::nullopt;
  spacings.fill(d);
  return std::pair{count, spacings};
}

// The pixels of the picture of the view and their mapping; nothing when the picture cannot be made.
struct ViewPicture {
  Picture picture;
  PixelMapping mapping;
};

std::optional<ViewPicture> pictureOfView(host::Host& host) {
  std::string file = host.platform.temporaryFileName(".PNG");
  host.hostCommands.command({host::ResBuf::text("_PNGOUT"), host::ResBuf::text(file), host::ResBuf::enter()});
  LoadResult loaded = loadPicture(file);
  std::error_code ignored;
  std::filesystem::remove(file, ignored);
  Picture* picture = std::get_if<Picture>(&loaded);
  if (!picture || picture->empty()) return std::nullopt;
  ge::Point3d centre;
  double height = 0;
  frame::getSysVar(host, "VIEWCTR", centre);
  frame::getSysVar(host, "VIEWSIZE", height);
  PixelMapping mapping = PixelMapping::ofView({centre.x, centre.y}, height, picture->width, picture->height);
  return ViewPicture{std::move(*picture), mapping};
}

host::ObjectId appendClosed(host::Host& host, const ge::PointList& points) {
  host::LwPolyline pl;
  pl.closed = true;
  for (const ge::Point3d& p : points) pl.vertices.push_back({p.x, p.y, 0});
  host::Entity e;
  e.props = host.drawing.defaultProps();
  e.data = std::move(pl);
  host.drawing.append(e);
  return e.id;
}

// Entities of the current space after the given one, in drawing order.
std::vector<host::ObjectId> entitiesAfter(host::Host& host, host::ObjectId last) {
  std::vector<host::ObjectId> ids = host.drawing.entitiesOf(host.drawing.currentSpace());
  auto it = last.isNull() ? ids.begin() : std::find(ids.begin(), ids.end(), last);
  if (it != ids.end() && !last.isNull()) ++it;
  return {it, ids.end()};
}

double areaOf(host::Host& host, host::ObjectId id) {
  double area = 0;
  if (std::optional<host::Entity> e = host.drawing.read(id)) host.curves.getArea(e->data, area);
  return std::abs(area);
}

}  // namespace

void makeInnerOffsets(frame::CommandContext& context) {
  host::Host& host = context.host;
  frame::setSysVarShortQuietly(host, "cmdecho", 0);
  std::vector<host::ObjectId> selection;
  if (!frame::selectEntities(host, kSelectPrompt, selection) || selection.empty()) {
    frame::setSysVarShortQuietly(host, "cmdecho", 1);
    return;
  }
  if (selection.size() > kManyEntities && !frame::askYesNo(host, kManyObjects, false)) {
    frame::setSysVarShortQuietly(host, "cmdecho", 1);
    return;
  }
  HiddenOthers hidden(host, selection);
  std::optional<ViewAreas> areas = areasOfView(host);
  // Fewer than two areas: the command ends here, the others still hidden
  // and cmdecho still 0, as it always has.
  if (!areas || areas->seeds.size() < 2) return;
  std::set<host::ObjectId> chosen(selection.begin(), selection.end());
  std::vector<host::ObjectId> boundaries;
  for (std::size_t i = 1; i < areas->seeds.size(); ++i) {
    if (host.editor.userBreak()) break;
    ge::Point3d p = areas->mapping.toDrawing(areas->seeds[i]);
    host::ObjectId before = lastEntity(host);
    host.hostCommands.command({host::ResBuf::text("_BOUNDARY"), host::ResBuf::point3d(p), host::ResBuf::enter()});
    host::ObjectId made = lastEntity(host);
    if (made == before || made.isNull() || chosen.count(made) || hidden.contains(made)) continue;
    boundaries.push_back(made);
  }
  // No boundary: nothing to offset, and nothing is asked.
  if (!boundaries.empty())
    if (std::optional<std::pair<int, commands::Spacings>> offsets = askOffsets(host))
      for (host::ObjectId id : boundaries)
        commands::offsetCopies(host, id, commands::OffsetSide::kInner, offsets->first, offsets->second);
  if (!boundaries.empty()) {
    host::ResBufList erase{host::ResBuf::text("erase")};
    for (host::ObjectId id : boundaries) erase.push_back(host::ResBuf::entity(id));
    erase.push_back(host::ResBuf::enter());
    host.hostCommands.command(erase);
  }
  frame::setSysVarShortQuietly(host, "cmdecho", 1);
  hidden.show();
}

}  // namespace image

namespace image {

void makeOutline(frame::CommandContext& context) {
  host::Host& host = context.host;
  frame::setSysVarShortQuietly(host, "cmdecho", 0);
  std::vector<host::ObjectId> selection;
  if (!frame::selectEntities(host, kOutlinePrompt, selection) || selection.empty()) {
    frame::setSysVarShortQuietly(host, "cmdecho", 1);
    return;
  }
  HiddenOthers hidden(host, selection);
  auto finish = [&] {
    frame::setSysVarShortQuietly(host, "cmdecho", 1);
    hidden.show();
  };
  ge::Extents3d extents;
  for (host::ObjectId id : selection) {
    std::optional<host::Entity> e = host.drawing.read(id);
    ge::Extents3d one;
    if (e && host.curves.getGeomExtents(e->data, one) == host::ErrorStatus::eOk) extents.add(one);
  }
  if (!extents.isValid()) return finish();
  double size = std::max(extents.diagonal(), 1e-9);
  ge::Point3d low{extents.min.x - 0.02 * size, extents.min.y - 0.02 * size, 0};
  ge::Point3d high{extents.max.x + 0.02 * size, extents.max.y + 0.02 * size, 0};
  host.hostCommands.command(
      {host::ResBuf::text("_ZOOM"), host::ResBuf::text("W"), host::ResBuf::point3d(low), host::ResBuf::point3d(high)});
  // The pick point lies outside the figure, beyond its lower-left corner.
  ge::Point3d pick{extents.min.x - 0.01 * size, extents.min.y - 0.01 * size, 0};
  std::vector<host::ObjectId> temporary;

  if (selection.size() > kComplexFigure) {
    std::optional<ViewPicture> view = pictureOfView(host);
    std::vector<PixelPoint> contour;
    if (view) contour = outerContour(view->picture, BackgroundTest{borderColour(view->picture)});
    if (contour.size() > kFewestContourPoints) {
      double viewSize = 0;
      frame::getSysVar(host, "VIEWSIZE", viewSize);
      ge::PointList points;
      for (PixelPoint p : contour) points.push_back(view->mapping.toDrawing(p));
      // The thinning's scale and tolerance: VIEWSIZE/100 is read as one
      // percent of the view, so the scale is the view (100 times it) and the
      // tolerance 5.0, which merges points within 5 pixels of a 1000-pixel view.
      points = commands::thinPolylinePoints(points, commands::thinningThresholds(viewSize / 100 * 100, 5.0));
      host::ObjectId rough = appendClosed(host, points);
      if (frame::askYesNo(host, kRoughQuestion, true)) return finish();
      // Further out by a fiftieth of the view: everything inside that ring is
      // closed off for now, so BOUNDARY sees only the outer shapes.
      std::optional<host::Entity> roughEntity = host.drawing.read(rough);
      std::vector<host::EntityData> ring;
      if (roughEntity) host.curves.getOffsetCurves(roughEntity->data, viewSize / 50, ring);
      host.drawing.erase(rough);
      ge::PointList inner = points;
      int closed = 0;
      for (host::EntityData& curve : ring) {
        host::Entity e;
        e.props = host.drawing.defaultProps();
        e.data = std::move(curve);
        host.drawing.append(e);
        temporary.push_back(e.id);
        hidden.hide(e.id);  // the ring only marks what lies deep inside
      }
      // Entities wholly inside the rough outline do not reach the outer edge.
      auto insideRough = [&](const ge::Point3d& q) {
        bool in = false;
        for (std::size_t i = 0, j = inner.size() - 1; i < inner.size(); j = i++)
          if ((inner[i].y > q.y) != (inner[j].y > q.y) &&
              q.x < (inner[j].x - inner[i].x) * (q.y - inner[i].y) / (inner[j].y - inner[i].y) + inner[i].x)
            in = !in;
        return in;
      };
      double shrink = viewSize / 50;
      for (host::ObjectId id : selection) {
        std::optional<host::Entity> e = host.drawing.read(id);
        ge::Extents3d box;
        if (!e || host.curves.getGeomExtents(e->data, box) != host::ErrorStatus::eOk) continue;
        bool deep = true;
        for (double x : {box.min.x - shrink, box.max.x + shrink})
          for (double y : {box.min.y - shrink, box.max.y + shrink}) deep = deep && insideRough({x, y, 0});
        if (deep) {
          hidden.hide(id);
          ++closed;
        }
      }
      frame::print(host, kClosedInside, closed);
    }
  }

  // Precise stage: a frame around the zoomed area makes the pick point's
  // area bounded; its boundary comes with the figure's outer edges as islands.
  double margin = 0.02 * size;
  temporary.push_back(appendClosed(host, {{low.x - margin, low.y - margin, 0},
                                          {high.x + margin, low.y - margin, 0},
                                          {high.x + margin, high.y + margin, 0},
                                          {low.x - margin, high.y + margin, 0}}));
  host::ObjectId last = temporary.back();
  host.hostCommands.command({host::ResBuf::text("_BOUNDARY"), host::ResBuf::point3d(pick), host::ResBuf::enter()});
  frame::setSysVarShortQuietly(host, "cmdecho", 1);
  // Of what BOUNDARY made, the largest is the frame's copy; the rest are the outline.
  std::vector<host::ObjectId> made = entitiesAfter(host, last);
  if (!made.empty()) {
    auto largest = std::max_element(made.begin(), made.end(), [&](host::ObjectId a, host::ObjectId b) {
      return areaOf(host, a) < areaOf(host, b);
    });
    temporary.push_back(*largest);
  }
  for (host::ObjectId id : temporary) host.drawing.erase(id);
  hidden.show();
}

}  // namespace image
