#pragma once

#include "database/Paths.h"
#include "datamanager/BulkEdit.h"
#include "datamanager/FindText.h"
#include "datamanager/ManagerTool.h"
#include "datamanager/PreviewPlayer.h"
#include "datamanager/ReferenceChoice.h"
#include "datamanager/TrackList.h"
#include "platform/Disks.h"
#include "platform/EventLoop.h"
#include "platform/Prompter.h"
#include "platform/Setting.h"

#include <QDate>
#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

namespace kelvo {

/// The Data Manager without its window: the list of tracks or jingles, what is chosen beside it, and the
/// tools that work on it. The tools themselves are the join's. Owned beside its window; logic thread.
class DataManager : public QObject {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    Disks& disks;
    Prompter& prompter;
    AudioSystem& audio;
    Catalogue& catalogue;
    const TrackFilter& words;  ///< the desk's
    Paths paths;
    ProgramSettings settings;
    std::shared_ptr<ManagerDesk> desk;
    std::shared_ptr<LibraryChanges> changes;  ///< does what is changed of several tracks
    /// Opens the window that moves waiting files into the database.
    std::function<void()> openTransfer;
    /// Makes the tools; called once, when all else is there.
    std::function<std::vector<ManagerTool>(DataManager&)> tools;
  };
  explicit DataManager(Services services);

  [[nodiscard]] Catalogue& Tracks() { return services_.catalogue; }
  [[nodiscard]] TrackList& List() { return list_; }
  [[nodiscard]] ReferenceChoice& References() { return references_; }
  [[nodiscard]] FindText& Find() { return find_; }
  [[nodiscard]] PreviewPlayer& Preview() { return preview_; }
  [[nodiscard]] BulkEdit& Bulk() { return bulk_; }
  [[nodiscard]] QDate Today() const { return services_.loop.Now().date(); }

  // The view.
  /// `DispMode`: what the operator chose to see.
  [[nodiscard]] DispMode Mode() const { return dispMode_; }
  void SetMode(DispMode mode);
  /// F5, "Display  All": lists everything again, without the filter.
  void Refresh() { list_.Refresh(dispMode_); }
  /// "Display  All": the filter is empty, and all is shown.
  void DisplayAll();
  /// "< Filter >".
  void Filter();
  /// "Add Tracks", "Add Jingles": what files of the present list come in by.
  [[nodiscard]] QString AddWords() const;
  /// Why the filter does nothing now, in words; empty when it does.
  [[nodiscard]] QString WhyNoFilter() const;

  // The selection, which the window tells.
  /// These rows are selected, from the first, and the keyboard is on `current` (-1: on none).
  void SetPicked(std::vector<int> rows, int current);
  [[nodiscard]] const std::vector<int>& PickedRows() const { return picked_; }
  /// The tracks of the selected rows; empty where jingles are listed.
  [[nodiscard]] std::vector<Mref> PickedTracks() const;
  /// The files of the selected rows: music, jingles or track info files.
  [[nodiscard]] QStringList PickedFiles() const;
  /// The row whose references are shown; -1 for none.
  [[nodiscard]] int CurrentRow() const { return current_; }
  /// "Track 12   03:45"; "N/A" in place of the number where the row has no data.
  [[nodiscard]] QString CurrentWords() const;
  void PlayCurrent();

  // The tools.
  [[nodiscard]] const std::vector<ManagerTool>& Tools() const { return tools_; }
  /// The tool with this fixed name; none when it wasn't handed in.
  [[nodiscard]] const ManagerTool* Tool(const QString& id) const;
  void Run(const QString& id);
  /// Something that a tool's `whyOff` depends on is another.
  void ToolsChanged() { Q_EMIT Changed(); }

  // A long piece of work of a tool, shown on the bar of the window.
  struct Progress {
    QString words;                    ///< with the share: "Deleting Track Entries (40%)"
    double share = 0;                 ///< 0 to 1
    std::function<void()> stop = {};  ///< empty: it can't be stopped
  };
  void ShowProgress(Progress progress);
  void EndProgress();
  /// What a tool came to, in words for the bar, until something else goes on.
  void SetNotice(const QString& notice) { notice_ = notice; }
  [[nodiscard]] const QString& Notice() const { return notice_; }
  /// What goes on and may not be broken off.
  [[nodiscard]] const std::optional<Progress>& Shown() const { return progress_; }
  [[nodiscard]] bool Busy() const { return progress_.has_value(); }

  /// "Restrict": the password that guards the Data Manager from the next start on.
  void Restrict();
  /// Whether the window may close; asks for what is left to be done.
  [[nodiscard]] Job<bool> MayClose();

 Q_SIGNALS:
  /// The view, the selection, what the tools may do, or progress is another.
  void Changed();

 private:
  [[nodiscard]] Job<> RunRestrict();
  [[nodiscard]] std::vector<Mref> NotUnified() const;

  Services services_;
  TrackList list_;
  ReferenceChoice references_;
  FindText find_;
  PreviewPlayer preview_;
  BulkEdit bulk_;
  DispMode dispMode_ = DispMode::MusicFiles;
  std::vector<int> picked_;
  int current_ = -1;
  std::vector<ManagerTool> tools_;
  std::optional<Progress> progress_;
  QString notice_;
  Job<> restrict_;
};

}  // namespace kelvo
