#pragma once
// Output of DXF text: groups formatted the way AutoCAD writes them (code
// right-aligned in three columns), gathered in a buffer that is handed to a
// sink in large pieces so a big drawing is never held twice in memory.
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "ge/point.h"

namespace standalone {

class DxfOut {
 public:
  using Sink = std::function<void(std::string_view)>;
  // A null sink keeps everything in the buffer.
  DxfOut(std::string lineEnd, Sink sink = {});

  void tag(int code, std::string_view value);
  void real(int code, double v);
  void integer(int code, std::int64_t v);
  void handle(int code, std::uint64_t h);
  // code, code+10, code+20 for x, y, z.
  void point(int code, const ge::Point3d& p);
  void point2(int code, double x, double y);
  // Bytes of the original file, written as they are.
  void raw(std::string_view bytes);
  // Hands everything gathered so far to the sink.
  void flush();
  // Everything written, when there is no sink.
  std::string& text() { return buf_; }

 private:
  void code(int c);
  void endLine() { buf_ += eol_; }
  void maybeFlush();

  std::string eol_;
  Sink sink_;
  std::string buf_;
};

}  // namespace standalone
