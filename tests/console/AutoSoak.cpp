#include "console/AutoSoak.h"

#include "console/AutoDesk.h"
#include "support/NobodyThere.h"

#include <QHash>

#include <functional>
#include <map>

namespace kelvo::testing {
namespace {

using namespace std::chrono_literals;

constexpr int kTracks = 40;
constexpr int kRows = 30;
/// Between two faults, on average.
constexpr int kFaultEvery = 45;
/// The most tracks that are bad at once, so that there is always something to play.
constexpr int kMostBad = 14;
constexpr int kMostViolations = 10;
/// Longer than the slowest fade.
constexpr int kLongestFade = 20;
constexpr int kLongestLoad = 12;
/// Nothing was loaded into either deck for so long, while it should have been.
constexpr int kLoadLimitSeconds = 10;
/// Until a deck that stands still is given up, with ticks that come late.
constexpr int kStallSeconds = 10;

class Soak {
 public:
  Soak(const QString& folder, const SoakOptions& options)
      : options_(options),
        chance_(options.seed),
        desk_(folder, nobody_, options.seed + 1, AutoPlaySettings{2, 15}) {
    for (int each = 0; each < kTracks; ++each) {
      const double seconds = 40 + chance_.Below(260) + chance_.Next();
      const Mref track = desk_.AddTrack(QStringLiteral("Track %1").arg(each), seconds, RandomInfo());
      if (each < kRows) desk_.Enqueue(track);
    }
    desk_.decks.OnLoaded = [this](Deck deck, DeckLoad) { loading_[deck] = 0; };
    desk_.OnStart = [this](Deck deck) { CheckStart(deck); };
  }

  SoakResult Run() {
    SwitchOn();
    for (second_ = 0; second_ < options_.seconds; ++second_) {
      for (auto end = ends_.begin(); end != ends_.end() && end->first <= second_;) {
        const auto done = ends_.extract(end);
        done.mapped()();
        end = ends_.begin();
      }
      if (chance_.Below(kFaultEvery) == 0) Fault();
      desk_.Run(1);
      CheckState();
      CheckSound();
      CheckCuts();
      if (options_.OnSecond) options_.OnSecond(second_);
    }
    result_.starts = desk_.starts;
    result_.skipped += desk_.play.SkippedCount();
    return result_;
  }

 private:
  QByteArray RandomInfo() {
    const auto number = [this](int below) { return QByteArray::number(chance_.Below(below)); };
    if (chance_.Below(5) == 0) return {};
    return AutoDesk::Info(number(2) + ',' + QByteArray::number(1 + chance_.Below(3)) + ',' +
                              QByteArray::number(1 + chance_.Below(3)),
                          number(20) + ',' + number(25), number(51) + ',' + number(51), chance_.Below(2),
                          chance_.Below(2));
  }

  /// The desk as somebody left it.
  void SwitchOn() {
    // A preview that begins while both decks are heard takes one of them away.
    constexpr std::array kSides{kDeckOneAlone, kDeckTwoAlone, 0};
    const int sides = options_.mode == AutoMode::Preview ? 2 : 3;
    const int side = kSides[static_cast<std::size_t>(chance_.Below(sides))];
    if (!desk_.state.TransitionActive) desk_.transitions.SetCrossPan(side);
    desk_.play.SetMode(options_.mode);
    desk_.play.SetRandom(options_.random);
    switchedOn_ = true;
    desk_.play.ToggleAutoPlay();
  }

  void After(int seconds, std::function<void()> undo) { ends_.emplace(second_ + seconds, std::move(undo)); }

  /// A track that is good, for a fault that lasts; none when enough are bad.
  Mref Victim() {
    const Mref track = ToMref(1 + chance_.Below(kTracks));
    if (bad_.size() >= kMostBad || bad_.contains(track)) return Mref::None;
    bad_.insert(track);
    return track;
  }
  void Spoil(const std::function<void(const QString&)>& spoil,
             const std::function<void(const QString&)>& mend) {
    const Mref track = Victim();
    if (track == Mref::None) return;
    const QString path = desk_.catalogue.TrackPaths(track);
    spoil(path);
    After(30 + chance_.Below(1500), [this, track, path, mend] {
      mend(path);
      bad_.remove(track);
    });
  }
  void SpoilLength(double seconds) {
    Spoil([this, seconds](const QString& path) { desk_.audio.SetDuration(path, seconds); },
          [this](const QString& path) {
            // Its length is the catalogue's again.
            for (int row = 1; row <= kTracks; ++row) {
              const Mref track = ToMref(row);
              if (desk_.catalogue.TrackPaths(track) == path)
                desk_.audio.SetDuration(path, desk_.catalogue.TrackDurations(track));
            }
          });
  }

