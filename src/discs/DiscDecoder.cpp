#include "discs/DiscDecoder.h"

#include <algorithm>

namespace kelvo {
namespace {

const QString kScheme = QStringLiteral("cdda");
/// A third of a second.
constexpr int kAtOnce = 25;
/// After four seconds of nothing the disc counts as ended.
constexpr int kMostUnread = 12;
/// Slow enough to be quiet, and fast enough for a look ahead.
constexpr int kSpeed = 8;
constexpr float kFullScale = 32768;

}  // namespace

DiscDecoder::DiscDecoder(std::unique_ptr<DiscDrive> drive)
    : drive_(std::move(drive)), toc_(drive_->ReadToc()) {
  drive_->SetSpeed(kSpeed);
  rate_ = 44100;
  frames_ = FrameIndex{toc_.End()} * kCdSectorFrames;
}

void DiscDecoder::Seek(FrameIndex frame) {
  place_ = std::clamp<FrameIndex>(frame, 0, frames_);
  unread_ = 0;
}

bool DiscDecoder::Bring() {
  const FrameIndex held = static_cast<FrameIndex>(samples_.size() / kChannels);
  if (place_ >= from_ && place_ < from_ + held) return true;
  const int first = static_cast<int>(place_ / kCdSectorFrames);
  const DiscToc::Zone zone = toc_.AudioZone(first);
  const TocTrack* track = toc_.TrackAt(first);
  // Behind a track of sound there may be a gap to the next session.
  const int dataEnd = track != nullptr && first < track->End() ? track->End() : first + 1;
  const int end = zone.end > first ? zone.end : dataEnd;
  const int sectors = std::min({kAtOnce, end - first, toc_.End() - first});
  if (sectors <= 0) return false;
  samples_.assign(static_cast<std::size_t>(sectors) * kCdSectorSamples, 0);
  from_ = FrameIndex{first} * kCdSectorFrames;
  if (zone.end <= first) return true;
  try {
    drive_->Read(first, samples_);
    unread_ = 0;
  } catch (const DriveFailure& failure) {
    std::fill(samples_.begin(), samples_.end(), std::int16_t{0});
    return failure.What() == DriveFailure::Kind::Unread && ++unread_ < kMostUnread;
  }
  return true;
}

std::size_t DiscDecoder::ReadSome(std::span<float> target) {
  if (place_ >= frames_ || !Bring()) return 0;
  const auto begin = static_cast<std::size_t>(place_ - from_) * kChannels;
  const std::size_t count = std::min(target.size() / kChannels * kChannels, samples_.size() - begin);
  std::transform(samples_.begin() + static_cast<std::ptrdiff_t>(begin),
                 samples_.begin() + static_cast<std::ptrdiff_t>(begin + count), target.begin(),
                 [](std::int16_t sample) { return static_cast<float>(sample) / kFullScale; });
  place_ += static_cast<FrameIndex>(count / kChannels);
  return count / kChannels;
}

QString DiscSource(const QString& place) {
  return kScheme + QLatin1Char(':') + place;
}

std::unique_ptr<SourceScheme> ServeDiscs(std::shared_ptr<DiscDrives> drives) {
  const auto open = [drives = std::move(drives)](const QString& place, const OpeningPtr& opening) {
    auto decoder = std::make_unique<DiscDecoder>(drives->Open(place, std::make_shared<DriveBeat>()));
    if (opening) opening->steps.fetch_add(1, std::memory_order_relaxed);
    return decoder;
  };
  return std::make_unique<SourceScheme>(kScheme, open);
}

}  // namespace kelvo
