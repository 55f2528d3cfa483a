#include "session/PersistedSettings.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "base/Fault.h"
#include "support/SmallDisk.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class PersistedSettingsTest : public testing::Test {
 protected:
  QString Path() const { return folder_.filePath(u"Tessmar/Tessmar Logger.ini"_s); }

  PersistedSettings Store() const {
    return PersistedSettings(Path(), QLocale(QLocale::English, QLocale::UnitedStates));
  }

  void Load() { EXPECT_TRUE(Store().Load(Connection, Files, SingleColumn)); }
  bool Save() { return Store().Save(Connection, Files, SingleColumn); }

  void PutFile(const QByteArray& content) {
    QDir().mkpath(folder_.filePath(u"Tessmar"_s));
    QFile file(Path());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
  }
  QByteArray FileContent() {
    QFile file(Path());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  ConnectionSettings Connection;
  RecentFiles Files;
  QString SingleColumn;

 private:
  QTemporaryDir folder_;
};

TEST_F(PersistedSettingsTest, AnEmptyStoreOffersCom1At38400ForBothKindsOfConnection) {
  SingleColumn = u"stale"_s;
  Load();
  EXPECT_EQ(Connection.DirectPort, u"Com1"_s);
  EXPECT_EQ(Connection.DirectBaud, u"38400"_s);
  EXPECT_EQ(Connection.ModemPort, u"Com1"_s);
  EXPECT_EQ(Connection.ModemBaud, u"38400"_s);
  EXPECT_EQ(Connection.ModemNumbers, (std::array<QString, 4>{}));
  EXPECT_EQ(Connection.CurrentPhoneNumber, QString());
  EXPECT_EQ(Connection.ModemInit, QString());
  EXPECT_EQ(Connection.UseModemInit, 0);
  EXPECT_EQ(Files.SetupFolder, QString());
  EXPECT_EQ(Files.RecentSetupFiles, (std::array<QString, 4>{}));
  EXPECT_EQ(SingleColumn, QString());
}

TEST_F(PersistedSettingsTest, ReadingMakesNoFile) {
  Load();
  Store().Language(9);
  EXPECT_FALSE(QFile::exists(Path()));
}

TEST_F(PersistedSettingsTest, WritesEveryKeyButTheLanguage) {
  Connection.DirectPort = u"COM3"_s;
  Connection.DirectBaud = u"19200"_s;
  Connection.ModemPort = u"COM2"_s;
  Connection.ModemBaud = u"9600"_s;
  Connection.ModemNumbers = {u"111"_s, u"222"_s, u"333"_s, u""_s};
  Connection.ModemInit = u"/home/a/init.txt"_s;
  Connection.UseModemInit = 1;
  Files.SetupFolder = u"/home/a"_s;
  Files.RecentSetupFiles = {u"/home/a/1.set"_s, u"/home/a/2.set"_s, u""_s, u""_s};
  SingleColumn = u"Yes"_s;
  ASSERT_TRUE(Save());
  // The store keeps its keys in the order of the alphabet.
  EXPECT_EQ(FileContent().toStdString(),
            "[Configuration]\n"
            "CSVDateTimeSingleColumn=Yes\n"
            "DirectBaud=19200\n"
            "DirectPort=COM3\n"
            "LastFile0=/home/a/1.set\n"
            "LastFile1=/home/a/2.set\n"
            "LastFile2=\n"
            "LastFile3=\n"
            "LastFilePath=/home/a\n"
            "ModemBaud=9600\n"
            "ModemInit=/home/a/init.txt\n"
            "ModemNumber0=111\n"
            "ModemNumber1=222\n"
            "ModemNumber2=333\n"
            "ModemNumber3=\n"
            "ModemPort=COM2\n"
            "UseModemInit=1\n");
}

TEST_F(PersistedSettingsTest, GivesBackEverythingThatWasSaved) {
  const ConnectionSettings connection{
      u"COM12"_s,         u"115200"_s, u"COM4"_s, u"19200"_s, {u"1"_s, u"2"_s, u"3"_s, u"4"_s},
      u"/tmp/init.txt"_s, 1,           u"1"_s,    false};
  const RecentFiles files{u"/data"_s, {u"a"_s, u"b"_s, u"c"_s, u"d"_s}};
  ASSERT_TRUE(Store().Save(connection, files, u"Yes"_s));
  Load();
  EXPECT_EQ(Connection.DirectPort, u"COM12"_s);
  EXPECT_EQ(Connection.DirectBaud, u"115200"_s);
  EXPECT_EQ(Connection.ModemPort, u"COM4"_s);
  EXPECT_EQ(Connection.ModemBaud, u"19200"_s);
  EXPECT_EQ(Connection.ModemNumbers, connection.ModemNumbers);
  EXPECT_EQ(Connection.ModemInit, u"/tmp/init.txt"_s);
  EXPECT_EQ(Connection.UseModemInit, 1);
  EXPECT_EQ(Files.SetupFolder, u"/data"_s);
  EXPECT_EQ(Files.RecentSetupFiles, files.RecentSetupFiles);
  EXPECT_EQ(SingleColumn, u"Yes"_s);
}