  void Fault() {
    ++result_.faults;
    switch (chance_.Below(18)) {
      case 0:
        Spoil([](const QString& path) { QFile::remove(path); },
              [](const QString& path) { AutoDesk::Write(path, "sound"); });
        break;
      case 1:
        SpoilLength(-1);
        break;
      case 2:
        SpoilLength(0);
        break;
      case 3:
        SpoilLength(0.2 + chance_.Next() * 30);
        break;
      case 4:
        SpoilInfo();
        break;
      case 5:
      case 6:
        EditQueue();
        break;
      case 7:
        Disturb(1);
        for (const Deck deck : kDecks) {
          if (chance_.Below(3) > 0) desk_.decks.StopDeck(deck);
        }
        break;
      case 8:
        desk_.audio.SetDefaultOutputStatus({OutputStatus::Kind::OnSilentClock, QStringLiteral("Main")});
        After(1 + chance_.Below(60), [this] {
          desk_.audio.SetDefaultOutputStatus({OutputStatus::Kind::OnAir, QStringLiteral("Main")});
        });
        break;
      case 9:
        desk_.lateBeats = 1 + chance_.Below(3);
        break;
      case 10:
        BreakDisk();
        break;
      case 11:
        Pause();
        break;
      case 12:
        Spoil([this](const QString& path) { desk_.audio.SetSilent(path); },
              [this](const QString& path) { desk_.audio.SetSilent(path, false); });
        break;
      case 13:
        Speak();
        break;
      case 14:
        desk_.transitions.Cancel();
        break;
      case 15:
      case 16:
        KillDisk();
        break;
      case 17:
        SwitchOffAndOn();
        break;
      default:
        break;
    }
  }

  void SpoilInfo() {
    const QString path = desk_.InfoPath(ToMref(1 + chance_.Below(kTracks)));
    if (chance_.Below(2) == 0) {
      QFile::remove(path);
    } else {
      AutoDesk::Write(path, chance_.Below(2) == 0 ? QByteArray("\0\377,,9e99,-7\r\n\r\n", 15) : RandomInfo());
    }
  }

  void EditQueue() {
    PlayQueue& queue = desk_.queue;
    switch (chance_.Below(4)) {
      case 0:
        queue.MoveTo(1 + chance_.Below(queue.Count() + 1), 1 + chance_.Below(queue.Count() + 1));
        break;
      case 1:
        queue.Click(1 + chance_.Below(queue.Count() + 1));
        break;
      case 2:
        // Its row goes when its file is gone.
        queue.Click(1 + chance_.Below(queue.Count() + 1));
        if (queue.Count() > kRows / 2) queue.EditSelected();
        break;
      case 3:
        adds_.Add(queue.AddTracks({ToMref(1 + chance_.Below(kTracks))}));
        break;
      default:
        break;
    }
  }

  void BreakDisk() {
    if (diskBroken_) return;
    diskBroken_ = true;
    const QString music = desk_.paths(Paths::Music);
    const QString away = music + QStringLiteral(" away");
    const int kind = chance_.Below(3);
    if (kind == 0) desk_.audio.openTime = 3s;
    if (kind == 1) desk_.audio.openTime = 1h;
    if (kind == 2) QDir().rename(music, away);
    After(5 + chance_.Below(120), [this, kind, music, away] {
      desk_.audio.openTime = 20ms;
      if (kind == 2) MoveBack(away, music);
      diskBroken_ = false;
      // A load that hangs is given up only now.
      excusedUntil_ = second_ + kLoadLimitSeconds;
    });
  }
  /// Files that came back meanwhile stay.
  static void MoveBack(const QString& from, const QString& to) {
    for (const QString& name : QDir(from).entryList(QDir::Files)) {
      QDir().mkpath(to);
      QFile::rename(from + QLatin1Char('/') + name, to + QLatin1Char('/') + name);
    }
    QDir(from).removeRecursively();
  }

