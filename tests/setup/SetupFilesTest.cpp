#include "setup/SetupFiles.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <csignal>

#include "base/Fault.h"
#include "settings/ConfigImages.h"
#include "support/FakeMessageLoop.h"
#include "support/FakeOutside.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;
using Asked = FakeMessages::Asked;

const Asked kOverwrite{u"The setup file already exists, do you want to overwrite it?"_s, 68,
                       u"Save Setup File"_s};
const Asked kNotSaved{u"Error: file was not saved correctly."_s, 16, u"Save Setup File"_s};
const Asked kNotLoaded{u"Error: file was not loaded correctly."_s, 16, u"Load Setup File"_s};

/// A setup screen without a window: its controls hold one record, the process another.
class SetupFilesTest : public testing::Test {
 protected:
  SetupFilesTest() {
    SetTextLanguage(kLanguageEnglish);
    LoadDefaultSettings(OnScreen, 8);
    OnScreen.LoggerName = u"Well 4"_s;
    Baseline = {1, 2, 3};
  }

  QString Path(const QString& name) const { return Folder.filePath(name); }

  void Put(const QString& name, const QByteArray& bytes) const {
    QFile file(Path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
  }
  QByteArray Content(const QString& name) const {
    QFile file(Path(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
  }
  QStringList FilesInFolder() const {
    return QDir(Folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
  }

  bool Save(const QString& path) {
    Dialogs.Answers.push_back(path);
    return Files.SaveSetupFile();
  }
  void Load(const QString& path) {
    Dialogs.Answers.push_back(path);
    Files.LoadSetupFile();
  }
  ConfigImage Packed(const LoggerSettings& settings) const {
    ConfigImage image;
    EXPECT_TRUE(PackConfigImage(Link, settings, image));
    return image;
  }

  QTemporaryDir Folder;
  LinkState Link = FullLogger();
  LoggerSettings Settings;
  LoggerSettings OnScreen;
  int ControlsRead = 0;
  int ControlsFilled = 0;
  bool Stay = false;
  int Offers = 0;
  RecentFiles Recent;
  ConfigImage Baseline;
  FakeMessages Messages;
  FakeFileDialogs Dialogs;
  FakeClock Time;
  SystemLocale Locale{QLocale(QLocale::English, QLocale::UnitedStates)};
  SetupFiles Files{
      {Link, Settings, Recent, Baseline, Messages, Dialogs, Time, Locale, u"/opt/tessmar/bin"_s},
      {[this] {
         Settings = OnScreen;
         ++ControlsRead;
       },
       [this] {
         OnScreen = Settings;
         ++ControlsFilled;
       },
       [this] {
         ++Offers;
         return Stay;
       }}};
};

TEST_F(SetupFilesTest, AsksForAFileToSaveBesideTheProgramAtFirst) {
  EXPECT_FALSE(Files.SaveSetupFile());
  ASSERT_EQ(Dialogs.All.size(), 1U);
  EXPECT_EQ(Dialogs.All[0].Title, u"Save Setup File"_s);
  EXPECT_EQ(Dialogs.All[0].InitialName, u"/opt/tessmar/bin/*.set"_s);
  EXPECT_EQ(Dialogs.All[0].Filter, u"Setup Files (*.set)|*.set"_s);
  EXPECT_EQ(Dialogs.All[0].DefaultExtension, u".dat"_s);
  EXPECT_FALSE(Dialogs.All[0].ConfirmOverwrite);
}

TEST_F(SetupFilesTest, AsksForAFileToLoadInGerman) {
  SetTextLanguage(kLanguageGerman);
  Files.LoadSetupFile();
  SetTextLanguage(kLanguageEnglish);
  ASSERT_EQ(Dialogs.All.size(), 1U);
  EXPECT_EQ(Dialogs.All[0].Title, u"Setupdatei laden"_s);
  EXPECT_EQ(Dialogs.All[0].Filter, u"Setupdateien (*.set)|*.set"_s);
}

TEST_F(SetupFilesTest, TakesASeparatorOffTheEndOfTheFolder) {
  Recent.SetupFolder = u"/home/op/"_s;
  EXPECT_FALSE(Files.SaveSetupFile());
  EXPECT_EQ(Dialogs.All[0].InitialName, u"/home/op/*.set"_s);
  Recent.SetupFolder = u"/home/op"_s;
  EXPECT_FALSE(Files.SaveSetupFile());
  EXPECT_EQ(Dialogs.All[1].InitialName, u"/home/op/*.set"_s);
}

TEST_F(SetupFilesTest, OffersTheFileInUseAgain) {
  EXPECT_TRUE(Save(Path(u"pond.set"_s)));
  EXPECT_EQ(Files.CurrentSetupFileName(), u"pond.set"_s);
  Files.LoadSetupFile();
  EXPECT_EQ(Dialogs.All[1].InitialName, Path(u"pond.set"_s));
}

TEST_F(SetupFilesTest, SavesWhatTheScreenHolds) {
  EXPECT_TRUE(Save(Path(u"pond.set"_s)));
  EXPECT_EQ(ControlsRead, 1);
  EXPECT_EQ(Settings, OnScreen);
  const QByteArray file = Content(u"pond.set"_s);
  EXPECT_TRUE(
      file.startsWith("Program=setup_files_test\r\nVersion=2.1.9\r\n"
                      "Date=12/27/2010\r\nTime=3:05:12 PM\r\nLoggerName=Well 4\r\n"))
      << file.left(200).toStdString();
  EXPECT_TRUE(file.endsWith("O2ConcentrationDisplayUnits=0\r\n"));
  EXPECT_EQ(Baseline, Packed(OnScreen));
  EXPECT_TRUE(Messages.All.empty());
}

TEST_F(SetupFilesTest, RemembersFolderNameAndPath) {
  const QString path = Path(u"pond.set"_s);
  EXPECT_TRUE(Save(path));
  EXPECT_EQ(Recent.SetupFolder, Folder.path());
  EXPECT_EQ(Recent.RecentSetupFiles[0], path);
  EXPECT_TRUE(Save(Path(u"other.set"_s)));
  EXPECT_EQ(Recent.RecentSetupFiles[0], Path(u"other.set"_s));
  EXPECT_EQ(Recent.RecentSetupFiles[1], path);
}

TEST_F(SetupFilesTest, LeavesFolderAndNameForAPathJustBelowTheRoot) {
  Recent.SetupFolder = u"/home/op"_s;
  Load(u"/no-such-file.set"_s);
  EXPECT_EQ(Recent.SetupFolder, u"/home/op"_s);
  EXPECT_EQ(Files.CurrentSetupFileName(), u""_s);
  EXPECT_EQ(Recent.RecentSetupFiles[0], u""_s);
}

TEST_F(SetupFilesTest, ChangesNothingWhenTheSaveDialogIsCancelled) {
  EXPECT_FALSE(Files.SaveSetupFile());
  EXPECT_EQ(ControlsRead, 0);
  EXPECT_EQ(Baseline, (ConfigImage{1, 2, 3}));
  EXPECT_EQ(Recent.SetupFolder, u""_s);
  EXPECT_TRUE(Messages.All.empty());
}

TEST_F(SetupFilesTest, AsksOnceBeforeAFileIsOverwritten) {
  Put(u"pond.set"_s, "old");
  Messages.Answers = {kYes};
  EXPECT_TRUE(Save(Path(u"pond.set"_s)));
  EXPECT_EQ(Messages.All, std::vector<Asked>{kOverwrite});
  EXPECT_TRUE(Content(u"pond.set"_s).startsWith("Program="));
}

TEST_F(SetupFilesTest, KeepsTheFileWhenTheAnswerIsNoYetRemembersIt) {
  Put(u"pond.set"_s, "old");
  Messages.Answers = {kNo};
  EXPECT_FALSE(Save(Path(u"pond.set"_s)));
  EXPECT_EQ(Content(u"pond.set"_s), "old");
  EXPECT_EQ(Recent.RecentSetupFiles[0], Path(u"pond.set"_s));
  EXPECT_EQ(Files.CurrentSetupFileName(), u"pond.set"_s);
  EXPECT_EQ(ControlsRead, 0);
  EXPECT_EQ(Baseline, (ConfigImage{1, 2, 3}));
}

TEST_F(SetupFilesTest, SaysThatAFileWasNotSaved) {
  EXPECT_FALSE(Save(Path(u"no/such/folder/pond.set"_s)));
  EXPECT_EQ(Messages.All, std::vector<Asked>{kNotSaved});
  EXPECT_EQ(Baseline, (ConfigImage{1, 2, 3}));
}

TEST_F(SetupFilesTest, SavesNothingInPlaceOfAFolderOrADevice) {
  QDir(Folder.path()).mkdir(u"pond.set"_s);
  ASSERT_EQ(::mkfifo(QFile::encodeName(Path(u"pipe"_s)).constData(), 0600), 0);
  for (const QString& path : {Path(u"pond.set"_s), u"/dev/full"_s, Path(u"pipe"_s)}) {
    Messages.All.clear();
    Messages.Answers = {kYes};
    EXPECT_FALSE(Save(path)) << path.toStdString();
    EXPECT_EQ(Messages.All, (std::vector<Asked>{kOverwrite, kNotSaved}));
  }
  EXPECT_TRUE(QFileInfo(Path(u"pond.set"_s)).isDir());
}

TEST_F(SetupFilesTest, KeepsTheOldFileWholeWhenTheDiskIsFull) {
  Put(u"pond.set"_s, "old");
  Messages.Answers = {kYes};
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const rlimit small{1000, before.rlim_max};
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const bool saved = Save(Path(u"pond.set"_s));
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
  std::signal(SIGXFSZ, handler);

  EXPECT_FALSE(saved);
  EXPECT_EQ(Messages.All, (std::vector<Asked>{kOverwrite, kNotSaved}));
  EXPECT_EQ(Content(u"pond.set"_s), "old");
  EXPECT_EQ(FilesInFolder(), QStringList{u"pond.set"_s});
  EXPECT_EQ(Baseline, (ConfigImage{1, 2, 3}));
}

TEST_F(SetupFilesTest, LetsAFaultOfSavingThroughWhenFaultsAreNotTrapped) {
  Link.TrapErrors = false;
  EXPECT_THROW(Save(Path(u"no/such/folder/pond.set"_s)), FileFault);
  EXPECT_TRUE(Messages.All.empty());
}

TEST_F(SetupFilesTest, LoadsIntoRecordAndScreen) {
  EXPECT_TRUE(Save(Path(u"pond.set"_s)));
  const LoggerSettings saved = OnScreen;
  OnScreen = LoggerSettings{};
  Settings = LoggerSettings{};
  Baseline.clear();
  Load(Path(u"pond.set"_s));
  EXPECT_EQ(Settings, saved);
  EXPECT_EQ(OnScreen, saved);
  EXPECT_EQ(ControlsFilled, 1);
  EXPECT_EQ(Baseline, Packed(saved));
  EXPECT_TRUE(Messages.All.empty());
}

TEST_F(SetupFilesTest, StartsALoadFromTheDefaultsOfTheConnectedLogger) {
  Link.AnalogChannelCount = 3;
  Settings.Deadband = 99;
  Put(u"pond.set"_s, "LoggerName=x\r\nNumAnalogChannels=8\r\n");
  Load(Path(u"pond.set"_s));
  LoggerSettings expected;
  LoadDefaultSettings(expected, 3);
  expected.LoggerName = u"x"_s;
  EXPECT_EQ(OnScreen, expected);
  EXPECT_EQ(Link.AnalogChannelCount, 3);
}

TEST_F(SetupFilesTest, AsksAboutUnsavedChangesAheadOfALoad) {
  Stay = true;
  Load(Path(u"pond.set"_s));
  EXPECT_EQ(Offers, 1);
  EXPECT_TRUE(Dialogs.All.empty());
  EXPECT_EQ(ControlsFilled, 0);
}

TEST_F(SetupFilesTest, ChangesNothingWhenTheLoadDialogIsCancelled) {
  Settings = OnScreen;
  Files.LoadSetupFile();
  EXPECT_EQ(Settings, OnScreen);
  EXPECT_EQ(ControlsFilled, 0);
  EXPECT_EQ(Recent.SetupFolder, u""_s);
  EXPECT_TRUE(Messages.All.empty());
}

TEST_F(SetupFilesTest, KeepsDefaultsAndReadLinesInTheRecordAfterAFailedLoad) {
  Settings = OnScreen;
  const LoggerSettings screenBefore = OnScreen;
  Put(u"bad.set"_s, "LoggerName=read\r\nChannel=8\r\nRawScaleLower=5\r\nDeadband=7\r\n");
  Load(Path(u"bad.set"_s));
  LoggerSettings expected;
  LoadDefaultSettings(expected, 8);
  expected.LoggerName = u"read"_s;
  EXPECT_EQ(Settings, expected);
  EXPECT_EQ(OnScreen, screenBefore);
  EXPECT_EQ(ControlsFilled, 0);
  EXPECT_EQ(Baseline, (ConfigImage{1, 2, 3}));
  EXPECT_EQ(Messages.All, std::vector<Asked>{kNotLoaded});
  EXPECT_EQ(Recent.RecentSetupFiles[0], Path(u"bad.set"_s));
}

TEST_F(SetupFilesTest, LeavesTheRecordAloneWhenAFileCannotBeOpened) {
  Settings = OnScreen;
  QDir(Folder.path()).mkdir(u"folder.set"_s);
  ASSERT_EQ(::mkfifo(QFile::encodeName(Path(u"pipe"_s)).constData(), 0600), 0);
  for (const QString& path :
       {Path(u"gone.set"_s), Path(u"folder.set"_s), Path(u"pipe"_s), u"/dev/zero"_s}) {
    Messages.All.clear();
    Load(path);
    EXPECT_EQ(Messages.All, std::vector<Asked>{kNotLoaded}) << path.toStdString();
    EXPECT_EQ(Settings, OnScreen);
  }
  EXPECT_EQ(ControlsFilled, 0);
}

TEST_F(SetupFilesTest, RefusesAFileFarLargerThanAnySetup) {
  QFile huge(Path(u"huge.set"_s));
  ASSERT_TRUE(huge.open(QIODevice::WriteOnly));
  ASSERT_TRUE(huge.resize(qint64{1} << 33));
  Load(huge.fileName());
  EXPECT_EQ(Messages.All, std::vector<Asked>{kNotLoaded});
}

TEST_F(SetupFilesTest, LetsAFaultOfLoadingThroughWhenFaultsAreNotTrapped) {
  Link.TrapErrors = false;
  Put(u"bad.set"_s, "Deadband=x");
  EXPECT_THROW(Load(Path(u"bad.set"_s)), ConversionFault);
  EXPECT_TRUE(Messages.All.empty());
}

TEST_F(SetupFilesTest, TakesADeadbandThatTheImageCannotHold) {
  Put(u"deep.set"_s, "Deadband=70000");
  Load(Path(u"deep.set"_s));
  EXPECT_EQ(OnScreen.Deadband, 70000);
  EXPECT_TRUE(Messages.All.empty());
  ASSERT_EQ(Baseline.size(), 315U);
  EXPECT_EQ(Baseline[154], 0) << "the image ends at the deadband";
}

TEST_F(SetupFilesTest, OpensTheDialogAtARecentFileWithoutLoadingIt) {
  Put(u"pond.set"_s, "LoggerName=x");
  Recent.RecentSetupFiles[2] = Path(u"pond.set"_s);
  Files.OpenRecentFile(2);
  ASSERT_EQ(Dialogs.All.size(), 1U);
  EXPECT_EQ(Dialogs.All[0].InitialName, Path(u"pond.set"_s));
  EXPECT_EQ(Dialogs.All[0].Title, u"Load Setup File"_s);
  EXPECT_EQ(Recent.SetupFolder, Folder.path());
  EXPECT_EQ(ControlsFilled, 0);
  EXPECT_EQ(Recent.RecentSetupFiles[0], u""_s) << "only a chosen file moves up";
}

TEST_F(SetupFilesTest, IgnoresAnEmptyEntryAndAFileThatIsGone) {
  Recent.RecentSetupFiles[0] = Path(u"gone.set"_s);
  for (std::size_t i = 0; i < 4; ++i) Files.OpenRecentFile(i);
  EXPECT_TRUE(Dialogs.All.empty());
  EXPECT_TRUE(Messages.All.empty());
  EXPECT_EQ(Offers, 0);
  EXPECT_EQ(Recent.RecentSetupFiles[0], Path(u"gone.set"_s));
}

// Closing the program answers the question with its first button.
TEST_F(SetupFilesTest, OverwritesNothingWhenTheProgramEndsAtTheQuestion) {
  Put(u"pond.set"_s, "old");
  FakeMessageLoop loop(Link);
  SetupFiles files(
      {Link, Settings, Recent, Baseline, Messages, Dialogs, Time, Locale, u"/opt"_s, &loop},
      {[] {}, [] {}, [] { return false; }});
  Messages.Answers = {kYes};
  Messages.OnMessage = [&] { loop.End(); };
  Dialogs.Answers.push_back(Path(u"pond.set"_s));
  EXPECT_FALSE(files.SaveSetupFile());
  EXPECT_EQ(Messages.All, std::vector<Asked>{kOverwrite});
  EXPECT_EQ(Content(u"pond.set"_s), "old");
}

}  // namespace
}  // namespace tessmar::test
