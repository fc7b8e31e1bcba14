#include "app/windows/DeskOfPlayEdit.h"

namespace kelvo {
namespace {

/// The row of the track: the selected one, where it is there several times; 0 when it is in none.
int RowOf(const PlayQueue& queue, const QString& path) {
  const int selected = queue.Selected();
  if (selected > 0 && queue.Row(selected).path == path) return selected;
  for (int index = 1; index <= queue.Count(); ++index) {
    if (queue.Row(index).path == path) return index;
  }
  return 0;
}

}  // namespace

DeskOfPlayEdit::DeskOfPlayEdit(Console& desk)
    : desk_(desk),
      trial_({.loop = desk.GetServices().loop,
              .audio = desk.GetServices().audio,
              .monitor = desk.Pfl(),
              .settings = desk.Settings()}) {
  QObject::connect(&trial_, &FadeTrial::Changed, &trial_, [this] {
    if (OnTrialChanged) OnTrialChanged();
  });
}

QString DeskOfPlayEdit::TrackBefore(const QString& path) const {
  const PlayQueue& queue = desk_.Queue();
  for (int index = RowOf(queue, path) - 1; index >= 1; --index) {
    const QueueEntry& row = queue.Row(index);
    if (!row.soundBite && row.path != path) return row.path;
  }
  const DeckEngine& decks = desk_.Decks();
  const Deck first = decks.OnAir().value_or(Deck::One);
  for (const Deck deck : {first, Other(first)}) {
    const DeckRecord& record = decks.Record(deck);
    if (record.State != DeckState::Empty && record.FilePath != path) return record.FilePath;
  }
  return path;
}

void DeskOfPlayEdit::Try(const PlayTrial& trial) {
  AutoSettings now;
  now.AutoDelta = desk_.Automatic().SldDelta();
  const AutoSettings settings =
      PlannedStart(desk_.Automatic().Mode(), trial.beforePlay, trial.beforePlay, trial.afterPlay, now);
  trial_.Begin({.before = trial.before,
                .after = trial.after,
                .kind = settings.AutoTransition,
                .seconds = settings.AutoDelta,
                .fadeSp = settings.fadeSp.value_or(desk_.Fades().FadeSpeed())});
}

void DeskOfPlayEdit::Left() {
  PlayQueue& queue = desk_.Queue();
  const int last = queue.LastQueueIndex();
  // Automatic play goes on behind the selected row: it keeps its place.
  if (last >= 1 && last <= queue.Count() && !desk_.State().PlaysByItself()) queue.Select(last);
}

}  // namespace kelvo
