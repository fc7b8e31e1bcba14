#pragma once

#include <QVariant>
#include <QWidget>

#include <gtest/gtest.h>

namespace kelvo::testing {

/// The control of `window` that has this name, or this fixed name; a failure of the test and none when there
/// is none.
template <typename Control>
Control* FindNamed(const QWidget& window, const QString& name) {
  for (Control* each : window.findChildren<Control*>()) {
    if (each->objectName() == name || each->property("fixedName").toString() == name) return each;
  }
  ADD_FAILURE() << "no control is called " << name.toStdString();
  return nullptr;
}

}  // namespace kelvo::testing
