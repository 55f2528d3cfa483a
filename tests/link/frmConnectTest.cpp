#include "link/frmConnect.h"

#include <gmock/gmock.h>

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>

#include "link/CommandsBench.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

/// The dialog on a scripted line in virtual time.
struct FormBench : CommandsBench {
  FormBench() {
    Port.Close();
    Port.Log.clear();
    Link.ModemTimeoutTicks = 4;
  }

  frmConnect& Load() {
    Form = std::make_unique<frmConnect>(Channel, Commands, Link, Settings, Messages, Files, Screen,
                                        [this] { return Enumerated; });
    Form->show();
    return *Form;
  }

  template <typename Control>
  Control& The(const QString& name) {
    auto* control = Form->findChild<Control*>(name);
    if (control == nullptr) throw std::runtime_error("no control " + name.toStdString());
    return *control;
  }
  QComboBox& Combo(const QString& name) { return The<QComboBox>(name); }
  void Click(const QString& name) { The<QAbstractButton>(name).click(); }

  QStringList Items(const QString& combo) {
    QStringList items;
    for (int i = 0; i < Combo(combo).count(); ++i) items.append(Combo(combo).itemText(i));
    return items;
  }

  void LetLoggerAnswer() {
    Port.OnWrite = [this](const Bytes& written) {
      if (written == Bytes{0x55}) Arrive({0x54}, 10);
      if (written == Bytes{0x54}) Arrive({0x4D}, 10);
      if (written == Bytes{0x4D}) Arrive({0xFC}, 10);
      if (written.size() > 1 && written[0] == 0xF8) {
        Arrive(Bytes{0xFA} + FrameOf({0x21, 8, 2, 1, 0, 0, 0, 0}), 10);
      }
    };
  }

  ConnectionSettings Settings;
  FakeMessages Messages;
  FakeFileDialogs Files;
  FakeMainScreen Screen;
  QStringList Enumerated;
  std::unique_ptr<frmConnect> Form;
};

TEST(frmConnect, CarriesItsCaptionsInEnglish) {
  FormBench bench;
  EXPECT_EQ(bench.Load().objectName(), u"frmConnect"_s);
  EXPECT_EQ(bench.Form->windowTitle(), u"Connect"_s);
  EXPECT_EQ(bench.The<QRadioButton>(u"optDirect"_s).text(), u"Direct"_s);
  EXPECT_EQ(bench.The<QRadioButton>(u"optModem"_s).text(), u"Modem"_s);
  EXPECT_EQ(bench.The<QCheckBox>(u"chkInitFile"_s).text(),
            u"Use optional Modem Initialization Command File:"_s);
  EXPECT_EQ(bench.The<QPushButton>(u"cmdBrowse"_s).text(), u"..."_s);
  EXPECT_EQ(bench.The<QPushButton>(u"cmdConnect"_s).text(), u"Connect"_s);
  EXPECT_EQ(bench.The<QPushButton>(u"cmdCancel"_s).text(), u"Cancel"_s);
  QStringList labels;
  for (const QLabel* label : bench.Form->findChildren<QLabel*>()) labels.append(label->text());
  EXPECT_EQ(labels,
            (QStringList{u"Port"_s, u"Baud Rate"_s, u"Port"_s, u"Baud Rate"_s, u"Phone Number"_s}));
}