TEST_F(PersistedSettingsTest, ASavedPortIsOfferedByTheNextRun) {
  Load();
  Connection.DirectPort = u"COM5"_s;
  ASSERT_TRUE(Save());
  Connection = {};
  Load();
  EXPECT_EQ(Connection.DirectPort, u"COM5"_s);
}

TEST_F(PersistedSettingsTest, WithoutSavingTheStoreKeepsTheOldPort) {
  PutFile("[Configuration]\nDirectPort=COM2\n");
  Load();
  Connection.DirectPort = u"COM5"_s;
  Connection = {};
  Load();
  EXPECT_EQ(Connection.DirectPort, u"COM2"_s);
}

TEST_F(PersistedSettingsTest, EveryTextSurvives) {
  const QStringList texts{u"01234, ext 5"_s,
                          u"0,0,01234"_s,
                          u"C:\\Loggers\\north\\x41.set"_s,
                          u"/home/jürgen/Größe/ß.set"_s,
                          u"she said \"now\""_s,
                          u"  leading and trailing  "_s,
                          u"a;b=c#d"_s,
                          u"@ByteArray(x)"_s,
                          u"@"_s,
                          u"@@Invalid()"_s,
                          u"[General]"_s,
                          u"100%41"_s,
                          u"水温 logger"_s,
                          u"tab\there"_s,
                          u"\"quoted\", \"twice\""_s};
  for (const QString& text : texts) {
    Connection.ModemNumbers = {text, u"x"_s, text, u""_s};
    Connection.ModemInit = text;
    Files.SetupFolder = text;
    Files.RecentSetupFiles = {text, text, u""_s, text};
    ASSERT_TRUE(Save());
    Connection = {};
    Files = {};
    Load();
    EXPECT_EQ(Connection.ModemNumbers[0], text);
    EXPECT_EQ(Connection.ModemNumbers[1], u"x"_s);
    EXPECT_EQ(Connection.ModemInit, text);
    EXPECT_EQ(Files.SetupFolder, text);
    EXPECT_EQ(Files.RecentSetupFiles[0], text);
    EXPECT_EQ(Files.RecentSetupFiles[3], text);
  }
}

TEST_F(PersistedSettingsTest, AValueWithACommaTypedInByHandStaysOneText) {
  PutFile("[Configuration]\nModemNumber0=01234, ext 5\nDirectPort=COM3\n");
  Load();
  EXPECT_EQ(Connection.ModemNumbers[0], u"01234, ext 5"_s);
  EXPECT_EQ(Connection.DirectPort, u"COM3"_s);
}

TEST_F(PersistedSettingsTest, TheLatestPhoneNumberIsOfferedFirst) {
  PutFile("[Configuration]\nModemNumber0=555-1234\nModemNumber1=555-9999\n");
  Load();
  EXPECT_EQ(Connection.CurrentPhoneNumber, u"555-1234"_s);
}

TEST_F(PersistedSettingsTest, AKeyThatIsThereButEmptyIsEmpty) {
  PutFile("[Configuration]\nDirectPort=\n");
  Load();
  EXPECT_EQ(Connection.DirectPort, QString());
}

TEST_F(PersistedSettingsTest, TheLanguageIsTheSystemsUnlessStored) {
  EXPECT_EQ(Store().Language(9), 9);
  PutFile("[Configuration]\nLanguage=7\n");
  EXPECT_EQ(Store().Language(9), 7);
}

TEST_F(PersistedSettingsTest, TheLanguageIsNeverWritten) {
  ASSERT_TRUE(Save());
  EXPECT_FALSE(FileContent().contains("Language"));
}

TEST_F(PersistedSettingsTest, AStoredLanguageStays) {
  PutFile("[Configuration]\nLanguage=7\n");
  Load();
  ASSERT_TRUE(Save());
  EXPECT_EQ(Store().Language(9), 7);
  EXPECT_EQ(FileContent().count("Language"), 1);
}

TEST_F(PersistedSettingsTest, ALanguageThatIsNoNumberIsAFault) {
  for (const char* value : {"german", "", "7 -d", "40000"}) {
    PutFile(QByteArray("[Configuration]\nLanguage=") + value + "\n");
    EXPECT_THROW(Store().Language(9), ConversionFault) << value;
  }
}

TEST_F(PersistedSettingsTest, TheFaultNamesTheKeyTheFileAndTheValue) {
  PutFile("[Configuration]\nLanguage=german\n");
  try {
    Store().Language(9);
    FAIL();
  } catch (const ConversionFault& fault) {
    EXPECT_EQ(fault.what(),
              "Language must be a number in " + Path().toStdString() + ", it is \"german\"");
  }
}

TEST_F(PersistedSettingsTest, AModemCheckBoxThatIsNoNumberIsAFault) {
  PutFile("[Configuration]\nUseModemInit=yes\n");
  EXPECT_THROW(Load(), ConversionFault);
}

