#pragma once

#include "audio/AudioSystem.h"
#include "console/desk/ConsoleState.h"
#include "console/desk/DeckTypes.h"
#include "console/queue/PlayQueue.h"
#include "database/Catalogue.h"
#include "database/Paths.h"
#include "platform/Disks.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/RowStore.h"

#include <QObject>

#include <array>
#include <functional>
#include <memory>

namespace kelvo {

/// A file of the jingle folder. A value.
struct SoundBite {
  QString name;
  QString path;
};

/// Sound bites beside the two decks: their list, the bank of buttons for the favourites, and what plays them.
/// One bite is heard at a time. Each button of the bank has a player of its own that holds its bite ready to
/// start; the list has one more. Owned by the Console; logic thread.
class Jingles : public QObject {
  Q_OBJECT

 public:
  static constexpr int kBankButtons = 5;
  /// The end of the level's slider, 60 dB down.
  static constexpr int kMostSlider = 3000;

  struct Services {
    EventLoop& loop;
    Disks& disks;
    AudioSystem& audio;
    const Catalogue& catalogue;
    PlayQueue& queue;
    const ConsoleState& state;
    Paths paths;
  };
  explicit Jingles(Services services);

  /// By their names.
  [[nodiscard]] const RowStore<SoundBite>& Bites() const { return bites_; }
  /// A row of Bites; -1: none.
  [[nodiscard]] int Selected() const { return selected_; }
  /// A click: the bite is loaded. One that plays goes on until the other is known to be good.
  void Select(int row);
  /// A double click: loads and plays it, from its beginning.
  void Play(int row);
  void Stop();

  /// The name of a button's bite; empty: "Not Set".
  [[nodiscard]] const QString& BankName(int button) const { return bank_[At(button)]; }
  void SetBankName(int button, const QString& name);
  /// The next press of a button stores the selected bite there. Nothing while none is selected.
  void BeginAssign();
  [[nodiscard]] bool AssignPending() const { return assignPending_; }
  /// Stores the selected bite, or plays the button's; one that is heard is stopped.
  void PressBank(int button);
  void Assign(int button, int row);
  /// The operator stored a bite under a button.
  std::function<void()> OnAssigned;
  /// A bite was started.
  std::function<void()> OnStarted;

  /// "Add To Play Queue": the selected bite. One that has a track's name stays out.
  void QueueSelected();

  /// The level as its slider shows it: 0 full, kMostSlider silent.
  [[nodiscard]] int Slider() const { return slider_; }
  void SetSlider(int value);

  [[nodiscard]] DeckState State() const { return state_; }
  [[nodiscard]] bool Plays() const;
  /// The player of what is loaded; another one as soon as another source is.
  [[nodiscard]] const MediaPlayer& Player() const { return *sources_[active_].player; }
  /// The button whose bite is heard; -1: none.
  [[nodiscard]] int SoundingButton() const;
  [[nodiscard]] const QString& Title() const { return title_; }
  [[nodiscard]] const QString& FilePath() const { return path_; }
  /// Seconds.
  [[nodiscard]] double Duration() const { return duration_; }
  [[nodiscard]] double Position() const;
  /// Where the bite goes on from, or starts from the next time.
  void SetPosition(double seconds);
  /// What a command had to say.
  [[nodiscard]] const QString& Info() const { return info_; }

 Q_SIGNALS:
  /// Anything but the rows of Bites.
  void Changed();
  void SelectionChanged();

 private:
  /// The players of the bank by button, and behind them that of the list.
  static constexpr std::size_t kList = kBankButtons;
  struct Source {
    std::unique_ptr<MediaPlayer> player;
    QString wanted;  ///< what is being opened
    bool starts = false;
    Job<> open;
  };
  [[nodiscard]] static std::size_t At(int button) { return static_cast<std::size_t>(button); }

  void FollowCatalogue();
  void ListAnew();
  void AddBite(const QString& path);
  void RenameBite(const QString& path, const QString& newPath);
  void SelectRow(int row);
  [[nodiscard]] int RowOf(const QString& name) const;
  /// Holds the bite of a button ready, unless it is heard.
  void Prepare(std::size_t button);
  void Open(std::size_t source, const QString& path, bool starts);
  [[nodiscard]] Job<> RunOpen(std::size_t source);
  void TakeOver(std::size_t source, DeckState state);
  void Start(std::size_t source);
  void Ended(std::size_t source);
  void Tell(const QString& words);
  [[nodiscard]] Job<> RunQueue(SoundBite bite);

  Services services_;
  RowStore<SoundBite> bites_;
  std::array<Source, kBankButtons + 1> sources_;
  std::array<QString, kBankButtons> bank_;
  std::size_t active_ = kList;
  int selected_ = -1;
  bool assignPending_ = false;
  int slider_ = 0;
  DeckState state_ = DeckState::Empty;
  QString title_;
  QString path_;
  double duration_ = 0;
  double cue_ = 0;  ///< where the next start of what is loaded begins, seconds
  QString info_;
  Timer beat_;
  JobList queueing_;
};

}  // namespace kelvo
