#include "base/FileNames.h"

#include <QDir>
#include <QStandardPaths>

#include "base/WholeFile.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

QString LastPart(const QString& name) {
  return name.mid(name.lastIndexOf(u'/') + 1);
}

}  // namespace

FileDialogStart StartOfFileDialog(const QString& initialName) {
  const QString last = LastPart(initialName);
  FileDialogStart start;
  const qsizetype folderEnd = initialName.size() - last.size();
  // The folder of "/pond.set" is the root, which keeps its separator.
  start.Folder = folderEnd > 1 ? initialName.left(folderEnd - 1) : initialName.left(folderEnd);
  const bool isPattern = last.contains(u'*') || last.contains(u'?');
  if (!isPattern) start.Name = last;
  return start;
}

QStringList FileFilters(const QString& filter) {
  QStringList result;
  const QStringList parts = filter.split(u'|', Qt::SkipEmptyParts);
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QString patterns = parts[i + 1];
    patterns.replace(u';', u' ');
    QString words = parts[i];
    if (words.endsWith(u')')) words = words.left(words.lastIndexOf(u'('));
    result << u"%1 (%2)"_s.arg(words.trimmed(), patterns);
  }
  return result;
}

QString ExtensionOfFilter(const QString& filter, int part) {
  const QString pattern =
      filter.split(u'|', Qt::SkipEmptyParts).value(qsizetype{2} * part + 1).trimmed();
  const bool plain = pattern.startsWith("*."_L1) && pattern.size() > 2 &&
                     pattern.count(u'*') == 1 && !pattern.contains(u';') && !pattern.contains(u'?');
  return plain ? pattern.mid(1) : QString();
}

QString WithDefaultExtension(const QString& name, const QString& extension) {
  const QString last = LastPart(name);
  // A point in front makes a hidden file, not an extension.
  const bool hasExtension = last.lastIndexOf(u'.') > 0;
  return last.isEmpty() || hasExtension ? name : name + extension;
}

QString FirstFolderOfDialogs(const QString& appPath) {
  if (TakesNewFiles(appPath)) return appPath;
  const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  return TakesNewFiles(documents) ? documents : QDir::homePath();
}

}  // namespace tessmar
