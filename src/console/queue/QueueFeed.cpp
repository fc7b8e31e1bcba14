// How the queue follows what happens to the catalogue.

#include "console/queue/PlayQueue.h"
#include "database/Catalogue.h"
#include "platform/Words.h"

#include <QFileInfo>

#include <algorithm>

namespace kelvo {
namespace {

/// The row is still to be played. A row with playlist data of its own belongs to the lines of its group.
bool StillToPlay(const QueueEntry& row) {
  return (row.status == RowStatus::Waiting || row.status == RowStatus::Reset) && !row.Locked();
}

}  // namespace

void PlayQueue::FollowCatalogue() {
  catalogue_.Listen(
      this, [this](const TrackChanged& change) { TrackWasChanged(change); },
      [this](const TrackRenamed& renamed) { FileWasRenamed(renamed.pathBefore, renamed.path); },
      [this](const JingleChanged& change) {
        if (!change.path.isEmpty()) FileWasRenamed(change.before, change.path);
      },
      [this](const TrackRemoved& removed) { TrackWasRemoved(removed); },
      [this](const CatalogueReplaced&) { CatalogueWasReplaced(); });
}

void PlayQueue::TrackWasChanged(const TrackChanged& change) {
  const Mref track = change.track;
  const qint64 longer = SecondsOf(track) - WholeSeconds(change.durationBefore);
  for (int index = 1; index <= Count(); ++index) {
    QueueEntry& row = rows_[static_cast<std::size_t>(index - 1)];
    if (row.track != track) continue;
    row.date = catalogue_.TrackDates[track];
    row.hi = catalogue_.TrackHi[track];
    row.bpm = catalogue_.TrackBpm[track];
    row.genre = GenreColumnText(track);
    totalSeconds_ += longer;
    Q_EMIT RowChanged(index);
  }
  if (longer != 0) Q_EMIT FactsChanged();
  if (!undo_) return;
  for (QueueEntry& row : undo_->rows) {
    if (row.track != track) continue;
    row.date = catalogue_.TrackDates[track];
    row.hi = catalogue_.TrackHi[track];
    row.bpm = catalogue_.TrackBpm[track];
    undo_->totalSeconds += longer;
  }
}

void PlayQueue::FileWasRenamed(const QString& pathBefore, const QString& path) {
  for (int index = 1; index <= Count(); ++index) {
    QueueEntry& row = rows_[static_cast<std::size_t>(index - 1)];
    if (row.path != pathBefore) continue;
    row.path = path;
    row.title = ProperCase(BaseName(QFileInfo(path).fileName()));
    Q_EMIT RowChanged(index);
  }
  if (!undo_) return;
  for (QueueEntry& row : undo_->rows) {
    if (row.path != pathBefore) continue;
    row.path = path;
    row.title = ProperCase(BaseName(QFileInfo(path).fileName()));
  }
}

void PlayQueue::TrackWasRemoved(const TrackRemoved& removed) {
  const int count = Count();
  for (int index = Count(); index >= 1; --index) {
    QueueEntry& row = rows_[static_cast<std::size_t>(index - 1)];
    const Mref before = row.track;
    if (before == Mref::None) continue;
    const Mref track = removed.Renumbered(before);
    row.track = track;
    if (track != Mref::None || groupQueueFlag_ || !StillToPlay(row)) continue;
    totalSeconds_ -= WholeSeconds(removed.duration);
    // Automatic play goes on behind the selected row.
    const bool goesOnBehind = selected_ == index && state_.AutoPlayOn;
    RemoveRow(index);
    if (goesOnBehind) selected_ = index - 1;
  }
  ++revision_;  // who keeps the rows' numbers has to look again
  if (undo_) {
    for (QueueEntry& row : undo_->rows) {
      if (row.track == removed.track) undo_->totalSeconds -= WholeSeconds(removed.duration);
      if (row.track != Mref::None) row.track = removed.Renumbered(row.track);
    }
    std::erase_if(undo_->rows, [this](const QueueEntry& row) {
      return row.track == Mref::None && !row.soundBite && !undo_->group && StillToPlay(row);
    });
  }
  if (Count() == count) return;
  TellRowsChanged();
  Q_EMIT SelectionChanged();
}

void PlayQueue::CatalogueWasReplaced() {
  undo_.reset();
  if (rows_.empty()) return;
  QStringList paths;
  for (const QueueEntry& row : rows_) paths.append(row.path);
  const QHash<QString, Mref> tracks = catalogue_.Find(paths);
  for (QueueEntry& row : rows_) {
    if (row.track != Mref::None) row.track = tracks.value(row.path, Mref::None);
  }
  TellRowsChanged();
}

}  // namespace kelvo
