#include "app/windows/QueueOfPlaylists.h"

#include "console/queue/PlayQueue.h"

namespace kelvo {

int QueueOfPlaylists::Count() const {
  return queue_.Count();
}

QString QueueOfPlaylists::Name() const {
  return queue_.Name();
}

bool QueueOfPlaylists::HoldsGroup() const {
  return queue_.GroupQueueFlag();
}

bool QueueOfPlaylists::Closed() const {
  return state_.GroupPlayOn;
}

bool QueueOfPlaylists::Holds(Mref track) const {
  return queue_.StatusOf(track).has_value();
}

std::vector<PlaylistQueue::Row> QueueOfPlaylists::Rows() const {
  std::vector<Row> rows;
  for (int index = 1; index <= queue_.Count(); ++index) {
    const QueueEntry& row = queue_.Row(index);
    const bool own = row.Locked();
    rows.push_back(
        {row.title, row.path, row.track, own ? QStringList{row.playlistData} : queue_.GroupLinesOf(index)});
  }
  return rows;
}

QString QueueOfPlaylists::GroupQuestion(const QString& cannot) const {
  return queue_.GroupQuestion(cannot);
}

void QueueOfPlaylists::SetName(const QString& name) {
  queue_.SetName(name);
}

void QueueOfPlaylists::Take(const Load& load) {
  QueueFill fill{.name = load.name,
                 .folder = load.folder,
                 .group = load.group,
                 .clearFirst = load.clearFirst,
                 .rows = {}};
  for (const Addition& each : load.rows) {
    fill.rows.push_back({each.track, each.title, each.path, each.note, each.line});
  }
  queue_.Take(fill);
}

}  // namespace kelvo
