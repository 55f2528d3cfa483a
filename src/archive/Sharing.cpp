#include "archive/Sharing.h"

#include <QHash>
#include <QUuid>
#include <algorithm>
#include <span>

#include "archive/PushUpload.h"
#include "archive/ServerRows.h"
#include "archive/SharedNames.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr std::size_t kRowsAtOnce = 2000;

/// What the server knows of an upload.
struct KnownState {
  QDateTime Ended;
  int Records = 0;
};

// uuids of the server are written with small letters.
QHash<QString, KnownState> KnownUploads(const Server& server,
                                        const std::vector<UploadRow>& uploads) {
  QHash<QString, KnownState> known;
  for (std::size_t begin = 0; begin < uploads.size(); begin += kRowsAtOnce) {
    ServerArray uuids;
    for (std::size_t i = begin; i < std::min(begin + kRowsAtOnce, uploads.size()); ++i)
      uuids.AddText(uploads[i].Uuid);
    QSqlQuery query = server.Run(
        u"SELECT uuid, to_char(ended AT TIME ZONE 'UTC', 'YYYY-MM-DD\"T\"HH24:MI:SS\"Z\"'), records"
        " FROM tessmar.upload WHERE uuid = ANY (?::uuid[])"_s,
        {uuids.Text()});
    while (query.next()) {
      known[query.value(0).toString()] = {UtcTime(query.value(1).toString()),
                                          query.value(2).toInt()};
    }
  }
  return known;
}

// An end that somebody saw is later than one that nobody did.
bool StateIsLater(const UploadRow& upload, const KnownState& known) {
  if (upload.Ended.isValid() != known.Ended.isValid()) return upload.Ended.isValid();
  if (upload.Ended.isValid() && upload.Ended != known.Ended) return upload.Ended > known.Ended;
  return upload.Records > known.Records;
}

/// One push, from its beginning to its end.
class Pushing {
 public:
  Pushing(const Store& store, const Server& server, const PushWatcher& watcher, PushResult& result)
      : store_(store), server_(server), watcher_(watcher), result_(result) {}

  void Run() {
    // In this order everything that a row refers to is there when it is read.
    const std::vector<EventRow> events = store_.Events();
    const std::vector<UploadRow> uploads = EndedUploads();
    const std::vector<LoggerRow> loggers = store_.Loggers();
    for (const LoggerRow& logger : loggers) uuids_[logger.Id] = logger.Uuid;
    Repeatedly([&] { PushLoggers(server_, loggers, events); });
    PushUploads(uploads);
    const std::span all(events);
    for (std::size_t begin = 0; begin < all.size(); begin += kRowsAtOnce) {
      Check();
      const auto piece = all.subspan(begin, std::min(kRowsAtOnce, all.size() - begin));
      result_.Events += Repeatedly([&] { return PushEvents(server_, loggers, piece); });
    }
    Repeatedly([&] { SettleLoggers(server_); });
  }

 private:
  // The oldest first: what is broken off leaves no hole behind.
  std::vector<UploadRow> EndedUploads() {
    std::vector<UploadRow> uploads = store_.Uploads();
    result_.Running = static_cast<int>(std::erase_if(
        uploads, [](const UploadRow& upload) { return upload.State == UploadState::Running; }));
    std::ranges::reverse(uploads);
    return uploads;
  }

  void PushUploads(const std::vector<UploadRow>& uploads) {
    const QHash<QString, KnownState> known = KnownUploads(server_, uploads);
    struct Task {
      const UploadRow* Upload;
      bool IsChanged;
    };
    std::vector<Task> tasks;
    for (const UploadRow& upload : uploads) {
      const auto there = known.constFind(QUuid(upload.Uuid).toString(QUuid::WithoutBraces));
      const bool isThere = there != known.constEnd();
      if (isThere && !StateIsLater(upload, *there)) {
        ++result_.Skipped;
      } else {
        tasks.push_back({&upload, isThere});
      }
    }
    progress_.Uploads = static_cast<int>(tasks.size());
    for (const Task& task : tasks) PushOne(*task.Upload, task.IsChanged);
  }

  void PushOne(const UploadRow& upload, bool isChanged) {
    ++progress_.Upload;
    const qint64 before = progress_.Records;
    const bool isNew = Repeatedly([&] {
      progress_.Records = before;
      Check();
      const PieceSent sent = [this](int records) {
        progress_.Records += records;
        Check();
      };
      return isChanged
                 ? PushChangedUpload(store_, server_, upload.Id, sent)
                 : PushUpload(store_, server_, upload.Id, uuids_.value(upload.LoggerId), sent);
    });
    if (isNew) {
      ++result_.Uploads;
      result_.Records += progress_.Records - before;
    } else {
      ++result_.Skipped;
    }
  }

  void Check() {
    if (watcher_.Changed) watcher_.Changed(progress_);
    if (watcher_.GoOn && !watcher_.GoOn()) throw PushBrokenOff();
  }

  const Store& store_;
  const Server& server_;
  const PushWatcher& watcher_;
  PushResult& result_;
  PushProgress progress_;
  QHash<qint64, QString> uuids_;
};

}  // namespace

void PushArchive(const Store& store, const Server& server, const PushWatcher& watcher,
                 PushResult& result) {
  result = {};
  try {
    Pushing(store, server, watcher, result).Run();
  } catch (const PushBrokenOff&) {
    result.BrokenOff = true;
  }
}

}  // namespace tessmar
