#include "archive/CalibrationsPage.h"

#include <QPointer>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>
#include <array>

#include "archive/ArchiveTable.h"
#include "archive/WindowTexts.h"
#include "base/TextTable.h"
#include "base/WholeFile.h"

namespace tessmar {

using namespace Qt::StringLiterals;

CalibrationsPage::CalibrationsPage(const CalibrationsParts& parts, QWidget* parent)
    : QWidget(parent),
      parts_(parts),
      model_(parts.Locale),
      tblCalibrations_(new QTableView(this)),
      cmdCalibrationsCsv_(new QPushButton(
          InLanguage(u"E&xport Calibrations...", u"Kalibrierun&gen exportieren..."), this)) {
  setObjectName(u"fraCalibrations"_s);
  filter_.setSourceModel(&model_);
  SetUpArchiveTable(tblCalibrations_, u"tblCalibrations"_s,
                    InLanguage(u"Calibrations", u"Kalibrierungen"), &filter_);
  SetArchiveColumns(tblCalibrations_, std::array{26, 13, 11, 17, 11, 18, 11});
  cmdCalibrationsCsv_->setObjectName(u"cmdCalibrationsCsv"_s);
  cmdCalibrationsCsv_->setAutoDefault(false);
  connect(cmdCalibrationsCsv_, &QPushButton::clicked, this, [this] { Export(); });
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->addWidget(tblCalibrations_, 1);
  rows->addWidget(cmdCalibrationsCsv_, 0, Qt::AlignRight);
  UpdateButton();
}

void CalibrationsPage::Show(const std::vector<EventRow>& events, const LoggerNames& names) {
  model_.Set(CalibrationsIn(events), names);
  UpdateButton();
}

void CalibrationsPage::SetFilter(const QString& text, QDate since, QDate until) {
  filter_.Set(text, since, until);
  UpdateButton();
}

void CalibrationsPage::UpdateButton() {
  cmdCalibrationsCsv_->setEnabled(filter_.rowCount() > 0);
}

std::vector<CalibrationRow> CalibrationsPage::ShownRows() const {
  std::vector<CalibrationRow> rows;
  rows.reserve(static_cast<std::size_t>(filter_.rowCount()));
  for (int row = 0; row < filter_.rowCount(); ++row)
    rows.push_back(model_.Row(filter_.mapToSource(filter_.index(row, 0)).row()));
  return rows;
}

void CalibrationsPage::Export() {
  const QPointer<CalibrationsPage> self(this);
  const QByteArray csv =
      CalibrationsCsv(ShownRows(), [this](qint64 logger) { return model_.NameOf(logger); });
  const QString title = InLanguage(u"Export Calibrations", u"Kalibrierungen exportieren");
  const std::optional<QString> path =
      parts_.Dialogs.AskSave({.Title = title,
                              .InitialName = parts_.AppPath + u"/*.csv"_s,
                              .Filter = GetText(WindowTextId::CsvFiles) + u" (*.csv)|*.csv"_s,
                              .DefaultExtension = u".csv"_s,
                              .ConfirmOverwrite = true});
  if (self.isNull() || !path) return;
  try {
    WriteWholeFile(*path, csv);
    parts_.Saved(*path);
  } catch (const FileTrouble& trouble) {
    parts_.Message.MsgBox(trouble.Text(), kExclamation, title);
  }
}

}  // namespace tessmar
