#include "audio/engine/SincTable.h"

#include <cmath>
#include <numbers>

namespace kelvo {

namespace {

/// About 90 dB of stop band.
constexpr double kKaiserBeta = 9.0;

double Bessel(double x) {
  double sum = 1.0;
  double term = 1.0;
  for (int k = 1; k < 40; ++k) {
    term *= (x / 2 / k) * (x / 2 / k);
    sum += term;
  }
  return sum;
}

}  // namespace

SincTable::SincTable() {
  values_[0] = 1.0F;
  for (std::size_t i = 1; i < kSteps * kReach; ++i) {
    if (i % kSteps == 0) continue;
    const double x = static_cast<double>(i) / static_cast<double>(kSteps);
    const double edge = x / kReach;
    const double window = Bessel(kKaiserBeta * std::sqrt(1.0 - edge * edge)) / Bessel(kKaiserBeta);
    values_[i] = static_cast<float>(std::sin(std::numbers::pi * x) / (std::numbers::pi * x) * window);
  }
}

const SincTable& SincTable::Get() {
  static const SincTable table;
  return table;
}

}  // namespace kelvo
