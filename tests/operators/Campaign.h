#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QString>
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>

#include "app/Program.h"
#include "e2e/LoggerProcess.h"
#include "operators/Random.h"
#include "operators/Watch.h"

namespace tessmar::test {

/// What a campaign is.
struct CampaignPlan {
  quint64 Seed = 1;
  int Steps = 150;
  QString Folder;     ///< Takes all files.
  QString Simulator;  ///< The program of the simulated logger.
  QString Journal;    ///< A line a step, for whoever looks into a finding; empty for none.
  /// Told of what was found, in whatever thread, and does not return.
  std::function<void(const QString& finding)> Found;
};

/// What has no business to happen, but did.
class Finding : public std::runtime_error {
 public:
  explicit Finding(const QString& what) : std::runtime_error(what.toStdString()) {}
};

/// Random operators, one after the other, each with a program of their own on the same desk, in
/// either language: they press what they find, and everything is looked at after each step. They
/// work from a thread of their own.
class Campaign {
 public:
  explicit Campaign(CampaignPlan plan);
  ~Campaign();

  /// Does all steps; throws Finding. In the user interface's thread.
  void Run();

  /// Ends the present program as a signal does.
  void EndBySignal();
  /// What was told to nobody else: a fault in the message loop, a warning of the toolkit.
  void Tell(const QString& complaint);

  /// What was done and seen, a line each.
  QStringList Report() const;

 private:
  enum class End { Window, Signal };

  void WorkOneLife();
  void Work();
  bool Step();
  void Do();
  bool ExportRuns();
  void Look();
  void ComeToRest();
  void EndLife(End end);
  void AnswerLastMessage();
  void WaitForEnd(End end, const QString& after);
  void StartLogger(Random& random);
  void DisturbLogger(Random& random);
  void CheckAfterLife();
  QString Complaint();
  void Note(const QString& text);
  Random Luck();

  /// Runs a function in the user interface's thread and waits for it; a loop that does not answer
  /// is a finding.
  void Ask(const std::function<void()>& question);
  /// Runs it there when its turn comes.
  static void Post(const std::function<void()>& deed);

  QString Path(const QString& name) const;

  const CampaignPlan plan_;
  QFile journal_;
  std::unique_ptr<LoggerProcess> logger_;
  std::unique_ptr<Program> program_;
  Watch watch_;

  int step_ = 0;      ///< Steps done, of all lives.
  int luck_ = 0;      ///< Draws of luck so far.
  int lifeEnds_ = 0;  ///< Steps after which the present life ends.
  std::atomic<bool> over_ = false;
  int status_ = 0;
  QElapsedTimer sinceStart_;

  std::mutex complaintsLock_;
  QStringList complaints_;

  Holdings atFirst_;
  qint64 longestAnswerMs_ = 0;
  qint64 longestRestMs_ = 0;
  int lives_ = 0;
  int rests_ = 0;
  int signals_ = 0;
  int disturbances_ = 0;
  int exportsEnded_ = 0;  ///< Programs that were ended while an export ran.
};

}  // namespace tessmar::test
