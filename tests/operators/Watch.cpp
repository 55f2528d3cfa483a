#include "operators/Watch.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QThread>
#include <QWidget>

namespace tessmar::test {

using namespace Qt::StringLiterals;

namespace {

struct WindowRow {
  const char* Name;
  const char* Over;  ///< The windows of which one has to stand below; empty for any.
  int Most;
};

constexpr WindowRow kWindows[] = {
    {"frmMain", "", 1},
    {"frmConnect", "frmMain", 1},
    {"frmModem", "frmConnect", 1},
    {"frmGetHistoryData", "frmMain", 1},
    {"frmHistory", "frmMain frmArchive", 1},
    {"frmHistoryOptions", "frmHistory", 1},
    {"frmProgress", "frmHistory", 1},
    // The plot, and the live trend.
    {"frmPlot", "frmMain", 2},
    {"dlgPrint", "frmPlot", 1},
    {"frmArchive", "frmMain", 1},
    {"frmArchiveText", "frmArchive", 1},
    {"frmArchiveChoice", "frmArchive", 1},
    {"frmExport", "frmArchive", 1},
    {"frmSetup", "frmMain", 1},
    {"frmCalibrate", "frmSetup", 1},
    {"frmChanges", "frmSetup", 1},
    {"frmImportSetup", "frmMain", 1},
    {"frmAbout", "frmMain", 1},
    {"dlgFile", "", 1},
    {"FMessage", "", 1},
};

const WindowRow* RowOf(const QString& name) {
  for (const WindowRow& row : kWindows) {
    if (name == QLatin1StringView(row.Name)) return &row;
  }
  return nullptr;
}

/// Menus, opened lists, hints; and the questions that the toolkit's file dialog asks itself.
bool IsToolkits(const QWidget& widget) {
  if (widget.windowType() == Qt::Popup || widget.windowType() == Qt::ToolTip) return true;
  for (const QWidget* above = widget.parentWidget(); above != nullptr;
       above = above->parentWidget()) {
    if (above->objectName() == "dlgFile"_L1 || above->objectName() == "dlgPrint"_L1) return true;
  }
  return false;
}

QMap<QString, int> Shown() {
  QMap<QString, int> shown;
  for (const QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->isVisible() && (RowOf(widget->objectName()) != nullptr || !IsToolkits(*widget)))
      ++shown[widget->objectName().isEmpty()
                  ? QString::fromLatin1(widget->metaObject()->className())
                  : widget->objectName()];
  }
  return shown;
}

QString TitlesOf(const QString& name) {
  QStringList titles;
  for (const QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->isVisible() && widget->objectName() == name)
      titles.append(u'"' + widget->windowTitle() + u'"');
  }
  return titles.join(u" and "_s);
}

bool StandsOverOneOf(const QMap<QString, int>& shown, const char* windows) {
  const QStringList names = QString::fromLatin1(windows).split(u' ', Qt::SkipEmptyParts);
  if (names.isEmpty()) return true;
  return std::any_of(names.begin(), names.end(),
                     [&](const QString& name) { return shown.contains(name); });
}

}  // namespace

QString Watch::Stranger() {
  const QMap<QString, int> shown = Shown();
  if (!shown.contains(u"frmMain"_s)) return u"the main window has gone"_s;
  for (auto window = shown.begin(); window != shown.end(); ++window) {
    const WindowRow* row = RowOf(window.key());
    if (row == nullptr) return u"an unknown window %1"_s.arg(window.key());
    if (window.value() > row->Most)
      return u"%1 stands twice: %2"_s.arg(window.key(), TitlesOf(window.key()));
    if (!StandsOverOneOf(shown, row->Over))
      return u"%1 stands without what it belongs to"_s.arg(window.key());
  }
  const QWidget* modal = QApplication::activeModalWidget();
  if (modal != nullptr && !modal->isVisible())
    return u"the hidden %1 takes all clicks"_s.arg(modal->objectName());
  return {};
}

QString Watch::Holds() {
  if (QApplication::activePopupWidget() != nullptr) return u"a popup"_s;
  if (const QWidget* modal = QApplication::activeModalWidget())
    return u"the modal "_s + modal->objectName();
  const QMap<QString, int> shown = Shown();
  for (auto window = shown.begin(); window != shown.end(); ++window) {
    if (window.key() != "frmMain"_L1) return u"the window "_s + window.key();
  }
  // One is the application's own.
  if (QThread::currentThread()->loopLevel() > 1)
    return u"%1 message loops"_s.arg(QThread::currentThread()->loopLevel());
  if (QApplication::overrideCursor() != nullptr) return u"the wait cursor"_s;
  return {};
}

void Watch::Count() {
  const QMap<QString, int> shown = Shown();
  for (auto window = shown.begin(); window != shown.end(); ++window) ++seen_[window.key()];
}

QStringList Watch::AllWindows() {
  QStringList names;
  for (const WindowRow& row : kWindows) names.append(QString::fromLatin1(row.Name));
  return names;
}

Holdings HoldingsOfProcess() {
  const auto entries = [](const QString& folder) {
    return QDir(folder).entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
  };
  Holdings held;
  const QFileInfoList threads = entries(u"/proc/self/task"_s);
  for (const QFileInfo& thread : threads) {
    QFile name(thread.filePath() + u"/comm"_s);
    if (name.open(QIODevice::ReadOnly))
      held.Threads.append(QString::fromUtf8(name.readAll().trimmed()));
  }
  const QFileInfoList descriptors = entries(u"/proc/self/fd"_s);
  for (const QFileInfo& descriptor : descriptors) {
    const QString target = descriptor.symLinkTarget();
    // What belongs to the system is read once and kept: the list of file types.
    if (!target.startsWith(u"/usr/"_s)) held.Descriptors.append(target);
  }
  return held;
}

}  // namespace tessmar::test
