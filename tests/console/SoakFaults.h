#pragma once

#include "console/SoakLevels.h"
#include "console/SoakRounds.h"
#include "console/SoakScene.h"
#include "console/SoakStarts.h"
#include "platform/RandomSource.h"

#include <functional>
#include <map>

namespace kelvo::testing {

/// What goes wrong at the desk, by chance: files, disks, the device, ticks and the operator. Each fault tells
/// what it excuses and for how long.
class SoakFaults {
 public:
  struct Parts {
    SoakScene& scene;
    SoakLevels& levels;
    SoakStarts& starts;
    SoakRounds& rounds;
    SoakBadFiles& bad;
    RandomSource& chance;
  };
  explicit SoakFaults(Parts parts) : parts_(parts), scene_(parts.scene), chance_(parts.chance) {}

  /// Before each second: what has lasted ends, and something new may begin.
  void Second(int second, const DeskSight& now);
  /// The desk as somebody left it.
  void SwitchOn();
  /// A deck waits for its next track from now on: a disk that hangs may hold it up once.
  void OnLoadDue();
  /// A new info file, by chance.
  [[nodiscard]] QByteArray RandomInfo(double stored);

 private:
  void Begin(const DeskSight& now);
  void After(int seconds, std::function<void()> undo) { ends_.emplace(second_ + seconds, std::move(undo)); }
  /// A file that is good, for a fault that lasts; none when enough are bad.
  [[nodiscard]] const SoakTrack* Victim();
  void Spoil(const std::function<void(const SoakTrack&)>& spoil,
             const std::function<void(const SoakTrack&)>& mend);
  void SpoilLength(double seconds);
  void SpoilInfo();
  void EditQueue();
  void StopDecks();
  void LoseDevice();
  void DelayBeats();
  void BreakDisk();
  void HangDisk();
  void KillStream(const DeskSight& now);
  void Speak();
  void Pause(const DeskSight& now);
  void SwitchOffAndOn(const DeskSight& now);
  [[nodiscard]] double Now() const { return scene_.desk.Now(); }

  Parts parts_;
  SoakScene& scene_;
  RandomSource& chance_;
  std::multimap<int, std::function<void()>> ends_;  ///< by the second in which each fault is mended
  int second_ = 0;
  bool diskBroken_ = false;
  QString slow_;  ///< why a load may take long at the moment
  double loadDueAt_ = -1000;
  int speaking_ = 0;  ///< presses that were not let go
};

}  // namespace kelvo::testing
