#pragma once

#include "database/Catalogue.h"
#include "database/DriveList.h"
#include "database/FileRun.h"
#include "database/MediaSearch.h"
#include "database/Paths.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"
#include "platform/RowStore.h"

#include <QObject>
#include <QSet>

#include <functional>
#include <memory>
#include <vector>

namespace kelvo {

struct JingleRow {
  QString name;
  std::int64_t size = 0;  ///< bytes
  QString path;
  QString trouble;  ///< why it cannot be played; see WhyNotPlayable

  /// In megabytes, "0.0000".
  [[nodiscard]] QString SizeText() const;
};

/// Looks for short sound files on a drive and copies them into the jingle folder, which is the whole of their
/// data; deletes found files on demand. Rows count from 0. Owned by its window; logic thread. One search,
/// import or deletion at a time.
class JingleImport : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    Catalogue& catalogue;
    Paths paths;
    QString title;  ///< the program's
  };
  explicit JingleImport(Services services);
  ~JingleImport() override;

  [[nodiscard]] DriveList& Drives() { return drives_; }
  [[nodiscard]] const RowStore<JingleRow>& Rows() const { return rows_; }

  /// Lists what is found in the folder and below it, in place of the rows that were there.
  void Search(const QString& folder);
  /// Copies the rows into the jingle folder, in this order.
  void Import(const std::vector<int>& rows);
  /// Deletes the files of the rows from their drive, after its questions.
  void Delete(const std::vector<int>& rows);
  void Stop();

  [[nodiscard]] bool Searching() const { return search_.Running(); }
  [[nodiscard]] bool Busy() const { return Searching() || working_; }
  /// What it does or has done, in words, and how much of it in per cent.
  [[nodiscard]] QString Words() const;
  [[nodiscard]] double Percent() const;

  /// Whether a file of so many bytes fits into the folder. Called off the logic's thread.
  RoomCheck HasRoom = HasRoomFor;

 Q_SIGNALS:
  void Changed();

 private:
  [[nodiscard]] Job<> RunImport(std::vector<JingleRow> picked);
  /// `standing`: the names in the jingle folder, upper case.
  [[nodiscard]] Job<FileOutcome> ImportOne(JingleRow row, std::shared_ptr<QSet<QString>> standing);
  [[nodiscard]] Job<> RunDelete(std::vector<JingleRow> picked);
  [[nodiscard]] Job<bool> AskBeforeDeletions(std::size_t files);
  [[nodiscard]] Job<FileOutcome> DeleteOne(JingleRow row);
  void Append(const std::vector<FoundFile>& files);
  void RemoveRow(const QString& path);
  /// A jingle may be among the files that were found.
  void Follow(const JingleChanged& change);
  void Begin();
  void End(const QString& words);
  [[nodiscard]] std::vector<JingleRow> Picked(const std::vector<int>& rows) const;
  [[nodiscard]] static QString Summary(const FileSum& sum, const std::vector<JingleRow>& picked);

  Services services_;
  DriveList drives_;
  MediaSearch search_;
  RowStore<JingleRow> rows_;
  bool working_ = false;
  FileRun run_;
  Job<> work_;
};

}  // namespace kelvo
