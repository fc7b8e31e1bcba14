#include "console/queue/PlayQueue.h"

#include "database/KeptTracks.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QFileInfo>

#include <algorithm>
#include <unordered_set>

namespace kelvo {
namespace {

const QString kNoName = QStringLiteral("(No Name)");
const QString kByContents = QStringLiteral("Tracks ( By List Contents )");
const QString kByPosition = QStringLiteral("Tracks ( By List Position )");
const QString kTimings = QStringLiteral("Timings");
const QString kGenres = QStringLiteral("Genres");

}  // namespace

PlayQueue::PlayQueue(EventLoop& loop, Disks& disks, Prompter& prompter, const Catalogue& catalogue,
                     const ConsoleState& state)
    : loop_(loop),
      disks_(disks),
      prompter_(prompter),
      catalogue_(catalogue),
      state_(state),
      name_(kNoName),
      trackHead_(QStringLiteral("Tracks (By Position Or Contents)")),
      genreHead_(QStringLiteral("Main Genre")) {
  FollowCatalogue();
}

int PlayQueue::IndexOf(RowId row) const {
  const auto found =
      std::find_if(rows_.begin(), rows_.end(), [row](const QueueEntry& each) { return each.id == row; });
  return found == rows_.end() ? 0 : static_cast<int>(found - rows_.begin()) + 1;
}

void PlayQueue::Select(int index) {
  ++selections_;
  const int wanted = index >= 1 && index <= Count() ? index : 0;
  if (wanted == selected_) return;
  selected_ = wanted;
  Q_EMIT SelectionChanged();
}

void PlayQueue::Click(int index) {
  if (index < 1 || index > Count()) return;
  lastQueueIndex_ = index;
  Select(index);
}

void PlayQueue::SetName(const QString& name) {
  if (name_ == name) return;
  name_ = name;
  Q_EMIT FactsChanged();
}

void PlayQueue::SetGroup(QStringList timingLines) {
  groupLines_ = std::move(timingLines);
  groupRows_.clear();
  groupQueueFlag_ = true;
  ++groupRevision_;
  Q_EMIT FactsChanged();
}

bool PlayQueue::QueueHasRequests() const {
  return std::any_of(rows_.rbegin(), rows_.rend(), [](const QueueEntry& row) { return row.IsRequest(); });
}

int PlayQueue::FindTrack(Mref track) const {
  // A sound bite is no track, and neither is one that left the catalogue.
  const auto found = std::find_if(rows_.begin(), rows_.end(), [track](const QueueEntry& row) {
    return row.track == track && (track != Mref::None || row.soundBite);
  });
  return found == rows_.end() ? 0 : static_cast<int>(found - rows_.begin()) + 1;
}

int PlayQueue::FindRow(Mref track, RowId row) const {
  if (track != Mref::None || row == RowId::None) return FindTrack(track);
  const int index = IndexOf(row);
  return index != 0 && Row(index).soundBite ? FindTrack(track) : index;
}

std::optional<RowStatus> PlayQueue::StatusOf(Mref track, RowId row) const {
  const int index = FindRow(track, row);
  if (index == 0) return std::nullopt;
  return Row(index).status;
}

qint64 PlayQueue::WholeSeconds(double duration) {
  return std::max<qint64>(Int(duration), 0);
}

qint64 PlayQueue::SecondsOf(Mref track) const {
  return WholeSeconds(catalogue_.TrackDurations(track));
}

QString PlayQueue::GenreColumnText(Mref track) const {
  if (showsTimings_) return LengthText(catalogue_.TrackDurations(track));
  return catalogue_.MainGenre(track);
}

QueueEntry PlayQueue::FactsOf(Mref track) const {
  QueueEntry entry;
  entry.date = catalogue_.TrackDates[track];
  entry.hi = catalogue_.TrackHi[track];
  entry.bpm = catalogue_.TrackBpm[track];
  entry.track = track;
  entry.genre = GenreColumnText(track);
  return entry;
}

QueueEntry PlayQueue::EntryOf(Mref track) const {
  QueueEntry entry = FactsOf(track);
  entry.title = ProperCase(catalogue_.TrackNames[track]);
  entry.note = QStringLiteral("Play Me");
  entry.path = catalogue_.TrackPaths(track);
  return entry;
}

int PlayQueue::InsertRow(QueueEntry entry, qint64 seconds) {
  // Not by the count: a clear that spares requests leaves gaps in the numbers.
  entry.Tag = ++highestTag_;
  entry.id = static_cast<RowId>(++lastId_);
  auto place = rows_.end();
  if (sorted_) {
    place = std::upper_bound(
        rows_.begin(), rows_.end(), entry, [this](const QueueEntry& left, const QueueEntry& right) {
          return left.Text(sortColumn_).compare(right.Text(sortColumn_), Qt::CaseInsensitive) < 0;
        });
  }
  const int index = static_cast<int>(place - rows_.begin()) + 1;
  rows_.insert(place, std::move(entry));
  if (selected_ >= index) ++selected_;
  totalSeconds_ += seconds;
  return index;
}

void PlayQueue::TellRowsChanged() {
  ++revision_;
  highestTag_ = 0;
  for (const QueueEntry& row : rows_) highestTag_ = std::max(highestTag_, row.Tag);
  Q_EMIT RowsChanged();
  Q_EMIT FactsChanged();
}

int PlayQueue::AppendRow(QueueEntry entry, qint64 seconds) {
  const int index = InsertRow(std::move(entry), seconds);
  TellRowsChanged();
  return index;
}

Job<> PlayQueue::AddTracks(std::vector<Mref> tracks, Route route) {
  if (state_.GroupPlayOn || tracks.empty()) co_return;
  if (const QString why = route == Route::Library ? WhyNoAdd() : QString(); !why.isEmpty()) {
    if (OnTold) OnTold(tr("Tracks Not Added : %1").arg(why));
    co_return;
  }
  const KeptTracks kept(catalogue_, std::move(tracks));
  try {
    if (Count() > 0 && groupQueueFlag_) {
      Prompt question;
      question.text =
          GroupQuestion(route == Route::Library ? QStringLiteral("Cant") : QStringLiteral("Can't"));
      question.buttons = Buttons::YesNo;
      question.icon = PromptIcon::Question;
      const Answer answer = co_await prompter_.Ask(question);
      // The desk went on while the question was open: the list may be running by now.
      if (answer != Answer::Yes || state_.GroupPlayOn) co_return;
      Remember();
      Empty();
      NoteOutcome();
      TellRowsChanged();
      Q_EMIT SelectionChanged();
    }
    QStringList paths;
    Turn turn(loop_);
    for (std::size_t place = 0; place < kept.Count(); ++place) {
      paths.append(catalogue_.TrackPaths(kept[place]));
      co_await turn.Yield();
    }
    const int selections = selections_;
    const std::function<bool(const QString&)> exists = [](const QString& path) {
      return QFileInfo::exists(path);
    };
    const Disks::Answers there = co_await disks_.LookAtEach(paths, exists);
    if (state_.GroupPlayOn) co_return;
    const auto silent = std::count(there.begin(), there.end(), std::nullopt);
    if (silent > 0 && OnTold) OnTold(tr("Tracks Not Added, Their Disk Does Not Answer : %1").arg(silent));
    std::unordered_set<int> present;
    int known = revision_ - 1;
    int shown = 0;                        // the row that was added last
    std::optional<std::size_t> standing;  // the last track that was there before
    Nanoseconds turnStart = loop_.TurnClock();
    for (std::size_t place = 0; place < kept.Count(); ++place) {
      const Mref track = kept[place];
      if (known != revision_) {
        // Looked up once for many tracks, and again when the rows changed during a turn of the loop.
        present.clear();
        for (const QueueEntry& row : rows_) present.insert(ToInt(row.track));
        known = revision_;
      }
      if (there[place].value_or(false) && track != Mref::None) {
        const bool added = present.insert(ToInt(track)).second || route == Route::Search;
        shown = added ? InsertRow(EntryOf(track), SecondsOf(track)) : 0;
        if (!added) {
          standing = place;
        } else if (!state_.AutoPlayOn) {
          standing.reset();
          if (selections == selections_) selected_ = shown;
        }
      }
      if (loop_.TurnIsOver(turnStart)) {
        TellRowsChanged();
        known = revision_;
        co_await loop_.Yield();
        if (state_.GroupPlayOn) co_return;
        turnStart = loop_.TurnClock();
      }
    }
    if (standing && selections == selections_) selected_ = FindTrack(kept[*standing]);
    TellRowsChanged();
    Q_EMIT SelectionChanged();
    Q_EMIT RowShown(shown != 0 ? shown : selected_);
  } catch (...) {
    basHandleError(QStringLiteral(" queadd"), tr("The tracks could not be added to the queue."));
  }
}

bool PlayQueue::MoveSelected(int step) {
  if (!WhyNoMove(step).isEmpty()) return false;
  const int neighbour = selected_ + step;
  QueueEntry& here = rows_[static_cast<std::size_t>(selected_ - 1)];
  QueueEntry& there = rows_[static_cast<std::size_t>(neighbour - 1)];
  // The contents travel, each place keeps its own Tag.
  std::swap(static_cast<QueueContent&>(here), static_cast<QueueContent&>(there));
  Q_EMIT RowChanged(selected_);
  Q_EMIT RowChanged(neighbour);
  Select(neighbour);
  return true;
}

void PlayQueue::MoveSelectedUp() {
  static_cast<void>(MoveSelected(-1));
}
void PlayQueue::MoveSelectedDown() {
  static_cast<void>(MoveSelected(1));
}

void PlayQueue::MoveTo(int from, int to) {
  if (from < 1 || from > Count()) return;
  Select(from);
  const int place = std::clamp(to, 1, Count());
  while (selected_ != place && MoveSelected(selected_ < place ? 1 : -1)) {
  }
}

void PlayQueue::CutSelected() {
  if (!WhyNoCut().isEmpty()) return;
  Remember();
  totalSeconds_ -= SecondsOf(Row(selected_).track);
  RemoveRow(selected_);
  NoteOutcome();
  TellRowsChanged();
  Q_EMIT SelectionChanged();
}

void PlayQueue::RemoveRow(int index) {
  const int behind = Row(index).Tag + 1;
  rows_.erase(rows_.begin() + (index - 1));
  for (QueueEntry& row : rows_) {
    if (row.Tag >= behind) --row.Tag;
  }
  if (selected_ > index) --selected_;
  selected_ = std::min(selected_, Count());
}

void PlayQueue::Empty() {
  rows_.clear();
  ++groupRevision_;
  selected_ = 0;
  totalSeconds_ = 0;
  groupQueueFlag_ = false;
  name_ = kNoName;
}

void PlayQueue::ClearAll() {
  Remember();
  Empty();
  lastQueueIndex_ = -1;
  NoteOutcome();
  TellRowsChanged();
  Q_EMIT SelectionChanged();
}

Job<> PlayQueue::ClearQueue() {
  if (!WhyNoClear().isEmpty()) co_return;
  Prompt question;
  question.icon = PromptIcon::Question;
  const bool requests = QueueHasRequests();
  question.text = requests ? QStringLiteral(
                                 "There Is/Are Unplayed Requests in the Queue ! \r\n"
                                 "Do you Want The Requests Cleared Too ?")
                           : QStringLiteral("Clear The Play Queue ?");
  question.buttons = requests ? Buttons::YesNoCancel : Buttons::OkCancel;
  const bool groupPlayed = state_.GroupPlayOn;
  const Answer answer = co_await prompter_.Ask(question);
  // The desk went on while the question was open: automatic play may hold the rows by now.
  if (state_.AutoPlayOn || state_.GroupPlayOn != groupPlayed || Count() == 0) co_return;
  if (answer == Answer::Yes || answer == Answer::Ok) ClearAll();
  if (answer != Answer::No) co_return;
  Remember();
  for (int index = Count(); index >= 1; --index) {
    const QueueEntry& row = Row(index);
    if (row.IsRequest()) continue;
    // By the number of the row's track, not by its duration: the total is off from here on, as it always was.
    totalSeconds_ -= ToInt(row.track);
    rows_.erase(rows_.begin() + (index - 1));
  }
  selected_ = 0;
  NoteOutcome();
  TellRowsChanged();
  Q_EMIT SelectionChanged();
}

void PlayQueue::EditSelected() {
  if (!WhyNoEdit().isEmpty() || editing_.Running()) return;
  editing_ = RunEdit(selected_, Row(selected_).path);
}

Job<> PlayQueue::RunEdit(int index, QString path) {
  try {
    const auto look = [path, hasTrackInfo = HasTrackInfo] {
      const bool there = QFileInfo::exists(path);
      return std::make_pair(there, there && hasTrackInfo && hasTrackInfo(path));
    };
    const std::optional<std::pair<bool, bool>> found = co_await disks_.Look(path, look);
    if (!found && OnTold) OnTold(tr("Disk Does Not Answer : %1").arg(path));
    if (!found) co_return;
    const auto [there, hasInfo] = *found;
    if (index > Count() || Row(index).path != path) co_return;
    if (!there) {
      prompter_.Tell(
          {QStringLiteral("The Requested Track ") + Row(index).title + QStringLiteral(" No Longer Exists !"),
           {}});
      rows_.erase(rows_.begin() + (index - 1));
      if (selected_ == index) selected_ = 0;
      if (selected_ > index) --selected_;
      TellRowsChanged();
      Q_EMIT SelectionChanged();
    } else if (hasInfo && OpenEditor) {
      lastQueueIndex_ = index;
      OpenEditor(index, groupQueueFlag_);
    }
  } catch (...) {
    basHandleError(QStringLiteral(" queedit"), tr("The track could not be edited: %1").arg(path));
  }
}

void PlayQueue::SortRows() {
  const int selectedTag = selected_ == 0 ? 0 : Row(selected_).Tag;
  std::stable_sort(rows_.begin(), rows_.end(), [this](const QueueEntry& left, const QueueEntry& right) {
    if (!sorted_) return left.Tag < right.Tag;
    return left.Text(sortColumn_).compare(right.Text(sortColumn_), Qt::CaseInsensitive) < 0;
  });
  if (selectedTag != 0) {
    const auto found = std::find_if(rows_.begin(), rows_.end(),
                                    [selectedTag](const QueueEntry& row) { return row.Tag == selectedTag; });
    selected_ = static_cast<int>(found - rows_.begin()) + 1;
  }
  if (sorted_) return;
  // A clear that spared the requests leaves gaps in the numbers: closed here, so that every row has its
  // place.
  for (int index = 1; index <= Count(); ++index) rows_[static_cast<std::size_t>(index - 1)].Tag = index;
}

void PlayQueue::SortBy(QueueColumn column) {
  if (!WhyNoSort().isEmpty()) return;
  sortColumn_ = column;
  sorted_ = column != TrackColumn || trackHead_ != kByContents;
  if (column == TrackColumn) trackHead_ = sorted_ ? kByContents : kByPosition;
  SortRows();
  TellRowsChanged();
  Q_EMIT SelectionChanged();
}

QString PlayQueue::TimingsCaption() const {
  return showsTimings_ ? kGenres : kTimings;
}

void PlayQueue::SwitchTimings() {
  if (Count() == 0) return;
  genreHead_ = TimingsCaption();
  showsTimings_ = !showsTimings_;
  for (QueueEntry& row : rows_) {
    row.genre = showsTimings_ ? LengthText(catalogue_.TrackDurations(row.track))
                              : catalogue_.MainGenre(row.track, QStringLiteral("Undefined"));
  }
  TellRowsChanged();
}

void PlayQueue::MarkQueueRow(Mref track, RowStatus status, RowId rowId) {
  if (state_.PreviewOn) return;
  const auto mark = [status, time = loop_.Now().time()](QueueEntry& row) {
    row.status = status;
    row.statusTime = time;
    row.requests = 0;
    row.requestText.clear();
  };
  const int index = FindRow(track, rowId);
  if (index != 0) mark(rows_[static_cast<std::size_t>(index - 1)]);
  if (index != 0) Q_EMIT RowChanged(index);
  if (index != 0 || !undo_) return;
  // A row that was cut goes on being played, and may come back.
  for (QueueEntry& row : undo_->rows) {
    if (row.id == rowId) mark(row);
  }
}

void PlayQueue::ResetMarks() {
  for (QueueEntry& row : rows_) {
    row.status = RowStatus::Reset;
    row.requests = 0;
  }
  TellRowsChanged();
}

}  // namespace kelvo
