#pragma once

#include "audio/AudioSystem.h"
#include "console/decks/ConfirmationPanel.h"
#include "console/decks/DeckRecord.h"
#include "console/desk/ConsoleState.h"
#include "console/queue/PlayQueue.h"
#include "console/session/SessionRecorder.h"
#include "database/Catalogue.h"
#include "database/Paths.h"
#include "database/TrackInfo.h"
#include "platform/Disks.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Setting.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace kelvo {

/// The buttons that move a stopped deck.
enum class FastMove { Rewind = 0, Forward = 1, SkipToStart = 2, SkipToEnd = 3 };

/// The two decks: a track's life from its load out of the queue over start, position and stop to the end of
/// its stream, and what is written back then. Other parts decide when to start which deck. Owned by the
/// Console; logic thread.
class DeckEngine : public QObject {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    Disks& disks;
    AudioSystem& audio;
    Catalogue& catalogue;
    PlayQueue& queue;
    ConfirmationPanel& panel;
    ConsoleState& state;
    SessionRecorder& session;
    Paths paths;
    ProgramSettings settings;
  };

  explicit DeckEngine(Services services);
  ~DeckEngine() override;

  [[nodiscard]] const DeckRecord& Record(Deck deck) const { return decks_[deck]; }
  [[nodiscard]] MediaPlayer& Player(Deck deck) { return *players_[deck]; }

  /// The load command of the operator, with its guards and questions: the selected row of the queue, or a
  /// track of the preview.
  void LoadCommand(Deck deck);
  /// The load command does something now: it loads, asks, or shows that it failed.
  [[nodiscard]] bool LoadCommandActs(Deck deck) const;
  /// The same by automatic play, which is asked nothing. Dropped at once when there is nothing to load, or
  /// the deck has it already. The load goes on though the job is dropped.
  [[nodiscard]] Job<DeckLoad> LoadDeck(Deck deck);
  /// Loads what the operator was asked about, without asking again.
  void LoadTrack(Deck deck, const LoadRequest& request) { BeginLoad(deck, request, Disks::Patience::Person); }
  /// What comes of the load that is under way; Dropped at once when there is none.
  [[nodiscard]] Job<DeckLoad> LoadEnds(Deck deck);
  /// A load that the air cannot wait for ends as NoAnswer.
  void GiveUpLoad(Deck deck);
  /// The file of the load is being opened, and its disk gives data.
  [[nodiscard]] bool LoadGetsOn(Deck deck) const;
  /// The track in the deck is going to be played: its own fade-in speed goes to the slider, and in automatic
  /// play it may lengthen the overlap. Each load by hand does so; automatic play once it has found the track
  /// good.
  void TakeFadeIn(Deck deck);
  /// "Manual start": a loaded or stopped deck starts; one that played out starts from its beginning.
  void ManualStart(Deck deck);
  /// The stop command, with its guards.
  void StopCommand(Deck deck);

  void StartDeck(Deck deck);
  void StopDeck(Deck deck);
  /// The operator stops the deck, with no question left.
  void StopByHand(Deck deck);
  /// A deck that should play: from the start when it is at its end. One that was faded out and still
  /// plays is on air again.
  void RestartDeck(Deck deck);
  /// Until `deck`, and the other one where it has just begun, is half a second into its track, or it is clear
  /// that it will not be: a disk that gives nothing for two seconds is waited for no longer. `givenUp` ends
  /// it at once.
  [[nodiscard]] Job<> WaitForAudio(Deck deck, std::function<bool()> givenUp = {});
  /// A deck that plays has moved on from where it was started, half a second into its track or beyond, and
  /// has not stopped since.
  [[nodiscard]] bool GivesSound(Deck deck) const;
  /// Its position moves.
  [[nodiscard]] bool Moves(Deck deck) const;
  /// The deck that was started last of those that play; none when none does.
  [[nodiscard]] std::optional<Deck> OnAir() const;
  /// The track ran out here and is still what the queue says was played.
  [[nodiscard]] bool WasRecentlyPlayed(Deck deck) const;

  /// A position button goes down; Rewind and Forward move until EndFastMove.
  void BeginFastMove(Deck deck, FastMove move);
  void EndFastMove(Deck deck);

  /// Level of a deck as a loss, 0..2000 (clamped).
  void SetLoss(Deck deck, int loss) { SetLoss(deck, loss, loss); }
  /// The same while the operator speaks over it: `level` is what it comes back to.
  void SetLoss(Deck deck, int loss, int level);
  /// Automatic play marks a deck that fades out as done.
  void SetState(Deck deck, DeckState state);
  void SetInfo(Deck deck, const QString& info);
  /// A deck's position is set from outside (the monitor, a group playlist).
  void SetPosition(Deck deck, double seconds);

  /// The half width, in letters, of the box that shows the track's texts: the banner of a request is as wide.
  void SetInfoTextWidth(int letters) { infoTextWidth_ = letters; }

  /// The desk closes: positions are read no more.
  void StopFrameUpdates() { frameUpdateTimer_.Stop(); }

  /// A random track for a preview, with its path; none when there is none.
  std::function<std::optional<Mref>()> PickPreview;
  /// In automatic play outside preview: the loaded track may lengthen the overlap.
  std::function<void(Deck)> CheckFadeOverride;
  /// The track's own fade-in speed goes to the fade speed slider (0..50).
  std::function<void(int)> OnFadeSpeed;
  /// What the deck's track says of its own start and end is not what it said `before`.
  std::function<void(Deck, const TrackPlaySettings& before)> OnPlayChanged;
  /// A deck ran out; the status line falls back to the about line.
  std::function<void(Deck)> OnEndOfStream;
  std::function<void(Deck)> OnStarted;
  /// A deck that was faded out, and has played on unheard, is wanted on air again.
  std::function<void(Deck)> OnBroughtBack;
  /// The operator's plain start brought a new track on air.
  std::function<void(Deck)> OnStartedByHand;
  std::function<void(Deck)> OnStoppedByHand;
  /// A deck was started and gives no sound.
  std::function<void(Deck)> OnStartFailed;

 Q_SIGNALS:
  void Changed(Deck deck);

 private:
  struct TrackInfoFile;
  /// What happens to the catalogue.
  void FollowCatalogue();
  void FileWasRenamed(const QString& pathBefore, const QString& path);
  void InfoWasSaved(const TrackInfoSaved& saved);
  /// What the track says of itself.
  void TakeInfo(Deck deck, const TrackInfo& info);
  void RenumberTracks(const std::function<Mref(Mref track, const QString& path)>& number);
  /// A load during the fade that runs counts as failed.
  [[nodiscard]] bool FadeFailsLoad(Deck deck) const;
  [[nodiscard]] std::optional<LoadRequest> FindRequest();
  /// What the load command is to load; none when a guard or a question prevents it.
  [[nodiscard]] std::optional<LoadRequest> Commanded(Deck deck);
  void BeginLoad(Deck deck, const LoadRequest& request, Disks::Patience patience);
  [[nodiscard]] Job<> RunLoad(Deck deck);
  /// Loads what is coming.
  [[nodiscard]] Job<DeckLoad> Load(Deck deck);
  [[nodiscard]] Job<TrackInfoFile> ReadInfo(QString path);
  /// Checks whether the file that a deck opens makes progress.
  void WatchOpen(Deck deck);
  void TakeTrack(Deck deck, const LoadRequest& request, const TrackInfoFile& file);
  void EndLoad(Deck deck, DeckLoad outcome);
  void CheckStart(Deck deck);
  [[nodiscard]] bool StandsAtEnd(Deck deck) const;
  void EndOfStream(Deck deck);
  /// A stored duration that is wrong is corrected, where the stream came to the end of its file.
  void CheckTrackTime(Deck deck);
  void AdjustTrackTime(Mref track, Deck deck, double position);
  [[nodiscard]] Job<> WriteDuration(QString filePath, double seconds);
  [[nodiscard]] Job<> RunFastMove(Deck deck, FastMove move);
  void FrameUpdate();
  void RecordSession(SessionCode code, Deck deck, double position = -1);
  /// The deck holds the track of this queue row, or is about to.
  [[nodiscard]] bool Holds(Deck deck, const QueueEntry& row) const;
  [[nodiscard]] static QString BaseNameOf(const QString& path);
  /// Whole seconds left.
  [[nodiscard]] static int RemainOf(const DeckRecord& record);
  [[nodiscard]] static QString DeckWord(Deck deck);
  [[nodiscard]] static PanelQuestion PlayingLive(Deck deck, const QString& button, PanelAction action,
                                                 LoadRequest load = {});

  Services services_;
  PerDeck<DeckRecord> decks_;
  PerDeck<std::unique_ptr<MediaPlayer>> players_;
  PerDeck<Job<>> loads_;
  /// What is on its way into a deck.
  struct Coming {
    LoadRequest request;
    Disks::Patience patience = Disks::Patience::Person;
    std::optional<TrackInfo> saved = {};  ///< newer than what was read
  };
  PerDeck<Coming> coming_;
  PerDeck<QString> banners_;  ///< of the request that the deck's track is for
  PerDeck<std::vector<std::shared_ptr<OneShot<DeckLoad>>>> loadWaits_;
  /// The Open of a load.
  struct OpenWatch {
    std::uint64_t stepsAtFirst = 0;
    std::uint64_t steps = 0;
    Nanoseconds movedAt{0};
    bool suspected = false;
    Timer timer;
  };
  PerDeck<OpenWatch> openWatches_;
  /// Where a deck was started, and when it was last seen to move.
  struct Motion {
    double startedAt = 0;
    double position = 0;
    Nanoseconds movedAt{0};
    Timer check;
  };
  PerDeck<Motion> motions_;
  Deck startedLast_ = Deck::One;
  PerDeck<Job<>> fastMoves_;
  PerDeck<bool> moved_;  ///< by the button that is held
  JobList writes_;
  Timer frameUpdateTimer_;
  int infoTextWidth_ = 40;
};

}  // namespace kelvo
