#include "ui/PromptClicks.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

class AButtonsKey : public testing::Test {
 protected:
  AButtonsKey() {
    auto* layout = new QVBoxLayout(&window_);
    layout->addWidget(button_);
    layout->addWidget(box_);
    for (QAbstractButton* button :
         {static_cast<QAbstractButton*>(button_), static_cast<QAbstractButton*>(box_)})
      QObject::connect(button, &QAbstractButton::clicked, &window_, [this] { ++clicks_; });
    window_.show();
    window_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
  }

  /// The toolkit's own click comes when it lets go a button that it has pressed.
  void ExpectNothingToCome() const {
    EXPECT_FALSE(button_->isDown());
    EXPECT_FALSE(box_->isDown());
  }
  void PressAltAnd(Qt::Key key) { QTest::keyClick(&window_, key, Qt::AltModifier); }

  const PromptClicks promptClicks_;
  QWidget window_;
  QPushButton* button_ = new QPushButton(u"Save &picture"_s);
  QCheckBox* box_ = new QCheckBox(u"By &day"_s);
  int clicks_ = 0;
};

// A tenth of a second later a dialog might stand over it.
TEST_F(AButtonsKey, ClicksAtOnceAndOnce) {
  PressAltAnd(Qt::Key_P);
  EXPECT_EQ(clicks_, 1);
  ExpectNothingToCome();
}

TEST_F(AButtonsKey, TurnsABoxAndGivesItTheFocus) {
  PressAltAnd(Qt::Key_D);
  EXPECT_EQ(clicks_, 1);
  EXPECT_TRUE(box_->isChecked());
  EXPECT_TRUE(box_->hasFocus());
}

TEST_F(AButtonsKey, DoesNothingWhileTheButtonIsDisabled) {
  button_->setEnabled(false);
  PressAltAnd(Qt::Key_P);
  EXPECT_EQ(clicks_, 0);
  ExpectNothingToCome();
}

TEST_F(AButtonsKey, OnlyMovesTheFocusWhenTwoShareIt) {
  box_->setText(u"By &period"_s);
  PressAltAnd(Qt::Key_P);
  EXPECT_EQ(clicks_, 0);
  ExpectNothingToCome();
}

}  // namespace
}  // namespace tessmar
