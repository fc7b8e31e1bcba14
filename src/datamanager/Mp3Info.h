#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace kelvo {

struct Gain;

/// The loudness that the tool's advice leads to, in its decibels; also what the lists' volume counts from.
inline constexpr double kUnityVolume = 89;

/// The gain record of one file: what the measuring tool found, and what follows from it for the present
/// target. A value; any thread.
class Mp3Info {
 public:
  /// Decibels of one gain step of the MP3 format.
  static constexpr double kStep = 1.50514997831991;
  /// The same as the lists' column of changes counts it.
  static constexpr double kShownStep = 1.505;

  // None: not measured.
  std::optional<double> RadiodBGain;        ///< dB that bring the file to 89 dB
  std::optional<double> AlbumdBGain;        ///< the same for its album
  std::optional<double> CurrMaxAmp;         ///< peak sample, full scale is 32767
  std::optional<std::int16_t> CurrMaxGain;  ///< of all frames
  std::optional<std::int16_t> CurrMinGain;
  std::optional<double> ModifydBGain;    ///< dB that the target lies above 89
  std::optional<double> RawRadiodBGain;  ///< as the tool told it, before any change
  std::optional<double> RawAlbumdBGain;

  bool operator==(const Mp3Info&) const = default;

  /// The steps to the target, half rounded to even; 0 when it is not measured.
  [[nodiscard]] std::int16_t RadioMp3Gain() const { return Steps(RadiodBGain); }
  [[nodiscard]] std::int16_t AlbumMp3Gain() const { return Steps(AlbumdBGain); }
  /// The steps that the file takes before it clips, below 0 when it clips already; 0 where its peak is not
  /// known.
  [[nodiscard]] std::int32_t MaxNoclipMp3Gain() const;

  /// Makes the record true again after `decibels` were taken from what the file needs, which is after a gain
  /// of -`decibels` was applied to it.
  void AlterDb(double decibels);
  void ResetVals() { *this = Mp3Info(); }

  /// What the lists and the track info file show: none when it is not measured. The volume is that of the
  /// file plus what the target lies above 89: with a target of 92 a file of 86 dB reads "89.0", as the
  /// records of all existing databases do.
  [[nodiscard]] std::optional<Gain> Shown() const;

 private:
  [[nodiscard]] std::int16_t Steps(const std::optional<double>& gain) const;
};

}  // namespace kelvo
