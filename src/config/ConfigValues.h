#pragma once

#include "audio/EncodingPresets.h"
#include "audio/MonitorSettings.h"
#include "console/automatic/AutoPlay.h"
#include "console/decks/DeckSettings.h"
#include "console/desk/ColourSettings.h"
#include "console/desk/ScopeSettings.h"
#include "console/status/StatusTick.h"
#include "console/transitions/Transitions.h"
#include "database/DatabaseSettings.h"

namespace kelvo {

/// The settings as the configuration offers them: those of the desk, with the range of a slider. Two of them
/// have a default of their own here, which the desk gets with the first save.
namespace configured {

[[nodiscard]] constexpr NumberSetting OnSlider(const NumberSetting& of, int lowest, int highest) {
  return {of.place, of.fallback, lowest, highest};
}
inline constexpr NumberSetting DefaultDelta = OnSlider(setting::DefaultDelta, 0, 60);
inline constexpr NumberSetting DefaultFadeSpeed = OnSlider(setting::DefaultFadeSpeed, 0, 50);
inline constexpr NumberSetting SpectralDisplay = setting::SpectralDisplay;
inline constexpr NumberSetting FFwFRev = OnSlider(setting::FFwFRev, 1, 60);
inline constexpr NumberSetting PrevSecs = OnSlider(setting::PrevSecs, 1, 120);
inline constexpr NumberSetting PanFadeBias{setting::PanFadeBias.place, 15, 1, 30};
inline constexpr NumberSetting JukeLag = OnSlider(setting::JukeLag, 1, 4);
inline constexpr SwitchSetting AudioWarnings{setting::AudioWarnings.place, true};

}  // namespace configured

/// What stands in the configuration: at first the defaults. A value.
struct ConfigValues {
  int DefaultDelta = configured::DefaultDelta.fallback;  ///< seconds
  int DefaultFadeSpeed = configured::DefaultFadeSpeed.fallback;
  bool AfadeSet = setting::AfadeSet.fallback;
  int SpectralDisplay = configured::SpectralDisplay.fallback;
  bool FixTrackDurErrors = setting::FixTrackDurErrors.fallback;
  bool AudioWarnings = configured::AudioWarnings.fallback;
  int FFwFRev = configured::FFwFRev.fallback;    ///< seconds
  int PrevSecs = configured::PrevSecs.fallback;  ///< seconds
  int PanFadeBias = configured::PanFadeBias.fallback;
  int JukeLag = configured::JukeLag.fallback;  ///< seconds
  Colour ConBackCol = setting::ConBackCol.fallback;
  Colour DeckBackCol = setting::DeckBackCol.fallback;
  Colour SlistsBackCol = setting::SlistsBackCol.fallback;
  Colour SbitesBackCol = setting::SbitesBackCol.fallback;
  EncodingPresets Presets;
  int PFLDevice = setting::PFLDevice.fallback;
  QString PFLDeviceName = QString(setting::PFLDeviceName.fallback);
  QString PFLDeviceId;
  bool operator==(const ConfigValues&) const = default;
};

/// Calls `visit(declaration, member)` for each setting of ConfigValues. The id of the monitor's device comes
/// last: the monitor follows it.
template <typename Visit>
void ForEachSetting(Visit visit) {
  visit(configured::DefaultDelta, &ConfigValues::DefaultDelta);
  visit(configured::DefaultFadeSpeed, &ConfigValues::DefaultFadeSpeed);
  visit(setting::AfadeSet, &ConfigValues::AfadeSet);
  visit(configured::SpectralDisplay, &ConfigValues::SpectralDisplay);
  visit(setting::FixTrackDurErrors, &ConfigValues::FixTrackDurErrors);
  visit(configured::AudioWarnings, &ConfigValues::AudioWarnings);
  visit(configured::FFwFRev, &ConfigValues::FFwFRev);
  visit(configured::PrevSecs, &ConfigValues::PrevSecs);
  visit(configured::PanFadeBias, &ConfigValues::PanFadeBias);
  visit(configured::JukeLag, &ConfigValues::JukeLag);
  visit(setting::ConBackCol, &ConfigValues::ConBackCol);
  visit(setting::DeckBackCol, &ConfigValues::DeckBackCol);
  visit(setting::SlistsBackCol, &ConfigValues::SlistsBackCol);
  visit(setting::SbitesBackCol, &ConfigValues::SbitesBackCol);
  visit(setting::Presets, &ConfigValues::Presets);
  visit(setting::PFLDevice, &ConfigValues::PFLDevice);
  visit(setting::PFLDeviceName, &ConfigValues::PFLDeviceName);
  visit(setting::PFLDeviceId, &ConfigValues::PFLDeviceId);
}

/// What is stored; where that is missing or nonsense, the default.
[[nodiscard]] ConfigValues ReadConfig(const ProgramSettings& settings);
void WriteConfig(const ProgramSettings& settings, const ConfigValues& values);

/// One line of what can be set back to its default.
struct ResetRow {
  const char* words;
  void (*copy)(const ConfigValues& from, ConfigValues& to);
};
[[nodiscard]] const std::array<ResetRow, 13>& ResetRows();

}  // namespace kelvo
