#pragma once

#include <utility>
#include <vector>

#include "archive/ExportTable.h"

namespace tessmar::test {

/// Gives the rows of a list, one after the other.
inline ExportRows Rows(std::vector<ExportRow> rows) {
  return [rows = std::move(rows), next = std::size_t{0}](ExportRow& row) mutable {
    if (next == rows.size()) return false;
    row = rows[next++];
    return true;
  };
}

inline ExportProgress NeverMind() {
  return [](std::int64_t) { return true; };
}

/// A pond's logger with oxygen in mg/L, turbidity without a known unit, and rain.
inline ExportHead PondHead() {
  return {
      .LoggerName = QStringLiteral("Weiher \u00C4"),
      .LoggerModel = QStringLiteral("220"),
      .LoggerUuid = QStringLiteral("0b1c"),
      .Firmware = QStringLiteral("52"),
      .Source = QStringLiteral("1 upload"),
      .Program = QStringLiteral("Tessmar Logger 2.1.9"),
      .Saved = QStringLiteral("2026-11-21T10:00:00Z"),
      .Columns = {{QStringLiteral("a1"), QStringLiteral("Oxygen, dissolved"),
                   QStringLiteral("mg/L"), 2, QStringLiteral("from saturation")},
                  {QStringLiteral("a3"), {}, QStringLiteral("NTU"), 0, {}},
                  {QStringLiteral("p1"), QStringLiteral("Rain"), QStringLiteral("Pulses"), 0, {}}}};
}

/// Three records: plain; without a value, a second later; marked, after the clock was set back.
inline std::vector<ExportRow> PondRows() {
  // 1774749599 is 2026-03-29 01:59:59.
  return {{.LoggerSeconds = 1774749599, .CorrectedMs = 1774749612250, .Values = {8.5, 120, 3}},
          {.LoggerSeconds = 1774749600, .Values = {kNoExportValue, 0, 0}},
          {.LoggerSeconds = 1774746000, .Disagrees = true, .Values = {-0.25, 65535, 1}}};
}

/// So many records without any value.
inline std::vector<ExportRow> EmptyRows(std::size_t count) {
  return std::vector<ExportRow>(count, ExportRow{.Values = std::vector<double>(3, kNoExportValue)});
}

}  // namespace tessmar::test
