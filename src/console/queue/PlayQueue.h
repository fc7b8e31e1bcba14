#pragma once

#include "console/desk/ConsoleState.h"
#include "console/queue/QueueEntry.h"
#include "console/queue/QueueUndo.h"
#include "platform/Disks.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace kelvo {

class Catalogue;
struct TrackChanged;
struct TrackRemoved;
struct TrackRenamed;

/// The ordered list of what the desk is going to play, and the running record of what became of it: the only
/// way by which a track reaches a deck. Rows are numbered from 1 (their Index). One row at most is selected.
/// Owned by the Console; logic thread; operations run to their end on a click, those that ask return a job.
class PlayQueue : public QObject {
  Q_OBJECT

 public:
  PlayQueue(EventLoop& loop, Disks& disks, Prompter& prompter, const Catalogue& catalogue,
            const ConsoleState& state);

  [[nodiscard]] int Count() const { return static_cast<int>(rows_.size()); }
  /// Index from 1 to Count.
  [[nodiscard]] const QueueEntry& Row(int index) const { return rows_[static_cast<std::size_t>(index - 1)]; }

  /// The number of a row; 0 when it is gone.
  [[nodiscard]] int IndexOf(RowId row) const;

  /// The selected row's Index; 0 when none is.
  [[nodiscard]] int Selected() const { return selected_; }
  /// Selects a row (0: none) and scrolls it into view.
  void Select(int index);
  /// A click of the operator on a row: selects it and remembers it.
  void Click(int index);

  [[nodiscard]] const QString& Name() const { return name_; }
  void SetName(const QString& name);
  [[nodiscard]] qint64 QueueTotalSeconds() const { return totalSeconds_; }
  /// The row last clicked or opened for editing; -1 after a clear.
  [[nodiscard]] int LastQueueIndex() const { return lastQueueIndex_; }
  /// The queue holds a group playlist.
  [[nodiscard]] bool GroupQueueFlag() const { return groupQueueFlag_; }
  /// A group playlist was loaded: its hidden timing lines, one a row, in load order.
  void SetGroup(QStringList timingLines);
  /// With the numbers that their tracks have today.
  [[nodiscard]] QStringList GroupLines() const;
  /// The track of each line; None when its row has gone.
  [[nodiscard]] std::vector<Mref> GroupTracks() const;
  /// Other lines for the group playlist that is in the queue, each with its track.
  void ChangeGroup(QStringList timingLines, const std::vector<Mref>& tracks);
  /// Another number whenever the lines are others.
  [[nodiscard]] int GroupRevision() const { return groupRevision_; }
  /// Those of one row; a track that is played more than once has several.
  [[nodiscard]] QStringList GroupLinesOf(int index) const;
  /// The folder of the playlist that was loaded last; empty when there is none.
  [[nodiscard]] const QString& PlaylistFolder() const { return playlistFolder_; }

  [[nodiscard]] bool QueueHasRequests() const;

  // Why the operator can't do it now, in words; empty when they can. The commands do nothing otherwise.
  [[nodiscard]] QString WhyNoAdd() const;
  [[nodiscard]] QString WhyNoMove(int step) const;
  [[nodiscard]] QString WhyNoCut() const;
  [[nodiscard]] QString WhyNoClear() const;
  [[nodiscard]] QString WhyNoEdit() const;
  [[nodiscard]] QString WhyNoSort() const;
  /// Why the queue takes no hand at all now; empty when it does. What is selected can change all the same.
  std::function<QString()> WhyHeld;

  /// What became of the first row of this track, or of `row` when it has left the catalogue; none when there
  /// is no such row.
  [[nodiscard]] std::optional<RowStatus> StatusOf(Mref track, RowId row = RowId::None) const;

  /// Where tracks come from. The library adds each track once only; a search adds whatever was chosen.
  enum class Route { Library, Search };
  /// "Add To Queue": the tracks, in this order. Asks before it gives up a group playlist. A track whose file
  /// is gone is skipped; one from the library that is in the queue already is only selected. What the
  /// operator selects meanwhile stays selected.
  [[nodiscard]] Job<> AddTracks(std::vector<Mref> tracks, Route route = Route::Library);
  /// What came of a request.
  struct Requested {
    RowId row = RowId::None;  ///< the row that carries its words; none: nothing was done
    int count = 0;            ///< so many requests wait on that row
    bool added = false;       ///< the row is new
  };
  /// "Add To Queue" of a request: its words, several lines, go to the first row of the track, which becomes a
  /// request, or are stacked on those that wait there; a track that is in no row gets one at the end. Asks
  /// before it gives up a group playlist. Nothing while one runs.
  [[nodiscard]] Job<Requested> AddRequest(Mref track, QString words);
  /// Adds a row unchanged at the end, with its Tag; the base of every other way in. `seconds` is added to
  /// the total.
  int AppendRow(QueueEntry entry, qint64 seconds);

