#include "plot/frmTrend.h"

#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>
#include <limits>

#include "plot/PlotCanvas.h"
#include "plot/PlotTexts.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kStateMs = 1000;

}  // namespace

frmTrend::frmTrend(LiveTrend& trend, const PlotParts& parts, QWidget* parent)
    : frmPlot(trend.Data(), parts, parent), trend_(trend), lblLink_(new QLabel(this)) {
  setWindowTitle(PlotText(PlotTextId::LiveCaption));
  setModal(false);
  lblLink_->setObjectName(u"lblLink"_s);
  lblLink_->setTextFormat(Qt::PlainText);
  Foot().insertWidget(0, lblLink_);
  connect(&Canvas(), &PlotCanvas::ViewChangedByUser, this, [this] { LookedElsewhere(); });
  auto* timer = new QTimer(this);
  connect(timer, &QTimer::timeout, this, [this] { ShowState(); });
  timer->start(kStateMs);
  Canvas().FollowEnd(width_);
  ShowState();
}

void frmTrend::TakeSample() {
  if (trend_.Take(Parts().Time.Now())) {
    // Ahead of all else: what is asked of the canvas would look for the channels of before.
    Canvas().ChannelsChanged();
    Canvas().ForgetCursor();
    FillChannels();
    following_ = true;
  }
  Canvas().DataGrew();
  if (following_) {
    Canvas().FollowEnd(width_);
  } else {
    Refresh();
  }
  ShowState();
}

void frmTrend::LookedElsewhere() {
  const TimeRange all = FittedView(trend_.Data().Whole());
  const TimeRange view = Canvas().View();
  following_ = view.End == all.End;
  if (following_) width_ = view == all ? std::numeric_limits<double>::infinity() : view.Length();
  ShowState();
}

void frmTrend::ShowState() {
  QString text = trend_.StateText(Parts().Time.Now(), Parts().Locale);
  if (text.isEmpty())
    text = PlotText(following_ ? PlotTextId::Following : PlotTextId::HoldingStill);
  if (lblLink_->text() != text) lblLink_->setText(text);
}

}  // namespace tessmar
