// How the queue follows what happens to the catalogue.

#include "console/PlayQueue.h"
#include "database/Catalogue.h"
#include "platform/Words.h"

#include <QFileInfo>

#include <algorithm>

namespace kelvo {
namespace {

/// The row is still to be played. A row with playlist data of its own belongs to the lines of its group.
bool StillToPlay(const QueueEntry& row) {
  const bool waits = row.ForeColor == QueueColour::Plain || row.ForeColor == QueueColour::Request ||
                     row.ForeColor == QueueColour::Reset;
  return waits && !row.Locked();
}

void SetTrack(QueueEntry& row, Mref track) {
  row.Set(MrefColumn, track == Mref::None ? QString() : QString::number(ToInt(track)));
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
  const qint64 longer = Int(catalogue_.TrackDurations(track)) - Int(change.durationBefore);
  for (int index = 1; index <= Count(); ++index) {
    QueueEntry& row = rows_[static_cast<std::size_t>(index - 1)];
    if (row.Track() != track) continue;
    row.Set(DateColumn, catalogue_.TrackDates[track]);
    row.Set(HiColumn, catalogue_.TrackHi[track]);
    row.Set(BpmColumn, catalogue_.TrackBpm[track]);
    row.Set(GenreColumn, GenreColumnText(track));
    totalSeconds_ += longer;
    Q_EMIT RowChanged(index);
  }
  if (longer != 0) Q_EMIT FactsChanged();
}

void PlayQueue::FileWasRenamed(const QString& pathBefore, const QString& path) {
  for (int index = 1; index <= Count(); ++index) {
    QueueEntry& row = rows_[static_cast<std::size_t>(index - 1)];
    if (row.Text(PathColumn) != pathBefore) continue;
    row.Set(PathColumn, path);
    row.Set(TrackColumn, ProperCase(BaseName(QFileInfo(path).fileName())));
    Q_EMIT RowChanged(index);
  }
}

void PlayQueue::TrackWasRemoved(const TrackRemoved& removed) {
  const int count = Count();
  for (int index = Count(); index >= 1; --index) {
    QueueEntry& row = rows_[static_cast<std::size_t>(index - 1)];
    const Mref before = row.Track();
    if (before == Mref::None) continue;
    const Mref track = removed.Renumbered(before);
    if (track != before) SetTrack(row, track);
    if (track != Mref::None || groupQueueFlag_ || !StillToPlay(row)) continue;
    totalSeconds_ -= Int(removed.duration);
    // Automatic play goes on behind the selected row.
    const bool goesOnBehind = selected_ == index && state_.AutoPlayOn;
    RemoveRow(index);
    if (goesOnBehind) selected_ = index - 1;
  }
  ++revision_;  // who keeps the rows' numbers has to look again
  if (Count() == count) return;
  TellRowsChanged();
  Q_EMIT SelectionChanged();
}

void PlayQueue::CatalogueWasReplaced() {
  if (rows_.empty()) return;
  QStringList paths;
  for (const QueueEntry& row : rows_) paths.append(row.Text(PathColumn));
  const QHash<QString, Mref> tracks = catalogue_.Find(paths);
  for (QueueEntry& row : rows_) {
    if (row.Track() != Mref::None) SetTrack(row, tracks.value(row.Text(PathColumn), Mref::None));
  }
  TellRowsChanged();
}

}  // namespace kelvo
