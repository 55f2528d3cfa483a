#include "history/ImageImport.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>

#include "base/Fault.h"
#include "measure/LiveDisplay.h"
#include "support/FakeBlockSink.h"
#include "support/FakeMessageLoop.h"
#include "support/FakeOutside.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr std::size_t kConfiguration = 2112;
constexpr std::size_t kPage = 264;

/// An image file in the making: erased configuration and no data pages.
class Image {
 public:
  Image() : bytes_(kConfiguration, '\xFF') {}

  void Put(std::size_t offset, const std::string& bytes) {
    bytes_.replace(offset, bytes.size(), bytes);
  }

  /// Appends a page with count records of so many words, numbered on from the last; the rest of it
  /// is filled with a byte.
  void AddPage(int count, int words, char filler = '\xFF') {
    std::string page;
    for (int k = 0; k < count; ++k) {
      const int number = next_++;
      page += {static_cast<char>(number), static_cast<char>(number >> 8), 0, 0};
      for (int word = 0; word < words; ++word)
        page += {static_cast<char>(number), static_cast<char>(number >> 8)};
    }
    page.resize(kPage, filler);
    bytes_ += page;
  }

  void Append(const std::string& bytes) { bytes_ += bytes; }
  void Cut(std::size_t size) { bytes_.resize(size); }
  const std::string& Bytes() const { return bytes_; }

 private:
  std::string bytes_;
  int next_ = 1;
};

LinkState LinkWith(int analog, int pulse) {
  LinkState link;
  link.TrapErrors = true;
  link.AnalogChannelCount = static_cast<std::int16_t>(analog);
  link.PulseChannelCount = static_cast<std::int16_t>(pulse);
  return link;
}

TEST(ImportRefusal, RefusesNoChannelsAtAll) {
  EXPECT_EQ(ImportRefusal(0, 0),
            u"Error: you cannot have zero for both analog and digital channels"_s);
}

TEST(ImportRefusal, RefusesFiveAnalogChannelsNaming14Bytes) {
  EXPECT_EQ(ImportRefusal(5, 0),
            u"Error: the selected values for number of analog channels and number of digital "
            u"channels\r\nrequires 14 bytes for each record which is not a legal record size"_s);
}

TEST(ImportRefusal, TakesExactlyTheSizesThatDivideAPage) {
  for (int analog = 0; analog <= 8; ++analog) {
    for (int pulse = 0; pulse <= 2; ++pulse) {
      const int all = analog + pulse;
      const bool legal = all != 0 && all != 5 && all != 7 && all != 9;
      EXPECT_EQ(ImportRefusal(analog, pulse).isEmpty(), legal) << analog << "+" << pulse;
    }
  }
  EXPECT_TRUE(ImportRefusal(5, 2).contains(u"requires 18 bytes"_s));
  EXPECT_TRUE(ImportRefusal(8, 1).contains(u"requires 22 bytes"_s));
}

TEST(ReadImageConfiguration, JoinsItsTwoStretchesAndAZero) {
  Image file;
  std::string first(242, '\0');
  for (std::size_t i = 0; i < first.size(); ++i) first[i] = static_cast<char>(i);
  file.Put(8, first);
  file.Put(264, std::string(48, 'x'));
  QByteArray bytes = QByteArray::fromStdString(file.Bytes());
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::ReadOnly);
  const ConfigImage image = ReadImageConfiguration(buffer);
  ASSERT_EQ(image.size(), 291U);
  for (std::size_t i = 0; i < 242; ++i) ASSERT_EQ(image[i], i);
  for (std::size_t i = 242; i < 290; ++i) ASSERT_EQ(image[i], 'x');
  EXPECT_EQ(image[290], 0);
  EXPECT_EQ(buffer.pos(), 2112);
}

class ReadRecords : public testing::Test {
 protected:
  void Read(const Image& image, int analog, int pulse) {
    QByteArray bytes = QByteArray::fromStdString(image.Bytes().substr(kConfiguration));
    QBuffer file(&bytes);
    file.open(QIODevice::ReadOnly);
    ReadImageRecords(file, LinkWith(analog, pulse), buffer_, sink_);
  }
  // True when the buffer holds the records 1 to count.
  bool Holds(int count) const {
    if (buffer_.Count() != count) return false;
    for (int i = 0; i < count; ++i) {
      if (buffer_.Record(i).PackedTime != static_cast<std::uint32_t>(i + 1)) return false;
      if (buffer_.Record(i).Value[0] != i + 1) return false;
    }
    return true;
  }
  HistoryBuffer buffer_;
  test::FakeBlockSink sink_;
};

