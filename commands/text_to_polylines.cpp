// txt2PL: texts to the outlines of their glyphs, by the host's own commands
// alone. The texts are mirrored (as glyphs), exported to a metafile of the
// view zoomed onto them, the metafile is imported at the view centre at
// scale 2, the mirrored texts are erased and the imported outlines mirrored
// back about the same line.
#include <filesystem>

#include "commands/commands.h"
#include "commands/selection_set.h"
#include "frame/output.h"
#include "frame/selection.h"
#include "frame/sysvars.h"

namespace commands {

namespace {

constexpr frame::Text kNothing{"No selected.\n", "未选中。\n"};
constexpr SelectionTexts kTextSelection{{"Please select TEXT >\n", "请选择文字>\n"}, kNothing, kNothing};

// Height of the mirror line above the centre of the texts.
constexpr double kMirrorLineLength = 1000;

void removeQuietly(const std::string& path) {
  std::error_code ignored;
  std::filesystem::remove(path, ignored);
}

// A fresh temporary name with the extension ".wmf", nothing at that path.
std::string freshMetafileName(host::Platform& platform) {
  std::string temp = platform.temporaryFileName(".tmp");
  if (temp.empty()) return {};
  removeQuietly(temp);
  std::string wmf = std::filesystem::path(temp).replace_extension(".wmf").string();
  removeQuietly(wmf);
  return wmf;
}

void appendSelection(host::ResBufList& tokens, const std::vector<host::ObjectId>& ids) {
  for (host::ObjectId id : ids) tokens.push_back(host::ResBuf::entity(id));
  tokens.push_back(host::ResBuf::enter());
}

}  // namespace

void txt2pline(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<std::vector<host::ObjectId>> ids =
      selectForCommand(host, kTextSelection, frame::typeFilter({"TEXT", "MTEXT"}));
  if (!ids) return;
  frame::SdSysVarStack guard(host);
  guard.pushShort("mirrtext", 1);  // mirrored texts mirror their glyphs

  // Texts that cannot be read stay out of the box but in the set.
  ge::Extents3d box;
  for (host::ObjectId id : *ids) {
    std::optional<host::Entity> e = host.drawing.read(id);
    ge::Extents3d ext;
    if (e && host.curves.getGeomExtents(e->data, ext) == host::ErrorStatus::eOk) box.add(ext);
  }
  ge::Point3d m1{(box.min.x + box.max.x) / 2, (box.min.y + box.max.y) / 2, 0};
  ge::Point3d m2{m1.x, m1.y + kMirrorLineLength, 0};

  frame::setSysVarShortQuietly(host, "cmdecho", 0);
  auto send = [&host](host::ResBufList tokens) { host.hostCommands.command(tokens); };
  send({host::ResBuf::text("_ZOOM"), host::ResBuf::point3d(box.min), host::ResBuf::point3d(box.max)});

  host::ResBufList mirror{host::ResBuf::text("_MIRROR")};
  appendSelection(mirror, *ids);
  mirror.insert(mirror.end(), {host::ResBuf::point3d(m1), host::ResBuf::point3d(m2), host::ResBuf::text("Y")});
  send(mirror);

  std::string wmf = freshMetafileName(host.platform);
  host::ResBufList out{host::ResBuf::text("_WMFOUT"), host::ResBuf::text(wmf)};
  appendSelection(out, *ids);
  send(out);

  ge::Point3d center;
  frame::getSysVar(host, "VIEWCTR", center);
  center.z = 0;
  send({host::ResBuf::text("_WMFIN"), host::ResBuf::text(wmf), host::ResBuf::point3d(center),
        host::ResBuf::shortInt(2), host::ResBuf::shortInt(2), host::ResBuf::shortInt(0)});

  host::ResBufList erase{host::ResBuf::text("_ERASE")};
  appendSelection(erase, *ids);
  send(erase);

  send({host::ResBuf::text("_MIRROR"), host::ResBuf::text("L"), host::ResBuf::enter(), host::ResBuf::point3d(m1),
        host::ResBuf::point3d(m2), host::ResBuf::text("Y")});

  frame::setSysVarShortQuietly(host, "cmdecho", 1);
  removeQuietly(wmf);
}

}  // namespace commands
