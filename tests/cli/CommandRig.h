#pragma once

#include <gtest/gtest.h>

#include <QBuffer>
#include <QTemporaryDir>
#include <memory>

#include "base/TextTable.h"
#include "cli/Commands.h"
#include "sim/SimulatedLogger.h"
#include "support/FakeMessageLoop.h"
#include "support/FakeOutside.h"
#include "support/FakeSerialPort.h"
#include "support/SimulatedLine.h"

namespace tessmar::test {

/// The command with the simulated logger on its line, in virtual time. COM9 is the line.
class CommandRig : public testing::Test {
 protected:
  CommandRig() {
    SetTextLanguage(kLanguageEnglish);
    Use({});
    qputenv("TESSMAR_ARCHIVE", QFile::encodeName(File("archive.sqlite")));
    OutBuffer.open(QIODevice::ReadWrite);
    WordsBuffer.open(QIODevice::ReadWrite);
  }

  void Use(const sim::LoggerOptions& options) {
    Wire.reset();
    Logger = std::make_unique<sim::SimulatedLogger>(options);
    Wire = std::make_unique<SimulatedLine>(Port, Loop, *Logger);
  }

  /// Runs "tessmar" with these arguments. @return its exit status; Out and Words hold what it
  /// wrote.
  int Run(const QStringList& arguments) {
    OutBuffer.buffer().clear();
    OutBuffer.seek(0);
    WordsBuffer.buffer().clear();
    WordsBuffer.seek(0);
    Output output(OutBuffer, WordsBuffer, IsTerminal);
    CommandEnvironment environment{.Out = output,
                                   .Loop = Loop,
                                   .Time = Clock,
                                   .Locale = Locale,
                                   .Log = Log,
                                   .Ports = PortMap(QStringLiteral("COM9=/dev/null")),
                                   .StorePath = File("store.ini"),
                                   .MakePort =
                                       [this](const PortMap&) {
                                         // The port is the rig's, and stays.
                                         return std::shared_ptr<SerialPort>(&Port, [](auto*) {});
                                       },
                                   .StopWanted = [this] { return StopWanted; }};
    Loop.OnTick = [this, &environment] {
      if (AtEachTick) AtEachTick();
      if (environment.OnTick) environment.OnTick();
    };
    Environment = &environment;
    const int status = RunCommand(environment, QStringList{QStringLiteral("tessmar")} + arguments);
    Environment = nullptr;
    Loop.OnTick = [] {};
    return status;
  }

  QString Out() const { return QString::fromUtf8(OutBuffer.data()); }
  QString Words() const { return QString::fromUtf8(WordsBuffer.data()); }

  QString File(const char* name) const { return Folder.filePath(QLatin1StringView(name)); }
  void WriteFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
  }
  QByteArray ReadFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
  }

  QTemporaryDir Folder;
  LinkState Unused;
  FakeMessageLoop Loop{Unused};
  FakeSerialPort Port;
  FakeClock Clock;
  SupportLog Log{File("tessmar.log"), Clock};
  SystemLocale Locale{QLocale(QLocale::English, QLocale::UnitedStates)};
  std::unique_ptr<sim::SimulatedLogger> Logger;
  std::unique_ptr<SimulatedLine> Wire;
  bool IsTerminal = false;
  bool StopWanted = false;
  std::function<void()> AtEachTick;
  CommandEnvironment* Environment = nullptr;  ///< While a command runs.

 private:
  QBuffer OutBuffer;
  QBuffer WordsBuffer;
};

}  // namespace tessmar::test
