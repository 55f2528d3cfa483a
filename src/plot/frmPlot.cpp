#include "plot/frmPlot.h"

#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QScreen>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "base/FileTrouble.h"
#include "base/TextTable.h"
#include "base/WholeFile.h"
#include "plot/PlotCanvas.h"
#include "plot/PlotCsv.h"
#include "plot/PlotPicture.h"
#include "plot/PlotTexts.h"
#include "plot/PlotWords.h"
#include "plot/Statistics.h"
#include "plot/StatisticsModel.h"
#include "ui/ButtonRows.h"
#include "ui/EnterKey.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr QSize kUsualSize{1000, 680};
constexpr QSize kPictureSize{1200, 800};
constexpr int kStatisticsRows = 5;
constexpr int kDaysPauseMs = 150;  // Days take longer than what is under the pointer may wait.

template <typename Control>
Control* Named(Control* control, const QString& name) {
  control->setObjectName(name);
  return control;
}

QPushButton* Button(const QString& name, PlotTextId text, QWidget* parent) {
  auto* button = Named(new QPushButton(PlotText(text), parent), name);
  // Enter is the plot's.
  button->setAutoDefault(false);
  return button;
}

QCheckBox* Box(const QString& name, PlotTextId text, QWidget* parent) {
  return Named(new QCheckBox(PlotText(text), parent), name);
}

QLabel* Label(const QString& name, QWidget* parent) {
  auto* label = Named(new QLabel(parent), name);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

bool IsDark(const QPalette& palette) {
  return palette.color(QPalette::Base).lightness() < 128;
}

}  // namespace

frmPlot::frmPlot(PlotData& plotData, const PlotParts& parts, QWidget* parent)
    : QDialog(parent), data_(plotData), parts_(parts), refresh_(new QTimer(this)) {
  setObjectName(u"frmPlot"_s);
  setWindowTitle(PlotText(PlotTextId::Caption));
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  MakeControls();
  MakeLayout();
  FillChannels();
  Connect();
  ApplyTheme();
  const QSize room = screen()->availableSize() * 9 / 10;
  const QSize remembered = parts_.Memory.Size();
  resize((remembered.isValid() ? remembered : kUsualSize).boundedTo(room));
  pltPlot_->Begin();
  Refresh();
  pltPlot_->setFocus();
}

frmPlot::~frmPlot() = default;

void frmPlot::MakeControls() {
  pltPlot_ = new PlotCanvas(data_, parts_.Locale, this);
  pltPlot_->setAccessibleName(PlotText(PlotTextId::Plot));
  pltPlot_->setMinimumSize(300, 160);
  lstChannels_ = Named(new QListWidget(this), u"lstChannels"_s);
  lstChannels_->setAccessibleName(PlotText(PlotTextId::Channels));
  lblCursor_ = Label(u"lblCursor"_s, this);
  lblCursor_->setAccessibleName(PlotText(PlotTextId::Cursor));
  lblCursor_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  lblCursor_->setMinimumHeight(2 * fontMetrics().lineSpacing());
  lblMarks_ = Label(u"lblMarks"_s, this);
  lblMarks_->hide();
  statistics_ = new StatisticsModel(data_, parts_.Locale, this);
  tblStatistics_ = Named(new QTableView(this), u"tblStatistics"_s);
  tblStatistics_->setAccessibleName(PlotText(PlotTextId::Statistics));
  tblStatistics_->setModel(statistics_);
  tblStatistics_->setAlternatingRowColors(true);
  tblStatistics_->setTabKeyNavigation(false);
  tblStatistics_->verticalHeader()->hide();
  const int row = fontMetrics().height() + 6;
  tblStatistics_->verticalHeader()->setMinimumSectionSize(row);
  tblStatistics_->verticalHeader()->setDefaultSectionSize(row);
  tblStatistics_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  tblStatistics_->setFixedHeight(row * (kStatisticsRows + 1) + 6);
  chkByDay_ = Box(u"chkByDay"_s, PlotTextId::ByDay, this);
  chkFixed_ = Box(u"chkFixed"_s, PlotTextId::FixedScale, this);
  chkFixed_->setToolTip(PlotText(PlotTextId::FixedScaleHint));
  chkCorrected_ = Box(u"chkCorrected"_s, PlotTextId::CorrectedTime, this);
  chkCorrected_->setToolTip(PlotText(PlotTextId::CorrectedTimeHint));
  chkCorrected_->setVisible(data_.HasCorrectedTimes());
  chkCorrected_->setChecked(data_.ShowsCorrectedTimes());
}

