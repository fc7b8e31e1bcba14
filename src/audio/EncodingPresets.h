#pragma once

#include "platform/Setting.h"

#include <array>
#include <optional>
#include <span>

namespace kelvo {

/// What an encoder is to do: what is left of the presets when each has had its say. A value.
struct EncodingPlan {
  enum class Rate { Constant, Average, Variable };
  Rate rate = Rate::Variable;
  int kbps = 128;      ///< of a constant or an average rate
  int vbrQuality = 4;  ///< of a variable rate: 0 best, 9 smallest
  int effort = 3;      ///< how hard the encoder searches: 0 slow and best, 9 fast
  bool mono = false;   ///< both sides become one
  bool operator==(const EncodingPlan&) const = default;
};

/// How music is encoded to MP3. A value.
struct EncodingPresets {
  int preset = 4;          ///< one of EncodingLists::Presets
  int bitRate = 128;       ///< kbit/s
  int sampleRate = 44100;  ///< Hz
  int vbrQuality = 4;      ///< 0 best, 9 smallest
  bool vbr = true;         ///< the bit rate varies with the music
  bool operator==(const EncodingPresets&) const = default;

  /// None when the text isn't five whole numbers joined by ",". The numbers themselves may be any.
  [[nodiscard]] static std::optional<EncodingPresets> FromSetting(const QString& text);
  [[nodiscard]] QString ToSetting() const;

  /// Why nothing can be encoded like this, in words for the operator; empty when it can.
  [[nodiscard]] QString WhyInvalid() const;

  /// What the encoder makes of it. A preset with a quality of its own (4, 6 to 9, 13 and 14) takes it, as the
  /// library has it under that name: 3, 2, 2, 0, 0, 4 and 4. Where the bit rate is not to vary it is constant,
  /// and they say nothing. Preset 10 is the highest constant rate, 11 an average rate, 12 a constant one. 0, 1,
  /// 2 and 5 say how hard the encoder searches; 3 makes both sides one; the quality is then VBR Quality.
  [[nodiscard]] EncodingPlan Plan() const;
  /// The same for the operator, in a sentence.
  [[nodiscard]] QString PlanWords() const;
};

/// What each of the values may be.
namespace EncodingLists {

struct Preset {
  int number;
  const char* words;
};
inline constexpr std::array kPresets{Preset{0, "Normal Quality"},
                                     Preset{1, "Low Quality"},
                                     Preset{2, "High Quality"},
                                     Preset{3, "Voice"},
                                     Preset{4, "R3 Mix"},
                                     Preset{5, "Very High Quality"},
                                     Preset{6, "Standard"},
                                     Preset{7, "Fast Standard"},
                                     Preset{8, "Extreme"},
                                     Preset{9, "Fast Extreme"},
                                     Preset{10, "Insane"},
                                     Preset{11, "Average Bit Rate"},
                                     Preset{12, "Constant Bit Rate"},
                                     Preset{13, "Medium"},
                                     Preset{14, "Fast Medium"}};
inline constexpr std::array kBitRates{32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256};
inline constexpr std::array kSampleRates{16000, 22050, 24000, 32000, 44100, 48000};
inline constexpr std::array kVbrQualities{0, 1, 2, 3, 4, 5, 6, 7, 8, 9};

}  // namespace EncodingLists

namespace setting {

inline constexpr RecordSetting<kelvo::EncodingPresets> Presets{
    {QLatin1StringView("Mp3Encoding"), QLatin1StringView("Presets")}, QLatin1StringView()};

}  // namespace setting

}  // namespace kelvo
