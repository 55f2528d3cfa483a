#include "archive/frmExport.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>

#include "archive/ExportTexts.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using Id = ExportTextId;

/// Shorter work is over before a window could be read.
constexpr std::chrono::milliseconds kPatience{300};
constexpr int kLookEveryMs = 50;
constexpr int kBarMaximum = 1000;
constexpr int kWidthInCharacters = 60;

/// Work in a thread of its own.
class Beside {
 public:
  Beside(const frmExport::Work& work, ExportState& state, std::atomic<bool>& ended)
      : thread_([this, &work, &state, &ended] {
          try {
            work(state);
          } catch (...) {
            fault_ = std::current_exception();
          }
          const std::scoped_lock lock(mutex_);
          ended = true;
          end_.notify_all();
        }),
        ended_(ended) {}
  Beside(const Beside&) = delete;
  Beside& operator=(const Beside&) = delete;
  ~Beside() {
    if (thread_.joinable()) thread_.join();
  }

  bool EndsSoon() {
    std::unique_lock lock(mutex_);
    return end_.wait_for(lock, kPatience, [this] { return ended_.load(); });
  }
  void Finish() {
    thread_.join();
    if (fault_) std::rethrow_exception(fault_);
  }

 private:
  std::mutex mutex_;
  std::condition_variable end_;
  std::exception_ptr fault_;
  std::thread thread_;
  std::atomic<bool>& ended_;
};

}  // namespace

frmExport::frmExport(QWidget* parent)
    : QDialog(parent),
      lblStatusBar_(new QLabel(this)),
      progressBar_(new QProgressBar(this)),
      cmdCancel_(new QPushButton(GetText(Id::Cancel), this)) {
  setObjectName(u"frmExport"_s);
  setWindowTitle(GetText(Id::Title));
  lblStatusBar_->setObjectName(u"lblStatusBar"_s);
  progressBar_->setObjectName(u"ProgressBar"_s);
  progressBar_->setAccessibleName(GetText(Id::Title));
  progressBar_->setTextVisible(false);
  progressBar_->setRange(0, kBarMaximum);
  cmdCancel_->setObjectName(u"cmdCancel"_s);
  cmdCancel_->setAutoDefault(false);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(cmdCancel_);
  auto* rows = new QVBoxLayout(this);
  rows->addWidget(lblStatusBar_);
  rows->addWidget(progressBar_);
  rows->addLayout(buttons);
  setMinimumWidth(fontMetrics().averageCharWidth() * kWidthInCharacters);

  // Not on Cancel: the key that began the export, pressed once more, must not end it.
  progressBar_->setFocusPolicy(Qt::TabFocus);
  progressBar_->setFocus();
  connect(cmdCancel_, &QPushButton::clicked, this, [this] { reject(); });
  connect(&looks_, &QTimer::timeout, this, [this] { Look(); });
}

void frmExport::Run(const Work& work) {
  Beside beside(work, state_, ended_);
  if (!beside.EndsSoon()) {
    Look();
    looks_.start(kLookEveryMs);
    exec();
    looks_.stop();
    // The end of the program ends the message loop, too.
    if (!ended_) state_.Stop = true;
  }
  beside.Finish();
}

// The window stays until the work has stopped: only then is it known what came of it.
void frmExport::reject() {
  state_.Stop = true;
  cmdCancel_->setEnabled(false);
  lblStatusBar_->setText(GetText(Id::Cancelling));
}

void frmExport::Look() {
  if (ended_) {
    done(Accepted);
    return;
  }
  const std::int64_t total = std::max<std::int64_t>(state_.Total, 1);
  const std::int64_t records = std::min<std::int64_t>(state_.Done, total);
  progressBar_->setValue(static_cast<int>(records * kBarMaximum / total));
  if (state_.Stop) return;
  const QLocale locale;
  lblStatusBar_->setText(GetText(state_.Writes ? Id::Writing : Id::Reading)
                             .arg(locale.toString(records), locale.toString(state_.Total.load())));
}

}  // namespace tessmar
