#include "platform/LinkTargets.h"

#include "platform/MountedVolumes.h"

#include <QFile>
#include <QSet>

#include <sys/stat.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

namespace kelvo {
namespace {

using namespace std::chrono_literals;

constexpr auto kLimit = 2s;

LinkTargets::Kind Look(const QString& path) {
  struct stat facts {};
  if (::stat(QFile::encodeName(path).constData(), &facts) != 0) return LinkTargets::Kind::Other;
  if (S_ISREG(facts.st_mode)) return LinkTargets::Kind::File;
  return S_ISDIR(facts.st_mode) ? LinkTargets::Kind::Folder : LinkTargets::Kind::Other;
}

}  // namespace

struct LinkTargets::Shared {
  std::mutex mutex;
  std::condition_variable told;
  QSet<QString> silent;  ///< keys of disks
};

LinkTargets::LinkTargets() : shared_(std::make_shared<Shared>()) {}

LinkTargets::Kind LinkTargets::KindOf(const QString& path) {
  struct Question {
    std::optional<Kind> kind;
    QString disk;  ///< the disk that the look has reached
  };
  const auto question = std::make_shared<Question>();
  std::thread([shared = shared_, question, path] {
    const auto mayGoOn = [&](const QString& place) {
      const EventLoop::Disk disk = DiskThatHolds(place);
      const std::lock_guard lock(shared->mutex);
      question->disk = disk.key;
      return !shared->silent.contains(disk.key);
    };
    const Kind kind = FollowLinks(path, mayGoOn) ? Look(path) : Kind::Unknown;
    const std::lock_guard lock(shared->mutex);
    question->kind = kind;
    shared->told.notify_all();
  }).detach();
  std::unique_lock lock(shared_->mutex);
  if (shared_->told.wait_for(lock, kLimit, [&] { return question->kind.has_value(); }))
    return *question->kind;
  shared_->silent.insert(question->disk);
  return Kind::Unknown;
}

}  // namespace kelvo
