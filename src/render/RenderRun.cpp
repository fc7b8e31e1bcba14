#include "render/RenderRun.h"

#include "audio/engine/Limiter.h"
#include "platform/ErrorLog.h"

#include <QCoreApplication>

#include <algorithm>
#include <set>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(RenderRun)
};

/// Looks at the stop come so often, in simulated time.
constexpr Nanoseconds kStretch = 1s;
/// A desk that has started nothing by then never will.
constexpr Nanoseconds kFirstStart = 2min;
/// What the limiter still holds when the last track has ended.
constexpr Nanoseconds kTail = 10ms;

// A queue is over within the length of its tracks, the gaps of a jukebox and what disks take. Beyond this it
// is one that goes on for ever.
constexpr double kUnknownLength = 3600;
constexpr double kAllowance = 60;

/// "Artist - Title" in its two parts.
CueTitle CueOf(const QString& name, FrameIndex frame) {
  const QString between = QStringLiteral(" - ");
  const qsizetype at = name.indexOf(between);
  if (at < 0) return {{}, name, frame};
  return {name.left(at).trimmed(), name.mid(at + between.size()).trimmed(), frame};
}

}  // namespace

/// The desk while it plays, and when it is over. Lives on the thread of the work.
class RenderRun::Show {
 public:
  Show(RenderRun& run, RenderDesk& desk) : run_(run), desk_(desk), decks_(desk.Desk().Decks()) {
    QObject::connect(&decks_, &DeckEngine::Changed, &listener_, [this](Deck deck) { LookAtLoad(deck); });
    QObject::connect(&Auto(), &AutoPlay::Skipped, &listener_,
                     [this](const QString& what) { run_.result_.skipped.append(what); });
    decks_.OnStarted = [this, joined = decks_.OnStarted](Deck deck) {
      joined(deck);
      NoteStart(deck);
    };
  }

  /// Where what is heard next goes; none before the first title.
  RenderFile* file = nullptr;

  void Take(std::span<const float> sound) {
    if (file != nullptr && !titles_.empty() && !file->Write(sound)) diskFull_ = true;
  }

  /// Presses START and plays to the end.
  void Play() {
    Console& desk = desk_.Desk();
    desk.Queue().Select(1);
    Auto().ToggleAutoPlay();
    if (!desk.State().PlaysByItself()) {
      const QString told = desk_.Told().value(desk_.Told().size() - 1);
      throw Failure(told.isEmpty() ? Auto().StatusText() : told);
    }
    const Nanoseconds most = Longest();
    SimulatedEventLoop& loop = desk_.Loop();
    const Nanoseconds begun = loop.Elapsed();
    while (!loop.RunUntil([this] { return Over(); }, kStretch)) {
      if (run_.stop_ || diskFull_) return;
      ShowProgress();
      const Nanoseconds passed = loop.Elapsed() - begun;
      if (titles_.empty() && passed > kFirstStart) throw Failure(Text::tr("Nothing was played."));
      run_.result_.endless = passed > most;
      if (run_.result_.endless) return;
    }
    if (titles_.empty()) throw Failure(Text::tr("Nothing In The Play Queue Can Be Played !"));
    loop.RunFor(kTail);
  }

  [[nodiscard]] const std::vector<CueTitle>& Titles() const { return titles_; }

 private:
  [[nodiscard]] AutoPlay& Auto() { return desk_.Desk().Automatic(); }

  /// A queue begins again when it is through. The row that is loaded then tells it: the desk is to pause at
  /// the end of what plays, as an operator would have it.
  void LookAtLoad(Deck deck) {
    const bool loaded = decks_.Record(deck).State == DeckState::Loaded;
    // Only now is the row that was loaded the selected one.
    if (std::exchange(loaded_[deck], loaded) || !loaded) return;
    if (!desk_.Desk().State().AutoPlayOn || !Auto().PauseEnabled()) return;
    const PlayQueue& queue = desk_.Desk().Queue();
    if (queue.Selected() == 0) return;
    coming_[deck] = queue.Row(queue.Selected()).id;
    // Chance may take a row twice: there it is the number of starts that counts.
    const bool all = Auto().RandomOn() ? starts_ >= queue.Count() : started_.contains(coming_[deck]);
    if (all && !Auto().PauseAtEnd()) Auto().TogglePauseAtEnd();
  }

