#pragma once

#include "database/TrackInfo.h"

#include <QString>
#include <QStringList>

#include <array>

namespace kelvo {

/// The two panels of the editor, in the order in which the file keeps their numbers: how the next track comes
/// in over the end of this one, and how the track before goes out under the start of this one.
enum class FadePanel { In = 0, Out = 1 };
inline constexpr std::array kFadePanels{FadePanel::In, FadePanel::Out};
[[nodiscard]] constexpr std::size_t PlaceOf(FadePanel panel) {
  return static_cast<std::size_t>(panel);
}

/// What a panel holds. A value.
struct FadeEdit {
  TransitionKind kind = TransitionKind::None;  ///< None: the file names none
  int position = 0;                            ///< seconds, 0..kMostFadePosition
  int speed = 0;                               ///< 0..kMostFadeSpeed
  bool operator==(const FadeEdit&) const = default;
};

/// The sets of names of a track, by the lines of its file.
inline constexpr std::size_t kNameSets = 3;
inline constexpr std::array kNameLines{InfoLine::Categories, InfoLine::Artists, InfoLine::Albums};

/// A track info file as the editor shows it. A value; any thread.
struct PlayEdit {
  std::array<QStringList, kNameSets> names;  ///< genres, artists, albums, without the system's own
  QString year;
  QString month;  ///< three letters
  QString bpm;
  QString hi;
  bool ownFades = false;          ///< the panels count; otherwise the default table of automatic play
  std::array<FadeEdit, 2> fades;  ///< by PlaceOf
  bool startStrong = true;
  bool endStrong = false;
  int duration = -1;  ///< whole seconds; below 0 unknown
  QString comments;   ///< lines joined by "\n"
  bool operator==(const PlayEdit&) const = default;

  [[nodiscard]] FadeEdit& Fade(FadePanel panel) { return fades[PlaceOf(panel)]; }
  [[nodiscard]] const FadeEdit& Fade(FadePanel panel) const { return fades[PlaceOf(panel)]; }
};

/// Reads whatever the file says.
[[nodiscard]] PlayEdit ReadPlayEdit(const TrackInfo& info, const TrackDefaults& defaults);
/// For a track without a file.
[[nodiscard]] PlayEdit DefaultPlayEdit(const TrackDefaults& defaults);
/// What the operator made of `before`, on a file that says `now` by this time: a field that they left alone
/// is what it is there.
[[nodiscard]] PlayEdit MergedEdit(const PlayEdit& before, const PlayEdit& edit, const PlayEdit& now);
/// Writes all lines but the gain in their full form. Comments that are as they were stay byte for byte.
void WritePlayEdit(const PlayEdit& edit, const TrackDefaults& defaults, TrackInfo& info);

/// What the fades of the edit make of the track, for the decisions of automatic play.
[[nodiscard]] TrackPlaySettings PlaySettingsOf(const PlayEdit& edit);

/// "xxx", "Jan" to "Dec".
[[nodiscard]] const QStringList& MonthNames();
/// Whether the text is what a file may hold as Bpm or as chart position: a number, "?", or nothing.
[[nodiscard]] bool IsFigure(const QString& text);

/// The text of an info file that is to be imported: its comments, or the line that is not as in such a file.
struct ImportedText {
  int badLine = 0;  ///< from 1; 0: all are good
  QStringList comments = {};
};
[[nodiscard]] ImportedText TextOfInfoFile(const TrackInfo& info, qsizetype lines);

}  // namespace kelvo
