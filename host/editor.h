#pragma once
// The host's command line: prompts with their result codes, selections,
// message boxes and file names. Texts are UTF-8 and already in the chosen language.
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "ge/point.h"
#include "host/codes.h"
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
  // True when the user asked to stop a long operation.
  virtual bool userBreak() = 0;
  // acedUpdateDisplay: repaint the drawing now (live previews); nothing to do without a view.
  virtual void updateDisplay() {}
  // How far a long operation has got (done of total); shown where a person
  // watches, quiet under scripts. what names the operation (a command name).
  virtual void progress(std::string_view what, std::size_t done, std::size_t total) { (void)what, (void)done, (void)total; }
};

}  // namespace host
