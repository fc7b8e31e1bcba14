#pragma once

#include "datamanager/GainFiles.h"
#include "datamanager/GainTool.h"
#include "datamanager/MeasuredGains.h"
#include "platform/Disks.h"
#include "platform/FileCopy.h"
#include "platform/Prompter.h"
#include "platform/RowStore.h"
#include "platform/Setting.h"

#include <QObject>

#include <memory>
#include <vector>

namespace kelvo {

/// How far a file is.
enum class UnifyState {
  Listed,
  Reading,
  Analysing,
  Saving,
  Waiting,     ///< a deck or the monitor has it
  Measured,    ///< and left as it is: nothing was to be changed, or the run was for measuring alone
  Saved,       ///< its gain was changed
  CantChange,  ///< it is no MP3 file
  LeftOut,     ///< the run ended before its turn
  Failed,
};

/// A file of the list.
struct UnifyRow {
  QString path;
  QString volume;  ///< "89.0"; "?" when unknown
  QString change;
  UnifyState state = UnifyState::Listed;
  QString words = {};  ///< how far it is, or what became of it
};

/// Brings files to one loudness with the gain tool: reads what is known of each, measures what is not, and
/// changes the gain of those that are off. Several files are worked on at once, one on each core; what comes
/// out does not depend on their number. Everything that was measured is kept, whatever ends the run. A file
/// that is in use waits until it is free. Owned beside its window; logic thread.
class VolumeUnify : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Disks& disks;
    Prompter& prompter;
    ProgramSettings settings;
    std::shared_ptr<GainFiles> files;
    GainTool tool;
    /// A deck or the monitor has this file, or may be about to take it.
    std::function<bool(const QString& path)> inUse = {};
    QString measuredFile = {};  ///< keeps what was measured; empty: it is kept for this run alone
    int processes = 0;          ///< at once; 0: one on each core
  };
  explicit VolumeUnify(Services services);
  ~VolumeUnify() override;

  [[nodiscard]] const RowStore<UnifyRow>& Rows() const { return rows_; }
  /// Lists the files anew; not while it runs.
  void List();
  /// From now on only these; all when there are none. Not while it runs.
  void ListOnly(const QStringList& paths);
  [[nodiscard]] bool ListsAll() const { return services_.files->ListsAll(); }
  [[nodiscard]] bool CanListSome() const { return services_.files->CanListSome(); }
  [[nodiscard]] bool Listing() const { return list_.Running(); }

  /// "UNIFY VOLUME": takes all files whose change is not "0.0" to the target.
  void Unify();
  /// Measures these rows and changes nothing.
  void Measure(const std::vector<int>& rows);
  /// Ends the run. What is being put in place is finished.
  void Cancel();
  [[nodiscard]] bool Running() const { return running_; }
  [[nodiscard]] bool Busy() const { return running_; }
  /// "UNIFY VOLUME", or "CANCEL" while it runs.
  [[nodiscard]] QString Caption() const;
  /// The rows that the run works on, as it chose them.
  [[nodiscard]] const std::vector<int>& Chosen() const { return chosen_; }

  /// The words of the bar.
  [[nodiscard]] const QString& Words() const { return words_; }
  /// How much of the present step is done, 0 to 1.
  [[nodiscard]] double Share() const;
  /// Counts the steps of a run, for those who tell the time that is left.
  [[nodiscard]] int Step() const { return step_; }
  /// What the last run came to; empty while it runs and before.
  [[nodiscard]] const QString& SumWords() const { return sumWords_; }

  // The target: whole decibels and tenths.
  [[nodiscard]] int TargetInt() const { return targetInt_; }
  [[nodiscard]] int TargetDec() const { return targetDec_; }
  /// The target above 89 dB.
  [[nodiscard]] double GainAdjust() const;
  /// What is in the two boxes is the target now; asks first above 89 dB. `picked` rows show what it would
  /// change of them.
  void SetTarget(const QString& whole, const QString& tenths, const std::vector<int>& picked);
  /// Shows it of these rows, as far as they are measured.
  void Preview(const std::vector<int>& picked);
  /// Into the settings.
  void KeepTarget() const;

 Q_SIGNALS:
  /// Anything but the rows.
  void Changed();
  /// The run has chosen its rows.
  void Chose();
  /// The work on this row begins.
  void RowBegan(int row);
  /// The target is another, or was put back: the boxes show it.
  void TargetChanged();

 private:
  /// A file on its way through the run.
  struct Item;
  using ItemPtr = std::shared_ptr<Item>;
  using ItemStep = Job<> (VolumeUnify::*)(ItemPtr item);

  void FollowFiles();
  [[nodiscard]] Job<> RunList();
  void TakeOut(const QString& path);
  [[nodiscard]] int RowOf(const QString& path) const;
  [[nodiscard]] static UnifyRow RowFrom(const GainFiles::Entry& file);
  void ShowRecord(const QString& path);
  void SetState(Item& item, UnifyState state, const QString& words = {});
  void Say(const QString& words);
  void SayPercent(const QString& words);

  [[nodiscard]] Job<> RunTarget(int whole, int tenths, std::vector<int> picked);
  [[nodiscard]] Job<> RunPreview(QStringList paths);
  [[nodiscard]] Job<> ReadMeasured();

  void Begin(std::vector<int> rows, bool measureOnly);
  [[nodiscard]] Job<> Run();
  [[nodiscard]] Job<> RunSteps();
  /// Takes all items through the step, several at once.
  [[nodiscard]] Job<> RunStep(std::vector<ItemPtr> items, ItemStep step, QString words);
  [[nodiscard]] Job<> Work(ItemStep step);
  [[nodiscard]] Job<> RunWaiting();
  [[nodiscard]] Job<> DropOldCopies();
  void Sum();

  // The steps of a file; in UnifySteps.cpp.
  [[nodiscard]] Job<> ReadItem(ItemPtr item);
  [[nodiscard]] Job<> SaveItem(ItemPtr item);
  [[nodiscard]] Job<bool> MeasureItem(ItemPtr item);
  [[nodiscard]] Job<bool> AnalyseMp3(ItemPtr item);
  [[nodiscard]] Job<bool> AnalyseWave(ItemPtr item);
  [[nodiscard]] Job<> ApplyTo(ItemPtr item, int steps);
  /// The path of the copy; empty when there is none.
  [[nodiscard]] Job<QString> MakeCopy(ItemPtr item);
  [[nodiscard]] Job<bool> TakeCopy(ItemPtr item, QString copy);
  [[nodiscard]] Job<> KeepShown(ItemPtr item);
  void Remember(const Item& item);
  void AnalysisFailed(Item& item, const QString& told);
  void CannotOpen(Item& item);
  void ToolMissing();
  /// Ends the run for all, and says why.
  void GiveUp(const QString& why);
  [[nodiscard]] bool InUse(const QString& path) const;

  Services services_;
  RowStore<UnifyRow> rows_;
  QHash<QString, int> places_;  ///< of the rows, by path
  /// By path, in its own case: here two files may differ in nothing else.
  QHash<QString, Mp3Info> records_;
  std::shared_ptr<MeasuredGains> measured_;  ///< none until it was read

  int targetInt_ = 89;
  int targetDec_ = 0;

  bool running_ = false;
  bool cancel_ = false;
  bool measureOnly_ = false;
  int step_ = 0;
  QString words_;
  QString endWords_;  ///< that stay when the run was ended
  QString sumWords_;
  std::vector<int> chosen_;
  std::vector<ItemPtr> items_;
  std::vector<ItemPtr> waiting_;

  // Of the present step.
  QString stepWords_;
  std::vector<ItemPtr> queue_;
  std::vector<ItemPtr> active_;  ///< that are worked on now
  std::size_t next_ = 0;
  std::size_t finished_ = 0;
  double allWeight_ = 0;
  double doneWeight_ = 0;
  int working_ = 0;
  std::shared_ptr<OneShot<bool>> stepEnds_;

  Job<> list_;
  Job<> target_;
  Job<> preview_;
  Job<> run_;
  JobList workers_;
};

}  // namespace kelvo
