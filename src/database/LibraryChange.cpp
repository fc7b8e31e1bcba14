#include "database/LibraryChange.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>

namespace kelvo {
namespace {

constexpr std::array kWays{"on", "back", "undo"};

QString Text(const QByteArray& bytes) {
  return QString::fromLatin1(bytes.toBase64());
}

QByteArray Bytes(const QJsonValue& text) {
  return QByteArray::fromBase64(text.toString().toLatin1());
}

QJsonValue OptionalText(const std::optional<QByteArray>& bytes) {
  return bytes ? QJsonValue(Text(*bytes)) : QJsonValue();
}

std::optional<QByteArray> OptionalBytes(const QJsonValue& text) {
  return text.isString() ? std::optional(Bytes(text)) : std::nullopt;
}

QJsonArray StepText(const SetInfoLine& step) {
  return {QStringLiteral("line"), step.name, static_cast<int>(step.line), step.before, step.after};
}

QJsonArray StepText(const SetContent& step) {
  return {QStringLiteral("content"), step.path, OptionalText(step.before), Text(step.after)};
}

QJsonArray StepText(const MoveEntry& step) {
  return {QStringLiteral("move"), step.from, step.to};
}

QJsonArray StepText(const DiscardEntry& step) {
  return {QStringLiteral("discard"), step.path, step.folder, OptionalText(step.bytes), step.place};
}

std::optional<ChangeStep> StepIn(const QJsonArray& step) {
  const QString kind = step[0].toString();
  const QString first = step[1].toString();
  if (first.isEmpty()) return std::nullopt;
  if (kind == QLatin1StringView("line")) {
    const int line = step[2].toInt(-1);
    // A name with a folder in it would lead out of the info files'.
    if (line < 0 || line >= kFixedInfoLines || first.contains(QLatin1Char('/'))) return std::nullopt;
    return SetInfoLine{first, InfoLine::Line(line), step[3].toString(), step[4].toString()};
  }
  if (kind == QLatin1StringView("content")) return SetContent{first, OptionalBytes(step[2]), Bytes(step[3])};
  if (kind == QLatin1StringView("move") && step[2].isString()) return MoveEntry{first, step[2].toString()};
  if (kind != QLatin1StringView("discard")) return std::nullopt;
  return DiscardEntry{first, step[2].toBool(), OptionalBytes(step[3]), step[4].toString()};
}

}  // namespace

QByteArray LibraryChange::ToBytes() const {
  QJsonArray all;
  for (const ChangeStep& step : steps) {
    all.append(std::visit([](const auto& each) { return StepText(each); }, step));
  }
  const QJsonObject text{{QStringLiteral("what"), what},
                         {QStringLiteral("way"), QLatin1StringView(kWays[static_cast<std::size_t>(way)])},
                         {QStringLiteral("steps"), all}};
  return QJsonDocument(text).toJson(QJsonDocument::Compact);
}

std::optional<LibraryChange> LibraryChange::FromBytes(const QByteArray& bytes) {
  const QJsonObject text = QJsonDocument::fromJson(bytes).object();
  LibraryChange change;
  change.what = text[QStringLiteral("what")].toString();
  const QString way = text[QStringLiteral("way")].toString();
  const auto* const found = std::find_if(kWays.begin(), kWays.end(),
                                         [&way](const char* each) { return way == QLatin1StringView(each); });
  const QJsonValue steps = text[QStringLiteral("steps")];
  if (found == kWays.end() || !steps.isArray()) return std::nullopt;
  change.way = Way(found - kWays.begin());
  for (const QJsonValue& each : steps.toArray()) {
    std::optional<ChangeStep> step = StepIn(each.toArray());
    if (!step) return std::nullopt;
    change.steps.push_back(std::move(*step));
  }
  return change;
}

}  // namespace kelvo
