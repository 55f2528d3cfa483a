#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <optional>

#include "base/TextTable.h"
#include "link/LinkState.h"
#include "link/cmd.h"

namespace tessmar {

/// The wizard that takes the two calibration points of one analog channel: pages, texts kept and
/// the live reading. It computes nothing and has no window.
class Calibration {
 public:
  /// The pages, in their order; the high point comes first.
  enum class Page : std::int16_t { HighValue = 1, HighReading = 2, LowValue = 3, LowReading = 4 };

  /// The two points: engineering values and raw counts, as texts.
  struct Texts {
    QString HighEU;
    QString HighRaw = QStringLiteral("65535");
    QString LowEU;
    QString LowRaw = QStringLiteral("0");
    bool operator==(const Texts&) const = default;
  };

  /// What a page shows.
  struct PageView {
    TextId Label;
    TextId NextCaption;
    bool BackEnabled;
    bool LiveReading;      ///< A raw page: the timer runs.
    QString Texts::*Text;  ///< What the field starts with and is kept in.
  };

  /// @param channel  analog channel, 0 first.
  /// @param highEU, lowEU  the texts of the channel's column; the raw counts start at the ends of
  ///   the range and not at the channel's present values.
  Calibration(LoggerCommands& commands, LinkState& link, std::int16_t channel, QString highEU,
              QString lowEU);

  /// The dialog's title, such as "Calibrate Channel 2 (Feet)".
  static QString Title(int channel, const QString& units);

  Page CalibrationStep() const { return page_; }
  const PageView& View() const;
  /// What the page's field starts with.
  QString StartText() const { return texts_.*View().Text; }

  /// Keeps the text of the page and goes on. @return true when the last page was finished.
  bool Next(const QString& text);
  /// Goes to the page before; the text of the page is not kept.
  void Back();

  /// The texts kept so far.
  const Texts& Kept() const { return texts_; }

  /// One tick of the live reading, four of which make a cycle: one starts a measurement, three ask
  /// for its sample. Waits for the logger, and so runs the message loop; a tick that comes while
  /// another one still waits does nothing.
  /// @return the raw count of the channel; nothing when there is none, the link failed, or the page
  ///   was left while the tick waited.
  std::optional<std::int32_t> Tick();

  std::int16_t MeasurementPhase() const { return measurementPhase_; }

 private:
  void Show(Page page);
  std::optional<std::int32_t> ReadSample();

  LoggerCommands& commands_;
  LinkState& link_;
  std::int16_t channel_;
  Texts texts_;
  Page page_ = Page::HighValue;
  std::int16_t measurementPhase_ = 0;
  bool ticking_ = false;
  int visit_ = 0;  ///< Counts pages shown, so that a reading knows whether its page is still there.
};

}  // namespace tessmar
