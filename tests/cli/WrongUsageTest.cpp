// Every command, every option, and what cannot be: exit status 2, one line, nothing asked of a
// logger and nothing written.

#include <QDir>

#include "cli/CommandRig.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class WrongUsageTest : public CommandRig {
 protected:
  /// The command's own example, which is right, with files that are there.
  QStringList Right(const CommandRow& row) {
    QStringList arguments = QString::fromUtf16(row.Example).split(u' ').mid(1);
    for (QString& argument : arguments) {
      if (argument.endsWith(".set"_L1) || argument.endsWith(".bin"_L1))
        argument = File("there.set");
      if (argument.endsWith(".csv"_L1) || argument.endsWith(".nc"_L1)) argument = File("a.csv");
    }
    return arguments;
  }

  void Expect2(const QStringList& arguments) {
    const std::string line = arguments.join(u' ').toStdString();
    EXPECT_EQ(Run(arguments), 2) << line;
    EXPECT_EQ(Out(), QString()) << line;
    EXPECT_EQ(Words().count(u'\n'), 1) << line << Words().toStdString();
    EXPECT_TRUE(Words().startsWith(u"tessmar: "_s)) << line;
    EXPECT_EQ(Port.Opened, 0) << line;
    EXPECT_FALSE(QFile::exists(File("a.csv"))) << line;
    EXPECT_FALSE(QFile::exists(File("archive.sqlite"))) << line;
  }
};

TEST_F(WrongUsageTest, NoCommandTakesAnOptionThatIsNotItsOwn) {
  WriteFile(File("there.set"), "LoggerName=A\n");
  int refused = 0;
  for (const CommandRow& row : CommandRows()) {
    for (const OptionRow& option : OptionRows()) {
      if ((row.Options & option.Option) != 0) continue;
      QStringList arguments = Right(row) << u"--"_s + QString::fromUtf16(option.Name);
      if (*option.ValueName != u'\0') arguments << u"5"_s;
      Expect2(arguments);
      ++refused;
    }
    Expect2(Right(row) << u"--frobnicate"_s);
    Expect2(Right(row) << u"-x"_s);
  }
  EXPECT_GT(refused, 100);
}

TEST_F(WrongUsageTest, NoOptionTakesAValueThatCannotBe) {
  WriteFile(File("there.set"), "LoggerName=A\n");
  const QStringList noNumbers{
      u"many"_s,  u""_s, u"-1"_s, u"1.5"_s, u"1e3"_s, u"0x10"_s, u"99999999999999999999"_s,
      u"\u0663"_s};
  int refused = 0;
  for (const CommandRow& row : CommandRows()) {
    for (const OptionRow& option : OptionRows()) {
      if ((row.Options & option.Option) == 0) continue;
      const QString name = u"--"_s + QString::fromUtf16(option.Name);
      const QString value = QString::fromUtf16(option.ValueName);
      if (value.isEmpty()) {
        Expect2(Right(row) << name + u"=5"_s);
        continue;
      }
      Expect2(Right(row) << name);
      Expect2(Right(row) << name + u'=');
      if (value == "N"_L1 || value == "S"_L1) {
        for (const QString& wrong : noNumbers) Expect2(Right(row) << name + u'=' + wrong);
      } else {
        Expect2(Right(row) << name << u"--json"_s);
      }
      ++refused;
    }
  }
  EXPECT_GT(refused, 20);
}

TEST_F(WrongUsageTest, NoNumberIsBeyondItsRange) {
  WriteFile(File("there.set"), "LoggerName=A\n");
  struct Row {
    const char16_t* Option;
    QStringList Values;
  };
  const Row rows[] = {{u"baud", {u"0"_s, u"1200"_s, u"38401"_s, u"230400"_s}},
                      {u"every", {u"0"_s, u"1"_s, u"86401"_s}},
                      {u"count", {u"0"_s, u"1000000001"_s}},
                      {u"analog", {u"9"_s}},
                      {u"pulse", {u"3"_s}},
                      {u"style", {u"netcdf"_s, u"VIEWER"_s}}};
  for (const CommandRow& row : CommandRows()) {
    for (const Row& wrong : rows) {
      const auto option = std::ranges::find_if(OptionRows(), [&](const OptionRow& o) {
        return std::u16string_view(o.Name) == wrong.Option;
      });
      ASSERT_NE(option, OptionRows().end());
      if ((row.Options & option->Option) == 0) continue;
      for (const QString& value : wrong.Values)
        Expect2(Right(row) << u"--"_s + QString::fromUtf16(wrong.Option) << value);
    }
  }
}

TEST_F(WrongUsageTest, EveryCommandWantsItsOperands) {
  WriteFile(File("there.set"), "LoggerName=A\n");
  for (const CommandRow& row : CommandRows()) {
    const QStringList right = Right(row);
    Expect2(right + QStringList{u"more"_s, u"and more"_s});
    if (row.OperandCount == 0) continue;
    const qsizetype words = QString::fromUtf16(row.Words).count(u' ') + 1;
    Expect2(right.first(words));
    QStringList empty = right;
    empty[words] = QString();
    Expect2(empty);
  }
}

