#pragma once
// The host writes its transcript to a std::ostream; this one hands every
// piece of text to the window as it is written.
#include <functional>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace workbench {

class CallbackStreamBuf : public std::streambuf {
 public:
  using Sink = std::function<void(std::string_view)>;
  explicit CallbackStreamBuf(Sink sink) : sink_(std::move(sink)) {}

 protected:
  int_type overflow(int_type ch) override;
  std::streamsize xsputn(const char* s, std::streamsize n) override;

 private:
  Sink sink_;
};

class TranscriptStream : public std::ostream {
 public:
  explicit TranscriptStream(CallbackStreamBuf::Sink sink) : std::ostream(nullptr), buf_(std::move(sink)) { rdbuf(&buf_); }

 private:
  CallbackStreamBuf buf_;
};

}  // namespace workbench
