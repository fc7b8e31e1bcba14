#include "render/RenderFile.h"

#include "audio/Recording.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/NewFile.h"

#include <QDir>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace kelvo {

namespace {

/// A third of a second, eight of which may wait for the disk.
constexpr std::size_t kPartFrames = 16384;
constexpr std::size_t kMostWaiting = 8;

/// The file's folder is there, and nothing of one that was killed.
QString Cleared(const QString& part) {
  QDir().mkpath(QFileInfo(part).path());
  ::unlink(EncodedPath(part).constData());
  return part;
}

void GiveName(const QByteArray& from, const QByteArray& to, bool replace) {
  int error = 0;
  if (!replace && ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) != 0)
    error = errno;
  // Some file systems know no such rename: there it is looked for just before.
  const bool unknown = error == EINVAL || error == ENOSYS;
  if (unknown) error = ::access(to.constData(), F_OK) == 0 ? EEXIST : 0;
  if ((replace || (unknown && error == 0)) && ::rename(from.constData(), to.constData()) != 0) error = errno;
  if (error != 0) FailOn("write", to, error);
}

}  // namespace

RenderFile::RenderFile(QString path, Kind kind, int mp3Kbps)
    : path_(std::move(path)),
      part_(Cleared(path_ + QStringLiteral(".part"))),
      file_(part_, kind, mp3Kbps),
      thread_([this](const std::stop_token& stop) { Run(stop); }) {
  gathered_.reserve(kPartFrames * kChannels);
}

RenderFile::~RenderFile() {
  thread_.request_stop();
  if (thread_.joinable()) thread_.join();
  file_.Close();
  if (!committed_) ::unlink(EncodedPath(part_).constData());
}

bool RenderFile::Write(std::span<const float> sound) {
  frames_ += static_cast<FrameIndex>(sound.size() / kChannels);
  gathered_.insert(gathered_.end(), sound.begin(), sound.end());
  if (gathered_.size() >= kPartFrames * kChannels) HandOver();
  return !failed_.load(std::memory_order_relaxed);
}

void RenderFile::HandOver() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return waiting_.size() < kMostWaiting || failed_; });
  waiting_.push_back(std::move(gathered_));
  lock.unlock();
  changed_.notify_all();
  gathered_ = {};
  gathered_.reserve(kPartFrames * kChannels);
}

void RenderFile::Run(const std::stop_token& stop) {
  for (;;) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, stop, [this] { return !waiting_.empty() || closed_; });
    if (stop.stop_requested() || waiting_.empty()) return;
    const std::vector<float> part = std::move(waiting_.front());
    waiting_.pop_front();
    lock.unlock();
    changed_.notify_all();
    try {
      file_.Write(part);
    } catch (...) {
      const std::lock_guard failing(mutex_);
      failure_ = std::current_exception();
      failed_ = true;
    }
    if (!failed_) continue;
    changed_.notify_all();
    return;
  }
}

void RenderFile::Close() {
  HandOver();
  {
    const std::lock_guard lock(mutex_);
    closed_ = true;
  }
  changed_.notify_all();
  thread_.join();
  file_.Close();
}

std::int64_t RenderFile::Commit(const std::vector<CueTitle>& titles, bool replace) {
  Close();
  if (failure_) std::rethrow_exception(failure_);
  if (file_.Error() != 0) FailOn("write", EncodedPath(part_), file_.Error());
  GiveName(EncodedPath(part_), EncodedPath(path_), replace);
  committed_ = true;
  ReplaceFile(Recording::CueSheetOf(path_), CueSheetText(QFileInfo(path_).fileName(), titles));
  return file_.Bytes();
}

}  // namespace kelvo
