#include "standalone/db/dxf_entity_writer.h"

#include <cmath>
#include <vector>

#include "standalone/db/attribute_placement.h"
#include "standalone/db/dxf_hatch.h"
#include "standalone/db/dxf_tags.h"
#include "standalone/db/entity_props.h"
#include "standalone/db/ocs.h"
#include "standalone/db/r12_downgrade.h"

namespace standalone {

namespace {

// Writes an entity's groups, putting each kept group back after the subclass
// marker it followed in the original.
class Emitter {
 public:
  Emitter(DxfOut& out, const EntityRecord& rec, const EntityWriteContext& ctx)
      : out_(out), rec_(rec), ctx_(ctx), done_(rec.extras.markers.size() + 1, false) {}

  // 0 type, handle, reactors, extension dictionary, owner, AcDbEntity and the properties.
  void begin(const char* type) {
    out_.tag(0, type);
    if (ctx_.handles) out_.handle(5, rec_.entity.id.value);
    if (ctx_.markers) {
      if (!rec_.extras.reactors.empty()) {
        out_.tag(102, "{ACAD_REACTORS");
        for (auto h : rec_.extras.reactors) out_.handle(330, h);
        out_.tag(102, "}");
      }
      if (rec_.extras.extensionDictionary) {
        out_.tag(102, "{ACAD_XDICTIONARY");
        out_.handle(360, rec_.extras.extensionDictionary);
        out_.tag(102, "}");
      }
      flushAnchor(0);
      out_.handle(330, rec_.entity.owner.value);
    }
    marker("AcDbEntity");
    if (ctx_.paperSpaces.count(rec_.entity.owner.value)) out_.integer(67, 1);
    writeProperties(rec_.entity.props);
  }

  // A subclass marker; the kept groups of the previous one go first.
  void marker(std::string_view name) {
    if (current_ != 0) flushAnchor(current_);
    std::size_t occurrence = 1;
    for (std::string_view m : written_) occurrence += m == name ? 1 : 0;
    written_.push_back(name);
    current_ = anchorOf(name, occurrence);
    if (ctx_.markers) out_.tag(100, name);
  }

  // Kept groups not yet written (all of them for a file without markers),
  // with the original markers this writer does not produce itself, then
  // XDATA and embedded objects.
  void finish() {
    if (current_ != 0) flushAnchor(current_);
    flushAnchor(0);
    for (std::size_t a = 1; a < done_.size(); ++a) {
      if (done_[a]) continue;
      if (ctx_.markers) out_.tag(100, rec_.extras.markers[a - 1]);
      flushAnchor(a);
    }
    for (const KeptTag& k : rec_.extras.kept)
      if (k.anchor == kAnchorTail) out_.tag(k.code, k.value);
  }

  bool hasKept(std::string_view markerName) const {
    std::size_t a = anchorOf(markerName, 1);
    for (const KeptTag& k : rec_.extras.kept)
      if (a != 0 && k.anchor == a) return true;
    return false;
  }

  DxfOut& out() { return out_; }
  std::string text(const std::string& utf8) const { return encodeText(utf8, ctx_.encoding); }

 private:
  // Original anchor of the n-th marker with this name; 0 when it had none.
  std::size_t anchorOf(std::string_view name, std::size_t n) const {
    for (std::size_t i = 0; i < rec_.extras.markers.size(); ++i)
      if (rec_.extras.markers[i] == name && --n == 0) return i + 1;
    return 0;
  }
  // The property groups, in the order propertyTags gives them.
  void writeProperties(const host::EntityProps& p) {
    out_.tag(8, p.layer.empty() ? std::string("0") : encodeText(p.layer, ctx_.encoding));
    if (!p.linetype.empty()) out_.tag(6, encodeText(p.linetype, ctx_.encoding));
    if (p.color.index != host::Color::kByLayer) out_.integer(62, p.color.index);
    if (p.color.trueColor) out_.integer(420, *p.color.trueColor & 0xFFFFFFu);
    if (p.lineweight != -1) out_.integer(370, p.lineweight);
    if (p.linetypeScale != 1.0) out_.real(48, p.linetypeScale);
    if (p.invisible) out_.integer(60, 1);
  }
  void flushAnchor(std::size_t anchor) {
    if (anchor >= done_.size() || done_[anchor]) return;
    done_[anchor] = true;
    for (const KeptTag& k : rec_.extras.kept)
      if (k.anchor == anchor) out_.tag(k.code, k.value);
  }

