#include "audio/Recording.h"

#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"

#include <QFileInfo>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <filesystem>

namespace kelvo {

namespace {

constexpr std::size_t kPartFrames = 4096;
constexpr auto kStepEvery = std::chrono::milliseconds(100);

/// With what waits in the tap and in the encoder, a kill takes less than a second.
constexpr FrameIndex kFlushEvery = kEngineRate / 2;

}  // namespace

QString Recording::CueSheetOf(const QString& path) {
  const QFileInfo file(path);
  return file.path() + QLatin1Char('/') + file.completeBaseName() + QStringLiteral(".cue");
}

void Recording::Run(const std::stop_token& stop) {
  std::mutex mutex;
  std::condition_variable_any pause;
  while (!stop.stop_requested() && Step()) {
    std::unique_lock lock(mutex);
    pause.wait_for(lock, stop, kStepEvery, [] { return false; });
  }
  if (!Ended()) Step();
  Finish();
}

bool Recording::Step() {
  if (Ended()) return false;
  try {
    if (!file_) file_ = std::make_unique<RecordingFile>(path_, kind_);
    WriteSettled();
    LookAfterDisk();
  } catch (const std::exception& failure) {
    {
      const std::lock_guard lock(mutex_);
      error_ = QString::fromUtf8(failure.what());
    }
    Finish();
  }
  return !Ended();
}

void Recording::WriteSettled() {
  const FrameIndex settled = tap_->Settled();
  if (settled < 0) return;
  if (next_ < 0) {
    next_ = settled;
    part_.resize(kPartFrames * kChannels);
    first_.store(settled, std::memory_order_release);
  }
  while (next_ < settled) {
    const auto frames = std::min(static_cast<std::size_t>(settled - next_), kPartFrames);
    const auto part = std::span(part_).first(frames * kChannels);
    if (!tap_->Read(next_, part)) {
      std::fill(part.begin(), part.end(), 0.0F);
      lost_.fetch_add(static_cast<FrameIndex>(frames), std::memory_order_relaxed);
    }
    file_->Write(part);
    next_ += static_cast<FrameIndex>(frames);
    frames_.store(next_ - First(), std::memory_order_relaxed);
  }
}

void Recording::LookAfterDisk() {
  QByteArray sheet;
  {
    const std::lock_guard lock(mutex_);
    sheet = std::exchange(cueSheet_, {});
  }
  // The sound first: the sheet that a kill leaves names no place behind the end of the file.
  if (flushed_ == 0 || next_ - flushed_ >= kFlushEvery || !sheet.isEmpty()) {
    file_->Flush();
    flushed_ = next_;
    std::error_code unknown;
    const auto space = std::filesystem::space(QFileInfo(path_).path().toStdString(), unknown);
    left_.store(unknown ? -1 : static_cast<std::int64_t>(space.available), std::memory_order_relaxed);
  }
  bytes_.store(file_->Bytes(), std::memory_order_relaxed);
  if (!sheet.isEmpty()) ReplaceFile(CueSheetOf(path_), sheet);
}

void Recording::Finish() {
  if (file_) {
    file_->Close();
    bytes_.store(file_->Bytes(), std::memory_order_relaxed);
  }
  ended_.store(true, std::memory_order_release);
}

void Recording::SetCueSheet(QByteArray text) {
  const std::lock_guard lock(mutex_);
  cueSheet_ = std::move(text);
}

QString Recording::Error() const {
  const std::lock_guard lock(mutex_);
  return error_;
}

}  // namespace kelvo
