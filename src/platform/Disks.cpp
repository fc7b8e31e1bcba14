#include "platform/Disks.h"

#include "platform/MountedVolumes.h"

#include <QFile>
#include <QSet>

#include <sys/statvfs.h>

#include <atomic>
#include <mutex>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kBatchPoll = 20ms;
/// How long a path may take in a batch in which one has hung: fifty on a dead disk would take minutes.
constexpr Nanoseconds kAfterOneHung = 250ms;

/// Asks the disk itself, not what the system remembers of it, as far as that is possible.
void Knock(const QString& path) {
  struct statvfs facts {};
  ::statvfs(QFile::encodeName(path).constData(), &facts);
  QFile file(path);
  char last = 0;
  if (file.open(QIODevice::ReadOnly) && file.seek(std::max<qint64>(file.size() - 1, 0)))
    static_cast<void>(file.read(&last, 1));
}

}  // namespace

/// What the looks' threads may ask: the keys of the silent disks.
struct Disks::Known {
  std::mutex mutex;
  QSet<QString> silent;
};

/// One look.
struct Disks::Attempt {
  EventLoop::Disk disk;  ///< the disk that the look has reached; under the mutex of Known
  bool refused = false;  ///< written by the look's thread before it ends
  // The logic's thread:
  std::function<void(bool)> end;
  QString silentKey;  ///< the disk that it waits for
  Timer silentAfter;
  Timer limit;

  void Tell(bool answered) {
    limit.Stop();
    if (const auto told = std::exchange(end, nullptr)) told(answered);
  }
};

Disks::Disks(EventLoop& loop) : loop_(loop), known_(std::make_shared<Known>()) {}

void Disks::Begin(const QString& path, Patience patience, Nanoseconds limit, std::function<void()> work,
                  std::function<void(bool answered)> end) {
  const auto attempt = std::make_shared<Attempt>();
  attempt->disk = loop_.DiskOf(path);
  attempt->end = std::move(end);
  if (patience == Patience::Air && silent_.contains(attempt->disk.key)) {
    loop_.Post([attempt] { attempt->Tell(false); });
    return;
  }
  const std::weak_ptr<bool> alive = life_;
  // The look's thread keeps the attempt; its own timers must not.
  const std::weak_ptr<Attempt> watched = attempt;
  attempt->silentAfter = loop_.After(kSilentAfter, [this, alive, watched] {
    const std::shared_ptr<Attempt> waits = watched.lock();
    if (waits && !alive.expired()) TellSilent(waits);
  });
  attempt->limit = loop_.After(limit, [watched] {
    if (const std::shared_ptr<Attempt> waits = watched.lock()) waits->Tell(false);
  });
  const auto look = [attempt, path, patience, known = known_, work = std::move(work)] {
    // Link by link, so that it is known which disk it was that did not answer.
    const auto mayGoOn = [&](const QString& place) {
      EventLoop::Disk disk = DiskThatHolds(place);
      const std::lock_guard lock(known->mutex);
      attempt->refused = patience == Patience::Air && known->silent.contains(disk.key);
      attempt->disk = std::move(disk);
      return !attempt->refused;
    };
    if (FollowLinks(path, mayGoOn)) work();
  };
  loop_.RunLook(path, look, [this, alive, attempt] {
    if (!alive.expired()) Ended(attempt);
  });
}

void Disks::TellSilent(const std::shared_ptr<Attempt>& attempt) {
  {
    const std::lock_guard lock(known_->mutex);
    attempt->silentKey = attempt->disk.key;
    known_->silent.insert(attempt->disk.key);
    if (silent_.contains(attempt->disk.key)) return;
    silent_.insert(attempt->disk.key, attempt->disk.name);
  }
  Q_EMIT Changed();
}

void Disks::Ended(const std::shared_ptr<Attempt>& attempt) {
  attempt->silentAfter.Stop();
  // One look that comes back is as good as all.
  if (silent_.remove(attempt->silentKey)) {
    {
      const std::lock_guard lock(known_->mutex);
      known_->silent.remove(attempt->silentKey);
    }
    ++returns_;
    Q_EMIT Changed();
  }
  attempt->Tell(!attempt->refused);
}

void Disks::Suspect(const QString& path) {
  const auto look = [path] { Knock(path); };
  Begin(path, Patience::Air, kLookLimit, look, [](bool) {});
}

QStringList Disks::Silent() const {
  QStringList names = silent_.values();
  names.sort();
  names.removeDuplicates();
  return names;
}

/// Many short looks in one thread.
struct Disks::Batch {
  QStringList paths;
  std::function<bool(const QString&)> question;
  std::vector<char> answers;
  std::atomic<std::size_t> done{0};  ///< so many of the answers are there
  std::atomic<bool> dropped{false};

  void Work() {
    for (std::size_t at = 0; at < answers.size() && !dropped.load(std::memory_order_relaxed); ++at) {
      answers[at] = question(paths[static_cast<qsizetype>(at)]) ? 1 : 0;
      done.store(at + 1, std::memory_order_release);
    }
  }
};

Job<Disks::Answers> Disks::LookAtEach(QStringList paths, std::function<bool(const QString&)> question) {
  Answers answers(static_cast<std::size_t>(paths.size()));
  std::size_t first = 0;
  Nanoseconds limit = kSilentAfter;
  while (first < answers.size()) {
    // Where the run of those that can be asked together ends.
    std::size_t last = first;
    while (last < answers.size() && !loop_.Hangs(paths[static_cast<qsizetype>(last)])) ++last;
    const auto batch = std::make_shared<Batch>();
    batch->paths = paths.mid(static_cast<qsizetype>(first), static_cast<qsizetype>(last - first));
    batch->question = question;
    batch->answers.resize(last - first);
    loop_.RunOffThread(
        EventLoop::Lane::Apart, [batch] { batch->Work(); }, [] {});
    std::size_t seen = 0;
    for (Nanoseconds movedAt = loop_.Elapsed();;) {
      const std::size_t done = batch->done.load(std::memory_order_acquire);
      for (std::size_t at = seen; at < done; ++at) answers[first + at] = batch->answers[at] != 0;
      if (done == last - first) break;
      if (std::exchange(seen, done) != done) movedAt = loop_.Elapsed();
      if (loop_.Elapsed() - movedAt >= limit) break;
      co_await loop_.Sleep(kBatchPoll);
    }
    batch->dropped.store(true, std::memory_order_relaxed);
    first += batch->done.load(std::memory_order_acquire);
    if (first >= answers.size() || answers[first]) continue;
    Suspect(paths[static_cast<qsizetype>(first++)]);
    limit = kAfterOneHung;
  }
  co_return answers;
}

}  // namespace kelvo
