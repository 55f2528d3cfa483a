#include "archive/frmArchive.h"

#include <QDir>
#include <QFileInfo>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTableView>
#include <QTreeView>
#include <algorithm>
#include <utility>

#include "archive/ArchiveEdits.h"
#include "archive/ArchiveTexts.h"
#include "archive/CalibrationsPage.h"
#include "archive/ExportRoad.h"
#include "archive/ExportTexts.h"
#include "archive/SeriesSets.h"
#include "archive/WindowTexts.h"
#include "base/TextTable.h"
#include "ui/EnterKey.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using Id = WindowTextId;

QString CountText(std::size_t uploads) {
  return uploads == 1 ? GetText(Id::OneUpload) : GetText(Id::UploadsShown).arg(uploads);
}

}  // namespace

void frmArchive::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Delete && focusWidget() == tblUploads_) return cmdDelete_Click();
  if (PressFocusedButton(*this, *event)) return;
  // Elsewhere it presses nothing.
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!enter) QDialog::keyPressEvent(event);
}

void frmArchive::Load() {
  const WaitCursorScope waitCursor(parts_.Screen);
  uploads_.clear();
  binned_.clear();
  events_.clear();
  names_.clear();
  std::vector<LoggerRow> loggers;
  try {
    if (QFileInfo::exists(store_.Path())) {
      store_.Open(Store::Access::Read);
      loggers = ShownLoggers(store_);
      ReadAll();
    }
  } catch (const ArchiveFault& fault) {
    store_.Close();
    TellFault(fault, GetText(Id::NotRead));
  }
  loggersModel_.Set(std::move(loggers), static_cast<int>(binned_.size()));
}

void frmArchive::ReadAll() {
  for (const LoggerRow& logger : store_.Loggers()) names_.insert(logger.Id, logger.Name);
  uploads_ = store_.Uploads();
  binned_ = UploadsInBin(store_);
  events_ = store_.Events();
}

void frmArchive::ShowChosen() {
  const std::optional<qint64> logger = ChosenLogger();
  std::vector<UploadRow> uploads = InBin() ? binned_ : uploads_;
  std::vector<EventRow> events = events_;
  if (logger) {
    std::erase_if(uploads, [&](const UploadRow& upload) { return upload.LoggerId != *logger; });
    std::erase_if(events, [&](const EventRow& event) { return event.LoggerId != *logger; });
  }
  if (InBin()) events.clear();
  uploadsModel_.Set(std::move(uploads), names_);
  calibrations_->Show(events, names_);
  logbookModel_.Set(std::move(events), names_);
  if (uploadsFilter_.rowCount() > 0) {
    // A logger stands for all its uploads until one of them is chosen.
    const auto select = logger ? QItemSelectionModel::NoUpdate : QItemSelectionModel::SelectCurrent;
    tblUploads_->selectionModel()->setCurrentIndex(uploadsFilter_.index(0, 0),
                                                   select | QItemSelectionModel::Rows);
  }
  ShowStatus();
  UpdateButtons();
}

void frmArchive::UpdateButtons() {
  const std::size_t uploads = ChosenUploads().size();
  const bool bin = InBin();
  const bool logger = ChosenLogger().has_value();
  const int loggers = loggersModel_.rowCount() - (binned_.empty() ? 1 : 2);
  const std::optional<qint64> series = ChosenSeries();
  cmdOpen_->setEnabled(uploads == 1);
  cmdPlot_->setEnabled(uploads == 1 || series);
  cmdPlot_->setToolTip(series         ? GetText(Id::PlotSeriesHint).arg(NameOfLogger(*series))
                       : uploads == 1 ? GetText(Id::PlotUploadHint)
                                      : GetText(Id::PlotNothingHint));
  cmdOpen_->setToolTip(GetText(uploads == 1 ? Id::OpenUploadHint : Id::OpenNothingHint));
  // A tool tip alone is not read out.
  for (QPushButton* button : {cmdOpen_, cmdPlot_})
    button->setAccessibleDescription(button->toolTip());
  ShowWishedExport();
  cmdRename_->setEnabled(logger);
  cmdMerge_->setEnabled(logger && loggers > 1);
  cmdSplit_->setEnabled(uploads > 0 && !bin);
  cmdDelete_->setEnabled(uploads > 0);
  cmdRestore_->setEnabled(uploads > 0);
  cmdDelete_->setVisible(!bin);
  cmdRestore_->setVisible(bin);
  cmdEmpty_->setVisible(bin);
}

