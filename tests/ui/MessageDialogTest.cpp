#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryFile>
#include <QTimer>
#include <functional>

#include "base/TextTable.h"
#include "ui/CMessage.h"
#include "ui/HeldKeys.h"
#include "ui/MessageDialogs.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// Runs a look at the next message once it stands on the screen, then makes sure that it closes.
void WhenShown(const std::function<void(FMessage&)>& look) {
  QTimer::singleShot(0, [look] {
    auto* form = qobject_cast<FMessage*>(QApplication::activeModalWidget());
    ASSERT_NE(form, nullptr);
    look(*form);
    if (form->isVisible()) form->reject();
  });
}

QPushButton* Button(FMessage& form, int index) {
  return form.findChild<QPushButton*>(u"cmdButton(%1)"_s.arg(index));
}

QLabel* Text(FMessage& form) {
  return form.findChild<QLabel*>(u"lblMessage"_s);
}

QStringList ShownCaptions(FMessage& form) {
  QStringList captions;
  for (int i = 0; i < 4; ++i) {
    if (Button(form, i)->isVisible()) captions << Button(form, i)->text();
  }
  return captions;
}

void Press(FMessage& form, Qt::Key key) {
  QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
  QCoreApplication::sendEvent(form.focusWidget() != nullptr ? form.focusWidget() : &form, &press);
}

/// Counts the presses of F1 that arrive anywhere in the program.
class HelpKeyCounter : public QObject {
 public:
  HelpKeyCounter() { QCoreApplication::instance()->installEventFilter(this); }
  bool eventFilter(QObject* watched, QEvent* event) override {
    const bool isPress = event->type() == QEvent::KeyPress;
    if (isPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F1 &&
        qobject_cast<FMessage*>(watched) != nullptr) {
      ++Presses;
    }
    return false;
  }
  int Presses = 0;
};

class Message : public testing::Test {
 protected:
  ~Message() override { SetTextLanguage(kLanguageEnglish); }

  static int MsgBox(const QString& prompt, int buttons, const QString& title = u"Title"_s) {
    return CMessage().MsgBox(prompt, buttons, title);
  }
};

TEST_F(Message, OfOneWordHasTheLeastWidth) {
  int width = 0;
  WhenShown([&](FMessage& form) { width = form.width(); });
  MsgBox(u"Word"_s, 0);
  EXPECT_EQ(width, 267);  // 4000 twips.
}

TEST_F(Message, OfAVeryLongLineIsAsWideAsAllowedWrapsAndGrows) {
  const QString longLine = u"A rather long message that goes on. "_s.repeated(20).trimmed();
  QSize size;
  int below = 0;
  WhenShown([&](FMessage& form) {
    size = form.size();
    below = form.findChild<QWidget*>(u"picButtons"_s)->y() - Text(form)->geometry().bottom() - 1;
    EXPECT_GE(Text(form)->height(), Text(form)->heightForWidth(Text(form)->width()));
    EXPECT_GT(Text(form)->height(), 33);
  });
  MsgBox(longLine, 16);
  EXPECT_EQ(size.width(), 581);  // 8715 twips.
  EXPECT_GT(size.height(), 84);
  EXPECT_NEAR(below, 9, 1);  // 135 twips.
}

TEST_F(Message, OfOneLineThatFitsIsNotWrapped) {
  // Between the least and the greatest width the form is as wide as its text.
  for (int length = 30; length < 60; ++length) {
    const QString line = u"i am a line of a length "_s.repeated(3).left(length).trimmed();
    int needed = 0;
    int oneLine = 0;
    WhenShown([&](FMessage& form) {
      needed = Text(form)->heightForWidth(Text(form)->width());
      oneLine = Text(form)->heightForWidth(10000);
    });
    MsgBox(line, 16);
    EXPECT_EQ(needed, oneLine) << line.toStdString();
  }
}

TEST_F(Message, OfManyLinesKeepsItsDistanceAboveTheButtons) {
  int below = 0;
  int height = 0;
  WhenShown([&](FMessage& form) {
    height = form.height();
    EXPECT_EQ(Text(form)->text(), u"Line\n"_s.repeated(12));
    below = form.findChild<QWidget*>(u"picButtons"_s)->y() - Text(form)->geometry().bottom() - 1;
  });
  MsgBox(u"Line\r\n"_s.repeated(12), 48);
  EXPECT_GT(height, 84 + 50);
  EXPECT_NEAR(below, 9, 1);
}

