#include "standalone/db/dxf_out.h"

#include "standalone/db/dxf_tags.h"

namespace standalone {

namespace {
constexpr std::size_t kFlushSize = 1 << 22;
}

DxfOut::DxfOut(std::string lineEnd, Sink sink) : eol_(std::move(lineEnd)), sink_(std::move(sink)) {
  if (sink_) buf_.reserve(kFlushSize + (1 << 16));
}

void DxfOut::code(int c) {
  if (c >= 0 && c < 10) {
    buf_ += "  ";
  } else if (c >= 10 && c < 100) {
    buf_ += ' ';
  }
  appendInteger(buf_, c);
  endLine();
}

void DxfOut::tag(int c, std::string_view value) {
  code(c);
  buf_ += value;
  endLine();
  maybeFlush();
}

void DxfOut::real(int c, double v) {
  code(c);
  appendReal(buf_, v);
  endLine();
  maybeFlush();
}

void DxfOut::integer(int c, std::int64_t v) {
  code(c);
  appendInteger(buf_, v);
  endLine();
  maybeFlush();
}

void DxfOut::handle(int c, std::uint64_t h) {
  code(c);
  appendHandle(buf_, h);
  endLine();
  maybeFlush();
}

void DxfOut::point(int c, const ge::Point3d& p) {
  real(c, p.x);
  real(c + 10, p.y);
  real(c + 20, p.z);
}

void DxfOut::point2(int c, double x, double y) {
  real(c, x);
  real(c + 10, y);
}

void DxfOut::raw(std::string_view bytes) {
  if (sink_ && bytes.size() >= kFlushSize) {
    flush();
    sink_(bytes);
    return;
  }
  buf_ += bytes;
  maybeFlush();
}

void DxfOut::maybeFlush() {
  if (sink_ && buf_.size() >= kFlushSize) flush();
}

void DxfOut::flush() {
  if (!sink_ || buf_.empty()) return;
  sink_(buf_);
  buf_.clear();
}

}  // namespace standalone