void frmArchive::ShowWishedExport() {
  const std::optional<ExportWish> wish = WishedExport();
  QString hint = GetText(ExportTextId::NothingHint);
  if (wish && wish->Upload != 0) hint = GetText(ExportTextId::UploadHint);
  if (wish && wish->Upload == 0)
    hint = GetText(ExportTextId::SeriesHint).arg(NameOfLogger(wish->Logger));
  cmdExport_->setEnabled(wish.has_value());
  cmdExport_->setToolTip(hint);
  // A tool tip alone is not read out.
  cmdExport_->setAccessibleDescription(hint);
}

void frmArchive::ShowStatus(const QString& what) {
  QString text = what;
  if (text.isEmpty()) {
    const bool none = uploads_.empty() && binned_.empty() && events_.empty();
    text = none ? GetText(Id::NoArchiveYet)
                : CountText(static_cast<std::size_t>(uploadsFilter_.rowCount()));
    const QString chosen = ChosenText();
    if (!chosen.isEmpty()) text += u"; "_s + GetText(Id::Chosen).arg(chosen);
  }
  lblStatus_->setText(text);
}

QString frmArchive::NameOfLogger(qint64 logger) const {
  const QString name = names_.value(logger);
  return name.isEmpty() ? GetText(Id::UnnamedLogger) : name;
}

std::optional<qint64> frmArchive::ChosenSeries() const {
  if (tblUploads_->selectionModel()->hasSelection() || uploadsModel_.rowCount() == 0)
    return std::nullopt;
  return ChosenLogger();
}

void frmArchive::ChooseSeries() {
  if (ChosenLogger()) tblUploads_->clearSelection();
}

QString frmArchive::ChosenText() const {
  if (const std::optional<qint64> series = ChosenSeries())
    return GetText(Id::SeriesOfLogger).arg(NameOfLogger(*series));
  const QModelIndexList rows = tblUploads_->selectionModel()->selectedRows();
  if (rows.isEmpty()) return {};
  if (rows.size() > 1) return CountText(static_cast<std::size_t>(rows.size()));
  const UploadRow& upload = uploadsModel_.Upload(uploadsFilter_.mapToSource(rows.front()).row());
  return GetText(Id::UploadOf)
      .arg(NameOfLogger(upload.LoggerId), LocalTimeText(upload.Started, parts_.Locale));
}

bool frmArchive::InBin() const {
  const QModelIndex current = treeLoggers_->currentIndex();
  return current.isValid() && loggersModel_.KindOf(current.row()) == LoggersModel::Kind::Bin;
}

std::optional<qint64> frmArchive::ChosenLogger() const {
  const QModelIndex current = treeLoggers_->currentIndex();
  if (!current.isValid() || loggersModel_.KindOf(current.row()) != LoggersModel::Kind::Logger)
    return std::nullopt;
  return loggersModel_.Logger(current.row()).Id;
}

std::vector<qint64> frmArchive::ChosenUploads() const {
  std::vector<qint64> uploads;
  const QModelIndexList rows = tblUploads_->selectionModel()->selectedRows();
  for (const QModelIndex& row : rows)
    uploads.push_back(uploadsModel_.Upload(uploadsFilter_.mapToSource(row).row()).Id);
  return uploads;
}

void frmArchive::Choose(std::optional<qint64> logger) {
  const int row = logger ? loggersModel_.RowOf(*logger).value_or(0) : 0;
  treeLoggers_->setCurrentIndex(loggersModel_.index(row));
  ShowChosen();
}

bool frmArchive::Change(const std::function<void(Store& store)>& change) {
  const std::optional<qint64> logger = ChosenLogger();
  const bool bin = InBin();
  try {
    Store writer(parts_.Path);
    writer.Open(Store::Access::Write);
    change(writer);
  } catch (const ArchiveFault& fault) {
    TellFault(fault, GetText(Id::NotChanged));
    return false;
  } catch (const RangeFault&) {
    TellChanged();
    return false;
  }
  Load();
  Choose(logger);
  if (bin && !binned_.empty()) {
    treeLoggers_->setCurrentIndex(loggersModel_.index(loggersModel_.rowCount() - 1));
    ShowChosen();
  }
  return true;
}

