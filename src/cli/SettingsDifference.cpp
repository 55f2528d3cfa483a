#include "cli/SettingsDifference.h"

#include <QStringList>
#include <algorithm>

#include "settings/SetupFile.h"
#include "settings/config.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// What a logger would give back of these settings.
LoggerSettings AsStored(const LinkState& link, const LoggerSettings& settings) {
  ConfigImage image;
  LoggerSettings stored;
  if (!PackConfigImage(link, settings, image)) return settings;
  UnpackConfigImage(link, image, stored);
  return stored;
}

/// A line of a setup file and where it stands.
struct Line {
  QString Section;  ///< "Analog Channel"; empty ahead of the first section.
  int Channel = 0;
  QString Key;
  QString Value;
};

std::vector<Line> LinesOf(const LinkState& link, const LoggerSettings& settings) {
  const QString text = QString::fromLatin1(WriteSetupFile({}, link, settings));
  std::vector<Line> lines;
  Line line;
  for (const QString& row : text.split(u"\r\n"_s, Qt::SkipEmptyParts)) {
    if (row.startsWith(u'[')) {
      line.Section = row.mid(1, row.size() - 2);
      line.Channel = 0;
      continue;
    }
    const qsizetype equals = row.indexOf(u'=');
    line.Key = row.left(equals);
    line.Value = row.mid(equals + 1);
    if (line.Key == "Channel"_L1) {
      line.Channel = line.Value.toInt() + 1;
      continue;
    }
    lines.push_back(line);
  }
  return lines;
}

bool IsThere(const LinkState& link, const Line& line) {
  if (line.Section == "Analog Channel"_L1) return line.Channel <= link.AnalogChannelCount;
  if (line.Section == "Digital Channel"_L1) return line.Channel <= link.PulseChannelCount;
  return true;
}

QString FieldOf(const Line& line) {
  QString field = line.Section;
  if (line.Channel > 0) field += u' ' + QString::number(line.Channel);
  return (field + u' ' + line.Key).trimmed();
}

}  // namespace

std::vector<SettingsDifference> CompareSettings(const LinkState& link, const LoggerSettings& before,
                                                const LoggerSettings& after, bool withDerived) {
  const std::vector<Line> old = LinesOf(link, AsStored(link, before));
  const std::vector<Line> now = LinesOf(link, AsStored(link, after));
  std::vector<SettingsDifference> differences;
  for (std::size_t i = 0; i < std::min(old.size(), now.size()); ++i) {
    if (old[i].Value == now[i].Value || !IsThere(link, old[i])) continue;
    if (!withDerived && old[i].Section == "DO"_L1) continue;
    differences.push_back({FieldOf(old[i]), old[i].Value, now[i].Value});
  }
  return differences;
}

}  // namespace tessmar
