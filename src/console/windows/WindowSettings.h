#pragma once

#include "platform/Setting.h"

namespace kelvo::setting {

// The colours of the four groups of panels.
inline constexpr ColourSetting ConBackCol{{kStartup, QLatin1StringView("ConBackCol")}, {164, 117, 56}};
inline constexpr ColourSetting DeckBackCol{{kStartup, QLatin1StringView("DeckBackCol")}, {44, 166, 211}};
inline constexpr ColourSetting SbitesBackCol{{kStartup, QLatin1StringView("SbitesBackCol")}, {44, 166, 211}};
inline constexpr ColourSetting SlistsBackCol{{kStartup, QLatin1StringView("SlistsBackCol")}, {66, 189, 166}};
// The size of the console when it was closed; 0 when it is not known.
inline constexpr NumberSetting Width{{kConStartup, QLatin1StringView("Width")}, 0, 0, kMost16};
inline constexpr NumberSetting Height{{kConStartup, QLatin1StringView("Height")}, 0, 0, kMost16};

}  // namespace kelvo::setting
