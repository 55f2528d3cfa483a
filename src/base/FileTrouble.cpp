#include "base/FileTrouble.h"

#include <QDir>
#include <array>
#include <cerrno>
#include <cstring>

#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

struct Words {
  FileCause Cause;
  const char16_t* English;
  const char16_t* German;
};

constexpr std::array<Words, 8> kWords{{
    {FileCause::NotFound, u"The file does not exist:", u"Die Datei existiert nicht:"},
    {FileCause::NoFolder, u"The folder does not exist:", u"Der Ordner existiert nicht:"},
    {FileCause::NotAFile, u"This is not an ordinary file:", u"Das ist keine gewöhnliche Datei:"},
    {FileCause::NoPermission, u"You have no permission for this file or its folder:",
     u"Ihnen fehlt die Berechtigung für diese Datei oder ihren Ordner:"},
    {FileCause::WriteProtected, u"The disk is write-protected:",
     u"Der Datenträger ist schreibgeschützt:"},
    {FileCause::DiskFull, u"The disk is full:", u"Der Datenträger ist voll:"},
    {FileCause::TooLarge, u"The file is too large:", u"Die Datei ist zu groß:"},
    {FileCause::Failed, u"The file could not be read or written (%1):",
     u"Die Datei konnte nicht gelesen oder geschrieben werden (%1):"},
}};

QString Reason(FileCause cause, bool german, const QString& detail) {
  for (const Words& words : kWords) {
    if (words.Cause != cause) continue;
    const QString text = QString::fromUtf16(german ? words.German : words.English);
    return cause == FileCause::Failed ? text.arg(detail) : text;
  }
  return detail;
}

FileCause CauseOf(int error) {
  switch (error) {
    case ENOENT:
      return FileCause::NotFound;
    case ENOTDIR:
      return FileCause::NoFolder;
    case EISDIR:
    case ENXIO:
    case ENODEV:
      return FileCause::NotAFile;
    case EACCES:
    case EPERM:
      return FileCause::NoPermission;
    case EROFS:
      return FileCause::WriteProtected;
    case ENOSPC:
    case EDQUOT:
      return FileCause::DiskFull;
    case EFBIG:
    case EOVERFLOW:
      return FileCause::TooLarge;
    default:
      return FileCause::Failed;
  }
}

}  // namespace

FileTrouble::FileTrouble(FileCause cause, const QString& file, const QString& detail)
    : FileFault((Reason(cause, false, detail) + u' ' + file).toStdString()),
      cause_(cause),
      file_(file),
      detail_(detail) {}

FileTrouble FileTrouble::FromError(int error, const QString& file) {
  return {CauseOf(error), file, QString::fromLocal8Bit(std::strerror(error))};
}

QString FileTrouble::Text() const {
  const bool german = TextLanguage() == kLanguageGerman;
  return Reason(cause_, german, detail_) + u"\r\n"_s + QDir::toNativeSeparators(file_);
}

}  // namespace tessmar
