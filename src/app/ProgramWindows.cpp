// The windows that Program opens, each with its parts. What the program does with them stands in
// Program.cpp.

#include <functional>
#include <utility>

#include "app/Program.h"
#include "app/SupportDetails.h"
#include "app/VersionText.h"
#include "app/frmAbout.h"
#include "archive/ArchiveQuestions.h"
#include "archive/frmArchive.h"
#include "base/FileNames.h"
#include "history/GetHistoryData.h"
#include "history/TableSeries.h"
#include "history/frmGetHistoryData.h"
#include "history/frmHistory.h"
#include "history/frmImportSetup.h"
#include "link/enumerate.h"
#include "link/frmConnect.h"
#include "plot/frmTrend.h"
#include "setup/frmSetup.h"
#include "ui/ActiveWindow.h"

namespace tessmar {

using namespace Qt::StringLiterals;

void Program::ShowConnectDialog() {
  frmConnect dialog(
      comm_, commands_, link_, connection_, messages_, fileDialogs_, window_,
      [this] { return EnumeratePorts(ports_); }, &window_);
  dialog.TellNoContact([this](PortCause cause) { activity_.Trouble(cause); });
  dialog.exec();
}

void Program::GetHistory() {
  GetHistoryData(link_, commands_, history_, messages_, window_, loop_,
                 {.ShowUpload = [this](std::int32_t total) { return ShowUpload(total); },
                  .ShowViewer = [this] { ShowViewer(); },
                  .ReportKept = [this] { ReportKept(); }});
}

QString Program::ShowUpload(std::int32_t totalRecords) {
  frmGetHistoryData dialog(history_, commands_, comm_, link_, messages_, archive_, totalRecords,
                           &window_);
  dialog.exec();
  return dialog.UploadState();
}

HistoryViewerParts Program::ViewerParts(const HistoryBuffer& buffer, const LoggerSettings& settings,
                                        const LinkState& link) {
  return {.Buffer = buffer,
          .Settings = settings,
          .Link = link,
          .Screen = window_,
          .Message = messages_,
          .Dialogs = fileDialogs_,
          .Time = clock_,
          .Locale = locale_,
          .CsvDateTimeSingleColumn = csvDateTimeSingleColumn_,
          .RelayDisplayEnabled = display_.RelayDisplayEnabled,
          .AppPath = FirstFolderOfDialogs(environment_.AppPath),
          .Loop = &loop_,
          .ShowPlot = [this](const PlotRequest& request) { ShowPlot(request); }};
}

void Program::ShowViewer() {
  frmHistory viewer(ViewerParts(history_, settings_, link_), &window_);
  viewer.exec();
}

void Program::ShowArchive() {
  frmArchive archive({.Path = environment_.ArchivePath,
                      .Screen = window_,
                      .Message = messages_,
                      .Dialogs = fileDialogs_,
                      .Time = clock_,
                      .Locale = locale_,
                      .CsvDateTimeSingleColumn = csvDateTimeSingleColumn_,
                      .RelayDisplayEnabled = display_.RelayDisplayEnabled,
                      .AppPath = FirstFolderOfDialogs(environment_.AppPath),
                      .Program = u"Tessmar Logger "_s + ProgramVersionText(),
                      .Ending = [this] { return loop_.Ending(); },
                      .AskText = AskArchiveText,
                      .AskChoice = AskArchiveChoice,
                      .ShowViewer = [this](const ArchivedUpload& upload,
                                           QWidget* parent) { ShowArchivedUpload(upload, parent); },
                      .ShowPlot = std::bind_front(&Program::ShowArchivedPlot, this)},
                     &window_);
  archive.exec();
}

void Program::ShowArchivedUpload(const ArchivedUpload& upload, QWidget* parent) {
  HistoryViewerParts parts = ViewerParts(*upload.Records, upload.Settings, upload.Link);
  parts.LoggerName = upload.LoggerName;
  frmHistory viewer(parts, parent);
  viewer.exec();
}

void Program::ShowArchivedPlot(SeriesSet series, QWidget* parent) {
  PlotData data(std::move(series));
  frmPlot plot(data, PlotsParts(), parent);
  plot.exec();
}

PlotParts Program::PlotsParts() {
  return {.Message = messages_,
          .Dialogs = fileDialogs_,
          .Time = clock_,
          .Locale = locale_,
          .Memory = PlotMemory(environment_.StorePath),
          .Program = u"Tessmar Logger "_s + ProgramVersionText(),
          .AppPath = FirstFolderOfDialogs(environment_.AppPath),
          .CsvSingleColumn = !csvDateTimeSingleColumn_.isEmpty()};
}

void Program::ShowPlot(const PlotRequest& request) {
  PlotData data(SeriesOf(request.Table, request.LoggerName));
  PlotParts parts = PlotsParts();
  parts.ShowRow = [&request](std::size_t record) {
    request.ShowRecord(static_cast<std::int32_t>(record));
  };
  frmPlot plot(data, parts, request.Viewer);
  plot.exec();
}

void Program::ShowTrend() {
  if (trendWindow_.isNull()) {
    trend_.emplace(link_, settings_, display_);
    trendWindow_ = new frmTrend(*trend_, PlotsParts(), &window_);
    trendWindow_->setAttribute(Qt::WA_DeleteOnClose);
    trendWindow_->show();
  }
  trendWindow_->raise();
  trendWindow_->activateWindow();
}

void Program::ShowSetup(bool mayProgram) {
  frmSetup setup({.Link = link_,
                  .Settings = settings_,
                  .Commands = commands_,
                  .Programmer = programming_,
                  .Loop = loop_,
                  .Asker = messages_,
                  .Dialogs = fileDialogs_,
                  .Time = clock_,
                  .Locale = locale_,
                  .Recent = recentFiles_,
                  .Book = archive_,
                  .AppPath = FirstFolderOfDialogs(environment_.AppPath),
                  .ShowDoHelpEntry = !helpFiles_.DissolvedOxygen.isEmpty(),
                  .ShowHelp = [this] { help_.Open(helpFiles_.Logger); },
                  .ShowDoHelp = [this] { help_.Open(helpFiles_.DissolvedOxygen); },
                  .ShowAbout = [this] { ShowAbout(); }},
                 &window_);
  // Without a connection there is nothing that could be programmed.
  if (!mayProgram) setup.ForbidProgramming();
  setup.exec();
}

std::optional<ImportChoice> Program::AskImportChoice() {
  frmImportSetup dialog(messages_, &window_);
  dialog.exec();
  if (dialog.Result() != "OK"_L1) return std::nullopt;
  return dialog.Choice();
}

void Program::ShowAbout() {
  // The setup screen has an entry for it, too.
  frmAbout about(window_.windowTitle(), ActiveWindow(), [this] {
    return SupportDetails(window_.windowTitle(), locale_, link_, port_, log_);
  });
  about.exec();
}

}  // namespace tessmar
