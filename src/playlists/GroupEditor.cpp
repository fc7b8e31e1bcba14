#include "playlists/GroupEditor.h"

#include "database/GroupWords.h"
#include "platform/ErrorLog.h"

#include <QPointer>

#include <algorithm>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

const QString kTag = QStringLiteral(" spedit");
constexpr std::size_t kMostUndo = 200;
constexpr Nanoseconds kPlayheadBeat = 100ms;

}  // namespace

GroupEditor::GroupEditor(Services services) : services_(std::move(services)) {
  services_.desk->OnChanged = [this] { DeskChanged(); };
  FollowCatalogue();
}

GroupEditor::~GroupEditor() {
  services_.desk->OnChanged = nullptr;
}

void GroupEditor::FollowCatalogue() {
  services_.catalogue.Listen(
      this,
      [this](const TrackRenamed& renamed) {
        if (!list_) return;
        for (ListLine& line : list_->lines) {
          if (line.track == renamed.track) line.name = TrackName(renamed.track);
        }
        ShowRows();
      },
      [this](const TrackRemoved& removed) {
        Renumber([&removed](int, Mref before) {
          return before == Mref::None ? before : removed.Renumbered(before);
        });
      },
      [this](const CatalogueReplaced&) {
        const std::vector<QueuedLine> lines = services_.desk->Lines();
        const bool known = list_ && !list_->left && lines.size() == list_->lines.size();
        Renumber([&lines, known](int line, Mref) {
          return known ? lines[static_cast<std::size_t>(line)].track : Mref::None;
        });
      });
}

void GroupEditor::Renumber(const std::function<Mref(int line, Mref before)>& track) {
  if (!list_) return;
  int place = 0;
  for (ListLine& line : list_->lines) line.track = track(place++, line.track);
  edit_.Renumber(track);
  saved_.Renumber(track);
  for (GroupEdit& each : undo_) each.Renumber(track);
  if (beforeDrag_) beforeDrag_->Renumber(track);
  ShowRows();
  Q_EMIT Changed();
}

// The list.

void GroupEditor::Enter() {
  entered_ = true;
  beat_ = services_.loop.Every(kPlayheadBeat, [this] { MovePlayhead(); });
  DeskChanged();
  MovePlayhead();
}

void GroupEditor::Leave() {
  entered_ = false;
  beat_.Stop();
  asking_.Cancel();
  panel_.reset();
  CancelDrag();
  services_.desk->Left();
  // Another form took its place: the changes wait for it to come back, or for the question at the end.
  if (!saving_ && !Dirty()) Drop();
  Q_EMIT Changed();
}

void GroupEditor::DeskChanged() {
  if (!entered_ || saving_) return;
  const GroupEditDesk& desk = *services_.desk;
  const bool same = list_ && desk.HoldsGroup() && desk.Revision() == list_->revision;
  if (same) {
    list_->left = false;
    list_->name = desk.Name();
  } else if (list_ && Dirty()) {
    list_->left = true;
  } else {
    Open();
  }
  Q_EMIT Changed();
}

void GroupEditor::Drop() {
  reading_.Cancel();
  list_.reset();
  stored_.reset();
  undo_.clear();
  beforeDrag_.reset();
  panel_.reset();
  edit_ = saved_ = GroupEdit();
  ShowRows();
  Select(-1);
}

void GroupEditor::Open() {
  Drop();
  const GroupEditDesk& desk = *services_.desk;
  if (!desk.HoldsGroup()) return;
  list_ = List{.name = desk.Name(), .folder = desk.Folder(), .revision = desk.Revision()};
  QStringList lines;
  for (const QueuedLine& line : desk.Lines()) {
    lines.append(line.text);
    list_->lines.push_back({line.track, TrackName(line.track)});
  }
  edit_ = saved_ = GroupEdit(lines);
  ShowRows();
  Select(edit_.Count() > 0 ? 0 : -1);
  if (edit_.Count() == 0 && !lines.isEmpty()) Tell(QStringLiteral("Could Not Load Play list !"));
  if (!list_->folder.isEmpty()) reading_ = ReadLinks();
}