 private:
  DxfOut& out_;
  const EntityRecord& rec_;
  const EntityWriteContext& ctx_;
  std::vector<bool> done_;
  std::size_t current_ = 0;
  std::vector<std::string_view> written_;  // markers written so far
};

void writeNormal(DxfOut& out, const ge::Vector3d& n) {
  if (!isWorldZ(n)) out.point(210, {n.x, n.y, n.z});
}

double degrees(double radians) { return radians / kDegree; }

struct KindWriter {
  Emitter& e;
  const EntityRecord& rec;
  const EntityWriteContext& ctx;

  DxfOut& out() { return e.out(); }
  std::uint64_t spareHandle() { return ctx.spareHandles ? (*ctx.spareHandles)++ : 0; }

  void operator()(const host::Line& d) {
    e.begin("LINE");
    e.marker("AcDbLine");
    if (d.thickness != 0) out().real(39, d.thickness);
    out().point(10, d.start);
    out().point(11, d.end);
    writeNormal(out(), d.normal);
  }
  void operator()(const host::Circle& d) {
    e.begin("CIRCLE");
    circleBody(d.center, d.radius, d.thickness, d.normal);
  }
  void operator()(const host::Arc& d) {
    e.begin("ARC");
    circleBody(d.center, d.radius, d.thickness, d.normal);
    e.marker("AcDbArc");
    out().real(50, degrees(d.startAngle));
    out().real(51, degrees(d.endAngle));
  }
  void circleBody(const ge::Point3d& c, double r, double thickness, const ge::Vector3d& n) {
    e.marker("AcDbCircle");
    if (thickness != 0) out().real(39, thickness);
    out().point(10, worldToOcs(c, n));
    out().real(40, r);
    writeNormal(out(), n);
  }
  void operator()(const host::Ellipse& d) {
    e.begin("ELLIPSE");
    e.marker("AcDbEllipse");
    out().point(10, d.center);
    out().point(11, {d.majorAxis.x, d.majorAxis.y, d.majorAxis.z});
    out().point(210, {d.normal.x, d.normal.y, d.normal.z});
    out().real(40, d.ratio);
    out().real(41, d.startParam);
    out().real(42, d.endParam);
  }
  void operator()(const host::LwPolyline& d) {
    if (!ctx.markers) return lwAsPolyline(d);
    e.begin("LWPOLYLINE");
    e.marker("AcDbPolyline");
    out().integer(90, static_cast<std::int64_t>(d.vertices.size()));
    out().integer(70, (d.closed ? 1 : 0) | (d.plinegen ? 128 : 0));
    bool widths = false;
    for (const auto& v : d.vertices) widths = widths || v.startWidth != 0 || v.endWidth != 0;
    if (!widths) out().real(43, d.constantWidth);
    if (d.elevation != 0) out().real(38, d.elevation);
    if (d.thickness != 0) out().real(39, d.thickness);
    // Vertex ids go back in order only while the count is the one read: after
    // vertices were added or removed we cannot tell which id belongs where,
    // and an id on the wrong vertex is worse than none, so then none are written.
    const auto& ids = rec.extras.vertexIds;
    bool writeIds = ids.size() == d.vertices.size();
    for (std::size_t i = 0; i < d.vertices.size(); ++i) {
      const auto& v = d.vertices[i];
      out().point2(10, v.x, v.y);
      if (writeIds && !ids[i].empty()) out().tag(91, ids[i]);
      if (widths) {
        out().real(40, v.startWidth);
        out().real(41, v.endWidth);
      }
      if (v.bulge != 0) out().real(42, v.bulge);
    }
    writeNormal(out(), d.normal);
  }
  // R12 has no lightweight polyline: the same shape as POLYLINE/VERTEX.
  void lwAsPolyline(const host::LwPolyline& d) {
    host::Polyline2d p;
    p.closed = d.closed;
    p.plinegen = d.plinegen;
    p.elevation = d.elevation;
    p.thickness = d.thickness;
    p.normal = d.normal;
    p.defaultStartWidth = p.defaultEndWidth = d.constantWidth;
    for (const auto& v : d.vertices) {
      bool own = v.startWidth != 0 || v.endWidth != 0;
      p.vertices.push_back({{v.x, v.y, d.elevation}, v.bulge, own ? v.startWidth : d.constantWidth,
                            own ? v.endWidth : d.constantWidth, 0, 0, spareHandle()});
    }
    p.seqendHandle = spareHandle();
    (*this)(p);
  }
  void operator()(const host::Polyline2d& d) {
    e.begin("POLYLINE");
    e.marker("AcDb2dPolyline");
    out().integer(66, 1);
    out().point(10, {0, 0, d.elevation});
    if (d.thickness != 0) out().real(39, d.thickness);
    int flags = (d.closed ? 1 : 0) | (d.curveFit ? 2 : 0) | (d.splineFit ? 4 : 0) | (d.plinegen ? 128 : 0);
    out().integer(70, flags);
    if (d.defaultStartWidth != 0) out().real(40, d.defaultStartWidth);
    if (d.defaultEndWidth != 0) out().real(41, d.defaultEndWidth);
    if (d.curveType != host::PolyCurveType::kNone) out().integer(75, static_cast<int>(d.curveType));
    writeNormal(out(), d.normal);
    e.finish();
    for (const auto& v : d.vertices) {
      subRecord("VERTEX", v.handle);
      if (ctx.markers) {
        out().tag(100, "AcDbVertex");
        out().tag(100, "AcDb2dVertex");
      }
      out().point(10, {v.position.x, v.position.y, d.elevation});
      if (v.startWidth != d.defaultStartWidth) out().real(40, v.startWidth);
      if (v.endWidth != d.defaultEndWidth) out().real(41, v.endWidth);
      if (v.bulge != 0) out().real(42, v.bulge);
      out().integer(70, v.flags);
      if (v.flags & host::kVertexTangentDefined) out().real(50, degrees(v.tangent));
      endSubRecord();
    }
    subRecord("SEQEND", d.seqendHandle);
    endSubRecord();
  }
  void operator()(const host::Polyline3d& d) {
    e.begin("POLYLINE");
    e.marker("AcDb3dPolyline");
    out().integer(66, 1);
    out().point(10, {0, 0, 0});
    out().integer(70, 8 | (d.closed ? 1 : 0) | (d.splineFit ? 4 : 0));
    if (d.curveType != host::PolyCurveType::kNone) out().integer(75, static_cast<int>(d.curveType));
    e.finish();
    for (const auto& v : d.vertices) {
      subRecord("VERTEX", v.handle);
      if (ctx.markers) {
        out().tag(100, "AcDbVertex");
        out().tag(100, "AcDb3dPolylineVertex");
      }
      out().point(10, v.position);
      out().integer(70, v.flags | host::kVertex3dPolyline);
      endSubRecord();
    }
    subRecord("SEQEND", d.seqendHandle);
    endSubRecord();
  }
  // VERTEX or SEQEND owned by the polyline, on the polyline's layer.
  void subRecord(const char* type, std::uint64_t handle) {
    out().tag(0, type);
    if (ctx.handles) out().handle(5, handle);
    if (ctx.markers) {
      out().handle(330, rec.entity.id.value);
      out().tag(100, "AcDbEntity");
    }
    if (ctx.paperSpaces.count(rec.entity.owner.value)) out().integer(67, 1);
    out().tag(8, e.text(rec.entity.props.layer.empty() ? "0" : rec.entity.props.layer));
    pendingKept_ = nullptr;
    for (const auto& sub : rec.extras.subRecords)
      if (sub.handle == handle && handle != 0) pendingKept_ = &sub.kept;
  }
  // The kept groups of the VERTEX or SEQEND just written, at its end.
  void endSubRecord() {
    if (!pendingKept_) return;
    for (const KeptTag& k : *pendingKept_) out().tag(k.code, k.value);
    pendingKept_ = nullptr;
  }
  const std::vector<KeptTag>* pendingKept_ = nullptr;
  void operator()(const host::Spline& d) {
    e.begin("SPLINE");
    splineBody(d);
  }
  void splineBody(const host::Spline& d) {
    e.marker("AcDbSpline");
    if ((d.flags & 8) || !isWorldZ(d.normal)) out().point(210, {d.normal.x, d.normal.y, d.normal.z});
    out().integer(70, d.flags);
    out().integer(71, d.degree);
    out().integer(72, static_cast<std::int64_t>(d.knots.size()));
    out().integer(73, static_cast<std::int64_t>(d.controlPoints.size()));
    out().integer(74, static_cast<std::int64_t>(d.fitPoints.size()));
    out().real(42, d.knotTolerance);
    out().real(43, d.controlTolerance);
    if (!d.fitPoints.empty()) out().real(44, d.fitTolerance);
    if (d.startTangent) out().point(12, {d.startTangent->x, d.startTangent->y, d.startTangent->z});
    if (d.endTangent) out().point(13, {d.endTangent->x, d.endTangent->y, d.endTangent->z});
    for (double k : d.knots) out().real(40, k);
    for (double w : d.weights) out().real(41, w);
    for (const auto& p : d.controlPoints) out().point(10, p);
    for (const auto& p : d.fitPoints) out().point(11, p);
  }
  void operator()(const host::Helix& d) {
    e.begin("HELIX");
    splineBody(d.curve);
    e.marker("AcDbHelix");
    out().integer(90, 29);
    out().integer(91, 63);
    out().point(10, d.axisBase);
    out().point(11, d.startPoint);
    out().point(12, {d.axisVector.x, d.axisVector.y, d.axisVector.z});
    out().real(40, d.topRadius);
    out().real(41, d.turns);
    out().real(42, d.turnHeight);
    out().integer(290, d.counterClockwise ? 1 : 0);
    out().integer(280, d.constrain);
  }
  void operator()(const host::Text& d) {
    e.begin("TEXT");
    e.marker("AcDbText");
    if (d.thickness != 0) out().real(39, d.thickness);
    out().point(10, worldToOcs(d.position, d.normal));
    out().real(40, d.height);
    out().tag(1, e.text(d.text));
    if (d.rotation != 0) out().real(50, degrees(d.rotation));
    if (d.widthFactor != 1) out().real(41, d.widthFactor);
    if (d.oblique != 0) out().real(51, degrees(d.oblique));
    if (!d.style.empty()) out().tag(7, e.text(d.style));
    if (d.mirrorFlags != 0) out().integer(71, d.mirrorFlags);
    if (d.horizontalJustify != 0) out().integer(72, d.horizontalJustify);
    if (d.horizontalJustify != 0 || d.verticalJustify != 0) out().point(11, worldToOcs(d.alignmentPoint, d.normal));
    writeNormal(out(), d.normal);
    e.marker("AcDbText");
    if (d.verticalJustify != 0) out().integer(73, d.verticalJustify);
  }
  void operator()(const host::MText& d) {
    e.begin("MTEXT");
    e.marker("AcDbMText");
    out().point(10, d.position);
    out().real(40, d.height);
    out().real(41, d.referenceWidth);
    out().integer(71, d.attachment);
    out().integer(72, d.drawingDirection);
    writeMTextChunks(d.text);
    if (!d.style.empty()) out().tag(7, e.text(d.style));
    writeNormal(out(), d.normal);
    out().point(11, {d.xDirection.x, d.xDirection.y, d.xDirection.z});
  }
  // Text in pieces of at most 250 characters: 3 groups, the last piece in 1.
  void writeMTextChunks(const std::string& utf8) {
    constexpr std::size_t kChunk = 250;
    std::vector<std::string> pieces;
    std::size_t i = 0;
    while (i < utf8.size()) {
      std::size_t j = i, chars = 0;
      while (j < utf8.size() && chars < kChunk) {
        ++j;
        while (j < utf8.size() && (static_cast<unsigned char>(utf8[j]) & 0xC0) == 0x80) ++j;
        ++chars;
      }
      pieces.push_back(utf8.substr(i, j - i));
      i = j;
    }
    if (pieces.empty()) pieces.emplace_back();
    for (std::size_t k = 0; k + 1 < pieces.size(); ++k) out().tag(3, e.text(pieces[k]));
    out().tag(1, e.text(pieces.back()));
  }
  void operator()(const host::PointEntity& d) {
    e.begin("POINT");
    e.marker("AcDbPoint");
    out().point(10, d.position);
    if (d.thickness != 0) out().real(39, d.thickness);
    writeNormal(out(), d.normal);
    if (d.xAxisAngle != 0) out().real(50, degrees(d.xAxisAngle));
  }
  void operator()(const host::BlockReference& d) {
    e.begin("INSERT");
    e.marker("AcDbBlockReference");
    if (!rec.extras.attributeTail.empty()) out().integer(66, 1);
    out().tag(2, e.text(d.blockName));
    out().point(10, worldToOcs(d.position, d.normal));
    if (d.scale.x != 1) out().real(41, d.scale.x);
    if (d.scale.y != 1) out().real(42, d.scale.y);
    if (d.scale.z != 1) out().real(43, d.scale.z);
    if (d.rotation != 0) out().real(50, degrees(d.rotation));
    if (d.columnCount != 1) out().integer(70, d.columnCount);
    if (d.rowCount != 1) out().integer(71, d.rowCount);
    if (d.columnSpacing != 0) out().real(44, d.columnSpacing);
    if (d.rowSpacing != 0) out().real(45, d.rowSpacing);
    writeNormal(out(), d.normal);
  }
  void operator()(const host::Hatch& d) {
    e.begin("HATCH");
    e.marker("AcDbHatch");
    out().point(10, {0, 0, d.elevation});
    out().point(210, {d.normal.x, d.normal.y, d.normal.z});
    out().tag(2, e.text(d.patternName));
    out().integer(70, d.solidFill ? 1 : 0);
    out().integer(71, d.associative ? 1 : 0);
    writeHatchPaths(out(), d.paths, ctx.version >= "AC1024");
    writeHatchPattern(out(), d);
  }
  void operator()(const host::Image& d) {
    e.begin("IMAGE");
    e.marker("AcDbRasterImage");
    bool made = !e.hasKept("AcDbRasterImage");
    if (made) out().integer(90, 0);
    out().point(10, d.insertion);
    out().point(11, {d.uVector.x, d.uVector.y, d.uVector.z});
    out().point(12, {d.vVector.x, d.vVector.y, d.vVector.z});
    out().point2(13, d.widthPixels, d.heightPixels);
    out().handle(340, d.imageDefHandle);
    out().integer(70, d.displayFlags);
    if (made) {
      out().integer(280, 0);
      out().integer(281, 50);
      out().integer(282, 50);
      out().integer(283, 0);
    }
  }
  void operator()(const host::OtherEntity&) {
    for (const Tag& t : rec.extras.otherTags) out().tag(t.code, t.value);
  }
};

}  // namespace

namespace {

std::size_t subRecordCount(const host::EntityData& data) {
  if (auto* lw = std::get_if<host::LwPolyline>(&data)) return lw->vertices.size() + 1;
  if (auto* p = std::get_if<host::Polyline2d>(&data)) return p->vertices.size() + 1;
  if (auto* p3 = std::get_if<host::Polyline3d>(&data)) return p3->vertices.size() + 1;
  return 0;
}

void giveSpareHandles(host::EntityData& data, const EntityWriteContext& ctx) {
  auto next = [&]() -> std::uint64_t { return ctx.spareHandles && ctx.handles ? (*ctx.spareHandles)++ : 0; };
  if (auto* p = std::get_if<host::Polyline2d>(&data)) {
    for (auto& v : p->vertices) v.handle = next();
    p->seqendHandle = next();
  } else if (auto* p3 = std::get_if<host::Polyline3d>(&data)) {
    for (auto& v : p3->vertices) v.handle = next();
    p3->seqendHandle = next();
  }
}

}  // namespace

std::size_t spareHandlesNeeded(const EntityRecord& rec, const EntityWriteContext& ctx) {
  if (ctx.markers || !rec.raw.empty() || !ctx.handles) return 0;
  if (std::holds_alternative<host::LwPolyline>(rec.entity.data)) return subRecordCount(rec.entity.data);
  std::size_t needed = 0;
  if (auto standIns = r12StandIns(rec.entity.data))
    for (std::size_t i = 0; i < standIns->size(); ++i)  // the first takes the record's own handle
      needed += subRecordCount((*standIns)[i]) + (i > 0 ? 1 : 0);
  return needed;
}

void writeEntity(DxfOut& out, const EntityRecord& rec, const EntityWriteContext& ctx) {
  if (!rec.raw.empty()) {
    out.raw(rec.raw);
    return;
  }
  if (std::holds_alternative<host::OtherEntity>(rec.entity.data)) {
    for (const Tag& t : rec.extras.otherTags) out.tag(t.code, t.value);
    return;
  }
  if (!ctx.markers) {
    if (auto standIns = r12StandIns(rec.entity.data)) {
      EntityRecord copy = rec;
      // Groups kept for the original kind mean nothing to the stand-ins.
      std::erase_if(copy.extras.kept, [](const KeptTag& k) { return k.anchor != kAnchorTail; });
      copy.extras.subRecords.clear();
      for (std::size_t i = 0; i < standIns->size(); ++i) {
        if (i > 0) {  // further boundaries of a hatch: new records, the XDATA stays with the first
          copy.entity.id = {ctx.spareHandles && ctx.handles ? (*ctx.spareHandles)++ : 0};
          copy.extras.kept.clear();
        }
        copy.entity.data = std::move((*standIns)[i]);
        giveSpareHandles(copy.entity.data, ctx);
        writeEntity(out, copy, ctx);
      }
      return;
    }
  }
  Emitter e(out, rec, ctx);
  bool subRecords = std::holds_alternative<host::Polyline2d>(rec.entity.data) ||
                    std::holds_alternative<host::Polyline3d>(rec.entity.data) ||
                    (!ctx.markers && std::holds_alternative<host::LwPolyline>(rec.entity.data));
  std::visit(KindWriter{e, rec, ctx}, rec.entity.data);
  if (!subRecords) e.finish();
  if (auto* ref = std::get_if<host::BlockReference>(&rec.entity.data); ref && !rec.extras.attributeTail.empty()) {
    if (placementOf(*ref) == rec.extras.attributeBase) {
      out.raw(rec.extras.attributeTail);
    } else {
      for (const Tag& t : attributesMoved(rec.extras.attributeTail, rec.extras.attributeBase, placementOf(*ref)))
        out.tag(t.code, t.value);
    }
  }
}

}  // namespace standalone
