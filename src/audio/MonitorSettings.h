#pragma once

#include "platform/Setting.h"

namespace kelvo::setting {

/// The sound device on which the monitor is heard: its number and its name, and
/// what the sound server knows it by, which counts where it is told.
inline constexpr NumberSetting PFLDevice{{kStartup, QLatin1StringView("PFLDevice")}, -1, -1, kMost32};
inline constexpr TextSetting PFLDeviceName{{kStartup, QLatin1StringView("PFLDeviceName")},
                                           QLatin1StringView("None")};
inline constexpr TextSetting PFLDeviceId{{kStartup, QLatin1StringView("PFLDeviceId")}, QLatin1StringView("")};

}  // namespace kelvo::setting
