#pragma once

#include "database/ReferenceLine.h"
#include "database/TrackPlaySettings.h"

#include <QString>

#include <optional>
#include <string_view>

namespace kelvo {

/// The lines of a track info file, from 0; line 13 is the first comment line.
namespace InfoLine {
enum Line : int {
  Categories,
  Artists,
  Albums,
  ReleaseDate,
  Bpm,
  HiPos,
  PlayMode,
  FadePosition,
  FadeSpeed,
  StartStyle,
  EndStyle,
  GainRecord,
  DurationSeconds,
  Comments,
};
}  // namespace InfoLine
inline constexpr int kFixedInfoLines = 13;

inline const QString kNoDate = QStringLiteral("0000-xxx");

/// When a track came out. A blank part is written as "0000" or "xxx".
struct ReleaseDate {
  QString year;
  QString month;  ///< three letters, "xxx" when unknown
  bool operator==(const ReleaseDate&) const = default;
};

/// What was measured of a track's loudness: the columns "volume" and "change", decibels.
struct Gain {
  double volume = 0;
  double change = 0;
  bool operator==(const Gain&) const = default;
};

/// A field of a track info file: its line, and how the text of that line is read and written. Reading takes
/// any text. `text` gives the full form, also where the file had an older, shorter one.
template <typename Value>
struct InfoField {
  InfoLine::Line line;
  Value (*read)(const QString& text);
  QString (*text)(const Value& value);
};

/// The number that is all of the text, with a point, blanks around it allowed; none for anything else.
[[nodiscard]] std::optional<double> NumberIn(std::string_view text);
/// A number as the file keeps it: decimal, "." as its point.
[[nodiscard]] QString NumberText(double number);

namespace InfoFields {
namespace Detail {
ReferenceLine ReadReferences(const QString& text);
QString ReferencesText(const ReferenceLine& references);
kelvo::ReleaseDate ReadDate(const QString& text);
QString DateText(const kelvo::ReleaseDate& date);
std::optional<double> ReadNumber(const QString& text);
QString KnownNumberText(const std::optional<double>& number);
QString DurationText(const std::optional<double>& seconds);
kelvo::PlayMode ReadPlayMode(const QString& text);
QString PlayModeText(const kelvo::PlayMode& mode);
FadePair ReadPosition(const QString& text);
FadePair ReadSpeed(const QString& text);
QString PairText(const FadePair& pair);
std::optional<int> ReadStyle(const QString& text);
QString StyleText(const std::optional<int>& style);
std::optional<Gain> ReadGain(const QString& text);
QString GainText(const std::optional<Gain>& gain);
}  // namespace Detail

inline constexpr InfoField<ReferenceLine> Categories{InfoLine::Categories, Detail::ReadReferences,
                                                     Detail::ReferencesText};
inline constexpr InfoField<ReferenceLine> Artists{InfoLine::Artists, Detail::ReadReferences,
                                                  Detail::ReferencesText};
inline constexpr InfoField<ReferenceLine> Albums{InfoLine::Albums, Detail::ReadReferences,
                                                 Detail::ReferencesText};
/// A text without "-" is the year alone.
inline constexpr InfoField<kelvo::ReleaseDate> ReleaseDate{InfoLine::ReleaseDate, Detail::ReadDate,
                                                           Detail::DateText};
/// None is "?".
inline constexpr InfoField<std::optional<double>> Bpm{InfoLine::Bpm, Detail::ReadNumber,
                                                      Detail::KnownNumberText};
inline constexpr InfoField<std::optional<double>> HiPos{InfoLine::HiPos, Detail::ReadNumber,
                                                        Detail::KnownNumberText};
/// "1,3,2". A missing kind is a dub.
inline constexpr InfoField<kelvo::PlayMode> PlayMode{InfoLine::PlayMode, Detail::ReadPlayMode,
                                                     Detail::PlayModeText};
/// "10,5", or "10" for both.
inline constexpr InfoField<FadePair> FadePosition{InfoLine::FadePosition, Detail::ReadPosition,
                                                  Detail::PairText};
inline constexpr InfoField<FadePair> FadeSpeed{InfoLine::FadeSpeed, Detail::ReadSpeed, Detail::PairText};
/// 0 soft, 1 strong; none where the line is empty.
inline constexpr InfoField<std::optional<int>> StartStyle{InfoLine::StartStyle, Detail::ReadStyle,
                                                          Detail::StyleText};
inline constexpr InfoField<std::optional<int>> EndStyle{InfoLine::EndStyle, Detail::ReadStyle,
                                                        Detail::StyleText};
/// None is "?": not measured.
inline constexpr InfoField<std::optional<Gain>> GainRecord{InfoLine::GainRecord, Detail::ReadGain,
                                                           Detail::GainText};
/// Below 0 the length is not known; none where the line holds no number.
inline constexpr InfoField<std::optional<double>> DurationSeconds{InfoLine::DurationSeconds,
                                                                  Detail::ReadNumber, Detail::DurationText};
}  // namespace InfoFields

/// The two styles as the catalogue keeps them in one text: that of the start, a comma, that of the end.
[[nodiscard]] QString StylesText(const QString& startStyle, const QString& endStyle);
struct Styles {
  int start = 0;
  int end = 0;
};
[[nodiscard]] Styles StylesIn(const QString& text);

}  // namespace kelvo