TEST(frmConnect, CarriesItsCaptionsInGerman) {
  FormBench bench;
  SetTextLanguage(kLanguageGerman);
  bench.Load();
  EXPECT_EQ(bench.Form->windowTitle(), u"Verbinden"_s);
  EXPECT_EQ(bench.The<QRadioButton>(u"optDirect"_s).text(), u"Direkt"_s);
  EXPECT_EQ(bench.The<QRadioButton>(u"optModem"_s).text(), u"Modem"_s);
  EXPECT_EQ(bench.The<QCheckBox>(u"chkInitFile"_s).text(),
            u"Verwenden Sie die optionale Befehlsdatei zur Modem-Initialisierung:"_s);
  EXPECT_EQ(bench.The<QPushButton>(u"cmdConnect"_s).text(), u"Verbinden"_s);
  EXPECT_EQ(bench.The<QPushButton>(u"cmdCancel"_s).text(), u"Abbrechen"_s);
  QStringList labels;
  for (const QLabel* label : bench.Form->findChildren<QLabel*>()) labels.append(label->text());
  EXPECT_EQ(labels, (QStringList{u"Schnittstelle"_s, u"Baudrate"_s, u"Schnittstelle"_s,
                                 u"Baudrate"_s, u"Rufnummer"_s}));
  SetTextLanguage(kLanguageEnglish);
}

TEST(frmConnect, NamesEveryControlToAssistiveTools) {
  FormBench bench;
  bench.Load();
  for (const char* name : {"cmbPort1", "cmbBaud1", "cmbPort2", "cmbBaud2", "cmbNumber",
                           "txtConfiguration", "cmdBrowse"}) {
    EXPECT_FALSE(bench.The<QWidget>(QString::fromLatin1(name)).accessibleName().isEmpty()) << name;
  }
}

TEST(frmConnect, OffersPortsAndSpeeds) {
  FormBench bench;
  bench.Enumerated = {u"COM12 - X"_s, u"COM3 - USB Serial Port"_s};
  bench.Load();
  const QStringList ports{u"COM1"_s, u"COM2"_s, u"COM3 - USB Serial Port"_s,
                          u"COM4"_s, u"COM5"_s, u"COM6"_s,
                          u"COM7"_s, u"COM8"_s, u"COM12 - X"_s};
  EXPECT_EQ(bench.Items(u"cmbPort1"_s), ports);
  EXPECT_EQ(bench.Items(u"cmbPort2"_s), ports);
  EXPECT_EQ(bench.Items(u"cmbBaud1"_s),
            (QStringList{u"9600"_s, u"19200"_s, u"28800"_s, u"38400"_s, u"57600"_s, u"115200"_s}));
  EXPECT_EQ(bench.Items(u"cmbBaud2"_s), (QStringList{u"9600"_s, u"19200"_s}));
}

TEST(frmConnect, SelectsTheUsualChoiceAtTheFirstRun) {
  FormBench bench;
  bench.Settings.DirectPort = u"Com1"_s;
  bench.Settings.DirectBaud = u"38400"_s;
  bench.Settings.ModemPort = u"Com1"_s;
  bench.Settings.ModemBaud = u"38400"_s;
  bench.Load();
  EXPECT_TRUE(bench.The<QRadioButton>(u"optDirect"_s).isChecked());
  EXPECT_EQ(bench.Combo(u"cmbPort1"_s).currentText(), u"COM1"_s);
  EXPECT_EQ(bench.Combo(u"cmbPort2"_s).currentText(), u"COM1"_s);
  EXPECT_EQ(bench.Combo(u"cmbBaud1"_s).currentText(), u"38400"_s);
  EXPECT_EQ(bench.Combo(u"cmbBaud2"_s).currentText(), u"9600"_s);
}

