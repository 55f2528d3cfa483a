// What a server can do to a push.

#include <thread>

#include "archive/SharingRig.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class SharingTrouble : public SharingRig {
 protected:
  struct Failed {
    ServerTrouble Trouble = ServerTrouble::Refused;
    PushResult Result;
  };
  Failed Fail(int laptop, const PushWatcher& watcher = {}) {
    Server server(ParseServerAddress(u"postgresql://"_s));
    server.Open();
    EnsureServerSchema(server, u"test"_s);
    Failed failed;
    try {
      PushArchive(Laptop(laptop), server, watcher, failed.Result);
      ADD_FAILURE() << "nothing went wrong";
    } catch (const ServerFault& fault) {
      failed.Trouble = fault.Trouble();
    }
    return failed;
  }
  // Lets a statement raise this state the first so many times that rows go into the table.
  void Raise(const QString& table, const QString& state, int times) {
    Admin->Run(u"DROP SEQUENCE IF EXISTS public.raised"_s);
    Admin->Run(u"CREATE SEQUENCE public.raised"_s);
    Admin->Run(
        u"CREATE OR REPLACE FUNCTION public.raise() RETURNS trigger LANGUAGE plpgsql AS $$"
        " BEGIN IF nextval('public.raised') <= %1 THEN"
        " RAISE EXCEPTION 'no more' USING ERRCODE = '%2'; END IF; RETURN NULL; END $$"_s.arg(
            QString::number(times), state));
    Admin->Run(
        u"CREATE TRIGGER raise AFTER INSERT ON tessmar.%1 FOR EACH STATEMENT"
        " EXECUTE FUNCTION public.raise()"_s.arg(table));
  }
};

TEST_F(SharingTrouble, AServerThatGoesAwayLeavesWholeUploads) {
  FillLaptop(1, u"Pond 7"_s);
  FillLaptop(1, u"Pond 8"_s);
  const Failed failed =
      Fail(1, {.GoOn = {}, .Changed = [this](const PushProgress& progress) {
                 if (progress.Upload == 2 && progress.Records > 9000)
                   Admin->Run(
                       u"SELECT pg_terminate_backend(pid) FROM pg_stat_activity"
                       " WHERE application_name = 'tessmar' AND pid <> pg_backend_pid()"_s);
               }});
  EXPECT_EQ(failed.Trouble, ServerTrouble::Lost);
  EXPECT_EQ(failed.Result.Uploads, 1);
  EXPECT_EQ(There(u"SELECT count(*) FROM tessmar.record"_s), QStringList{u"9000"_s});
  EXPECT_EQ(Push(1).Uploads, 1);
  ExpectTheSameEverywhere(1);
}

TEST_F(SharingTrouble, AFullServerLeavesWholeUploads) {
  FillLaptop(1, u"Pond 7"_s, 20);
  FillLaptop(1, u"Pond 8"_s, 20);
  Push(2);
  Raise(u"channel"_s, u"53100"_s, 1);
  const Failed failed = Fail(1);
  EXPECT_EQ(failed.Trouble, ServerTrouble::Full);
  EXPECT_EQ(failed.Result.Uploads, 0);
  EXPECT_EQ(There(u"SELECT count(*) FROM tessmar.record"_s), QStringList{u"0"_s});
  EXPECT_EQ(Push(1).Uploads, 2);
  ExpectTheSameEverywhere(1);
}

TEST_F(SharingTrouble, WhatAnotherOneWasInTheWayOfIsDoneAgain) {
  FillLaptop(1, u"Pond 7"_s);
  Push(2);
  Raise(u"channel"_s, u"40001"_s, 3);
  const PushResult result = Push(1);
  EXPECT_EQ(result.Uploads, 1);
  EXPECT_EQ(result.Records, 9000);
  ExpectTheSameEverywhere(1);
}

