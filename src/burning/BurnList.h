#pragma once

#include "burning/AudioReadBack.h"
#include "burning/Staging.h"
#include "burning/cSimpleCDBurner.h"
#include "platform/Prompter.h"
#include "platform/RowStore.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace kelvo {

/// What is written.
enum class BurnKind {
  Data,   ///< the staged files, as files
  Audio,  ///< the music of the list, as a disc that every player plays
};

/// A file for a disc.
struct BurnRow {
  int id = 0;
  QString name;  ///< of the file
  QString path;
  std::int64_t bytes = 0;
  QString stagedPath = {};  ///< of its copy; empty: it is not staged

  [[nodiscard]] bool Staged() const { return !stagedPath.isEmpty(); }
  [[nodiscard]] QString NameText() const { return Staged() ? name + QStringLiteral(" Staged") : name; }
};

/// The work of the burner's window: files are staged, and what is staged is written as a data disc; or the
/// music of the list is written as an audio CD. Both go onto a disc or into an image of one, and are read
/// back. Owned by the table of windows; logic thread. One thing at a time.
class BurnList : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    QString title;          ///< the program's
    QString stagingFolder;  ///< need not exist
    QString documents;      ///< of the operator: images go there at first
    QString playlists;      ///< the folder of the playlists
    /// The files of the play queue, in its order.
    std::function<QStringList()> queue = {};
    /// The files of a playlist's folder, in its order; may throw Failure.
    std::function<Job<QStringList>(QString folder)> playlist = {};
    /// Opens a drive to read the sound of its disc. Called off the logic's thread; may throw Failure. Without
    /// it only the contents of an audio CD are read back.
    std::function<ReadSectors(QString device)> reader = {};
    cSimpleCDBurner::Tools tools = {};
  };
  explicit BurnList(Services services);
  ~BurnList() override;

  [[nodiscard]] QString Title() const { return services_.title + QStringLiteral(" CD Data Burner"); }
  [[nodiscard]] const RowStore<BurnRow>& Rows() const { return rows_; }
  [[nodiscard]] const RowStore<QString>& Log() const { return log_; }

  /// The window came on the screen: looks for drives, and for what an earlier run has staged.
  void Open();
  void Add(const QStringList& places);
  void AddFile();
  void AddFolder();
  void AddQueue();
  void AddPlaylist();
  /// Copies these rows to the staging area.
  void Stage(const std::vector<int>& rows);
  /// Empties the staging area.
  void ClearStaging();
  /// Takes these rows off the list and deletes their staged copies; the files themselves stay.
  void Delete(const std::vector<int>& rows);
  void MoveUp(int row);
  void MoveDown(int row);

  [[nodiscard]] BurnKind Kind() const { return kind_; }
  void SetKind(BurnKind kind);
  /// The drives, and the disc image behind them.
  [[nodiscard]] QStringList Targets() const;
  [[nodiscard]] int Target() const { return target_; }
  void SetTarget(int target);
  [[nodiscard]] bool ToImage() const { return target_ >= static_cast<int>(drives_.size()); }
  [[nodiscard]] const QString& ImagePath() const { return image_; }
  void SetImagePath(const QString& path);
  void ChooseFolder();
  /// What is known of drives.
  [[nodiscard]] const QString& DriveWords() const { return driveWords_; }

  void Burn();
  void Stop();
  /// Something is done that the end of the program would break off.
  [[nodiscard]] bool Busy() const { return busy_ && !looking_; }
  /// No other command can be given now.
  [[nodiscard]] bool AtWork() const { return busy_; }

  // Why a command can't be given, in words; empty when it can.
  [[nodiscard]] QString WhyNoBurn() const;
  [[nodiscard]] QString WhyNoQueue() const;

  [[nodiscard]] QString Words() const;
  [[nodiscard]] std::optional<double> Share() const { return busy_ ? share_ : std::nullopt; }
  /// How much is staged, or how long the disc will be.
  [[nodiscard]] QString Sum() const;

 Q_SIGNALS:
  void Changed();

 private:
  [[nodiscard]] Job<> RunOpen();
  [[nodiscard]] Job<> RunAdd(QStringList places);
  [[nodiscard]] Job<> RunPick(bool folder);
  [[nodiscard]] Job<> RunAddPlaylist();
  [[nodiscard]] Job<> RunStage(std::vector<int> ids);
  [[nodiscard]] Job<> RunClear();
  [[nodiscard]] Job<> RunDelete(std::vector<int> ids);
  [[nodiscard]] Job<> RunChooseFolder();
  [[nodiscard]] Job<> RunBurn();
  [[nodiscard]] Job<> BurnData();
  [[nodiscard]] Job<> BurnMusic();
  /// The disc in the drive, where something can be written on it and the operator lets it be.
  [[nodiscard]] Job<std::optional<BurnMedium>> UsableMedium(QString device);
  [[nodiscard]] Job<bool> MayWriteImage();
  [[nodiscard]] Job<bool> HasRoom(QString folder, std::int64_t bytes);
  [[nodiscard]] QString Device() const;
  [[nodiscard]] std::vector<int> IdsOf(const std::vector<int>& rows) const;
  [[nodiscard]] int IndexOf(int id) const;
  [[nodiscard]] std::int64_t StagedBytes() const;
  void Begin(const QString& words);
  void Finish(const QString& words);
  void Say(const QString& words);
  void Fail(const QString& why);
  void Note(const QString& line) { log_.Append({line}); }

  Services services_;
  cSimpleCDBurner burner_;
  RowStore<BurnRow> rows_;
  RowStore<QString> log_;
  std::vector<BurnDrive> drives_;
  BurnKind kind_ = BurnKind::Data;
  int target_ = 0;
  QString image_;
  QString driveWords_;
  QString words_;
  bool busy_ = false;
  bool looking_ = false;  ///< it only looks for drives
  bool looked_ = false;   ///< drives were looked for before
  bool stopping_ = false;
  std::optional<double> share_;
  int lastId_ = 0;
  std::shared_ptr<CopyControl> copy_;
  std::shared_ptr<AudioDiscControl> disc_;
  Nanoseconds news_{0};  ///< when the tool told something last
  Timer tick_;
  JobList adding_;
  Job<> work_;
};

}  // namespace kelvo
