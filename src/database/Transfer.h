#pragma once

#include "audio/AudioSystem.h"
#include "database/Catalogue.h"
#include "database/FileRun.h"
#include "database/HalfMoved.h"
#include "database/Paths.h"
#include "database/TransferRows.h"
#include "database/TransferSteps.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"
#include "platform/Setting.h"

#include <QHash>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace kelvo {

/// Moves the files that wait in the utility folder into the database. Each goes in steps that can end
/// anywhere: the music file is copied whole, the track info file is written, the catalogue takes the track,
/// the waiting file is deleted. Until then it waits, so that a step which failed or a crash is made good by
/// running again. Owned by the window; logic thread. One listing, run or deletion at a time.
class Transfer : public QObject {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    AudioSystem& audio;
    Catalogue& catalogue;
    Paths paths;
    ProgramSettings settings;
  };

  explicit Transfer(Services services);

  [[nodiscard]] TransferRows& Rows() { return rows_; }
  [[nodiscard]] const TransferRows& Rows() const { return rows_; }

  /// Lists the waiting files anew; rows come as they are read. Does nothing while a run goes on. From then on
  /// the rows follow what is staged and taken away.
  void List();
  /// Moves the rows with these ids into the database, in the order of the list.
  void Move(const std::vector<int>& ids);
  /// Deletes the files of these rows.
  void Delete(const std::vector<int>& ids);
  /// The files of these rows, for the encoder; asks for some where there are none.
  [[nodiscard]] QStringList FilesToEncode(const std::vector<int>& ids) const;
  /// Ends the run: a file that is being copied stays where it was.
  void Stop();

  [[nodiscard]] bool Listing() const { return listing_; }
  /// A run or a deletion goes on.
  [[nodiscard]] bool Busy() const { return running_; }
  /// Files are being copied, not deleted.
  [[nodiscard]] bool Moving() const { return running_ && moves_; }
  [[nodiscard]] FileProgress Progress() const { return run_.Progress(); }

  /// Whether a file of so many bytes fits into the folder. Called off the logic's thread.
  RoomCheck HasRoom = HasRoomFor;

 Q_SIGNALS:
  /// Progress, Listing or Busy changed.
  void Changed();

 private:
  [[nodiscard]] Job<> RunList();
  /// What was typed into rows, by the paths of their files.
  using TypedTexts = QHash<QString, TransferRow>;
  /// Reads the waiting files that have no row yet.
  [[nodiscard]] Job<> ReadMissing(TypedTexts typed);
  [[nodiscard]] QStringList Missing() const;
  void StagedFileCame();
  [[nodiscard]] Job<> RunMove(std::vector<int> ids);
  [[nodiscard]] Job<> MoveAll(const std::vector<int>& ids);
  [[nodiscard]] Job<> RunDelete(std::vector<int> ids);
  [[nodiscard]] Job<FileOutcome> MoveOne(int id);
  [[nodiscard]] Job<> DeleteAll(const std::vector<int>& ids);
  [[nodiscard]] Job<FileOutcome> DeleteOne(int id);
  [[nodiscard]] QString NameOf(int id) const;
  /// Seconds of sound; throws Failure when the file is no music.
  [[nodiscard]] Job<double> LookAt(const TransferRow& row);
  /// Makes the folder of a name that is not there yet; the name as the database spells it.
  [[nodiscard]] Job<QString> EnsureReference(Paths::Slot slot, QString name, ReferenceSet set);
  /// None when the operator left it out.
  [[nodiscard]] Job<std::optional<HalfMoved::Move>> CopyMusic(const TransferRow& row);
  /// The move of an earlier run that had copied the music file, and then was cut short.
  [[nodiscard]] Job<std::optional<HalfMoved::Move>> CopiedBefore(const TransferRow& row);
  [[nodiscard]] Job<> KeepHalfMoved();
  /// `fresh` is what a new file says. `finishes` a move that was cut short.
  [[nodiscard]] Job<TrackInfo> WriteInfo(HalfMoved::Move move, bool finishes, TrackInfo fresh);
  [[nodiscard]] Job<bool> Exists(QString path);
  [[nodiscard]] bool DatesAreGood(const std::vector<int>& ids);
  [[nodiscard]] std::vector<int> InListOrder(const std::vector<int>& ids) const;
  void SetRunning(bool running);

  Services services_;
  TransferRows rows_;
  FileRun run_;
  std::shared_ptr<DatabaseNames> names_;
  HalfMoved half_;
  bool moves_ = false;  ///< what the run does: moves or deletes
  bool listing_ = false;
  bool running_ = false;
  bool listed_ = false;  ///< the list has been shown, and follows since
  Job<> list_;
  Job<> reading_;
  Job<> work_;
};

}  // namespace kelvo