QString GroupEditor::Title() const {
  return list_ ? QStringLiteral("Grp Playlist ") + list_->name : QStringLiteral("Group Playlist Edit");
}

QString GroupEditor::Notice() const {
  if (!list_) return {};
  if (list_->left)
    return tr("The play queue holds another list now: what you save goes to the links of %1")
        .arg(list_->name);
  if (edit_.StrangeLines() > 0)
    return tr("Tracks whose line can't be read, and is left as it is: %1").arg(edit_.StrangeLines());
  return playhead_ ? tr("The list runs: what you save counts from its next start") : QString();
}

QString GroupEditor::TrackName(Mref track) const {
  return services_.catalogue.IsTrack(track) ? services_.catalogue.TrackNames[track] : QString();
}

QString GroupEditor::Details(const GroupRow& row) const {
  return ElementDetails(row.element, services_.catalogue);
}

void GroupEditor::ShowRows() {
  const std::vector<GroupRow>& rows = edit_.Rows();
  if (rows.size() != rows_.All().size()) {
    rows_.Replace(rows);
  } else if (!rows.empty()) {
    for (int row = 0; row < edit_.Count(); ++row)
      rows_.AlterUntold(row, [&](GroupRow& each) { each = rows[static_cast<std::size_t>(row)]; });
    rows_.TellChanged(0, edit_.Count() - 1);
  }
  Select(std::min(selected_, edit_.Count() - 1));
}

void GroupEditor::Take(GroupEdit edit) {
  if (edit == edit_) return;
  if (undo_.size() >= kMostUndo) undo_.erase(undo_.begin());
  undo_.push_back(std::move(edit_));
  edit_ = std::move(edit);
  ShowRows();
  Q_EMIT Changed();
}

void GroupEditor::Select(int row) {
  if (row == selected_) return;
  selected_ = row;
  Q_EMIT SelectedChanged();
}

QString GroupEditor::WhyNoChange() const {
  if (!list_) return tr("No group playlist is in the play queue");
  if (edit_.Count() == 0) return tr("The list is empty");
  if (saving_) return tr("It is being saved");
  return panel_ ? tr("An element is being edited") : QString();
}

// Commands of the list.

void GroupEditor::SetRepeats(bool repeats) {
  if (!WhyNoChange().isEmpty()) return;
  CancelDrag();
  GroupEdit edit = edit_;
  edit.SetRepeats(repeats);
  Take(std::move(edit));
}

QString GroupEditor::WhyNoUndo() const {
  const QString why = WhyNoChange();
  if (!why.isEmpty()) return why;
  return undo_.empty() ? tr("Nothing was changed") : QString();
}

void GroupEditor::Undo() {
  if (!WhyNoUndo().isEmpty()) return;
  CancelDrag();
  edit_ = std::move(undo_.back());
  undo_.pop_back();
  ShowRows();
  Q_EMIT Changed();
}

Job<> GroupEditor::ReadLinks() {
  try {
    const auto read = [folder = list_->folder, names = TrackNames()] {
      return ReadStoredLines(folder, names);
    };
    stored_ = co_await services_.disks.Look(list_->folder, read);
    Q_EMIT Changed();
  } catch (const Failure& failure) {
    // The list in the queue can be edited all the same.
    NoteInLog(QStringLiteral("%1: %2").arg(failure.Source(), QString::fromUtf8(failure.what())));
  }
}

QStringList GroupEditor::TrackNames() const {
  QStringList names;
  for (const ListLine& line : list_->lines) names.append(line.name);
  return names;
}

QStringList GroupEditor::Lines() const {
  QStringList lines(static_cast<qsizetype>(list_->lines.size()));
  for (const GroupEdit::Line& line : edit_.Lines()) lines[line.place] = line.text;
  return lines;
}

QStringList GroupEditor::KeptLines() const {
  QStringList lines = Lines();
  for (qsizetype line = 0; line < lines.size(); ++line) {
    const auto place = static_cast<std::size_t>(line);
    const std::optional<QString>& kept = (*stored_)[place].edited;
    if (kept) lines[line] = RenumberedLine(*kept, list_->lines[place].track);
  }
  return lines;
}

