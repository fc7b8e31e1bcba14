#pragma once

#include <QObject>
#include <QVariant>

namespace kelvo {

/// The property of a control that holds its fixed name, by which scripts know it.
inline constexpr const char* kFixedNameProperty = "fixedName";

/// Names a control: its object name, and beside it the fixed name where it has one.
inline void SetNames(QObject& control, const QString& name, const QString& fixedName = {}) {
  control.setObjectName(name);
  if (!fixedName.isEmpty()) control.setProperty(kFixedNameProperty, fixedName);
}

/// The fixed name of a control; its object name where it has none.
[[nodiscard]] inline QString FixedName(const QObject& control) {
  const QVariant fixed = control.property(kFixedNameProperty);
  return fixed.isValid() ? fixed.toString() : control.objectName();
}

}  // namespace kelvo