TEST_F(ReadRecords, TenRecordsOfTenChannelsFillAPage) {
  Image image;
  image.AddPage(10, 10, 'j');
  image.AddPage(3, 10);
  Read(image, 8, 2);
  EXPECT_TRUE(Holds(13));
  EXPECT_EQ(buffer_.Record(12).Value[9], 13);
}

TEST_F(ReadRecords, TwentyRecordsOfFourChannelsFillAPage) {
  Image image;
  image.AddPage(20, 4, 'j');
  image.AddPage(1, 4);
  Read(image, 3, 1);
  EXPECT_TRUE(Holds(21));
  EXPECT_EQ(buffer_.Record(20).Value[3], 21);
  EXPECT_EQ(buffer_.Record(20).Value[4], 0);
}

TEST_F(ReadRecords, FortyRecordsOfOnePulseChannelFillAPage) {
  Image image;
  image.AddPage(40, 1, 'j');
  image.AddPage(2, 1);
  Read(image, 0, 1);
  EXPECT_TRUE(Holds(42));
}

TEST_F(ReadRecords, AFirstPageThatIsErasedGivesNothing) {
  buffer_.Append(LiveSample{});
  Image image;
  image.AddPage(0, 10);
  image.AddPage(10, 10);
  Read(image, 8, 2);
  EXPECT_EQ(buffer_.Count(), 0);
}

TEST_F(ReadRecords, BytesBehindTheLastFullRecordAreSkipped) {
  Image image;
  image.AddPage(10, 10, '\0');
  image.AddPage(10, 10, '\0');
  image.AddPage(0, 10);
  Read(image, 8, 2);
  EXPECT_TRUE(Holds(20));
}

TEST_F(ReadRecords, OnlyFourBytesOf255EndTheWalk) {
  Image image;
  std::string page = std::string("\xFF\xFF\xFF\xFE", 4) + std::string(20, '\x01');
  page += std::string("\xFE\xFF\xFF\xFF", 4) + std::string(20, '\x02');
  page.resize(kPage, '\xFF');
  image.Append(page);
  Read(image, 8, 2);
  ASSERT_EQ(buffer_.Count(), 2);
  EXPECT_EQ(buffer_.Record(0).PackedTime, 0xFEFFFFFFU);
  EXPECT_EQ(buffer_.Record(1).PackedTime, 0xFFFFFFFEU);
  EXPECT_EQ(buffer_.Record(1).Value[9], 0x0202);
}

TEST_F(ReadRecords, WhatFollowsTheFirstErasedRecordIsNotRead) {
  Image image;
  image.AddPage(4, 10);
  image.AddPage(10, 10);
  Read(image, 8, 2);
  EXPECT_TRUE(Holds(4));
}

TEST_F(ReadRecords, AFileThatEndsBetweenPagesEndsTheWalk) {
  Image image;
  image.AddPage(10, 10, '\0');
  Read(image, 8, 2);
  EXPECT_TRUE(Holds(10));
}

TEST_F(ReadRecords, ACutRecordIsLeftOut) {
  Image whole;
  whole.AddPage(10, 10, '\0');
  for (std::size_t size = 0; size <= kPage; ++size) {
    Image image = whole;
    image.Cut(kConfiguration + size);
    Read(image, 8, 2);
    ASSERT_TRUE(Holds(std::min(static_cast<int>(size) / 24, 10))) << size;
  }
}

TEST_F(ReadRecords, AFullMemoryIsReadToItsLastPageAndNotBeyond) {
  Image image;
  for (int page = 8; page < 4097; ++page) image.AddPage(10, 10, '\0');
  Read(image, 8, 2);
  ASSERT_EQ(buffer_.Count(), 40880);
  EXPECT_EQ(buffer_.Record(40879).PackedTime, 40880U);
}

TEST_F(ReadRecords, StopsWhenTheBufferIsFull) {
  Image image;
  for (int page = 0; page < 5001; ++page) image.AddPage(60, 0, '\0');
  // Four bytes a record would be 245280 records.
  Read(image, 0, 0);
  EXPECT_TRUE(buffer_.IsFull());
}