TEST_F(Message, WithStyle36HasYesAsItsDefault) {
  WhenShown([](FMessage& form) {
    EXPECT_EQ(ShownCaptions(form), (QStringList{u"Yes"_s, u"No"_s}));
    EXPECT_TRUE(Button(form, 0)->isDefault());
    EXPECT_TRUE(form.findChild<QWidget*>(u"picIcon"_s)->isVisible());
    Press(form, Qt::Key_Return);
    EXPECT_FALSE(form.isVisible());
  });
  EXPECT_EQ(MsgBox(u"Sure?"_s, 36), 6);
}

TEST_F(Message, MakesTheAskedButtonTheDefault) {
  WhenShown([](FMessage& form) {
    EXPECT_TRUE(Button(form, 1)->isDefault());
    EXPECT_EQ(form.focusWidget(), Button(form, 1));
    Press(form, Qt::Key_Return);
  });
  EXPECT_EQ(MsgBox(u"Sure?"_s, 36 + 256), 7);
}

TEST_F(Message, WithADefaultBeyondItsButtonsStillAnswers) {
  WhenShown([](FMessage& form) { Press(form, Qt::Key_Space); });
  EXPECT_EQ(MsgBox(u"Sure?"_s, 36 + 768), 6);
}

TEST_F(Message, OfSet6Or7BehavesAsSet0) {
  for (const int set : {6, 7}) {
    WhenShown([](FMessage& form) {
      EXPECT_EQ(ShownCaptions(form), (QStringList{u"OK"_s}));
      Button(form, 0)->click();
    });
    EXPECT_EQ(MsgBox(u"Done."_s, set), 1);
  }
}

TEST_F(Message, StaysOpenAndPressesF1ForHelp) {
  HelpKeyCounter counter;
  WhenShown([&](FMessage& form) {
    EXPECT_EQ(ShownCaptions(form), (QStringList{u"OK"_s, u"Help"_s}));
    Button(form, 1)->click();
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(counter.Presses, 1);
    EXPECT_EQ(form.SelectedButton(), 1);
  });
  EXPECT_EQ(MsgBox(u"Done."_s, 16384), 1);
}

TEST_F(Message, ClosedWithoutAButtonGivesTheFirstOnesResult) {
  struct Row {
    int Buttons;
    int Result;
  };
  for (const Row row : {Row{0, 1}, Row{1, 1}, Row{2, 3}, Row{3, 6}, Row{4, 6}, Row{5, 4}}) {
    WhenShown([](FMessage& form) {
      form.done(QDialog::Rejected);
      EXPECT_EQ(form.SelectedButton(), 0);
    });
    EXPECT_EQ(MsgBox(u"Sure?"_s, row.Buttons), row.Result) << row.Buttons;
  }
}

TEST_F(Message, TakesEscapeForTheButtonThatDeclines) {
  struct Row {
    int Buttons;
    int Result;
  };
  for (const Row row :
       {Row{0, 1}, Row{16384, 1}, Row{1, 2}, Row{3, 2}, Row{4, 7}, Row{5, 2}, Row{4 + 16384, 7}}) {
    bool closed = false;
    WhenShown([&](FMessage& form) {
      Press(form, Qt::Key_Escape);
      closed = !form.isVisible();
    });
    EXPECT_EQ(MsgBox(u"Sure?"_s, row.Buttons), row.Result) << row.Buttons;
    EXPECT_TRUE(closed) << row.Buttons;
  }
}

TEST_F(Message, WithoutAWayToDeclineIgnoresEscape) {
  WhenShown([](FMessage& form) {
    Press(form, Qt::Key_Escape);
    EXPECT_TRUE(form.isVisible());
    Button(form, 2)->click();
  });
  EXPECT_EQ(MsgBox(u"Sure?"_s, 2), 5);
}

