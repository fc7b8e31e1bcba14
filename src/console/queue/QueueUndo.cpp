// What playlists bring into the queue, and how the last change is taken back.

#include "console/queue/QueueUndo.h"

#include "console/queue/PlayQueue.h"
#include "database/Catalogue.h"
#include "database/GroupElement.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace kelvo {

QString PlayQueue::GroupQuestion(const QString& cannot) const {
  return name_ + QStringLiteral("Clear Group Playlist \r\nYou ") + cannot +
         QStringLiteral(" Add Std Tracks To A Group Playlist ! ?");
}

QStringList PlayQueue::GroupLinesOf(int index) const {
  if (groupRows_.empty()) {
    // Not from a load: a line for each row, in their order.
    return groupLines_.size() == Count() ? QStringList{groupLines_[index - 1]} : QStringList();
  }
  QStringList lines;
  for (std::size_t line = 0; line < groupRows_.size(); ++line) {
    if (groupRows_[line] == Row(index).id) lines.append(groupLines_[static_cast<qsizetype>(line)]);
  }
  return lines;
}

QStringList PlayQueue::GroupLines() const {
  QStringList lines = groupLines_;
  const std::vector<Mref> tracks = GroupTracks();
  for (std::size_t line = 0; line < groupRows_.size(); ++line) {
    QString& text = lines[static_cast<qsizetype>(line)];
    text = RenumberedLine(text, tracks[line]);
  }
  return lines;
}

std::vector<Mref> PlayQueue::GroupTracks() const {
  std::vector<Mref> tracks;
  for (int line = 0; line < groupLines_.size(); ++line) {
    // Not from a load: a line for each row, in their order.
    const bool ordered = groupRows_.empty() && groupLines_.size() == Count();
    const int row = ordered ? line + 1 : 0;
    const int index = groupRows_.empty() ? row : IndexOf(groupRows_[static_cast<std::size_t>(line)]);
    tracks.push_back(index == 0 ? Mref::None : Row(index).track);
  }
  return tracks;
}

void PlayQueue::ChangeGroup(QStringList timingLines, const std::vector<Mref>& tracks) {
  groupLines_ = std::move(timingLines);
  groupRows_.clear();
  for (const Mref track : tracks) {
    const int index = track == Mref::None ? 0 : FindTrack(track);
    groupRows_.push_back(index == 0 ? RowId::None : Row(index).id);
  }
  ++groupRevision_;
  Q_EMIT FactsChanged();
}

void PlayQueue::Take(const QueueFill& fill) {
  Remember();
  ++groupRevision_;
  if (fill.clearFirst) {
    Empty();
    lastQueueIndex_ = -1;
  }
  const bool playlist = !fill.name.isEmpty();
  if (playlist || fill.clearFirst) {
    groupLines_.clear();
    groupRows_.clear();
    playlistFolder_.clear();
  }
  std::vector<RowId> added;
  added.reserve(fill.rows.size());
  rows_.reserve(rows_.size() + fill.rows.size());
  std::unordered_map<int, RowId> present;
  for (const QueueEntry& row : rows_) {
    if (fill.group) present.emplace(ToInt(row.track), row.id);
  }
  // A sorted list is sorted once, and not for each row.
  const bool sorted = std::exchange(sorted_, false);
  for (const QueueFill::Row& each : fill.rows) {
    if (!catalogue_.IsTrack(each.track)) continue;
    const auto there = present.find(ToInt(each.track));
    RowId id = there == present.end() ? RowId::None : there->second;
    if (id == RowId::None) {
      QueueEntry entry = FactsOf(each.track);
      entry.title = each.title;
      entry.path = each.path;
      entry.note = each.note;
      id = Row(InsertRow(std::move(entry), SecondsOf(each.track))).id;
      added.push_back(id);
    }
    if (!fill.group) continue;
    present.emplace(ToInt(each.track), id);
    groupLines_.append(each.line);
    groupRows_.push_back(id);
  }
  sorted_ = sorted;
  if (sorted_) SortRows();
  if (playlist) {
    name_ = fill.name;
    playlistFolder_ = fill.folder;
    groupQueueFlag_ = fill.group;
  }
  NoteOutcome(std::move(added));
  TellRowsChanged();
  Q_EMIT SelectionChanged();
}