TEST_F(SharingTrouble, WhatIsAlwaysInTheWayEndsThePush) {
  FillLaptop(1, u"Pond 7"_s, 20);
  Push(2);
  Raise(u"channel"_s, u"40P01"_s, 1000);
  EXPECT_EQ(Fail(1).Trouble, ServerTrouble::Again);
}

TEST_F(SharingTrouble, AnUploadWithoutItsLoggerIsNotTakenForBrought) {
  FillLaptop(1, u"Pond 7"_s, 20);
  Push(2);
  Admin->Run(
      u"CREATE FUNCTION public.lose() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN"
      " DELETE FROM tessmar.logger; RETURN NULL; END $$"_s);
  Admin->Run(
      u"CREATE TRIGGER lose AFTER INSERT ON tessmar.logger FOR EACH STATEMENT"
      " EXECUTE FUNCTION public.lose()"_s);
  const Failed failed = Fail(1);
  Admin->Run(u"DROP FUNCTION public.lose CASCADE"_s);
  EXPECT_EQ(failed.Trouble, ServerTrouble::Refused);
  EXPECT_EQ(failed.Result.Skipped, 0);
}

// Several laptops with overlapping loggers, and twice the same archive, all at once.
TEST_F(SharingTrouble, ManyLaptopsAtOnceBringEverythingOnce) {
  constexpr int kLaptops = 4;
  constexpr int kUploads = 12;
  for (int laptop = 1; laptop <= kLaptops; ++laptop) {
    Transaction transaction(Laptop(laptop));
    for (int i = 0; i < kUploads; ++i) {
      const qint64 logger =
          Laptop(laptop).SeeLogger(u"Pond %1"_s.arg(i % 5), 220, 52, Hour(1 + (laptop + i) % 20));
      std::vector<int> records;
      for (int k = 0; k < 500; ++k) records.push_back(k);
      AddUpload(Laptop(laptop), logger, Hour(i), records);
    }
    transaction.Commit();
    MergeLoggers(Laptop(laptop), 1 + laptop % 2, 3, Hour(10 + laptop));
  }
  // Also where the administrator has a taste for strictness.
  Admin->Run(u"ALTER ROLE postgres SET default_transaction_isolation = 'serializable'"_s);
  std::vector<std::thread> threads;
  std::vector<QString> faults(2 * kLaptops);
  for (std::size_t i = 0; i < faults.size(); ++i) {
    // Qt's connections belong to their threads.
    const QString path = Laptop(static_cast<int>(i) % kLaptops + 1).Path();
    threads.emplace_back([path, &fault = faults[i]] {
      try {
        Store store(path);
        store.Open(Store::Access::Read);
        Server server(ParseServerAddress(u"postgresql://"_s));
        server.Open();
        EnsureServerSchema(server, u"test"_s);
        PushResult result;
        PushArchive(store, server, {}, result);
      } catch (const Fault& thrown) {
        fault = QString::fromUtf8(thrown.what());
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  Admin->Run(u"ALTER ROLE postgres RESET default_transaction_isolation"_s);
  for (const QString& fault : faults) EXPECT_EQ(fault, QString());
  EXPECT_EQ(There(u"SELECT count(*), count(DISTINCT upload_id) FROM tessmar.record"_s),
            QStringList{u"24000|48"_s});
  EXPECT_EQ(There(u"SELECT count(*) FROM tessmar.logger"_s), QStringList{u"5"_s});
  QStringList uuids;
  for (int laptop = 1; laptop <= kLaptops; ++laptop)
    uuids += Here(laptop, u"SELECT uuid FROM upload"_s);
  uuids.sort();
  EXPECT_EQ(There(u"SELECT uuid FROM tessmar.upload ORDER BY uuid::text"_s), uuids);
  // Nothing is left in a logger that was merged away.
  EXPECT_EQ(There(u"SELECT DISTINCT name FROM tessmar.upload u JOIN tessmar.logger l"
                  " ON l.id = logger_id ORDER BY 1"_s)
                .size(),
            3);
}

}  // namespace
}  // namespace tessmar::test
