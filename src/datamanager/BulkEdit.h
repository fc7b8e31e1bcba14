#pragma once

#include "database/Catalogue.h"
#include "database/KeptTracks.h"
#include "database/Paths.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"

#include <QObject>

#include <array>
#include <memory>
#include <optional>
#include <vector>

namespace kelvo {

class TrackInfo;

/// What becomes of several tracks at once. What is empty stays as it is. A value.
struct BulkChange {
  std::optional<QString> year = {};   ///< four digits, "0000" when unknown
  std::optional<QString> month = {};  ///< three letters, "xxx" when unknown
  QString artist = {};
  QString genre = {};
  bool replace =
      false;  ///< artist and genre take the place of those that a track has; otherwise they join them

  [[nodiscard]] bool IsEmpty() const { return !year && !month && artist.isEmpty() && genre.isEmpty(); }
};

/// Changes date, artist or genre of many tracks: each info file is written whole off the thread, and the
/// catalogue takes it over in the turn in which that is done. So a stop, a failure or a crash leaves each
/// track as it was or as it is to be. The last run can be undone while the program runs. Owned by the
/// DataManager; logic thread.
class BulkEdit : public QObject {
  Q_OBJECT

 public:
  /// A track that bears so many references of a set gets no more.
  static constexpr int kMostNames = 10;

  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    Catalogue& catalogue;
    Paths paths;
    QString undoFile =
        {};  ///< keeps the last run from one start to the next; empty: it ends with the program
  };
  explicit BulkEdit(Services services);
  ~BulkEdit() override;

  /// Why these tracks can't be changed so, in words; empty when they can.
  [[nodiscard]] QString WhyNot(const BulkChange& change, std::size_t tracks) const;
  void Apply(const std::vector<Mref>& tracks, BulkChange change);
  /// Why nothing can be undone, in words; empty when it can.
  [[nodiscard]] QString WhyNoUndo() const;
  /// Gives the fields that the last run changed back what they held, unless something else changed them
  /// since.
  void Undo();
  /// The track under way is finished, and no other is begun.
  void Stop() { stop_ = true; }

  [[nodiscard]] bool Running() const { return job_.Running(); }
  /// "Changing Track Entries (40%)".
  [[nodiscard]] const QString& Words() const { return words_; }
  [[nodiscard]] double Share() const { return share_; }

 Q_SIGNALS:
  void Changed();

 private:
  /// The lines of a track that a run changes: genres, artists, date.
  using Lines = std::array<QString, 3>;
  struct Done {
    std::size_t place;  ///< in the run's tracks
    Lines before;
    Lines after;
  };
  struct LastRun;
  /// A track of the last run, as the undo file keeps it.
  struct Noted {
    QString name;
    Lines before;
    Lines after;
  };
  /// How one file is changed; an empty text when it was, else why it was left as it is. Any thread.
  using Change = std::function<QString(TrackInfo&)>;

  [[nodiscard]] Job<> Run(std::vector<Mref> tracks, BulkChange change);
  [[nodiscard]] Job<> RunUndo();
  /// Makes the folder of a new name; the name as the database spells it.
  [[nodiscard]] Job<QString> Ensure(ReferenceSet set, QString name);
  /// Changes the file of a track and tells the catalogue; what it held before, none when it was left alone.
  /// With `noteIn` that is noted in this file first.
  [[nodiscard]] Job<std::optional<Done>> ChangeOne(const KeptTracks& tracks, std::size_t place,
                                                   Change change);
  [[nodiscard]] static Lines LinesOf(const TrackInfo& info);
  [[nodiscard]] static QByteArray LineOf(const Noted& noted);
  [[nodiscard]] static std::vector<Noted> ReadNoted(const QString& path);
  /// Finds the run of an earlier start.
  [[nodiscard]] Job<> FindLastRun();
  [[nodiscard]] Job<> ForgetLastRun();
  void Say(const QString& words, std::size_t done, std::size_t all);
  void Finish(const QString& head);

  Services services_;
  std::unique_ptr<LastRun> last_;
  QStringList troubles_;
  bool stop_ = false;
  QString words_;
  double share_ = 0;
  Job<> finding_;
  Job<> job_;
};

}  // namespace kelvo
