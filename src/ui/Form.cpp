#include "ui/Form.h"

#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/Theme.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>

namespace kelvo {

Form::Form(QWidget* parent) : QWidget(parent), layout_(new QFormLayout(this)) {
  layout_->setContentsMargins(0, 0, 0, 0);
}

QLineEdit& Form::AddText(const Field& field) {
  auto* line = new QLineEdit(this);
  SetNames(*line, field.name, field.fixedName);
  line->setAccessibleName(QString(field.label).remove(QLatin1Char('&')));
  line->setToolTip(field.tooltip);
  auto* message = new QLabel(this);
  QPalette amber = message->palette();
  amber.setColor(QPalette::WindowText, Theme::Palette().amber);
  message->setPalette(amber);
  message->hide();
  auto* label = new QLabel(field.label, this);
  label->setBuddy(line);
  layout_->addRow(label, Line({{line, 1}, message}));
  rows_.push_back({line, message});
  connect(line, &QLineEdit::textChanged, this, &Form::Changed);
  connect(line, &QLineEdit::returnPressed, this, &Form::Submitted);
  return *line;
}

void Form::SetMessage(const QLineEdit& field, const QString& words) {
  for (const Row& row : rows_) {
    if (row.field != &field) continue;
    row.message->setText(words);
    row.message->setVisible(!words.isEmpty());
    row.field->setAccessibleDescription(words);
  }
}

bool Form::IsEmpty() const {
  return std::all_of(rows_.begin(), rows_.end(), [](const Row& row) { return row.field->text().isEmpty(); });
}

}  // namespace kelvo
