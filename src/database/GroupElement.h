#pragma once

#include "database/SessionCode.h"
#include "database/TextColumns.h"
#include "database/TransitionKind.h"

#include <QString>

#include <optional>
#include <vector>

namespace kelvo {

/// A step of a group playlist: what is done to a deck, and when. A value; any thread.
///
/// Its text is nine fields joined by ",": number, time, track, deck, fade, speed, code, position, length.
struct GroupElement {
  int index = 0;            ///< its number in the list as it was saved, from 1; 0 for the repeat mark
  int seconds = 0;          ///< when, from any start: only distances count
  Mref track = Mref::None;  ///< the number that the track had when the list was saved: which track it is
                            ///< today, the entry tells that the line is of (see RenumberedLine)
  int deck = 2;             ///< the number of the deck's player, 2 or 3
  TransitionKind fade = TransitionKind::None;
  int speed = -1;  ///< of a fade, 1 to 50; else -1
  SessionCode code = SessionCode::Loaded;
  double position = -1;  ///< of the track, seconds; -1 where it does not apply
  int length = 0;        ///< of the track, whole seconds

  /// None for a text that is no element: another number of fields, no number where one has to be, a deck, a
  /// fade or a code that does not exist, a number out of its range.
  [[nodiscard]] static std::optional<GroupElement> Parse(QStringView text);
  [[nodiscard]] QString Print() const;

  bool operator==(const GroupElement&) const = default;
};

/// The line of a track in a group playlist: its elements, joined by "#". The first one loads it, all are of
/// the same track. None for a text that is no such line.
[[nodiscard]] std::optional<std::vector<GroupElement>> ParseGroupLine(QStringView line);
[[nodiscard]] QString PrintGroupLine(const std::vector<GroupElement>& elements);

/// The line with the number that its track has today; a text that is no line comes back as it is.
[[nodiscard]] QString RenumberedLine(const QString& line, Mref track);

/// By time. Equal times come in the order of their numbers, in which the list was saved; for the eye, tracks
/// are kept together first. The repeat mark is always last.
enum class ElementOrder { Run, Eye };
void Sort(std::vector<GroupElement>& elements, ElementOrder order);

/// A time as elements have it, "00:12:34"; the hours go on beyond a day.
[[nodiscard]] QString ElementTime(int seconds);
/// Also with one digit for the hours, without seconds, or with "AM" or "PM" behind, as other systems write
/// it; none for a text that is no time.
[[nodiscard]] std::optional<int> SecondsOfTime(QStringView text);

/// A position of a track as elements and lists have it: seconds, to the millisecond at most.
[[nodiscard]] QString PositionText(double seconds);

}  // namespace kelvo