TEST(frmConnect, SelectsTheLastChoice) {
  FormBench bench;
  bench.Enumerated = {u"COM12 - X"_s};
  bench.Settings = {.DirectPort = u"COM12"_s,
                    .DirectBaud = u"115200"_s,
                    .ModemPort = u"COM2"_s,
                    .ModemBaud = u"19200"_s,
                    .ModemNumbers = {u"1"_s, u"2"_s, u"3"_s, u"4"_s},
                    .ModemInit = u"/home/me/at.txt"_s,
                    .UseModemInit = 1,
                    .CurrentPhoneNumber = u"77"_s,
                    .ConnectionIsModem = true};
  bench.Load();
  EXPECT_TRUE(bench.The<QRadioButton>(u"optModem"_s).isChecked());
  EXPECT_EQ(bench.Combo(u"cmbPort1"_s).currentText(), u"COM12 - X"_s);
  EXPECT_EQ(bench.Combo(u"cmbBaud1"_s).currentText(), u"115200"_s);
  EXPECT_EQ(bench.Combo(u"cmbPort2"_s).currentText(), u"COM2"_s);
  EXPECT_EQ(bench.Combo(u"cmbBaud2"_s).currentText(), u"19200"_s);
  EXPECT_EQ(bench.Items(u"cmbNumber"_s), (QStringList{u"1"_s, u"2"_s, u"3"_s, u"4"_s}));
  EXPECT_EQ(bench.Combo(u"cmbNumber"_s).currentText(), u"77"_s);
  EXPECT_EQ(bench.The<QLineEdit>(u"txtConfiguration"_s).text(), u"/home/me/at.txt"_s);
  EXPECT_TRUE(bench.The<QCheckBox>(u"chkInitFile"_s).isChecked());
}

TEST(frmConnect, TakesTheCheckBoxAtOnce) {
  FormBench bench;
  bench.Load();
  bench.Click(u"chkInitFile"_s);
  EXPECT_EQ(bench.Settings.UseModemInit, 1);
  bench.Click(u"chkInitFile"_s);
  EXPECT_EQ(bench.Settings.UseModemInit, 0);
}

TEST(frmConnect, BrowsesForTheCommandFile) {
  FormBench bench;
  bench.Files.Answers.push_back(u"/home/me/at.txt"_s);
  bench.Load();
  bench.Click(u"cmdBrowse"_s);
  ASSERT_EQ(bench.Files.All.size(), 1u);
  EXPECT_EQ(bench.Files.All[0].Title, u"Select Modem Command File"_s);
  EXPECT_EQ(bench.Files.All[0].InitialName, QCoreApplication::applicationDirPath() + u"/*.txt"_s);
  EXPECT_EQ(bench.Files.All[0].Filter, u"Modem Command File (*.txt)|*.txt"_s);
  EXPECT_EQ(bench.Files.All[0].DefaultExtension, u".txt"_s);
  EXPECT_EQ(bench.Settings.ModemInit, u"/home/me/at.txt"_s);
  EXPECT_EQ(bench.The<QLineEdit>(u"txtConfiguration"_s).text(), u"/home/me/at.txt"_s);
}

TEST(frmConnect, KeepsThePathWhenBrowsingIsCancelled) {
  FormBench bench;
  bench.Settings.ModemInit = u"/home/me/old.txt"_s;
  bench.Load();
  bench.Click(u"cmdBrowse"_s);
  EXPECT_EQ(bench.Settings.ModemInit, u"/home/me/old.txt"_s);
  EXPECT_EQ(bench.The<QLineEdit>(u"txtConfiguration"_s).text(), u"/home/me/old.txt"_s);
}

TEST(frmConnect, ConnectsAndCloses) {
  FormBench bench;
  bench.LetLoggerAnswer();
  bench.Load();
  bench.Combo(u"cmbPort1"_s).setCurrentIndex(2);
  bench.Click(u"cmdConnect"_s);
  EXPECT_TRUE(bench.Link.Connected);
  EXPECT_TRUE(bench.Port.IsOpen());
  EXPECT_EQ(bench.Port.Number(), 3);
  EXPECT_EQ(bench.Port.Settings(), u"38400,N,8,1"_s);
  EXPECT_FALSE(bench.Form->isVisible());
  EXPECT_EQ(bench.Screen.WaitCursorShown, 1);
  EXPECT_EQ(bench.Screen.WaitCursor, 0);
}

