#include "standalone/editor/answer_source.h"

#include <cstdint>
#include <memory>
#include <vector>

#include "standalone/editor/errors.h"

namespace standalone {

bool isCleanUtf8(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size()) {
    auto c = static_cast<unsigned char>(text[i]);
    if (c == 0) return false;
    int extra = c < 0x80 ? 0 : (c >> 5) == 0x6 ? 1 : (c >> 4) == 0xE ? 2 : (c >> 3) == 0x1E ? 3 : -1;
    if (extra < 0 || i + extra >= text.size() + (extra == 0 ? 1 : 0)) return false;
    std::uint32_t cp = extra == 0 ? c : c & (0x3F >> extra);
    for (int k = 1; k <= extra; ++k) {
      auto cc = static_cast<unsigned char>(text[i + k]);
      if ((cc & 0xC0) != 0x80) return false;
      cp = (cp << 6) | (cc & 0x3F);
    }
    // Overlong forms, surrogates and values beyond Unicode are not text.
    static constexpr std::uint32_t kMin[] = {0, 0x80, 0x800, 0x10000};
    if (cp < kMin[extra] || (cp >= 0xD800 && cp <= 0xDFFF) || cp > 0x10FFFF) return false;
    i += extra + 1;
  }
  return true;
}

ScriptReader::ScriptReader(std::string sourceName, LineSupplier lines, bool echo)
    : sourceName_(std::move(sourceName)), lines_(std::move(lines)), echo_(echo) {}

ScriptReader ScriptReader::fromText(std::string sourceName, std::string_view text) {
  std::vector<std::string> all;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    all.emplace_back(text.substr(start, end - start));
    start = end + 1;
  }
  auto index = std::make_shared<std::size_t>(0);
  auto lines = std::make_shared<std::vector<std::string>>(std::move(all));
  return ScriptReader(
      std::move(sourceName),
      [index, lines]() -> std::optional<std::string> {
        if (*index >= lines->size()) return std::nullopt;
        return (*lines)[(*index)++];
      },
      true);
}

ScriptReader ScriptReader::fromStream(std::string sourceName, std::istream& in, bool echo) {
  return ScriptReader(
      std::move(sourceName),
      [&in]() -> std::optional<std::string> {
        std::string line;
        if (!std::getline(in, line)) return std::nullopt;
        return line;
      },
      echo);
}

bool ScriptReader::fetchLineIfNeeded() {
  if (lineOpen_) return true;
  while (!ended_) {
    std::optional<std::string> next = lines_();
    if (!next) {
      ended_ = true;
      break;
    }
    ++lineNumber_;
    if (!next->empty() && next->back() == '\r') next->pop_back();
    if (!isCleanUtf8(*next))
      throw ScriptError(sourceName_ + " line " + std::to_string(lineNumber_) + ": not UTF-8 text");
    if (!next->empty() && next->front() == ';') continue;  // comment line
    line_ = std::move(*next);
    pos_ = 0;
    lineOpen_ = true;
    return true;
  }
  return false;
}

static bool isBlank(char c) { return c == ' ' || c == '\t'; }

std::string ScriptReader::readQuoted() {
  std::size_t close = line_.find('"', pos_ + 1);
  if (close == std::string::npos) close = line_.size();
  std::string word = line_.substr(pos_ + 1, close - pos_ - 1);
  pos_ = std::min(close + 1, line_.size());
  return word;
}

std::string ScriptReader::readBracketed() {
  int depth = 0;
  bool inString = false;
  std::size_t i = pos_;
  for (; i < line_.size(); ++i) {
    char c = line_[i];
    if (inString) {
      if (c == '\\') ++i;
      else if (c == '"') inString = false;
    } else if (c == '"') {
      inString = true;
    } else if (c == '(') {
      ++depth;
    } else if (c == ')' && --depth == 0) {
      ++i;
      break;
    }
  }
  i = std::min(i, line_.size());
  std::string word = line_.substr(pos_, i - pos_);
  pos_ = i;
  return word;
}

std::optional<std::string> ScriptReader::nextWord() {
  if (!fetchLineIfNeeded()) return std::nullopt;
  std::string word;
  if (pos_ < line_.size() && line_[pos_] == '"') {
    word = readQuoted();
  } else if (pos_ < line_.size() && line_[pos_] == '(') {
    word = readBracketed();
  } else {
    std::size_t end = pos_;
    while (end < line_.size() && !isBlank(line_[end])) ++end;
    word = line_.substr(pos_, end - pos_);
    pos_ = end;
  }
  // The delimiter itself is the Enter that gives the answer.
  if (pos_ < line_.size() && isBlank(line_[pos_])) ++pos_;
  else if (pos_ >= line_.size()) lineOpen_ = false;
  return word;
}

std::optional<std::string> ScriptReader::nextLine() {
  if (!fetchLineIfNeeded()) return std::nullopt;
  std::string rest = line_.substr(std::min(pos_, line_.size()));
  lineOpen_ = false;
  return rest;
}

}  // namespace standalone
