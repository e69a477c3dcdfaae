#include "standalone/hostcmds/pngout.h"

#include <algorithm>
#include <vector>

#include "host/codes.h"
#include "standalone/render/render.h"

namespace standalone {

namespace {

void pngOut(HostCommandContext& c) {
  std::string file;
  if (c.editor.getString(true, "Enter file name: ", file) != host::RTNORM || file.empty()) return;
  if (file.size() >= 2 && file.front() == '"' && file.back() == '"') file = file.substr(1, file.size() - 2);
  std::vector<host::ObjectId> selection;
  bool some = c.editor.ssget("", nullptr, nullptr, nullptr, selection) == host::RTNORM && !selection.empty();
  // Enter at once draws everything shown; with a selection, what is not
  // selected is hidden while the picture is drawn.
  std::vector<host::Entity> hidden;
  if (some) {
    std::sort(selection.begin(), selection.end());
    for (host::ObjectId id : c.drawing.entitiesOf(c.drawing.currentSpace())) {
      std::optional<host::Entity> e = c.drawing.read(id);
      if (!e || e->props.invisible || std::binary_search(selection.begin(), selection.end(), id)) continue;
      hidden.push_back(*e);
      e->props.invisible = true;
      c.drawing.write(*e);
    }
  }
  RenderOptions options;
  options.widthPx = c.view.widthPixels;
  options.heightPx = c.view.heightPixels;
  options.viewCenter = c.view.center;
  options.viewHeight = c.view.height;
  try {
    renderDrawingToPng(c.drawing, file, options);
  } catch (const RenderError& e) {
    c.editor.print(std::string("Cannot write the picture: ") + e.what() + "\n");
  }
  for (const host::Entity& e : hidden) c.drawing.write(e);
}

}  // namespace

void addPngOutCommand(HostCommandRunner& runner) { runner.addHostCommand("PNGOUT", pngOut); }

}  // namespace standalone
