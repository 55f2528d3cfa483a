#include "ui/QtFileDialogs.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>

#include "base/TextTable.h"
#include "support/FakeOutside.h"
#include "support/SmallDisk.h"
#include "ui/MessageDialogs.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

class QtFileDialogsTest : public testing::Test {
 protected:
  QtFileDialogsTest() { QDir(folder_.path()).mkdir(u"inner"_s); }
  ~QtFileDialogsTest() override { SetTextLanguage(kLanguageEnglish); }

  FileDialogRequest Request() const {
    return {.Title = u"Save Setup File"_s,
            .InitialName = Path(u"*.set"_s),
            .Filter = u"Setup Files (*.set)|*.set"_s,
            .DefaultExtension = u".dat"_s};
  }

  QString Path(const QString& name) const { return folder_.path() + u'/' + name; }

  void Touch(const QString& name) const {
    QFile file(Path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  }

  /// Looks at the dialog once it stands on the screen; it is closed afterwards.
  static void WhenShown(const std::function<void(QFileDialog&)>& look) {
    QTimer::singleShot(0, [look] {
      auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      EXPECT_EQ(dialog->objectName(), u"dlgFile"_s);
      look(*dialog);
      if (dialog->isVisible()) dialog->reject();
    });
  }

  /// Types a name and presses the button. True when the dialog took it and closed.
  static bool Take(QFileDialog& dialog, const QString& name) {
    dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(name);
    static_cast<QDialog&>(dialog).accept();
    return !dialog.isVisible();
  }

  QTemporaryDir folder_;
  test::FakeMessages messages_;
  QtFileDialogs dialogs_{messages_, [] { return false; }};
};

TEST_F(QtFileDialogsTest, StartInTheFolderOfAPattern) {
  WhenShown([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.directory().canonicalPath(), QDir(folder_.path()).canonicalPath());
    EXPECT_EQ(dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->text(), QString());
    EXPECT_EQ(dialog.windowTitle(), u"Save Setup File"_s);
    EXPECT_EQ(dialog.nameFilters(), QStringList{u"Setup Files (*.set)"_s});
  });
  EXPECT_EQ(dialogs_.AskSave(Request()), std::nullopt);
}

TEST_F(QtFileDialogsTest, PointAtANamedFile) {
  Touch(u"pond.set"_s);
  FileDialogRequest request = Request();
  request.InitialName = Path(u"pond.set"_s);
  WhenShown([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->text(), u"pond.set"_s);
    static_cast<QDialog&>(dialog).accept();
  });
  EXPECT_EQ(dialogs_.AskOpen(request), Path(u"pond.set"_s));
}

TEST_F(QtFileDialogsTest, StartAtHomeWhenTheFolderHasGone) {
  FileDialogRequest request = Request();
  request.InitialName = Path(u"gone/*.set"_s);
  WhenShown([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.directory().canonicalPath(), QDir::home().canonicalPath());
  });
  dialogs_.AskOpen(request);
}

TEST_F(QtFileDialogsTest, AddTheDefaultExtensionWhenSaving) {
  WhenShown([](QFileDialog& dialog) { EXPECT_TRUE(Take(dialog, u"pond"_s)); });
  EXPECT_EQ(dialogs_.AskSave(Request()), Path(u"pond.dat"_s));
  WhenShown([](QFileDialog& dialog) { EXPECT_TRUE(Take(dialog, u"pond.set"_s)); });
  EXPECT_EQ(dialogs_.AskSave(Request()), Path(u"pond.set"_s));
}

TEST_F(QtFileDialogsTest, TellThePartOfTheFilterAndTakeItsExtension) {
  FileDialogRequest request = Request();
  request.Filter = u"Table (*.csv)|*.csv|For analysis (*.csv)|*.csv|NetCDF (*.nc)|*.nc"_s;
  int part = -1;
  request.Part = &part;
  WhenShown([](QFileDialog& dialog) {
    dialog.selectNameFilter(u"NetCDF (*.nc)"_s);
    EXPECT_TRUE(Take(dialog, u"pond"_s));
  });
  EXPECT_EQ(dialogs_.AskSave(request), Path(u"pond.nc"_s));
  EXPECT_EQ(part, 2);
  WhenShown([](QFileDialog& dialog) {
    dialog.selectNameFilter(u"For analysis (*.csv)"_s);
    EXPECT_TRUE(Take(dialog, u"pond.txt"_s));
  });
  EXPECT_EQ(dialogs_.AskSave(request), Path(u"pond.txt"_s));
  EXPECT_EQ(part, 1);
  WhenShown([](QFileDialog& dialog) { EXPECT_TRUE(Take(dialog, u"pond"_s)); });
  EXPECT_EQ(dialogs_.AskSave(request), Path(u"pond.csv"_s));
  EXPECT_EQ(part, 0);
}

