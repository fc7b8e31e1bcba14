#pragma once

#include <cstdint>
#include <random>

namespace kelvo {

/// The one source of chance, handed to whoever draws: a test gives it a seed and sees the same evening twice.
class RandomSource {
 public:
  /// Seeded from the system.
  RandomSource() : engine_(std::random_device{}()) {}
  explicit RandomSource(std::uint64_t seed) : engine_(seed) {}

  /// 0 up to, not including, 1.
  [[nodiscard]] double Next() { return static_cast<double>(engine_() >> 11) * 0x1.0p-53; }
  /// A whole number 0 .. count - 1; `count` at least 1.
  [[nodiscard]] int Below(int count) { return static_cast<int>(Next() * count); }

 private:
  std::mt19937_64 engine_;
};

}  // namespace kelvo
