#include "operators/Confinement.h"

#include <QAbstractPrintDialog>
#include <QApplication>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>

namespace tessmar::test {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* kSchemes[] = {"file", "http", "https", "mailto"};

/// The dialog of this kind that a widget belongs to, if any; a popup of it, too.
template <typename Dialog>
Dialog* Owner(QObject* object) {
  while (object != nullptr) {
    if (auto* dialog = qobject_cast<Dialog*>(object)) return dialog;
    object = object->parent();
  }
  return nullptr;
}

bool IsDeed(QEvent::Type type) {
  switch (type) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Shortcut:
    case QEvent::Drop:
      return true;
    default:
      return false;
  }
}

}  // namespace

void Confinement::PrepareEnvironment(const QString& folder) {
  const QDir root(folder);
  for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME",
                           "XDG_STATE_HOME", "XDG_RUNTIME_DIR", "TMPDIR", "PATH"}) {
    const QString place = root.filePath(QString::fromLatin1(name).toLower());
    root.mkpath(place);
    QFile::setPermissions(place, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv(name, QFile::encodeName(place));
  }
  // Where no printing system is.
  qputenv("CUPS_SERVER", QFile::encodeName(root.filePath(u"no-printers"_s)));
  qputenv("LC_ALL", "C.UTF-8");
  for (const char* name : {"TESSMAR_PORTS", "TESSMAR_ARCHIVE", "TESSMAR_TRACE", "PRINTER",
                           "XDG_DOCUMENTS_DIR", "DBUS_SESSION_BUS_ADDRESS"})
    qunsetenv(name);
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QDir::setCurrent(folder);
}

Confinement::Confinement(const QString& folder) : folder_(QDir(folder).canonicalPath()) {
  for (const char* scheme : kSchemes)
    QDesktopServices::setUrlHandler(QString::fromLatin1(scheme), this, "OpenPage");
  qApp->installEventFilter(this);
}

Confinement::~Confinement() {
  qApp->removeEventFilter(this);
  for (const char* scheme : kSchemes)
    QDesktopServices::unsetUrlHandler(QString::fromLatin1(scheme));
}

void Confinement::OpenPage(const QUrl& /*page*/) {
  ++pagesOpened_;
}

bool Confinement::IsInside(const QFileDialog& dialog) const {
  const auto inside = [this](const QString& path) {
    return path == folder_ || path.startsWith(folder_ + u'/');
  };
  if (!inside(dialog.directory().canonicalPath())) return false;
  const auto* name = dialog.findChild<QLineEdit*>(u"fileNameEdit"_s);
  if (name == nullptr) return true;
  // Quotation marks would part it into several names.
  if (name->text().contains(u'"') || name->text().startsWith(u'~')) return false;
  return inside(QDir::cleanPath(dialog.directory().absoluteFilePath(name->text())));
}

bool Confinement::LeavesPrinting(const QWidget& widget, const QEvent& event) {
  if (event.type() == QEvent::KeyPress || event.type() == QEvent::KeyRelease)
    return static_cast<const QKeyEvent&>(event).key() == Qt::Key_Escape;
  const auto* button = qobject_cast<const QPushButton*>(&widget);
  const auto* box = button == nullptr ? nullptr : qobject_cast<QDialogButtonBox*>(button->parent());
  return box != nullptr && box->button(QDialogButtonBox::Cancel) == button;
}

bool Confinement::eventFilter(QObject* watched, QEvent* event) {
  if (!IsDeed(event->type())) return false;
  const auto* widget = qobject_cast<QWidget*>(watched);
  if (widget == nullptr) return false;
  if (Owner<QAbstractPrintDialog>(watched) != nullptr) return !LeavesPrinting(*widget, *event);
  auto* dialog = Owner<QFileDialog>(watched);
  if (dialog == nullptr || IsInside(*dialog)) return false;
  dialog->setDirectory(folder_);
  if (auto* name = dialog->findChild<QLineEdit*>(u"fileNameEdit"_s)) name->clear();
  return true;
}

}  // namespace tessmar::test
