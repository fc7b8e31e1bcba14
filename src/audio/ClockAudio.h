#pragma once

#include "audio/AudioSystem.h"
#include "platform/EventLoop.h"

#include <QHash>
#include <QSet>

namespace kelvo {

/// Sound without sound: players whose positions run by the loop's clock alone, over files that are only a
/// name and a length. Rehearses the desk's logic over days of simulated time. Faults of files and
/// devices are set by its owner. Owned by whoever rehearses; logic thread.
class ClockAudio : public AudioSystem {
 public:
  explicit ClockAudio(EventLoop& loop) : loop_(loop) {}

  /// Seconds of sound in the file at `path`; below 0 the file cannot be opened. Files not named have
  /// `defaultDuration` when they exist on disk and cannot be opened otherwise.
  void SetDuration(const QString& path, double seconds) { durations_[path] = seconds; }
  double defaultDuration = 60;
  /// From its next Open on the file runs its time, but nothing is heard of it.
  void SetSilent(const QString& path, bool silent = true) {
    if (silent) {
      silent_.insert(path);
    } else {
      silent_.remove(path);
    }
  }
  /// How long an Open takes; its disk answers meanwhile.
  Nanoseconds openTime = std::chrono::milliseconds(20);
  /// Whether the disk of a file does not answer: an Open of it goes on only when it does again.
  std::function<bool(const QString& path)> Hangs;

  [[nodiscard]] std::unique_ptr<MediaPlayer> MakePlayer(const QString& output = {}) override;
  [[nodiscard]] QStringList OutputNames() const override { return outputNames; }
  [[nodiscard]] Job<double> DurationOf(QString path) override;
  [[nodiscard]] OutputStatus DefaultOutputStatus() const override { return status_; }

  [[nodiscard]] QString OutputId(const QString& name) const override { return outputIds.value(name, name); }
  [[nodiscard]] QString OutputNamed(const QString& id) const override {
    const QString name = outputIds.key(id, id);
    return outputNames.contains(name) ? name : QString();
  }

  QStringList outputNames{QStringLiteral("Main"), QStringLiteral("Headphones")};
  QHash<QString, QString> outputIds;  ///< of those whose id is not their name
  void SetDefaultOutputStatus(const OutputStatus& status);

 private:
  friend class ClockPlayer;
  [[nodiscard]] double SecondsOf(const QString& path) const;

  EventLoop& loop_;
  QHash<QString, double> durations_;
  QSet<QString> silent_;
  OutputStatus status_{OutputStatus::Kind::OnAir, QStringLiteral("Main")};
};

}  // namespace kelvo
