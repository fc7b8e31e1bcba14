#pragma once

#include <QString>

#include <algorithm>
#include <array>
#include <optional>

namespace kelvo {

/// The tempo that a list is to have from its beginning to its end, in beats per minute: a line through some
/// points at equal distances, between a lowest and a highest tempo. A value.
class TempoOutline {
 public:
  static constexpr int kPoints = 12;
  static constexpr int kLowest = 40;
  static constexpr int kHighest = 220;

  [[nodiscard]] int Low() const { return low_; }
  [[nodiscard]] int High() const { return high_; }
  /// `point` from 0, the beginning, to kPoints - 1, the end.
  [[nodiscard]] int Bpm(int point) const { return bpm_[static_cast<std::size_t>(point)]; }
  /// The tempo at a place of the list, 0 to 1.
  [[nodiscard]] double At(double share) const;
  [[nodiscard]] bool Allows(double bpm) const { return bpm >= low_ && bpm <= high_; }

  // What is set stays inside of the other limits; the points keep between the two ends.
  void SetLow(int bpm);
  void SetHigh(int bpm);
  void SetBpm(int point, int bpm);

  /// "low,high,point,point,..."; none for a text that is anything else.
  [[nodiscard]] static std::optional<TempoOutline> FromSetting(const QString& text);
  [[nodiscard]] QString ToSetting() const;

  bool operator==(const TempoOutline&) const = default;

 private:
  void HoldPoints();

  int low_ = 60;
  int high_ = 180;
  std::array<int, kPoints> bpm_ = {100, 104, 108, 112, 116, 120, 124, 126, 128, 128, 124, 116};
};

}  // namespace kelvo