TEST_F(Message, WithAChoiceIgnoresARequestToClose) {
  for (const int buttons : {1, 2, 3, 4, 5, 4 + 16384}) {
    WhenShown([](FMessage& form) {
      EXPECT_FALSE(form.windowFlags() & Qt::WindowCloseButtonHint);
      form.close();
      EXPECT_TRUE(form.isVisible());
      Button(form, 1)->click();
    });
    MsgBox(u"Sure?"_s, buttons);
  }
}

TEST_F(Message, WithoutAChoiceTakesARequestToCloseForOk) {
  for (const int buttons : {0, 16384}) {
    WhenShown([](FMessage& form) {
      form.close();
      EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(MsgBox(u"Done."_s, buttons), 1);
  }
}

TEST_F(Message, ReportingAnErrorTakesEscapeForClose) {
  WhenShown([](FMessage& form) {
    Press(form, Qt::Key_Escape);
    EXPECT_FALSE(form.isVisible());
  });
  CMessage().DisplayError(u"Out of paper"_s);
}

// The key that opened the question is still down.
TEST_F(Message, IsNotAnsweredByAKeyThatIsHeldDown) {
  const HeldKeys heldKeys;
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
    WhenShown([key](FMessage& form) {
      QKeyEvent held(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
      QCoreApplication::sendEvent(form.focusWidget(), &held);
      EXPECT_TRUE(form.isVisible());
      Press(form, key);
      EXPECT_FALSE(form.isVisible());
    });
    MsgBox(u"Sure?"_s, 36);
  }
}

TEST_F(Message, GivesTheResultOfEveryButton) {
  struct Row {
    int Buttons;
    std::vector<int> Results;
  };
  const std::vector<Row> rows{{0, {1}},       {1, {1, 2}}, {2, {3, 4, 5}},
                              {3, {6, 7, 2}}, {4, {6, 7}}, {5, {4, 2}}};
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < row.Results.size(); ++i) {
      WhenShown([i](FMessage& form) { Button(form, static_cast<int>(i))->click(); });
      EXPECT_EQ(MsgBox(u"Sure?"_s, row.Buttons), row.Results[i]) << row.Buttons << ", " << i;
    }
  }
}

TEST_F(Message, InGermanKeepsAbortRetryIgnoreAndHelpInEnglish) {
  SetTextLanguage(kLanguageGerman);
  WhenShown([](FMessage& form) {
    EXPECT_EQ(ShownCaptions(form), (QStringList{u"Abort"_s, u"Retry"_s, u"Ignore"_s, u"Help"_s}));
  });
  MsgBox(u"Text"_s, 2 + 16384);
  WhenShown([](FMessage& form) {
    EXPECT_EQ(ShownCaptions(form), (QStringList{u"Ja"_s, u"Nein"_s, u"Abbrechen"_s}));
  });
  MsgBox(u"Text"_s, 3);
  WhenShown([](FMessage& form) { EXPECT_EQ(ShownCaptions(form), (QStringList{u"OK"_s})); });
  MsgBox(u"Text"_s, 0);
}

TEST_F(Message, ShowsTitleAndFallsBackToTheApplications) {
  QStringList titles;
  WhenShown([&](FMessage& form) { titles << form.windowTitle(); });
  MsgBox(u"Text"_s, 0, u"Connect Error"_s);
  WhenShown([&](FMessage& form) { titles << form.windowTitle(); });
  MsgBox(u"Text"_s, 0, QString());
  EXPECT_EQ(titles, (QStringList{u"Connect Error"_s, QGuiApplication::applicationDisplayName()}));
  EXPECT_FALSE(titles.back().isEmpty());
}

TEST_F(Message, AlignsItsTextToTheRightWhenAsked) {
  WhenShown([](FMessage& form) { EXPECT_TRUE(Text(form)->alignment() & Qt::AlignLeft); });
  MsgBox(u"Text"_s, 0);
  WhenShown([](FMessage& form) { EXPECT_TRUE(Text(form)->alignment() & Qt::AlignRight); });
  MsgBox(u"Text"_s, 524288);
}

TEST_F(Message, StaysOnTopWhateverTheFlag) {
  for (const int flag : {0, 65536}) {
    WhenShown([](FMessage& form) {
      EXPECT_TRUE(form.windowFlags() & Qt::WindowStaysOnTopHint);
      EXPECT_EQ(form.windowModality(), Qt::ApplicationModal);
    });
    MsgBox(u"Text"_s, flag);
  }
}