TEST(frmConnect, ConnectsByTheEnterKey) {
  FormBench bench;
  bench.LetLoggerAnswer();
  bench.Load();
  EXPECT_TRUE(bench.The<QPushButton>(u"cmdConnect"_s).isDefault());
  EXPECT_EQ(bench.Form->focusWidget(), &bench.The<QPushButton>(u"cmdConnect"_s));
  QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
  QCoreApplication::sendEvent(&bench.Combo(u"cmbPort1"_s), &enter);
  EXPECT_TRUE(bench.Link.Connected);
}

TEST(frmConnect, TabGoesAllAround) {
  FormBench bench;
  bench.Load();
  bench.Form->activateWindow();
  QStringList round;
  for (int step = 0; step < 30; ++step) {
    QWidget* at = bench.Form->focusWidget();
    ASSERT_NE(at, nullptr);
    if (!round.contains(at->objectName())) round.append(at->objectName());
    QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
    QCoreApplication::sendEvent(at, &tab);
  }
  EXPECT_EQ(round.join(u' ').toStdString(),
            "cmdConnect cmdCancel optDirect cmbPort1 cmbBaud1 optModem cmbPort2 cmbBaud2 cmbNumber "
            "chkInitFile txtConfiguration cmdBrowse");
}

TEST(frmConnect, ClosesAfterAFailureAndShowsTheTriedPortNextTime) {
  FormBench bench;
  bench.Load();
  bench.Combo(u"cmbPort1"_s).setCurrentIndex(5);
  bench.Combo(u"cmbBaud1"_s).setCurrentIndex(0);
  bench.Click(u"cmdConnect"_s);
  EXPECT_FALSE(bench.Link.Connected);
  EXPECT_FALSE(bench.Form->isVisible());
  EXPECT_FALSE(bench.Port.IsOpen());
  ASSERT_EQ(bench.Messages.All.size(), 1u);
  EXPECT_EQ(bench.Messages.All[0].Title, u"Connect Error"_s);
  bench.Load();
  EXPECT_EQ(bench.Combo(u"cmbPort1"_s).currentText(), u"COM6"_s);
  EXPECT_EQ(bench.Combo(u"cmbBaud1"_s).currentText(), u"9600"_s);
}

TEST(frmConnect, ShowsThatWorkIsGoingOn) {
  FormBench bench;
  bench.Load();
  auto* bar = bench.Form->findChild<QProgressBar*>();
  ASSERT_NE(bar, nullptr);
  EXPECT_FALSE(bar->isVisible());
  bool shown = false;
  bool cancelEnabled = false;
  bool connectEnabled = true;
  bench.Loop.After(500, [&] {
    shown = bar->isVisible();
    cancelEnabled = bench.The<QPushButton>(u"cmdCancel"_s).isEnabled();
    connectEnabled = bench.The<QPushButton>(u"cmdConnect"_s).isEnabled();
  });
  bench.Click(u"cmdConnect"_s);
  EXPECT_TRUE(shown);
  EXPECT_TRUE(cancelEnabled);
  EXPECT_FALSE(connectEnabled);
}

TEST(frmConnect, CancelUnloadsAndRemembers) {
  for (const bool byEscape : {false, true}) {
    FormBench bench;
    bench.Load();
    bench.Click(u"optModem"_s);
    bench.Combo(u"cmbNumber"_s).setEditText(u"555-0100"_s);
    bench.The<QLineEdit>(u"txtConfiguration"_s).setText(u"/home/me/at.txt"_s);
    if (byEscape) {
      QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
      QCoreApplication::sendEvent(bench.Form.get(), &escape);
    } else {
      bench.Click(u"cmdCancel"_s);
    }
    EXPECT_FALSE(bench.Form->isVisible());
    EXPECT_EQ(bench.Settings.CurrentPhoneNumber, u"555-0100"_s);
    EXPECT_TRUE(bench.Settings.ConnectionIsModem);
    EXPECT_EQ(bench.Settings.ModemInit, u"/home/me/at.txt"_s);
    EXPECT_EQ(bench.Port.Opened, 1);  // The bench's own.
  }
}