TEST_F(ReadRecords, RecordsAreNeverRepaired) {
  Image image;
  image.Append(std::string("\xFF\xFF\xFF\x7F", 4) + std::string(20, '\xFF'));
  Read(image, 8, 2);
  ASSERT_EQ(buffer_.Count(), 1);
  EXPECT_EQ(buffer_.Record(0).Value[0], 65535);
}

class Import : public testing::Test {
 protected:
  Import() {
    link_.TrapErrors = true;
    link_.AnalogChannelCount = 8;
    link_.PulseChannelCount = 2;
    path_ = folder_.filePath(u"logger.bin"_s);
    choice_ = ImportChoice{3, 1, true, true};
  }

  void Store(const Image& image) {
    QFile file(path_);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(image.Bytes().data(), static_cast<qint64>(image.Bytes().size()));
  }

  void Run() {
    dialogs_.Answers = {path_};
    RunWithDialogs();
  }
  void RunWithDialogs() {
    ImageImport import(link_, settings_, display_, screen_, buffer_, sink_, messages_, dialogs_,
                       loop_, u"/opt/app"_s,
                       {[this]() -> std::optional<ImportChoice> { return choice_; },
                        [this] { Note("stop"); }, [this] { Note("start"); },
                        [this](bool mayProgram) {
                          Note(mayProgram ? "setup, may program" : "setup");
                          if (OnSetup) OnSetup();
                        },
                        [this] { Note("viewer"); }, [this] { Note("report"); }});
    messages_.OnMessage = [this] { Note("message"); };
    import.LoadLoggerImageFile();
  }
  void Note(const std::string& what) { events_.push_back(what); }

  QStringList Said() const {
    QStringList said;
    for (const auto& asked : messages_.All) said.append(asked.Prompt + u"/%1"_s.arg(asked.Buttons));
    return said;
  }

  QTemporaryDir folder_;
  QString path_;
  LinkState link_;
  LoggerSettings settings_;
  LiveRing ring_;
  test::FakeMainScreen screen_;
  SystemLocale locale_{QLocale(QLocale::English, QLocale::UnitedStates)};
  LiveDisplay display_{link_, settings_, ring_, screen_, locale_};
  HistoryBuffer buffer_;
  test::FakeBlockSink sink_;
  test::FakeMessages messages_;
  test::FakeFileDialogs dialogs_;
  test::FakeMessageLoop loop_{link_};
  std::optional<ImportChoice> choice_;
  std::function<void()> OnSetup;
  std::vector<std::string> events_;
};

using Events = std::vector<std::string>;

TEST_F(Import, TakesSettingsAndRecordsAndShowsThem) {
  Image image;
  std::string name = "Old Mill";
  name.resize(32, ' ');
  image.Put(8, name);
  image.AddPage(20, 4, '\0');
  image.AddPage(2, 4);
  Store(image);
  Run();
  EXPECT_EQ(events_, (Events{"stop", "setup", "message", "report", "viewer", "start"}));
  EXPECT_EQ(Said(), QStringList{u"22 records recovered/64"_s});
  EXPECT_EQ(buffer_.Count(), 22);
  EXPECT_EQ(link_.AnalogChannelCount, 3);
  EXPECT_EQ(link_.PulseChannelCount, 1);
  EXPECT_EQ(settings_.LoggerName, u"Old Mill"_s);
  EXPECT_EQ(screen_.Captions[u"lblLoggerName"_s], u"Old Mill"_s);
  EXPECT_TRUE(screen_.Captions.contains(u"lblWarmup"_s));
}

TEST_F(Import, TheDerivedChannelsKeepTheirDefaultsButForTheFirstField) {
  settings_.Do.PO2Channel = 5;
  settings_.Do.WaterTempChannel = 6;
  settings_.Do.EnableSalinityDisplay = 1;
  Image image;
  image.Put(8, std::string(242, '\0'));
  image.Put(264, std::string(48, '\0'));
  image.AddPage(1, 4);
  Store(image);
  Run();
  DoSettings expected = DoSettings::Defaults();
  expected.PO2Channel = 0;
  EXPECT_EQ(settings_.Do, expected);
}

