// The program itself, on a real pseudo-terminal.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <array>
#include <csignal>

#include "HexBytes.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

constexpr int kGenerousMs = 20'000;

/// The far end of the line, as a program would open it.
class FarEnd {
 public:
  explicit FarEnd(const QString& path)
      : descriptor_(open(QFile::encodeName(path).constData(), O_RDWR | O_NOCTTY)) {}
  ~FarEnd() { close(descriptor_); }
  FarEnd(const FarEnd&) = delete;
  FarEnd& operator=(const FarEnd&) = delete;

  /// Writes a request and reads an answer of so many bytes.
  std::string Ask(std::string_view request, std::size_t size) const {
    const std::vector<std::uint8_t> bytes = Hex(request);
    if (write(descriptor_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
      return "not written";
    std::vector<std::uint8_t> answer;
    pollfd wait{descriptor_, POLLIN, 0};
    while (answer.size() < size && poll(&wait, 1, kGenerousMs) > 0) {
      std::array<std::uint8_t, 512> part{};
      const ssize_t count = read(descriptor_, part.data(), part.size());
      if (count <= 0) break;
      answer.insert(answer.end(), part.begin(), part.begin() + count);
    }
    return Text(answer);
  }

 private:
  int descriptor_;
};

class SimulatorProgram : public testing::Test {
 protected:
  ~SimulatorProgram() override {
    if (program_.state() == QProcess::NotRunning) return;
    program_.kill();
    program_.waitForFinished(kGenerousMs);
  }

  /// Runs the program to its end. @return its exit code.
  int Run(const QStringList& arguments) {
    program_.start(QStringLiteral(TESSMAR_SIM), arguments);
    EXPECT_TRUE(program_.waitForFinished(kGenerousMs));
    return program_.exitCode();
  }

  void Serve(const QStringList& more = {}) {
    program_.start(QStringLiteral(TESSMAR_SIM), QStringList{u"--link"_s, Link()} + more);
    while (!program_.canReadLine() && program_.waitForReadyRead(kGenerousMs)) continue;
    ASSERT_EQ(program_.readLine(), "ready: " + Link().toUtf8() + "\n");
  }

  void End() {
    program_.terminate();
    ASSERT_TRUE(program_.waitForFinished(kGenerousMs));
    EXPECT_EQ(program_.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program_.exitCode(), 0);
  }

  QString Link() const { return folder_.filePath(u"line"_s); }

  QTemporaryDir folder_;
  QProcess program_;
};

TEST_F(SimulatorProgram, ServesALoggerUntilItIsEnded) {
  Serve();
  {
    const FarEnd line(Link());
    EXPECT_EQ(line.Ask("55", 1), "54");
    EXPECT_EQ(line.Ask("54", 1), "4D");
    EXPECT_EQ(line.Ask("4D", 1), "FC");
    EXPECT_EQ(line.Ask(kAskVersion, 14), "FA F8 0A 15 08 02 00 D0 00 00 00 71 D1 F9");
  }
  EXPECT_TRUE(QFileInfo(Link()).isSymLink());
  End();
  EXPECT_FALSE(QFileInfo(Link()).isSymLink());
}

TEST_F(SimulatorProgram, AddsRecordsOnASignal) {
  Serve({u"--records"_s, u"5"_s, u"--records-on-signal"_s, u"300"_s});
  const FarEnd line(Link());
  EXPECT_EQ(line.Ask(kAskStatus, 11).substr(0, 14), "FA F8 07 05 00");
  kill(static_cast<pid_t>(program_.processId()), SIGUSR1);
  // The signal and the next request come by different ways.
  std::string answer;
  for (int tries = 0; tries < 1000 && answer != "FA F8 07 31 01"; ++tries) {
    answer = line.Ask(kAskStatus, 11).substr(0, 14);
  }
  EXPECT_EQ(answer, "FA F8 07 31 01");
}

TEST_F(SimulatorProgram, PassesEveryByteValueUnchanged) {
  Serve();
  const FarEnd line(Link());
  // Bytes that a terminal would translate or act on: 03, 0A, 0D, 11, 13, 1A, 7F.
  EXPECT_EQ(line.Ask("F8 12 07 A7 7A 00 02 08 02 03 0A 0D 11 13 1A 7F FF 00 15 62 F9", 1), "FA");
  EXPECT_EQ(line.Ask("F8 07 08 00 02 00 09 80 07 F9", 18),
            "FA F8 0E 00 02 00 03 0A 0D 11 13 1A 7F FF 00 B2 45 F9");
}

TEST_F(SimulatorProgram, SurvivesThatThePortIsClosedAndReopened) {
  Serve();
  for (int time = 0; time < 5; ++time) {
    const FarEnd line(Link());
    EXPECT_EQ(line.Ask(kAskCommit, 2), "FA FC");
  }
}

TEST_F(SimulatorProgram, ReplacesALinkThatIsThereButNotAFile) {
  ASSERT_TRUE(QFile::link(u"/nowhere"_s, Link()));
  Serve();
  End();
  QFile file(Link());
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.close();
  EXPECT_EQ(Run({u"--link"_s, Link()}), 1);
  EXPECT_TRUE(program_.readAllStandardError().contains("File exists"));
  EXPECT_TRUE(QFileInfo(Link()).isFile());
}

TEST_F(SimulatorProgram, FailsOnDemand) {
  Serve({u"--fault"_s, u"corrupt-check:1"_s});
  const FarEnd line(Link());
  EXPECT_EQ(line.Ask(kAskVersion, 14), "FA F8 0A 15 08 02 00 D0 00 00 00 70 D1 F9");
  EXPECT_EQ(line.Ask(kAskVersion, 14), "FA F8 0A 15 08 02 00 D0 00 00 00 71 D1 F9");
}

TEST_F(SimulatorProgram, PutsAModemAheadAndHangsUpWhenThePortIsClosed) {
  Serve({u"--modem"_s, u"--modem-delay"_s, u"0"_s, u"--modem-dial-time"_s, u"0"_s,
         u"--modem-echo"_s, u"off"_s});
  for (int time = 0; time < 2; ++time) {
    const FarEnd line(Link());
    EXPECT_EQ(line.Ask("41 54 5A 0D", 6), "0D 0A 4F 4B 0D 0A");
    EXPECT_EQ(line.Ask("41 54 44 54 31 0D", 11), "0D 0A 43 4F 4E 4E 45 43 54 0D 0A");
    EXPECT_EQ(line.Ask("55", 1), "54");
  }
}

TEST_F(SimulatorProgram, WritesAnImageFileAndEnds) {
  const QString path = folder_.filePath(u"flash.bin"_s);
  EXPECT_EQ(Run({u"--image"_s, path, u"--records"_s, u"30"_s}), 0);
  EXPECT_EQ(QFileInfo(path).size(), 4096 * 264);
}

TEST_F(SimulatorProgram, RefusesWrongOptionsWithExitCodeTwo) {
  EXPECT_EQ(Run({u"--analog"_s, u"9"_s}), 2);
  EXPECT_EQ(program_.readAllStandardError(),
            "tessmar-sim: --analog: a number from 1 to 8 is wanted, not \"9\"\n");
  EXPECT_EQ(Run({u"--bogus"_s}), 2);
  EXPECT_EQ(Run({}), 2);
}

TEST_F(SimulatorProgram, ReportsAFolderThatIsNotThere) {
  EXPECT_EQ(Run({u"--link"_s, u"/missing/line"_s}), 1);
  EXPECT_TRUE(
      program_.readAllStandardError().startsWith("tessmar-sim: /missing/line: No such file"));
}

TEST_F(SimulatorProgram, WarnsOfRecordsThatDoNotFillABlock) {
  EXPECT_EQ(Run({u"--image"_s, folder_.filePath(u"flash.bin"_s), u"--analog"_s, u"7"_s}), 0);
  EXPECT_TRUE(program_.readAllStandardError().contains("22 bytes a record"));
}

TEST_F(SimulatorProgram, ShowsItsHelp) {
  EXPECT_EQ(Run({u"--help"_s}), 0);
  EXPECT_TRUE(program_.readAllStandardOutput().contains("--fault"));
}

}  // namespace
}  // namespace tessmar::test