QString GroupEditor::WhyNoBringBack() const {
  const QString why = WhyNoChange();
  if (!why.isEmpty()) return why;
  if (list_->folder.isEmpty()) return tr("The list is in no playlist's folder");
  if (!stored_) return tr("Its links are not read");
  const bool differ = std::any_of(stored_->begin(), stored_->end(), [](const StoredLine& each) {
    return each.edited && (!each.recorded || RenumberedLine(*each.edited, Mref::None) !=
                                                 RenumberedLine(*each.recorded, Mref::None));
  });
  if (!differ) return tr("The links hold no edit of this list");
  return KeptLines() == Lines() ? tr("The list is as its links hold it") : QString();
}

void GroupEditor::BringBack() {
  if (!WhyNoBringBack().isEmpty()) return;
  CancelDrag();
  Take(GroupEdit(KeptLines()));
}

// Saving.

QString GroupEditor::WhyNoSave() const {
  const QString why = WhyNoChange();
  if (!why.isEmpty()) return why;
  return list_->left && list_->folder.isEmpty()
             ? tr("The play queue holds another list now, and this one has no folder")
             : QString();
}

void GroupEditor::Save() {
  if (WhyNoSave().isEmpty() && !work_.Running()) work_ = RunSaveAndClose();
}

Job<> GroupEditor::RunSaveAndClose() {
  const bool saved = co_await RunSave();
  // Later: the window that closes then drops this job.
  if (saved)
    services_.loop.Post([self = QPointer(this)] {
      if (self) Q_EMIT self->Saved();
    });
}

QStringList GroupEditor::PutInOrder() {
  List list = *list_;
  list.lines.clear();
  QStringList texts;
  std::vector<QueuedLine> queued;
  for (const GroupEdit::Line& line : edit_.Lines()) {
    const ListLine& before = list_->lines[static_cast<std::size_t>(line.place)];
    list.lines.push_back(before);
    texts.append(line.text);
    queued.push_back({before.track, line.text});
  }
  if (!list.left) {
    services_.desk->SetLines(queued);
    list.revision = services_.desk->Revision();
  }
  // The places of the lines are others now.
  list_ = std::move(list);
  edit_ = GroupEdit(texts);
  undo_.clear();
  stored_.reset();
  ShowRows();
  return texts;
}

Job<bool> GroupEditor::RunSave() {
  CancelDrag();
  saving_ = true;
  Q_EMIT Changed();
  bool saved = false;
  try {
    const QStringList lines = PutInOrder();
    int missing = 0;
    if (!list_->folder.isEmpty()) {
      const auto write = [folder = list_->folder, names = TrackNames(), lines] {
        return WriteEditedLines(folder, names, lines);
      };
      missing = co_await services_.loop.Offload(EventLoop::Lane::Files, write);
      reading_ = ReadLinks();
    }
    saved_ = edit_;
    saved = true;
    if (missing > 0)
      Tell(tr("Tracks Without A Link In The Playlist's Folder : %1\r\nTheir Changes Count Until The List "
              "Leaves The Queue.")
               .arg(missing));
  } catch (...) {
    basHandleError(kTag, tr("The changes to %1 could not be saved.").arg(list_->name));
  }
  saving_ = false;
  Q_EMIT Changed();
  co_return saved;
}

Job<bool> GroupEditor::MayClose() {
  if (saving_) co_return false;
  CancelDrag();
  if (!Dirty()) co_return true;
  Prompt question;
  question.text = tr("Save Changes ?");
  question.buttons = Buttons::YesNoCancel;
  question.icon = PromptIcon::Question;
  const Answer answer = co_await services_.prompter.Ask(question);
  if (answer == Answer::Yes) {
    panel_.reset();
    const bool saved = co_await RunSave();
    co_return saved;
  }
  if (answer != Answer::No) co_return false;
  undo_.clear();
  edit_ = saved_;
  ShowRows();
  Q_EMIT Changed();
  co_return true;
}

void GroupEditor::Tell(const QString& text, PromptIcon icon) {
  Prompt message;
  message.text = text;
  message.icon = icon;
  services_.prompter.Tell(message);
}

}  // namespace kelvo
