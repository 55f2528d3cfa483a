// archive push.

#include <QElapsedTimer>
#include <algorithm>
#include <array>
#include <utility>

#include "ProgramVersion.h"
#include "archive/ServerSchema.h"
#include "archive/Sharing.h"
#include "cli/ArchiveFile.h"
#include "cli/Commands.h"
#include "cli/JsonLine.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr qint64 kProgressMs = 200;

struct Words {
  ServerTrouble Trouble;
  TwoLanguages Text;
};

constexpr std::array kWords{
    Words{ServerTrouble::BadAddress,
          {u"this is no address; it looks like postgresql://USER@HOST/DATABASE",
           u"das ist keine Adresse; sie sieht so aus: postgresql://BENUTZER@RECHNER/DATENBANK"}},
    Words{ServerTrouble::HasPassword,
          {u"the address has a password in it, which every user of this computer can read; put it "
           u"into ~/.pgpass, and leave it out",
           u"die Adresse enthält ein Passwort, das jeder Benutzer dieses Rechners lesen kann; es "
           u"gehört nach ~/.pgpass und nicht hierher"}},
    Words{ServerTrouble::NoDriver,
          {u"install the package libqt6sql6-psql", u"das Paket libqt6sql6-psql fehlt"}},
    Words{ServerTrouble::Unreachable,
          {u"there is no connection", u"es kommt keine Verbindung zustande"}},
    Words{ServerTrouble::Lost,
          {u"the connection is gone; the same again brings the rest",
           u"die Verbindung ist weg; dasselbe noch einmal bringt den Rest"}},
    Words{ServerTrouble::TooOld,
          {u"the server is too old; PostgreSQL 12 or later is wanted",
           u"der Server ist zu alt; nötig ist PostgreSQL 12 oder neuer"}},
    Words{ServerTrouble::Newer,
          {u"a later version of this program made its tables; use that one",
           u"eine spätere Fassung dieses Programms legte die Tabellen an; mit der geht es"}},
    Words{ServerTrouble::OldTables,
          {u"its tables are of an older version; let their owner push once with this one",
           u"die Tabellen sind von einer älteren Fassung; ihr Eigentümer muss einmal mit dieser "
           u"hinbringen"}},
    Words{ServerTrouble::NoTables,
          {u"it has no tables yet; let the database's owner push once, who may make them",
           u"es gibt noch keine Tabellen; der Eigentümer der Datenbank muss einmal hinbringen, er "
           u"darf sie anlegen"}},
    Words{ServerTrouble::Foreign,
          {u"its schema tessmar has other tables in it; use another database",
           u"im Schema tessmar liegen fremde Tabellen; eine andere Datenbank nehmen"}},
    Words{ServerTrouble::NoRights,
          {u"this user lacks a right there", u"diesem Benutzer fehlt dort ein Recht"}},
    Words{ServerTrouble::Full,
          {u"the server has no room; make some, the same again brings the rest",
           u"der Server hat keinen Platz; wenn wieder Platz ist, bringt dasselbe den Rest"}},
    Words{ServerTrouble::Again,
          {u"others were in the way again and again; try once more",
           u"andere waren immer wieder im Weg; noch einmal versuchen"}},
    Words{ServerTrouble::Refused, {u"the server refuses", u"der Server lehnt ab"}},
};

QString WordsOf(ServerTrouble trouble) {
  return std::ranges::find(kWords, trouble, &Words::Trouble)->Text.Text();
}

/// @param where  empty for an address that is none, which may have a password in it.
QString Complaint(const QString& where, const ServerFault& fault) {
  QString text = where.isEmpty() ? QString() : where + u": "_s;
  text += WordsOf(fault.Trouble());
  // Where the server's own words say more.
  const bool hasMore = fault.Trouble() != ServerTrouble::NoDriver &&
                       fault.Trouble() != ServerTrouble::HasPassword &&
                       fault.Trouble() != ServerTrouble::Lost && !fault.Text().isEmpty();
  return hasMore ? text + u" ("_s + fault.Text() + u')' : text;
}

/// One push, and what is said of it.
class Push {
 public:
  Push(CommandEnvironment& environment, const CommandOptions& options, ServerAddress address)
      : environment_(environment),
        options_(options),
        server_(std::move(address)),
        where_(server_.Address().Shown()) {}

  CommandStatus Run(const Store& store) {
    shown_.start();
    try {
      server_.Open();
      EnsureServerSchema(
          server_,
          u"tessmar %1.%2.%3"_s.arg(kVersionMajor).arg(kVersionMinor).arg(kVersionRevision));
      PushArchive(store, server_, Watcher(), result_);
    } catch (const ServerFault& fault) {
      const bool part = result_.Uploads > 0;
      if (part) Report();
      throw CommandFailure(Complaint(where_, fault), part ? kCommandBrokenOff : kCommandFailed);
    }
    Report();
    if (result_.BrokenOff)
      throw CommandFailure(TwoLanguages{u"broken off; the same again brings the rest",
                                        u"abgebrochen; dasselbe noch einmal bringt den Rest"}
                               .Text(),
                           kCommandBrokenOff);
    return kCommandDone;
  }

 private:
  PushWatcher Watcher() {
    return {.GoOn =
                [this] {
                  environment_.Loop.RunPending();
                  return !environment_.StopWanted() && !environment_.Loop.Ending();
                },
            .Changed = [this](const PushProgress& progress) { Show(progress); }};
  }

  void Show(const PushProgress& progress) {
    if (!environment_.Out.ShowsProgress() || shown_.elapsed() < kProgressMs) return;
    shown_.restart();
    environment_.Out.Progress(
        TwoLanguages{u"upload %1 of %2, %3 records", u"Abruf %1 von %2, %3 Datensätze"}
            .Text()
            .arg(progress.Upload)
            .arg(progress.Uploads)
            .arg(progress.Records));
  }

  void Report() {
    if (options_.Json) {
      JsonLine json;
      json.Text("server", where_)
          .Number("uploads", result_.Uploads)
          .Number("records", result_.Records)
          .Number("events", result_.Events)
          .Number("skipped", result_.Skipped)
          .Number("running", result_.Running);
      environment_.Out.Data(json.Line());
      return;
    }
    QString line =
        TwoLanguages{u"%1: uploads %2, records %3, events %4; already there %5",
                     u"%1: Abrufe %2, Datensätze %3, Ereignisse %4; schon da %5"}
            .Text()
            .arg(where_, QString::number(result_.Uploads), QString::number(result_.Records),
                 QString::number(result_.Events), QString::number(result_.Skipped));
    if (result_.Running > 0)
      line += TwoLanguages{u"; still running %1", u"; noch nicht beendet %1"}.Text().arg(
          result_.Running);
    environment_.Out.Data(line);
  }

  CommandEnvironment& environment_;
  const CommandOptions& options_;
  Server server_;
  QString where_;
  PushResult result_;
  QElapsedTimer shown_;
};

}  // namespace

CommandStatus RunArchivePush(CommandEnvironment& environment, const CommandOptions& options) {
  ServerAddress address;
  try {
    address = ParseServerAddress(options.Operands[0]);
  } catch (const ServerFault& fault) {
    throw CommandFailure(Complaint({}, fault), kCommandWrongUsage);
  }
  return OnArchive(
      options, [&](const Store& store) { return Push(environment, options, address).Run(store); });
}

}  // namespace tessmar
