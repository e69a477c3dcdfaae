#pragma once
// How WMFOUT lays a view out in a metafile and how WMFIN sizes one that it
// brings in. WMFOUT writes the current view: its centre is the logical
// origin, the larger of its sides spans kViewSpan logical units, y runs
// down. WMFIN puts a metafile's logical origin on the insertion point and, at
// scale 1, makes its frame half as high as the current view. So a metafile
// written and read back under the same view, inserted at the view centre at
// scale 2, lands where its shapes were drawn.
#include "standalone/editor/view.h"
#include "standalone/metafile/wmf_file.h"
#include "standalone/render/outlines.h"

namespace standalone {

// Logical units across the larger side of an exported view: room for shapes
// reaching past the view by about half its size within 16-bit coordinates.
inline constexpr int kViewSpan = 32000;

struct ViewFrame {
  WmfFrame frame;        // the view in logical units, centred on the origin
  PlaneMap toLogical;    // drawing XY -> logical units
  double unitsPerDrawingUnit = 1;
};

// The frame of the view for WMFOUT.
ViewFrame viewFrame(const View& view);

// Drawing units per logical unit of a metafile that WMFIN brings in at scale
// 1 under the given view: half the view's height over the frame's height.
double importUnit(const View& view, const WmfFrame& frame);

}  // namespace standalone
