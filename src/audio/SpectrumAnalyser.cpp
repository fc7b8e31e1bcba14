#include "audio/SpectrumAnalyser.h"

#include "audio/FftwPlanner.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <numbers>

namespace kelvo {

namespace {

constexpr double kLowest = 20;
constexpr double kHighest = 20'000;
constexpr double kLineHertz = double{kEngineRate} / SpectrumAnalyser::kWindow;
constexpr std::size_t kLines = SpectrumAnalyser::kWindow / 2;

}  // namespace

/// The library's transform, and the places that it works on. The left side is the real part and the right one
/// the imaginary part, so one transform does for both.
struct SpectrumAnalyser::Transform {
  struct Free {
    void operator()(fftwf_complex* values) const { fftwf_free(values); }
  };
  using Values = std::unique_ptr<fftwf_complex[], Free>;

  Values sound{fftwf_alloc_complex(kWindow)};
  Values lines{fftwf_alloc_complex(kWindow)};
  fftwf_plan plan = nullptr;

  Transform() {
    if (!sound || !lines) throw std::bad_alloc();
    LetThreadsPlan();
    plan = fftwf_plan_dft_1d(kWindow, sound.get(), lines.get(), FFTW_FORWARD, FFTW_ESTIMATE);
    if (plan == nullptr) throw std::bad_alloc();
  }
  ~Transform() { fftwf_destroy_plan(plan); }
  Transform(const Transform&) = delete;
  Transform& operator=(const Transform&) = delete;
};

SpectrumAnalyser::SpectrumAnalyser()
    : transform_(std::make_unique<Transform>()), window_(kWindow), powers_(kLines) {
  for (std::size_t i = 0; i < kWindow; ++i) {
    const double turn = 2 * std::numbers::pi * static_cast<double>(i) / kWindow;
    window_[i] = static_cast<float>(0.5 - 0.5 * std::cos(turn));
  }
  for (std::size_t band = 0; band < kBands; ++band) {
    const auto line = [&](double place) {
      return PitchAt((static_cast<double>(band) + place) / kBands) / kLineHertz;
    };
    reaches_[band] = {.first = static_cast<std::size_t>(std::ceil(line(0))),
                      .last = static_cast<std::size_t>(line(1)),
                      .below = static_cast<std::size_t>(line(0.5)),
                      .share = static_cast<float>(line(0.5) - std::floor(line(0.5)))};
  }
  Clear();
}

SpectrumAnalyser::~SpectrumAnalyser() = default;

double SpectrumAnalyser::PitchAt(double place) {
  return kLowest * std::pow(kHighest / kLowest, place);
}

double SpectrumAnalyser::PlaceOf(double hertz) {
  return std::log(hertz / kLowest) / std::log(kHighest / kLowest);
}

std::size_t SpectrumAnalyser::BandOf(double hertz) {
  return static_cast<std::size_t>(std::clamp(PlaceOf(hertz) * kBands, 0.0, kBands - 1.0));
}

/// Of the louder side.
float SpectrumAnalyser::PowerOf(std::size_t line) const {
  const auto& one = transform_->lines[line];
  const auto& other = transform_->lines[line == 0 ? 0 : kWindow - line];
  const float leftReal = one[0] + other[0];
  const float leftImaginary = one[1] - other[1];
  const float rightReal = one[1] + other[1];
  const float rightImaginary = other[0] - one[0];
  return std::max(leftReal * leftReal + leftImaginary * leftImaginary,
                  rightReal * rightReal + rightImaginary * rightImaginary);
}

const SpectrumAnalyser::Levels& SpectrumAnalyser::Take(std::span<const float> sound, double seconds) {
  for (std::size_t i = 0; i < kWindow; ++i) {
    transform_->sound[i][0] = window_[i] * sound[i * kChannels];
    transform_->sound[i][1] = window_[i] * sound[i * kChannels + 1];
  }
  fftwf_execute(transform_->plan);
  for (std::size_t line = 0; line < kLines; ++line) powers_[line] = PowerOf(line);

  // A sine of full scale has half of the window's sum in its line; PowerOf gives four times its square.
  constexpr float kFullScale = float{kWindow / 2} * float{kWindow / 2};
  const auto fall = static_cast<float>(kFallPerSecond * seconds);
  for (std::size_t band = 0; band < kBands; ++band) {
    const Reach& reach = reaches_[band];
    float power = powers_[reach.below] + (powers_[reach.below + 1] - powers_[reach.below]) * reach.share;
    for (std::size_t line = reach.first; line <= reach.last; ++line) power = std::max(power, powers_[line]);
    const float level = 10 * std::log10(std::max(power / kFullScale, 1e-9F));
    levels_[band] = std::max({level, levels_[band] - fall, kFloor});
  }
  return levels_;
}

}  // namespace kelvo
