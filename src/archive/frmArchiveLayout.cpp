// How the archive's window is made; what it does stands in frmArchive.cpp.

#include <QCheckBox>
#include <QDateEdit>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QTabBar>
#include <QTableView>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

#include "archive/ArchiveTable.h"
#include "archive/CalibrationsPage.h"
#include "archive/LogbookTabs.h"
#include "archive/WindowTexts.h"
#include "archive/frmArchive.h"
#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using Id = WindowTextId;

constexpr int kWidthInCharacters = 145;
constexpr int kHeightInLines = 36;

QString WithoutMnemonic(QString text) {
  return text.remove(u'&').remove(u':');
}

}  // namespace

frmArchive::frmArchive(const ArchiveParts& parts, QWidget* parent)
    : QDialog(parent),
      parts_(parts),
      store_(parts.Path),
      uploadsModel_(parts.Locale),
      logbookModel_(parts.Locale),
      treeLoggers_(new QTreeView(this)),
      tblUploads_(new QTableView(this)),
      tblLogbook_(new QTableView(this)),
      calibrations_(
          new CalibrationsPage({.Locale = parts.Locale,
                                .Dialogs = parts.Dialogs,
                                .Message = parts.Message,
                                .AppPath = parts.AppPath,
                                .Saved = [this](const QString& path) { ShowStatus(path); }},
                               this)),
      txtFilter_(new QLineEdit(this)),
      chkSince_(new QCheckBox(GetText(Id::Since), this)),
      dtpSince_(new QDateEdit(this)),
      chkUntil_(new QCheckBox(GetText(Id::Until), this)),
      dtpUntil_(new QDateEdit(this)),
      lblStatus_(new QLabel(this)),
      cmdOpen_(new QPushButton(GetText(Id::Open), this)),
      cmdPlot_(new QPushButton(GetText(Id::Plot), this)),
      cmdExport_(new QPushButton(GetText(Id::Export), this)),
      cmdRename_(new QPushButton(GetText(Id::Rename), this)),
      cmdMerge_(new QPushButton(GetText(Id::Merge), this)),
      cmdSplit_(new QPushButton(GetText(Id::Split), this)),
      cmdDelete_(new QPushButton(GetText(Id::Delete), this)),
      cmdRestore_(new QPushButton(GetText(Id::Restore), this)),
      cmdEmpty_(new QPushButton(GetText(Id::EmptyBin), this)),
      cmdClose_(new QPushButton(GetText(Id::Close), this)) {
  setObjectName(u"frmArchive"_s);
  setWindowTitle(GetText(Id::Caption));
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  BuildControls();
  BuildTables();
  BuildButtons();
  BuildLayout();
  Load();
  Choose(std::nullopt);
  Connect();
  tblUploads_->setFocus();
}

void frmArchive::BuildControls() {
  treeLoggers_->setObjectName(u"treeLoggers"_s);
  treeLoggers_->setAccessibleName(WithoutMnemonic(GetText(Id::Loggers)));
  treeLoggers_->setModel(&loggersModel_);
  treeLoggers_->setHeaderHidden(true);
  treeLoggers_->setRootIsDecorated(false);
  treeLoggers_->setUniformRowHeights(true);
  txtFilter_->setObjectName(u"txtFilter"_s);
  txtFilter_->setAccessibleName(WithoutMnemonic(GetText(Id::Find)));
  txtFilter_->setToolTip(GetText(Id::FindHint));
  txtFilter_->setClearButtonEnabled(true);
  chkSince_->setObjectName(u"chkSince"_s);
  chkUntil_->setObjectName(u"chkUntil"_s);
  const QDate today = parts_.Time.Now().date();
  for (QDateEdit* date : {dtpSince_, dtpUntil_}) {
    date->setCalendarPopup(true);
    date->setDate(today);
    date->setEnabled(false);
  }
  dtpSince_->setDate(today.addYears(-1));
  dtpSince_->setObjectName(u"dtpSince"_s);
  dtpSince_->setAccessibleName(WithoutMnemonic(chkSince_->text()));
  dtpUntil_->setObjectName(u"dtpUntil"_s);
  dtpUntil_->setAccessibleName(WithoutMnemonic(chkUntil_->text()));
  lblStatus_->setObjectName(u"lblStatus"_s);
  lblStatus_->setTextFormat(Qt::PlainText);
}

