#pragma once

#include "audio/WaveEnds.h"
#include "platform/EventLoop.h"

#include <QObject>

#include <memory>
#include <optional>

namespace kelvo {

/// Makes the picture of a track's two ends, beside the logic. Whatever the file's disk does, it waits for
/// nobody: until the picture is there, and when there can be none, it has words to show in its place. Owned
/// by the PlayEditor; logic thread.
class TrackWave : public QObject {
  Q_OBJECT
 public:
  /// `cacheFolder` keeps what was made; empty: nothing is kept.
  TrackWave(EventLoop& loop, QString cacheFolder);
  ~TrackWave() override { Cancel(); }

  void Make(const QString& path);
  /// The picture is no longer wanted, and what is under way for it ends.
  void Stop();

  [[nodiscard]] const std::optional<WaveEnds>& Ends() const { return ends_; }
  /// What is shown in its place; empty when it is there.
  [[nodiscard]] const QString& Words() const { return words_; }

 Q_SIGNALS:
  void Changed();

 private:
  struct Look;
  void Cancel();
  void Take(const Look& look);
  void Show(const QString& words);

  EventLoop& loop_;
  QString cacheFolder_;
  std::shared_ptr<Look> look_;  ///< that is under way
  std::optional<WaveEnds> ends_;
  QString words_;
  Timer slow_;
};

}  // namespace kelvo
