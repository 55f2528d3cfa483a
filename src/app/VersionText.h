#pragma once

#include <QString>

#include "ProgramVersion.h"

namespace tessmar {

/// The program's version as people see it: major, minor and revision, joined by points.
inline QString ProgramVersionText() {
  return QStringLiteral("%1.%2.%3").arg(kVersionMajor).arg(kVersionMinor).arg(kVersionRevision);
}

}  // namespace tessmar
