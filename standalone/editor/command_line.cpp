#include "standalone/editor/command_line.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <type_traits>

#include "host/codes.h"
#include "standalone/editor/errors.h"

namespace standalone {

namespace {
// A command that keeps prompting after the input has ended gets this many
// cancelled prompts before the session gives up on it.
constexpr int kPromptsAfterEndLimit = 10000;
// The host returns at most this many characters from a string prompt.
constexpr std::size_t kStringLimit = 132;

std::string truncateCharacters(std::string text, std::size_t limit) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xC0) == 0x80) continue;
    if (count++ == limit) {
      text.resize(i);
      break;
    }
  }
  return text;
}
}  // namespace

CommandLine::CommandLine(Transcript& transcript, const host::Drawing& drawing, const host::CurveServices& curves,
                         const host::SystemVariables& sysvars, const View& view,
                         EntityFinder::LayerTest frozenOrLocked)
    : transcript_(transcript), drawing_(drawing), curves_(curves), sysvars_(sysvars), view_(view),
      finder_(drawing, curves, std::move(frozenOrLocked)) {}

void CommandLine::pushSource(AnswerSource& source, bool endCancels, bool quiet) {
  if (!endCancels) {  // new input from the user: whatever ended before is over
    endedAtPrompt_.reset();
    promptsAfterEnd_ = 0;
  }
  sources_.push_back({&source, endCancels, quiet});
}

bool CommandLine::popSource() {
  if (sources_.empty()) return false;
  bool ranOut = sources_.back().ranOut;
  sources_.pop_back();
  return ranOut;
}

CommandLine::Answer CommandLine::ask(std::string_view prompt, bool wholeLine) {
  if (sources_.empty()) return {Reply::kCancel, {}};  // nobody to answer (the plug-in loading)
  return askFrom(sources_.size() - 1, prompt, wholeLine);
}

CommandLine::Answer CommandLine::askFrom(std::size_t level, std::string_view prompt, bool wholeLine,
                                         bool promptShown) {
  if (endedAtPrompt_) {
    if (++promptsAfterEnd_ > kPromptsAfterEndLimit)
      throw ScriptError("the input has ended but the command keeps prompting");
    return {Reply::kCancel, {}};
  }
  Source& s = sources_[level];
  // A pause answers from the source below, which sees the prompt even when
  // the tokens are quiet: the user gives that one input (the PAUSE of
  // acedCommand, the token "\\").
  bool paused = level + 1 < sources_.size();
  if ((!s.quiet || paused) && !promptShown) transcript_.prompt(prompt);
  s.source->expect({kind_, prompt, base_, preview_});
  std::optional<std::string> text = wholeLine ? s.source->nextLine() : s.source->nextWord();
  if (text && *text == "\\" && s.endCancels && level > 0) return askFrom(level - 1, prompt, wholeLine, !s.quiet);
  if (!text) {
    if (!s.quiet) transcript_.endLine();
    s.ranOut = true;
    if (!s.endCancels) {
      std::string_view shown = prompt;
      while (shown.starts_with("\n")) shown.remove_prefix(1);
      while (shown.ends_with("\n")) shown.remove_suffix(1);
      endedAtPrompt_ = std::string(shown);
    }
    return {Reply::kCancel, {}};
  }
  if (s.quiet && !paused) {
  } else if (s.source->echoesAnswers()) {
    transcript_.answer(*text);
  } else {
    transcript_.answerShownByTerminal();
  }
  if (*text == "^C" || *text == "^c") {
    transcript_.print("*Cancel*\n");
    return {Reply::kCancel, {}};
  }
  return {Reply::kText, std::move(*text)};
}

