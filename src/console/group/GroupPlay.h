#pragma once

#include "console/decks/DeckEngine.h"
#include "console/queue/PlayQueue.h"
#include "console/status/DeskStatus.h"
#include "console/transitions/Transitions.h"
#include "database/Catalogue.h"
#include "database/GroupElement.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <functional>
#include <optional>
#include <vector>

namespace kelvo {

/// Runs a group playlist: a recorded mix, done again on the two decks, element by element. Each element has
/// its place in time, counted from the first one, so that what comes late makes nothing behind it late. Owned
/// by the Console; logic thread.
class GroupPlay {
 public:
  struct Services {
    EventLoop& loop;
    DeckEngine& decks;
    PlayQueue& queue;
    Transitions& fades;
    const Catalogue& catalogue;
    std::function<void(Deck)> AfterStart;
    std::function<void()> Leave;  ///< the list has come to its end: the desk leaves the mode
  };
  explicit GroupPlay(Services services) : services_(std::move(services)) {}

  /// Runs what the queue holds, once no deck plays any more. The state says that a group runs.
  void Start();
  /// The operator ends it: nothing more is done, the decks go on with what they do.
  void Stop();
  [[nodiscard]] GroupRun Progress() const;
  /// It runs and has started no deck yet: silence is meant.
  [[nodiscard]] bool BeforeFirstStart() const { return run_.Running() && !started_; }
  /// Where the run is, in seconds as the elements have them; none before its first one and behind its end.
  [[nodiscard]] std::optional<double> Playhead() const;

 private:
  [[nodiscard]] Job<> Run();
  [[nodiscard]] Job<> RunList();
  [[nodiscard]] Job<> DecksEnd();
  /// Behind what the deck has still to do: a load that takes long holds up its own deck and not the other.
  void Do(const GroupElement& element);
  [[nodiscard]] Job<> RunDeck(Deck deck);
  [[nodiscard]] Job<> Load(Deck deck, Mref track);
  void Step(Deck deck, const GroupElement& element);
  [[nodiscard]] bool DecksBusy() const;

  Services services_;
  std::vector<GroupElement> elements_;
  std::size_t line_ = 0;  ///< of elements_, from 1; 0: none has run
  QString details_;
  bool started_ = false;                    ///< a deck, in this run
  std::optional<Nanoseconds> begin_;        ///< when the first element of this round had its place
  PerDeck<std::vector<GroupElement>> due_;  ///< what a deck has to do
  PerDeck<Job<>> steps_;
  Job<> run_;
  Timer leave_;
};

}  // namespace kelvo
