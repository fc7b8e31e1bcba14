#include "database/InfoFields.h"

#include "platform/Words.h"

#include <QStringList>

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace kelvo {
namespace {

constexpr QLatin1Char kComma(',');
const QString kUnknown = QStringLiteral("?");

/// Anything above is a slip, not a number that the file means.
constexpr double kMostNumber = 1e9;

TransitionKind KindIn(const QString& text) {
  const int number = WholeNumber(text, 0, kMostFadePosition);
  const bool known =
      number >= static_cast<int>(TransitionKind::Dub) && number <= static_cast<int>(TransitionKind::Pan);
  return known ? static_cast<TransitionKind>(number) : TransitionKind::None;
}

FadePair PairIn(const QString& text, int most) {
  const QStringList fields = text.split(kComma);
  FadePair pair;
  pair.fadeOut = WholeNumber(fields[0], 0, most);
  if (fields.size() > 1) pair.ownFadeIn = WholeNumber(fields[1], 0, most);
  return pair;
}

}  // namespace

std::optional<double> NumberIn(std::string_view text) {
  const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  if (text.starts_with('+')) text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !(std::abs(value) < kMostNumber))
    return std::nullopt;
  return value;
}

QString NumberText(double number) {
  return QString::number(number, 'g', 12);
}

namespace InfoFields::Detail {

ReferenceLine ReadReferences(const QString& text) {
  return ReferenceLine::Parse(text);
}

QString ReferencesText(const ReferenceLine& references) {
  return references.Text();
}

kelvo::ReleaseDate ReadDate(const QString& text) {
  const qsizetype dash = text.indexOf(QLatin1Char('-'));
  if (dash < 0) return {text, QStringLiteral("xxx")};
  return {text.left(dash), text.mid(dash + 1)};
}

QString DateText(const kelvo::ReleaseDate& date) {
  const auto orUnknown = [](const QString& part, const QString& unknown) {
    return part.trimmed().isEmpty() ? unknown : part;
  };
  return orUnknown(date.year, QStringLiteral("0000")) + QLatin1Char('-') +
         orUnknown(date.month, QStringLiteral("xxx"));
}

std::optional<double> ReadNumber(const QString& text) {
  return NumberIn(text.toStdString());
}

QString KnownNumberText(const std::optional<double>& number) {
  return number ? NumberText(*number) : kUnknown;
}

QString DurationText(const std::optional<double>& seconds) {
  return NumberText(seconds.value_or(-1));
}

kelvo::PlayMode ReadPlayMode(const QString& text) {
  const QStringList fields = text.split(kComma);
  const auto kind = [&fields](qsizetype place) {
    return place < fields.size() ? KindIn(fields[place]) : TransitionKind::Dub;
  };
  return {WholeNumber(fields[0], 0, 1) == 1, kind(1), kind(2)};
}

QString PlayModeText(const kelvo::PlayMode& mode) {
  return QStringLiteral("%1,%2,%3")
      .arg(mode.custom ? 1 : 0)
      .arg(static_cast<int>(mode.fadeOut))
      .arg(static_cast<int>(mode.fadeIn));
}

FadePair ReadPosition(const QString& text) {
  return PairIn(text, kMostFadePosition);
}

FadePair ReadSpeed(const QString& text) {
  return PairIn(text, kMostFadeSpeed);
}

QString PairText(const FadePair& pair) {
  return QString::number(pair.fadeOut) + kComma + QString::number(pair.FadeIn());
}

std::optional<int> ReadStyle(const QString& text) {
  if (text.trimmed().isEmpty()) return std::nullopt;
  return WholeNumber(text, std::numeric_limits<qint16>::min(), std::numeric_limits<qint16>::max());
}

QString StyleText(const std::optional<int>& style) {
  return style ? QString::number(*style) : QString();
}

std::optional<Gain> ReadGain(const QString& text) {
  const QStringList fields = text.split(kComma);
  if (fields.size() < 2) return std::nullopt;
  const std::optional<double> volume = ReadNumber(fields[0]);
  const std::optional<double> change = ReadNumber(fields[1]);
  if (!volume || !change) return std::nullopt;
  return Gain{*volume, *change};
}

QString GainText(const std::optional<Gain>& gain) {
  return gain ? Format0Point0(gain->volume) + kComma + Format0Point0(gain->change) : kUnknown;
}

}  // namespace InfoFields::Detail

QString StylesText(const QString& startStyle, const QString& endStyle) {
  return startStyle + kComma + endStyle;
}

Styles StylesIn(const QString& text) {
  const auto style = [&text](int place) {
    return InfoFields::Detail::ReadStyle(text.section(kComma, place, place)).value_or(0);
  };
  return {style(0), style(1)};
}

}  // namespace kelvo
