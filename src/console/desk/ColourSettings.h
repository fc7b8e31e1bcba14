#pragma once

#include "platform/Setting.h"

namespace kelvo::setting {

// The colours of the four groups of panels.
inline constexpr ColourSetting ConBackCol{{kStartup, QLatin1StringView("ConBackCol")}, {164, 117, 56}};
inline constexpr ColourSetting DeckBackCol{{kStartup, QLatin1StringView("DeckBackCol")}, {44, 166, 211}};
inline constexpr ColourSetting SbitesBackCol{{kStartup, QLatin1StringView("SbitesBackCol")}, {44, 166, 211}};
inline constexpr ColourSetting SlistsBackCol{{kStartup, QLatin1StringView("SlistsBackCol")}, {66, 189, 166}};

}  // namespace kelvo::setting
