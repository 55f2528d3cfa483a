#include "archive/NetCdf.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "archive/NetCdfLibrary.h"
#include "archive/UdUnits.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// So many records are handed to the library at once.
constexpr std::size_t kChunk = 65536;
/// So many values of a channel lie together in the file.
constexpr std::size_t kTogether = 2048;
constexpr std::size_t kFirstSize = 1048576;
constexpr double kFill = NC_FILL_DOUBLE;
constexpr const char* kLoggerEpoch = "seconds since 1970-01-01 00:00:00";
constexpr const char* kUtcEpoch = "seconds since 1970-01-01T00:00:00Z";

/// The places of a file's dimensions and variables.
struct Layout {
  int Station = 0;
  int Obs = 0;
  int NameLength = 0;
  int StationName = 0;
  int RowSize = 0;
  int Time = 0;
  int TimeCorrected = 0;
  int Disagreement = 0;
  std::vector<int> Channels;
};

/// A file in the making; one that is not finished is thrown away.
class MemoryFile {
 public:
  explicit MemoryFile(const NetCdfLibrary& nc) : nc_(nc) {
    nc_.Check(nc_.create_mem("export.nc", NC_NETCDF4, kFirstSize, &id_));
  }
  ~MemoryFile() {
    if (open_) nc_.abort(id_);
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  /// Dimensions, variables and what is said of them.
  Layout Define(const ExportHead& head, std::size_t nameLength) const;
  void PutName(const Layout& layout, const QByteArray& name) const;
  void PutCount(const Layout& layout, std::int64_t count) const;

  int Id() const { return id_; }

  NetCdfBytes Finish() {
    NC_memio memory{};
    open_ = false;
    nc_.Check(nc_.close_memio(id_, &memory));
    return {memory.memory, static_cast<qsizetype>(memory.size)};
  }

 private:
  void PutText(int variable, const char* name, const QString& text) const;
  void PutGlobals(const ExportHead& head) const;
  int DefineCoordinate(int station, const char* name, const char* units) const;
  int DefineSeries(const Layout& layout, const char* name, nc_type type) const;
  void DefineTimes(Layout& layout) const;
  void DefineChannel(Layout& layout, const ExportColumn& column) const;
  void DefineDisagreement(Layout& layout) const;

  const NetCdfLibrary& nc_;
  int id_ = -1;
  bool open_ = true;
};

void MemoryFile::PutText(int variable, const char* name, const QString& text) const {
  if (text.isEmpty()) return;
  const QByteArray utf8 = text.toUtf8();
  nc_.Check(
      nc_.put_att_text(id_, variable, name, static_cast<std::size_t>(utf8.size()), utf8.data()));
}

int MemoryFile::DefineCoordinate(int station, const char* name, const char* units) const {
  int id = 0;
  nc_.Check(nc_.def_var(id_, name, NC_DOUBLE, 1, &station, &id));
  nc_.Check(nc_.def_var_fill(id_, id, NC_FILL, &kFill));
  PutText(id, "standard_name", name == "lat"_L1 ? u"latitude"_s : u"longitude"_s);
  PutText(id, "units", QString::fromLatin1(units));
  PutText(id, "comment", u"the logger does not know where it stands"_s);
  return id;
}

/// A variable over the records. Not compressed: that takes several times as long as the whole rest,
/// and who wants it has nccopy.
int MemoryFile::DefineSeries(const Layout& layout, const char* name, nc_type type) const {
  int id = 0;
  nc_.Check(nc_.def_var(id_, name, type, 1, &layout.Obs, &id));
  nc_.Check(nc_.def_var_chunking(id_, id, NC_CHUNKED, &kTogether));
  return id;
}

void MemoryFile::DefineTimes(Layout& layout) const {
  layout.Time = DefineSeries(layout, "time", NC_DOUBLE);
  nc_.Check(nc_.def_var_fill(id_, layout.Time, NC_FILL, &kFill));
  PutText(layout.Time, "standard_name", u"time"_s);
  PutText(layout.Time, "long_name", u"time by the logger's clock"_s);
  PutText(layout.Time, "units", QString::fromLatin1(kLoggerEpoch));
  PutText(layout.Time, "calendar", u"standard"_s);
  PutText(layout.Time, "comment",
          u"as the clock of the logger gave it, in no known time zone, in the logger's order"_s);
  layout.TimeCorrected = DefineSeries(layout, "time_corrected", NC_DOUBLE);
  nc_.Check(nc_.def_var_fill(id_, layout.TimeCorrected, NC_FILL, &kFill));
  PutText(layout.TimeCorrected, "long_name", u"time corrected by the clock's offsets, UTC"_s);
  PutText(layout.TimeCorrected, "units", QString::fromLatin1(kUtcEpoch));
  PutText(layout.TimeCorrected, "calendar", u"standard"_s);
}

void MemoryFile::DefineChannel(Layout& layout, const ExportColumn& column) const {
  const int id = DefineSeries(layout, column.Place.toLatin1().constData(), NC_DOUBLE);
  nc_.Check(nc_.def_var_fill(id_, id, NC_FILL, &kFill));
  PutText(id, "long_name", ExportHeading(column));
  PutText(id, "units", UdUnitsSpelling(column.Unit));
  PutText(id, "comment", column.Method);
  PutText(id, "coordinates", u"time time_corrected lat lon station_name"_s);
  const int decimals = column.Decimals;
  nc_.Check(nc_.put_att_int(id_, id, "decimals", NC_INT, 1, &decimals));
  layout.Channels.push_back(id);
}

void MemoryFile::DefineDisagreement(Layout& layout) const {
  layout.Disagreement = DefineSeries(layout, "disagreement", NC_BYTE);
  PutText(layout.Disagreement, "long_name", u"two uploads disagree here"_s);
  const std::array<signed char, 2> flags{0, 1};
  nc_.Check(nc_.put_att_schar(id_, layout.Disagreement, "flag_values", NC_BYTE, 2, flags.data()));
  PutText(layout.Disagreement, "flag_meanings", u"agreement disagreement"_s);
}

void MemoryFile::PutGlobals(const ExportHead& head) const {
  PutText(NC_GLOBAL, "Conventions", u"CF-1.8"_s);
  PutText(NC_GLOBAL, "featureType", u"timeSeries"_s);
  PutText(NC_GLOBAL, "title", u"Records of the logger %1"_s.arg(head.LoggerName));
  PutText(NC_GLOBAL, "source", head.Source);
  PutText(NC_GLOBAL, "history", u"%1 written by %2"_s.arg(head.Saved, head.Program));
  PutText(NC_GLOBAL, "logger_model", head.LoggerModel);
  PutText(NC_GLOBAL, "logger_firmware", head.Firmware);
  PutText(NC_GLOBAL, "logger_uuid", head.LoggerUuid);
}

Layout MemoryFile::Define(const ExportHead& head, std::size_t nameLength) const {
  Layout layout;
  PutGlobals(head);
  nc_.Check(nc_.def_dim(id_, "station", 1, &layout.Station));
  nc_.Check(nc_.def_dim(id_, "obs", NC_UNLIMITED, &layout.Obs));
  nc_.Check(nc_.def_dim(id_, "name_length", nameLength, &layout.NameLength));

  const std::array name{layout.Station, layout.NameLength};
  nc_.Check(nc_.def_var(id_, "station_name", NC_CHAR, 2, name.data(), &layout.StationName));
  PutText(layout.StationName, "cf_role", u"timeseries_id"_s);
  PutText(layout.StationName, "long_name", u"name of the logger"_s);
  DefineCoordinate(layout.Station, "lat", "degrees_north");
  DefineCoordinate(layout.Station, "lon", "degrees_east");
  nc_.Check(nc_.def_var(id_, "row_size", NC_INT64, 1, &layout.Station, &layout.RowSize));
  PutText(layout.RowSize, "long_name", u"number of records"_s);
  PutText(layout.RowSize, "sample_dimension", u"obs"_s);

  DefineTimes(layout);
  for (const ExportColumn& column : head.Columns) DefineChannel(layout, column);
  DefineDisagreement(layout);
  nc_.Check(nc_.enddef(id_));
  return layout;
}

void MemoryFile::PutName(const Layout& layout, const QByteArray& name) const {
  const std::array<std::size_t, 2> from{0, 0};
  const std::array<std::size_t, 2> length{1, static_cast<std::size_t>(name.size())};
  nc_.Check(nc_.put_vara_text(id_, layout.StationName, from.data(), length.data(), name.data()));
}

void MemoryFile::PutCount(const Layout& layout, std::int64_t count) const {
  const std::size_t station = 0;
  const long long size = count;
  nc_.Check(nc_.put_var1_longlong(id_, layout.RowSize, &station, &size));
}

/// The rows of one chunk, by column.
class Piece {
 public:
  explicit Piece(std::size_t channels) : values_(channels) {}

