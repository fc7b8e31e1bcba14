#pragma once

#include "datamanager/LibraryChanges.h"
#include "datamanager/TrackOrders.h"
#include "platform/Disks.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace kelvo {

/// What the track editor shows of a track info file: what does not concern how the track is played. A value.
struct TrackFacts {
  QString year;
  QString month;  ///< three letters
  QString hiPos;
  QString bpm;
  bool startStrong = true;
  bool endStrong = false;
  QString comments;  ///< lines joined by "\n"
  bool operator==(const TrackFacts&) const = default;
};

/// Edits one file of the database, a track or a jingle: its info file, its name, and whether it is there at
/// all. A jingle has no info file: only its name can be changed. Owned beside its window; logic thread.
class TrackEditor : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Disks& disks;
    Prompter& prompter;
    Catalogue& catalogue;
    Paths paths;
    std::shared_ptr<LibraryChanges> changes;
    /// Why this file can't be deleted now, in words for the operator: it is on air. Empty when it can.
    std::function<QString(const QString& path)> whyNotDeleted;
  };
  explicit TrackEditor(Services services);

  /// Takes up this music file or jingle; asks first what becomes of changes to another one.
  void Open(const QString& path);
  /// The window went off the screen.
  void Leave();
  [[nodiscard]] Job<bool> MayClose();
  [[nodiscard]] bool Busy() const { return work_.Running(); }

  /// The file's name; " - Removed" behind it when it was deleted.
  [[nodiscard]] QString Title() const;
  [[nodiscard]] const QString& Path() const { return path_; }
  /// The file's name without its extension.
  [[nodiscard]] QString BaseName() const;
  /// What the new name is going to be, as typed.
  [[nodiscard]] const QString& NewName() const { return newName_; }
  void SetNewName(const QString& name);

  /// Why its facts can't be edited, in words; empty when they can.
  [[nodiscard]] QString WhyNoFacts() const;
  /// The same for its name, and for deleting it.
  [[nodiscard]] QString WhyNoChange() const;
  [[nodiscard]] bool IsJingle() const { return jingle_; }

  [[nodiscard]] const TrackFacts& Facts() const { return facts_; }
  void Change(const std::function<void(TrackFacts&)>& change);
  [[nodiscard]] bool Dirty() const { return ready_ && facts_ != before_; }
  /// The keyboard leaves the field: whether it may, as far as what is in it goes. Tells what is wrong.
  [[nodiscard]] bool CheckHiPos();
  [[nodiscard]] bool CheckBpm();
  /// This year down to 1950.
  [[nodiscard]] QStringList Years() const;
  [[nodiscard]] static const QStringList& Months();

  void Save();
  void Rename();
  void Delete();
  /// The file was converted to MP3: the next save makes its gain unknown.
  void TakeConverted() { converted_ = true; }

  [[nodiscard]] LibraryChanges& Changes() { return *services_.changes; }
  [[nodiscard]] const LibraryChanges& Changes() const { return *services_.changes; }

 Q_SIGNALS:
  void Changed();
  /// All fields are others: a file was opened.
  void Opened();
  /// It is saved, or can't be shown: the window closes.
  void Closed();

 private:
  void FollowCatalogue();
  void Forget();
  /// When the job under way is through.
  void ShowLater();
  void CloseLater();
  [[nodiscard]] Job<> RunOpen(QString path);
  [[nodiscard]] Job<> RunSaveAndClose();
  [[nodiscard]] Job<bool> RunSave();
  [[nodiscard]] Job<> RunRename();
  [[nodiscard]] Job<> RunDelete();
  [[nodiscard]] bool MayBeDeleted();
  [[nodiscard]] Job<LibraryFile> LookAt();
  [[nodiscard]] Job<TrackLinks> FindLinks(LibraryFile file, QString words);
  /// The new path; none when the name is refused, which the operator is told, or is the one that it has.
  [[nodiscard]] std::optional<QString> NewPath();
  void TellStopped();
  void TellEnd(const LibraryChanges::Outcome& outcome, const QString& done, const QString& missing,
               const TrackLinks& links);
  [[nodiscard]] bool CheckFigure(const QString& text, const QString& before, const QString& refusal);
  void Tell(const QString& text, PromptIcon icon = PromptIcon::Exclamation);
  [[nodiscard]] Job<bool> Ask(QString text);

  Services services_;
  QString path_;
  bool ready_ = false;  ///< facts_ counts
  bool jingle_ = false;
  bool deleted_ = false;
  bool gone_ = false;  ///< others took it out of the library
  bool converted_ = false;
  TrackFacts before_;
  TrackFacts facts_;
  QString newName_;
  Job<> opening_;
  Job<> work_;
};

}  // namespace kelvo
