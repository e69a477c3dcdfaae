#pragma once
// Selecting objects with an entity-type filter, and the four filters the
// commands share. A filter is a result-buffer list in acutBuildList form:
// group -4 "<or", one group 0 (DXF type name) per accepted type, group -4 "or>".
#include <initializer_list>
#include <string_view>
#include <vector>

#include "frame/text.h"
#include "host/host.h"

namespace frame {

// A filter accepting any of the given DXF type names.
host::ResBufList typeFilter(std::initializer_list<std::string_view> dxfNames);
// "POLYLINE", "LWPOLYLINE".
host::ResBufList polylineFilter();
// "LWPOLYLINE", listed twice inside the or-group.
host::ResBufList lwPolylineFilter();
// "POLYLINE", "LWPOLYLINE", "LINE", "ELLIPSE", "CIRCLE", "HELIX", "ARC", "SPLINE".
host::ResBufList curveFilter();
// "LWPOLYLINE", "POLYLINE", "CIRCLE", "ELLIPSE", "INSERT", "SPLINE".
host::ResBufList closedShapeFilter();

// Prints the prompt (an empty literal falls back to "Please select Curves >\n"
// or "\n请选择多根曲线>"), selects with the curve filter, and appends the ids of
// the selected curves to ids in selection order. True when at least one id
// was appended; an empty or failed selection prints "No Curve selected.\n".
bool selectCurves(host::Host& host, const Text& prompt, std::vector<host::ObjectId>& ids);

// As selectCurves without a filter or curve test (defaults "Please select
// Entities >\n" / "\n请选择物体>"; message "No Entity selected.\n").
bool selectEntities(host::Host& host, const Text& prompt, std::vector<host::ObjectId>& ids);

// Which filter a single pick uses.
enum class PickKind { kClosedShapesAndBlocks, kLwPolylines };

// Prints the prompt and runs a single selection attempt (":S") with the
// kind's filter; the first entity selected, or the null id after the kind's message.
host::ObjectId pickOne(host::Host& host, const Text& prompt, PickKind kind);

}  // namespace frame