TEST(frmConnect, APastedLineEndDoesNotGoIntoTheNumber) {
  FormBench bench;
  bench.Load();
  bench.Click(u"optModem"_s);
  bench.Combo(u"cmbNumber"_s).setEditText(u"555\t0100\r\n"_s);
  bench.Click(u"cmdCancel"_s);
  EXPECT_EQ(bench.Settings.CurrentPhoneNumber, u"555 0100  "_s);
}

TEST(frmConnect, RemembersOnTheWayOutOfASuccessAndOfTheWindow) {
  FormBench bench;
  bench.LetLoggerAnswer();
  bench.Load();
  bench.Combo(u"cmbNumber"_s).setEditText(u"1"_s);
  bench.Click(u"cmdConnect"_s);
  EXPECT_EQ(bench.Settings.CurrentPhoneNumber, u"1"_s);
  EXPECT_FALSE(bench.Settings.ConnectionIsModem);
  bench.Load();
  bench.Combo(u"cmbNumber"_s).setEditText(u"2"_s);
  bench.Form->close();
  EXPECT_EQ(bench.Settings.CurrentPhoneNumber, u"2"_s);
}

TEST(frmConnect, CancelWhileConnectingOnlyAsksTheWorkToEnd) {
  for (const bool byClosing : {false, true}) {
    FormBench bench;
    bench.Load();
    bool visibleAfterCancel = false;
    bench.Loop.After(1'500, [&] {
      if (byClosing) {
        bench.Form->close();
      } else {
        bench.Click(u"cmdCancel"_s);
      }
      visibleAfterCancel = bench.Form->isVisible();
    });
    bench.Click(u"cmdConnect"_s);
    EXPECT_TRUE(visibleAfterCancel);
    EXPECT_EQ(bench.Loop.NowMs(), 2'000);
    EXPECT_FALSE(bench.Form->isVisible());
    EXPECT_FALSE(bench.Port.IsOpen());
    ASSERT_EQ(bench.Messages.All.size(), 1u);
    EXPECT_EQ(bench.Messages.All[0].Prompt,
              u"Error: unable to establish communication with logger."_s);
  }
}

TEST(frmConnect, SurvivesTheEndOfTheProgramWhileConnecting) {
  FormBench bench;
  bench.Load();
  bench.Loop.After(1'500, [&] {
    bench.Port.Close();
    bench.Loop.End();
    bench.Form->done(QDialog::Rejected);
  });
  bench.Click(u"cmdConnect"_s);
  EXPECT_EQ(bench.Loop.NowMs(), 1'500);
  EXPECT_FALSE(bench.Form->isVisible());
  EXPECT_FALSE(bench.Link.Connected);
}

TEST(frmConnect, AModemConnectionNeedsANumber) {
  FormBench bench;
  bench.Load();
  bench.Click(u"optModem"_s);
  bench.Click(u"cmdConnect"_s);
  ASSERT_EQ(bench.Messages.All.size(), 1u);
  EXPECT_EQ(bench.Messages.All[0].Prompt, u"Error: no phone number specified"_s);
  EXPECT_EQ(bench.Messages.All[0].Title, u"Modem Connect"_s);
  EXPECT_FALSE(bench.Port.IsOpen());
  EXPECT_FALSE(bench.Form->isVisible());
}

