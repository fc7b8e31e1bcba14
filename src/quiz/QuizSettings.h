#pragma once

#include "platform/Setting.h"

namespace kelvo::setting {

inline constexpr QLatin1StringView kPopQuiz("PopQuiz");

/// The fields of QuizSetup, as JoinFields writes them.
inline constexpr TextSetting QuizSettings{{kPopQuiz, QLatin1StringView("Settings")},
                                          QLatin1StringView("None")};
/// The console is turned down while the quiz is heard.
inline constexpr TruthSetting QuizDipsConsole{{kPopQuiz, QLatin1StringView("DipConsole")}, false};

}  // namespace kelvo::setting