TEST_F(PersistedSettingsTest, NumbersAreRoundedAndMayHaveBlanks) {
  PutFile("[Configuration]\nLanguage=\" 6.6 \"\nUseModemInit= 1\n");
  EXPECT_EQ(Store().Language(9), 7);
  Load();
  EXPECT_EQ(Connection.UseModemInit, 1);
}

TEST_F(PersistedSettingsTest, OtherSectionsAreLeftAlone) {
  PutFile("[Other]\nDirectPort=COM9\n");
  Load();
  EXPECT_EQ(Connection.DirectPort, u"Com1"_s);
  ASSERT_TRUE(Save());
  EXPECT_TRUE(FileContent().contains("[Other]\nDirectPort=COM9\n"));
}

TEST_F(PersistedSettingsTest, AForeignFileGivesTheDefaultsAndIsReplaced) {
  PutFile(QByteArrayLiteral("\x7f\0\1\xff\xfe=\n[[[]]\nrubbish\n"));
  Load();
  EXPECT_EQ(Connection.DirectPort, u"Com1"_s);
  Connection.DirectPort = u"COM3"_s;
  EXPECT_TRUE(Save());
  Connection = {};
  Load();
  EXPECT_EQ(Connection.DirectPort, u"COM3"_s);
}

TEST_F(PersistedSettingsTest, AStoreThatCannotBeWrittenIsReported) {
  PutFile("");
  const PersistedSettings store(Path() + u"/below/a file.ini"_s, QLocale::c());
  store.Load(Connection, Files, SingleColumn);
  EXPECT_EQ(Connection.DirectPort, u"Com1"_s);
  EXPECT_FALSE(store.Save(Connection, Files, SingleColumn));
}

TEST_F(PersistedSettingsTest, AFullDiskKeepsTheOldStore) {
  SmallDisk disk;
  const QString path = disk.Path(u"Tessmar Logger.ini"_s);
  const PersistedSettings store(path, QLocale::c());
  Connection.DirectPort = u"COM2"_s;
  ASSERT_TRUE(store.Save(Connection, Files, SingleColumn));
  // The longest texts make the store larger than the room that is left.
  Files.SetupFolder = QString(9000, u'x');
  for (const qint64 room : {0, 4096}) {
    disk.Fill(room);
    const bool saved = store.Save(Connection, Files, SingleColumn);
    disk.Empty();
    EXPECT_FALSE(saved) << room;
    EXPECT_EQ(disk.Files(), QStringList{u"Tessmar Logger.ini"_s});
    ConnectionSettings connection;
    RecentFiles files;
    store.Load(connection, files, SingleColumn);
    EXPECT_EQ(connection.DirectPort, u"COM2"_s);
  }
}

TEST_F(PersistedSettingsTest, APipeADeviceOrAFolderInItsPlaceIsLeftAlone) {
  PutFile("");
  const QString pipe = Path() + u".pipe"_s;
  ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  for (const QString& path : {pipe, u"/dev/zero"_s, QFileInfo(Path()).path()}) {
    const PersistedSettings store(path, QLocale::c());
    EXPECT_EQ(store.Language(9), 9);
    EXPECT_FALSE(store.Load(Connection, Files, SingleColumn));
    EXPECT_EQ(Connection.DirectPort, u"Com1"_s);
    EXPECT_FALSE(store.Save(Connection, Files, SingleColumn)) << path.toStdString();
  }
}

TEST_F(PersistedSettingsTest, AStoreThatMayNotBeReadIsNotWritten) {
  const OrdinaryUser user;
  const QTemporaryDir folder;
  const QString path = folder.filePath(u"store.ini"_s);
  const PersistedSettings store(path, QLocale::c());
  Connection.DirectPort = u"COM2"_s;
  ASSERT_TRUE(store.Save(Connection, Files, SingleColumn));
  ASSERT_TRUE(QFile::setPermissions(path, QFile::WriteOwner));
  ConnectionSettings unread;
  store.Load(unread, Files, SingleColumn);
  EXPECT_EQ(unread.DirectPort, u"Com1"_s);
  EXPECT_FALSE(store.Save(unread, Files, SingleColumn));
  ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
  store.Load(unread, Files, SingleColumn);
  EXPECT_EQ(unread.DirectPort, u"COM2"_s);
}

TEST(PersistedSettingsPath, LiesInTheUsersConfigurationFolder) {
  const QByteArray before = qgetenv("XDG_CONFIG_HOME");
  qputenv("XDG_CONFIG_HOME", "/somewhere/config");
  EXPECT_EQ(PersistedSettings::DefaultPath(), u"/somewhere/config/Tessmar/Tessmar Logger.ini"_s);
  if (before.isEmpty()) {
    qunsetenv("XDG_CONFIG_HOME");
  } else {
    qputenv("XDG_CONFIG_HOME", before);
  }
}

TEST_F(PersistedSettingsTest, TellsAStoreThatCannotBeRead) {
  EXPECT_TRUE(Store().Load(Connection, Files, SingleColumn));
  // A folder stands in its place.
  QDir().mkpath(Path());
  EXPECT_FALSE(Store().Load(Connection, Files, SingleColumn));
}

}  // namespace
}  // namespace tessmar::test
