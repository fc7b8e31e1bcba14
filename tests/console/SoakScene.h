#pragma once

#include "console/AutoSoak.h"
#include "console/SoakDesk.h"

#include <initializer_list>
#include <vector>

namespace kelvo::testing {

/// What a fault may be the reason of.
enum class Touch {
  Silence,
  Start,  ///< its time or its manner
  Load,   ///< a deck that is empty for long
  Cut,    ///< a track that is heard is taken away
  Kill,   ///< a deck that was just started stops
  Order,  ///< the row that comes next
  Level,  ///< it is not where the slider says
};

/// The windows in which faults excuse what the desk does otherwise than planned.
class SoakExcuses {
 public:
  /// From `from` to `to`, seconds of the desk.
  void Add(const QString& reason, double from, double to, std::initializer_list<Touch> touches);
  /// The reason that holds at some moment between `from` and `to`; empty when there is none.
  [[nodiscard]] QString For(Touch touch, double from, double to) const;
  [[nodiscard]] QString For(Touch touch, double at) const { return For(touch, at, at); }
  void Forget(double before);

 private:
  struct Window {
    QString reason;
    double from, to;
    std::vector<Touch> touches;
  };
  std::vector<Window> windows_;
};

/// What the parts of a soak share.
struct SoakScene {
  const SoakOptions& options;
  SoakSettings settings;
  SoakDesk& desk;
  SoakExcuses excuses;
  SoakResult result;

  [[nodiscard]] bool Preview() const { return options.mode == SoakMode::Preview; }
  [[nodiscard]] int Lag() const { return options.mode == SoakMode::Jukebox ? settings.jukeLag : 0; }
  void Violate(const QString& what);
};

/// Takes place between two looks.
struct SoakLook {
  const DeskSight& before;
  const DeskSight& now;
};

}  // namespace kelvo::testing
