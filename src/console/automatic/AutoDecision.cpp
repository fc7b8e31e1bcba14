#include "console/automatic/AutoDecision.h"

#include "platform/Words.h"

#include <algorithm>

namespace kelvo {
namespace {

/// A start is always of some kind.
TransitionKind OrDub(TransitionKind kind) {
  return kind == TransitionKind::None ? TransitionKind::Dub : kind;
}

int FadeSpOf(int speedValue) {
  return std::clamp(50 - speedValue, 0, 50);
}

bool Held(const std::optional<Mref>& deck, Mref track) {
  return deck && *deck == track;
}

}  // namespace

AutoSettings DefaultDecision(int startStyle, int endStyle, AutoSettings previous) {
  struct Row {
    int start, end, delta, speed;
    TransitionKind transition;
  };
  static constexpr std::array<Row, 4> kTable{{
      {1, 1, 2, 39, TransitionKind::Dub},
      {1, 0, 4, 39, TransitionKind::Dub},
      {0, 1, 4, 39, TransitionKind::Dub},
      {0, 0, 8, 9, TransitionKind::Pan},
  }};
  const auto* const row = std::find_if(kTable.begin(), kTable.end(), [&](const Row& each) {
    return each.start == startStyle && each.end == endStyle;
  });
  if (row == kTable.end()) return previous;
  previous.AutoDelta = row->delta;
  previous.fadeSp = FadeSpOf(row->speed);
  previous.AutoTransition = row->transition;
  return previous;
}

AutoSettings TrackSettingsFor(AutoMode mode, const TrackPlaySettings& track, const TrackPlaySettings& other,
                              AutoSettings previous) {
  AutoSettings result = std::move(previous);
  if (mode == AutoMode::Preview) {
    result.info = QStringLiteral("Preview Mode");
    return result;
  }
  if (track.Mode.custom) {
    result.AutoTransition = OrDub(track.Mode.fadeOut);
    result.fadeSp = FadeSpOf(track.FadeSpeed.fadeOut);
    result.AutoDelta = track.FadePosition.fadeOut;
    result.info = QStringLiteral("Custom - Track Start/Fade:");
  } else {
    result = DefaultDecision(track.StartStyle, other.EndStyle, std::move(result));
    result.info = QStringLiteral("Default - Track Start:");
  }
  if (mode == AutoMode::Jukebox) {
    result.AutoDelta = 1;
    result.AutoTransition = TransitionKind::PartFade;
    result.info = QStringLiteral("Jukebox Mode:");
  }
  return result;
}

std::optional<AutoSettings> FadeOverride(const TrackPlaySettings& loaded, const AutoSettings& now) {
  const int fadeIn = loaded.FadePosition.FadeIn();
  if (!loaded.Mode.custom || fadeIn <= now.AutoDelta) return std::nullopt;
  AutoSettings result;
  result.AutoTransition = OrDub(loaded.Mode.fadeOut);
  result.AutoDelta = fadeIn;
  result.fadeSp = FadeSpOf(loaded.FadeSpeed.FadeIn());
  result.info = QStringLiteral("Fade Overide: New Value=") + QString::number(fadeIn);
  return result;
}

AutoSettings PlannedStart(AutoMode mode, const TrackPlaySettings& track, const TrackPlaySettings& other,
                          const TrackPlaySettings& next, AutoSettings previous) {
  const AutoMode counted = mode == AutoMode::Preview ? AutoMode::Kelvo : mode;
  const AutoSettings settings = TrackSettingsFor(counted, track, other, std::move(previous));
  return FadeOverride(next, settings).value_or(settings);
}

std::vector<int> PlannedOverlaps(AutoMode mode, const std::vector<TrackPlaySettings>& tracks,
                                 AutoSettings now) {
  std::vector<int> overlaps;
  for (std::size_t place = 0; place + 1 < tracks.size(); ++place) {
    now = PlannedStart(mode, tracks[place], tracks[place == 0 ? 0 : place - 1], tracks[place + 1],
                       std::move(now));
    overlaps.push_back(std::max(now.AutoDelta, 1));
  }
  return overlaps;
}

int NextRow(const NextRowQuestion& question) {
  const int count = static_cast<int>(question.rows.size());
  if (count == 0) return 0;
  int onlyInTarget = 0;
  int any = 0;
  for (int step = 0; step < count; ++step) {
    const int row = (std::max(question.start, 1) - 1 + step) % count + 1;
    const QueueChoice& choice = question.rows[static_cast<std::size_t>(row - 1)];
    if (choice.passedOver) continue;
    if (any == 0) any = row;
    if (Held(question.playing, choice.track)) continue;
    if (question.mayRepeatTarget || !Held(question.target, choice.track)) return row;
    if (onlyInTarget == 0) onlyInTarget = row;
  }
  return onlyInTarget != 0 ? onlyInTarget : any;
}

int RandomRow(int rows, int selected, double draw) {
  const bool avoid = selected >= 1 && selected <= rows && rows > 1;
  const int choices = std::max(avoid ? rows - 1 : rows, 1);
  const int row = std::clamp(static_cast<int>(draw * choices), 0, choices - 1) + 1;
  return avoid && row >= selected ? row + 1 : row;
}

TickDecision DecideTick(const TickQuestion& question) {
  TickDecision decision;
  decision.transition = OrDub(question.AutoTransition);
  const int delta = std::max(question.AutoDelta, 1);
  const bool silent =
      !question.Starting && !question.decks[Deck::One].onAir && !question.decks[Deck::Two].onAir;
  for (const Deck deck : kDecks) {
    const TickDeck& other = question.decks[Other(deck)];
    if (question.decks[deck].state != DeckState::Loaded) continue;
    const bool otherIsThrough = other.state == DeckState::Playing || other.state == DeckState::Done;
    if (!otherIsThrough && !silent) continue;
    decision.next = deck;
    const qint64 left = Int(other.duration - delta) - Int(other.position);
    decision.secondsLeft = silent || other.late ? 0 : static_cast<int>(std::clamp<qint64>(left, 0, 1 << 30));
    const bool held = question.PauseAtEnd || question.Starting;
    if (!held && decision.secondsLeft == 0) decision.start = deck;
    return decision;
  }
  return decision;
}

void PreviewPicks::Clear() {
  used_.clear();
  count_ = 0;
}

void PreviewPicks::Remove(Mref track) {
  const auto row = static_cast<std::size_t>(track);
  if (row >= used_.size()) return;
  if (used_[row]) --count_;
  used_.erase(used_.begin() + ToInt(track));
}

std::optional<Mref> PreviewPicks::Take(int from, int lastTrack) {
  for (int step = 0; step < lastTrack; ++step) {
    const int row = (from - 1 + step) % lastTrack + 1;
    if (used_[static_cast<std::size_t>(row)]) continue;
    used_[static_cast<std::size_t>(row)] = true;
    ++count_;
    return ToMref(row);
  }
  return std::nullopt;
}

}  // namespace kelvo
