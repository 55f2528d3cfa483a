#pragma once

#include <QLineF>
#include <QRectF>
#include <optional>

namespace tessmar {

/// The part of a line that lies in a rectangle, its edges included; nothing where no part does. The
/// ends may be any finite numbers: a neighbour far outside the view bends no line that leads to it.
/// Source: Liang and Barsky, "A new concept and method for line clipping", ACM TOG 3 (1984).
std::optional<QLineF> ClippedLine(const QLineF& line, const QRectF& room);

}  // namespace tessmar
