#pragma once

#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>

namespace kelvo {

/// A box for a whole number. A number counts when it is typed to its end.
inline QSpinBox* AddNumberBox(QWidget& owner, const QString& name, const QString& accessible, int lowest,
                              int highest) {
  auto* box = new QSpinBox(&owner);
  box->setObjectName(name);
  box->setAccessibleName(accessible);
  box->setRange(lowest, highest);
  box->setKeyboardTracking(false);
  box->findChild<QLineEdit*>()->setAccessibleName(accessible);
  return box;
}

/// A label with its box, held together.
inline QHBoxLayout* LabelledBox(QWidget& owner, const QString& words, QWidget& box) {
  auto* label = new QLabel(words, &owner);
  label->setBuddy(&box);
  auto* line = new QHBoxLayout;
  line->addWidget(label);
  line->addWidget(&box, 1);
  return line;
}

}  // namespace kelvo
