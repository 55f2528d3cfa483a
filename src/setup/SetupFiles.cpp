#include "setup/SetupFiles.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <utility>

#include "ProgramVersion.h"
#include "base/Fault.h"
#include "base/ReadFile.h"
#include "base/WholeFile.h"
#include "settings/SetupFile.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr auto kPattern = "*.set"_L1;
/// Not the one that the filter offers. Operators know it so, and it stays.
constexpr auto kDefaultExtension = ".dat"_L1;
/// No setup file comes near this; what does was chosen by mistake.
constexpr qint64 kLargestFile = 64LL * 1024 * 1024;

constexpr int kFailed = kOkOnly + kCritical;

QString ProgramName() {
  return QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
}

QString ProgramVersion() {
  return u"%1.%2.%3"_s.arg(kVersionMajor).arg(kVersionMinor).arg(kVersionRevision);
}

}  // namespace

SetupFiles::SetupFiles(SetupFileServices services, SetupFileScreen screen)
    : services_(std::move(services)), screen_(std::move(screen)) {}

FileDialogRequest SetupFiles::Request(TextId title) const {
  QString folder = services_.Recent.SetupFolder;
  const bool known = !folder.isEmpty();
  if (folder.endsWith(u'/')) folder.chop(1);
  const QString name = currentSetupFileName_.isEmpty() ? QString(kPattern) : currentSetupFileName_;

  FileDialogRequest request;
  request.Title = GetText(title);
  request.InitialName = known ? folder + u'/' + name : services_.AppPath + u'/' + QString(kPattern);
  request.Filter = GetText(TextId::SetupFiles) + u" (*.set)|*.set"_s;
  request.DefaultExtension = kDefaultExtension;
  return request;
}

void SetupFiles::Remember(const QString& path) {
  const std::optional<FolderAndName> parts = SplitPath(path);
  if (!parts) return;
  services_.Recent.SetupFolder = parts->Folder;
  currentSetupFileName_ = parts->Name;
  PromoteRecentFile(services_.Recent, path);
}

bool SetupFiles::SaveSetupFile() {
  const QString title = GetText(TextId::SaveSetupFile);
  const std::optional<QString> path = services_.Dialogs.AskSave(Request(TextId::SaveSetupFile));
  if (!path) return false;
  Remember(*path);
  if (QFileInfo::exists(*path) &&
      services_.Asker.MsgBox(GetText(TextId::AskOverwrite), kYesNo + kInformation, title) != kYes) {
    return false;
  }
  // Closing the program answers the question, too, and that is nobody's leave to overwrite a file.
  if (services_.Loop != nullptr && services_.Loop->Ending()) return false;
  screen_.ControlsToSettings();
  const bool written = Trapped(services_.Link, [&] {
    WriteFile(*path);
    return true;
  });
  if (!written) {
    services_.Asker.MsgBox(GetText(TextId::FileNotSaved), kFailed, title);
    return false;
  }
  TakeFileBaseline();
  return true;
}

void SetupFiles::LoadSetupFile() {
  if (screen_.OfferSaveIfChanged()) return;
  const std::optional<QString> path = services_.Dialogs.AskOpen(Request(TextId::LoadSetupFile));
  if (!path) return;
  Remember(*path);
  const bool read = Trapped(services_.Link, [&] {
    ReadFile(*path);
    return true;
  });
  if (!read) {
    services_.Asker.MsgBox(GetText(TextId::FileNotLoaded), kFailed, GetText(TextId::LoadSetupFile));
    return;
  }
  TakeFileBaseline();
  screen_.SettingsToControls();
}

void SetupFiles::OpenRecentFile(std::size_t entry) {
  const QString path = services_.Recent.RecentSetupFiles.at(entry);
  if (path.isEmpty() || !QFileInfo::exists(path)) return;
  if (const std::optional<FolderAndName> parts = SplitPath(path)) {
    services_.Recent.SetupFolder = parts->Folder;
    currentSetupFileName_ = parts->Name;
  }
  LoadSetupFile();
}

void SetupFiles::WriteFile(const QString& path) const {
  const QDateTime now = services_.Time.Now();
  const SetupFileHead head{ProgramName(), ProgramVersion(), services_.Locale.ShortDate(now.date()),
                           services_.Locale.ShortTime(now.time())};
  WriteWholeFile(path, WriteSetupFile(head, services_.Link, services_.Settings));
}

void SetupFiles::ReadFile(const QString& path) {
  const QByteArray bytes = ReadWholeFile(path, kLargestFile);
  // Only now, so that a file that cannot be read changes nothing.
  LoadDefaultSettings(services_.Settings, services_.Link.AnalogChannelCount);
  ReadSetupFile(bytes, services_.Locale.Locale(), services_.Settings);
}

void SetupFiles::TakeFileBaseline() {
  PackConfigImage(services_.Link, services_.Settings, services_.FileBaseline);
}

}  // namespace tessmar