void frmArchive::BuildTables() {
  uploadsFilter_.setSourceModel(&uploadsModel_);
  logbookFilter_.setSourceModel(&logbookModel_);
  SetUpArchiveTable(tblUploads_, u"tblUploads"_s, WithoutMnemonic(GetText(Id::Uploads)),
                    &uploadsFilter_);
  SetUpArchiveTable(tblLogbook_, u"tblLogbook"_s, WithoutMnemonic(GetText(Id::Logbook)),
                    &logbookFilter_);
  SetArchiveColumns(tblUploads_, std::array{27, 22, 13, 15, 12, 12});
  SetArchiveColumns(tblLogbook_, std::array{27, 22, 20});
}

void frmArchive::BuildButtons() {
  const std::pair<QPushButton*, QString> names[] = {
      {cmdOpen_, u"cmdOpen"_s},     {cmdPlot_, u"cmdPlot"_s},       {cmdExport_, u"cmdExport"_s},
      {cmdRename_, u"cmdRename"_s}, {cmdMerge_, u"cmdMerge"_s},     {cmdSplit_, u"cmdSplit"_s},
      {cmdDelete_, u"cmdDelete"_s}, {cmdRestore_, u"cmdRestore"_s}, {cmdEmpty_, u"cmdEmpty"_s},
      {cmdClose_, u"cmdClose"_s}};
  for (const auto& [button, name] : names) {
    button->setObjectName(name);
    button->setAutoDefault(false);
  }
  cmdPlot_->setVisible(parts_.ShowPlot != nullptr);
}

QWidget* frmArchive::UploadsWithCaption() {
  auto* label = new QLabel(GetText(Id::Uploads), this);
  label->setBuddy(tblUploads_);
  auto* half = new QWidget(this);
  auto* column = new QVBoxLayout(half);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(label);
  column->addWidget(tblUploads_, 1);
  return half;
}

LogbookTabs* frmArchive::LogbookPages() {
  auto* pages = new LogbookTabs(this);
  pages->addTab(tblLogbook_, GetText(Id::Logbook));
  pages->addTab(calibrations_, InLanguage(u"&Calibrations", u"&Kalibrierungen"));
  return pages;
}

QWidget* frmArchive::Sides() {
  auto* left = new QWidget(this);
  auto* loggers = new QVBoxLayout(left);
  loggers->setContentsMargins(0, 0, 0, 0);
  auto* caption = new QLabel(GetText(Id::Loggers), this);
  caption->setBuddy(treeLoggers_);
  loggers->addWidget(caption);
  loggers->addWidget(treeLoggers_, 1);

  auto* tables = new QSplitter(Qt::Vertical, this);
  tables->addWidget(UploadsWithCaption());
  tables->addWidget(LogbookPages());
  tables->setStretchFactor(0, 2);
  tables->setStretchFactor(1, 1);
  tables->setChildrenCollapsible(false);
  auto* sides = new QSplitter(Qt::Horizontal, this);
  sides->addWidget(left);
  sides->addWidget(tables);
  sides->setStretchFactor(0, 1);
  sides->setStretchFactor(1, 4);
  sides->setChildrenCollapsible(false);
  return sides;
}

void frmArchive::BuildLayout() {
  auto* find = new QLabel(GetText(Id::Find), this);
  find->setBuddy(txtFilter_);
  auto* filter = new QHBoxLayout;
  filter->addWidget(find);
  filter->addWidget(txtFilter_, 1);
  for (QWidget* widget : {static_cast<QWidget*>(chkSince_), static_cast<QWidget*>(dtpSince_),
                          static_cast<QWidget*>(chkUntil_), static_cast<QWidget*>(dtpUntil_)})
    filter->addWidget(widget);

  auto* buttons = new QHBoxLayout;
  for (QPushButton* button : {cmdOpen_, cmdPlot_, cmdExport_, cmdRename_, cmdMerge_, cmdSplit_,
                              cmdDelete_, cmdRestore_, cmdEmpty_})
    buttons->addWidget(button);
  buttons->addStretch();
  buttons->addWidget(cmdClose_);

  auto* rows = new QVBoxLayout(this);
  rows->addLayout(filter);
  rows->addWidget(Sides(), 1);
  rows->addWidget(lblStatus_);
  rows->addLayout(buttons);

  const QSize room = screen()->availableSize();
  const QSize wanted(fontMetrics().averageCharWidth() * kWidthInCharacters,
                     fontMetrics().height() * kHeightInLines);
  resize(wanted.expandedTo(minimumSizeHint()).boundedTo(room * 9 / 10));

  OrderTabs();
}

