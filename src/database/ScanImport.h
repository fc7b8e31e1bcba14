#pragma once

#include "database/Catalogue.h"
#include "database/DriveList.h"
#include "database/FileRun.h"
#include "database/MediaSearch.h"
#include "database/Paths.h"
#include "database/ScanRows.h"
#include "database/StagedName.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"

#include <QObject>

#include <functional>
#include <memory>

namespace kelvo {

struct StandingNames;

/// The first move of a track into the database: looks for music on a drive, lets the operator name what it
/// finds, and copies what is picked into the utility folder under its staged name. A source is deleted, where
/// that is wished, only when its copy is safe on disk. Owned by its window; logic thread. One search or
/// import at a time.
class ScanImport : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    Catalogue& catalogue;
    Paths paths;
    QString title;  ///< the program's
  };
  explicit ScanImport(Services services);
  ~ScanImport() override;

  [[nodiscard]] ScanRows& Rows() { return rows_; }
  [[nodiscard]] DriveList& Drives() { return drives_; }

  /// Lists what is found in the folders and below them, behind the rows that are there.
  void Search(const QStringList& folders);
  /// Empties the list; nothing while it is busy.
  void ClearList();
  /// Copies the rows to the utility folder, in this order, after its questions.
  void Import(const std::vector<int>& rows);
  /// Ends the search or the import; a file that is being copied stays where it was.
  void Stop();

  [[nodiscard]] bool Searching() const { return search_.Running(); }
  [[nodiscard]] bool Importing() const { return importing_; }
  [[nodiscard]] bool Busy() const { return Searching() || Importing(); }

  /// What it does or has done, in words, and how much of it in per cent.
  [[nodiscard]] QString Words() const;
  [[nodiscard]] double Percent() const;

  /// `Check1`: whether sources are deleted after the copy. Turning it on warns and can be taken back.
  [[nodiscard]] bool DeletesSources() const { return deletesSources_; }
  void SetDeletesSources(bool on);

  /// Whether a file of so many bytes fits into the folder. Called off the logic's thread.
  RoomCheck HasRoom = HasRoomFor;

 Q_SIGNALS:
  /// Words, Percent, Busy or DeletesSources changed.
  void Changed();
  /// The operator has confirmed the names: the import takes its rows.
  void Began();

 private:
  /// An import under way, and what it came to apart from its files.
  struct Batch {
    std::vector<int> rows;
    std::shared_ptr<StandingNames> standing;
    bool deletes = false;
    int sourcesKept = 0;    ///< could not or must not be deleted
    int unplayable = 0;     ///< were copied all the same
    std::vector<int> gone;  ///< rows whose source was deleted
  };

  [[nodiscard]] Job<> RunImport(std::vector<int> rows);
  [[nodiscard]] Job<bool> AskForNames(const std::vector<int>& rows);
  [[nodiscard]] Job<bool> AskForDeletion(std::size_t files);
  [[nodiscard]] Job<FileOutcome> CopyRow(int row, Batch& import);
  [[nodiscard]] Job<FileOutcome> CopyFileOf(int row, StagedName name, Batch& import);
  [[nodiscard]] Job<> DeleteSource(int row, QString copy, Batch& import);
  void MarkRow(int row, FileOutcome outcome);
  [[nodiscard]] Job<> TellNoRoom();
  [[nodiscard]] QString Summary(const FileSum& sum, const Batch& import) const;
  [[nodiscard]] Job<> AskToDelete();

  Services services_;
  ScanRows rows_;
  DriveList drives_;
  MediaSearch search_;
  bool deletesSources_ = false;
  bool importing_ = false;
  FileRun run_;
  Job<> import_;
  Job<> warning_;
};

}  // namespace kelvo
