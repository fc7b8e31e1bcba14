#pragma once

#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <QHash>
#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <vector>

namespace kelvo {

/// Looks at files whose disk may not answer: a share that is gone, a stick with a loose plug. Each look has a
/// thread of its own and a limit of its own, so it blocks only its caller. A disk that lets a look
/// wait for two seconds is reported as silent until it answers one of those that wait, or is mounted anew.
/// Owned by the Console, and
/// one by the DatabaseCheck before it; logic thread.
class Disks : public QObject {
  Q_OBJECT

 public:
  /// How a look bears with a disk.
  enum class Patience {
    Person,  ///< somebody asked for this file: the disk has ten seconds
    Air,     ///< as good a file lies elsewhere: a disk that is silent already is not asked
  };
  static constexpr Nanoseconds kLookLimit = std::chrono::seconds(10);
  static constexpr Nanoseconds kSilentAfter = std::chrono::seconds(2);

  explicit Disks(EventLoop& loop);

  /// Does `work`, a look at `path`, off the logic's thread and gives its result; none when its disk does not
  /// answer within `limit`. Rethrows its failure. `work` owns all that it touches: it may end long after.
  template <typename Work>
  [[nodiscard]] Job<std::optional<std::invoke_result_t<Work>>> Look(QString path, Work work,
                                                                    Patience patience = Patience::Person,
                                                                    Nanoseconds limit = kLookLimit);
  /// Asks `question` of each path, in turn; none for those whose disk does not answer.
  using Answers = std::vector<std::optional<bool>>;
  [[nodiscard]] Job<Answers> LookAtEach(QStringList paths, std::function<bool(const QString&)> question);
  /// Somebody waits for data of this file: its disk is reported as silent when it does not answer.
  void Suspect(const QString& path);

  /// The disks that do not answer at the moment, by where they are mounted.
  [[nodiscard]] QStringList Silent() const;
  /// How often a silent disk has answered again.
  [[nodiscard]] int Returns() const { return returns_; }

 Q_SIGNALS:
  /// Silent changed.
  void Changed();

 private:
  struct Attempt;
  struct Batch;
  struct Known;
  /// `end` is called once, with whether `work` was done.
  void Begin(const QString& path, Patience patience, Nanoseconds limit, std::function<void()> work,
             std::function<void(bool answered)> end);
  void TellSilent(const std::shared_ptr<Attempt>& attempt);
  void Ended(const std::shared_ptr<Attempt>& attempt);

  EventLoop& loop_;
  std::shared_ptr<Known> known_;
  std::shared_ptr<bool> life_ = std::make_shared<bool>(true);  ///< gone with this object
  QHash<QString, QString> silent_;                             ///< the names of the silent disks, by key
  int returns_ = 0;
};

template <typename Work>
Job<std::optional<std::invoke_result_t<Work>>> Disks::Look(QString path, Work work, Patience patience,
                                                           Nanoseconds limit) {
  using Result = std::invoke_result_t<Work>;
  struct Shared {
    std::optional<Result> result;
    std::exception_ptr failure;
    OneShot<bool> answered;
  };
  const auto shared = std::make_shared<Shared>();
  const auto look = [shared, work = std::move(work)] {
    try {
      shared->result.emplace(work());
    } catch (...) {
      shared->failure = std::current_exception();
    }
  };
  Begin(path, patience, limit, look, [shared](bool answered) { shared->answered.Set(answered); });
  const bool answered = co_await shared->answered.Wait();
  if (!answered) co_return std::nullopt;
  if (shared->failure) std::rethrow_exception(shared->failure);
  co_return std::move(shared->result);
}

}  // namespace kelvo
