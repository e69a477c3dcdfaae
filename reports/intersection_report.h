#pragma once
// The intersection point report of the batch intersection commands.
#include "frame/settings.h"
#include "ge/point.h"
#include "host/host.h"

namespace reports {

// Asks for the file name, writes one row per point in the given order
// (number, X, Y, Z) and opens the page. It owns the points: they are gone
// when it returns, whatever happened.
void writeIntersectionReport(host::Host& host, frame::Settings& settings, ge::PointList points);

}  // namespace reports
