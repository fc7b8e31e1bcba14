#include "ui/Form.h"

#include "ui/Naming.h"
#include "ui/Theme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>

namespace kelvo {
namespace {

QVariant ValueOf(const QWidget& control) {
  if (const auto* line = qobject_cast<const QLineEdit*>(&control)) return line->text();
  if (const auto* option = qobject_cast<const QCheckBox*>(&control)) return option->isChecked();
  return static_cast<const QComboBox&>(control).currentText();
}

void SetValue(QWidget& control, const QVariant& value) {
  if (auto* line = qobject_cast<QLineEdit*>(&control)) {
    line->setText(value.toString());
  } else if (auto* option = qobject_cast<QCheckBox*>(&control)) {
    option->setChecked(value.toBool());
  } else {
    static_cast<QComboBox&>(control).setCurrentText(value.toString());
  }
}

}  // namespace

Form::Form(QWidget* parent) : QWidget(parent), layout_(new QFormLayout(this)) {
  layout_->setContentsMargins(0, 0, 0, 0);
}

void Form::Add(const Field& field, QWidget& control, bool labelled) {
  SetNames(control, field.name, field.fixedName);
  control.setAccessibleName(QString(field.label).remove(QLatin1Char('&')));
  control.setToolTip(field.tooltip);
  auto* message = new QLabel(this);
  QPalette amber = message->palette();
  amber.setColor(QPalette::WindowText, Theme::Palette().amber);
  message->setPalette(amber);
  auto* line = new QHBoxLayout;
  line->addWidget(&control, 1);
  line->addWidget(message, 1);
  if (labelled) {
    auto* label = new QLabel(field.label, this);
    label->setBuddy(&control);
    layout_->addRow(label, line);
  } else {
    layout_->addRow(QString(), line);
  }
  rows_.push_back({&control, message, ValueOf(control)});
}

QLineEdit& Form::AddText(const Field& field, const QString& text) {
  auto* line = new QLineEdit(text, this);
  Add(field, *line, true);
  connect(line, &QLineEdit::textChanged, this, &Form::Changed);
  connect(line, &QLineEdit::returnPressed, this, &Form::Submitted);
  return *line;
}

QCheckBox& Form::AddOption(const Field& field, bool on) {
  auto* option = new QCheckBox(field.label, this);
  option->setChecked(on);
  Add(field, *option, false);
  connect(option, &QCheckBox::toggled, this, &Form::Changed);
  return *option;
}

QComboBox& Form::AddChoice(const Field& field, const QStringList& names, const QString& chosen, bool free) {
  auto* box = new QComboBox(this);
  box->setEditable(free);
  box->addItems(names);
  box->setCurrentText(chosen);
  Add(field, *box, true);
  connect(box, &QComboBox::currentTextChanged, this, &Form::Changed);
  return *box;
}

void Form::SetMessage(const QWidget& control, const QString& words) {
  for (const Row& row : rows_) {
    if (row.control != &control) continue;
    row.message->setText(words);
    row.control->setAccessibleDescription(words);
  }
}

bool Form::Fits() const {
  return std::all_of(rows_.begin(), rows_.end(),
                     [](const Row& row) { return row.message->text().isEmpty(); });
}

bool Form::Dirty() const {
  return std::any_of(rows_.begin(), rows_.end(),
                     [](const Row& row) { return ValueOf(*row.control) != row.settled; });
}

void Form::Settle() {
  for (Row& row : rows_) row.settled = ValueOf(*row.control);
}

void Form::Restore() {
  for (const Row& row : rows_) SetValue(*row.control, row.settled);
}

}  // namespace kelvo
