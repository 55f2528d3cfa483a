#pragma once

#include <QByteArray>
#include <QString>

namespace tessmar {

/// What the logbook knows to tell apart. The names are those of the archive's `event.kind`.
enum class EventKind {
  Connected,
  Synced,
  Cleared,
  Programmed,
  Initialized,
  Calibrated,
  Reset,
  Uploaded,
  Renamed,
  Merged,
  Split,
};

/// One thing that happened to the logger of the present connection.
struct LogbookEntry {
  EventKind Kind = EventKind::Connected;
  QString Text = {};  ///< For people, in English; may be empty.
  /// The configuration images for Programmed and Calibrated, otherwise JSON text or empty.
  QByteArray Before = {};
  QByteArray After = {};
};

/// Keeps what happens to a logger: who does something tells it here once it is done. Must be quick,
/// and a logbook that cannot write says nothing: no operation fails for it.
class Logbook {
 public:
  virtual ~Logbook() = default;

  /// Notes an entry with the present time and the logger that is connected now, by its name and
  /// model. The settings are those after the change: what renames a logger is the new name's entry.
  virtual void Note(const LogbookEntry& entry) = 0;
};

/// Keeps nothing.
class NoLogbook final : public Logbook {
 public:
  void Note(const LogbookEntry& /*entry*/) override {}
};

}  // namespace tessmar
