#include "standalone/editor/transcript.h"

namespace standalone {

void Transcript::write(std::string_view text) {
  if (text.empty()) return;
  out_ << text;
  out_.flush();
  atLineStart_ = text.back() == '\n';
  std::size_t lineEnd = text.rfind('\n');
  if (lineEnd == std::string_view::npos) openLine_ += text;
  else openLine_ = text.substr(lineEnd + 1);
}

void Transcript::print(std::string_view text) {
  if (atLineStart_ && text.starts_with("\n")) text.remove_prefix(1);
  write(text);
}

void Transcript::prompt(std::string_view text) {
  while (text.starts_with("\n")) text.remove_prefix(1);
  endLine();
  write(text);
  atLineStart_ = false;  // a prompt ending in a line break still waits for its answer
}

void Transcript::answer(std::string_view text) {
  out_ << text << "\n";
  out_.flush();
  atLineStart_ = true;
  openLine_.clear();
}

void Transcript::endLine() {
  if (!atLineStart_) write("\n");
}

}  // namespace standalone
