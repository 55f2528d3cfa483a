#include "measure/MeterColumn.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPainter>
#include <algorithm>

namespace tessmar {
namespace {

constexpr QColor kFillColour{128, 128, 255};
constexpr QSize kUsualSize{54, 156};
constexpr QSize kSmallestSize{24, 60};

/// What a screen reader sees of a column: how full it is, in percent.
class MeterColumnAccessible final : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit MeterColumnAccessible(MeterColumn* column)
      : QAccessibleWidget(column, QAccessible::ProgressBar), column_(column) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }

  QVariant currentValue() const override { return column_->Percent(); }
  void setCurrentValue(const QVariant&) override {
    // A gauge is read only.
  }
  QVariant minimumValue() const override { return 0; }
  QVariant maximumValue() const override { return 100; }
  QVariant minimumStepSize() const override { return 1; }

 private:
  MeterColumn* column_;
};

QAccessibleInterface* MakeAccessible(const QString&, QObject* object) {
  auto* column = qobject_cast<MeterColumn*>(object);
  return column == nullptr ? nullptr : new MeterColumnAccessible(column);
}

}  // namespace

MeterColumn::MeterColumn(QWidget* parent) : QFrame(parent) {
  QAccessible::installFactory(MakeAccessible);
  setFrameStyle(QFrame::Panel | QFrame::Sunken);
  setLineWidth(2);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
}

void MeterColumn::SetLevel(double fraction, bool enabled) {
  // Written so that a fraction that is not a number counts as 0.
  const double level = fraction > 0 ? std::min(fraction, 1.0) : 0.0;
  if (level == fraction_ && enabled == enabled_) return;
  const int height = FillHeight();
  const int percent = Percent();
  fraction_ = level;
  enabled_ = enabled;
  if (FillHeight() != height) update(contentsRect());
  if (Percent() != percent && QAccessible::isActive()) {
    QAccessibleValueChangeEvent event(this, Percent());
    QAccessible::updateAccessibility(&event);
  }
}

int MeterColumn::Percent() const {
  return enabled_ ? qRound(fraction_ * 100) : 0;
}

int MeterColumn::FillHeight() const {
  return enabled_ ? qRound(fraction_ * contentsRect().height()) : 0;
}

void MeterColumn::SetReadingText(const QString& text) {
  if (accessibleDescription() != text) setAccessibleDescription(text);
}

QSize MeterColumn::sizeHint() const {
  return kUsualSize;
}

QSize MeterColumn::minimumSizeHint() const {
  return kSmallestSize;
}

void MeterColumn::paintEvent(QPaintEvent* event) {
  QFrame::paintEvent(event);
  QPainter painter(this);
  const QRect inner = contentsRect();
  const int filled = FillHeight();
  painter.fillRect(inner.adjusted(0, 0, 0, -filled), palette().color(QPalette::Button));
  painter.fillRect(inner.adjusted(0, inner.height() - filled, 0, 0), kFillColour);
}

}  // namespace tessmar
