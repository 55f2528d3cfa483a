#pragma once

#include <QDateTime>
#include <QHash>
#include <QStringList>
#include <deque>
#include <functional>
#include <optional>
#include <vector>

#include "base/Clock.h"
#include "base/FileDialogs.h"
#include "base/MainScreen.h"
#include "base/Messages.h"

namespace tessmar::test {

/// A clock that stands where a test put it.
class FakeClock final : public Clock {
 public:
  QDateTime Now() const override { return Present; }
  QDateTime Present{QDate(2010, 12, 27), QTime(15, 5, 12)};
};

/// Scripted answers; what was asked is kept. Without an answer left a message gives Default.
class FakeMessages final : public Messages {
 public:
  struct Asked {
    QString Prompt;
    int Buttons = 0;
    QString Title;
    bool operator==(const Asked&) const = default;
  };
  int MsgBox(const QString& prompt, int buttons, const QString& title) override {
    All.push_back({prompt, buttons, title});
    if (OnMessage) OnMessage();
    if (Answers.empty()) return Default;
    const int answer = Answers.front();
    Answers.pop_front();
    return answer;
  }
  std::vector<Asked> All;
  std::deque<int> Answers;
  int Default = kOk;
  std::function<void()> OnMessage;
};

/// Scripted file choices; without one left a dialog is cancelled.
class FakeFileDialogs final : public FileDialogs {
 public:
  std::optional<QString> AskOpen(const FileDialogRequest& request) override {
    return Answer(request);
  }
  std::optional<QString> AskSave(const FileDialogRequest& request) override {
    return Answer(request);
  }
  std::vector<FileDialogRequest> All;
  std::deque<std::optional<QString>> Answers;
  int Part = 0;  ///< Of the filter.

 private:
  std::optional<QString> Answer(const FileDialogRequest& request) {
    All.push_back(request);
    if (request.Part != nullptr) *request.Part = Part;
    if (Answers.empty()) return std::nullopt;
    const std::optional<QString> answer = Answers.front();
    Answers.pop_front();
    return answer;
  }
};

/// A main window of names and values. Counts what is written, so that a test can tell a label that
/// was set again from one that was left alone.
class FakeMainScreen final : public MainScreen {
 public:
  struct Meter {
    double Fraction = 0;
    bool Enabled = false;
  };
  QString Caption(const QString& control) const override { return Captions.value(control); }
  void SetCaption(const QString& control, const QString& text) override {
    Captions[control] = text;
    Written.append(control);
  }
  void SetEnabled(const QString& control, bool enabled) override { Enabled[control] = enabled; }
  void SetVisible(const QString& control, bool visible) override { Visible[control] = visible; }
  bool IsChecked(const QString& control) const override { return Checked.value(control, false); }
  void SetChecked(const QString& control, bool checked) override { Checked[control] = checked; }
  void SetTextColour(const QString& control, Rgb colour) override { TextColours[control] = colour; }
  void SetBackground(const QString& control, std::optional<Rgb> colour) override {
    Backgrounds[control] = colour;
  }
  void PaintMeter(int channel, double fraction, bool enabled) override {
    Meters[channel] = {fraction, enabled};
    ++Paints;
  }
  void SetWaitCursor(bool on) override {
    WaitCursor += on ? 1 : -1;
    if (on) ++WaitCursorShown;
  }

  QHash<QString, QString> Captions;
  QHash<QString, bool> Enabled;
  QHash<QString, bool> Visible;
  QHash<QString, bool> Checked;
  QHash<QString, Rgb> TextColours;
  QHash<QString, std::optional<Rgb>> Backgrounds;
  QHash<int, Meter> Meters;
  QStringList Written;  ///< Every caption that was set, in order.
  int Paints = 0;
  int WaitCursor = 0;  ///< Above 0 while the hour-glass shows.
  int WaitCursorShown = 0;
};

}  // namespace tessmar::test
