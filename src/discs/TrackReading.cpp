#include "discs/TrackReading.h"

#include <algorithm>

namespace kelvo {
namespace {

constexpr int kStretch = 2 * kCdSectorsPerSecond;
/// Drives keep up to so many sectors of what they read last.
constexpr int kDriveMemory = 1200;

int FloorDiv(int value, int by) {
  return value >= 0 ? value / by : -((by - 1 - value) / by);
}

std::uint32_t Checksum(std::span<const std::int16_t> samples) {
  boost::crc_32_type sum;
  sum.process_bytes(samples.data(), samples.size_bytes());
  return sum.checksum();
}

std::span<std::int16_t> Sector(std::span<std::int16_t> samples, int sector) {
  return samples.subspan(static_cast<std::size_t>(sector) * kCdSectorSamples, kCdSectorSamples);
}

bool IsUnread(const DriveFailure& failure) {
  return failure.What() == DriveFailure::Kind::Unread;
}

}  // namespace

TrackReading::TrackReading(DiscDrive& drive, const DiscToc& toc, const TocTrack& track, int offsetFrames,
                           ReadMode mode)
    : drive_(drive),
      track_(track),
      zone_(toc.AudioZone(track.first)),
      offset_(offsetFrames),
      mode_(mode),
      comparing_(mode == ReadMode::Twice) {}

double TrackReading::Share() const {
  if (track_.sectors == 0) return 1;
  const double pass = static_cast<double>(place_) / track_.sectors;
  if (mode_ != ReadMode::Twice) return pass;
  return (comparing_ ? pass : 1 + pass) / 2;
}

std::vector<std::int16_t> TrackReading::Next() {
  const int sectors = std::min(kStretch, track_.sectors - place_);
  if (comparing_) {
    Compare(sectors);
    if (place_ == track_.sectors) {
      comparing_ = false;
      place_ = 0;
      if (track_.sectors < kDriveMemory) EmptyDriveMemory();
    }
    return {};
  }
  return Take(sectors);
}

int TrackReading::ReadSectors(int sector, std::span<std::int16_t> target, bool carefully) {
  const int frames = static_cast<int>(target.size()) / 2;
  const int begin = (track_.first + sector) * kCdSectorFrames + offset_;
  const int first = std::clamp(FloorDiv(begin, kCdSectorFrames), zone_.first, zone_.end);
  const int end =
      std::clamp(FloorDiv(begin + frames + kCdSectorFrames - 1, kCdSectorFrames), first, zone_.end);
  std::fill(target.begin(), target.end(), std::int16_t{0});
  if (end == first) return 0;
  Samples read(static_cast<std::size_t>(end - first) * kCdSectorSamples);
  int unsure = 0;
  if (carefully) {
    unsure = drive_.ReadCarefully(first, read);
  } else {
    drive_.Read(first, read);
  }
  const int from = std::max(begin, first * kCdSectorFrames);
  const int to = std::min(begin + frames, end * kCdSectorFrames);
  const auto at = [](int frame) { return static_cast<std::ptrdiff_t>(frame) * 2; };
  std::copy(read.begin() + at(from - first * kCdSectorFrames),
            read.begin() + at(to - first * kCdSectorFrames), target.begin() + at(from - begin));
  return unsure;
}

void TrackReading::Compare(int sectors) {
  Samples samples(static_cast<std::size_t>(sectors) * kCdSectorSamples);
  bool read = true;
  try {
    ReadSectors(place_, samples, false);
  } catch (const DriveFailure& failure) {
    if (!IsUnread(failure)) throw;
    read = false;
  }
  for (int sector = 0; sector < sectors; ++sector)
    first_.push_back(read ? std::optional(Checksum(Sector(samples, sector))) : std::nullopt);
  place_ += sectors;
}

std::vector<std::int16_t> TrackReading::Take(int sectors) {
  Samples samples(static_cast<std::size_t>(sectors) * kCdSectorSamples);
  bool read = mode_ != ReadMode::Full;
  if (read) {
    try {
      ReadSectors(place_, samples, false);
    } catch (const DriveFailure& failure) {
      if (!IsUnread(failure)) throw;
      read = false;
    }
  }
  const auto agrees = [&](int sector) {
    if (!read || mode_ == ReadMode::Once) return read;
    return first_[static_cast<std::size_t>(place_ + sector)] == Checksum(Sector(samples, sector));
  };
  for (int sector = 0; sector < sectors;) {
    int behind = sector;
    while (behind < sectors && !agrees(behind)) ++behind;
    if (behind > sector) {
      ReadCarefully(place_ + sector,
                    std::span(samples).subspan(static_cast<std::size_t>(sector) * kCdSectorSamples,
                                               static_cast<std::size_t>(behind - sector) * kCdSectorSamples));
    }
    sector = std::max(behind, sector + 1);
  }
  sum_.process_bytes(samples.data(), samples.size() * sizeof(std::int16_t));
  facts_.checksum = sum_.checksum();
  place_ += sectors;
  return samples;
}

void TrackReading::ReadCarefully(int sector, std::span<std::int16_t> target) {
  const int sectors = static_cast<int>(target.size()) / kCdSectorSamples;
  facts_.careful += sectors;
  // The offset takes a sector more than it gives.
  facts_.unsure += std::min(ReadSectors(sector, target, true), sectors);
}

void TrackReading::EmptyDriveMemory() {
  const bool roomBehind = zone_.end - track_.End() >= kDriveMemory;
  const int from = roomBehind ? zone_.end - kDriveMemory : track_.first - kDriveMemory;
  if (from < zone_.first) return;
  Samples unheard(static_cast<std::size_t>(kStretch) * kCdSectorSamples);
  for (int sector = from; sector < from + kDriveMemory; sector += kStretch) {
    try {
      drive_.Read(sector, unheard);
    } catch (const DriveFailure& failure) {
      if (!IsUnread(failure)) throw;
    }
  }
}

}  // namespace kelvo
