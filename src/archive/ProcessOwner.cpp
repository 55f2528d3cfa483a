#include "archive/ProcessOwner.h"

#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QSysInfo>

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr qsizetype kBootLength = 8;

QByteArray ReadAll(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString Boot() {
  return QString::fromLatin1(ReadAll(u"/proc/sys/kernel/random/boot_id"_s).left(kBootLength));
}

// The 22nd field of the process's line; the second may have blanks in it, but ends in the last ")".
// Empty where there is no such process.
QString StartOf(qint64 pid) {
  constexpr qsizetype kFieldsBehindName = 19;
  const QByteArray line = ReadAll(u"/proc/%1/stat"_s.arg(pid));
  const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
  return fields.size() > kFieldsBehindName ? QString::fromLatin1(fields[kFieldsBehindName])
                                           : QString();
}

QHash<QString, QString> FieldsOf(const QString& owner) {
  QHash<QString, QString> fields;
  for (const QString& part : owner.split(u' ')) {
    const qsizetype equals = part.indexOf(u'=');
    if (equals > 0) fields[part.left(equals)] = part.mid(equals + 1);
  }
  return fields;
}

}  // namespace

QString OwnOwner() {
  const qint64 pid = QCoreApplication::applicationPid();
  return u"pid=%1 start=%2 boot=%3 host=%4"_s.arg(pid).arg(
      StartOf(pid), Boot(), QSysInfo::machineHostName().replace(u' ', u'-'));
}

bool OwnerHasEnded(const QString& owner) {
  const QHash<QString, QString> fields = FieldsOf(owner);
  if (!fields.contains(u"pid"_s)) return true;
  if (fields.value(u"boot"_s) == Boot())
    return StartOf(fields.value(u"pid"_s).toLongLong()) != fields.value(u"start"_s);
  return fields.value(u"host"_s) == QSysInfo::machineHostName().replace(u' ', u'-');
}

}  // namespace tessmar