QLayout* frmPlot::MakeButtons() {
  cmdOK_ = Button(u"cmdOK"_s, PlotTextId::Close, this);
  cmdBack_ = Button(u"cmdBack"_s, PlotTextId::Back, this);
  cmdBack_->setToolTip(PlotText(PlotTextId::BackHint));
  cmdForward_ = Button(u"cmdForward"_s, PlotTextId::Forward, this);
  cmdForward_->setToolTip(PlotText(PlotTextId::ForwardHint));
  cmdFit_ = Button(u"cmdFit"_s, PlotTextId::Fit, this);
  cmdFit_->setToolTip(PlotText(PlotTextId::FitHint));
  cmdRow_ = Button(u"cmdRow"_s, PlotTextId::ShowRow, this);
  cmdRow_->setToolTip(PlotText(PlotTextId::ShowRowHint));
  cmdRow_->setVisible(parts_.ShowRow != nullptr);
  cmdSave_ = Button(u"cmdSave"_s, PlotTextId::SaveCsv, this);
  cmdPicture_ = Button(u"cmdPicture"_s, PlotTextId::Picture, this);
  cmdPrint_ = Button(u"cmdPrint"_s, PlotTextId::Print, this);
  cmdCopy_ = Button(u"cmdCopy"_s, PlotTextId::Copy, this);
  return MakeButtonRows({cmdOK_, cmdBack_, cmdForward_, cmdFit_, cmdRow_},
                        {cmdSave_, cmdPicture_, cmdPrint_, cmdCopy_});
}

void frmPlot::MakeLayout() {
  auto* side = new QVBoxLayout;
  side->addWidget(lstChannels_, 1);
  side->addWidget(chkFixed_);
  side->addWidget(chkCorrected_);
  side->addWidget(chkByDay_);
  auto* upper = new QHBoxLayout;
  upper->addLayout(side);
  upper->addWidget(pltPlot_, 1);
  foot_ = new QVBoxLayout;
  foot_->addWidget(lblCursor_);
  foot_->addWidget(lblMarks_);
  auto* rows = new QVBoxLayout(this);
  rows->addLayout(upper, 1);
  rows->addLayout(foot_);
  rows->addWidget(tblStatistics_);
  rows->addLayout(MakeButtons());
}

void frmPlot::Connect() {
  connect(pltPlot_, &PlotCanvas::ViewChanged, this, [this] { Refresh(); });
  connect(pltPlot_, &PlotCanvas::CursorMoved, this, [this] { ShowCursorText(); });
  connect(pltPlot_, &PlotCanvas::RowWanted, this, [this] { cmdRow_Click(); });
  connect(pltPlot_, &PlotCanvas::ScaleFixed, this, [this] { chkFixed_->setChecked(true); });
  connect(lstChannels_, &QListWidget::itemChanged, this, [this] { ChannelTicked(); });
  connect(chkFixed_, &QCheckBox::toggled, this,
          [this](bool fixed) { pltPlot_->SetFixedScale(fixed); });
  connect(chkCorrected_, &QCheckBox::toggled, this,
          [this](bool corrected) { pltPlot_->ShowCorrectedTimes(corrected); });
  connect(chkByDay_, &QCheckBox::toggled, this, [this] { ShowStatistics(); });
  connect(cmdOK_, &QPushButton::clicked, this, [this] { accept(); });
  connect(cmdBack_, &QPushButton::clicked, this, [this] { pltPlot_->Back(); });
  connect(cmdForward_, &QPushButton::clicked, this, [this] { pltPlot_->Forward(); });
  connect(cmdFit_, &QPushButton::clicked, this, [this] { pltPlot_->Fit(); });
  connect(cmdRow_, &QPushButton::clicked, this, [this] { cmdRow_Click(); });
  connect(cmdSave_, &QPushButton::clicked, this, [this] { cmdSave_Click(); });
  connect(cmdPicture_, &QPushButton::clicked, this, [this] { cmdPicture_Click(); });
  connect(cmdPrint_, &QPushButton::clicked, this, [this] { cmdPrint_Click(); });
  connect(cmdCopy_, &QPushButton::clicked, this, [this] { cmdCopy_Click(); });
  refresh_->setSingleShot(true);
  connect(refresh_, &QTimer::timeout, this, [this] {
    ShowStatistics();
    Describe();
  });
}

