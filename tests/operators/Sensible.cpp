#include "operators/Sensible.h"

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QAction>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPointer>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTreeView>

#include "operators/Junk.h"

namespace tessmar::test {

using namespace Qt::StringLiterals;

namespace {

void ClickAccept(const QFileDialog& dialog) {
  const auto* box = dialog.findChild<QDialogButtonBox*>(u"buttonBox"_s);
  const QList<QAbstractButton*> buttons = box->buttons();
  for (QAbstractButton* button : buttons) {
    if (box->buttonRole(button) != QDialogButtonBox::AcceptRole) continue;
    QTest::mouseClick(button, Qt::LeftButton);
    return;
  }
}

Deed NameFile(QFileDialog& dialog, Random& random) {
  QPointer<QFileDialog> target(&dialog);
  const QStringList names = FileNames();
  const QString name = random.OneOf(names);
  return {u"takes the file \"%1\""_s.arg(name.left(40)), [=] {
            if (target.isNull()) return;
            if (auto* line = target->findChild<QLineEdit*>(u"fileNameEdit"_s)) line->setText(name);
            ClickAccept(*target);
          }};
}

Deed ConnectDirectly(QWidget& dialog) {
  QPointer<QWidget> target(&dialog);
  return {u"connects on COM9"_s, [=] {
            if (target.isNull()) return;
            auto* direct = target->findChild<QAbstractButton*>(u"optDirect"_s);
            auto* port = target->findChild<QComboBox*>(u"cmbPort1"_s);
            auto* go = target->findChild<QAbstractButton*>(u"cmdConnect"_s);
            if (direct == nullptr || port == nullptr || go == nullptr || !go->isEnabled()) return;
            direct->click();
            port->setCurrentIndex(port->findText(u"COM9"_s, Qt::MatchStartsWith));
            go->click();
          }};
}

Deed Call(QWidget& dialog) {
  QPointer<QWidget> target(&dialog);
  return {u"calls on COM9"_s, [=] {
            if (target.isNull()) return;
            auto* modem = target->findChild<QAbstractButton*>(u"optModem"_s);
            auto* port = target->findChild<QComboBox*>(u"cmbPort2"_s);
            auto* number = target->findChild<QComboBox*>(u"cmbNumber"_s);
            auto* go = target->findChild<QAbstractButton*>(u"cmdConnect"_s);
            if (modem == nullptr || port == nullptr || number == nullptr || !go->isEnabled())
              return;
            modem->click();
            port->setCurrentIndex(port->findText(u"COM9"_s, Qt::MatchStartsWith));
            number->setEditText(u"5551234"_s);
            go->click();
          }};
}

/// Lets something go on for a while.
Deed LetItGoOn(const QWidget& window, Random& random) {
  return {u"lets %1 go on"_s.arg(NameOf(window)), [] {}, random.Between(100, 1500)};
}

bool IsUsable(const QWidget& window, const QString& control) {
  const auto* widget = window.findChild<QWidget*>(control);
  return widget != nullptr && widget->isVisible() && widget->isEnabled();
}

/// Does something with a connected logger, connects otherwise, or looks at what was kept.
Deed WorkMainWindow(QWidget& window, Random& random) {
  QStringList wanted{u"mnuArchive"_s, u"mnuArchive"_s};
  for (const QString& button : {u"cmdGetHistoryData"_s, u"cmdGetHistoryData"_s, u"cmdSetup"_s,
                                u"cmdSetup"_s, u"chkSampleContinuously"_s}) {
    if (IsUsable(window, button)) wanted.append(button);
  }
  if (wanted.size() == 2) wanted << u"cmdConnect"_s << u"cmdConnect"_s;
  const QString name = random.OneOf(wanted);
  QPointer<QObject> control = window.findChild<QObject*>(name);
  return {u"uses "_s + name, [control] {
            if (auto* entry = qobject_cast<QAction*>(control.data())) entry->trigger();
            if (auto* button = qobject_cast<QAbstractButton*>(control.data())) button->click();
          }};
}

/// Exports the series of a logger, or one of the uploads.
Deed Export(QWidget& window, Random& random) {
  const auto* loggers = window.findChild<QTreeView*>(u"treeLoggers"_s);
  const auto* uploads = window.findChild<QTableView*>(u"tblUploads"_s);
  if (loggers == nullptr || uploads == nullptr || loggers->model()->rowCount() == 0) return {};
  // The first logger is the one whose export takes its time.
  const int logger = random.OneIn(2) ? 1 : random.Below(loggers->model()->rowCount());
  const int place = random.OneIn(2) ? random.Below(1000) : -1;
  QPointer<QWidget> target(&window);
  return {u"exports %1 of row %2"_s.arg(place < 0 ? u"the series"_s : u"an upload"_s).arg(logger),
          [=] {
            if (target.isNull()) return;
            auto* tree = target->findChild<QTreeView*>(u"treeLoggers"_s);
            auto* table = target->findChild<QTableView*>(u"tblUploads"_s);
            auto* go = target->findChild<QAbstractButton*>(u"cmdExport"_s);
            if (tree == nullptr || table == nullptr || go == nullptr) return;
            tree->setCurrentIndex(tree->model()->index(logger, 0));
            table->clearSelection();
            if (const int rows = table->model()->rowCount(); place >= 0 && rows > 0)
              table->selectRow(place % rows);
            go->click();
          }};
}

/// Turns to the page of a channel and begins its calibration, to which luck alone hardly ever
/// comes.
Deed Calibrate(QWidget& setup, Random& random) {
  QList<QAbstractButton*> buttons;
  for (QAbstractButton* button : setup.findChildren<QAbstractButton*>()) {
    if (button->objectName().startsWith("cmdCalibrate("_L1) && button->isEnabled())
      buttons.append(button);
  }
  if (buttons.isEmpty()) return {};
  QPointer<QAbstractButton> button = random.OneOf(buttons);
  QPointer<QTabWidget> tabs = setup.findChild<QTabWidget*>(u"TabStrip"_s);
  return {u"calibrates by "_s + NameOf(*button), [button, tabs] {
            if (button.isNull() || tabs.isNull()) return;
            for (int page = 0; page < tabs->count(); ++page) {
              if (tabs->widget(page)->isAncestorOf(button))
                QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, Qt::NoModifier,
                                  tabs->tabBar()->tabRect(page).center());
            }
            if (!button.isNull() && button->isVisible()) QTest::mouseClick(button, Qt::LeftButton);
          }};
}

/// What somebody does who sees how far an export is: cancels, leaves, or waits for it.
Deed AwaitExport(QWidget& window, Random& random) {
  switch (random.Below(4)) {
    case 0:
      return ClickButton({&window}, random);
    case 1:
      return Leave(window, random);
    default:
      return LetItGoOn(window, random);
  }
}

}  // namespace

