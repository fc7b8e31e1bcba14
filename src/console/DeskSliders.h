#pragma once

#include "database/TrackInfo.h"
#include "platform/Setting.h"

#include <QString>
#include <QStringList>

#include <array>

namespace kelvo {

/// Sliders, buttons and filter boxes that the desk finds again at its next start. A value.
struct JingleSettings {
  int jingleVolume = 0;             ///< `SldJingVol`
  int autoFadeDepth = 1000;         ///< `SldAfade`, 0..2000
  int autoFadeSpeed = 5;            ///< `SldAfSpd`, 1..10
  std::array<QString, 4> captions;  ///< of the buttons of the jingles bank but the first
  std::array<QString, 4> tags;      ///< the whole names of their bites
  QStringList filters;  ///< all that follows: the words of the filter boxes

  [[nodiscard]] static JingleSettings FromSetting(const QString& text);
  [[nodiscard]] QString ToSetting() const;
};

/// More of them. A value.
struct PlaySettings {
  int fadeSpeed = 25;     ///< `SldFadeSp`, 0..50
  int delta = 3;          ///< `SldDelta`, seconds
  int monitorVolume = 0;  ///< `SldPflVol`

  /// Where the sliders are when nothing is stored.
  [[nodiscard]] static PlaySettings Of(const TrackDefaults& defaults);
  [[nodiscard]] static PlaySettings FromSetting(const QString& text);
  [[nodiscard]] QString ToSetting() const;
};

namespace setting {

inline constexpr RecordSetting<kelvo::JingleSettings> JingleSettings{
    {kConStartup, QLatin1StringView("JingleSettings")}, QLatin1StringView("NoJing")};
/// The bite of the first button of the jingles bank, for which the list above has no field.
inline constexpr TextSetting FirstJingle{{kConStartup, QLatin1StringView("FirstJingle")}};
inline constexpr RecordSetting<kelvo::PlaySettings> PlaySettings{
    {kConStartup, QLatin1StringView("PlaySettings")}, QLatin1StringView("NoPlay")};
/// The desk writes the bias of its run here, and nobody reads it: the bias of the next start is
/// setting::PanFadeBias, which is the configuration's alone to change.
inline constexpr NumberSetting LastPanFadeBias{
    {kConStartup, QLatin1StringView("PanFadeBias")}, 12, -kMost16, kMost16};

}  // namespace setting
}  // namespace kelvo
