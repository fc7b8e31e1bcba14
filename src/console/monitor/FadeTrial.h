#pragma once

#include "audio/cDshow.h"
#include "console/monitor/Monitor.h"

#include <QObject>

namespace kelvo {

/// A start of one track over the end of another, to be listened to. A value.
struct TrialOrder {
  QString before;  ///< music file that is on its end
  QString after;   ///< music file that comes in
  TransitionKind kind = TransitionKind::Dub;
  int seconds = 1;  ///< before the end of the first at which the second starts
  int fadeSp = 0;   ///< place of the fade speed slider, 0..50
};

/// The cross-pan slider of a start by automatic play, so long after the coming track began: from -200, the
/// going track alone, to 200 and to the middle of a dub.
[[nodiscard]] int TrialSlider(TransitionKind kind, int fadeSp, Nanoseconds sinceStart);

/// Plays the start of one track over another with the levels that the desk would give them, on the monitor's
/// device and nowhere else: neither a deck nor the desk's sliders take part. What the monitor plays ends
/// first. Owned by who offers it; logic thread.
class FadeTrial : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    AudioSystem& audio;
    Monitor& monitor;
    ProgramSettings settings;
  };
  explicit FadeTrial(Services services);

  /// Why nothing would be heard, or what goes out would be; in words, empty when it can begin.
  [[nodiscard]] QString WhyNot() const { return services_.monitor.WhyNotApart(); }
  void Begin(const TrialOrder& order);
  void Stop();
  [[nodiscard]] bool Running() const { return running_; }
  /// What is heard, or why it could not be; empty at first.
  [[nodiscard]] const QString& Words() const { return words_; }

 Q_SIGNALS:
  void Changed();

 private:
  [[nodiscard]] Job<> Run(TrialOrder order);
  [[nodiscard]] Job<> Play(TrialOrder order);
  [[nodiscard]] Job<bool> Open(cDshow& graph, QString path);
  void SetLevels(int slider, TransitionKind kind);
  void End(const QString& words);

  Services services_;
  cDshow going_;
  cDshow coming_;
  QString output_;
  bool running_ = false;
  QString words_;
  Job<> job_;
};

}  // namespace kelvo
