#include "plot/ClippedLine.h"

#include <algorithm>

namespace tessmar {
namespace {

// The share of a line, from 0 to 1, that is left.
struct Share {
  double From = 0;
  double To = 1;

  // Takes away what lies outside one edge. @param distance  of the line's begin from the edge,
  // positive inside; @param out  how fast the line leaves through the edge.
  bool Keep(double distance, double out) {
    if (out == 0) return distance >= 0;
    const double at = distance / out;
    if (out > 0) {
      To = std::min(To, at);
    } else {
      From = std::max(From, at);
    }
    return From <= To;
  }
};

}  // namespace

std::optional<QLineF> ClippedLine(const QLineF& line, const QRectF& room) {
  Share share;
  const bool any = share.Keep(line.x1() - room.left(), -line.dx()) &&
                   share.Keep(room.right() - line.x1(), line.dx()) &&
                   share.Keep(line.y1() - room.top(), -line.dy()) &&
                   share.Keep(room.bottom() - line.y1(), line.dy());
  if (!any) return std::nullopt;
  return QLineF(share.From > 0 ? line.pointAt(share.From) : line.p1(),
                share.To < 1 ? line.pointAt(share.To) : line.p2());
}

}  // namespace tessmar