TEST_F(Import, AsksForABinFileInTheFolderOfTheProgram) {
  Run();
  ASSERT_EQ(dialogs_.All.size(), 1U);
  EXPECT_EQ(dialogs_.All[0].Title, u"Load Logger Image File (.bin)"_s);
  EXPECT_EQ(dialogs_.All[0].InitialName, u"/opt/app/*.bin"_s);
  EXPECT_EQ(dialogs_.All[0].Filter, u"Binary Files (*.bin)|*.bin"_s);
  EXPECT_EQ(dialogs_.All[0].DefaultExtension, u".bin"_s);
}

TEST_F(Import, ACancelledSetupDialogChangesNothing) {
  choice_.reset();
  Run();
  EXPECT_TRUE(events_.empty());
  EXPECT_EQ(link_.AnalogChannelCount, 8);
  EXPECT_TRUE(dialogs_.All.empty());
}

TEST_F(Import, ACancelledFileDialogChangesTheCountsOnly) {
  buffer_.Append(LiveSample{});
  RunWithDialogs();
  EXPECT_EQ(events_, Events{"start"});
  EXPECT_EQ(link_.AnalogChannelCount, 3);
  EXPECT_EQ(link_.PulseChannelCount, 1);
  EXPECT_EQ(buffer_.Count(), 1);
  EXPECT_TRUE(messages_.All.empty());
}

TEST_F(Import, WithoutAConnectionTheSetupScreenMayNotProgram) {
  Image image;
  image.AddPage(1, 4);
  Store(image);
  Run();
  EXPECT_EQ(events_[1], "setup");
  events_.clear();
  link_.Connected = true;
  Run();
  EXPECT_EQ(events_[1], "setup, may program");
}

TEST_F(Import, WithoutTheTicksNeitherSetupNorViewerOpensAndTheRecordsStay) {
  choice_->LaunchSetup = false;
  choice_->LaunchHistory = false;
  Image image;
  image.AddPage(5, 4);
  Store(image);
  Run();
  EXPECT_EQ(events_, (Events{"stop", "message", "report", "start"}));
  EXPECT_EQ(buffer_.Count(), 5);
}

TEST_F(Import, TheCountsAsTheyStandAfterTheSetupScreenShapeTheRecords) {
  OnSetup = [this] {
    link_.AnalogChannelCount = 8;
    link_.PulseChannelCount = 2;
  };
  Image image;
  image.AddPage(10, 10, '\0');
  image.AddPage(0, 10);
  Store(image);
  Run();
  EXPECT_EQ(buffer_.Count(), 10);
}

// The setup screen frees the link when it opens and takes it when it closes, for the main window's
// reading of the logger, which does not follow here.
TEST_F(Import, LeavesTheLinkHeldOrFreeAsItWasAheadOfTheSetupScreen) {
  Image image;
  image.AddPage(1, 4);
  Store(image);
  OnSetup = [this] { link_.Busy = true; };
  Run();
  EXPECT_FALSE(link_.Busy);
  link_.Busy = true;
  OnSetup = [this] { link_.Busy = false; };
  Run();
  EXPECT_TRUE(link_.Busy);
}

TEST_F(Import, NoRecordsIsSaid) {
  Image image;
  image.AddPage(0, 4);
  Store(image);
  Run();
  EXPECT_EQ(Said(), QStringList{u"No records recovered!/64"_s});
  EXPECT_EQ(events_, (Events{"stop", "setup", "message", "report", "start"}));
}

TEST_F(Import, AFileOfTheConfigurationAloneHasNoRecords) {
  Store(Image());
  Run();
  EXPECT_EQ(Said(), QStringList{u"No records recovered!/64"_s});
}

TEST_F(Import, AWholeMemoryOfSmallRecordsIsTaken) {
  choice_ = ImportChoice{0, 1, false, false};  // 40 records a page, 163520 in all
  Image image;
  for (int page = 8; page < 4096; ++page) image.AddPage(40, 1, '\0');
  Store(image);
  Run();
  EXPECT_EQ(Said(), QStringList{u"163520 records recovered/64"_s});
}

TEST_F(ReadRecords, EachPageWithRecordsIsKeptAsABlock) {
  Image image;
  image.AddPage(10, 10, 'j');
  image.AddPage(3, 10);
  Read(image, 8, 2);
  ASSERT_EQ(sink_.Blocks.size(), 2U);
  ASSERT_EQ(sink_.Blocks[0].size(), 241U);
  EXPECT_EQ(sink_.Blocks[0][0], 10);
  const std::string bytes = image.Bytes();
  for (std::size_t i = 0; i < 240; ++i) {
    ASSERT_EQ(sink_.Blocks[0][1 + i], static_cast<std::uint8_t>(bytes[kConfiguration + i]));
    ASSERT_EQ(sink_.Blocks[1][1 + i], static_cast<std::uint8_t>(bytes[kConfiguration + kPage + i]));
  }
  EXPECT_EQ(sink_.Blocks[1][0], 3);
}