TEST_F(WrongUsageTest, WhatIsNoCommandIsNone) {
  for (const QStringList& arguments :
       {QStringList{}, QStringList{u""_s}, QStringList{u"frobnicate"_s}, QStringList{u"Status"_s},
        QStringList{u"settings"_s}, QStringList{u"settings"_s, u"steal"_s},
        QStringList{u"archive"_s}, QStringList{u"settings get"_s, u"COM5"_s, u"a.set"_s},
        QStringList{u"--json"_s, u"status"_s, u"COM5"_s}, QStringList{u"get"_s, u"settings"_s}})
    Expect2(arguments);
}

TEST_F(WrongUsageTest, FilesThatAreNotThereAreNone) {
  WriteFile(File("there.set"), "LoggerName=A\n");
  WriteFile(File("there.bin"), QByteArray(264 * 8, '\0'));
  QDir(Folder.path()).mkdir(u"folder.set"_s);
  QDir(Folder.path()).mkdir(u"folder.bin"_s);
  const QStringList counts{u"--analog"_s, u"8"_s, u"--pulse"_s, u"2"_s};
  const QString there = File("there.set");
  const QString missing = File("missing.sqlite");
  for (const QStringList& arguments :
       {QStringList{u"settings"_s, u"put"_s, u"COM9"_s, File("missing.set"), u"--yes"_s},
        QStringList{u"settings"_s, u"put"_s, u"COM9"_s, File("nowhere/a.set"), u"--yes"_s},
        QStringList{u"settings"_s, u"put"_s, u"COM9"_s, File("folder.set"), u"--yes"_s},
        QStringList{u"settings"_s, u"put"_s, u"COM9"_s, u"/dev/zero"_s, u"--yes"_s},
        QStringList{u"settings"_s, u"diff"_s, there, File("missing.set")},
        QStringList{u"settings"_s, u"diff"_s, File("missing.set"), there},
        QStringList{u"settings"_s, u"diff"_s, there, File("folder.set")},
        QStringList{u"settings"_s, u"diff"_s, there, u"nowhere"_s},
        QStringList{u"settings"_s, u"diff"_s, there, File("missing.bin")} + counts,
        QStringList{u"settings"_s, u"diff"_s, there, File("folder.bin")} + counts,
        QStringList{u"settings"_s, u"diff"_s, there, File("there.bin")},
        QStringList{u"settings"_s, u"diff"_s, there, File("there.bin"), u"--analog"_s, u"5"_s,
                    u"--pulse"_s, u"0"_s},
        QStringList{u"convert"_s, File("missing.bin"), File("a.csv")} + counts,
        QStringList{u"convert"_s, File("folder.bin"), File("a.csv")} + counts,
        QStringList{u"convert"_s, u"/dev/zero"_s, File("a.csv")} + counts,
        QStringList{u"convert"_s, File("there.bin"), File("a.csv")},
        QStringList{u"convert"_s, File("there.bin"), File("a.txt")} + counts,
        QStringList{u"archive"_s, u"list"_s, u"--archive"_s, missing},
        QStringList{u"archive"_s, u"show"_s, u"1"_s, u"--archive"_s, missing},
        QStringList{u"archive"_s, u"check"_s, u"--archive"_s, missing},
        QStringList{u"archive"_s, u"export"_s, u"1"_s, File("a.csv"), u"--archive"_s, missing}})
    Expect2(arguments);
}

TEST_F(WrongUsageTest, WhatIsNoPortIsNone) {
  WriteFile(File("file"), "");
  for (const QString& port : {u"5"_s, u"COM"_s, u"COM0"_s, u"COM05"_s, u"COM99999"_s, u"COM5x"_s,
                              u"COM5\n"_s, u"ttyUSB0"_s, File("file"), Folder.path()}) {
    for (const QStringList& words :
         {QStringList{u"status"_s}, QStringList{u"sample"_s}, QStringList{u"upload"_s},
          QStringList{u"clock"_s}, QStringList{u"clear"_s, u"--yes"_s}})
      Expect2(words + QStringList{port});
    Expect2({u"settings"_s, u"get"_s, port, File("b.set")});
  }
}

TEST_F(WrongUsageTest, ConsentIsAsked) {
  WriteFile(File("there.set"), "LoggerName=A\n");
  Expect2({u"clear"_s, u"COM9"_s});
  Expect2({u"settings"_s, u"put"_s, u"COM9"_s, File("there.set")});
}

TEST_F(WrongUsageTest, IsSaidInGermanToo) {
  SetTextLanguage(kLanguageGerman);
  Run({u"status"_s, u"COM9"_s, u"--every"_s});
  EXPECT_EQ(Words(),
            u"tessmar: --every ist keine Option von \"tessmar status\"; \"tessmar status --help\" "
            u"zeigt sie\n"_s);
  Run({u"status"_s, u"COM9"_s, u"--baud"_s});
  EXPECT_EQ(Words(), u"tessmar: --baud: ein Wert wird gebraucht\n"_s);
  Run({u"status"_s, u"COM9"_s, u"--json=1"_s});
  EXPECT_EQ(Words(), u"tessmar: --json nimmt keinen Wert\n"_s);
  SetTextLanguage(kLanguageEnglish);
}

}  // namespace
}  // namespace tessmar::test
