#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <random>
#include <vector>

namespace kelvo::testing {

/// Interleaved stereo sound at some rate.
using Samples = std::vector<float>;

/// A sine of `hertz` on both sides, at half of full scale.
[[nodiscard]] Samples Sine(double hertz, double seconds, int rate = 44100);
/// Sound that repeats nowhere, so that a sample tells its place: for bit-exact comparisons. In 16-bit steps, and
/// so quiet that no limiter touches it.
[[nodiscard]] Samples Noise(std::size_t frames, std::uint32_t seed = 1);

struct WaveKind {
  int rate = 44100;
  int channels = 2;  ///< 1 takes the left side; above 2 the rest is a constant
  enum class Coding { Pcm16, Float32 } coding = Coding::Pcm16;
  enum class Header { Right, SizesZero, SizesOpen } header = Header::Right;
};
[[nodiscard]] QByteArray WaveFile(const Samples& sound, const WaveKind& kind = {});
/// A WAV file around `mpeg`.
[[nodiscard]] QByteArray WaveAroundMpeg(const QByteArray& mpeg);

enum class Mp3Kind { Cbr, VbrWithoutHeader };
[[nodiscard]] QByteArray Mp3File(const Samples& sound, Mp3Kind kind = Mp3Kind::Cbr, int rate = 44100);

/// Chance with a seed that a failing test can tell.
class Dice {
 public:
  explicit Dice(unsigned seed = std::random_device{}()) : seed_(seed), generator_(seed) {}
  [[nodiscard]] unsigned Seed() const { return seed_; }
  [[nodiscard]] int Below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(generator_); }
  [[nodiscard]] double Between(double least, double most) {
    return std::uniform_real_distribution<double>(least, most)(generator_);
  }

 private:
  unsigned seed_;
  std::mt19937 generator_;
};

/// Writes `bytes` to `path`.
void Save(const QString& path, const QByteArray& bytes);

/// The amplitude of `hertz` on the left side of the last `frames` frames, which hold whole waves of it.
[[nodiscard]] double Amplitude(const Samples& sound, double hertz, std::size_t frames);
/// All that is not the tone, against the tone: in decibels. Else as Amplitude.
[[nodiscard]] double Distortion(const Samples& sound, double hertz, std::size_t frames);

/// The largest step between neighbouring samples of one side.
[[nodiscard]] float LargestStep(const Samples& sound);

}  // namespace kelvo::testing
