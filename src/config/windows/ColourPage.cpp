#include "config/windows/ColourPage.h"

#include "ui/Fader.h"
#include "ui/Naming.h"
#include "ui/Panel.h"

#include <QGridLayout>
#include <QLabel>

namespace kelvo {
namespace {

struct Bar {
  const char* name;       ///< in object names
  const char* fixedName;  ///< of the label with its value
  const char* words;
  QColor colour;
  std::uint8_t Colour::*part;
};

const std::array<Bar, 3>& Bars() {
  static const std::array<Bar, 3> bars{{{"Red", "Labrd", "Red", QColor(255, 80, 80), &Colour::red},
                                        {"Green", "Labgr", "Green", QColor(80, 220, 80), &Colour::green},
                                        {"Blue", "Labbl", "Blue", QColor(90, 140, 255), &Colour::blue}}};
  return bars;
}

QColor ToColor(const Colour& colour) {
  return {colour.red, colour.green, colour.blue};
}

}  // namespace

const std::array<ColourPage::Part, 4>& ColourPage::Parts() {
  static const std::array<Part, 4> parts{
      {{Group::Console, QStringLiteral("Con"), QStringLiteral("Console Back Colour"),
        &ConfigValues::ConBackCol},
       {Group::Decks, QStringLiteral("Deck"), QStringLiteral("Decks Back Colour"),
        &ConfigValues::DeckBackCol},
       {Group::Lists, QStringLiteral("Slists"), QStringLiteral("Selection Lists Back Colour"),
        &ConfigValues::SlistsBackCol},
       {Group::Bites, QStringLiteral("Sbites"), QStringLiteral("Sound Bites Deck Back Colour"),
        &ConfigValues::SbitesBackCol}}};
  return parts;
}

ColourPage::ColourPage(Configuration& work) : ConfigPage(work, QStringLiteral("PageColours")) {
  Remember();
  auto* grid = new QGridLayout(this);
  for (int index = 0; index < static_cast<int>(Parts().size()); ++index)
    grid->addWidget(MakePanel(index), index / 2, index % 2);
}

QWidget* ColourPage::MakePanel(int index) {
  const Part& part = Parts().at(static_cast<std::size_t>(index));
  auto* panel = new Panel(part.group, part.caption, this);
  panel->setObjectName(QStringLiteral("Sample") + part.name);
  auto* grid = new QGridLayout(panel);
  grid->setContentsMargins(0, 0, 0, 0);
  for (const Bar& bar : Bars()) {
    const QLatin1StringView name(bar.name);
    auto* slider = new Fader(Qt::Vertical, 0, 255, panel);
    SetNames(*slider, QStringLiteral("Sld") + part.name + name,
             QStringLiteral("VScroll%1_%2").arg(index + 1).arg(&bar - Bars().data()));
    slider->setAccessibleName(part.caption + QStringLiteral(", ") + QLatin1StringView(bar.words));
    slider->setToolTip(slider->accessibleName());
    slider->SetColour(bar.colour);
    slider->setSingleStep(1);
    slider->setPageStep(16);
    slider->setMinimumHeight(fontMetrics().height() * 5);
    auto* value = new QLabel(panel);
    SetNames(*value, QStringLiteral("Lbl") + part.name + name,
             QLatin1StringView(bar.fixedName) + QStringLiteral("_%1").arg(index));
    value->setAlignment(Qt::AlignCenter);
    value->setMinimumWidth(value->fontMetrics().horizontalAdvance(QStringLiteral("Green 255 ")));
    const int column = static_cast<int>(&bar - Bars().data());
    grid->addWidget(slider, 0, column, Qt::AlignHCenter);
    grid->addWidget(value, 1, column);
    connect(slider, &Fader::MovedByHand, this, [this, member = part.member, channel = bar.part](int number) {
      Work().Change(
          [=](ConfigValues& values) { values.*member.*channel = static_cast<std::uint8_t>(number); });
    });
    OnShow([this, slider, value, &part, &bar] {
      const int number = Values().*part.member.*bar.part;
      if (!slider->isSliderDown()) slider->setValue(number);
      value->setText(QStringLiteral("%1 %2").arg(QLatin1StringView(bar.words)).arg(number));
    });
  }
  OnShow([this, panel, &part] {
    const QColor colour = ToColor(Values().*part.member);
    panel->SetNote(colour.name());
    if (window()->isVisible() && Theme::GroupColour(part.group) != colour)
      Theme::SetGroupColour(part.group, colour);
  });
  return panel;
}

void ColourPage::Remember() {
  for (std::size_t index = 0; index < Parts().size(); ++index)
    before_.at(index) = Theme::GroupColour(Parts().at(index).group);
}

void ColourPage::TakeBack() const {
  for (std::size_t index = 0; index < Parts().size(); ++index)
    Theme::SetGroupColour(Parts().at(index).group, before_.at(index));
}

}  // namespace kelvo
