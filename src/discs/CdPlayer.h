#pragma once

#include "discs/CdAudio.h"
#include "platform/RowStore.h"
#include "platform/Setting.h"

#include <QObject>

#include <deque>
#include <functional>

namespace kelvo {

namespace setting {

/// The player's place on the screen, "x,y".
inline constexpr TextSetting CdPlayerPos{{kStartup, QLatin1StringView("CdPlayerPos")},
                                         QLatin1StringView("0,0")};
/// Seconds of one step of forward and rewind.
inline constexpr NumberSetting CdPlayerSpeed{{kStartup, QLatin1StringView("CdPlayerSpeed")}, 5, 1, 600};
/// It is heard on the monitor's device; else on the programme.
inline constexpr TruthSetting CdPlayerOnMonitor{{kStartup, QLatin1StringView("CdPlayerOnMonitor")}, false};

}  // namespace setting

struct CdTrackRow {
  int number = 0;
  QString title;
  QString length;
  bool current = false;
};

/// The CD player. Every command becomes commands of text for CdAudio, one after another in the order in which
/// they were given. Owned by its window's line; logic thread.
class CdPlayer : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    AudioSystem& audio;
    ProgramSettings settings;
    QString title;  ///< the program's
    std::shared_ptr<DriveShelf> shelf;
  };
  explicit CdPlayer(Services services);
  ~CdPlayer() override;

  /// The window opens: takes the drive, and looks at its disc each second from then on.
  void Open();
  /// The window is closed by hand: the disc stops, the drive is free.
  void Close();
  [[nodiscard]] bool IsOpen() const { return second_.Active(); }

  void Play();
  void Stop();
  void Pause();
  void Eject();
  void CloseTray();
  void NextTrack();
  void PreviousTrack();
  void Forward();
  void Rewind();
  /// Goes to the track, and plays from there.
  void PlayTrack(int number);
  /// "Fast Forward Speed": asks for the step of forward and rewind.
  void AskSpeed();
  [[nodiscard]] int Speed() const { return services_.settings.Get(setting::CdPlayerSpeed); }

  [[nodiscard]] DriveShelf& Shelf() { return *services_.shelf; }
  void Choose(const QString& place);
  [[nodiscard]] const QString& Place() const { return cd_.Place(); }
  [[nodiscard]] bool OnMonitor() const { return services_.settings.Get(setting::CdPlayerOnMonitor); }
  void SetOnMonitor(bool on);
  [[nodiscard]] ProgramSettings& Settings() { return services_.settings; }

  /// The program's title + " CD Player".
  [[nodiscard]] QString Title() const { return services_.title + QStringLiteral(" CD Player"); }
  [[nodiscard]] const RowStore<CdTrackRow>& Tracks() const { return tracks_; }
  [[nodiscard]] bool MediaPresent() const { return present_; }
  /// "Tracks: 5  Total time: 12:03"; empty without a disc.
  [[nodiscard]] const QString& DiscLine() const { return discLine_; }
  /// "Track time: 01:07"
  [[nodiscard]] const QString& TimeLine() const { return timeLine_; }
  [[nodiscard]] int Track() const { return track_; }
  [[nodiscard]] bool Playing() const { return playing_; }
  /// What is wrong or to be known.
  [[nodiscard]] const QString& Words() const { return trouble_.isEmpty() ? state_ : trouble_; }
  [[nodiscard]] QString WhyNoPlay() const;
  [[nodiscard]] QString WhyNoTray() const;

  /// Hears every command that is sent. For tests.
  std::function<void(const QString& command)> OnCommand;

 Q_SIGNALS:
  void Changed();

 private:
  using Step = std::function<Job<>()>;
  struct Order {
    Step step;
    bool byHand = true;
  };
  void Do(Step step);
  [[nodiscard]] Job<> Work();
  [[nodiscard]] Job<QString> Send(QString command);
  [[nodiscard]] Job<> RunOpen(QString place);
  [[nodiscard]] Job<> RunClose();
  [[nodiscard]] Job<> RunRefresh();
  [[nodiscard]] Job<> ListTracks(int count);
  [[nodiscard]] Job<> RunSimple(QString command);
  [[nodiscard]] Job<> RunStop();
  [[nodiscard]] Job<> RunStep(int step);
  [[nodiscard]] Job<> RunTo(int number, bool play);
  [[nodiscard]] Job<> RunMove(int seconds);
  [[nodiscard]] Job<> RunAskSpeed();
  void FollowShelf();
  void Watch();
  void Forget();
  [[nodiscard]] QString MonitorOutput() const;
  void TakePlace(const QString& position);

  Services services_;
  CdAudio cd_;
  RowStore<CdTrackRow> tracks_;
  bool present_ = false;
  QString discLine_;
  QString timeLine_;
  int track_ = 0;
  bool playing_ = false;
  QString trouble_;  ///< of the last order
  QString state_;
  Timer second_;  ///< `Timer1`, 1000 ms: the display
  Timer drive_;   ///< `Timer2`, 2000 ms: whether the drive still gives sound
  std::deque<Order> steps_;
  Job<> work_;
  Job<> asking_;
};

}  // namespace kelvo