Deed Leave(QWidget& window, Random& random) {
  QPointer<QWidget> target(&window);
  if (random.OneIn(2)) {
    return {u"closes "_s + NameOf(window), [target] {
              if (!target.isNull()) target->close();
            }};
  }
  return {u"key Esc to "_s + NameOf(window), [target] {
            if (!target.isNull()) QTest::keyClick(target, Qt::Key_Escape);
          }};
}

Deed Sensible(const Windows& reach, Random& random) {
  QWidget* window = OneWindow(reach, random);
  if (window == nullptr) return {};
  const QString name = window->objectName();
  const bool works = (name == "frmConnect"_L1 && !IsUsable(*window, u"cmdConnect"_s)) ||
                     (name == "frmGetHistoryData"_L1 && !IsUsable(*window, u"cmdOkay"_s)) ||
                     name == "frmModem"_L1;
  if (name == "dlgPrint"_L1) return Leave(*window, random);
  if (works && !random.OneIn(8)) return LetItGoOn(*window, random);
  if (name == "frmConnect"_L1) return random.OneIn(5) ? Call(*window) : ConnectDirectly(*window);
  if (auto* dialog = qobject_cast<QFileDialog*>(window)) return NameFile(*dialog, random);
  if (random.OneIn(4)) return TriggerEntry(reach, random);
  if (name == "frmMain"_L1) return WorkMainWindow(*window, random);
  if (name == "frmExport"_L1) return AwaitExport(*window, random);
  if (name == "frmSetup"_L1 && random.OneIn(6)) return Calibrate(*window, random);
  if (name == "frmArchive"_L1 && !random.OneIn(4)) return Export(*window, random);
  return ClickButton(reach, random);
}

}  // namespace tessmar::test
