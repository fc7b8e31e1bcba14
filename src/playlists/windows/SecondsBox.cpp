#include "playlists/windows/SecondsBox.h"

#include "database/GroupElement.h"

#include <QLineEdit>
#include <QRegularExpression>

namespace kelvo {

namespace {

constexpr int kMostSeconds = 9'999 * 3600;

}  // namespace

void SetUpBox(QSpinBox& box, const QString& accessible) {
  box.setAccessibleName(accessible);
  box.findChild<QLineEdit*>()->setAccessibleName(accessible);
  box.setKeyboardTracking(false);
}

SecondsBox::SecondsBox(const QString& accessible, QWidget* parent) : QSpinBox(parent) {
  setRange(0, kMostSeconds);
  SetUpBox(*this, accessible);
  setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("0000:00:00")) + 4 * fontMetrics().height());
}

QString SecondsBox::textFromValue(int seconds) const {
  return ElementTime(seconds);
}

int SecondsBox::valueFromText(const QString& text) const {
  return SecondsOfTime(text).value_or(value());
}

QValidator::State SecondsBox::validate(QString& text, int& /*place*/) const {
  static const QRegularExpression digits(QStringLiteral("^[0-9: ]*$"));
  if (SecondsOfTime(text)) return QValidator::Acceptable;
  return digits.match(text).hasMatch() ? QValidator::Intermediate : QValidator::Invalid;
}

}  // namespace kelvo
