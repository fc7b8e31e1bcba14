#pragma once

#include "console/desk/DeckTypes.h"
#include "database/TextColumns.h"
#include "database/TrackPlaySettings.h"

#include <QString>
#include <QTime>

#include <optional>
#include <vector>

namespace kelvo {

/// What shapes automatic play: the option buttons `OptKelvo`, `OptJukebox`, `OptPreview`.
enum class AutoMode { Kelvo, Jukebox, Preview };

/// When and how the next track starts.
struct AutoSettings {
  int AutoDelta = 0;                                     ///< seconds before the end of the playing track
  TransitionKind AutoTransition = TransitionKind::None;  ///< None counts as a dub
  std::optional<int> fadeSp;  ///< position for the fade speed slider, 0..50; none leaves it
  QString info;               ///< the deck's line; empty leaves it
  bool operator==(const AutoSettings&) const = default;
};

/// The default decision table: `startStyle` of the track that has just started, `endStyle` of the other
/// deck's. Any other style leaves `previous`. The info line is not filled.
[[nodiscard]] AutoSettings DefaultDecision(int startStyle, int endStyle, AutoSettings previous);

/// What the track that has just started says of the start of the next one. `other` is the other deck's track,
/// or the same one when that deck holds none. In preview only the info line changes.
[[nodiscard]] AutoSettings TrackSettingsFor(AutoMode mode, const TrackPlaySettings& track,
                                            const TrackPlaySettings& other, AutoSettings previous);

/// A newly loaded track with a fade-in longer than `now.AutoDelta` pulls the start earlier; none otherwise.
[[nodiscard]] std::optional<AutoSettings> FadeOverride(const TrackPlaySettings& loaded,
                                                       const AutoSettings& now);

/// How `next` will be started behind `track`: by what both say of it. `other` as above; in preview as in
/// Kelvo mode.
[[nodiscard]] AutoSettings PlannedStart(AutoMode mode, const TrackPlaySettings& track,
                                        const TrackPlaySettings& other, const TrackPlaySettings& next,
                                        AutoSettings previous);

/// Seconds by which each of these tracks but the last is cut short by the start of the next when they are
/// played in this order. `now` is what counts before the first; in preview as in Kelvo mode.
[[nodiscard]] std::vector<int> PlannedOverlaps(AutoMode mode, const std::vector<TrackPlaySettings>& tracks,
                                               AutoSettings now);

/// A row of the queue, as the choice of the next row sees it.
struct QueueChoice {
  Mref track = Mref::None;
  bool passedOver = false;  ///< could not be played lately, or was tried in this round
};

struct NextRowQuestion {
  std::vector<QueueChoice> rows;
  int start = 1;                 ///< the row to look at first, from 1; beyond the last wraps
  std::optional<Mref> playing;   ///< the track in the deck that is not to be loaded
  std::optional<Mref> target;    ///< the track in the deck that is to be loaded
  bool mayRepeatTarget = false;  ///< a row whose track is in that deck is as good as any
};

/// The row to load, from 1; 0 when every row is passed over. A row that no deck holds comes first; then one
/// that only the target deck holds; then any.
[[nodiscard]] int NextRow(const NextRowQuestion& question);
/// A random row other than `selected` (0: none is), the chance being `draw`, 0 up to 1. 1 when there is one
/// row.
[[nodiscard]] int RandomRow(int rows, int selected, double draw);

/// A deck, as the tick sees it.
struct TickDeck {
  DeckState state = DeckState::Empty;
  double duration = 0;  ///< seconds
  double position = 0;  ///< seconds
  bool onAir = false;   ///< its player runs and the slider lets it be heard
  bool late = false;    ///< its disk owes data: its sound will end in a moment
};

struct TickQuestion {
  PerDeck<TickDeck> decks;
  int AutoDelta = 0;
  TransitionKind AutoTransition = TransitionKind::None;
  bool PauseAtEnd = false;
  bool Starting = false;  ///< a deck is being brought in: no second one, and no silence
};

struct TickDecision {
  std::optional<Deck> start;                        ///< this deck is to start now
  std::optional<Deck> next;                         ///< this deck is loaded and will start
  TransitionKind transition = TransitionKind::Dub;  ///< with this
  int secondsLeft = 0;                              ///< until then; 0 or below is now
};

/// Once a second: what to start, or how long until then. A loaded deck starts when the other has reached its
/// delta, and also when nothing is on air and nothing else would ever start it.
[[nodiscard]] TickDecision DecideTick(const TickQuestion& question);

/// The timed start of form `FrmTimer`.
struct TimedStart {
  bool TimerArmed = false;
  int TimerHour = 0;
  int TimerMinute = 0;

  /// Hour and minute are compared each by itself: 10:50 is due from 10:50 to 10:59 and again at 11:50.
  [[nodiscard]] bool Due(QTime now) const {
    return TimerArmed && now.hour() >= TimerHour && now.minute() >= TimerMinute;
  }
};

/// The tracks that previews have played; a track comes again only when all have been.
class PreviewPicks {
 public:
  /// A track of 1..lastTrack that was not picked yet; none when there is no track. `draw` gives 0 up to 1.
  template <typename Draw>
  [[nodiscard]] std::optional<Mref> Pick(int lastTrack, Draw&& draw) {
    if (lastTrack < 1) return std::nullopt;
    if (count_ >= lastTrack) Clear();
    used_.resize(static_cast<std::size_t>(lastTrack) + 1, false);
    int row = 0;
    for (int tries = 0; tries < kMostDraws && (row == 0 || used_[static_cast<std::size_t>(row)]); ++tries) {
      row = static_cast<int>(draw() * (lastTrack + 1));
    }
    return Take(std::max(row, 1), lastTrack);
  }
  [[nodiscard]] int Count() const { return count_; }
  void Clear();
  /// The track is gone, and those behind it have the number before theirs.
  void Remove(Mref track);

 private:
  static constexpr int kMostDraws = 50;
  /// From here on the first one that is free: where nearly all are used, drawing on would take forever.
  [[nodiscard]] std::optional<Mref> Take(int from, int lastTrack);
  std::vector<bool> used_;
  int count_ = 0;
};

}  // namespace kelvo