void frmPlot::FillChannels() {
  filling_ = true;
  lstChannels_->clear();
  std::vector<bool> shown;
  for (const Series& series : data_.Set().Channels) {
    shown.push_back(parts_.Memory.IsShown(series));
    auto* item = new QListWidgetItem(ChannelName(series), lstChannels_);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(shown.back() ? Qt::Checked : Qt::Unchecked);
  }
  lstChannels_->setCurrentRow(0);
  filling_ = false;
  pltPlot_->SetShown(shown);
  PaintChannelIcons();
  // As wide as the names, with their icons.
  const int width = lstChannels_->sizeHintForColumn(0) + 2 * lstChannels_->frameWidth() +
                    style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  lstChannels_->setFixedWidth(qBound(140, width, 260));
}

void frmPlot::PaintChannelIcons() {
  filling_ = true;
  for (int row = 0; row < lstChannels_->count(); ++row) {
    QPixmap icon(16, 16);
    icon.fill(pltPlot_->ColourOf(row));
    lstChannels_->item(row)->setIcon(icon);
  }
  filling_ = false;
}

void frmPlot::ApplyTheme() {
  pltPlot_->SetTheme(IsDark(palette()) ? DarkPlotTheme() : LightPlotTheme());
  PaintChannelIcons();
  pltPlot_->replot(QCustomPlot::rpQueuedReplot);
}

void frmPlot::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && pltPlot_ != nullptr) ApplyTheme();
}

void frmPlot::ChannelTicked() {
  if (filling_) return;
  std::vector<bool> shown;
  shown.reserve(static_cast<std::size_t>(lstChannels_->count()));
  for (int row = 0; row < lstChannels_->count(); ++row)
    shown.push_back(lstChannels_->item(row)->checkState() == Qt::Checked);
  pltPlot_->SetShown(shown);
  ShowCursorText();
  Refresh();
}

// Enter presses the button that has the focus, and no other.
void frmPlot::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!PressFocusedButton(*this, *event) && !isEnter) QDialog::keyPressEvent(event);
}

void frmPlot::hideEvent(QHideEvent* event) {
  QDialog::hideEvent(event);
  if (!isMaximized()) parts_.Memory.Remember(size(), data_.Set().Channels, pltPlot_->Shown());
}

void frmPlot::Refresh() {
  cmdBack_->setEnabled(pltPlot_->HasBack());
  cmdForward_->setEnabled(pltPlot_->HasForward());
  cmdRow_->setEnabled(pltPlot_->CursorRecord().has_value());
  ShowNotes();
  refresh_->start(chkByDay_->isChecked() ? kDaysPauseMs : 0);
}

void frmPlot::ShowCursorText() {
  lblCursor_->setText(
      RecordWords(data_, pltPlot_->ShownChannels(), pltPlot_->CursorRecord(), parts_.Locale));
  cmdRow_->setEnabled(pltPlot_->CursorRecord().has_value());
}

void frmPlot::ShowNotes() {
  const QString notes = ViewNotes(data_, pltPlot_->View(), parts_.Locale);
  if (notes == lblMarks_->text()) return;
  lblMarks_->setText(notes);
  lblMarks_->setVisible(!notes.isEmpty());
}

void frmPlot::ShowStatistics() {
  const std::vector<int> channels = pltPlot_->ShownChannels();
  const bool byDay = chkByDay_->isChecked();
  statistics_->SetRows(byDay ? StatisticsByDay(data_, channels, pltPlot_->View())
                             : StatisticsIn(data_, channels, pltPlot_->View()),
                       byDay);
  ShowChannelNamesWhole(byDay ? 1 : 0);
}

// The numbers share what the names leave.
void frmPlot::ShowChannelNamesWhole(int column) {
  QHeaderView& header = *tblStatistics_->horizontalHeader();
  int width = header.sectionSizeHint(column);
  for (const Series& series : data_.Set().Channels)
    width = std::max(width,
                     fontMetrics().horizontalAdvance(ChannelName(series)) + fontMetrics().height());
  width = std::min(width, tblStatistics_->width() / 3);
  if (header.sectionResizeMode(column) == QHeaderView::Fixed && header.sectionSize(column) == width)
    return;
  header.setSectionResizeMode(QHeaderView::Stretch);
  header.setSectionResizeMode(column, QHeaderView::Fixed);
  header.resizeSection(column, width);
}

