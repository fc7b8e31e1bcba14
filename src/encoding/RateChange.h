#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

struct soxr;

namespace kelvo {

/// Brings 16-bit stereo from one sample rate to another, with libsoxr. One thread at a time.
class RateChange {
 public:
  /// Throws Failure.
  RateChange(int from, int to);
  /// The sound at the other rate, interleaved, as far as it is known; good until the next call.
  [[nodiscard]] std::span<const std::int16_t> Take(std::span<const std::int16_t> sound);
  /// What is left at the end, piece by piece; empty when all is out.
  [[nodiscard]] std::span<const std::int16_t> Rest();

 private:
  struct Deleter {
    void operator()(soxr* state) const;
  };
  [[nodiscard]] std::span<const std::int16_t> Process(const std::int16_t* from, std::size_t frames);

  std::unique_ptr<soxr, Deleter> state_;
  double ratio_;
  std::vector<std::int16_t> out_;
};

}  // namespace kelvo