TEST_F(QtFileDialogsTest, OpenANameAsTypedOrWithTheDefaultExtension) {
  Touch(u"plain"_s);
  Touch(u"pond.dat"_s);
  WhenShown([](QFileDialog& dialog) { EXPECT_TRUE(Take(dialog, u"plain"_s)); });
  EXPECT_EQ(dialogs_.AskOpen(Request()), Path(u"plain"_s));
  WhenShown([](QFileDialog& dialog) { EXPECT_TRUE(Take(dialog, u"pond"_s)); });
  EXPECT_EQ(dialogs_.AskOpen(Request()), Path(u"pond.dat"_s));
}

TEST_F(QtFileDialogsTest, RefuseToOpenAFileThatIsNotThere) {
  WhenShown([](QFileDialog& dialog) { EXPECT_FALSE(Take(dialog, u"pond.set"_s)); });
  EXPECT_EQ(dialogs_.AskOpen(Request()), std::nullopt);
  ASSERT_EQ(messages_.All.size(), 1U);
  EXPECT_EQ(messages_.All[0].Prompt, u"The file does not exist:\r\n"_s + Path(u"pond.set"_s));
  EXPECT_EQ(messages_.All[0].Buttons, 48);
  EXPECT_EQ(messages_.All[0].Title, u"Save Setup File"_s);
}

TEST_F(QtFileDialogsTest, RefuseToSaveIntoAFolderThatIsNotThere) {
  SetTextLanguage(kLanguageGerman);
  WhenShown([](QFileDialog& dialog) { EXPECT_FALSE(Take(dialog, u"gone/pond.set"_s)); });
  EXPECT_EQ(dialogs_.AskSave(Request()), std::nullopt);
  ASSERT_EQ(messages_.All.size(), 1U);
  EXPECT_EQ(messages_.All[0].Prompt, u"Der Ordner existiert nicht:\r\n"_s + Path(u"gone"_s));
}

TEST_F(QtFileDialogsTest, RefuseAPlaceThatCannotBeWritten) {
  const test::OrdinaryUser user;
  const QTemporaryDir mine;
  const QString pipe = mine.filePath(u"pipe.set"_s);
  ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  const QString locked = mine.filePath(u"locked"_s);
  QDir().mkdir(locked);
  ASSERT_TRUE(QFile::setPermissions(locked, QFile::ReadOwner | QFile::ExeOwner));
  WhenShown([&](QFileDialog& dialog) {
    EXPECT_FALSE(Take(dialog, locked + u"/pond.set"_s));
    EXPECT_FALSE(Take(dialog, pipe));
  });
  EXPECT_EQ(dialogs_.AskSave(Request()), std::nullopt);
  ASSERT_EQ(messages_.All.size(), 2U);
  EXPECT_EQ(messages_.All[0].Prompt,
            u"You have no permission for this file or its folder:\r\n"_s + locked + u"/pond.set"_s);
  EXPECT_EQ(messages_.All[0].Buttons, 48);
  EXPECT_EQ(messages_.All[1].Prompt, u"This is not an ordinary file:\r\n"_s + pipe);
}

