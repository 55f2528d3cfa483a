#include "archive/NetCdf.h"

#include <netcdf.h>
#include <netcdf_mem.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <string>

#include "archive/UdUnits.h"
#include "base/Fault.h"

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

void Check(int status) {
  if (status != NC_NOERR) throw FileFault(std::string("NetCDF: ") + nc_strerror(status));
}

/// A file in the making; one that is not finished is thrown away.
class MemoryFile {
 public:
  MemoryFile() { Check(nc_create_mem("export.nc", NC_NETCDF4, kFirstSize, &id_)); }
  ~MemoryFile() {
    if (open_) nc_abort(id_);
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  int Id() const { return id_; }

  QByteArray Finish() {
    NC_memio memory{};
    open_ = false;
    Check(nc_close_memio(id_, &memory));
    QByteArray bytes(static_cast<const char*>(memory.memory), static_cast<qsizetype>(memory.size));
    std::free(memory.memory);
    return bytes;
  }

 private:
  int id_ = -1;
  bool open_ = true;
};

void PutText(int file, int variable, const char* name, const QString& text) {
  if (text.isEmpty()) return;
  const QByteArray utf8 = text.toUtf8();
  Check(nc_put_att_text(file, variable, name, static_cast<std::size_t>(utf8.size()), utf8.data()));
}

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

int DefineCoordinate(int file, int station, const char* name, const char* units) {
  int id = 0;
  Check(nc_def_var(file, name, NC_DOUBLE, 1, &station, &id));
  Check(nc_def_var_fill(file, id, NC_FILL, &kFill));
  PutText(file, id, "standard_name", name == "lat"_L1 ? u"latitude"_s : u"longitude"_s);
  PutText(file, id, "units", QString::fromLatin1(units));
  PutText(file, id, "comment", u"the logger does not know where it stands"_s);
  return id;
}

/// A variable over the records. Not compressed: that takes several times as long as the whole rest,
/// and who wants it has nccopy.
int DefineSeries(int file, const Layout& layout, const char* name, nc_type type) {
  int id = 0;
  Check(nc_def_var(file, name, type, 1, &layout.Obs, &id));
  Check(nc_def_var_chunking(file, id, NC_CHUNKED, &kTogether));
  return id;
}

void DefineTimes(int file, Layout& layout) {
  layout.Time = DefineSeries(file, layout, "time", NC_DOUBLE);
  PutText(file, layout.Time, "standard_name", u"time"_s);
  PutText(file, layout.Time, "long_name", u"time by the logger's clock"_s);
  PutText(file, layout.Time, "units", QString::fromLatin1(kLoggerEpoch));
  PutText(file, layout.Time, "calendar", u"standard"_s);
  PutText(file, layout.Time, "comment",
          u"as the clock of the logger gave it, in no known time zone, in the logger's order"_s);
  layout.TimeCorrected = DefineSeries(file, layout, "time_corrected", NC_DOUBLE);
  Check(nc_def_var_fill(file, layout.TimeCorrected, NC_FILL, &kFill));
  PutText(file, layout.TimeCorrected, "long_name", u"time corrected by the clock's offsets, UTC"_s);
  PutText(file, layout.TimeCorrected, "units", QString::fromLatin1(kUtcEpoch));
  PutText(file, layout.TimeCorrected, "calendar", u"standard"_s);
}

void DefineChannel(int file, Layout& layout, const ExportColumn& column) {
  const int id = DefineSeries(file, layout, column.Place.toLatin1().constData(), NC_DOUBLE);
  Check(nc_def_var_fill(file, id, NC_FILL, &kFill));
  PutText(file, id, "long_name", ExportHeading(column));
  PutText(file, id, "units", UdUnitsSpelling(column.Unit));
  PutText(file, id, "comment", column.Method);
  PutText(file, id, "coordinates", u"time time_corrected lat lon station_name"_s);
  const int decimals = column.Decimals;
  Check(nc_put_att_int(file, id, "decimals", NC_INT, 1, &decimals));
  layout.Channels.push_back(id);
}

void PutGlobals(int file, const ExportHead& head) {
  PutText(file, NC_GLOBAL, "Conventions", u"CF-1.8"_s);
  PutText(file, NC_GLOBAL, "featureType", u"timeSeries"_s);
  PutText(file, NC_GLOBAL, "title", u"Records of the logger %1"_s.arg(head.LoggerName));
  PutText(file, NC_GLOBAL, "source", head.Source);
  PutText(file, NC_GLOBAL, "history", u"%1 written by %2"_s.arg(head.Saved, head.Program));
  PutText(file, NC_GLOBAL, "logger_model", head.LoggerModel);
  PutText(file, NC_GLOBAL, "logger_firmware", head.Firmware);
  PutText(file, NC_GLOBAL, "logger_uuid", head.LoggerUuid);
}

Layout Define(int file, const ExportHead& head, std::size_t nameLength) {
  Layout layout;
  PutGlobals(file, head);
  Check(nc_def_dim(file, "station", 1, &layout.Station));
  Check(nc_def_dim(file, "obs", NC_UNLIMITED, &layout.Obs));
  Check(nc_def_dim(file, "name_length", nameLength, &layout.NameLength));

  const std::array name{layout.Station, layout.NameLength};
  Check(nc_def_var(file, "station_name", NC_CHAR, 2, name.data(), &layout.StationName));
  PutText(file, layout.StationName, "cf_role", u"timeseries_id"_s);
  PutText(file, layout.StationName, "long_name", u"name of the logger"_s);
  DefineCoordinate(file, layout.Station, "lat", "degrees_north");
  DefineCoordinate(file, layout.Station, "lon", "degrees_east");
  Check(nc_def_var(file, "row_size", NC_INT64, 1, &layout.Station, &layout.RowSize));
  PutText(file, layout.RowSize, "long_name", u"number of records"_s);
  PutText(file, layout.RowSize, "sample_dimension", u"obs"_s);

  DefineTimes(file, layout);
  for (const ExportColumn& column : head.Columns) DefineChannel(file, layout, column);
  layout.Disagreement = DefineSeries(file, layout, "disagreement", NC_BYTE);
  PutText(file, layout.Disagreement, "long_name", u"two uploads disagree here"_s);
  const std::array<signed char, 2> flags{0, 1};
  Check(nc_put_att_schar(file, layout.Disagreement, "flag_values", NC_BYTE, 2, flags.data()));
  PutText(file, layout.Disagreement, "flag_meanings", u"agreement disagreement"_s);
  Check(nc_enddef(file));
  return layout;
}

/// The rows of one chunk, by column.
class Piece {
 public:
  explicit Piece(std::size_t channels) : values_(channels) {}