std::optional<std::string> CommandLine::readCommandName() {
  if (sources_.empty()) return std::nullopt;
  Source& s = sources_.back();
  if (s.source->echoesAnswers() && s.source->atEnd()) return std::nullopt;
  transcript_.prompt("Command: ");
  s.source->expect({InputKind::kCommand, "Command: ", std::nullopt});
  std::optional<std::string> name = s.source->nextWord();
  if (!name) {
    transcript_.endLine();
    return std::nullopt;
  }
  if (s.source->echoesAnswers()) transcript_.answer(*name);
  else transcript_.answerShownByTerminal();
  return name;
}

void CommandLine::complain(std::string_view text) {
  transcript_.endLine();
  transcript_.print(text);
  transcript_.print("\n");
}

void CommandLine::print(std::string_view text) { transcript_.print(text); }

void CommandLine::initGet(int bits, std::string_view keywords) { pending_ = {bits, KeywordList(keywords)}; }

CommandLine::InitGet CommandLine::takeInitGet() {
  InitGet ig = std::move(pending_);
  pending_ = {};
  return ig;
}

std::optional<int> CommandLine::onEmpty(const InitGet& ig) {
  if ((ig.bits & host::RSG_OTHER) && (ig.bits & host::RSG_NONULL)) {
    lastInput_.clear();
    return host::RTKWORD;
  }
  if (ig.bits & host::RSG_NONULL) return std::nullopt;
  return host::RTNONE;
}

std::optional<int> CommandLine::onOther(const InitGet& ig, const std::string& text) {
  if (std::optional<std::string> kw = ig.keywords.match(text)) {
    lastInput_ = *kw;
    return host::RTKWORD;
  }
  if (ig.bits & host::RSG_OTHER) {
    lastInput_ = text;
    return host::RTKWORD;
  }
  return std::nullopt;
}

std::optional<std::string> CommandLine::signComplaint(int bits, double value) {
  bool noZero = bits & host::RSG_NOZERO, noNeg = bits & host::RSG_NONEG;
  if ((value == 0 && noZero) || (value < 0 && noNeg)) {
    if (noZero && noNeg) return "Value must be positive and nonzero.";
    return value == 0 ? "Value must be nonzero." : "Value must not be negative.";
  }
  return std::nullopt;
}

template <class T, class ReadFn, class ComplaintFn>
int CommandLine::readValue(std::string_view prompt, ReadFn read, ComplaintFn complaint, T& value) {
  InitGet ig = takeInitGet();
  while (true) {
    Answer a = ask(prompt, false);
    if (a.kind == Reply::kCancel) return host::RTCAN;
    if (a.text.empty()) {
      if (std::optional<int> rc = onEmpty(ig)) return *rc;
      continue;
    }
    Read<T> r = read(a.text, ig);
    if (r.cancelled) return host::RTCAN;
    if (r.value) {
      if constexpr (std::is_arithmetic_v<T>) {
        if (std::optional<std::string> why = signComplaint(ig.bits, static_cast<double>(*r.value))) {
          complain(*why);
          continue;
        }
      }
      value = *r.value;
      return host::RTNORM;
    }
    if (std::optional<int> rc = onOther(ig, a.text)) return *rc;
    complain(complaint(a.text));
  }
}

int CommandLine::getInt(std::string_view prompt, int& value) {
  return readValue(
      prompt, [](const std::string& text, const InitGet&) { return Read<int>{parseInteger(text)}; },
      [](const std::string& text) {
        return looksLikeInteger(text) ? "Requires an integer between -32768 and 32767." : "Requires an integer value.";
      },
      value);
}

int CommandLine::getReal(std::string_view prompt, double& value) {
  return readValue(
      prompt, [](const std::string& text, const InitGet&) { return Read<double>{parseReal(text)}; },
      [](const std::string&) { return "Requires numeric value."; }, value);
}

