#pragma once

#include "database/TrackPlaySettings.h"

#include <QString>

#include <functional>

namespace kelvo {

/// The end of one track and the start of the next over it, to be listened to. A value.
struct PlayTrial {
  QString before;  ///< music file that is on its end
  TrackPlaySettings beforePlay;
  QString after;  ///< music file that comes in
  TrackPlaySettings afterPlay;
};

/// What the editor of a track's play settings needs of the desk. Owned by the editor; outlived by the desk.
class PlayEditDesk {
 public:
  virtual ~PlayEditDesk() = default;

  /// The music file of the track that will most likely be heard before this one; the file itself when there
  /// is no other.
  [[nodiscard]] virtual QString TrackBefore(const QString& path) const = 0;

  /// Why nothing can be listened to now, in words; empty when it can.
  [[nodiscard]] virtual QString WhyNoTrial() const = 0;
  virtual void Try(const PlayTrial& trial) = 0;
  virtual void StopTrial() = 0;
  [[nodiscard]] virtual bool Trying() const = 0;
  /// What is heard of a trial, in words; empty when none runs.
  [[nodiscard]] virtual QString TrialWords() const = 0;
  /// Called when what the last four say has changed.
  std::function<void()> OnTrialChanged;

  /// The editor is through with a track.
  virtual void Left() = 0;
};

}  // namespace kelvo
