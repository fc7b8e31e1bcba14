#pragma once

#include "database/Catalogue.h"
#include "database/Paths.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <functional>

namespace kelvo {

/// Keeps the database true to files that were encoded: tracks, jingles and files that wait in the utility
/// folder. Owned by the EncodeList; logic thread.
class EncodedFiles {
 public:
  struct Services {
    EventLoop& loop;
    Catalogue& catalogue;
    Paths paths;
    /// Makes the entries of playlists that lead to `from` lead to `to`. Called off the logic's thread: owns
    /// all that it touches. Throws Failure. Empty: they are left alone.
    std::function<void(const QString& from, const QString& to)> relink;
  };
  explicit EncodedFiles(Services services) : services_(std::move(services)) {}

  struct Encoded {
    QString source;
    QString target;
    double seconds = 0;       ///< of sound in the target
    bool sourceGoes = false;  ///< it will be deleted: what knew it knows the target from now on
  };
  /// The target is there, and so is the source, still. A track keeps its info, but for its gain, which has to
  /// be measured anew. Throws Failure: then the source must stay.
  [[nodiscard]] Job<> Tell(Encoded file);
  /// The source was to be deleted and could not be.
  void TellSourceStays(const QString& source);

 private:
  [[nodiscard]] Job<> TellTrack(Encoded file);

  Services services_;
};

}  // namespace kelvo
