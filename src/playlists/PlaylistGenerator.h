#pragma once

#include "platform/RandomSource.h"
#include "platform/RowStore.h"
#include "playlists/PlaylistLoad.h"
#include "playlists/PlaylistOutlook.h"
#include "playlists/PlaylistSave.h"
#include "playlists/PlaylistShelf.h"
#include "playlists/TimeFit.h"

#include <QObject>

namespace kelvo {

struct GenreName {
  QString name;
  bool operator==(const GenreName&) const = default;
};

/// A row of the generated list: a track of a chosen genre, or the head above the tracks of one.
struct GeneratedRow {
  Mref track = Mref::None;  ///< none in a head
  int genre = 0;            ///< its number among the chosen ones, from 0
};

/// A track of the list that was fitted to the wanted time.
struct SequenceRow {
  Mref track = Mref::None;
  int genre = 0;
  int seconds = 0;
  double bpm = 0;     ///< 0: unknown
  FitPick pick = {};  ///< when it starts and what it breaks
};

/// What a list is to be like. A value.
struct GeneratorWishes {
  int seconds = 3600;
  TempoOutline outline = {};
  bool followTempo = true;
  int tempoWithin = 8;     ///< beats per minute beside the outline
  int artistMinutes = 60;  ///< between two tracks of the same artist
  int playedHours = 4;     ///< what played within them is left out

  [[nodiscard]] static GeneratorWishes Read(const ProgramSettings& settings);
  void Write(const ProgramSettings& settings) const;
  bool operator==(const GeneratorWishes&) const = default;
};

/// "Generate Play List": lists the tracks of chosen genres, and makes of them a sequence that lasts as long
/// as is wanted. What it made goes to the play queue or to the store. One thing at a time: while it is busy a
/// command does nothing. Owned beside its window; logic thread.
class PlaylistGenerator : public QObject {
  Q_OBJECT

 public:
  struct Services {
    PlaylistServices playlists;
    /// The tracks that were started on a deck within this time.
    std::function<std::vector<Mref>(Nanoseconds within)> played = {};
    RandomSource random = {};
  };

  explicit PlaylistGenerator(Services services);
  ~PlaylistGenerator() override;

  // Genres: those that are left, in the catalogue's order, and those that were chosen, in the operator's.
  [[nodiscard]] const RowStore<GenreName>& Genres() const { return genres_; }
  [[nodiscard]] const RowStore<GenreName>& Chosen() const { return chosen_; }
  void Choose(const std::vector<int>& rows);
  void GiveBack(const std::vector<int>& rows);
  /// Takes a chosen genre one place up or down. Returns its row.
  int Move(int row, int step);

  [[nodiscard]] const GeneratorWishes& Wishes() const { return wishes_; }
  void SetWishes(const GeneratorWishes& wishes);
  /// Keeps them for the next time.
  void KeepWishes();

  [[nodiscard]] bool Busy() const { return work_.Running(); }
  /// What it does, and how far it is, 0 to 1.
  [[nodiscard]] const QString& Words() const { return words_; }
  [[nodiscard]] double Share() const { return share_; }
  /// The chosen genre whose tracks are being listed; -1 for none.
  [[nodiscard]] int Current() const { return current_; }
  /// Ends what is under way; what is listed by then stays.
  void Stop();
  /// Why it can't be stopped; empty when it can.
  [[nodiscard]] QString WhyNoStop() const;

  /// Why nothing can be generated, in words; empty when it can.
  [[nodiscard]] QString WhyNot() const;
  /// Lists all tracks of the chosen genres, genre by genre.
  void Generate();
  /// Chooses a sequence of the wanted length from the list; lists anew when other genres are chosen since.
  void Fit();

  [[nodiscard]] const RowStore<GeneratedRow>& List() const { return list_; }
  [[nodiscard]] qint64 TotalSeconds() const { return totalSeconds_; }
  [[nodiscard]] QString GenreOf(int number) const { return listed_.value(number); }
  [[nodiscard]] const RowStore<SequenceRow>& Sequence() const { return sequence_; }
  /// The rules that were broken for a track, in words; empty: none.
  [[nodiscard]] static QString BrokenRules(const SequenceRow& row);
  /// Length, what is missing, broken rules, end time; empty without a sequence.
  [[nodiscard]] QString SequenceWords() const;
  [[nodiscard]] const Catalogue& Tracks() const { return services_.playlists.catalogue; }

  /// Brings tracks into the play queue, with what that asks.
  void AddToQueue(std::vector<Mref> tracks);
  /// The store, for its categories.
  [[nodiscard]] PlaylistShelf& Shelf() { return shelf_; }
  /// Saves tracks as a playlist of the shelf's chosen category, with what that asks.
  void Save(const QString& name, const std::vector<Mref>& tracks);
  /// The name that a save takes, as it is kept.
  [[nodiscard]] const QString& SaveName() const { return saveName_; }

 Q_SIGNALS:
  void Changed();
  void ListMade();
  void SequenceMade();

 private:
  enum class Work { InTurns, InOnePiece };
  void Begin(Job<> job, Work kind = Work::InTurns);
  [[nodiscard]] Job<> Guard(Job<> job);
  void Say(const QString& words, double share);
  void ShowGenres();
  [[nodiscard]] Job<> RunGenerate();
  [[nodiscard]] Job<> RunFit();
  [[nodiscard]] Job<> RunAdd(std::vector<Mref> tracks);
  /// False when it was stopped.
  [[nodiscard]] Job<bool> MakeList();
  /// The tracks of each genre; false when it was stopped or has to begin anew.
  [[nodiscard]] Job<bool> Pick(std::vector<std::vector<Mref>>& picks);
  [[nodiscard]] Job<bool> Show(const std::vector<std::vector<Mref>>& picks);
  void TellShort();
  /// What the sequence is chosen from; false when it was stopped.
  struct Choice;
  [[nodiscard]] Job<bool> Gather(Choice& choice);
  [[nodiscard]] Job<> MakeSequence();
  /// Of the total; an unknown length counts nothing.
  [[nodiscard]] static qint64 CountedSeconds(double duration);
  void FollowCatalogue();
  void GenreWasChanged(const ReferenceChanged& change);
  void TrackWasRemoved(const TrackRemoved& removed);

  Services services_;
  GeneratorWishes wishes_;
  PlaylistShelf shelf_;
  PlaylistLoad load_;
  PlaylistSave save_;
  RowStore<GenreName> genres_;
  RowStore<GenreName> chosen_;
  RowStore<GeneratedRow> list_;
  RowStore<SequenceRow> sequence_;
  QStringList listed_;  ///< the genres of the list
  bool listWhole_ = false;
  qint64 totalSeconds_ = 0;
  int wantedSeconds_ = 0;  ///< that the sequence was made for
  int leftOut_ = 0;        ///< tracks that played too short a time ago
  int unknown_ = 0;        ///< tracks of unknown length
  PlaylistOutlook outlook_;
  QString saveName_;
  std::vector<SaveRow> saveRows_;
  QString words_;
  double share_ = 0;
  int current_ = -1;
  bool stop_ = false;
  Work kind_ = Work::InTurns;
  bool stale_ = false;  ///< tracks got other numbers while they were gathered
  std::shared_ptr<FitControl> control_;
  Job<> work_;
};

}  // namespace kelvo
