#include "ui/MessageIcon.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "base/Messages.h"
#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

// The pictures are drawn on a field of 32 by 32. Their colours mean something and are the same in
// light and dark themes.
constexpr qreal kField = 32;
constexpr QColor kStopRed(0xC6, 0x28, 0x28);
constexpr QColor kCautionAmber(0xF9, 0xA8, 0x25);
constexpr QColor kAskBlue(0x15, 0x65, 0xC0);
constexpr QColor kTellTeal(0x00, 0x79, 0x6B);
constexpr QColor kDark(0x2B, 0x20, 0x00);

QPen RoundPen(const QColor& colour, qreal width) {
  return QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

void PaintDisc(QPainter& painter, const QColor& colour) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawEllipse(QPointF(16, 16), 15, 15);
}

void PaintDot(QPainter& painter, const QPointF& centre, const QColor& colour) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawEllipse(centre, 2.1, 2.1);
}

void PaintCritical(QPainter& painter) {
  QPolygonF octagon;
  octagon << QPointF(10, 1.5) << QPointF(22, 1.5) << QPointF(30.5, 10) << QPointF(30.5, 22)
          << QPointF(22, 30.5) << QPointF(10, 30.5) << QPointF(1.5, 22) << QPointF(1.5, 10);
  painter.setPen(RoundPen(kStopRed, 1));
  painter.setBrush(kStopRed);
  painter.drawPolygon(octagon);
  painter.setPen(RoundPen(Qt::white, 3.6));
  painter.drawLine(QPointF(10.5, 10.5), QPointF(21.5, 21.5));
  painter.drawLine(QPointF(21.5, 10.5), QPointF(10.5, 21.5));
}

void PaintQuestion(QPainter& painter) {
  PaintDisc(painter, kAskBlue);
  QPainterPath hook(QPointF(11.2, 12));
  hook.cubicTo(11.4, 5.6, 21, 5.8, 20.8, 12);
  hook.cubicTo(20.6, 15.6, 16, 15.6, 16, 19.4);
  painter.setPen(RoundPen(Qt::white, 3.2));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(hook);
  PaintDot(painter, QPointF(16, 24.4), Qt::white);
}

void PaintExclamation(QPainter& painter) {
  QPolygonF triangle;
  triangle << QPointF(16, 3) << QPointF(30, 28) << QPointF(2, 28);
  painter.setPen(RoundPen(kCautionAmber, 3));
  painter.setBrush(kCautionAmber);
  painter.drawPolygon(triangle);
  painter.setPen(RoundPen(kDark, 3.2));
  painter.drawLine(QPointF(16, 11), QPointF(16, 19));
  PaintDot(painter, QPointF(16, 24.6), kDark);
}

void PaintInformation(QPainter& painter) {
  PaintDisc(painter, kTellTeal);
  PaintDot(painter, QPointF(16, 8.6), Qt::white);
  painter.setPen(RoundPen(Qt::white, 3.4));
  painter.drawLine(QPointF(16, 14.4), QPointF(16, 23.6));
}

/// What a screen reader says for the picture, in the language of the texts.
QString SpokenName(int code) {
  const bool german = TextLanguage() == kLanguageGerman;
  switch (code) {
    case kCritical:
      return german ? u"Fehler"_s : u"Error"_s;
    case kQuestion:
      return german ? u"Frage"_s : u"Question"_s;
    case kExclamation:
      return german ? u"Warnung"_s : u"Warning"_s;
    case kInformation:
      return german ? u"Hinweis"_s : u"Information"_s;
    default:
      return {};
  }
}

}  // namespace

void PaintMessageIcon(QPainter& painter, const QRectF& area, int code) {
  const qreal side = std::min(area.width(), area.height());
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(area.center() - QPointF(side / 2, side / 2));
  painter.scale(side / kField, side / kField);
  switch (code) {
    case kCritical:
      PaintCritical(painter);
      break;
    case kQuestion:
      PaintQuestion(painter);
      break;
    case kExclamation:
      PaintExclamation(painter);
      break;
    case kInformation:
      PaintInformation(painter);
      break;
    default:
      break;
  }
  painter.restore();
}

MessageIcon::MessageIcon(QWidget* parent) : QWidget(parent) {}

void MessageIcon::SetCode(int code) {
  code_ = code;
  const QString name = SpokenName(code);
  setAccessibleName(name);
  setVisible(!name.isEmpty());
  update();
}

void MessageIcon::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  PaintMessageIcon(painter, rect(), code_);
}

}  // namespace tessmar
