#pragma once

#include <QLabel>
#include <QTreeView>
#include <functional>
#include <optional>

#include "archive/ArchiveRig.h"
#include "archive/UploadsRig.h"
#include "archive/frmArchive.h"
#include "base/TextTable.h"
#include "support/FakeOutside.h"

namespace tessmar::test {

/// The archive's window over an archive in a folder of its own, at 20:00 UTC.
class ArchiveWindowRig : public ArchiveFolder {
 protected:
  ArchiveWindowRig() : store_(Path()) {
    qputenv("TZ", "UTC");
    clock_.Present = Hour(20);
  }
  void TearDown() override { SetTextLanguage(kLanguageEnglish); }

  frmArchive& Open() {
    using namespace Qt::StringLiterals;
    return window_.emplace(ArchiveParts{
        .Path = Path(),
        .Screen = screen_,
        .Message = messages_,
        .Dialogs = dialogs_,
        .Time = clock_,
        .Locale = locale_,
        .CsvDateTimeSingleColumn = option_,
        .AppPath = folder_.path(),
        .Program = u"Tessmar Logger 2.1.9"_s,
        .Ending = [this] { return ending_; },
        .AskText =
            [this](const QString& title, const QString& prompt, const QString& present) {
              asked_ = title + u'|' + prompt + u'|' + present;
              return text_;
            },
        .AskChoice =
            [this](const QString& title, const QString& prompt, const QStringList& choices) {
              asked_ = title + u'|' + prompt + u'|' + choices.join(u',');
              return choice_;
            },
        .ShowViewer =
            [this](const ArchivedUpload& upload, QWidget*) {
              shown_ = upload.LoggerName + u' ' + QString::number(upload.Records->Count());
            },
        .ShowPlot = showPlot_});
  }
  template <typename Control>
  Control* Find(const QString& name) const {
    Control* const control = window_->findChild<Control*>(name);
    EXPECT_NE(control, nullptr) << name.toStdString();
    return control;
  }
  QString Status() const { return Find<QLabel>(QStringLiteral("lblStatus"))->text(); }
  void ChooseLogger(int row) const {
    auto* tree = Find<QTreeView>(QStringLiteral("treeLoggers"));
    tree->setCurrentIndex(tree->model()->index(row, 0));
  }

  Store store_;
  qint64 well_ = 0;
  FakeMainScreen screen_;
  FakeMessages messages_;
  FakeFileDialogs dialogs_;
  FakeClock clock_;
  SystemLocale locale_{QLocale(QLocale::English, QLocale::UnitedStates)};
  QString option_;
  bool ending_ = false;
  std::optional<QString> text_;  ///< The answer to a question for a text.
  std::optional<int> choice_;    ///< The answer to a question for one of some texts.
  QString asked_;                ///< The last of these questions.
  QString shown_;                ///< What the viewer was given last: logger and records.
  std::function<void(SeriesSet, QWidget*)> showPlot_;
  std::optional<frmArchive> window_;
};

}  // namespace tessmar::test
