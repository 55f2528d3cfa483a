#include "session/IniSection.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <random>

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

const QByteArray kSection("Configuration");

TEST(IniSection, ReadsTheLinesOfItsSection) {
  const IniValues values = ReadIniSection(
      "Port=stray\n[Other]\nPort=no\n[Configuration]\r\n; a note\n Port = COM3 ; the bench\n"
      "Quoted=\" a;b \"\nList=01234, ext 5\nNo sign\nEmpty=\nPath=C:\\\\x\\x41\\101\nPort=COM4\n",
      kSection);
  EXPECT_EQ(values, (IniValues{{u"Port"_s, u"COM4"_s},
                               {u"Quoted"_s, u" a;b "_s},
                               {u"List"_s, u"01234, ext 5"_s},
                               {u"Empty"_s, u""_s},
                               {u"Path"_s, u"C:\\xAA"_s}}));
}

TEST(IniSection, PutsValuesInAndLeavesEveryOtherLine) {
  EXPECT_EQ(
      WithIniSection("; mine\n[Configuration]\nLanguage=7\nPort=COM1 ; old\n\n[Other]\nPort=x\n",
                     kSection, {{u"Port"_s, u"a;b"_s}, {u"New"_s, u"@x"_s}}),
      "; mine\n[Configuration]\nLanguage=7\nPort=\"a;b\"; old\nNew=@@x\n\n[Other]\nPort=x\n");
  EXPECT_EQ(WithIniSection("[Other]\nPort=x", kSection, {{u"Port"_s, u"y"_s}}),
            "[Other]\nPort=x\n\n[Configuration]\nPort=y\n");
  EXPECT_EQ(WithIniSection("", kSection, {{u"B"_s, u"1"_s}, {u"A"_s, u""_s}}),
            "[Configuration]\nA=\nB=1\n");
}

// A vertical tab and a form feed are white space elsewhere.
TEST(IniSection, LeavesWhatStandsAtTheEndOfTheLastLine) {
  EXPECT_EQ(WithIniSection("[Other]\nkey=1\v", "Configuration", {{u"Port"_s, u"COM9"_s}}),
            "[Other]\nkey=1\v\n\n[Configuration]\nPort=COM9\n");
  EXPECT_EQ(
      WithIniSection("\n[Other]\r\nkey=1 \f \t\r\n\n", "Configuration", {{u"Port"_s, u"COM9"_s}}),
      "\n[Other]\r\nkey=1 \f\n\n[Configuration]\nPort=COM9\n");
}

// At the beginning of the file it would be none of the line's characters.
TEST(IniSection, LeavesAByteOrderMarkBehindAnEmptyLineWhereItIs) {
  const QByteArray file("\n\xEF\xBB\xBF[Configuration]\nDirectPort=COM3\n");
  const IniValues values{{u"DirectPort"_s, u"COM7"_s}};
  const QByteArray once = WithIniSection(file, "Configuration", values);
  EXPECT_TRUE(once.startsWith(file)) << once.constData();
  EXPECT_EQ(ReadIniSection(once, "Configuration"), values);
  EXPECT_EQ(WithIniSection(once, "Configuration", values), once);
}

// Such a mark comes along unseen with what is pasted, at the beginning or behind any other piece.
TEST(IniSection, KeepsAByteOrderMarkInAText) {
  const IniValues values{{u"Number"_s, u"\uFEFF0100"_s}, {u"Path"_s, u"a\n\uFEFFb,\uFEFFc"_s}};
  const QByteArray merged = WithIniSection("[Other]\nPort=x\n", kSection, values);
  EXPECT_EQ(ReadIniSection(merged, kSection), values);
  EXPECT_EQ(ReadIniSection(merged, "Other"), (IniValues{{u"Port"_s, u"x"_s}}));
}

TEST(IniSection, KeepsANulAndWhatLooksLikeAType) {
  const IniValues values{{u"I"_s, u"@Invalid()"_s},
                         {u"N"_s, u"a"_s + QChar(QChar::Null) + u"7b-7"_s},
                         {u"T"_s, u"@String(x)"_s}};
  const QByteArray bytes = WithIniSection("", kSection, values);
  EXPECT_EQ(bytes, "[Configuration]\nI=@@Invalid()\nN=@String(a\\0\\x37\\x62-7)\nT=@@String(x)\n");
  EXPECT_EQ(ReadIniSection(bytes, kSection), values);
}

