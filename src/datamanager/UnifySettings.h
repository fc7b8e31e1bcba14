#pragma once

#include "platform/Setting.h"

namespace kelvo::setting {

inline constexpr QLatin1StringView kMpGain("MpGain");

/// The target of the volume unify in decibels: its whole part, and its tenths.
inline constexpr NumberSetting GainInt{{kMpGain, QLatin1StringView("GainInt")}, 89, 75, 105};
inline constexpr NumberSetting GainDec{{kMpGain, QLatin1StringView("GainDec")}, 0, 0, 9};

}  // namespace kelvo::setting
