#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <optional>

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

/// Settings of a logger that the logbook knows of.
struct KnownSettings {
  QByteArray Image = {};                   ///< The configuration image, 315 bytes.
  EventKind From = EventKind::Programmed;  ///< Programmed, Connected or Uploaded.
  QDateTime At = {};                       ///< UTC.
};

/// Keeps what happens to a logger: who does something tells it here once it is done. Must be quick,
/// and a logbook that cannot write says nothing: no operation fails for it.
class Logbook {
 public:
  virtual ~Logbook() = default;

  /// Notes an entry with the present time and the logger that is connected now, by its name and
  /// model. The settings are those after the change: what renames a logger is the new name's entry.
  virtual void Note(const LogbookEntry& entry) = 0;

  /// The settings that the connected logger, by its name and model, was left with the last time.
  /// Nothing where nobody knows: a logger never seen, one initialised since, a logbook that cannot
  /// be read now.
  virtual std::optional<KnownSettings> LastSettings() { return std::nullopt; }
};

/// Keeps nothing.
class NoLogbook final : public Logbook {
 public:
  void Note(const LogbookEntry& /*entry*/) override {}
};

}  // namespace tessmar
