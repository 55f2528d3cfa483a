#include "history/frmHistory.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "base/Fault.h"
#include "base/TextTable.h"
#include "history/CsvExport.h"
#include "history/HistoryView.h"
#include "history/frmHistoryOptions.h"
#include "history/frmProgress.h"
#include "ui/EnterKey.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kTwipsPerPixel = 15;
constexpr int kLeastWidth = 560;
constexpr int kLeastHeight = 420;

QString PlotButtonText() {
  return TextLanguage() == kLanguageGerman ? u"&Diagramm"_s : u"P&lot"_s;
}

QGroupBox* Framed(QLabel* label, const QString& name, const QString& caption) {
  auto* frame = new QGroupBox(caption);
  frame->setObjectName(name);
  auto* inside = new QVBoxLayout(frame);
  inside->addWidget(label);
  label->setTextFormat(Qt::PlainText);
  label->setAccessibleName(caption);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return frame;
}

}  // namespace

frmHistory::frmHistory(const HistoryViewerParts& parts, QWidget* parent)
    : QDialog(parent),
      parts_(parts),
      lvwHistory_(new HistoryView(this)),
      progressBar_(new QProgressBar(this)),
      lblNumRecords_(new QLabel(this)),
      lblLoggerName_(new QLabel(this)),
      cmdOK_(new QPushButton(GetText(TextId::OK), this)),
      cmdOptions_(new QPushButton(GetText(TextId::Options), this)),
      cmdPack_(new QPushButton(GetText(TextId::Pack), this)),
      cmdSave_(new QPushButton(GetText(TextId::SaveToFileButton), this)),
      cmdPlot_(new QPushButton(PlotButtonText(), this)) {
  setObjectName(u"frmHistory"_s);
  setWindowTitle(GetText(TextId::HistoricalDataViewer));
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  BuildControls();
  BuildLayout();
  lvwHistory_->setModel(&model_);
  FillList(false);
  SizeToColumns();
  lvwHistory_->setFocus();
}

void frmHistory::BuildControls() {
  lvwHistory_->setObjectName(u"lvwHistory"_s);
  lvwHistory_->setAccessibleName(GetText(TextId::HistoricalDataViewer));
  progressBar_->setObjectName(u"ProgressBar"_s);
  progressBar_->setAccessibleName(GetText(TextId::FormattingData));
  progressBar_->setTextVisible(false);
  progressBar_->hide();
  lblNumRecords_->setObjectName(u"lblNumRecords"_s);
  lblLoggerName_->setObjectName(u"lblLoggerName"_s);
  cmdOK_->setObjectName(u"cmdOK"_s);
  cmdOptions_->setObjectName(u"cmdOptions"_s);
  cmdPack_->setObjectName(u"cmdPack"_s);
  cmdSave_->setObjectName(u"cmdSave"_s);
  cmdPlot_->setObjectName(u"cmdPlot"_s);
  cmdPlot_->setVisible(parts_.ShowPlot != nullptr);
  for (QPushButton* button : {cmdOK_, cmdOptions_, cmdPack_, cmdSave_, cmdPlot_})
    button->setAutoDefault(false);

  connect(cmdOK_, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
  connect(cmdOptions_, &QPushButton::clicked, this, [this] { cmdOptions_Click(); });
  connect(cmdPack_, &QPushButton::clicked, this, [this] { cmdPack_Click(); });
  connect(cmdSave_, &QPushButton::clicked, this, [this] { cmdSave_Click(); });
  connect(cmdPlot_, &QPushButton::clicked, this, [this] { cmdPlot_Click(); });
}

void frmHistory::BuildLayout() {
  auto* head = new QHBoxLayout;
  head->addWidget(Framed(lblLoggerName_, u"fraLoggerName"_s, GetText(TextId::LoggerName)), 1);
  head->addWidget(Framed(lblNumRecords_, u"Frame1"_s, GetText(TextId::RecordsRetrieved)));

  auto* buttons = new QHBoxLayout;
  buttons->addWidget(cmdOK_);
  buttons->addWidget(cmdOptions_);
  buttons->addWidget(cmdPack_);
  buttons->addWidget(cmdSave_);
  buttons->addWidget(cmdPlot_);
  buttons->addStretch();

  QSizePolicy keepsItsRoom = progressBar_->sizePolicy();
  keepsItsRoom.setRetainSizeWhenHidden(true);
  progressBar_->setSizePolicy(keepsItsRoom);
  buttons->addWidget(progressBar_);

  auto* rows = new QVBoxLayout(this);
  rows->addLayout(head);
  rows->addWidget(lvwHistory_, 1);
  rows->addLayout(buttons);

  QWidget* before = lvwHistory_;
  for (QWidget* next : {cmdOK_, cmdOptions_, cmdPack_, cmdSave_}) {
    setTabOrder(before, next);
    before = next;
  }
}

void frmHistory::FillList(bool pack) {
  const WaitCursorScope waitCursor(parts_.Screen);
  const int maximum = std::max(parts_.Buffer.Count() - 1, 1);
  HistoryTable table(parts_.Buffer, parts_.Settings, parts_.Link, parts_.RelayDisplayEnabled,
                     parts_.Locale);
  if (pack) {
    ShowBar(0, maximum);
    table.Pack([this](std::int32_t record) { progressBar_->setValue(record); });
    ShowTable(std::move(table));
    progressBar_->hide();
  } else {
    frmProgress progress(maximum, this);
    ShowTable(std::move(table));
    progress.Advance(maximum);
  }
  lblLoggerName_->setText(parts_.LoggerName.value_or(parts_.Screen.Caption(u"lblLoggerName"_s)));
  lblNumRecords_->setText(QString::number(model_.rowCount()));
}

void frmHistory::ShowTable(HistoryTable table) {
  model_.SetTable(std::move(table));
  for (int column = 0; column < model_.columnCount(); ++column)
    lvwHistory_->SetColumnWidth(column, model_.Table()->Column(column).WidthTwips / kTwipsPerPixel);
  if (model_.rowCount() > 0) lvwHistory_->setCurrentIndex(model_.index(0, 0));
  lvwHistory_->clearSelection();
}

// As wide as the columns, within what the screen has.
void frmHistory::SizeToColumns() {
  const QSize room = screen()->availableSize();
  const int columns = lvwHistory_->horizontalHeader()->length() +
                      lvwHistory_->verticalScrollBar()->sizeHint().width() +
                      2 * lvwHistory_->frameWidth();
  const QMargins margins = layout()->contentsMargins();
  const int width = std::max(
      {columns + margins.left() + margins.right(), kLeastWidth, minimumSizeHint().width()});
  resize(std::min(width, room.width() * 9 / 10),
         std::min(kLeastHeight * 3 / 2, room.height() * 9 / 10));
}

void frmHistory::ShowBar(int minimum, int maximum) {
  progressBar_->setRange(minimum, maximum);
  progressBar_->setValue(minimum);
  progressBar_->show();
  repaint();
}

// Enter presses the button that has the focus, and no other: in the table it must not close what
// only a new upload could show again.
void frmHistory::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!PressFocusedButton(*this, *event) && !isEnter) QDialog::keyPressEvent(event);
}