TEST_F(QtFileDialogsTest, TakeAFileInAFolderThatTakesNoNewOnes) {
  const test::OrdinaryUser user;
  const QTemporaryDir mine;
  const QString path = mine.filePath(u"pond.set"_s);
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  ASSERT_TRUE(QFile::setPermissions(mine.path(), QFile::ReadOwner | QFile::ExeOwner));
  WhenShown([&](QFileDialog& dialog) { EXPECT_TRUE(Take(dialog, path)); });
  EXPECT_EQ(dialogs_.AskSave(Request()), path);
  ASSERT_TRUE(
      QFile::setPermissions(mine.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

TEST_F(QtFileDialogsTest, ShowIconsWithoutLookingIntoFiles) {
  Touch(u"noname"_s);
  WhenShown([&](QFileDialog& dialog) {
    // A text without an ending would be told from an empty file by its content.
    QFile file(Path(u"noname"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("%PDF-1.4\n");
    file.close();
    EXPECT_EQ(dialog.iconProvider()->type(QFileInfo(Path(u"noname"_s))), u"unknown"_s);
    EXPECT_FALSE(dialog.iconProvider()->icon(QFileInfo(Path(u"noname"_s))).isNull());
    EXPECT_EQ(dialog.iconProvider()->type(QFileInfo(folder_.path())), u"Folder"_s);
  });
  dialogs_.AskOpen(Request());
}

TEST_F(QtFileDialogsTest, GoIntoAFolderThatIsTyped) {
  WhenShown([&](QFileDialog& dialog) {
    EXPECT_FALSE(Take(dialog, u"inner"_s));
    EXPECT_EQ(dialog.directory().dirName(), u"inner"_s);
  });
  EXPECT_EQ(dialogs_.AskSave(Request()), std::nullopt);
}

TEST_F(QtFileDialogsTest, AskBeforeOverwritingOnlyWhenWanted) {
  Touch(u"pond.set"_s);
  WhenShown([](QFileDialog& dialog) { EXPECT_TRUE(Take(dialog, u"pond.set"_s)); });
  EXPECT_EQ(dialogs_.AskSave(Request()), Path(u"pond.set"_s));
  EXPECT_TRUE(messages_.All.empty());

  FileDialogRequest careful = Request();
  careful.ConfirmOverwrite = true;
  messages_.Answers = {kNo, kYes};
  WhenShown([](QFileDialog& dialog) {
    EXPECT_FALSE(Take(dialog, u"pond.set"_s));
    EXPECT_TRUE(Take(dialog, u"pond.set"_s));
  });
  EXPECT_EQ(dialogs_.AskSave(careful), Path(u"pond.set"_s));
  EXPECT_EQ(messages_.All.size(), 2U);
}

TEST_F(QtFileDialogsTest, AskForTheNameThatIsReallyWritten) {
  Touch(u"pond.csv"_s);
  FileDialogRequest request = Request();
  request.ConfirmOverwrite = true;
  request.DefaultExtension = u".csv"_s;
  messages_.Answers = {kNo};
  WhenShown([](QFileDialog& dialog) { EXPECT_FALSE(Take(dialog, u"pond"_s)); });
  EXPECT_EQ(dialogs_.AskSave(request), std::nullopt);
  ASSERT_EQ(messages_.All.size(), 1U);
  EXPECT_TRUE(messages_.All[0].Prompt.endsWith(Path(u"pond.csv"_s)));
}

TEST_F(QtFileDialogsTest, GiveNothingOnCancel) {
  WhenShown([](QFileDialog& dialog) { dialog.reject(); });
  EXPECT_EQ(dialogs_.AskOpen(Request()), std::nullopt);
}

TEST_F(QtFileDialogsTest, SurviveTheWindowThatTheyBelongTo) {
  auto* window = new QDialog;
  std::optional<QString> answer = u"untouched"_s;
  QTimer::singleShot(0, window, [&] {
    QTimer::singleShot(0, [window] { delete window; });
    answer = dialogs_.AskOpen(Request());
  });
  window->exec();
  EXPECT_EQ(answer, std::nullopt);
}

TEST_F(QtFileDialogsTest, CancelAtOnceWhileTheProgramEnds) {
  QtFileDialogs ending(messages_, [] { return true; });
  EXPECT_EQ(ending.AskOpen(Request()), std::nullopt);
  EXPECT_EQ(ending.AskSave(Request()), std::nullopt);
}

// The end of the program answers the question with its first button, and takes the dialog down.
TEST_F(QtFileDialogsTest, OverwriteNothingWhenTheProgramEndsAtTheQuestion) {
  Touch(u"pond.csv"_s);
  FileDialogRequest request = Request();
  request.ConfirmOverwrite = true;
  bool isEnding = false;
  QtFileDialogs dialogs(messages_, [&] { return isEnding; });
  messages_.Answers = {kYes};
  WhenShown([&](QFileDialog& dialog) {
    messages_.OnMessage = [&] {
      isEnding = true;
      static_cast<QDialog&>(dialog).done(QDialog::Rejected);
    };
    Take(dialog, u"pond.csv"_s);
  });
  EXPECT_EQ(dialogs.AskSave(request), std::nullopt);
  EXPECT_EQ(messages_.All.size(), 1U);
}

// Both go in one moment, and a window manager would look for the dialog to hand the keyboard on.
TEST_F(QtFileDialogsTest, DoNotOwnTheirQuestion) {
  Touch(u"pond.csv"_s);
  FileDialogRequest request = Request();
  request.ConfirmOverwrite = true;
  MessageDialogs asked([] { return false; }, [](const QString&) {});
  QtFileDialogs dialogs(asked, [] { return false; });
  QDialog viewer;
  const QWidget* owner = nullptr;
  QTimer::singleShot(0, &viewer, [&] {
    WhenShown([&](QFileDialog& dialog) {
      QTimer::singleShot(0, &dialog, [&] {
        auto* message = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        owner = message->parentWidget();
        message->findChild<QPushButton*>(u"cmdButton(0)"_s)->click();
      });
      EXPECT_TRUE(Take(dialog, u"pond.csv"_s));
    });
    EXPECT_EQ(dialogs.AskSave(request), Path(u"pond.csv"_s));
    viewer.reject();
  });
  viewer.exec();
  EXPECT_EQ(owner, &viewer);
}

TEST_F(QtFileDialogsTest, PressTheButtonThatHasTheFocusOnEnter) {
  Touch(u"pond.csv"_s);
  WhenShown([](QFileDialog& dialog) {
    dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(u"other.set"_s);
    auto* parent = dialog.findChild<QToolButton*>(u"toParentButton"_s);
    const QString before = dialog.directory().path();
    parent->setFocus();
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(parent, &enter);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_NE(dialog.directory().path(), before);
  });
  EXPECT_EQ(dialogs_.AskSave(Request()), std::nullopt);
}

}  // namespace
}  // namespace tessmar