TEST_F(Import, TellsWhatItKeepsFromTheFirstPageToTheEnd) {
  Image image;
  image.AddPage(20, 4);
  image.AddPage(2, 4);
  Store(image);
  Run();
  EXPECT_EQ(sink_.Log, (std::vector<std::string>{"begin", "block", "block", "end"}));
  EXPECT_EQ(sink_.Starts.at(0).Kind, UploadKind::Image);
  EXPECT_TRUE(sink_.Starts.at(0).Source.endsWith(u".bin"_s));
  EXPECT_EQ(sink_.Ends.at(0), UploadEnd::Complete);
}

TEST_F(Import, AFullBufferIsSaidBeforeTheRecordsAre) {
  choice_->LaunchHistory = false;
  OnSetup = [this] {
    link_.AnalogChannelCount = 0;
    link_.PulseChannelCount = 0;
  };
  Image image;
  for (int page = 8; page < 4096; ++page) image.AddPage(60, 0, '\0');
  Store(image);
  Run();
  EXPECT_EQ(Said(), (QStringList{u"History buffer full: upload terminated./64"_s,
                                 u"200000 records recovered/64"_s}));
}

TEST_F(Import, AFileShorterThanTheConfigurationCannotBeRead) {
  for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{2111}}) {
    messages_.All.clear();
    events_.clear();
    Image image;
    image.Cut(size);
    Store(image);
    buffer_.Clear();
    Run();
    EXPECT_EQ(Said(), QStringList{u"Error Loading Image File/48"_s}) << size;
    EXPECT_EQ(events_, (Events{"message", "start"})) << size;
    EXPECT_EQ(settings_, LoggerSettings()) << size;
  }
}

TEST_F(Import, AFileThatIsNotThereAFolderAndAnUnreadableFileCannotBeRead) {
  Image image;
  image.AddPage(1, 4);
  Store(image);
  const QString noise = folder_.filePath(u"gone.bin"_s);
  for (const QString& path : {noise, folder_.path(), u"/proc/self/mem"_s}) {
    messages_.All.clear();
    path_ = path;
    Run();
    EXPECT_EQ(Said(), QStringList{u"Error Loading Image File/48"_s}) << path.toStdString();
    EXPECT_EQ(events_.back(), "start");
  }
}

TEST_F(Import, APipeAndADeviceAreRefusedAndNotWaitedFor) {
  const QString pipe = folder_.filePath(u"pipe"_s);
  ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  for (const QString& path : {pipe, u"/dev/zero"_s, u"/dev/ptmx"_s}) {
    messages_.All.clear();
    path_ = path;
    Run();
    EXPECT_EQ(Said(), QStringList{u"Error Loading Image File/48"_s}) << path.toStdString();
  }
}

TEST_F(Import, AFileThatIsNoImageEndsInRecordsOrInAMessage) {
  Image text;
  text.Cut(0);
  for (int line = 0; line < 2000; ++line) text.Append("this is no image of any logger\n");
  Store(text);
  Run();
  // Behind the configuration 59888 bytes: 226 pages of 20 records, and 18 in the last 224 bytes.
  EXPECT_EQ(Said(), QStringList{u"4538 records recovered/64"_s});
  EXPECT_EQ(events_.back(), "start");
}

TEST_F(Import, OpensNoViewerWhenTheProgramEndsInTheSetupScreen) {
  OnSetup = [this] { loop_.End(); };
  Image image;
  image.AddPage(1, 4);
  Store(image);
  Run();
  EXPECT_EQ(events_, (Events{"stop", "setup", "message", "start"}));
}

TEST_F(Import, AFaultPassesThroughWhenFaultsAreNotTrappedAndTimer1RunsAgain) {
  link_.TrapErrors = false;
  path_ = folder_.filePath(u"gone.bin"_s);
  EXPECT_THROW(Run(), FileFault);
  EXPECT_EQ(events_, Events{"start"});
}

}  // namespace
}  // namespace tessmar
