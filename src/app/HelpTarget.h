#pragma once

#include <QString>
#include <QUrl>
#include <cstdint>
#include <functional>

namespace tessmar {

/// The compiled help files beside the program; empty for one that is not there.
struct HelpFiles {
  QString Logger;           ///< Full path of TessmarLoggerII.chm.
  QString DissolvedOxygen;  ///< Full path of TessmarDOHelp.chm.
};

/// @param appPath  the program's folder, without a trailing separator.
HelpFiles FindHelpFiles(const QString& appPath);

/// How a help file is shown.
struct HelpTarget {
  QString Viewer;  ///< Full path of a viewer for compiled help; empty when the desktop has none.
  QString File;    ///< The compiled help file, for the viewer; empty when there is nothing to show.
  QUrl Page;       ///< What to open without a viewer.
  bool operator==(const HelpTarget&) const = default;
};

/// Gives the full path of an installed program, empty for one that is not there.
using ProgramFinder = std::function<QString(const QString& program)>;

/// Decides how to show a help file: in the first viewer for compiled help that is installed, or
/// else its pages as HTML. These stand in help/<language> beside the program: <file's name>.html,
/// or else index.html; English where the language has none. Without such pages the file is left to
/// the desktop.
///
/// @param language  number of the language of the texts.
/// @return an empty target for a file that is not there.
HelpTarget FindHelpTarget(const QString& appPath, const QString& helpFile, std::int16_t language,
                          const ProgramFinder& findProgram);

}  // namespace tessmar
