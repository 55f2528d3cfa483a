#include "archive/ServerAddress.h"

#include <QRegularExpression>
#include <QStringList>
#include <QUrl>
#include <utility>

#include "archive/ServerFault.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// Those that QSqlDatabase takes by itself.
const QStringList& OwnPlaces() {
  static const QStringList kPlaces{u"host"_s, u"dbname"_s, u"user"_s};
  return kPlaces;
}

[[noreturn]] void Refuse(const QString& why) {
  throw ServerFault(ServerTrouble::BadAddress, why);
}

QString Decoded(QStringView text) {
  static const QRegularExpression kBadEscape(u"%(?![0-9A-Fa-f]{2})|%00"_s);
  if (text.toString().contains(kBadEscape)) Refuse(u"a % without two digits"_s);
  return QUrl::fromPercentEncoding(text.toUtf8());
}

void Set(ServerAddress& address, const QString& name, const QString& value) {
  if (name == "password"_L1 || name == "sslpassword"_L1)
    throw ServerFault(ServerTrouble::HasPassword, u"a password in the address"_s);
  // The plugin takes a semicolon for a separator, whatever is around it.
  if (!OwnPlaces().contains(name) && value.contains(u';')) Refuse(u"a semicolon in "_s + name);
  if (!value.isEmpty()) address.Parameters[name] = value;
}

// "host:5432,[::1]:5433" as lists of hosts and of ports.
void SetHosts(ServerAddress& address, QStringView text) {
  static const QRegularExpression kHost(uR"(^(\[[^\]]*\]|[^:\[\]]*)(?::([0-9]*))?\z)"_s);
  QStringList hosts;
  QStringList ports;
  for (const QStringView part : text.split(u',')) {
    const QRegularExpressionMatch match = kHost.match(part.toString());
    if (!match.hasMatch()) Refuse(u"no host and port"_s);
    QString host = match.captured(1);
    if (host.startsWith(u'[')) host = host.mid(1, host.size() - 2);
    hosts.append(Decoded(host));
    ports.append(match.captured(2));
  }
  if (!hosts.join(QString()).isEmpty()) Set(address, u"host"_s, hosts.join(u','));
  if (!ports.join(QString()).isEmpty()) Set(address, u"port"_s, ports.join(u','));
}

void SetParameters(ServerAddress& address, QStringView text) {
  if (text.isEmpty()) return;
  for (const QStringView part : text.split(u'&')) {
    const qsizetype equals = part.indexOf(u'=');
    if (equals < 1) Refuse(u"no parameter=value"_s);
    QString name = Decoded(part.left(equals));
    QString value = Decoded(part.mid(equals + 1));
    static const QRegularExpression kName(u"^[a-z_]+\\z"_s);
    if (!kName.match(name).hasMatch()) Refuse(u"no parameter=value"_s);
    // What other programs write for it.
    if (name == "ssl"_L1 && value == "true"_L1) {
      name = u"sslmode"_s;
      value = u"require"_s;
    }
    Set(address, name, value);
  }
}

// As libpq reads it: in quotes, with both of them escaped.
QString Quoted(QString value) {
  return u'\'' + value.replace(u'\\', u"\\\\"_s).replace(u'\'', u"\\'"_s) + u'\'';
}

}  // namespace

ServerAddress ParseServerAddress(const QString& text) {
  QStringView rest(text);
  if (rest.startsWith(u"postgresql://")) {
    rest = rest.mid(13);
  } else if (rest.startsWith(u"postgres://")) {
    rest = rest.mid(11);
  } else {
    Refuse(u"it begins with postgresql://"_s);
  }
  ServerAddress address;
  const qsizetype question = rest.indexOf(u'?');
  const QStringView parameters = question < 0 ? QStringView() : rest.mid(question + 1);
  if (question >= 0) rest = rest.left(question);
  const qsizetype stroke = rest.indexOf(u'/');
  if (stroke >= 0) Set(address, u"dbname"_s, Decoded(rest.mid(stroke + 1)));
  QStringView hosts = stroke < 0 ? rest : rest.left(stroke);
  const qsizetype at = hosts.lastIndexOf(u'@');
  if (at >= 0) {
    QStringView user = hosts.left(at);
    const qsizetype colon = user.indexOf(u':');
    if (colon >= 0) {
      if (colon + 1 < user.size()) Set(address, u"password"_s, QString());
      user = user.left(colon);
    }
    Set(address, u"user"_s, Decoded(user));
    hosts = hosts.mid(at + 1);
  }
  SetHosts(address, hosts);
  SetParameters(address, parameters);
  return address;
}

QString ServerAddress::Shown() const {
  QString host = Parameters.value(u"host"_s);
  if (host.isEmpty()) host = Parameters.value(u"service"_s);
  if (host.isEmpty()) host = qEnvironmentVariable("PGHOST", u"localhost"_s);
  const QString database = Parameters.value(u"dbname"_s, qEnvironmentVariable("PGDATABASE"));
  return database.isEmpty() ? host : host + u'/' + database;
}

QString ServerAddress::ConnectOptions() const {
  // A server that does not answer holds up nobody for long.
  QMap<QString, QString> all{{u"connect_timeout"_s, u"10"_s},
                             {u"tcp_user_timeout"_s, u"30000"_s},
                             {u"keepalives_idle"_s, u"10"_s},
                             {u"fallback_application_name"_s, u"tessmar"_s}};
  all.insert(Parameters);
  QStringList options;
  for (auto it = all.cbegin(); it != all.cend(); ++it) {
    if (!OwnPlaces().contains(it.key())) options.append(it.key() + u'=' + Quoted(it.value()));
  }
  return options.join(u' ');
}

}  // namespace tessmar