  void NoteStart(Deck deck) {
    ++starts_;
    started_.insert(coming_[deck]);
    const QString& title = decks_.Record(deck).Title;
    const FrameIndex frames = file == nullptr ? 0 : file->Frames();
    titles_.push_back(CueOf(title, frames + static_cast<FrameIndex>(Limiter::kLookAhead)));
    const std::lock_guard lock(run_.mutex_);
    run_.title_ = title;
  }

  [[nodiscard]] bool Over() {
    if (diskFull_) return true;
    const bool runs = std::any_of(kDecks.begin(), kDecks.end(), [this](Deck deck) {
      return decks_.Player(deck).State() == PlayState::Playing;
    });
    if (runs || desk_.Desk().Fades().Starting()) return false;
    if (!desk_.Desk().State().PlaysByItself() || Auto().NothingPlayable()) return true;
    return starts_ > 0 && Auto().PauseAtEnd();
  }

  void ShowProgress() {
    run_.seconds_ = file == nullptr ? 0 : static_cast<double>(file->Frames()) / kEngineRate;
    const std::optional<Deck> deck = decks_.OnAir();
    if (!deck) return;
    const DeckRecord& record = decks_.Record(*deck);
    const double part = record.Duration > 0 ? std::clamp(record.Position / record.Duration, 0.0, 1.0) : 0;
    const double share = (starts_ - 1 + part) / std::max(desk_.Desk().Queue().Count(), 1);
    run_.share_ = std::clamp(share, run_.share_.load(), 1.0);
  }

  [[nodiscard]] Nanoseconds Longest() {
    const PlayQueue& queue = desk_.Desk().Queue();
    double seconds = 0;
    for (int index = 1; index <= queue.Count(); ++index) {
      const double length = desk_.Tracks().TrackDurations(queue.Row(index).track);
      seconds += kAllowance + (length > 0 ? length * 2 : kUnknownLength);
    }
    return std::chrono::duration_cast<Nanoseconds>(std::chrono::duration<double>(seconds));
  }

  RenderRun& run_;
  RenderDesk& desk_;
  DeckEngine& decks_;
  QObject listener_;
  PerDeck<bool> loaded_;
  PerDeck<RowId> coming_;
  std::set<RowId> started_;
  int starts_ = 0;
  std::vector<CueTitle> titles_;
  bool diskFull_ = false;
};

void RenderRun::Run() {
  try {
    Render();
    if (stop_) result_.end = RenderResult::End::Stopped;
  } catch (const std::exception& failure) {
    result_.end = RenderResult::End::Failed;
    result_.error = QString::fromUtf8(failure.what());
  }
}

void RenderRun::Render() {
  RenderFile file(order_.path, order_.kind, order_.mp3Kbps);
  Show* heard = nullptr;
  RenderDesk desk(order_.desk, [&heard](std::span<const float> sound) {
    if (heard != nullptr) heard->Take(sound);
  });
  const QString why = order_.fill(desk);
  if (!why.isEmpty()) throw Failure(why);
  Show show(*this, desk);
  show.file = &file;
  heard = &show;
  show.Play();
  heard = nullptr;
  result_.told = desk.Told();
  if (stop_) return;
  result_.bytes = file.Commit(show.Titles(), order_.replace);
  result_.titles = static_cast<int>(show.Titles().size());
  result_.seconds = static_cast<double>(file.Frames()) / kEngineRate;
  share_ = 1;
}

QString RenderRun::Title() const {
  const std::lock_guard lock(mutex_);
  return title_;
}

}  // namespace kelvo
