// INOFFSET: inner offsets of every enclosed area of the selected entities,
// found on a picture of the view and traced by the host's BOUNDARY.
#include "image/contour_commands.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>
#include <vector>

#include "commands/batch_offset.h"
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