TEST_F(Message, HasAnIconForItsFourCodesOnly) {
  for (const int code : {16, 32, 48, 64}) {
    WhenShown([](FMessage& form) {
      auto* icon = form.findChild<QWidget*>(u"picIcon"_s);
      EXPECT_TRUE(icon->isVisible());
      EXPECT_FALSE(icon->accessibleName().isEmpty());
      EXPECT_EQ(icon->geometry(), QRect(12, 8, 37, 33));
      EXPECT_EQ(Text(form)->x(), 61);
    });
    MsgBox(u"Text"_s, code);
  }
  for (const int code : {0, 80, 112}) {
    WhenShown([](FMessage& form) {
      EXPECT_FALSE(form.findChild<QWidget*>(u"picIcon"_s)->isVisible());
      EXPECT_EQ(Text(form)->x(), 8);
    });
    MsgBox(u"Text"_s, code);
  }
}

TEST_F(Message, DrawsEachIconDifferently) {
  std::vector<QImage> images;
  for (const int code : {16, 32, 48, 64}) {
    WhenShown([&](FMessage& form) {
      images.push_back(form.findChild<QWidget*>(u"picIcon"_s)->grab().toImage());
    });
    MsgBox(u"Text"_s, code);
  }
  ASSERT_EQ(images.size(), 4U);
  for (std::size_t i = 0; i < images.size(); ++i) {
    for (std::size_t j = i + 1; j < images.size(); ++j) EXPECT_NE(images[i], images[j]);
  }
}

TEST_F(Message, CutsNothingOffInALargeFont) {
  const QFont usual = QApplication::font();
  QFont large = usual;
  large.setPointSize(24);
  QApplication::setFont(large);
  SetTextLanguage(kLanguageGerman);
  WhenShown([](FMessage& form) {
    for (int i = 0; i < 4; ++i) {
      const QPushButton* button = Button(form, i);
      EXPECT_GT(button->width(), button->fontMetrics().horizontalAdvance(button->text()));
      EXPECT_GE(button->height(), button->fontMetrics().height());
      EXPECT_GE(button->x(), 0);
      EXPECT_LE(button->geometry().right(), form.width());
      EXPECT_LE(button->geometry().bottom(), button->parentWidget()->height());
    }
    EXPECT_GE(Text(form)->height(), Text(form)->heightForWidth(Text(form)->width()));
    EXPECT_LE(Text(form)->geometry().right(), form.width());
  });
  MsgBox(u"Donaudampfschifffahrtselektrizitätenhauptbetriebswerkbauunterbeamtengesellschaft"_s,
         3 + 16384);
  QApplication::setFont(usual);
}

TEST_F(Message, BreaksAWordThatIsWiderThanTheScreen) {
  const QString path = u"cannot read /tmp/"_s + u"x"_s.repeated(3000);
  WhenShown([&](FMessage& form) {
    EXPECT_LE(form.width(), form.screen()->availableGeometry().width());
    EXPECT_GT(Text(form)->height(), 3 * form.fontMetrics().height());
    EXPECT_EQ(Text(form)->text().remove(QChar(0x200B)), path);
    EXPECT_EQ(Text(form)->accessibleName(), path);
  });
  MsgBox(path, 16);
}

TEST_F(Message, LetsItsTextBeSelectedByMouseAndKeyboard) {
  WhenShown([](FMessage& form) {
    EXPECT_TRUE(Text(form)->textInteractionFlags() & Qt::TextSelectableByMouse);
    EXPECT_TRUE(Text(form)->textInteractionFlags() & Qt::TextSelectableByKeyboard);
    EXPECT_TRUE(Text(form)->focusPolicy() & Qt::TabFocus);
    EXPECT_EQ(Text(form)->accessibleName(), u"Two\nlines <b>"_s);
  });
  MsgBox(u"Two\r\nlines <b>"_s, 0);
}