  /// Of one deck, while it plays: what it holds stands still or ends.
  void KillDisk() {
    const Deck deck = chance_.Below(2) == 0 ? Deck::One : Deck::Two;
    const bool broken = chance_.Below(2) == 0;
    if (desk_.Disk(deck).State() != PlayState::Playing) return;
    Disturb(broken ? 1 : kStallSeconds);
    if (broken) {
      desk_.Disk(deck).BreakOff();
    } else {
      desk_.Disk(deck).StandStill();
    }
  }

  void Speak() {
    desk_.speak.SetDepthSlider(1000 * chance_.Below(3));
    desk_.speak.SetSpeedSlider(1 + chance_.Below(10));
    desk_.speak.Press();
    After(1 + chance_.Below(90), [this] { desk_.speak.Release(); });
  }

  void SwitchOffAndOn() {
    if (!desk_.state.AutoPlayOn) return;
    const int away = chance_.Below(5);
    Disturb(away + kSilenceBound);
    result_.skipped += desk_.play.SkippedCount();
    desk_.play.ToggleAutoPlay();
    excusedUntil_ = std::max(excusedUntil_, second_ + away + 1);
    // The next start finds them playing, or silent.
    if (chance_.Below(2) == 0) {
      for (const Deck deck : kDecks) desk_.decks.StopDeck(deck);
    }
    After(away, [this] { SwitchOn(); });
  }

  void Pause() {
    if (desk_.play.PauseAtEnd()) return;
    desk_.play.TogglePauseAtEnd();
    if (!desk_.play.PauseAtEnd()) return;
    After(5 + chance_.Below(300), [this] { desk_.play.TogglePauseAtEnd(); });
  }

  void Violate(const QString& what) {
    if (result_.violations.size() < kMostViolations)
      result_.violations.append(QStringLiteral("second %1: %2").arg(second_).arg(what));
  }
  void Must(bool holds, const char* what) {
    if (!holds) Violate(QString::fromLatin1(what));
  }

  void CheckState() {
    Must(desk_.state.AutoPlayOn || second_ < excusedUntil_, "automatic play has ended by itself");
    Must(!desk_.state.GroupPlayOn, "a group runs");
    Must(desk_.play.AutoTransition() >= 0 && desk_.play.AutoTransition() <= 3, "no such transition");
    Must(desk_.fadeSpeed >= 0 && desk_.fadeSpeed <= 50, "no such fade speed");
    Must(std::abs(desk_.state.CrossPan) <= 200, "the slider is beyond its end");
    Must(desk_.queue.Selected() >= 0 && desk_.queue.Selected() <= desk_.queue.Count(), "no such row");
    // One that a start takes over begins anew.
    const bool sameFade = std::exchange(startsBefore_, desk_.starts) == desk_.starts;
    fading_ = desk_.state.TransitionActive && sameFade ? fading_ + 1 : 0;
    Must(fading_ <= kLongestFade, "a fade does not end");
    int loaded = 0;
    for (const Deck deck : kDecks) {
      const DeckRecord& record = desk_.decks.Record(deck);
      MediaPlayer& player = desk_.decks.Player(deck);
      loading_[deck] = record.Loading ? loading_[deck] + 1 : 0;
      Must(loading_[deck] <= kLongestLoad, "a load does not end");
      Must(record.Loss >= 0 && record.Loss <= kMostLoss, "a level is beyond its end");
      Must(record.RemainSeconds >= 0, "less than nothing is left");
      Must(record.Position >= 0 && std::isfinite(record.Duration), "no such position");
      if (record.State == DeckState::Loaded) ++loaded;
      if (record.State == DeckState::Loaded) Must(player.State() != PlayState::Playing, "a loaded deck runs");
      if (record.State == DeckState::Empty) Must(player.FileName().isEmpty(), "an empty deck holds a file");
      if (record.State != DeckState::Empty && !record.Loading) {
        Must(desk_.catalogue.TrackPaths(record.CatalogueIndex) == record.FilePath,
             "a deck's track is another");
        Must(player.FileName() == record.FilePath, "a deck's file is another");
      }
    }
    waiting_ = loaded == 2 ? waiting_ + 1 : 0;
    Must(waiting_ <= kSilenceBound || desk_.play.PauseAtEnd(), "two tracks wait and none plays");
  }