int CommandLine::getDist(const ge::Point3d* base, std::string_view prompt, double& value) {
  Expecting point(*this, InputKind::kPoint, base ? std::optional(*base) : std::nullopt);
  auto read = [&](const std::string& text, const InitGet& ig) -> Read<double> {
    if (std::optional<double> v = parseReal(text)) return {v};
    std::optional<PointAnswer> p = parsePoint(text);
    if (!p) return {};
    // A point answer: the distance from the base point, or to a second point.
    ge::Point3d first = resolvePoint(*p, lastPoint_);
    lastPoint_ = first;
    ge::Point3d from = first, to = first;
    if (base) {
      from = *base;
    } else {
      std::optional<ge::Point3d> second = askCorner("Specify second point: ");
      if (!second) return {std::nullopt, true};
      to = *second;
    }
    ge::Vector3d d = to - from;
    if (ig.bits & host::RSG_2D) d.z = 0;
    return {d.length()};
  };
  return readValue(prompt, read, [](const std::string&) { return "Requires numeric distance or two points."; },
                   value);
}

std::optional<ge::Point3d> CommandLine::askCorner(std::string_view prompt) {
  Expecting point(*this, InputKind::kPoint, base_);
  while (true) {
    Answer a = ask(prompt, false);
    if (a.kind == Reply::kCancel) return std::nullopt;
    if (std::optional<PointAnswer> p = parsePoint(a.text)) {
      lastPoint_ = resolvePoint(*p, lastPoint_);
      return lastPoint_;
    }
    complain("Invalid point.");
  }
}

int CommandLine::getPoint(const ge::Point3d* base, std::string_view prompt, ge::Point3d& value) {
  Expecting point(*this, InputKind::kPoint, base ? std::optional(*base) : std::nullopt);
  auto read = [&](const std::string& text, const InitGet&) -> Read<ge::Point3d> {
    std::optional<PointAnswer> p = parsePoint(text);
    if (!p) return {};
    lastPoint_ = resolvePoint(*p, lastPoint_);
    return {lastPoint_};
  };
  return readValue(prompt, read, [](const std::string&) { return "Invalid point."; }, value);
}

int CommandLine::dragPoint(const ge::Point3d* base, std::string_view prompt, const DragPreview& preview,
                           ge::Point3d& value) {
  const DragPreview* outer = preview_;
  preview_ = &preview;
  int rc = getPoint(base, prompt, value);
  preview_ = outer;
  return rc;
}

int CommandLine::entSel(std::string_view prompt, host::ObjectId& entity, ge::Point3d& picked) {
  // A point where nothing lies is still an answer; the prompt ends with an error after it.
  struct Pick {
    std::optional<host::ObjectId> id;
    ge::Point3d at;
  };
  auto read = [&](const std::string& text, const InitGet&) -> Read<Pick> {
    if (std::optional<host::ObjectId> id = finder_.byHandle(text)) {
      std::optional<host::Entity> e = drawing_.read(*id);
      ge::Point3d start;
      return {Pick{id, e && curves_.getStartPoint(e->data, start) == host::ErrorStatus::eOk ? start : lastPoint_}};
    }
    std::optional<PointAnswer> p = parsePoint(text);
    if (!p) return {};
    lastPoint_ = resolvePoint(*p, lastPoint_);
    return {Pick{finder_.pickAt(lastPoint_, pickAperture()), lastPoint_}};
  };
  Pick pick;
  Expecting pickOne(*this, InputKind::kPick);
  int rc = readValue(
      prompt, read,
      [](const std::string&) { return "*Invalid selection*\nExpects a point or an entity handle (#1F)."; }, pick);
  if (rc != host::RTNORM) return rc;
  if (!pick.id) {
    print("Nothing found at " + displayPoint(pick.at) + ".\n");
    return host::RTERROR;
  }
  entity = *pick.id;
  picked = pick.at;
  return host::RTNORM;
}

