#include "app/Help.h"

#include <QDesktopServices>
#include <QProcess>
#include <QStandardPaths>
#include <utility>

#include "base/TextTable.h"

namespace tessmar {

void OpenHelpOnDesktop(const HelpTarget& target) {
  const bool viewed =
      !target.Viewer.isEmpty() && QProcess::startDetached(target.Viewer, {target.File});
  if (!viewed) QDesktopServices::openUrl(target.Page);
}

Help::Help(QString appPath, Opener open) : appPath_(std::move(appPath)), open_(std::move(open)) {}

void Help::Open(const QString& helpFile) const {
  const auto findProgram = [](const QString& program) {
    return QStandardPaths::findExecutable(program);
  };
  const HelpTarget target = FindHelpTarget(appPath_, helpFile, TextLanguage(), findProgram);
  if (!target.File.isEmpty()) open_(target);
}

}  // namespace tessmar