  std::size_t Size() const { return times_.size(); }

  void Add(const ExportRow& row) {
    times_.push_back(row.LoggerSeconds ? static_cast<double>(*row.LoggerSeconds) : kFill);
    corrected_.push_back(row.CorrectedMs ? static_cast<double>(*row.CorrectedMs) / 1000 : kFill);
    disagrees_.push_back(row.Disagrees ? 1 : 0);
    for (std::size_t i = 0; i < values_.size(); ++i)
      values_[i].push_back(std::isfinite(row.Values[i]) ? row.Values[i] : kFill);
  }

  /// Writes the rows behind the first ones, and forgets them.
  void WriteTo(const NetCdfLibrary& nc, int file, const Layout& layout, std::size_t first) {
    const std::size_t count = Size();
    if (count == 0) return;
    nc.Check(nc.put_vara_double(file, layout.Time, &first, &count, times_.data()));
    nc.Check(nc.put_vara_double(file, layout.TimeCorrected, &first, &count, corrected_.data()));
    nc.Check(nc.put_vara_schar(file, layout.Disagreement, &first, &count, disagrees_.data()));
    for (std::size_t i = 0; i < values_.size(); ++i) {
      nc.Check(nc.put_vara_double(file, layout.Channels[i], &first, &count, values_[i].data()));
      values_[i].clear();
    }
    times_.clear();
    corrected_.clear();
    disagrees_.clear();
  }

 private:
  std::vector<double> times_;
  std::vector<double> corrected_;
  std::vector<signed char> disagrees_;
  std::vector<std::vector<double>> values_;
};

}  // namespace

std::optional<NetCdfBytes> MakeNetCdf(const ExportHead& head, const ExportRows& rows,
                                      const ExportProgress& progress) {
  const NetCdfLibrary nc;
  QByteArray name = head.LoggerName.toUtf8();
  if (name.isEmpty()) name = "logger";
  MemoryFile file(nc);
  const Layout layout = file.Define(head, static_cast<std::size_t>(name.size()));
  file.PutName(layout, name);

  Piece piece(head.Columns.size());
  ExportRow row;
  row.Values.resize(head.Columns.size());
  std::int64_t count = 0;
  std::size_t written = 0;
  while (rows(row)) {
    piece.Add(row);
    if (piece.Size() == kChunk) {
      piece.WriteTo(nc, file.Id(), layout, written);
      written += kChunk;
    }
    if (++count % kExportPiece == 0 && !progress(count)) return std::nullopt;
  }
  piece.WriteTo(nc, file.Id(), layout, written);
  file.PutCount(layout, count);
  return file.Finish();
}

}  // namespace tessmar
