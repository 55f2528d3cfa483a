#include "bench/Figures.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <utility>

namespace tessmar::bench {
namespace {

using namespace Qt::StringLiterals;

void PrintRow(const QString& what, double result, const QString& unit, const QString& beside,
              double ratio) {
  std::printf("%-58s %10.3f %-9s %-26s %6.2f\n", qUtf8Printable(what), result, qUtf8Printable(unit),
              qUtf8Printable(beside), ratio);
  std::fflush(stdout);
}

}  // namespace

void Print(const Figure& figure) {
  const bool atMost = figure.Kind == Budget::AtMost;
  const double ratio = atMost ? figure.Result / figure.Limit : figure.Limit / figure.Result;
  PrintRow(figure.What, figure.Result, figure.Unit,
           (atMost ? u"at most %1"_s : u"at least %1"_s).arg(figure.Limit), ratio);
}

void PrintComparison(const QString& what, double result, const QString& unit, const QString& peer,
                     double peerResult) {
  PrintComparison(what, result, unit, peer, peerResult, result / peerResult);
}

void PrintComparison(const QString& what, double result, const QString& unit, const QString& peer,
                     double peerResult, double ratio) {
  PrintRow(what, result, unit, u"%1 %2"_s.arg(peer).arg(peerResult, 0, 'f', 3), ratio);
}

void PrintNote(const QString& text) {
  std::printf("  %s\n", qUtf8Printable(text));
  std::fflush(stdout);
}

double Median(std::vector<double> results) {
  if (results.empty()) return 0;
  const auto middle = results.begin() + static_cast<std::ptrdiff_t>(results.size() / 2);
  std::nth_element(results.begin(), middle, results.end());
  return *middle;
}

double MedianRatio(const std::vector<double>& results, const std::vector<double>& peers) {
  std::vector<double> ratios;
  for (std::size_t turn = 0; turn < results.size(); ++turn)
    ratios.push_back(results[turn] / peers[turn]);
  return Median(std::move(ratios));
}

double ProcessorSeconds() {
  timespec spent{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &spent);
  return static_cast<double>(spent.tv_sec) + static_cast<double>(spent.tv_nsec) * 1e-9;
}

}  // namespace tessmar::bench
