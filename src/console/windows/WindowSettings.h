#pragma once

#include "platform/Setting.h"

namespace kelvo::setting {

// The size of the console when it was closed; 0 when it is not known.
inline constexpr NumberSetting Width{{kConStartup, QLatin1StringView("Width")}, 0, 0, kMost16};
inline constexpr NumberSetting Height{{kConStartup, QLatin1StringView("Height")}, 0, 0, kMost16};

}  // namespace kelvo::setting
