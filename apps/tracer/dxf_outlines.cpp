#include "dxf_outlines.h"

#include <charconv>
#include <cstdio>

#include "ge/extents.h"

namespace tracer {

namespace {

class DxfText {
 public:
  void tag(int code, std::string_view value) {
    number(code);
    text_ += value;
    text_ += '\n';
  }
  void tag(int code, double value) {
    number(code);
    char buf[32];
    auto r = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::fixed, 6);
    text_.append(buf, r.ptr);
    text_ += '\n';
  }
  void point(int code, double x, double y) {
    tag(code, x);
    tag(code + 10, y);
    tag(code + 20, 0.0);
  }
  std::string take() { return std::move(text_); }

 private:
  void number(int code) {
    char buf[16];
    auto r = std::to_chars(buf, buf + sizeof buf, code);
    text_.append(buf, r.ptr);
    text_ += '\n';
  }
  std::string text_;
};

}  // namespace

std::string outlinesDxf(const std::vector<image::Outline>& outlines) {
  ge::Extents3d extents;
  for (const image::Outline& o : outlines)
    for (const ge::Point2d& p : o.points) extents.add(ge::Point3d{p.x, p.y, 0});
  if (!extents.isValid()) extents.add(ge::Point3d{0, 0, 0});
  DxfText d;
  d.tag(0, "SECTION");
  d.tag(2, "HEADER");
  d.tag(9, "$ACADVER");
  d.tag(1, "AC1009");
  d.tag(9, "$INSBASE");
  d.point(10, 0, 0);
  d.tag(9, "$EXTMIN");
  d.point(10, extents.min.x, extents.min.y);
  d.tag(9, "$EXTMAX");
  d.point(10, extents.max.x, extents.max.y);
  d.tag(0, "ENDSEC");
  d.tag(0, "SECTION");
  d.tag(2, "ENTITIES");
  for (const image::Outline& o : outlines) {
    d.tag(0, "POLYLINE");
    d.tag(8, "0");
    d.tag(66, "1");
    d.point(10, 0, 0);
    d.tag(70, "1");
    for (const ge::Point2d& p : o.points) {
      d.tag(0, "VERTEX");
      d.tag(8, "0");
      d.point(10, p.x, p.y);
    }
    d.tag(0, "SEQEND");
    d.tag(8, "0");
  }
  d.tag(0, "ENDSEC");
  d.tag(0, "EOF");
  return d.take();
}

}  // namespace tracer
