#pragma once

#include "database/Catalogue.h"
#include "database/ChangeJournal.h"
#include "database/ChangeSteps.h"
#include "database/KeptTracks.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"
#include "platform/TrashBin.h"

#include <QHash>
#include <QObject>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace kelvo {

/// Changes of the library that go through many files, one at a time: renamed and deleted tracks, names of
/// genres, artists and albums, and what is changed of many tracks together. All that a change is going to do
/// is on disk before its first step (ChangeJournal), so a crash leaves nothing half done; what was done can
/// be undone until the next change. The catalogue learns of each step in the turn in which it is known to be
/// done. Owned by the join; shared by the windows that change the library; logic thread.
class LibraryChanges : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    Catalogue& catalogue;
    Paths paths;
    std::shared_ptr<TrashBin> trash = DesktopTrashBin();
  };
  explicit LibraryChanges(Services services);

  /// Steps that are told of by one line of words.
  struct Phase {
    QString words = {};  ///< "Renaming Track Entries "; the percentage comes behind
    std::vector<ChangeStep> steps = {};
    bool needed = false;  ///< one that can't be done ends the change; otherwise the next is done
  };
  struct Order {
    QString what;  ///< "Rename ...", in words for the operator
    QString tag;   ///< of failures in the log
    std::vector<Phase> phases;
    bool alsoWithoutFile =
        false;  ///< a track whose info file is missing is changed in the catalogue all the same
  };
  struct Outcome {
    bool whole = false;       ///< came to its end
    bool stopped = false;     ///< the operator stopped it: all is as it was
    int done = 0;             ///< steps
    QStringList withoutFile;  ///< tracks whose info file was missing
    QString failure;          ///< why a needed step could not be done; empty where its file was not there
  };
  /// Does the steps in their order. Failures of single steps are handled. Not while another runs.
  [[nodiscard]] Job<Outcome> Do(Order order);
  /// Takes back what the change under way has done so far; ends a look, and an undo where it is.
  void Stop();

  [[nodiscard]] bool Running() const { return running_; }
  [[nodiscard]] bool Stopping() const { return stop_; }
  /// Why no change can be begun now, in words; empty when one can.
  [[nodiscard]] QString WhyNot() const { return running_ ? tr("The library is being changed") : QString(); }
  /// What it does, with the percentage: "Renaming Track Entries (50%)".
  [[nodiscard]] const QString& Words() const { return words_; }
  /// How much is done, 0 to 1.
  [[nodiscard]] double Share() const { return share_; }
  /// Shows how far the look is that goes before a change, until EndLook. False: the operator stopped it.
  bool ShowLook(const QString& words, double share);
  void EndLook();
  /// A look or a change is shown.
  [[nodiscard]] bool Shows() const { return running_ || looking_; }

  /// What Undo takes back, in words; empty when there is nothing.
  [[nodiscard]] const QString& LastChange() const { return last_; }
  void Undo();

  [[nodiscard]] const Services& Have() const { return services_; }

 Q_SIGNALS:
  /// What it says of itself is another.
  void Changed();

 private:
  struct Run;
  struct StepOutcome {
    StepResult result = StepResult::Missing;
    std::exception_ptr failure;
  };
  using Outcomes = std::vector<StepOutcome>;

  [[nodiscard]] Job<> ReadLast();
  [[nodiscard]] Job<> RunUndo();
  [[nodiscard]] Job<> Begin(Run& run);
  [[nodiscard]] Job<> FindTracks(Run& run);
  /// Those whose info file the step works on.
  [[nodiscard]] static std::vector<Mref> TracksOf(const Run& run, std::size_t place);
  [[nodiscard]] Job<Outcomes> DoSome(Run& run, std::size_t from, std::size_t to, bool back);
  [[nodiscard]] Job<> DoAll(Run& run, Outcome& outcome);
  /// Takes back the steps before `end`.
  [[nodiscard]] Job<int> TakeBack(Run& run, std::size_t end);
  [[nodiscard]] Job<> End(Run& run);
  void Say(const QString& words, double share);
  void ShowPart(const QString& words, std::size_t part, std::size_t whole);

  // What a step means for the catalogue.
  [[nodiscard]] Job<> Follow(const ChangeStep& step, std::vector<Mref> tracks, bool back);
  void LineWasSet(const SetInfoLine& step, const std::vector<Mref>& tracks, bool back);
  void WasMoved(const QString& from, const QString& to);
  void Went(const QString& path);
  [[nodiscard]] Job<> Came(QString path);
  [[nodiscard]] std::optional<ReferenceSet> SetOf(const QString& folder) const;
  [[nodiscard]] bool LiesIn(Paths::Slot slot, const QString& path) const;

  Services services_;
  bool running_ = false;
  bool looking_ = false;
  bool stop_ = false;
  QString words_;
  double share_ = 0;
  QString last_;
  Job<> reading_;
  Job<> undoing_;
};

}  // namespace kelvo
