#include "config/windows/ConfigPage.h"

#include "ui/Fader.h"
#include "ui/Naming.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>

namespace kelvo {

ConfigPage::ConfigPage(Configuration& work, const QString& name) : work_(work) {
  setObjectName(name);
}

void ConfigPage::Show() {
  for (const auto& show : shows_) show();
}

void ConfigPage::AddSlider(QGridLayout& grid, const SliderLook& look, const NumberSetting& range,
                           int ConfigValues::*member) {
  auto* slider = new Fader(Qt::Horizontal, range.lowest, range.highest, this);
  SetNames(*slider, look.name, look.fixedName);
  slider->setAccessibleName(look.label);
  slider->setToolTip(look.tooltip);
  slider->SetRestValue(range.fallback);
  slider->setPageStep(5);
  auto* value = new QLabel(this);
  SetNames(*value, QStringLiteral("Lbl") + look.name.mid(3), look.textName);
  value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  const QString widest = QString::number(range.highest) + look.unit;
  value->setMinimumWidth(value->fontMetrics().horizontalAdvance(widest) + value->fontMetrics().height() / 2);
  const int row = grid.rowCount();
  grid.addWidget(new QLabel(look.label, this), row, 0);
  grid.addWidget(slider, row, 1);
  grid.addWidget(value, row, 2);
  connect(slider, &Fader::MovedByHand, this, [this, member](int number) {
    work_.Change([member, number](ConfigValues& values) { values.*member = number; });
  });
  OnShow([this, slider, value, member, unit = look.unit] {
    const int number = Values().*member;
    if (!slider->isSliderDown()) slider->setValue(number);
    value->setText(QString::number(number) + unit);
    slider->setAccessibleDescription(value->text());
  });
}

QCheckBox* ConfigPage::AddCheck(const CheckLook& look, bool ConfigValues::*member) {
  auto* check = new QCheckBox(look.words, this);
  SetNames(*check, look.name, look.fixedName);
  check->setToolTip(look.tooltip);
  connect(check, &QCheckBox::clicked, this, [this, member](bool on) {
    work_.Change([member, on](ConfigValues& values) { values.*member = on; });
  });
  OnShow([this, check, member] { check->setChecked(Values().*member); });
  return check;
}

}  // namespace kelvo