void frmArchive::OrderTabs() {
  QWidget* before = txtFilter_;
  const auto* tabs = findChild<LogbookTabs*>();
  const QWidgetList order = {chkSince_,
                             dtpSince_,
                             chkUntil_,
                             dtpUntil_,
                             treeLoggers_,
                             tblUploads_,
                             tabs->tabBar(),
                             tblLogbook_,
                             calibrations_->Table(),
                             calibrations_->ExportButton(),
                             cmdOpen_,
                             cmdPlot_,
                             cmdExport_,
                             cmdRename_,
                             cmdMerge_,
                             cmdSplit_,
                             cmdDelete_,
                             cmdRestore_,
                             cmdEmpty_,
                             cmdClose_};
  for (QWidget* next : order) {
    setTabOrder(before, next);
    before = next;
  }
}

void frmArchive::Connect() {
  const auto onClick = [this](QPushButton* button, void (frmArchive::*act)()) {
    connect(button, &QPushButton::clicked, this, [this, act] { (this->*act)(); });
  };
  onClick(cmdOpen_, &frmArchive::cmdOpen_Click);
  onClick(cmdPlot_, &frmArchive::cmdPlot_Click);
  onClick(cmdExport_, &frmArchive::cmdExport_Click);
  onClick(cmdRename_, &frmArchive::cmdRename_Click);
  onClick(cmdMerge_, &frmArchive::cmdMerge_Click);
  onClick(cmdSplit_, &frmArchive::cmdSplit_Click);
  onClick(cmdDelete_, &frmArchive::cmdDelete_Click);
  onClick(cmdRestore_, &frmArchive::cmdRestore_Click);
  onClick(cmdEmpty_, &frmArchive::cmdEmpty_Click);
  connect(cmdClose_, &QPushButton::clicked, this, &QDialog::reject);
  connect(tblUploads_, &QTableView::activated, this, [this](const QModelIndex& index) {
    if (!tblUploads_->selectionModel()->hasSelection()) tblUploads_->selectRow(index.row());
    cmdOpen_Click();
  });
  connect(treeLoggers_->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this] { ShowChosen(); });
  // Pressed again, a logger stands for all its uploads again.
  connect(treeLoggers_, &QTreeView::clicked, this, [this] { ChooseSeries(); });
  connect(treeLoggers_, &QTreeView::activated, this, [this] { ChooseSeries(); });
  connect(tblUploads_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
    ShowStatus();
    UpdateButtons();
  });
  connect(txtFilter_, &QLineEdit::textChanged, this, [this] { ApplyFilter(); });
  for (QCheckBox* box : {chkSince_, chkUntil_})
    connect(box, &QCheckBox::toggled, this, [this] { ApplyFilter(); });
  for (QDateEdit* date : {dtpSince_, dtpUntil_})
    connect(date, &QDateEdit::dateChanged, this, [this] { ApplyFilter(); });
}

void frmArchive::ApplyFilter() {
  dtpSince_->setEnabled(chkSince_->isChecked());
  dtpUntil_->setEnabled(chkUntil_->isChecked());
  const QDate since = chkSince_->isChecked() ? dtpSince_->date() : QDate();
  const QDate until = chkUntil_->isChecked() ? dtpUntil_->date() : QDate();
  for (ArchiveFilter* filter : {&uploadsFilter_, &logbookFilter_})
    filter->Set(txtFilter_->text(), since, until);
  calibrations_->SetFilter(txtFilter_->text(), since, until);
  ShowStatus();
  UpdateButtons();
}

}  // namespace tessmar
