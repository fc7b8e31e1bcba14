#include "console/AutoSoak.h"

#include "console/SoakFaults.h"
#include "console/SoakLevels.h"
#include "console/SoakRounds.h"
#include "console/SoakScene.h"
#include "console/SoakStarts.h"

namespace kelvo::testing {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int kTracks = 40;
constexpr int kRows = 16;
/// By chance: so few that each of them has to come within a day.
constexpr int kRandomRows = 10;
constexpr int kLooks = 10;  ///< a second
/// The tracks are numbered so that a listing has them in the order in which they were made.
constexpr int kFirstNumber = 10;

class Soak {
 public:
  Soak(const QString& folder, const SoakOptions& options)
      : chance_(options.seed),
        settings_{1 + chance_.Below(3), 12 + chance_.Below(10), 8 + chance_.Below(8), chance_.Below(12),
                  chance_.Below(51)},
        desk_(folder, settings_, options.seed + 1),
        scene_{options, settings_, desk_, {}, {}},
        levels_(scene_),
        rounds_(scene_, bad_),
        starts_(scene_, levels_, rounds_),
        faults_({scene_, levels_, starts_, rounds_, bad_, chance_}) {
    for (int each = 0; each < kTracks; ++each) {
      const double stored = 40 + chance_.Below(260) + chance_.Next();
      // What is known of a length is a little wrong now and then, or nothing is known.
      const int kind = chance_.Below(10);
      const double off = kind == 0 ? -4 + 8 * chance_.Next() : 0;
      const double known = kind == 1 ? 0 : stored;
      desk_.AddTrack(u"Track %1"_s.arg(kFirstNumber + each), known, stored + off, faults_.RandomInfo(known));
    }
    desk_.Open(options.mode == SoakMode::Random ? kRandomRows : kRows);
  }

  SoakResult Run() {
    const SoakOptions& options = scene_.options;
    DeskSight before = desk_.Look();
    faults_.SwitchOn();
    for (int second = 0; second < options.seconds; ++second) {
      faults_.Second(second, before);
      for (int look = 0; look < kLooks; ++look) {
        desk_.Run(1000ms / kLooks);
        const DeskSight now = desk_.Look();
        Look({before, now});
        before = now;
      }
      CheckState(before);
      scene_.excuses.Forget(desk_.Now() - 600);
      if (options.OnSecond) options.OnSecond(second);
    }
    scene_.result.skipped += desk_.Skipped();
    return scene_.result;
  }

 private:
  void Look(const SoakLook& look) {
    starts_.Look(look);
    levels_.Look(look);
    rounds_.Look(look.now);
    if (starts_.LoadDue()) faults_.OnLoadDue();
    CheckSound(look);
  }

  /// Counts the silence that nothing explains. A deck that has stopped is silent from its first moment on.
  void CheckSound(const SoakLook& look) {
    const double passed = look.now.at - look.before.at;
    if (starts_.Sounds(Deck::One, look) || starts_.Sounds(Deck::Two, look)) {
      silence_ = 0;
      if (look.now.deviceLost) scene_.result.silences[u"device lost"_s] += passed;
      return;
    }
    QString reason = look.now.pause ? u"pause"_s : scene_.excuses.For(Touch::Silence, look.now.at);
    if (reason.isEmpty() && !look.now.on) reason = u"switched off"_s;
    if (!reason.isEmpty()) {
      scene_.result.silences[reason] += passed;
      silence_ = 0;
      return;
    }
    // What is stopped once more begins another silence.
    if (!scene_.excuses.For(Touch::Kill, look.before.at, look.now.at).isEmpty()) silence_ = 0;
    silence_ += passed;
    const double unplanned = std::max(silence_ - scene_.Lag(), 0.0);
    scene_.result.longestSilence = std::max(scene_.result.longestSilence, unplanned);
    if (unplanned > kSilenceBound && unplanned - passed <= kSilenceBound)
      scene_.Violate(u"silence beyond the bound"_s);
  }

  void CheckState(const DeskSight& now) {
    const QString wrong = desk_.Impossible();
    if (!wrong.isEmpty()) scene_.Violate(wrong);
    if (!now.on && scene_.excuses.For(Touch::Start, now.at - 1, now.at).isEmpty())
      scene_.Violate(u"automatic play has ended by itself"_s);
    if (desk_.NothingPlayable() && !desk_.StatusText().startsWith(u"Nothing In The "_s))
      scene_.Violate(u"nothing can be played and it does not say so"_s);
  }

  RandomSource chance_;
  SoakSettings settings_;
  SoakDesk desk_;
  SoakScene scene_;
  SoakBadFiles bad_;
  SoakLevels levels_;
  SoakRounds rounds_;
  SoakStarts starts_;
  SoakFaults faults_;
  double silence_ = 0;
};

}  // namespace

SoakResult RunSoak(const QString& folder, const SoakOptions& options) {
  return Soak(folder, options).Run();
}

}  // namespace kelvo::testing
