#include "app/HelpTarget.h"

#include <QFileInfo>
#include <QStringList>

#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

QString PathIfThere(const QString& path) {
  return QFileInfo(path).isFile() ? path : QString();
}

QString InstalledViewer(const ProgramFinder& findProgram) {
  for (const QString& viewer : {u"xchm"_s, u"kchmviewer"_s, u"uchmviewer"_s}) {
    QString path = findProgram(viewer);
    if (!path.isEmpty()) return path;
  }
  return {};
}

/// The HTML page of a help file; empty when no pages are installed.
QString HtmlPage(const QString& appPath, const QString& helpFile, std::int16_t language) {
  QStringList languages{u"en"_s};
  if (language == kLanguageGerman) languages.prepend(u"de"_s);
  const QStringList names{QFileInfo(helpFile).completeBaseName() + u".html"_s, u"index.html"_s};
  for (const QString& folder : languages) {
    for (const QString& name : names) {
      QString page = PathIfThere(u"%1/help/%2/%3"_s.arg(appPath, folder, name));
      if (!page.isEmpty()) return page;
    }
  }
  return {};
}

}  // namespace

HelpFiles FindHelpFiles(const QString& appPath) {
  return {.Logger = PathIfThere(appPath + u"/TessmarLoggerII.chm"_s),
          .DissolvedOxygen = PathIfThere(appPath + u"/TessmarDOHelp.chm"_s)};
}

HelpTarget FindHelpTarget(const QString& appPath, const QString& helpFile, std::int16_t language,
                          const ProgramFinder& findProgram) {
  if (PathIfThere(helpFile).isEmpty()) return {};
  const QString page = HtmlPage(appPath, helpFile, language);
  return {.Viewer = InstalledViewer(findProgram),
          .File = helpFile,
          .Page = QUrl::fromLocalFile(page.isEmpty() ? helpFile : page)};
}

}  // namespace tessmar
