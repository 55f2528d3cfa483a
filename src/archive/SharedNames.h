#pragma once

#include <span>
#include <vector>

#include "archive/Server.h"
#include "archive/Store.h"

namespace tessmar {

/// Brings loggers to a server, by their uuids. A name that somebody gave a logger by hand comes
/// with the time of that, and the latest one stands; times of first and last contact grow only.
/// A logger that the server knows as it is here is not touched.
void PushLoggers(const Server& server, const std::vector<LoggerRow>& loggers,
                 const std::vector<EventRow>& events);

/// Brings the logbook's entries that the server does not have.
/// @param events  some thousand at most.
/// @param loggers  all that the events may refer to.
/// @return how many it did not have.
int PushEvents(const Server& server, const std::vector<LoggerRow>& loggers,
               std::span<const EventRow> events);

/// Lets uploads and entries on the server belong to the loggers that all the mergings and
/// splittings there say, the latest last, from whichever computers they came, and whenever. Changes
/// nothing where that is so already.
void SettleLoggers(const Server& server);

}  // namespace tessmar