TEST_F(Message, OpensItsHelpFileForF1) {
  QTemporaryFile file;
  ASSERT_TRUE(file.open());
  QStringList opened;
  const auto open = [&](const QString& name, int context) {
    opened << u"%1 %2"_s.arg(name).arg(context);
  };
  WhenShown([](FMessage& form) { Button(form, 1)->click(); });
  CMessage(nullptr, {u"/application.chm"_s, open})
      .MsgBox(u"Text"_s, 16384, u"Title"_s, file.fileName(), 42);
  EXPECT_EQ(opened, (QStringList{file.fileName() + u" 42"_s}));
}

TEST_F(Message, WithoutItsHelpFileIgnoresF1) {
  QStringList opened;
  const auto open = [&](const QString& name, int /*context*/) { opened << name; };
  for (const QString& file : {QString(), u"/no/such/file.chm"_s}) {
    WhenShown([](FMessage& form) { Press(form, Qt::Key_F1); });
    CMessage(nullptr, {file, open}).MsgBox(u"Text"_s, 0, u"Title"_s, file);
  }
  EXPECT_TRUE(opened.isEmpty());
}

TEST_F(Message, SurvivesTheWindowThatItBelongsTo) {
  auto* window = new QWidget;
  QTimer::singleShot(0, [window] { delete window; });
  EXPECT_EQ(CMessage(window).MsgBox(u"Text"_s, 2, u"Title"_s), 3);
}

TEST_F(Message, ReportingAnErrorCopiesItsTextAndStays) {
  QGuiApplication::clipboard()->setText(u"something else"_s);
  WhenShown([](FMessage& form) {
    EXPECT_EQ(ShownCaptions(form), (QStringList{u"Close"_s, u"Copy"_s}));
    Button(form, 1)->click();
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"Out of paper\r\nin line 3"_s);
    EXPECT_TRUE(Button(form, 0)->isDefault());
    EXPECT_EQ(form.windowTitle(), QCoreApplication::applicationName());
    Button(form, 0)->click();
    EXPECT_FALSE(form.isVisible());
  });
  CMessage().DisplayError(u"Out of paper\r\nin line 3"_s);
}

TEST_F(Message, ReportingAnErrorHasHelpWhenAskedFor) {
  SetTextLanguage(kLanguageGerman);
  HelpKeyCounter counter;
  WhenShown([&](FMessage& form) {
    EXPECT_EQ(ShownCaptions(form), (QStringList{u"Close"_s, u"Copy"_s, u"Help"_s}));
    Button(form, 2)->click();
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(counter.Presses, 1);
  });
  CMessage().DisplayError(u"Out of paper"_s, true);
}

TEST(MessageDialogs, PlayOneSoundForEveryMessage) {
  QStringList played;
  MessageDialogs messages([] { return false; }, [&](const QString& alias) { played << alias; });
  for (const int buttons : {0, 16, 36, 48}) {
    WhenShown([](FMessage& form) { EXPECT_EQ(form.windowTitle(), u"Title"_s); });
    messages.MsgBox(u"Text"_s, buttons, u"Title"_s);
  }
  EXPECT_EQ(played, QStringList(4, u"SystemHand"_s));
}

TEST(MessageDialogs, BelongToTheWindowInFront) {
  QDialog front;
  QWidget* parent = nullptr;
  MessageDialogs messages([] { return false; }, [](const QString&) {});
  QTimer::singleShot(0, &front, [&] {
    WhenShown([&](FMessage& form) { parent = form.parentWidget(); });
    messages.MsgBox(u"Text"_s, 0, u"Title"_s);
    front.reject();
  });
  front.exec();
  EXPECT_EQ(parent, &front);
}

TEST(MessageDialogs, AnswerAtOnceWhileTheProgramEnds) {
  QStringList played;
  MessageDialogs messages([] { return true; }, [&](const QString& alias) { played << alias; });
  EXPECT_EQ(messages.MsgBox(u"Text"_s, 0, u"Title"_s), 1);
  EXPECT_EQ(messages.MsgBox(u"Text"_s, 36 + 256, u"Title"_s), 6);
  EXPECT_EQ(messages.MsgBox(u"Text"_s, 2, u"Title"_s), 3);
  EXPECT_TRUE(played.isEmpty());
}

}  // namespace
}  // namespace tessmar