void frmPlot::Describe() {
  const QString text =
      ViewDescription(data_, pltPlot_->ShownChannels(), pltPlot_->View(), parts_.Locale);
  if (text != pltPlot_->accessibleDescription()) pltPlot_->setAccessibleDescription(text);
}

void frmPlot::cmdRow_Click() {
  const std::optional<std::size_t> record = pltPlot_->CursorRecord();
  if (!parts_.ShowRow || !record) return;
  parts_.ShowRow(*record);
  accept();
}

QString frmPlot::Head() const {
  return PictureHead(data_, pltPlot_->View(), parts_.Program, parts_.Locale);
}

void frmPlot::SaveBytes(const QString& path, const QByteArray& bytes, const QString& title) {
  try {
    WriteWholeFile(path, bytes);
  } catch (const FileTrouble& trouble) {
    parts_.Message.MsgBox(trouble.Text(), kExclamation, title);
  }
}

void frmPlot::cmdSave_Click() {
  const QString title = PlotText(PlotTextId::SaveTitle);
  if (data_.CountIn(pltPlot_->View()) == 0) {
    parts_.Message.MsgBox(PlotText(PlotTextId::NothingInView), kInformation, title);
    return;
  }
  const QPointer<frmPlot> self(this);
  const std::optional<QString> path =
      parts_.Dialogs.AskSave({.Title = title,
                              .InitialName = parts_.AppPath + u"/*.csv"_s,
                              .Filter = GetText(TextId::CsvFiles) + u" (*.csv)|*.csv"_s,
                              .DefaultExtension = u".csv"_s,
                              .ConfirmOverwrite = true});
  if (self.isNull() || !path) return;
  const QByteArray text = PlotCsv(data_,
                                  {.Range = pltPlot_->View(),
                                   .Channels = pltPlot_->ShownChannels(),
                                   .Saved = parts_.Time.Now(),
                                   .SingleColumn = parts_.CsvSingleColumn},
                                  parts_.Locale);
  SaveBytes(*path, text, title);
}

void frmPlot::cmdPicture_Click() {
  const QString title = PlotText(PlotTextId::PictureTitle);
  const QPointer<frmPlot> self(this);
  const std::optional<QString> path =
      parts_.Dialogs.AskSave({.Title = title,
                              .InitialName = parts_.AppPath + u"/*.png"_s,
                              .Filter = PlotText(PlotTextId::PngFiles) + u" (*.png)|*.png|"_s +
                                        PlotText(PlotTextId::SvgFiles) + u" (*.svg)|*.svg|"_s +
                                        PlotText(PlotTextId::PdfFiles) + u" (*.pdf)|*.pdf"_s,
                              .DefaultExtension = u".png"_s,
                              .ConfirmOverwrite = true});
  if (self.isNull() || !path) return;
  const std::optional<PictureKind> kind = KindOfPicture(*path);
  if (!kind) {
    parts_.Message.MsgBox(PlotText(PlotTextId::UnknownPicture) + u"\r\n"_s + *path, kExclamation,
                          title);
    return;
  }
  const QByteArray bytes =
      PictureFile({data_, parts_.Locale, *pltPlot_, Head(), kPictureSize}, *kind);
  if (bytes.isEmpty()) {
    parts_.Message.MsgBox(PlotText(PlotTextId::PictureFailed), kExclamation, title);
    return;
  }
  SaveBytes(*path, bytes, title);
}

void frmPlot::cmdPrint_Click() {
  const QPointer<frmPlot> self(this);
  QPrinter printer(QPrinter::HighResolution);
  printer.setPageOrientation(QPageLayout::Landscape);
  printer.setDocName(PlotText(PlotTextId::Caption) + u' ' + data_.Set().LoggerName);
  QPrintDialog dialog(&printer, this);
  dialog.setObjectName(u"dlgPrint"_s);
  if (dialog.exec() != QDialog::Accepted || self.isNull()) return;
  PaintPicture({data_, parts_.Locale, *pltPlot_, Head(), kPictureSize}, printer);
}

void frmPlot::cmdCopy_Click() {
  QGuiApplication::clipboard()->setImage(
      PictureImage({data_, parts_.Locale, *pltPlot_, Head(), kPictureSize}));
}

}  // namespace tessmar
