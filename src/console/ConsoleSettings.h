#pragma once

#include "console/decks/DeckEngine.h"
#include "database/TrackInfo.h"

#include <QString>
#include <QStringList>

#include <array>
#include <cstdint>
#include <optional>

namespace kelvo {

class SettingsStore;

/// A colour as the settings keep it: three whole numbers 0 to 255.
struct Colour {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  bool operator==(const Colour&) const = default;
  /// Three numbers joined by ","; none when the text is anything else.
  [[nodiscard]] static std::optional<Colour> FromText(const QString& text);
  [[nodiscard]] QString ToText() const;
};

/// The four groups of panels that have a colour of their own.
enum class ColourGroup { Console, Decks, SoundBites, Lists };

/// The sliders and buttons that the desk finds again at its next start.
struct JingleSettings {
  int jingleVolume = 0;             ///< `SldJingVol`
  int autoFadeDepth = 1000;         ///< `SldAfade`, 0..2000
  int autoFadeSpeed = 5;            ///< `SldAfSpd`, 1..10
  std::array<QString, 4> captions;  ///< of the four jingle buttons
  std::array<QString, 4> tags;
  QStringList filters;  ///< what stands behind: the words of the filter boxes
};

struct PlaySettings {
  int fadeSpeed = 25;     ///< `SldFadeSp`, 0..50
  int delta = 3;          ///< `SldDelta`, seconds
  int monitorVolume = 0;  ///< `SldPflVol`
};

/// What the program reads from the settings store at its start. Defaults are those of a first start.
struct ConsoleSettings {
  TrackDefaults defaults;
  DeckSettings decks;
  int JukeLag = 2;  ///< seconds
  bool DmanAccess = true;
  QString DmanPassWord;
  QString AudioWarningFilePath;
  bool AudioWarningsOn = false;
  int PanFadeBias = 12;
  int PrevSecs = 15;
  int SpectralDisplay = 5;
  int PFLDevice = -1;
  QString PFLDeviceName;
  JingleSettings jingles;
  PlaySettings play;
};

/// Reads all of it; what is missing or no number takes its default. `programFolder` holds the default warning
/// sound.
[[nodiscard]] ConsoleSettings ReadConsoleSettings(const SettingsStore& store, const QString& title,
                                                  const QString& programFolder);

/// The colour setting of a group; none when its text is no colour.
[[nodiscard]] std::optional<Colour> ReadColour(const SettingsStore& store, const QString& title,
                                               ColourGroup group);

/// What the desk writes when it closes.
void SaveConsoleSettings(SettingsStore& store, const QString& title, const ConsoleSettings& settings,
                         int width, int height);

}  // namespace kelvo
