#pragma once

#include <QString>
#include <vector>

namespace tessmar::bench {

enum class Budget { AtMost, AtLeast };

/// A figure for the table: what was measured, in what, and what it may be.
struct Figure {
  QString What;
  double Result = 0;
  QString Unit;
  Budget Kind = Budget::AtMost;
  double Limit = 0;
};

/// Prints a row of the table. The ratio is the used share of the budget: up to 1 the budget is
/// kept, whichever way it is meant.
void Print(const Figure& figure);

/// Prints a row that compares with a peer of the same run: the ratio is result / peer.
void PrintComparison(const QString& what, double result, const QString& unit, const QString& peer,
                     double peerResult);

/// The same with a ratio of its own, such as the middle one of those of several turns.
void PrintComparison(const QString& what, double result, const QString& unit, const QString& peer,
                     double peerResult, double ratio);

/// Prints a remark between the rows.
void PrintNote(const QString& text);

/// The middle one of some results; 0 of none.
double Median(std::vector<double> results);

/// The middle one of the ratios of results that were taken in turns: what disturbs the machine for
/// longer than a turn disturbs both. As many peers as results.
double MedianRatio(const std::vector<double>& results, const std::vector<double>& peers);

/// Processor time that this process has spent so far, in seconds.
double ProcessorSeconds();

}  // namespace tessmar::bench