  /// A playlist, or a part of one, comes in: one change, which can be undone. At once: ten thousand rows take
  /// about a turn, in a sorted list some turns.
  void Take(const QueueFill& fill);
  /// What is asked before a group playlist is given up; `cannot` as the caller spells it.
  [[nodiscard]] QString GroupQuestion(const QString& cannot) const;

  /// Takes back the last cut, clear or load; what came in since stays behind it, and what was played stays.
  void Undo();
  /// Why nothing can be taken back now, in words; empty when it can.
  [[nodiscard]] QString WhyNoUndo() const;

  void MoveSelectedUp();
  void MoveSelectedDown();
  /// Takes the row at `from` to the place `to` by the same single moves, as far as they go.
  void MoveTo(int from, int to);
  void CutSelected();
  [[nodiscard]] Job<> ClearQueue();
  /// Opens the editor of the selected row's track, or removes the row when its file is gone. OpenEditor shows
  /// the form.
  void EditSelected();
  std::function<void(int index, bool groupPlaylist)> OpenEditor;
  /// Whether a track has a track info file. Called off the logic's thread: owns all that it touches.
  std::function<bool(const QString& mediaPath)> HasTrackInfo;

  /// A click on a column head.
  void SortBy(QueueColumn column);
  [[nodiscard]] const QString& TrackHead() const { return trackHead_; }
  [[nodiscard]] const QString& GenreHead() const { return genreHead_; }
  /// The view that SwitchTimings will show: "Timings" or "Genres".
  [[nodiscard]] QString TimingsCaption() const;
  [[nodiscard]] bool ShowsTimings() const { return showsTimings_; }
  void SwitchTimings();

  /// What became of a track, in its first row, or in `row` when it has left the catalogue; a request is met
  /// by that. Nothing while a preview runs.
  void MarkQueueRow(Mref track, RowStatus status, RowId row = RowId::None);
  /// Automatic play starts: nothing was played yet, and requests are rows like all others.
  void ResetMarks();
  /// What the operator should know of a command that did less than was asked.
  std::function<void(const QString&)> OnTold;

 Q_SIGNALS:
  /// Rows came, went or changed places.
  void RowsChanged();
  /// The content of one row changed.
  void RowChanged(int index);
  void SelectionChanged();
  /// A row should come into sight, whether it is selected or not.
  void RowShown(int index);
  /// Name, heads, total or flags changed.
  void FactsChanged();

 private:
  // What happens to the catalogue.
  void FollowCatalogue();
  void TrackWasChanged(const TrackChanged& change);
  void FileWasRenamed(const QString& pathBefore, const QString& path);
  /// Rows that are still to be played go, those that tell what was played stay.
  void TrackWasRemoved(const TrackRemoved& removed);
  void CatalogueWasReplaced();
  void RemoveRow(int index);
  /// Why no command for the selected row works.
  [[nodiscard]] QString WhyNoRow() const;
  /// What the queue is now can be brought back.
  void Remember();
  /// What it is now is the outcome of what was remembered.
  void NoteOutcome(std::vector<RowId> added = {});
  void Empty();

  /// A row with what the catalogue knows of the track, without title, path and note.
  [[nodiscard]] QueueEntry FactsOf(Mref track) const;
  [[nodiscard]] QueueEntry EntryOf(Mref track) const;
  int InsertRow(QueueEntry entry, qint64 seconds);
  void TellRowsChanged();
  [[nodiscard]] QString GenreColumnText(Mref track) const;
  [[nodiscard]] int FindTrack(Mref track) const;
  [[nodiscard]] int FindRow(Mref track, RowId row) const;
  /// For the total; 0 when the length is unknown.
  [[nodiscard]] static qint64 WholeSeconds(double duration);
  [[nodiscard]] qint64 SecondsOf(Mref track) const;
  [[nodiscard]] bool MoveSelected(int step);
  void ClearAll();
  [[nodiscard]] Job<> RunEdit(int index, QString path);
  void SortRows();

  EventLoop& loop_;
  Disks& disks_;
  Prompter& prompter_;
  const Catalogue& catalogue_;
  const ConsoleState& state_;
  std::vector<QueueEntry> rows_;
  int selected_ = 0;
  QString name_;
  qint64 totalSeconds_ = 0;
  int lastQueueIndex_ = 0;
  bool groupQueueFlag_ = false;
  QStringList groupLines_;
  std::vector<RowId> groupRows_;  ///< the row of each line, where it is known
  int groupRevision_ = 0;
  QString playlistFolder_;
  std::optional<QueueUndo> undo_;
  bool sorted_ = false;
  QueueColumn sortColumn_ = TrackColumn;
  bool showsTimings_ = false;
  QString trackHead_;
  QString genreHead_;
  int lastId_ = 0;
  int selections_ = 0;  ///< counts what was selected from outside
  int highestTag_ = 0;
  int revision_ = 0;  ///< counts the changes of the rows' number and order
  Job<> editing_;
};

}  // namespace kelvo
