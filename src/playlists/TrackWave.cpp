#include "playlists/TrackWave.h"

#include "audio/SoundLook.h"

#include <exception>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

/// A picture that takes longer waits for its disk.
constexpr Nanoseconds kSlow = 5s;

}  // namespace

/// One look at a file, by the thread that takes it and by who waits for it.
struct TrackWave::Look {
  QString path;
  OpeningPtr opening = std::make_shared<Opening>();
  std::optional<WaveEnds> ends = {};
  QString error = {};
};

TrackWave::TrackWave(EventLoop& loop, QString cacheFolder)
    : loop_(loop), cacheFolder_(std::move(cacheFolder)) {}

void TrackWave::Make(const QString& path) {
  Cancel();
  ends_.reset();
  look_ = std::make_shared<Look>(Look{path});
  slow_ = loop_.After(kSlow, [this] { Show(tr("Its disk does not answer yet")); });
  const auto work = [look = look_, folder = cacheFolder_] {
    try {
      look->ends = CachedWaveEnds(folder, look->path, look->opening);
    } catch (const std::exception& failure) {
      look->error = WithoutPath(QString::fromUtf8(failure.what()), look->path);
    }
  };
  // One that was cancelled belongs to nobody any more: the object may be gone.
  const auto done = [this, look = look_] {
    if (!look->opening->cancelled) Take(*look);
  };
  loop_.RunLook(path, work, done);
  if (look_) Show(tr("Looking at the sound..."));
}

void TrackWave::Stop() {
  Cancel();
  ends_.reset();
  Show({});
}

void TrackWave::Cancel() {
  slow_.Stop();
  if (look_) look_->opening->cancelled = true;
  look_.reset();
}

void TrackWave::Take(const Look& look) {
  const std::optional<WaveEnds> ends = look.ends;
  const QString words = ends ? QString() : tr("No picture: %1").arg(look.error);
  Cancel();
  ends_ = ends;
  Show(words);
}

void TrackWave::Show(const QString& words) {
  words_ = words;
  Q_EMIT Changed();
}

}  // namespace kelvo
