#pragma once

#include "console/automatic/AutoDecision.h"
#include "console/desk/ConsoleState.h"
#include "console/decks/DeckEngine.h"
#include "console/queue/PlayQueue.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/RandomSource.h"

#include <QHash>
#include <QObject>
#include <QSet>

#include <functional>
#include <optional>

namespace kelvo {

class Catalogue;

/// Brings the next track of automatic play into a deck: chooses the row, loads it, and goes on with the next
/// one when it cannot be played, until the deck holds a good track or every row was tried. It remembers for a
/// minute what could not be played, and what lies on a disk that does not answer until that answers. Owned by
/// AutoPlay; logic thread.
class AutoLoader {
 public:
  struct Services {
    EventLoop& loop;
    const Disks& disks;
    ConsoleState& state;
    DeckEngine& decks;
    PlayQueue& queue;
    const Catalogue& catalogue;
    RandomSource& random;
    std::function<bool(Deck)> FadedOut;  ///< by the slider, see Transitions
    std::function<int()> SecondsLeft;    ///< until a track is needed; 0 when it is needed now
  };

  explicit AutoLoader(Services services);

  /// Which row a Fill looks at first.
  enum class From { Selected, BehindSelected, Random };

  /// Until `deck` is loaded with a track that can be played (true), or nothing can be at the moment (false).
  /// Waits for a fade to end, unless nothing sounds, and, but for the start of a run (`atStart`), until
  /// nothing is heard of the deck. At that start a row is taken though its track was in the deck before.
  /// Held by the caller; one at a time.
  [[nodiscard]] Job<bool> Fill(Deck deck, From from, bool atStart = false);

  /// The row that the next Fill into `deck` would load; 0 when that is up to chance or there is none.
  [[nodiscard]] int Foreseen(Deck deck) const;

  /// A Fill works on this deck: what it holds has not been looked at yet.
  [[nodiscard]] bool Filling(Deck deck) const { return filling_ == deck; }

  /// A track that no preview has played yet, for the load that is under way; none when there is none.
  [[nodiscard]] std::optional<Mref> PickPreview();

  /// The deck is loaded with a track that can be heard; one that is loaded with another is done.
  [[nodiscard]] bool HoldsGoodTrack(Deck deck);
  /// A file was found to be no good while it played; `silent`: its disk did not answer.
  void MarkBad(const QString& path, bool silent = false);
  /// Every row, or very many tracks of a preview, were tried and none can be played.
  [[nodiscard]] bool NothingPlayable() const { return nothingPlayable_; }
  /// A new run begins: nothing is known to be bad.
  void Reset();

  /// Until no load into the deck is under way. One whose disk takes its time is given up as soon as the air
  /// cannot wait for it any longer.
  [[nodiscard]] Job<> LoadEnded(Deck deck);

  /// Its player runs and the slider lets it be heard.
  [[nodiscard]] bool Sounds(Deck deck) const;
  /// Neither deck sounds: whatever is under way, silence goes first.
  [[nodiscard]] bool Silent() const { return !Sounds(Deck::One) && !Sounds(Deck::Two); }
  /// A fade runs that must not be disturbed: it has sound.
  [[nodiscard]] bool FadeHolds() const;

  /// Random rows instead of the queue's order.
  bool RandomOn = false;
  PreviewPicks UsedPicks;
  /// A track was passed over: its title and why. Reported again for the same file after an hour at the
  /// earliest.
  std::function<void(const QString& title, const QString& why)> OnSkipped;

 private:
  /// A load has so long in any case, and longer only while its track is not needed at once. After each one
  /// that was given up though its disk answers, the next has three times as long: where every file is slow,
  /// giving up each in turn would never end.
  static constexpr Nanoseconds kLoadAllowance = std::chrono::milliseconds(1500);
  struct Bad {
    Nanoseconds retryAt{0};
    Nanoseconds toldAt{0};
    int returns = -1;  ///< when its disk did not answer: the value of Disks::Returns then
  };
  [[nodiscard]] bool IsBad(const QString& path) const;
  [[nodiscard]] std::optional<Mref> TrackIn(Deck deck) const;
  [[nodiscard]] NextRowQuestion QuestionFor(Deck deck, From from, bool atStart, bool retryBad) const;
  /// Sets lastHope_.
  [[nodiscard]] int ChooseRow(Deck deck, From from, bool atStart);
  [[nodiscard]] Job<bool> FillFromQueue(Deck deck, From from, bool atStart);
  [[nodiscard]] Job<bool> FillFromCatalogue(Deck deck, bool atStart);
  [[nodiscard]] Job<> DeckFree(Deck deck, bool atStart);
  void CueAgain(Deck deck);
  /// Loads the row that is selected, or the pick of a preview.
  [[nodiscard]] Job<DeckLoad> LoadInTime(Deck deck);
  [[nodiscard]] Job<DeckLoad> InTime(Deck deck, Job<DeckLoad> load);
  /// Gives up the load that has run since `begun` when its time is over.
  void CheckTime(Deck deck, Nanoseconds begun);
  /// A load into the deck gave nothing to play.
  void Skip(const QString& path, const QString& title, Deck deck, DeckLoad outcome);
  void FileWasRenamed(const QString& pathBefore, const QString& path);

  Services services_;
  QObject listener_;  ///< to the catalogue
  QHash<QString, Bad> bad_;
  QSet<QString> tried_;  ///< in the present round
  Mref lastPick_ = Mref::None;
  /// The present track failed lately; nothing better is left, so it gets its full time.
  bool lastHope_ = false;
  bool nothingPlayable_ = false;
  std::optional<Deck> filling_;
  Nanoseconds allowance_ = kLoadAllowance;  ///< of the next load, when its track is needed
};

}  // namespace kelvo
