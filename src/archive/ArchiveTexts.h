#pragma once

#include <QString>
#include <cstdint>

#include "archive/ArchiveFault.h"

namespace tessmar {

/// Why the archive cannot be had, as a sentence in the language of the texts.
QString TroubleText(ArchiveTrouble trouble);

/// What the operator is told when records of an upload are not in the archive at its end.
QString NotKeptText(std::int32_t notKept, std::int32_t records, ArchiveTrouble trouble,
                    const QString& path);

/// What the operator is told when samples of a live run are not in the archive some time after its
/// end. @param lost  they never will be, as the program ends.
QString LiveNotKeptText(std::int32_t notKept, std::int32_t samples, ArchiveTrouble trouble,
                        const QString& path, bool lost);

/// What the operator is told when a damaged archive was moved to another name.
QString MovedAsideText(const QString& aside);

}  // namespace tessmar
