#pragma once

#include "platform/Setting.h"

namespace kelvo::setting {

/// The sound device on which the monitor is heard: its number, and its name, which counts.
inline constexpr NumberSetting PFLDevice{{kStartup, QLatin1StringView("PFLDevice")}, -1, -1, kMost32};
inline constexpr TextSetting PFLDeviceName{{kStartup, QLatin1StringView("PFLDeviceName")},
                                           QLatin1StringView("None")};

}  // namespace kelvo::setting
