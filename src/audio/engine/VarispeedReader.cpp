#include "audio/engine/VarispeedReader.h"

#include <algorithm>
#include <cmath>

namespace kelvo {

namespace {

/// 20 ms to go from one rate to another.
constexpr int kRateSteps = kEngineRate / 50;

/// How much faster than 1 it reads for a moment to reach whole frames again: three hundredths of a
/// semitone.
constexpr double kCatchUp = 1.0 / 512;

}  // namespace

void VarispeedReader::Begin(Generation generation, double rate) {
  generation_ = generation;
  rate_.JumpTo(rate);
  std::fill_n(window_.begin(), kHistory * kChannels, 0.0F);
  index_ = size_ = kHistory;
  fraction_ = 0;
  started_ = false;
  ended_ = false;
  DropOlder();
}

void VarispeedReader::DropOlder() {
  while (ring_.read_available() > 0 && IsOlder(ring_.front().generation, generation_)) ring_.pop();
}

bool VarispeedReader::Overtaken() const {
  return ring_.read_available() > 0 && IsOlder(generation_, ring_.front().generation);
}

void VarispeedReader::SetRate(double rate) {
  rate_.Aim(rate, kRateSteps);
}

void VarispeedReader::MakeRoom() {
  if (size_ + kBlockFrames <= kWindowFrames) return;
  const std::size_t dropped = index_ - kHistory;
  std::copy(window_.begin() + static_cast<std::ptrdiff_t>(dropped * kChannels),
            window_.begin() + static_cast<std::ptrdiff_t>(size_ * kChannels), window_.begin());
  index_ -= dropped;
  size_ -= dropped;
  base_ += static_cast<FrameIndex>(dropped);
}

bool VarispeedReader::Pull() {
  DropOlder();
  if (ended_ || ring_.read_available() == 0) return false;
  const SoundBlock& block = ring_.front();
  if (block.generation != generation_) return false;
  MakeRoom();
  std::copy_n(block.samples.begin(), block.frames * kChannels,
              window_.begin() + static_cast<std::ptrdiff_t>(size_ * kChannels));
  if (!started_) base_ = block.start - static_cast<FrameIndex>(size_);
  started_ = true;
  size_ += block.frames;
  ended_ = block.end;
  ring_.pop();
  return true;
}

void VarispeedReader::Ensure(std::size_t frames) {
  while (size_ - index_ < frames && Pull()) {
  }
}

std::size_t VarispeedReader::Read(std::span<float> target) {
  const std::size_t wanted = target.size() / kChannels;
  std::size_t done = 0;
  while (done < wanted) {
    if (!rate_.Moving() && rate_.Value() == 1.0 && fraction_ == 0.0) {
      return done + Copy(target.subspan(done * kChannels));
    }
    if (!Interpolate(&target[done * kChannels])) return done;
    Advance();
    ++done;
  }
  return done;
}

std::size_t VarispeedReader::Copy(std::span<float> target) {
  const std::size_t wanted = target.size() / kChannels;
  std::size_t done = 0;
  while (done < wanted) {
    Ensure(1);
    const std::size_t part = std::min(wanted - done, size_ - index_);
    if (part == 0) break;
    std::copy_n(window_.begin() + static_cast<std::ptrdiff_t>(index_ * kChannels), part * kChannels,
                target.begin() + static_cast<std::ptrdiff_t>(done * kChannels));
    index_ += part;
    done += part;
  }
  return done;
}

bool VarispeedReader::Interpolate(float* frame) {
  Ensure(kHistory);
  if (index_ >= size_ || (!ended_ && size_ - index_ < kHistory)) return false;
  // Above the recorded speed the kernel is stretched, so that what would fold back is filtered out.
  const double scale = std::min(1.0, 1.0 / rate_.Value());
  const auto reach = static_cast<std::ptrdiff_t>(std::ceil(SincTable::kReach / scale));
  const auto middle = static_cast<std::ptrdiff_t>(index_);
  const std::ptrdiff_t last = std::min(middle + reach, static_cast<std::ptrdiff_t>(size_) - 1);
  float left = 0;
  float right = 0;
  float sum = 0;
  for (std::ptrdiff_t at = middle - reach + 1; at <= middle + reach; ++at) {
    const double distance = std::abs(static_cast<double>(at - middle) - fraction_);
    const float weight = sinc_.At(distance * scale);
    sum += weight;
    if (at > last) continue;
    const auto sample = static_cast<std::size_t>(at) * kChannels;
    left += window_[sample] * weight;
    right += window_[sample + 1] * weight;
  }
  frame[0] = left / sum;
  frame[1] = right / sum;
  return true;
}

void VarispeedReader::Advance() {
  const bool closing = !rate_.Moving() && rate_.Value() == 1.0;
  if (closing && 1.0 - fraction_ <= kCatchUp) {
    index_ += 2;
    fraction_ = 0;
  } else {
    fraction_ += closing ? 1.0 + kCatchUp : rate_.Value();
    const double whole = std::floor(fraction_);
    index_ += static_cast<std::size_t>(whole);
    fraction_ -= whole;
    rate_.Step();
  }
  index_ = std::min(index_, size_);
}

}  // namespace kelvo
