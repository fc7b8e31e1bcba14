#pragma once

#include "app/ProgramFacts.h"
#include "audio/AudioSystem.h"
#include "database/Paths.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"
#include "platform/SystemFacts.h"

#include <QString>

#include <functional>
#include <vector>

namespace kelvo {

class SettingsStore;

/// The display as it is set, in pixels, and what else it could show; no modes when that is not known.
struct DisplayFacts {
  int width = 0;
  int height = 0;
  std::vector<DisplayMode> modes = {};
};

/// What the splash finds out before the console opens: platform, display, sound devices, and the media and
/// request files that the program brings along. Owned by the splash's owner; logic thread.
class SplashChecks {
 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    AudioSystem& audio;
    SettingsStore& settings;
    ProgramFacts facts;
    Paths paths;
    QString programFolder;
    DisplayFacts display;
    PlatformFacts platform;
  };

  explicit SplashChecks(Services services) : services_(std::move(services)) {}

  [[nodiscard]] Job<> Run();
  /// Each line of the splash's status list.
  std::function<void(const QString&)> OnStatus;

  /// More than one sound output exists.
  [[nodiscard]] bool PflEnabled() const { return pflEnabled_; }
  /// There is no sound output at all: the program can't go on.
  [[nodiscard]] bool AudioFailed() const { return audioFailed_; }

 private:
  [[nodiscard]] Job<> CheckDisplay();
  [[nodiscard]] Job<> CheckAudio();
  [[nodiscard]] Job<> PlaceSystemFiles();
  /// A step that fails is reported and leaves the next ones to run.
  [[nodiscard]] Job<> Step(Job<> step);
  void Say(const QString& line) const;

  Services services_;
  bool pflEnabled_ = false;
  bool audioFailed_ = false;
};

}  // namespace kelvo
