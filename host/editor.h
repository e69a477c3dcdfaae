#pragma once
// The host's command line: prompts with their result codes, selections,
// message boxes and file names. Texts are UTF-8 and already in the chosen language.
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "ge/point.h"
#include "host/codes.h"
#include "host/entity.h"
#include "host/object_id.h"
#include "host/resbuf.h"

namespace host {

class Editor {
 public:
  virtual ~Editor() = default;

  // acutPrintf: the text is printed as it stands.
  virtual void print(std::string_view text) = 0;
  // acedInitGet: bits of InitGetBits and a keyword list ("Yes No"), for the next prompt only.
  virtual void initGet(int bits, std::string_view keywords) = 0;

  virtual int getInt(std::string_view prompt, int& value) = 0;
  virtual int getReal(std::string_view prompt, double& value) = 0;
  virtual int getDist(const ge::Point3d* base, std::string_view prompt, double& value) = 0;
  virtual int getPoint(const ge::Point3d* base, std::string_view prompt, ge::Point3d& value) = 0;
  // A point dragged with a live preview (a jig, AcEdJig::drag): preview gives
  // the shapes to show for a cursor position. A host without a pointing
  // device asks for the point as getPoint does.
  using DragPreview = std::function<std::vector<EntityData>(const ge::Point3d& cursor)>;
  virtual int dragPoint(const ge::Point3d* base, std::string_view prompt, const DragPreview& preview,
                        ge::Point3d& value) {
    (void)preview;
    return getPoint(base, prompt, value);
  }
  // Returns the full keyword as spelled in the initGet list.
  virtual int getKword(std::string_view prompt, std::string& keyword) = 0;
  // allowSpaces: a space is part of the answer and only a line end ends it.
  virtual int getString(bool allowSpaces, std::string_view prompt, std::string& value) = 0;
  // The keyword or arbitrary text behind the last RTKWORD result.
  virtual int getInput(std::string& value) = 0;

  // acedEntSel: one entity by a picked point.
  virtual int entSel(std::string_view prompt, ObjectId& entity, ge::Point3d& picked) = 0;
  // acedSSGet. mode: "" ordinary, ":S" single selection attempt, "_C"/"C" and
  // "_W"/"W" windows from p1 and p2, "X" the whole drawing, "L" last, "P" previous.
  // filter: DXF group code/value pairs (0 type, 8 layer, -4 "<or" ... "or>").
  virtual int ssget(std::string_view mode, const ge::Point3d* p1, const ge::Point3d* p2,
                    const ResBufList* filter, std::vector<ObjectId>& selection) = 0;

  // A modal message box with one OK button.
  virtual void messageBox(std::string_view caption, std::string_view text) = 0;
  // A file name: a dialog where there is a GUI, otherwise a command-line prompt.
  virtual int getFileName(std::string_view title, std::string_view defaultName, std::string_view extension,
                          bool forSaving, std::string& path) = 0;
  // A file name chosen against a dialog filter in the host's form, caption
  // and pattern pairs each ended by a bar ("EXCEL File(*.xls)|*.xls|"): a
  // dialog where there is a GUI; on the command line a prompt made of the
  // filter's captions. The name comes back as typed: no extension is added.
  virtual int getFileNameWithFilter(std::string_view filter, bool forSaving, std::string& path) {
    return getFileName(filterCaptions(filter), "", "", forSaving, path);
  }
  // The captions of a dialog filter, joined by ", ".
  static std::string filterCaptions(std::string_view filter) {
    std::string captions;
    bool isCaption = true;
    while (!filter.empty()) {
      std::size_t bar = filter.find('|');
      std::string_view part = filter.substr(0, bar);
      if (isCaption && !part.empty()) captions += (captions.empty() ? "" : ", ") + std::string(part);
      isCaption = !isCaption;
      if (bar == std::string_view::npos) break;
      filter.remove_prefix(bar + 1);
    }
    return captions;
  }
  // True when the user asked to stop a long operation.
  virtual bool userBreak() = 0;
  // acedUpdateDisplay: repaint the drawing now (live previews); nothing to do without a view.
  virtual void updateDisplay() {}
  // acedSetStatusBarProgressMeter, acedSetStatusBarProgressMeterPos and
  // acedRestoreStatusBar: a progress meter for long work, from low to high.
  // A host may show it only where someone watches (not in scripts).
  virtual int setProgressMeter(std::string_view label, int low, int high) {
    (void)label, (void)low, (void)high;
    return 0;
  }
  virtual int setProgressMeterPos(int position) {
    (void)position;
    return 0;
  }
  virtual void restoreStatusBar() {}
};

}  // namespace host
