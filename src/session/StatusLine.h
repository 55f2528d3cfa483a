#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <optional>

#include "base/MainScreen.h"
#include "base/SystemLocale.h"
#include "link/LinkState.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// The line at the foot of the main window: what the operator should know before doing anything.
/// Empty without a connection. Asks the logger nothing.
class StatusLine {
 public:
  /// How many of the connected logger's records are not in the archive; nothing when nobody can
  /// tell.
  using NotArchived = std::function<std::optional<std::int32_t>()>;

  /// @param notArchived  asked once a second, and when the logger's record count changes.
  StatusLine(const LinkState& link, const LoggerSettings& settings, const SystemLocale& locale,
             MainScreen& screen, NotArchived notArchived);

  /// Brings the labels up to date; writes one only when its text changes. Called ten times a
  /// second.
  void Show();

 private:
  void AskArchive();
  QString ArchivedText() const;
  void ShowText(const QString& control, const QString& text);

  const LinkState& link_;
  const LoggerSettings& settings_;
  const SystemLocale& locale_;
  MainScreen& screen_;
  NotArchived notArchived_;
  int untilAsked_ = 0;  ///< Calls of Show until the archive is asked again.
  std::int32_t askedCount_ = -1;
  QString archivedText_;
};

}  // namespace tessmar
