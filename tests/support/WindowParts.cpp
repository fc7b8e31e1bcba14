#include "support/WindowParts.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>

#include <gtest/gtest.h>

#include <vector>

namespace kelvo::testing {
namespace {

bool IsPart(const QWidget* widget) {
  const auto* label = qobject_cast<const QLabel*>(widget);
  return qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QLineEdit*>(widget) ||
         qobject_cast<const QComboBox*>(widget) || qobject_cast<const QAbstractSlider*>(widget) ||
         qobject_cast<const QAbstractItemView*>(widget) || qobject_cast<const QProgressBar*>(widget) ||
         (label != nullptr && !label->text().isEmpty());
}

std::vector<QWidget*> Parts(const QWidget& window) {
  std::vector<QWidget*> parts;
  for (QWidget* each : window.findChildren<QWidget*>()) {
    bool inside = false;  // of another part: the button in a line of text
    for (const QWidget* parent = each->parentWidget(); parent != nullptr; parent = parent->parentWidget())
      inside = inside || IsPart(parent);
    if (IsPart(each) && !inside && each->isVisible()) parts.push_back(each);
  }
  return parts;
}

}  // namespace

void ExpectWellLaidOut(const QWidget& window) {
  std::vector<QRect> places;
  for (const QWidget* part : Parts(window)) {
    const auto name = (window.objectName() + QStringLiteral(" / ") + part->objectName()).toStdString();
    const QRect place(part->mapTo(&window, QPoint()), part->size());
    EXPECT_TRUE(window.rect().contains(place)) << name;
    for (const QRect& other : places) EXPECT_FALSE(place.intersects(other)) << name;
    places.push_back(place);
    if (const auto* label = qobject_cast<const QLabel*>(part)) {
      EXPECT_TRUE(!label->text().contains(QLatin1Char('&')) || label->buddy() != nullptr) << name;
      continue;
    }
    // Squeezed into nothing it is not laid out at all.
    const bool list = qobject_cast<const QAbstractItemView*>(part) != nullptr;
    EXPECT_TRUE(!list || part->height() > part->fontMetrics().height() * 4) << name;
    const auto* button = qobject_cast<const QAbstractButton*>(part);
    const QString words = button != nullptr ? button->text() : QString();
    EXPECT_FALSE(part->objectName().isEmpty()) << name << place.x() << ' ' << place.y();
    EXPECT_FALSE(part->accessibleName().isEmpty() && words.isEmpty()) << name;
    EXPECT_GE(part->width(), part->fontMetrics().horizontalAdvance(words)) << name;
  }
}

}  // namespace kelvo::testing
