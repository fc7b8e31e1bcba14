#pragma once

#include "platform/TimeLeft.h"

#include <QWidget>

#include <functional>
#include <optional>

class QLabel;
class QPushButton;

namespace kelvo {

class ProgressStrip;

/// How far a long job is. A value.
struct JobState {
  bool running = false;
  QString words = {};                ///< what it does, or has done
  std::optional<double> share = {};  ///< how much is done, 0 to 1; none: it can't tell
  bool percentInWords = false;       ///< the words tell the share themselves
};

/// The strip of a long job: its words on a bar, per cent, the time that is left, and a stop where it has one.
/// GUI thread.
class JobStrip : public QWidget {
  Q_OBJECT
 public:
  /// `name` is the object name of the bar, `accessible` what it tells of.
  JobStrip(EventLoop& loop, const QString& name, const QString& accessible, QWidget* parent);

  void Show(const JobState& state);
  /// Puts a stop beside the bar, shown while the job runs.
  void OfferStop(const QString& name, const QString& tooltip, std::function<void()> stop);

  [[nodiscard]] ProgressStrip& Bar() { return *bar_; }

 private:
  void ShowTimeLeft(const JobState& state);

  EventLoop& loop_;
  ProgressStrip* bar_;
  QLabel* left_;
  QPushButton* stop_ = nullptr;
  bool running_ = false;
  TimeLeft timeLeft_;
};

}  // namespace kelvo
