#pragma once

#include <functional>

#include "archive/Server.h"
#include "archive/Store.h"

namespace tessmar {

/// Thrown by whoever is told of progress, and wants an end.
struct PushBrokenOff {};

/// Called behind each piece of an upload with the records that it had; may throw PushBrokenOff.
using PieceSent = std::function<void(int records)>;

/// Brings one upload that has ended, with all that belongs to it, in one transaction.
/// @param loggerUuid  of its logger, which the server has.
/// @return false when the server has it already: another computer was quicker.
bool PushUpload(const Store& store, const Server& server, qint64 uploadId,
                const QString& loggerUuid, const PieceSent& sent);

/// Brings what the server lacks of an upload that it has in an earlier state: one whose file was
/// taken away in the middle, say, and came back. Nothing that is there is replaced but the state.
/// @return false when the server has a later state.
bool PushChangedUpload(const Store& store, const Server& server, qint64 uploadId,
                       const PieceSent& sent);

}  // namespace tessmar
