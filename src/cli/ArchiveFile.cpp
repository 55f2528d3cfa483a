#include "cli/ArchiveFile.h"

#include <QFileInfo>

namespace tessmar {

QString ArchivePathOf(const CommandOptions& options) {
  if (options.NoArchive) return {};
  return options.ArchivePath.isEmpty() ? Store::DefaultPath() : options.ArchivePath;
}

CommandFailure ArchiveRefusal(const QString& path, const ArchiveFault& fault) {
  const auto words = [&]() -> TwoLanguages {
    switch (fault.Trouble()) {
      case ArchiveTrouble::Busy:
        return {u"another program holds it just now; try again",
                u"ein anderes Programm hält es gerade; noch einmal versuchen"};
      case ArchiveTrouble::Full:
        return {u"there is no room on the disk", u"auf dem Datenträger ist kein Platz"};
      case ArchiveTrouble::Damaged:
        return {u"it is damaged; Tessmar Logger moves it aside and begins a new one",
                u"es ist beschädigt; Tessmar Logger stellt es beiseite und beginnt ein neues"};
      case ArchiveTrouble::UnderCheck:
        return {u"it is being checked for damage; try again later",
                u"es wird auf Schäden geprüft; später noch einmal versuchen"};
      case ArchiveTrouble::Foreign:
        return {u"it is another program's database",
                u"es ist die Datenbank eines anderen Programms"};
      case ArchiveTrouble::Newer:
        return {u"a later version of this program wrote it; that one reads it",
                u"eine spätere Fassung dieses Programms schrieb es; die liest es"};
      case ArchiveTrouble::NotAFile:
        return {u"it is not a file", u"es ist keine Datei"};
      case ArchiveTrouble::NoDriver:
        return {u"install the package libqt6sql6-sqlite", u"das Paket libqt6sql6-sqlite fehlt"};
      case ArchiveTrouble::Unwritable:
        break;
    }
    return {u"it cannot be opened; check permissions and disk",
            u"es lässt sich nicht öffnen; Rechte und Datenträger prüfen"};
  };
  return CommandFailure(
      TwoLanguages{u"archive %1: %2", u"Archiv %1: %2"}.Text().arg(path, words().Text()));
}

CommandStatus OnArchive(const CommandOptions& options,
                        const std::function<CommandStatus(Store&)>& work) {
  const QString path = ArchivePathOf(options);
  if (!QFileInfo::exists(path)) {
    throw CommandFailure(
        TwoLanguages{u"there is no archive at %1", u"es gibt kein Archiv unter %1"}.Text().arg(
            path),
        options.ArchivePath.isEmpty() ? kCommandFailed : kCommandWrongUsage);
  }
  Store store(path);
  try {
    store.Open(Store::Access::Read);
    return work(store);
  } catch (const ArchiveFault& fault) {
    throw ArchiveRefusal(path, fault);
  }
}

UploadRow UploadNamed(const Store& store, const QString& number) {
  bool isNumber = false;
  const qint64 id = number.toLongLong(&isNumber);
  if (!isNumber || id < 1)
    throw CommandFailure(
        TwoLanguages{u"\"%1\" is no number of an upload", u"\"%1\" ist keine Nummer eines Abrufs"}
            .Text()
            .arg(number),
        kCommandWrongUsage);
  const std::optional<UploadRow> upload = store.Upload(id);
  if (!upload)
    throw CommandFailure(TwoLanguages{u"there is no upload %1; \"tessmar archive list\" lists them",
                                      u"es gibt keinen Abruf %1; \"tessmar archive list\" zeigt "
                                      u"sie"}
                             .Text()
                             .arg(id));
  return *upload;
}

}  // namespace tessmar