void frmHistory::cmdOK_Click() {
  {
    const WaitCursorScope waitCursor(parts_.Screen);
    model_.SetTable(std::nullopt);
  }
  accept();
}

void frmHistory::cmdOptions_Click() {
  frmHistoryOptions options(parts_.CsvDateTimeSingleColumn, this);
  options.exec();
}

void frmHistory::cmdPack_Click() {
  const QPointer<frmHistory> self(this);
  const int answer = parts_.Message.MsgBox(GetText(TextId::AskPack), kYesNo | kInformation,
                                           GetText(TextId::PackHistoryTitle));
  if (self.isNull() || (parts_.Loop != nullptr && parts_.Loop->Ending())) return;
  if (answer == kYes) FillList(true);
}

void frmHistory::cmdPlot_Click() {
  if (model_.Table() == nullptr || !parts_.ShowPlot) return;
  parts_.ShowPlot({.Table = *model_.Table(),
                   .LoggerName = lblLoggerName_->text(),
                   .Viewer = this,
                   .ShowRecord = [this](std::int32_t record) { ShowRecord(record); }});
}

void frmHistory::ShowRecord(std::int32_t record) {
  const std::int32_t row = model_.Table() == nullptr ? -1 : model_.Table()->RowOf(record);
  if (row < 0) return;
  QAbstractItemView& table = *lvwHistory_;
  table.setCurrentIndex(model_.index(row, 0));
  lvwHistory_->selectRow(row);
  table.scrollTo(model_.index(row, 0), QAbstractItemView::PositionAtCenter);
  lvwHistory_->setFocus();
}

void frmHistory::cmdSave_Click() {
  const QPointer<frmHistory> self(this);
  const std::optional<QString> path =
      parts_.Dialogs.AskSave({.Title = GetText(TextId::SaveToFileTitle),
                              .InitialName = parts_.AppPath + u"/*.csv"_s,
                              .Filter = GetText(TextId::CsvFiles) + u" (*.csv)|*.csv"_s,
                              .DefaultExtension = u".csv"_s,
                              .ConfirmOverwrite = true});
  if (self.isNull()) return;
  const std::optional<FileTrouble> trouble = path ? SaveTable(*path) : std::nullopt;
  if (trouble) {
    parts_.Message.MsgBox(GetText(TextId::FileNotSaved) + u"\r\n\r\n"_s + trouble->Text(),
                          kOkOnly | kCritical, GetText(TextId::SaveToFileTitle));
    if (self.isNull()) return;
  }
  cmdOK_->setFocus();
}

std::optional<FileTrouble> frmHistory::SaveTable(const QString& path) {
  if (model_.Table() == nullptr) return std::nullopt;
  const WaitCursorScope waitCursor(parts_.Screen);
  ShowBar(1, std::max(model_.rowCount(), 2));
  std::optional<FileTrouble> trouble;
  Trapped(parts_.Link, [&] {
    try {
      SaveCsv(path, *model_.Table(),
              {.LoggerName = lblLoggerName_->text(),
               .Saved = parts_.Time.Now(),
               .SingleColumn = !parts_.CsvDateTimeSingleColumn.isEmpty()},
              [this](std::int32_t row) { progressBar_->setValue(row); });
    } catch (const FileTrouble& caught) {
      trouble = caught;
      throw;
    }
  });
  progressBar_->hide();
  return trouble;
}

}  // namespace tessmar
