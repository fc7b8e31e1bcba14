#pragma once

#include "audio/MonitorSettings.h"
#include "audio/cDshow.h"
#include "console/decks/DeckEngine.h"
#include "console/jingles/Jingles.h"
#include "console/transitions/Transitions.h"

#include <QObject>

#include <optional>

namespace kelvo {

/// Where the track in the monitor came from.
enum class MonitorSource {
  Jingles = 1,
  DeckOne = 2,
  DeckTwo = 3,
  List = 4,  ///< the library or the queue: it is in no deck
};

/// Lets the operator listen to a track on a second sound device before it goes on air, and line it up: the
/// deck then starts from the place that was found. Never on the programme's device: without its own it is
/// silent. Owned by the Console; logic thread.
class Monitor : public QObject {
  Q_OBJECT

 public:
  enum class Nudge { Backwards, Forward, AdvanceTwo, RewindTwo };
  /// Steps of ten decibels, 0 loudest.
  static constexpr int kMostLevel = 10;
  static constexpr int kMostBalance = 10000;

  struct Services {
    EventLoop& loop;
    AudioSystem& audio;
    DeckEngine& decks;
    Jingles& jingles;
    Transitions& fades;
    ProgramSettings settings;
  };
  explicit Monitor(Services services);

  /// More than one sound output exists.
  [[nodiscard]] bool Enabled() const { return services_.audio.OutputNames().size() > 1; }
  /// The device on which the monitor is heard; "None" at first.
  [[nodiscard]] QString Device() const;
  /// What it is remembered by, as players take it.
  [[nodiscard]] QString Output() const;
  /// Those that it can be heard on: all but the programme's.
  [[nodiscard]] QStringList Devices() const;
  /// What is open goes on there, from where it is; so it does when the setting is changed elsewhere.
  void SetDevice(const QString& name);
  /// Its device is not there, or none was chosen: nothing is heard.
  [[nodiscard]] bool DeviceMissing() const;
  /// Its device plays the programme by now, so it keeps silent.
  [[nodiscard]] bool HeldBack() const;

  /// Why another player could not be heard on its device, beside the programme; in words, empty when it could.
  [[nodiscard]] QString WhyNotApart() const;

  /// Opens what the source holds, and runs it. Nothing where it holds nothing.
  void Open(MonitorSource source);
  /// The same with a file that is in no deck.
  void OpenFile(const QString& path, const QString& title);
  void Close();
  [[nodiscard]] bool Shown() const { return shown_; }
  /// The file that is open in it; empty while it is closed.
  [[nodiscard]] QString FilePath() const { return shown_ ? opened_.path : QString(); }

  void Run();
  void Pause();
  void BackToStart();
  [[nodiscard]] bool Running() const { return graph_.GraphPlayState() == cDshow::State::Running; }
  /// A hand on the position slider.
  void Seek(int seconds);
  /// A nudge button goes down, and up. Held, a nudge gathers speed.
  void BeginNudge(Nudge nudge);
  void EndNudge() { nudge_.Cancel(); }

  /// Whether there is a deck, or the jingle player, to be set.
  [[nodiscard]] bool CanSync() const { return source_ != MonitorSource::List; }
  /// Sets the source to the monitor's position and closes; says so where it holds another track by now.
  /// Returns whether it was set.
  bool Sync();
  /// The same, and a deck is started with a part fade.
  void SyncStart();

  [[nodiscard]] const QString& TitleLine() const { return titleLine_; }
  [[nodiscard]] const QString& Track() const { return track_; }
  /// Whole seconds.
  [[nodiscard]] int Position() const { return static_cast<int>(graph_.GraphPosition()); }
  [[nodiscard]] int Duration() const { return static_cast<int>(graph_.GraphDuration()); }

  [[nodiscard]] int Level() const { return level_; }
  void SetLevel(int value);
  [[nodiscard]] int Balance() const { return balance_; }
  void SetBalance(int value);

 Q_SIGNALS:
  void Changed();

 private:
  /// What the monitor was opened on.
  struct Opened {
    QString path;
    Mref track = Mref::None;
  };
  /// The device on which the listeners hear the desk.
  [[nodiscard]] QString ProgrammeDevice() const;
  [[nodiscard]] static std::optional<Deck> DeckOf(MonitorSource source);
  [[nodiscard]] std::optional<Opened> HeldBy(MonitorSource source) const;
  /// `from`: where it begins, seconds.
  void Begin(MonitorSource source, const Opened& opened, const QString& titleLine, const QString& track,
             double from = 0);
  [[nodiscard]] Job<> RunOpen(MonitorSource source, Opened opened, QString titleLine, QString track,
                              double from);
  [[nodiscard]] Job<> RunNudge(Nudge nudge);
  void FollowDevice();
  void Tick();
  void ApplyLevels();

  Services services_;
  cDshow graph_;
  MonitorSource source_ = MonitorSource::List;
  Opened opened_;
  QString titleLine_;
  QString track_;
  bool shown_ = false;
  int level_ = 0;
  int balance_ = 0;
  Timer tick_;
  Job<> open_;
  Job<> nudge_;
};

}  // namespace kelvo
