#pragma once

#include <vector>

#include "plot/PlottingLibrary.h"

namespace tessmar {

/// Upright lines across all strips of a plot, at places of the time axis.
class UprightLines final : public QCPLayerable {
  Q_OBJECT

 public:
  enum class Form {
    Plain,
    Dashed,  ///< With a flag at the top: something happened.
    Back,    ///< Dotted, with an arrow to the left at the top: the clock went back.
    Split,   ///< Of dots and dashes, with a diamond at the top: uploads disagree.
  };

  UprightLines(QCustomPlot* plot, const QString& layer, Form form);

  void SetTimes(std::vector<double> times) { times_ = std::move(times); }
  void SetColour(const QColor& colour) { colour_ = colour; }
  const std::vector<double>& Times() const { return times_; }

 protected:
  void applyDefaultAntialiasingHint(QCPPainter* painter) const override;
  void draw(QCPPainter* painter) override;

 private:
  void DrawHead(QCPPainter* painter, double x, double top) const;

  Form form_;
  QColor colour_;
  std::vector<double> times_;
};

}  // namespace tessmar
