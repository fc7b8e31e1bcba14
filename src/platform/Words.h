#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

namespace kelvo {

/// The greatest whole number not above `value` (Int(-1.5) is -2); clamped to 64 bits, 0 for no number.
[[nodiscard]] qint64 Int(double value);

/// The number that a text begins with: leading blanks are passed over, then sign, digits, one point, an
/// exponent ("1e3", "1d3") and blanks between the digits; 0 when there is none. "&H1F" is hexadecimal, "&O17"
/// octal. The point is always ".".
[[nodiscard]] double Val(QStringView text);

/// A whole number field of a settings list: Val, rounded half to even, clamped to the range.
[[nodiscard]] int WholeNumber(QStringView text, int lowest, int highest);
/// A truth value as settings keep it: "True", "-1", "1" (any number but 0) are true, "False", "0" are false,
/// in any case; anything else gives `fallback`.
[[nodiscard]] bool TruthValue(QStringView text, bool fallback);
[[nodiscard]] QString TruthText(bool value);

/// Formats: Format00 "00", Format0 "#0", Format000 "#0.00", Format0Point0 "0.0"; half rounds away from zero.
[[nodiscard]] QString Format00(qint64 value);
[[nodiscard]] QString Format0(double value);
[[nodiscard]] QString Format000(double value);
[[nodiscard]] QString Format0Point0(double value);

/// Seconds as minutes and seconds, each "00" ("61:05" for an hour and 65 seconds); below 0 counts as 0.
[[nodiscard]] QString MinutesSeconds(double seconds);
/// The length of a track as MinutesSeconds; "?" when it is not known (below 0).
[[nodiscard]] QString LengthText(double seconds);
/// Seconds as hours, minutes and seconds, each "00".
[[nodiscard]] QString HoursMinutesSeconds(qint64 seconds);

/// Proper case by words: the first letter of each word upper case, the others lower case. A word begins
/// behind a blank or another white space, and behind "(".
[[nodiscard]] QString ProperCase(const QString& text);

/// A number with its noun: "1 file", "2 files".
[[nodiscard]] QString Counted(qint64 number, const QString& one, const QString& many);

/// Letters without accents, in lower case: what a person who types in a hurry means.
[[nodiscard]] QString FoldedText(const QString& text);

/// The name without its last extension ("Artist - Title" of "Artist - Title.mp3"); a name that begins with
/// its only dot has no extension.
[[nodiscard]] QString BaseName(const QString& fileName);
/// The extension behind the last dot, upper case; empty when there is none.
[[nodiscard]] QString UpperExtension(const QString& fileName);

}  // namespace kelvo
