#include "datamanager/ReferenceEdits.h"

#include <QStringList>

namespace kelvo {
namespace {

constexpr qsizetype kMostReferences = 10;
const QChar kComma = QLatin1Char(',');

bool Same(const QString& one, const QString& other) {
  return one.toUpper() == other.toUpper();
}

qsizetype PlaceOf(const QStringList& items, const QString& name, qsizetype from) {
  for (qsizetype place = from; place < items.size(); ++place) {
    if (Same(items[place], name)) return place;
  }
  return -1;
}

}  // namespace

std::optional<QString> LineWithRenamed(const QString& line, const QString& name, const QString& newName) {
  QStringList items = line.split(kComma);
  if (PlaceOf(items, name, 0) < 0) return std::nullopt;
  QStringList renamed;
  for (const QString& item : items) {
    const bool old = Same(item, name);
    if (old &&
        (PlaceOf(renamed, newName, 0) >= 0 || (!Same(name, newName) && PlaceOf(items, newName, 0) >= 0)))
      continue;
    renamed.append(old ? newName : item);
  }
  return renamed.join(kComma);
}

std::optional<QString> LineWithout(const QString& line, const QString& name) {
  QStringList items = line.split(kComma);
  if (PlaceOf(items, name, 1) < 0) return std::nullopt;
  for (qsizetype place; (place = PlaceOf(items, name, 1)) > 0;) items.removeAt(place);
  return items.join(kComma);
}

std::optional<QString> LineWith(const QString& line, const QString& name) {
  if (line.isEmpty() || PlaceOf(line.split(kComma), name, 0) >= 0) return std::nullopt;
  return line + kComma + name;
}

bool IsLineFull(const QString& line) {
  return line.count(kComma) >= kMostReferences;
}

}  // namespace kelvo
