#pragma once

#include "database/Catalogue.h"
#include "platform/Disks.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"
#include "platform/RowStore.h"
#include "playlists/GroupEdit.h"
#include "playlists/GroupEditDesk.h"
#include "playlists/GroupLinks.h"

#include <QObject>

#include <memory>
#include <optional>

namespace kelvo {

/// Edits the group playlist in the play queue as one line of time. What is saved is what the desk runs from
/// its next start on, and is kept in the links of the playlist's folder; the companions there keep what was
/// recorded, and a load takes those: an edit comes back from the links only when the operator wants it. Owned
/// beside its window; logic thread.
class GroupEditor : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Disks& disks;
    Prompter& prompter;
    const Catalogue& catalogue;
    std::shared_ptr<GroupEditDesk> desk;
  };
  explicit GroupEditor(Services services);
  ~GroupEditor() override;

  /// The window comes up: takes the list of the queue. Changes that were not saved are kept.
  void Enter();
  /// It went off the screen.
  void Leave();
  /// Whether it may close: asks whether changes are to be saved.
  [[nodiscard]] Job<bool> MayClose();

  [[nodiscard]] QString Title() const;
  /// What the operator should know; empty: nothing.
  [[nodiscard]] QString Notice() const;
  [[nodiscard]] const RowStore<GroupRow>& Rows() const { return rows_; }
  [[nodiscard]] const GroupEdit& Edit() const { return edit_; }
  [[nodiscard]] QString Details(const GroupRow& row) const;
  [[nodiscard]] QString TrackName(Mref track) const;
  [[nodiscard]] bool Dirty() const { return edit_ != saved_; }

  /// The row that list and time line work on; -1: none.
  [[nodiscard]] int Selected() const { return selected_; }
  void Select(int row);

  // The panel. The list takes no other change while it is open.
  [[nodiscard]] const std::optional<StepEdit>& Panel() const { return panel_; }
  [[nodiscard]] QString WhyNoEdit() const;
  void EditSelected();
  void SetSeconds(int seconds);
  void SetEnd(int seconds);
  void SetFade(TransitionKind fade);
  void SetSpeed(int speed);
  /// Asks whether the fade values are to be set apart from the times.
  void SetByHand();
  void Apply();
  void CancelEdit();

  // The time line.
  /// Why a row can't be moved; empty when it can.
  [[nodiscard]] QString WhyNoMove(int row) const;
  /// Moves it, and all that come later along; one step of the undo.
  void MoveBy(int row, int seconds);
  /// The same while the hand is on it; EndDrag makes it one step, CancelDrag takes it back.
  void DragTo(int row, int seconds);
  void EndDrag();
  void CancelDrag();
  /// In seconds as the elements have them; none while the list does not run.
  [[nodiscard]] const std::optional<double>& Playhead() const { return playhead_; }

  // The list.
  [[nodiscard]] QString WhyNoChange() const;
  void SetRepeats(bool repeats);
  [[nodiscard]] QString WhyNoUndo() const;
  void Undo();
  [[nodiscard]] QString WhyNoBringBack() const;
  /// Takes the lines that the links hold.
  void BringBack();
  [[nodiscard]] QString WhyNoSave() const;
  void Save();

 Q_SIGNALS:
  void Changed();
  void SelectedChanged();
  void PlayheadMoved();
  /// It is saved: the window closes.
  void Saved();

 private:
  void FollowCatalogue();
  void DeskChanged();
  void Open();
  void Drop();
  void Renumber(const std::function<Mref(int line, Mref before)>& track);
  /// A change, which can be undone.
  void Take(GroupEdit edit);
  void ShowRows();
  void ChangePanel(const std::function<void(StepEdit&)>& change);
  void MovePlayhead();
  [[nodiscard]] QStringList TrackNames() const;
  /// By their places; as they are, and as the links hold them.
  [[nodiscard]] QStringList Lines() const;
  [[nodiscard]] QStringList KeptLines() const;
  /// Gives the desk the lines, in the order of their loads, which is their order from here on.
  QStringList PutInOrder();
  [[nodiscard]] Job<> ReadLinks();
  [[nodiscard]] Job<> AskByHand();
  [[nodiscard]] Job<bool> RunSave();
  [[nodiscard]] Job<> RunSaveAndClose();
  void Tell(const QString& text, PromptIcon icon = PromptIcon::Exclamation);

  struct ListLine {
    Mref track = Mref::None;
    QString name;  ///< of the track, by which its link is found
  };
  /// The list that was opened.
  struct List {
    QString name;
    QString folder;
    int revision = 0;
    std::vector<ListLine> lines = {};
    bool left = false;  ///< the queue holds another one by now
  };

  Services services_;
  std::optional<List> list_;
  GroupEdit edit_;
  GroupEdit saved_;
  RowStore<GroupRow> rows_;
  std::vector<GroupEdit> undo_;
  std::optional<GroupEdit> beforeDrag_;
  std::optional<StepEdit> panel_;
  std::optional<std::vector<StoredLine>> stored_;  ///< of each line; none while they are not known
  std::optional<double> playhead_;
  int selected_ = -1;
  bool entered_ = false;
  bool saving_ = false;
  Timer beat_;
  Job<> reading_;
  Job<> asking_;
  Job<> work_;
};

}  // namespace kelvo
