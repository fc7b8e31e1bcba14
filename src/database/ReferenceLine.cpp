#include "database/ReferenceLine.h"

namespace kelvo {

ReferenceLine ReferenceLine::Parse(QStringView line) {
  QStringList items = line.toString().split(QLatin1Char(','));
  QString base = items.takeFirst();
  return {std::move(base), std::move(items)};
}

QString ReferenceLine::Text() const {
  return (QStringList(base) + names).join(QLatin1Char(','));
}

QStringList ReferenceLine::Shown() const {
  QStringList shown = names;
  shown.removeIf([](const QString& name) { return name.isEmpty() || IsInternalName(name); });
  return shown;
}

QString FirstReference(QStringView line) {
  return ReferenceLine::Parse(line).Shown().value(0);
}

QList<QStringView> ShownItems(QStringView line) {
  QList<QStringView> items = line.split(QLatin1Char(','));
  items.removeIf([](QStringView item) { return item.isEmpty() || IsInternalName(item); });
  return items;
}

}  // namespace kelvo
