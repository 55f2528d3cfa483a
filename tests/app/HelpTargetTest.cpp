#include "app/HelpTarget.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

QString NoProgram(const QString& /*program*/) {
  return {};
}

class HelpOfTheProgram : public testing::Test {
 protected:
  QString AppPath() const { return root_.path() + u"/bin"_s; }
  QString LoggerHelp() const { return AppPath() + u"/TessmarLoggerII.chm"_s; }
  QString DoHelp() const { return AppPath() + u"/TessmarDOHelp.chm"_s; }

  /// Makes an empty file, with its folders.
  void Make(const QString& path) const {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  }

  QUrl PageFor(const QString& file, std::int16_t language) const {
    return FindHelpTarget(AppPath(), file, language, NoProgram).Page;
  }

  QTemporaryDir root_;
};

TEST_F(HelpOfTheProgram, IsFoundBesideIt) {
  EXPECT_EQ(FindHelpFiles(AppPath()).Logger, QString());
  EXPECT_EQ(FindHelpFiles(AppPath()).DissolvedOxygen, QString());
  Make(LoggerHelp());
  EXPECT_EQ(FindHelpFiles(AppPath()).Logger, LoggerHelp());
  EXPECT_EQ(FindHelpFiles(AppPath()).DissolvedOxygen, QString());
  Make(DoHelp());
  EXPECT_EQ(FindHelpFiles(AppPath()).DissolvedOxygen, DoHelp());
}

TEST_F(HelpOfTheProgram, IsNothingWhenTheFileHasGone) {
  Make(AppPath() + u"/help/en/index.html"_s);
  const auto anyProgram = [](const QString& program) { return u"/usr/bin/"_s + program; };
  EXPECT_EQ(FindHelpTarget(AppPath(), LoggerHelp(), 9, anyProgram), HelpTarget());
  EXPECT_EQ(FindHelpTarget(AppPath(), QString(), 9, anyProgram), HelpTarget());
}

TEST_F(HelpOfTheProgram, GoesToTheFirstViewerThatIsInstalled) {
  Make(LoggerHelp());
  const auto both = [](const QString& program) { return u"/usr/bin/"_s + program; };
  EXPECT_EQ(FindHelpTarget(AppPath(), LoggerHelp(), 9, both).Viewer, u"/usr/bin/xchm"_s);
  EXPECT_EQ(FindHelpTarget(AppPath(), LoggerHelp(), 9, both).File, LoggerHelp());
  const auto second = [](const QString& program) {
    return program == u"kchmviewer"_s ? u"/opt/bin/kchmviewer"_s : QString();
  };
  EXPECT_EQ(FindHelpTarget(AppPath(), LoggerHelp(), 9, second).Viewer, u"/opt/bin/kchmviewer"_s);
  EXPECT_EQ(FindHelpTarget(AppPath(), LoggerHelp(), 9, NoProgram).Viewer, QString());
}

TEST_F(HelpOfTheProgram, FallsBackToPagesInTheLanguageOfTheTexts) {
  Make(LoggerHelp());
  Make(AppPath() + u"/help/de/index.html"_s);
  Make(AppPath() + u"/help/en/index.html"_s);
  EXPECT_EQ(PageFor(LoggerHelp(), 7), QUrl::fromLocalFile(AppPath() + u"/help/de/index.html"_s));
  EXPECT_EQ(PageFor(LoggerHelp(), 9), QUrl::fromLocalFile(AppPath() + u"/help/en/index.html"_s));
  EXPECT_EQ(PageFor(LoggerHelp(), 10), QUrl::fromLocalFile(AppPath() + u"/help/en/index.html"_s));
}

TEST_F(HelpOfTheProgram, IsEnglishWhereALanguageHasNoPages) {
  Make(LoggerHelp());
  Make(AppPath() + u"/help/en/index.html"_s);
  EXPECT_EQ(PageFor(LoggerHelp(), 7), QUrl::fromLocalFile(AppPath() + u"/help/en/index.html"_s));
}

TEST_F(HelpOfTheProgram, PrefersThePageOfItsOwnName) {
  Make(LoggerHelp());
  Make(DoHelp());
  Make(AppPath() + u"/help/en/index.html"_s);
  Make(AppPath() + u"/help/en/TessmarDOHelp.html"_s);
  EXPECT_EQ(PageFor(DoHelp(), 9),
            QUrl::fromLocalFile(AppPath() + u"/help/en/TessmarDOHelp.html"_s));
  EXPECT_EQ(PageFor(LoggerHelp(), 9), QUrl::fromLocalFile(AppPath() + u"/help/en/index.html"_s));
}

TEST_F(HelpOfTheProgram, IsLeftToTheDesktopWithoutViewerAndPages) {
  Make(LoggerHelp());
  EXPECT_EQ(PageFor(LoggerHelp(), 9), QUrl::fromLocalFile(LoggerHelp()));
}

}  // namespace
}  // namespace tessmar