void PlayQueue::Remember() {
  undo_.emplace(QueueUndo{rows_,
                          selected_,
                          name_,
                          totalSeconds_,
                          lastQueueIndex_,
                          groupQueueFlag_,
                          groupLines_,
                          groupRows_,
                          playlistFolder_,
                          {},
                          {}});
}

void PlayQueue::NoteOutcome(std::vector<RowId> added) {
  undo_->added = std::move(added);
  undo_->nameAfter = name_;
}

QString PlayQueue::WhyNoUndo() const {
  const QString held = WhyHeld ? WhyHeld() : QString();
  if (!held.isEmpty()) return held;
  if (state_.PlaysByItself()) return tr("Automatic play runs");
  if (state_.TransitionActive) return tr("A fade runs");
  if (!undo_) return tr("Nothing was cut, cleared or loaded");
  // A group playlist and tracks of another kind don't go together.
  const auto known = [this](const QueueEntry& row) {
    const auto here = [&row](const QueueEntry& each) { return each.id == row.id; };
    return std::any_of(undo_->rows.begin(), undo_->rows.end(), here) ||
           std::find(undo_->added.begin(), undo_->added.end(), row.id) != undo_->added.end();
  };
  return !undo_->group || std::all_of(rows_.begin(), rows_.end(), known)
             ? QString()
             : tr("Tracks were added to what was a group playlist");
}

void PlayQueue::Undo() {
  if (!WhyNoUndo().isEmpty()) return;
  QueueUndo before = std::move(*undo_);
  undo_.reset();
  std::unordered_map<int, std::size_t> places;
  for (std::size_t place = 0; place < before.rows.size(); ++place) {
    places.emplace(static_cast<int>(before.rows[place].id), place);
  }
  std::unordered_set<int> added;
  for (const RowId row : before.added) added.insert(static_cast<int>(row));
  int highest = 0;
  for (const QueueEntry& row : before.rows) highest = std::max(highest, row.Tag);
  std::vector<QueueEntry> since;
  for (QueueEntry& row : rows_) {
    const auto known = places.find(static_cast<int>(row.id));
    if (known != places.end()) {
      // What became of it meanwhile holds; its place is that of before.
      static_cast<QueueContent&>(before.rows[known->second]) = static_cast<const QueueContent&>(row);
      continue;
    }
    const bool loaded = added.contains(static_cast<int>(row.id));
    const bool played = row.status != RowStatus::Waiting && row.status != RowStatus::Reset;
    if (loaded && !played) continue;
    row.Tag = ++highest;
    before.totalSeconds += SecondsOf(row.track);
    since.push_back(std::move(row));
  }
  for (QueueEntry& row : before.rows) {
    if (row.track != Mref::None) row.genre = GenreColumnText(row.track);
  }
  rows_ = std::move(before.rows);
  std::move(since.begin(), since.end(), std::back_inserter(rows_));
  selected_ = std::min(before.selected, Count());
  totalSeconds_ = before.totalSeconds;
  lastQueueIndex_ = before.lastQueueIndex;
  groupQueueFlag_ = before.group;
  ++groupRevision_;
  groupLines_ = std::move(before.groupLines);
  groupRows_ = std::move(before.groupRows);
  playlistFolder_ = std::move(before.playlistFolder);
  if (name_ == before.nameAfter) name_ = before.name;
  if (sorted_) SortRows();
  TellRowsChanged();
  Q_EMIT SelectionChanged();
}

}  // namespace kelvo