TEST(IniSection, ReadsTypesAsTextsAndLinesThatGoOn) {
  EXPECT_EQ(ReadIniSection("[Configuration\nA=@Invalid()\nB=@ByteArray(x y)\nC=@Variant(z)\n"
                           "D=a\\\r\nb\nE=@String(q\nF=a\\\nb",
                           kSection),
            (IniValues{{u"A"_s, u""_s},
                       {u"B"_s, u"x y"_s},
                       {u"C"_s, u"@Variant(z)"_s},
                       {u"D"_s, u"ab"_s},
                       {u"E"_s, u"@String(q"_s},
                       {u"F"_s, u"ab"_s}}));
}

TEST(IniSection, GivesUpAFileFromWhichItCouldNotReadAgain) {
  EXPECT_EQ(
      WithIniSection("a=\"never closed\n[Configuration]\nA=1\n", kSection, {{u"A"_s, u"2"_s}}),
      "[Configuration]\nA=2\n");
}

/// Texts of all that is odd in such a file.
class OddTexts {
 public:
  QString Next() {
    const QString pieces = u"ab7F0 \t,;=\"\\@()[]%\n\r\x01\x1f\x7fäÖ水°'?#x"_s;
    QString text;
    const auto size = luck_() % 12;
    for (std::uint32_t i = 0; i < size; ++i)
      text += pieces[static_cast<qsizetype>(luck_() % static_cast<std::uint32_t>(pieces.size()))];
    if (luck_() % 20 == 0) text += QString::fromUcs4(U"\U0001F41F");
    return text;
  }

 private:
  std::mt19937 luck_{2026};
};

class IniSectionAndQSettings : public testing::Test {
 protected:
  QString NewPath() { return folder_.filePath(QString::number(++files_)); }
  QTemporaryDir folder_;
  int files_ = 0;
};

TEST_F(IniSectionAndQSettings, ReadsWhatQSettingsWrote) {
  OddTexts texts;
  for (int i = 0; i < 100; ++i) {
    IniValues values;
    const QString path = NewPath();
    {
      QSettings settings(path, QSettings::IniFormat);
      settings.beginGroup(QString::fromLatin1(kSection));
      for (int key = 0; key < 40; ++key) {
        const QString name = u"Key%1"_s.arg(key);
        values[name] = texts.Next();
        settings.setValue(name, values[name]);
      }
    }
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const IniValues read = ReadIniSection(file.readAll(), kSection);
    for (auto value = values.cbegin(); value != values.cend(); ++value)
      ASSERT_EQ(read[value.key()], *value);
  }
}

TEST_F(IniSectionAndQSettings, ReadsALineThatGoesOnAsQSettingsDoes) {
  for (const QByteArray& end : {QByteArray("\n"), QByteArray("\r\n"), QByteArray("\r")}) {
    const QByteArray bytes = "[Configuration]\nPath=a\\" + end + "b\n";
    const QString path = NewPath();
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    EXPECT_EQ(QSettings(path, QSettings::IniFormat).value(u"Configuration/Path"_s), u"ab"_s);
    EXPECT_EQ(ReadIniSection(bytes, kSection).value(u"Path"_s), u"ab"_s);
  }
}

TEST_F(IniSectionAndQSettings, WritesWhatQSettingsReads) {
  OddTexts texts;
  for (int i = 0; i < 100; ++i) {
    IniValues values;
    for (int key = 0; key < 40; ++key) values[u"Key%1"_s.arg(key)] = texts.Next();
    const QByteArray bytes = WithIniSection({}, kSection, values);
    ASSERT_EQ(ReadIniSection(bytes, kSection), values);
    const QString path = NewPath();
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    QSettings settings(path, QSettings::IniFormat);
    settings.beginGroup(QString::fromLatin1(kSection));
    for (auto value = values.cbegin(); value != values.cend(); ++value)
      ASSERT_EQ(settings.value(value.key()).toString(), *value);
  }
}

}  // namespace
}  // namespace tessmar
