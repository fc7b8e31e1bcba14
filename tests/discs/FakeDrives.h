#pragma once

#include "discs/MadeDisc.h"

#include <functional>
#include <map>

namespace kelvo::testing {

/// A drive of a test, with a made disc in it, and what is wrong with it.
struct FakeDisc {
  MadeDisc disc{kFiveSectors};
  DiscToc toc;
  DiscState state = DiscState::Audio;

  /// Called before each call of the drive, with its name: it may throw.
  std::function<void(const QString& call)> before;
  /// Changes what a plain read gives, by the sector that it begins with and how often that was read before.
  std::function<void(int first, int times, std::span<std::int16_t> samples)> spoil;
  int unsureSectors = 0;  ///< what every careful read says of itself

  std::map<int, int> reads;                    ///< how often a plain read began with this sector
  std::vector<std::pair<int, int>> carefully;  ///< first sector and number, of each careful read
  int speed = 0;
  QStringList trays;

  void Call(const QString& name) const {
    if (before) before(name);
  }
};

class FakeDrive final : public DiscDrive {
 public:
  FakeDrive(std::shared_ptr<FakeDisc> disc, DriveBeatPtr beat)
      : disc_(std::move(disc)), beat_(std::move(beat)) {}

  [[nodiscard]] DiscToc ReadToc() override {
    disc_->Call(u"toc"_s);
    return disc_->toc;
  }
  void Read(int first, std::span<std::int16_t> target) override {
    disc_->Call(u"read"_s);
    if (beat_->stop) throw DriveFailure(DriveFailure::Kind::Stopped, u"Stopped."_s, {});
    ++beat_->steps;
    Copy(first, target);
    if (disc_->spoil) disc_->spoil(first, disc_->reads[first], target);
    ++disc_->reads[first];
  }
  [[nodiscard]] int ReadCarefully(int first, std::span<std::int16_t> target) override {
    disc_->Call(u"careful"_s);
    disc_->carefully.emplace_back(first, static_cast<int>(target.size()) / kCdSectorSamples);
    Copy(first, target);
    return disc_->unsureSectors;
  }
  void SetSpeed(int times) override {
    disc_->Call(u"speed"_s);
    disc_->speed = times;
  }

 private:
  void Copy(int first, std::span<std::int16_t> target) const {
    const auto cut = disc_->disc.Cut(first, static_cast<int>(target.size()) / kCdSectorSamples);
    std::copy(cut.begin(), cut.end(), target.begin());
  }

  std::shared_ptr<FakeDisc> disc_;
  DriveBeatPtr beat_;
};

/// One drive, `kPlace`.
class FakeDrives final : public DiscDrives {
 public:
  static inline const QString kPlace = u"/dev/fake0"_s;
  explicit FakeDrives(std::shared_ptr<FakeDisc> disc) : disc_(std::move(disc)) {}

  [[nodiscard]] QStringList Devices() override {
    disc_->Call(u"devices"_s);
    return {kPlace};
  }
  [[nodiscard]] DiscState Look(const QString& /*place*/) override {
    disc_->Call(u"look"_s);
    return disc_->state;
  }
  [[nodiscard]] std::unique_ptr<DiscDrive> Open(const QString& place, DriveBeatPtr beat) override {
    disc_->Call(u"open"_s);
    if (disc_->state == DiscState::NoDisc)
      throw DriveFailure(DriveFailure::Kind::NoDisc, u"No CD In Drive"_s, place);
    return std::make_unique<FakeDrive>(disc_, std::move(beat));
  }
  void Eject(const QString& /*place*/) override {
    disc_->Call(u"eject"_s);
    disc_->trays.append(u"open"_s);
    disc_->state = DiscState::NoDisc;
  }
  void CloseTray(const QString& /*place*/) override {
    disc_->Call(u"close"_s);
    disc_->trays.append(u"closed"_s);
    disc_->state = DiscState::Audio;
  }

 private:
  std::shared_ptr<FakeDisc> disc_;
};

/// A disc of three tracks: 4, 5 and 3 seconds, nothing hidden, no names.
inline std::shared_ptr<FakeDisc> ThreeTracks() {
  auto disc = std::make_shared<FakeDisc>();
  disc->toc.tracks = {{.number = 1, .first = 0, .sectors = 300},
                      {.number = 2, .first = 300, .sectors = 375},
                      {.number = 3, .first = 675, .sectors = 225}};
  return disc;
}

}  // namespace kelvo::testing
