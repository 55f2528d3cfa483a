#include "archive/AnalysisCsv.h"

#include <QByteArray>
#include <QIODevice>
#include <QStringList>
#include <algorithm>
#include <array>
#include <cmath>

#include "base/Fault.h"
#include "measure/Scaling.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr qsizetype kPiece = 262144;

void Send(QIODevice& device, QByteArray& piece) {
  if (device.write(piece) != piece.size()) throw FileFault("the file does not take everything");
  piece.resize(0);
}

QString Quoted(QString text) {
  const bool plain = std::none_of(text.cbegin(), text.cend(), [](QChar c) {
    return c == u',' || c == u'"' || c == u'\n' || c == u'\r';
  });
  if (plain) return text;
  return u'"' + text.replace(u'"', u"\"\""_s) + u'"';
}

/// The headings of the channels, none of them twice.
QStringList Headings(const std::vector<ExportColumn>& columns) {
  QStringList plain;
  for (const ExportColumn& column : columns) plain.append(ExportHeading(column));
  QStringList headings;
  for (qsizetype i = 0; i < plain.size(); ++i) {
    const QString& place = columns[static_cast<std::size_t>(i)].Place;
    headings.append(plain.count(plain[i]) == 1 ? plain[i] : u"%1 %2"_s.arg(plain[i], place));
  }
  return headings;
}

/// Makes the text of the logger's times: the day's once a day.
class TimeTexts {
 public:
  void Append(QByteArray& piece, std::int64_t seconds) {
    constexpr std::int64_t kDay = 86400;
    const std::int64_t inDay = ((seconds % kDay) + kDay) % kDay;
    const std::int64_t day = (seconds - inDay) / kDay;
    if (date_.isEmpty() || day != day_) {
      day_ = day;
      date_ = IsoLoggerTime(day * kDay).left(11).toLatin1();
    }
    piece.append(date_);
    const auto two = [&](std::int64_t value) {
      piece.append(static_cast<char>('0' + value / 10));
      piece.append(static_cast<char>('0' + value % 10));
    };
    two(inDay / 3600);
    piece.append(':');
    two(inDay / 60 % 60);
    piece.append(':');
    two(inDay % 60);
  }

 private:
  std::int64_t day_ = 0;
  QByteArray date_;  ///< "2026-03-29T"
};

void AppendRow(QByteArray& piece, const ExportRow& row, const std::vector<ExportColumn>& columns,
               TimeTexts& times) {
  if (row.LoggerSeconds) times.Append(piece, *row.LoggerSeconds);
  piece.append(',');
  if (row.CorrectedMs) piece.append(IsoUtcTime(*row.CorrectedMs).toLatin1());
  std::array<char, kFormattedValueSize> text;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    piece.append(',');
    if (!std::isfinite(row.Values[i])) continue;
    piece.append(text.data(), FormatValueTo(text.data(), row.Values[i], columns[i].Decimals));
  }
  piece.append(row.Disagrees ? ",1\r\n" : ",0\r\n");
}

}  // namespace

std::optional<std::int64_t> WriteAnalysisCsv(QIODevice& device, const ExportHead& head,
                                             const ExportRows& rows,
                                             const ExportProgress& progress) {
  QByteArray piece;
  piece.reserve(kPiece + 4096);
  QStringList headings{u"logger_time"_s, u"corrected_time"_s};
  headings.append(Headings(head.Columns));
  headings.append(u"disagreement"_s);
  for (QString& heading : headings) heading = Quoted(heading);
  piece.append(headings.join(u',').toUtf8()).append("\r\n");

  TimeTexts times;
  ExportRow row;
  row.Values.resize(head.Columns.size());
  std::int64_t count = 0;
  while (rows(row)) {
    AppendRow(piece, row, head.Columns, times);
    if (piece.size() >= kPiece) Send(device, piece);
    if (++count % kExportPiece == 0 && !progress(count)) return std::nullopt;
  }
  Send(device, piece);
  return count;
}

}  // namespace tessmar
