#include "database/GroupElement.h"

#include "platform/Words.h"

#include <QList>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace kelvo {
namespace {

enum Field : qsizetype { kIndex, kTime, kTrack, kDeck, kFade, kSpeed, kCode, kPosition, kLength, kFields };

constexpr int kMostNumber = 999'999'999;
/// No show and no track is longer: more than a year.
constexpr int kMostHours = 9'999;
constexpr int kMostSeconds = (kMostHours + 1) * 3600 - 1;
constexpr int kMostSpeed = 50;

const QString kRepeatIndex = QStringLiteral("Repeat");

/// A whole number within these ends, and nothing else.
std::optional<int> Number(QStringView text, int lowest, int highest) {
  bool ok = false;
  const int number = text.trimmed().toInt(&ok);
  if (!ok || number < lowest || number > highest) return std::nullopt;
  return number;
}

std::optional<double> Position(QStringView text) {
  bool ok = false;
  const double seconds = text.trimmed().toDouble(&ok);
  if (!ok || !std::isfinite(seconds) || seconds > kMostSeconds) return std::nullopt;
  if (seconds < 0 && seconds != -1) return std::nullopt;
  return seconds;
}

std::optional<SessionCode> Code(QStringView text) {
  const std::optional<int> number = Number(text, 1, static_cast<int>(SessionCode::Repeat));
  if (!number || *number % 2 == 0) return std::nullopt;
  return static_cast<SessionCode>(*number);
}

std::optional<int> Index(QStringView text, SessionCode code) {
  const std::optional<int> number = Number(text, 0, kMostNumber);
  return code == SessionCode::Repeat ? 0 : number;
}

}  // namespace

std::optional<GroupElement> GroupElement::Parse(QStringView text) {
  const QList<QStringView> fields = text.split(QLatin1Char(','));
  if (fields.size() != kFields) return std::nullopt;
  const std::optional<SessionCode> code = Code(fields[kCode]);
  if (!code) return std::nullopt;
  const std::optional<int> index = Index(fields[kIndex], *code);
  const std::optional<int> seconds = SecondsOfTime(fields[kTime]);
  const std::optional<int> track = Number(fields[kTrack], 0, kMostNumber);
  const std::optional<int> deck = Number(fields[kDeck], 2, 3);
  const std::optional<int> fade = Number(fields[kFade], 0, static_cast<int>(TransitionKind::Pan));
  const std::optional<int> speed = Number(fields[kSpeed], -1, kMostSpeed);
  const std::optional<double> position = Position(fields[kPosition]);
  const std::optional<int> length = Number(fields[kLength], 0, kMostSeconds);
  if (!index || !seconds || !track || !deck || !fade || !speed || !position || !length) return std::nullopt;
  return GroupElement{.index = *index,
                      .seconds = *seconds,
                      .track = ToMref(*track),
                      .deck = *deck,
                      .fade = static_cast<TransitionKind>(*fade),
                      .speed = *speed,
                      .code = *code,
                      .position = *position,
                      .length = *length};
}

QString GroupElement::Print() const {
  QStringList fields(kFields);
  fields[kIndex] = code == SessionCode::Repeat ? kRepeatIndex : QString::number(index);
  fields[kTime] = ElementTime(seconds);
  fields[kTrack] = QString::number(ToInt(track));
  fields[kDeck] = QString::number(deck);
  fields[kFade] = QString::number(static_cast<int>(fade));
  fields[kSpeed] = QString::number(speed);
  fields[kCode] = QString::number(static_cast<int>(code));
  fields[kPosition] = PositionText(position);
  fields[kLength] = QString::number(length);
  return fields.join(QLatin1Char(','));
}

std::optional<std::vector<GroupElement>> ParseGroupLine(QStringView line) {
  std::vector<GroupElement> elements;
  for (const QStringView text : line.split(QLatin1Char('#'))) {
    const std::optional<GroupElement> element = GroupElement::Parse(text);
    if (!element || (!elements.empty() && element->track != elements.front().track)) return std::nullopt;
    elements.push_back(*element);
  }
  if (elements.front().code != SessionCode::Loaded) return std::nullopt;
  return elements;
}

QString PrintGroupLine(const std::vector<GroupElement>& elements) {
  QStringList texts;
  for (const GroupElement& element : elements) texts.append(element.Print());
  return texts.join(QLatin1Char('#'));
}

QString RenumberedLine(const QString& line, Mref track) {
  std::optional<std::vector<GroupElement>> elements = ParseGroupLine(line);
  if (!elements || elements->front().track == track) return line;
  for (GroupElement& element : *elements) element.track = track;
  return PrintGroupLine(*elements);
}

void Sort(std::vector<GroupElement>& elements, ElementOrder order) {
  const auto place = [order](const GroupElement& element) {
    const bool repeats = element.code == SessionCode::Repeat;
    return std::tuple(repeats, element.seconds, order == ElementOrder::Eye ? ToInt(element.track) : 0,
                      element.index);
  };
  std::stable_sort(
      elements.begin(), elements.end(),
      [&place](const GroupElement& left, const GroupElement& right) { return place(left) < place(right); });
}

QString ElementTime(int seconds) {
  return HoursMinutesSeconds(seconds);
}

std::optional<int> SecondsOfTime(QStringView text) {
  text = text.trimmed();
  const bool morning = text.endsWith(QLatin1StringView("AM"), Qt::CaseInsensitive);
  const bool evening = text.endsWith(QLatin1StringView("PM"), Qt::CaseInsensitive);
  if (morning || evening) text = text.chopped(2).trimmed();
  const QList<QStringView> parts = text.split(QLatin1Char(':'));
  if (parts.size() != 2 && parts.size() != 3) return std::nullopt;
  const bool halfDay = morning || evening;
  std::optional<int> hours = Number(parts[0], halfDay ? 1 : 0, halfDay ? 12 : kMostHours);
  const std::optional<int> minutes = Number(parts[1], 0, 59);
  const std::optional<int> seconds = parts.size() == 3 ? Number(parts[2], 0, 59) : 0;
  if (!hours || !minutes || !seconds) return std::nullopt;
  if (halfDay) hours = *hours % 12 + (evening ? 12 : 0);
  return (*hours * 60 + *minutes) * 60 + *seconds;
}

QString PositionText(double seconds) {
  QString text = QString::number(seconds, 'f', 3);
  while (text.endsWith(QLatin1Char('0'))) text.chop(1);
  if (text.endsWith(QLatin1Char('.'))) text.chop(1);
  return text == QLatin1StringView("-0") ? QStringLiteral("0") : text;
}

}  // namespace kelvo
