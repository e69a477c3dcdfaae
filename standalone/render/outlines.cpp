#include "standalone/render/outlines.h"

#include <cairo.h>

#include "standalone/render/text_placement.h"

namespace standalone {

namespace {

// Splits a flattened cairo path into outlines; a closed contour loses the
// copy of its first point at its end.
std::vector<Outline> splitFlatPath(const cairo_path_t* path) {
  std::vector<Outline> out;
  auto finish = [&out] {
    if (out.empty()) return;
    Outline& o = out.back();
    if (o.closed && o.points.size() > 1 && o.points.front() == o.points.back()) o.points.pop_back();
    if (o.points.size() < 2) out.pop_back();
  };
  for (int i = 0; i < path->num_data; i += path->data[i].header.length) {
    const cairo_path_data_t& d = path->data[i];
    switch (d.header.type) {
      case CAIRO_PATH_MOVE_TO:
        finish();
        out.emplace_back();
        out.back().points.push_back({path->data[i + 1].point.x, path->data[i + 1].point.y});
        break;
      case CAIRO_PATH_LINE_TO:
        if (out.empty() || out.back().closed) {
          finish();
          out.emplace_back();
        }
        out.back().points.push_back({path->data[i + 1].point.x, path->data[i + 1].point.y});
        break;
      case CAIRO_PATH_CLOSE_PATH:
        if (!out.empty()) out.back().closed = true;
        break;
      case CAIRO_PATH_CURVE_TO:  // a flat path has none
        break;
    }
  }
  finish();
  return out;
}

}  // namespace

struct OutlineTracer::Cairo {
  // Unbounded: cairo drops glyphs that fall outside a bounded surface, even from paths.
  cairo_surface_t* surface = cairo_recording_surface_create(CAIRO_CONTENT_ALPHA, nullptr);
  cairo_t* cr = cairo_create(surface);
  cairo_matrix_t map{};
  TextPlacer placer;
  ~Cairo() {
    cairo_destroy(cr);
    cairo_surface_destroy(surface);
  }

  void addPath(const Path& path) {
    for (const PathOp& op : path.ops) {
      if (auto* m = std::get_if<PathMove>(&op))
        cairo_move_to(cr, m->to.x, m->to.y);
      else if (auto* l = std::get_if<PathLine>(&op))
        cairo_line_to(cr, l->to.x, l->to.y);
      else if (auto* a = std::get_if<PathArc>(&op))
        (a->ccw ? cairo_arc : cairo_arc_negative)(cr, a->center.x, a->center.y, a->radius, a->startAngle, a->endAngle);
      else
        cairo_close_path(cr);
    }
  }
  void addText(const TextRun& run) {
    cairo_save(cr);
    if (placer.place(cr, run)) cairo_text_path(cr, run.utf8.c_str());
    cairo_restore(cr);
  }
};

OutlineTracer::OutlineTracer(const PlaneMap& map, double tolerance) : cairo_(std::make_unique<Cairo>()) {
  cairo_matrix_init(&cairo_->map, map.xx, map.yx, map.xy, map.yy, map.x0, map.y0);
  cairo_set_tolerance(cairo_->cr, tolerance);
  // Unhinted outlines: a text and its mirror image get the same glyph shapes and advances.
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_set_font_options(cairo_->cr, options);
  cairo_font_options_destroy(options);
}

OutlineTracer::~OutlineTracer() = default;

std::vector<Outline> OutlineTracer::outlinesOf(const SceneItem& item) {
  cairo_t* cr = cairo_->cr;
  cairo_new_path(cr);
  cairo_set_matrix(cr, &cairo_->map);
  if (auto* p = std::get_if<ScenePath>(&item.shape))
    cairo_->addPath(p->path);
  else if (auto* t = std::get_if<TextRun>(&item.shape))
    cairo_->addText(*t);
  else
    return {};
  // The path is kept in target units: read it back there.
  cairo_identity_matrix(cr);
  cairo_path_t* flat = cairo_copy_path_flat(cr);
  std::vector<Outline> out = flat->status == CAIRO_STATUS_SUCCESS ? splitFlatPath(flat) : std::vector<Outline>{};
  cairo_path_destroy(flat);
  cairo_new_path(cr);
  return out;
}

}  // namespace standalone
