#include "ui/FMessage.h"

#include <QAccessible>
#include <QCloseEvent>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

#include "base/MainScreen.h"
#include "ui/MessageIcon.h"
#include "ui/MessageLayout.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using namespace message_design;

/// The window manager's frame stands outside the window and takes nothing of its width.
constexpr int kFrameWidth = 0;

/// Width of a text as one line, its line breaks left out, in whole pixels and one to spare: a label
/// adds up its glyphs in its own way, and a part of a pixel too little would wrap the last word.
double OneLineWidth(QString text, const QFont& font) {
  text.remove(u'\r').remove(u'\n');
  return std::ceil(QFontMetricsF(font).horizontalAdvance(text)) + 1;
}

/// Width of the longest piece of a text that cannot be wrapped.
double LongestPieceWidth(QString text, const QFont& font) {
  text.replace(u'\n', QChar::LineSeparator);
  QTextLayout layout(text, font);
  QTextOption option;
  option.setWrapMode(QTextOption::WordWrap);
  layout.setTextOption(option);
  layout.beginLayout();
  while (true) {
    QTextLine line = layout.createLine();
    if (!line.isValid()) break;
    line.setLineWidth(0);
  }
  layout.endLayout();
  return layout.minimumWidth();
}

/// The text with a break allowed behind every character of each word that is wider than a line.
QString WithBreaksInLongWords(const QString& text, const QFont& font, double lineWidth) {
  constexpr QChar kZeroWidthSpace(0x200B);
  const QFontMetricsF metrics(font);
  QString result;
  QString word;
  const auto finishWord = [&] {
    const bool isLong = metrics.horizontalAdvance(word) > lineWidth;
    for (const QChar character : word) {
      result += character;
      if (isLong && !character.isHighSurrogate()) result += kZeroWidthSpace;
    }
    word.clear();
  };
  for (const QChar character : text) {
    if (!character.isSpace()) {
      word += character;
      continue;
    }
    finishWord();
    result += character;
  }
  finishWord();
  return result;
}

}  // namespace

FMessage::FMessage(QWidget* parent)
    : QDialog(parent),
      picIcon_(new MessageIcon(this)),
      lblMessage_(new QLabel(this)),
      picButtons_(new QWidget(this)) {
  setObjectName(u"FMessage"_s);
  // No close button: it would have to stand for an answer that nobody gave.
  setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);

  picIcon_->setObjectName(u"picIcon"_s);
  picIcon_->hide();

  lblMessage_->setObjectName(u"lblMessage"_s);
  lblMessage_->setTextFormat(Qt::PlainText);
  lblMessage_->setWordWrap(true);
  lblMessage_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  lblMessage_->setFocusPolicy(Qt::StrongFocus);
  SetTextAlignment(Qt::AlignLeft);

  picButtons_->setObjectName(u"picButtons"_s);
  QWidget* before = nullptr;
  for (std::size_t i = 0; i < cmdButton_.size(); ++i) {
    const int index = static_cast<int>(i);
    auto* button = new QPushButton(picButtons_);
    button->setObjectName(ElementName("cmdButton", index));
    button->hide();
    connect(button, &QPushButton::clicked, this, [this, index] { cmdButton_Click(index); });
    if (before != nullptr) setTabOrder(before, button);
    before = button;
    cmdButton_[i] = button;
  }
  setTabOrder(before, lblMessage_);
}

void FMessage::SetMessageIcon(int code) {
  iconCode_ = code;
  picIcon_->SetCode(code);
}

void FMessage::SetMessageTitle(const QString& title) {
  setWindowTitle(title.isEmpty() ? QGuiApplication::applicationDisplayName() : title);
}

void FMessage::SetButtonText(const QStringList& captions) {
  buttonText_ = captions;
  for (QPushButton* button : cmdButton_) button->hide();
  for (int i = 0; i < ShownButtons(); ++i) cmdButton_[static_cast<std::size_t>(i)]->show();
}

void FMessage::SetButtonsUnload(const QList<bool>& unload) {
  buttonsUnload_ = unload;
}

void FMessage::SetTopMost(bool /*topMost*/) {
  setWindowFlag(Qt::WindowStaysOnTopHint);
}

void FMessage::SetButtonDefault(int button) {
  buttonDefault_ = button;
  if (button < 0 || button >= kMostButtons) return;
  cmdButton_[static_cast<std::size_t>(button)]->setDefault(true);
}

void FMessage::SetWayOut(std::optional<int> escape, std::optional<int> close) {
  escapeButton_ = escape;
  closeButton_ = close;
}

void FMessage::SetTextAlignment(Qt::AlignmentFlag alignment) {
  lblMessage_->setAlignment(alignment | Qt::AlignTop);
}

