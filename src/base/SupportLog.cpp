#include "base/SupportLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <utility>

#include "base/Blanks.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// A pipe or a device would hold the program up.
bool IsOtherThanFile(const QString& path) {
  const QFileInfo info(path);
  return info.exists() && !info.isFile();
}

}  // namespace

SupportLog::SupportLog(QString path, const Clock& clock) : path_(std::move(path)), clock_(clock) {}

QString SupportLog::DefaultPath() {
  // A relative path in the variable counts as none.
  QString folder = qEnvironmentVariable("XDG_STATE_HOME");
  if (!QDir::isAbsolutePath(folder)) folder = QDir::homePath() + u"/.local/state"_s;
  return folder + u"/Tessmar/tessmar.log"_s;
}

// The file is opened for each line, so that another program of ours may begin a new one.
void SupportLog::Write(const QString& text) const {
  if (path_.isEmpty() || IsOtherThanFile(path_)) return;
  const QString time = clock_.Now().toUTC().toString(u"yyyy-MM-ddTHH:mm:ss.zzzZ"_s);
  const QByteArray line = (time + u' ' + ControlsToBlanks(text) + u'\n').toUtf8();
  QDir().mkpath(QFileInfo(path_).path());
  if (QFileInfo(path_).size() + line.size() > kLargest) {
    const QString before = path_ + u".1"_s;
    QFile::remove(before);
    QFile::rename(path_, before);
  }
  QFile file(path_);
  if (file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)) file.write(line);
}

QStringList SupportLog::Last(int lines) const {
  QFile file(path_);
  if (path_.isEmpty() || IsOtherThanFile(path_) || !file.open(QIODevice::ReadOnly)) return {};
  QStringList all = QString::fromUtf8(file.read(kLargest)).split(u'\n', Qt::SkipEmptyParts);
  return all.mid(qMax<qsizetype>(0, all.size() - lines));
}

}  // namespace tessmar
