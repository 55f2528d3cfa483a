#pragma once

#include <QHash>

#include "base/MainScreen.h"

namespace tessmar {

/// The main window of a program that has none: keeps the captions, which are what the live display
/// has to say, and shows nothing.
class QuietScreen final : public MainScreen {
 public:
  QString Caption(const QString& control) const override { return captions_.value(control); }
  void SetCaption(const QString& control, const QString& text) override {
    captions_[control] = text;
  }
  void SetEnabled(const QString& /*control*/, bool /*enabled*/) override {}
  void SetVisible(const QString& /*control*/, bool /*visible*/) override {}
  bool IsChecked(const QString& /*control*/) const override { return false; }
  void SetChecked(const QString& /*control*/, bool /*checked*/) override {}
  void SetTextColour(const QString& /*control*/, Rgb /*colour*/) override {}
  void SetBackground(const QString& /*control*/, std::optional<Rgb> /*colour*/) override {}
  void PaintMeter(int /*channel*/, double /*fraction*/, bool /*enabled*/) override {}
  void SetWaitCursor(bool /*on*/) override {}

 private:
  QHash<QString, QString> captions_;
};

}  // namespace tessmar