TEST(frmConnect, TheModemWindowKeepsTheEndOfAStreamWithoutLineFeeds) {
  FormBench bench;
  bench.LetLoggerAnswer();
  const auto logger = bench.Port.OnWrite;
  QString shown;
  bench.Port.OnWrite = [&](const Bytes& written) {
    const std::string line(written.begin(), written.end());
    const auto answer = [&](const std::string& text) {
      bench.Arrive(Bytes(text.begin(), text.end()), 10);
    };
    if (line == "ATDT555-0100\r") {
      shown = bench.Form->findChild<QPlainTextEdit*>(u"txtModem"_s)->toPlainText();
      answer("CONNECT 9600\r\n");
    } else if (line == "ATZ\r") {
      for (int piece = 0; piece < 40; ++piece)
        bench.Arrive(Bytes(2000, static_cast<std::uint8_t>('a' + piece % 26)), 10 + piece);
      bench.Arrive({'O', 'K', '\r', '\n'}, 60);
    } else if (line.starts_with("AT")) {
      answer("OK\r\n");
    } else {
      logger(written);
    }
  };
  bench.Load();
  bench.Click(u"optModem"_s);
  bench.Combo(u"cmbNumber"_s).setEditText(u"555-0100"_s);
  bench.Click(u"cmdConnect"_s);
  EXPECT_TRUE(bench.Link.Connected);
  EXPECT_LE(shown.size(), 20'000);
  EXPECT_GE(shown.size(), 10'000);
  EXPECT_TRUE(shown.endsWith(u"nnnOK\nOK\n"_s)) << shown.right(20).toStdString();
}

TEST(frmConnect, DialsShowsTheDialogueAndConnects) {
  FormBench bench;
  bench.LetLoggerAnswer();
  const auto logger = bench.Port.OnWrite;
  QString shown;
  QColor colour;
  bench.Port.OnWrite = [&](const Bytes& written) {
    const std::string line(written.begin(), written.end());
    const auto answer = [&](const std::string& text) {
      bench.Arrive(Bytes(text.begin(), text.end()), 10);
    };
    if (line == "ATDT555-0100\r") {
      const auto* text = bench.Form->findChild<QPlainTextEdit*>(u"txtModem"_s);
      ASSERT_NE(text, nullptr);
      shown = text->toPlainText();
      colour = text->palette().color(QPalette::Text);
      EXPECT_EQ(text->window()->windowTitle(), u"Modem Connection"_s);
      EXPECT_EQ(text->window()->objectName(), u"frmModem"_s);
      answer("CONNECT 9600\r\n");
    } else if (line.starts_with("AT")) {
      answer("OK\r\n");
    } else {
      logger(written);
    }
  };
  bench.Load();
  bench.Click(u"optModem"_s);
  bench.Combo(u"cmbNumber"_s).setEditText(u"555-0100"_s);
  bench.Click(u"cmdConnect"_s);
  EXPECT_TRUE(bench.Link.Connected);
  EXPECT_EQ(shown, u"Sending Reset Command to Modem...\nOK\nOK\n"_s);
  EXPECT_EQ(colour, QColor(255, 0, 0));
  EXPECT_EQ(bench.Settings.ModemNumbers[0], u"555-0100"_s);
  EXPECT_EQ(bench.Link.LinkTimeoutTicks, 4);
  EXPECT_THAT(bench.Messages.All, IsEmpty());
}

TEST(frmConnect, CancelInTheModemWindowClosesBothWithoutAMessage) {
  for (const bool byEscape : {false, true}) {
    FormBench bench;
    bench.Load();
    bench.Click(u"optModem"_s);
    bench.Combo(u"cmbNumber"_s).setEditText(u"555-0100"_s);
    bench.Loop.After(5'000, [&] {
      auto* text = bench.Form->findChild<QPlainTextEdit*>(u"txtModem"_s);
      ASSERT_NE(text, nullptr);
      if (byEscape) {
        text->window()->close();
      } else {
        text->window()->findChild<QPushButton*>(u"cmdCancel"_s)->click();
      }
    });
    bench.Click(u"cmdConnect"_s);
    EXPECT_FALSE(bench.Form->isVisible());
    EXPECT_FALSE(bench.Port.IsOpen());
    EXPECT_FALSE(bench.Link.Connected);
    EXPECT_THAT(bench.Messages.All, IsEmpty());
    EXPECT_EQ(bench.Loop.NowMs(), 5'000);
  }
}

TEST(frmConnect, EnterInTheModemWindowPressesTheButtonThatHasTheFocusAndNoOther) {
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
    FormBench bench;
    bench.Load();
    bench.Click(u"optModem"_s);
    bench.Combo(u"cmbNumber"_s).setEditText(u"555-0100"_s);
    const auto enterOn = [&](const QString& name) {
      auto* text = bench.Form->findChild<QPlainTextEdit*>(u"txtModem"_s);
      ASSERT_NE(text, nullptr);
      text->window()->activateWindow();
      auto* target = text->window()->findChild<QWidget*>(name);
      ASSERT_NE(target, nullptr);
      target->setFocus();
      ASSERT_TRUE(target->hasFocus());
      QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
      QCoreApplication::sendEvent(target, &press);
    };
    bool goesOn = false;
    bench.Loop.After(5'000, [&] { enterOn(u"txtModem"_s); });
    bench.Loop.After(6'000, [&] {
      goesOn = bench.Port.IsOpen();
      enterOn(u"cmdCancel"_s);
    });
    // A key that does nothing must not hold the test up.
    bench.Loop.After(9'000, [&] { bench.Loop.End(); });
    bench.Click(u"cmdConnect"_s);
    EXPECT_TRUE(goesOn) << "the key in the text ended the call";
    EXPECT_EQ(bench.Loop.NowMs(), 6'000);
    EXPECT_FALSE(bench.Form->isVisible());
    EXPECT_FALSE(bench.Port.IsOpen());
    EXPECT_THAT(bench.Messages.All, IsEmpty());
  }
}

TEST(frmConnect, SurvivesTheEndOfTheProgramWhileDialling) {
  FormBench bench;
  bench.Load();
  bench.Click(u"optModem"_s);
  bench.Combo(u"cmbNumber"_s).setEditText(u"555-0100"_s);
  bench.Loop.After(5'000, [&] {
    auto* text = bench.Form->findChild<QPlainTextEdit*>(u"txtModem"_s);
    ASSERT_NE(text, nullptr);
    bench.Port.Close();
    bench.Loop.End();
    qobject_cast<QDialog*>(text->window())->done(QDialog::Rejected);
    bench.Form->done(QDialog::Rejected);
  });
  bench.Click(u"cmdConnect"_s);
  EXPECT_FALSE(bench.Form->isVisible());
  EXPECT_FALSE(bench.Link.Connected);
}

TEST(frmConnect, TheKeyThatBeganConnectingDoesNotEndIt) {
  FormBench bench;
  bench.Load();
  bench.Form->activateWindow();
  const auto enter = [&] {
    QWidget* target = bench.Form->focusWidget();
    ASSERT_NE(target, nullptr);
    QKeyEvent key(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &key);
  };
  bench.LetLoggerAnswer();
  bool pressedAgain = false;
  const auto answer = bench.Port.OnWrite;
  bench.Port.OnWrite = [&](const Bytes& written) {
    if (!pressedAgain) {
      pressedAgain = true;
      EXPECT_FALSE(bench.The<QPushButton>(u"cmdCancel"_s).hasFocus());
      enter();
    }
    answer(written);
  };
  enter();
  EXPECT_TRUE(pressedAgain);
  EXPECT_TRUE(bench.Link.Connected);
}

TEST(frmConnect, EnterOnTheFileButtonBrowses) {
  FormBench bench;
  bench.Load();
  bench.Click(u"optModem"_s);
  auto& browse = bench.The<QPushButton>(u"cmdBrowse"_s);
  browse.setFocus();
  QKeyEvent key(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
  QCoreApplication::sendEvent(&browse, &key);
  EXPECT_EQ(bench.Files.All.size(), 1u);
  EXPECT_TRUE(bench.Form->isVisible());
}

}  // namespace
}  // namespace tessmar::test
