#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QTemporaryDir>
#include <QTimer>
#include <vector>

#include "app/Help.h"
#include "app/frmAbout.h"
#include "app/frmSplash.h"
#include "base/TextTable.h"
#include "ui/Pictures.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

const QString kTitle = u"Tessmar DO Monitor v2.1.9"_s;

QLabel* Label(QWidget& form, const QString& name) {
  return form.findChild<QLabel*>(name);
}

TEST(About, IsAsLargeAsItsPicture) {
  frmAbout form(kTitle);
  EXPECT_EQ(form.objectName(), u"frmAbout"_s);
  EXPECT_EQ(form.size(), QSize(480, 320));
  EXPECT_EQ(Label(form, u"Picture1"_s)->geometry(), QRect(0, 0, 480, 320));
  EXPECT_FALSE(Label(form, u"Picture1"_s)->pixmap().isNull());
}

TEST(About, RepeatsTheMainWindowsTitleAt65PercentOfItsHeight) {
  frmAbout form(kTitle);
  EXPECT_EQ(Label(form, u"lblVersion"_s)->text(), kTitle);
  EXPECT_EQ(Label(form, u"lblVersion"_s)->y(), 208);
  EXPECT_EQ(Label(form, u"lblCopyright"_s)->text(), u"© the Tessmar Logger authors"_s);
  EXPECT_EQ(Label(form, u"lblCopyright"_s)->y(), 256);
}

TEST(About, SaysUnderWhichLicenceTheProgramIs) {
  frmAbout form(kTitle);
  EXPECT_EQ(Label(form, u"lblLicence"_s)->text(),
            u"Free software under the GNU GPL 3; its sources under MIT"_s);
  SetTextLanguage(kLanguageGerman);
  frmAbout german(kTitle);
  EXPECT_EQ(Label(german, u"lblLicence"_s)->text(),
            u"Freie Software unter der GNU GPL 3; die Quellen unter MIT"_s);
  EXPECT_LE(Label(german, u"lblLicence"_s)
                ->fontMetrics()
                .horizontalAdvance(Label(german, u"lblLicence"_s)->text()),
            480);
  SetTextLanguage(kLanguageEnglish);
}

TEST(About, IsCaptionedInTheLanguageOfTheTexts) {
  EXPECT_EQ(frmAbout(kTitle).windowTitle(), u"About Tessmar Hydro"_s);
  SetTextLanguage(kLanguageGerman);
  EXPECT_EQ(frmAbout(kTitle).windowTitle(), u"Über Tessmar Hydro"_s);
  SetTextLanguage(kLanguageEnglish);
}

TEST(About, IsClosedByEscape) {
  frmAbout form(kTitle);
  bool wasShown = false;
  QTimer::singleShot(0, &form, [&] {
    wasShown = form.isVisible() && QApplication::activeModalWidget() == &form;
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(&form, &escape);
  });
  form.exec();
  EXPECT_TRUE(wasShown);
  EXPECT_FALSE(form.isVisible());
}

TEST(Splash, IsItsPictureAloneAndDoesNotBlock) {
  frmSplash form;
  form.show();
  EXPECT_TRUE(form.isVisible());
  EXPECT_FALSE(form.isModal());
  EXPECT_EQ(form.objectName(), u"frmSplash"_s);
  EXPECT_EQ(form.size(), QSize(480, 320));
  const QList<QLabel*> labels = form.findChildren<QLabel*>();
  ASSERT_EQ(labels.size(), 1);
  EXPECT_TRUE(labels[0]->text().isEmpty());
  EXPECT_EQ(labels[0]->geometry(), form.rect());
}

TEST(Pictures, AreSharpAtTwiceTheResolution) {
  EXPECT_EQ(PondPicture(1).size(), QSize(480, 320));
  EXPECT_EQ(PondPicture(2).size(), QSize(960, 640));
  EXPECT_EQ(PondPicture(2).deviceIndependentSize(), QSizeF(480, 320));
  EXPECT_EQ(PondPicture(1.5).size(), QSize(720, 480));
}

TEST(Pictures, HaveTheProgramsIconInAllUsualSizes) {
  for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
    EXPECT_EQ(ProgramIcon().actualSize(QSize(size, size)), QSize(size, size));
    EXPECT_FALSE(ProgramIcon().pixmap(size).isNull());
  }
}

TEST(HelpEntry, OpensAHelpFileThatIsThere) {
  QTemporaryDir folder;
  const QString path = folder.path() + u"/TessmarLoggerII.chm"_s;
  std::vector<HelpTarget> opened;
  const Help help(folder.path(), [&](const HelpTarget& target) { opened.push_back(target); });
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  help.Open(path);
  ASSERT_EQ(opened.size(), 1U);
  EXPECT_EQ(opened[0].File, path);
  EXPECT_EQ(opened[0].Page, QUrl::fromLocalFile(path));
}

TEST(HelpEntry, DoesNothingForAFileThatHasGone) {
  QTemporaryDir folder;
  std::vector<HelpTarget> opened;
  const Help help(folder.path(), [&](const HelpTarget& target) { opened.push_back(target); });
  help.Open(folder.path() + u"/TessmarLoggerII.chm"_s);
  help.Open(QString());
  EXPECT_TRUE(opened.empty());
}

}  // namespace
}  // namespace tessmar