  /// What happens to the decks until then is somebody's will, or a fault's.
  void Disturb(int seconds) { disturbedUntil_ = std::max(disturbedUntil_, second_ + seconds); }

  void CheckStart(Deck deck) {
    Must(!desk_.transitions.Starting(), "two decks are started at once");
    const DeckRecord& other = desk_.decks.Record(Other(deck));
    const bool early = other.Duration - other.Position > std::max(desk_.play.AutoDelta(), 1) + 2;
    const bool onAir = other.State == DeckState::Playing && desk_.Heard(Other(deck));
    const bool first = std::exchange(switchedOn_, false);
    Must(!onAir || !early || first || second_ <= disturbedUntil_, "a deck is started before its time");
  }

  /// A track that was heard a second ago, and that no fade was about to take out, goes on to its end.
  void CheckCuts() {
    for (const Deck deck : kDecks) {
      MediaPlayer& player = desk_.decks.Player(deck);
      std::optional<OnAir>& before = onAir_[deck];
      if (before && second_ > disturbedUntil_) {
        const bool goesOn = player.FileName() == before->path && player.CurrentPosition() > before->position;
        Must(goesOn || before->left < 1.5, "a track that is heard is cut");
      }
      before.reset();
      if (!desk_.Heard(deck) || desk_.state.TransitionActive || desk_.transitions.Starting()) continue;
      const double position = player.CurrentPosition();
      before = OnAir{player.FileName(), position, player.Duration() - position};
    }
  }

  /// Counts the silence that no outage, pause or jukebox lag explains.
  void CheckSound() {
    const bool sounds = std::any_of(kDecks.begin(), kDecks.end(), [this](Deck deck) {
      const MediaPlayer& player = desk_.decks.Player(deck);
      return player.State() == PlayState::Playing && player.HasSound() &&
             desk_.decks.Record(deck).Level < kMostLoss;
    });
    const bool excused = diskBroken_ || desk_.play.PauseAtEnd() || second_ < excusedUntil_;
    if (excused && !sounds) {
      ++result_.excusedSeconds;
      silence_ = 0;
      if (desk_.play.NothingPlayable())
        Must(desk_.play.StatusText().startsWith(QStringLiteral("Nothing In The ")), "it does not say so");
      return;
    }
    silence_ = sounds ? 0 : silence_ + 1;
    const int planned = desk_.play.Mode() == AutoMode::Jukebox ? 2 : 0;
    const int unplanned = std::max(silence_ - planned, 0);
    result_.longestSilence = std::max(result_.longestSilence, unplanned);
    if (unplanned == kSilenceBound + 1) Violate(QStringLiteral("silence beyond the bound"));
  }

  SoakOptions options_;
  NobodyThere nobody_;
  RandomSource chance_;
  AutoDesk desk_;
  SoakResult result_;
  std::multimap<int, std::function<void()>> ends_;  ///< by the second in which each fault is mended
  QSet<Mref> bad_;
  JobList adds_;
  struct OnAir {
    QString path;
    double position = 0;
    double left = 0;
  };
  PerDeck<std::optional<OnAir>> onAir_;
  PerDeck<int> loading_;
  bool diskBroken_ = false;
  bool switchedOn_ = false;  ///< and nothing was started since
  int second_ = 0;
  int excusedUntil_ = 0;
  int disturbedUntil_ = 0;
  int fading_ = 0;
  int startsBefore_ = 0;
  int waiting_ = 0;
  int silence_ = 0;
};

}  // namespace

SoakResult RunSoak(const QString& folder, const SoakOptions& options) {
  Soak soak(folder, options);
  return soak.Run();
}

}  // namespace kelvo::testing
