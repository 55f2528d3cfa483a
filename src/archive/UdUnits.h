#pragma once

#include <QString>

namespace tessmar {

/// The spelling that UDUNITS-2 knows for a unit of a logger, in either language of the program, or
/// an empty text for a unit that it does not know, such as NTU. Capitals and blanks do not matter.
QString UdUnitsSpelling(const QString& unit);

}  // namespace tessmar