  std::size_t Size() const { return times_.size(); }

  void Add(const ExportRow& row) {
    times_.push_back(static_cast<double>(row.LoggerSeconds));
    corrected_.push_back(row.CorrectedMs ? static_cast<double>(*row.CorrectedMs) / 1000 : kFill);
    disagrees_.push_back(row.Disagrees ? 1 : 0);
    for (std::size_t i = 0; i < values_.size(); ++i)
      values_[i].push_back(std::isfinite(row.Values[i]) ? row.Values[i] : kFill);
  }

  /// Writes the rows behind the first ones, and forgets them.
  void WriteTo(int file, const Layout& layout, std::size_t first) {
    const std::size_t count = Size();
    if (count == 0) return;
    Check(nc_put_vara_double(file, layout.Time, &first, &count, times_.data()));
    Check(nc_put_vara_double(file, layout.TimeCorrected, &first, &count, corrected_.data()));
    Check(nc_put_vara_schar(file, layout.Disagreement, &first, &count, disagrees_.data()));
    for (std::size_t i = 0; i < values_.size(); ++i) {
      Check(nc_put_vara_double(file, layout.Channels[i], &first, &count, values_[i].data()));
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

std::optional<QByteArray> MakeNetCdf(const ExportHead& head, const ExportRows& rows,
                                     const ExportProgress& progress) {
  QByteArray name = head.LoggerName.toUtf8();
  if (name.isEmpty()) name = "logger";
  MemoryFile file;
  const Layout layout = Define(file.Id(), head, static_cast<std::size_t>(name.size()));
  const std::array<std::size_t, 2> from{0, 0};
  const std::array<std::size_t, 2> length{1, static_cast<std::size_t>(name.size())};
  Check(nc_put_vara_text(file.Id(), layout.StationName, from.data(), length.data(), name.data()));

  Piece piece(head.Columns.size());
  ExportRow row;
  std::int64_t count = 0;
  std::size_t written = 0;
  while (rows(row)) {
    piece.Add(row);
    if (piece.Size() == kChunk) {
      piece.WriteTo(file.Id(), layout, written);
      written += kChunk;
    }
    if (++count % kExportPiece == 0 && !progress(count)) return std::nullopt;
  }
  piece.WriteTo(file.Id(), layout, written);
  const std::size_t station = 0;
  const long long size = count;
  Check(nc_put_var1_longlong(file.Id(), layout.RowSize, &station, &size));
  return file.Finish();
}

}  // namespace tessmar
