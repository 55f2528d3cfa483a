#pragma once

#include <QDialog>
#include <QStringList>
#include <array>
#include <optional>

class QLabel;
class QPushButton;

namespace tessmar {

class MessageIcon;

/// The dialog of every message: an icon, a text and up to four buttons. Filled by CMessage, then
/// shown by ShowMessage, which lays it out.
class FMessage : public QDialog {
  Q_OBJECT

 public:
  explicit FMessage(QWidget* parent = nullptr);

  /// 16, 32, 48 or 64 shows that icon, any other value none.
  void SetMessageIcon(int code);
  /// An empty title gives the application's.
  void SetMessageTitle(const QString& title);
  /// The buttons' captions; those beyond four are not shown.
  void SetButtonText(const QStringList& captions);
  /// For each button, whether it closes the dialog.
  void SetButtonsUnload(const QList<bool>& unload);
  /// Keeps the dialog above all normal windows, whatever the value: no message may hide behind
  /// them.
  void SetTopMost(bool topMost);
  /// The button that Enter presses; one that is not shown is none.
  void SetButtonDefault(int button);
  /// The button that Escape and the window manager's close request press, if any: nothing but a
  /// press of a button is ever taken for one that does something.
  /// @param escape  none: Escape is ignored.
  /// @param close   none: a close request is ignored.
  void SetWayOut(std::optional<int> escape, std::optional<int> close);
  void SetTextAlignment(Qt::AlignmentFlag alignment);

  /// Index of the button pressed last; 0 until one is.
  int SelectedButton() const { return selectedButton_; }

  /// Lays the dialog out for the text, shows it modally and returns after it has closed, by one of
  /// its buttons or by done().
  void ShowMessage(const QString& prompt);

 Q_SIGNALS:
  /// A button that does not close the dialog was pressed.
  void ButtonClicked(int button);
  /// The key F1 arrived at the dialog.
  void HelpKeyPressed();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void cmdButton_Click(int index);
  void LayOut(const QString& prompt);
  int ShownButtons() const;
  int ButtonWidth() const;
  int ButtonHeight() const;
  void PlaceButtons(int formWidth, int buttonWidth);

  MessageIcon* picIcon_;
  QLabel* lblMessage_;
  QWidget* picButtons_;
  std::array<QPushButton*, 4> cmdButton_{};

  QStringList buttonText_;
  QList<bool> buttonsUnload_;
  int selectedButton_ = 0;
  int iconCode_ = 0;
  int buttonDefault_ = 0;
  std::optional<int> escapeButton_;
  std::optional<int> closeButton_;
};

}  // namespace tessmar
