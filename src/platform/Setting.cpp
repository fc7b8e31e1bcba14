#include "platform/Setting.h"

#include "platform/Words.h"

#include <array>

namespace kelvo {
namespace {

/// Whether "%" and what follows at `place` of a field could be taken for an escape.
bool IsEscape(QStringView text, qsizetype place) {
  const QStringView code = text.sliced(place).first(std::min<qsizetype>(3, text.size() - place));
  return code.compare(u"%2C", Qt::CaseInsensitive) == 0 || code == u"%25";
}

QString WriteField(const QString& field) {
  QString text;
  for (qsizetype place = 0; place < field.size(); ++place) {
    if (field[place] == QLatin1Char(',')) {
      text += QLatin1StringView("%2C");
    } else if (IsEscape(field, place)) {
      text += QLatin1StringView("%25");
    } else {
      text += field[place];
    }
  }
  return text;
}

QString ReadField(QStringView text) {
  QString field;
  for (qsizetype place = 0; place < text.size(); ++place) {
    if (!IsEscape(text, place)) {
      field += text[place];
      continue;
    }
    field += text[place + 2] == QLatin1Char('5') ? QLatin1Char('%') : QLatin1Char(',');
    place += 2;
  }
  return field;
}

}  // namespace

int NumberSetting::Read(const std::optional<QString>& text) const {
  bool isNumber = false;
  if (text) static_cast<void>(text->trimmed().toDouble(&isNumber));
  return isNumber ? WholeNumber(*text, lowest, highest) : fallback;
}

QString NumberSetting::Write(int value) const {
  return QString::number(std::clamp(value, lowest, highest));
}

bool TruthSetting::Read(const std::optional<QString>& text) const {
  return text ? TruthValue(*text, fallback) : fallback;
}

QString TruthSetting::Write(bool value) const {
  return TruthText(value);
}

bool SwitchSetting::Read(const std::optional<QString>& text) const {
  return text ? Val(*text) == 1 : fallback;
}

QString SwitchSetting::Write(bool value) const {
  return QString::number(value ? 1 : 0);
}

QString TextSetting::Read(const std::optional<QString>& text) const {
  return text ? *text : QString(fallback);
}

std::optional<Colour> ColourSetting::Read(const std::optional<QString>& text) const {
  if (!text) return fallback;
  const QStringList fields = text->split(QLatin1Char(','));
  if (fields.size() != 3) return std::nullopt;
  std::array<std::uint8_t, 3> values{};
  for (std::size_t index = 0; index < values.size(); ++index) {
    bool number = false;
    const int value = fields[static_cast<qsizetype>(index)].trimmed().toInt(&number);
    if (!number || value < 0 || value > 255) return std::nullopt;
    values[index] = static_cast<std::uint8_t>(value);
  }
  return Colour{values[0], values[1], values[2]};
}

QString ColourSetting::Write(const std::optional<Colour>& value) const {
  const Colour colour = value.value_or(fallback);
  return QStringLiteral("%1,%2,%3").arg(colour.red).arg(colour.green).arg(colour.blue);
}

QString JoinFields(const QStringList& fields) {
  QStringList texts;
  for (const QString& field : fields) texts.append(WriteField(field));
  return texts.join(QLatin1Char(','));
}

QStringList SplitFields(const QString& text) {
  QStringList fields;
  for (const QStringView field : QStringView(text).split(QLatin1Char(','))) fields.append(ReadField(field));
  return fields;
}

bool ProgramSettings::Means(const SettingPlace& place, const QString& title, const QString& section,
                            const QString& key) const {
  return title == title_ && section.compare(place.section, Qt::CaseInsensitive) == 0 &&
         key.compare(place.key, Qt::CaseInsensitive) == 0;
}

}  // namespace kelvo