int CommandLine::getKword(std::string_view prompt, std::string& keyword) {
  InitGet ig = takeInitGet();
  while (true) {
    Answer a = ask(prompt, false);
    if (a.kind == Reply::kCancel) return host::RTCAN;
    if (a.text.empty()) {
      if (ig.bits & host::RSG_OTHER) {
        keyword.clear();
        lastInput_.clear();
        return (ig.bits & host::RSG_NONULL) ? host::RTNORM : host::RTNONE;
      }
      if (ig.bits & host::RSG_NONULL) continue;
      return host::RTNONE;
    }
    if (std::optional<std::string> kw = ig.keywords.match(a.text)) {
      keyword = lastInput_ = *kw;
      return host::RTNORM;
    }
    if (ig.bits & host::RSG_OTHER) {
      keyword = lastInput_ = a.text;
      return host::RTNORM;
    }
    complain("Invalid option keyword.");
  }
}

int CommandLine::getString(bool allowSpaces, std::string_view prompt, std::string& value) {
  takeInitGet();
  Answer a = ask(prompt, allowSpaces);
  if (a.kind == Reply::kCancel) return host::RTCAN;
  value = truncateCharacters(std::move(a.text), kStringLimit);
  return host::RTNORM;
}

int CommandLine::getInput(std::string& value) {
  value = lastInput_;
  return host::RTNORM;
}

void CommandLine::messageBox(std::string_view caption, std::string_view text) {
  if (dialogs_) {
    dialogs_->messageBox(caption, text);
    return;
  }
  transcript_.endLine();
  transcript_.print("[" + std::string(caption) + "] " + std::string(text) + "\n");
}

bool CommandLine::fileDialogWanted() const {
  if (!dialogs_ || sources_.size() != 1) return false;
  host::ResBuf fileDia;
  if (sysvars_.getVar("FILEDIA", fileDia) != host::RTNORM) return true;
  const auto* on = std::get_if<std::int16_t>(&fileDia.value);
  return !on || *on != 0;
}

namespace {

// A name without an extension gets the expected one, as the host's file prompts do.
std::string withExtension(std::string name, std::string_view extension) {
  std::size_t slash = name.find_last_of('/');
  std::size_t dot = name.find_last_of('.');
  bool hasExtension = dot != std::string::npos && (slash == std::string::npos || dot > slash);
  if (!hasExtension && !extension.empty() && extension.find(';') == std::string_view::npos)
    name += "." + std::string(extension);
  return name;
}

}  // namespace

int CommandLine::getFileName(std::string_view title, std::string_view defaultName, std::string_view extension,
                             bool forSaving, std::string& path) {
  takeInitGet();
  if (fileDialogWanted()) {
    std::optional<std::string> chosen = dialogs_->fileName(title, defaultName, dialogFilterFor(extension), forSaving);
    if (!chosen) return host::RTCAN;
    path = withExtension(std::move(*chosen), extension);
    return host::RTNORM;
  }
  std::string prompt(title);
  if (!defaultName.empty()) prompt += " <" + std::string(defaultName) + ">";
  prompt += ": ";
  Answer a = ask(prompt, true);
  if (a.kind == Reply::kCancel) return host::RTCAN;
  std::string name = a.text;
  if (name.size() >= 2 && name.front() == '"' && name.back() == '"') name = name.substr(1, name.size() - 2);
  if (name.empty()) {
    if (defaultName.empty()) return host::RTNONE;
    name = std::string(defaultName);
  }
  path = withExtension(std::move(name), extension);
  return host::RTNORM;
}

int CommandLine::getFileNameWithFilter(std::string_view filter, bool forSaving, std::string& path) {
  if (!fileDialogWanted()) return host::Editor::getFileNameWithFilter(filter, forSaving, path);
  takeInitGet();
  std::optional<std::string> chosen = dialogs_->fileName(forSaving ? "Save As" : "Open", "", filter, forSaving);
  if (!chosen) return host::RTCAN;
  path = std::move(*chosen);
  return host::RTNORM;
}

double CommandLine::pickAperture() const {
  host::ResBuf box;
  double pixels = 3;
  if (sysvars_.getVar("PICKBOX", box) == host::RTNORM)
    if (const auto* s = std::get_if<std::int16_t>(&box.value)) pixels = *s;
  return pixels * view_.unitsPerPixel();
}

}  // namespace standalone
