#include "apps/corvane-workbench/transcript_stream.h"

namespace workbench {

CallbackStreamBuf::int_type CallbackStreamBuf::overflow(int_type ch) {
  if (traits_type::eq_int_type(ch, traits_type::eof())) return traits_type::not_eof(ch);
  char c = traits_type::to_char_type(ch);
  sink_(std::string_view(&c, 1));
  return ch;
}

std::streamsize CallbackStreamBuf::xsputn(const char* s, std::streamsize n) {
  sink_(std::string_view(s, static_cast<std::size_t>(n)));
  return n;
}

}  // namespace workbench