void frmArchive::TellFault(const ArchiveFault& fault, const QString& what) {
  const bool damaged = fault.Trouble() == ArchiveTrouble::Damaged;
  const QString why = damaged ? GetText(Id::Damaged) : TroubleText(fault.Trouble());
  parts_.Message.MsgBox(what + u"\r\n"_s + why + u"\r\n"_s + QDir::toNativeSeparators(parts_.Path),
                        kExclamation, windowTitle());
}

// What was chosen is there no more: another program has changed the archive under the window.
void frmArchive::TellChanged() {
  const std::optional<qint64> logger = ChosenLogger();
  Load();
  Choose(logger);
  parts_.Message.MsgBox(GetText(Id::ChangedElsewhere), kInformation, windowTitle());
}

std::optional<ArchivedUpload> frmArchive::Read() {
  const std::vector<qint64> chosen = ChosenUploads();
  if (chosen.size() != 1) return std::nullopt;
  std::optional<ArchivedUpload> upload;
  try {
    const WaitCursorScope waitCursor(parts_.Screen);
    upload = LoadUpload(store_, chosen.front());
  } catch (const ArchiveFault& fault) {
    TellFault(fault, GetText(Id::NotRead));
    return std::nullopt;
  } catch (const RangeFault&) {
    TellChanged();
    return std::nullopt;
  }
  if (upload->Cut) {
    parts_.Message.MsgBox(GetText(Id::UploadTooLarge).arg(HistoryBuffer::kCapacity), kInformation,
                          windowTitle());
  }
  if (!upload->SettingsKnown && upload->Records->Count() > 0)
    parts_.Message.MsgBox(GetText(Id::SettingsUnknown), kInformation, windowTitle());
  if (upload->Records->Count() > 0) return upload;
  parts_.Message.MsgBox(GetText(Id::UploadEmpty), kInformation, windowTitle());
  return std::nullopt;
}

std::optional<SeriesSet> frmArchive::ReadSeries() {
  const std::optional<qint64> logger = ChosenSeries();
  std::optional<ArchivedUpload> upload;
  if (!logger && !(upload = Read())) return std::nullopt;
  try {
    const WaitCursorScope waitCursor(parts_.Screen);
    SeriesSet series =
        logger ? SeriesSetOfLogger(store_, *logger, parts_.Locale)
               : SeriesSetOfUpload(store_, ChosenUploads().front(), *upload, parts_.Locale);
    if (!series.Times.empty()) return series;
  } catch (const ArchiveFault& fault) {
    TellFault(fault, GetText(Id::NotRead));
    return std::nullopt;
  } catch (const RangeFault&) {
    TellChanged();
    return std::nullopt;
  }
  parts_.Message.MsgBox(
      logger ? GetText(Id::SeriesEmpty).arg(NameOfLogger(*logger)) : GetText(Id::UploadEmpty),
      kInformation, windowTitle());
  return std::nullopt;
}

void frmArchive::cmdOpen_Click() {
  if (!cmdOpen_->isEnabled()) return;
  if (const std::optional<ArchivedUpload> upload = Read()) parts_.ShowViewer(*upload, this);
}

void frmArchive::cmdPlot_Click() {
  if (!parts_.ShowPlot || !cmdPlot_->isEnabled()) return;
  if (std::optional<SeriesSet> series = ReadSeries()) parts_.ShowPlot(std::move(*series), this);
}

std::optional<ExportWish> frmArchive::WishedExport() const {
  const std::vector<qint64> uploads = ChosenUploads();
  if (uploads.size() == 1) return ExportWish{.ArchivePath = parts_.Path, .Upload = uploads.front()};
  const std::optional<qint64> series = ChosenSeries();
  if (!series) return std::nullopt;
  return ExportWish{.ArchivePath = parts_.Path, .Logger = *series};
}

