#pragma once

#include <array>
#include <cstddef>

namespace kelvo {

/// The windowed sinc that the varispeed reader interpolates with, one half of it, tabulated. Exactly 1 at 0
/// and exactly 0 at every other whole number, so that reading at whole positions is a copy.
class SincTable {
 public:
  /// Zero crossings on each side.
  static constexpr int kReach = 16;

  /// The one table; built at the first call, so not to be called first from a device's callback.
  [[nodiscard]] static const SincTable& Get();

  /// The value at `distance` >= 0.
  [[nodiscard]] float At(double distance) const {
    const double place = distance * kSteps;
    const auto index = static_cast<std::size_t>(place);
    if (index >= kSteps * kReach) return 0.0F;
    const auto part = static_cast<float>(place - static_cast<double>(index));
    return values_[index] + (values_[index + 1] - values_[index]) * part;
  }

 private:
  static constexpr std::size_t kSteps = 512;
  SincTable();
  std::array<float, kSteps * kReach + 2> values_{};
};

}  // namespace kelvo