void FMessage::ShowMessage(const QString& prompt) {
  LayOut(prompt);
  const int focused = buttonDefault_ < ShownButtons() ? std::max(0, buttonDefault_) : 0;
  cmdButton_[static_cast<std::size_t>(focused)]->setFocus();
  exec();
}

void FMessage::cmdButton_Click(int index) {
  selectedButton_ = index;
  if (buttonsUnload_.value(index, true)) {
    accept();
  } else {
    Q_EMIT ButtonClicked(index);
  }
}

int FMessage::ShownButtons() const {
  return static_cast<int>(std::min<qsizetype>(buttonText_.size(), kMostButtons));
}

int FMessage::ButtonWidth() const {
  const QFontMetrics metrics(cmdButton_.front()->font());
  const int margins = 2 * (style()->pixelMetric(QStyle::PM_ButtonMargin) +
                           style()->pixelMetric(QStyle::PM_DefaultFrameWidth)) +
                      metrics.averageCharWidth();
  double widest = 0;
  for (const QString& caption : buttonText_) {
    widest = std::max(widest, OneLineWidth(caption, cmdButton_.front()->font()));
  }
  return std::max(kButtonWidth, PixelsToTwips(widest + margins));
}

int FMessage::ButtonHeight() const {
  return std::max(kButtonHeight, PixelsToTwips(cmdButton_.front()->sizeHint().height()));
}

void FMessage::LayOut(const QString& prompt) {
  QString text = prompt;
  text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
  lblMessage_->setText(text);
  lblMessage_->setAccessibleName(text);
  const QFont font = lblMessage_->font();

  MessageWidths widths = MessageWidthsFor(PixelsToTwips(OneLineWidth(prompt, font)),
                                          !picIcon_->isHidden(), kFrameWidth);

  // A large font may need more than the rules give, for wide buttons or a piece that cannot wrap.
  const int buttonWidth = ButtonWidth();
  const int forButtons = LeastWidthForButtons(ShownButtons(), buttonWidth, kFrameWidth);
  const double longestPiece = LongestPieceWidth(text, font);
  const int forText = PixelsToTwips(longestPiece) - widths.Text;
  const int onScreen = PixelsToTwips(screen()->availableGeometry().width()) - widths.Form;
  const int wider = std::max({0, forButtons - widths.Form, std::min(forText, onScreen)});
  widths.Form += wider;
  widths.Text += wider;

  const int textWidth = TwipsToPixels(widths.Text);
  if (longestPiece > textWidth) {
    lblMessage_->setText(WithBreaksInLongWords(text, font, textWidth));
  }
  const int textHeight =
      std::max(kTextHeight, kTwipsPerPixel * lblMessage_->heightForWidth(textWidth));
  const int panelHeight = std::max(kPanelHeight, ButtonHeight() + kPanelHeight - kButtonHeight);
  const int formHeight = kHeight + MessageGrowth(textHeight) + panelHeight - kPanelHeight;

  picIcon_->setGeometry(TwipsToPixels(kIconLeft), TwipsToPixels(kIconTop),
                        TwipsToPixels(kIconWidth), TwipsToPixels(kIconHeight));
  lblMessage_->setGeometry(TwipsToPixels(widths.TextLeft), TwipsToPixels(kTextTop), textWidth,
                           TwipsToPixels(textHeight));
  const int width = TwipsToPixels(widths.Form - kFrameWidth);
  const int height = TwipsToPixels(formHeight);
  picButtons_->setGeometry(0, height - TwipsToPixels(panelHeight), width,
                           TwipsToPixels(panelHeight));
  PlaceButtons(widths.Form, buttonWidth);
  setFixedSize(width, height);
}

void FMessage::PlaceButtons(int formWidth, int buttonWidth) {
  const std::vector<int> lefts =
      MessageButtonLefts(ShownButtons(), formWidth, buttonWidth, kFrameWidth);
  for (std::size_t i = 0; i < lefts.size(); ++i) {
    QPushButton* button = cmdButton_[i];
    const QString& caption = buttonText_[static_cast<qsizetype>(i)];
    button->setText(caption);
    button->setAccessibleName(caption);
    button->setGeometry(TwipsToPixels(lefts[i]), 0, TwipsToPixels(buttonWidth),
                        TwipsToPixels(ButtonHeight()));
  }
}

void FMessage::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_F1) {
    Q_EMIT HelpKeyPressed();
    return;
  }
  if (event->key() == Qt::Key_Escape) {
    if (escapeButton_) cmdButton_Click(*escapeButton_);
    return;
  }
  QDialog::keyPressEvent(event);
}

// The window manager's request. The program itself closes the message by done().
void FMessage::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (closeButton_) cmdButton_Click(*closeButton_);
}

void FMessage::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

}  // namespace tessmar