void frmArchive::cmdExport_Click() {
  const std::optional<ExportWish> wish = WishedExport();
  if (!wish) return;
  const QPointer<frmArchive> self(this);
  const std::optional<QString> done =
      ExportFromWindow({.Message = parts_.Message,
                        .Dialogs = parts_.Dialogs,
                        .Time = parts_.Time,
                        .Locale = parts_.Locale,
                        .AppPath = parts_.AppPath,
                        .Program = parts_.Program,
                        .SingleColumn = !parts_.CsvDateTimeSingleColumn.isEmpty(),
                        .ShowRelays = parts_.RelayDisplayEnabled},
                       *wish, *this);
  if (!self.isNull() && done) ShowStatus(*done);
}

void frmArchive::cmdRename_Click() {
  const std::optional<qint64> logger = ChosenLogger();
  if (!logger) return;
  const QPointer<frmArchive> self(this);
  const QString present = names_.value(*logger);
  const std::optional<QString> name =
      parts_.AskText(GetText(Id::RenameTitle), GetText(Id::RenamePrompt).arg(present), present);
  if (self.isNull() || !name || name->trimmed().isEmpty()) return;
  Change([&](Store& store) { RenameLogger(store, *logger, name->trimmed(), parts_.Time.Now()); });
}

void frmArchive::cmdMerge_Click() {
  const std::optional<qint64> logger = ChosenLogger();
  if (!logger) return;
  std::vector<qint64> others;
  QStringList choices;
  for (int row = 1; row < loggersModel_.rowCount(); ++row) {
    if (loggersModel_.KindOf(row) != LoggersModel::Kind::Logger) continue;
    const LoggerRow& other = loggersModel_.Logger(row);
    if (other.Id == *logger) continue;
    others.push_back(other.Id);
    // Two may have the same name.
    QString name = loggersModel_.index(row).data().toString();
    for (int same = 2; choices.contains(name); ++same)
      name = loggersModel_.index(row).data().toString() + u" (%1)"_s.arg(same);
    choices.append(name);
  }
  const QPointer<frmArchive> self(this);
  const std::optional<int> chosen = parts_.AskChoice(
      GetText(Id::MergeTitle), GetText(Id::MergePrompt).arg(names_.value(*logger)), choices);
  if (self.isNull() || !chosen) return;
  const qint64 into = others.at(static_cast<std::size_t>(*chosen));
  if (Change([&](Store& store) { MergeLoggers(store, *logger, into, parts_.Time.Now()); }))
    Choose(into);
}

void frmArchive::cmdSplit_Click() {
  const std::vector<qint64> uploads = ChosenUploads();
  if (uploads.empty()) return;
  const QPointer<frmArchive> self(this);
  const std::optional<QString> name = parts_.AskText(
      GetText(Id::SplitTitle), GetText(Id::SplitPrompt).arg(CountText(uploads.size())), {});
  if (self.isNull() || !name || name->trimmed().isEmpty()) return;
  qint64 made = 0;
  const bool changed = Change([&](Store& store) {
    made = SplitLogger(store, uploads, name->trimmed(), parts_.Time.Now());
  });
  if (changed) Choose(made);
}

void frmArchive::cmdDelete_Click() {
  const std::vector<qint64> uploads = ChosenUploads();
  if (uploads.empty() || InBin()) return;
  if (Change([&](Store& store) { PutIntoBin(store, uploads, parts_.Time.Now()); }))
    ShowStatus(GetText(Id::MovedToBin).arg(CountText(uploads.size())));
}

void frmArchive::cmdRestore_Click() {
  const std::vector<qint64> uploads = ChosenUploads();
  if (uploads.empty()) return;
  if (Change([&](Store& store) { TakeFromBin(store, uploads); }))
    ShowStatus(GetText(Id::MovedBack).arg(CountText(uploads.size())));
}

void frmArchive::cmdEmpty_Click() {
  const QPointer<frmArchive> self(this);
  const int answer = parts_.Message.MsgBox(GetText(Id::AskEmptyBin).arg(CountText(binned_.size())),
                                           kYesNo | kExclamation | kDefaultButton2, windowTitle());
  if (self.isNull() || answer != kYes || parts_.Ending()) return;
  std::vector<qint64> uploads;
  for (const UploadRow& upload : binned_) uploads.push_back(upload.Id);
  if (Change([&](Store& store) { EmptyBin(store, uploads); })) ShowStatus(GetText(Id::BinEmptied));
}

}  // namespace tessmar
