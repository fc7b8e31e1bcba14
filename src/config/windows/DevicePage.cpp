#include "config/windows/DevicePage.h"

#include "ui/Command.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/Theme.h"
#include "ui/WhyOff.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

namespace kelvo {

DevicePage::DevicePage(Configuration& work) : ConfigPage(work, QStringLiteral("PagePfl")) {
  auto* number = new QLabel(this);
  SetNames(*number, QStringLiteral("LblDeviceNumber"), QStringLiteral("LblSCId"));
  auto* name = new QLabel(this);
  SetNames(*name, QStringLiteral("LblDeviceName"), QStringLiteral("LblCScard"));
  name->setFont(Theme::Font(1.0, QFont::Bold));
  auto* trouble = new QLabel(this);
  trouble->setObjectName(QStringLiteral("LblDeviceTrouble"));
  trouble->setStyleSheet(QStringLiteral("color: ") + Theme::Palette().amber.name());
  auto* list = new QListWidget(this);
  SetNames(*list, QStringLiteral("LstDevices"), QStringLiteral("LstSCards"));
  list->setAccessibleName(tr("The monitor's sound device"));
  list->setToolTip(tr("The sound device on which the monitor is heard"));
  auto* test = AddCommand(*this, {.name = QStringLiteral("CmdTestDevice"),
                                  .fixedName = QStringLiteral("Command4"),
                                  .words = tr("&Test"),
                                  .tooltip = tr("Plays the warning loop once on the chosen device"),
                                  .icon = Icon::Headphones,
                                  .run = [this] { Work().TestDevice(); }});
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(Line({new QLabel(tr("The monitor's device:"), this), number, {name, 1}}));
  layout->addWidget(trouble);
  layout->addWidget(list, 1);
  layout->addLayout(Line({test, kRoom}));
  connect(list, &QListWidget::currentRowChanged, this, [this](int row) { Work().ChooseOutput(row); });
  OnShow([this, number, name, trouble, list, test] {
    number->setText(QString::number(Values().PFLDevice));
    name->setText(Work().MonitorName());
    const qsizetype output = Work().MonitorOutput();
    trouble->setText(!Work().WhyNoOutputs().isEmpty()
                         ? Work().WhyNoOutputs()
                         : WhyOff({{Work().DeviceMissing(), tr("It isn't there: the monitor is silent")},
                                   {output == 0, Work().WhyNotForMonitor(0)}}));
    trouble->setVisible(!trouble->text().isEmpty());
    Offer(*list, Work().Outputs().size() > 1 ? QString() : Work().WhyNoTest());
    Offer(*test, Work().WhyNoTest());
    ShowOutputs(*list);
  });
}

void DevicePage::ShowOutputs(QListWidget& list) {
  QStringList rows;
  for (const QString& output : Work().Outputs())
    rows.append(rows.isEmpty() ? tr("%1  (the programme)").arg(output) : output);
  if (Work().DeviceMissing()) rows.append(tr("%1  (not there)").arg(Work().MonitorName()));
  QStringList shown;
  for (int row = 0; row < list.count(); ++row) shown.append(list.item(row)->text());
  const QSignalBlocker quiet(list);
  if (shown != rows) {
    list.clear();
    list.addItems(rows);
    if (const QString why = Work().WhyNotForMonitor(0); !rows.isEmpty()) {
      list.item(0)->setFlags(Qt::NoItemFlags);
      list.item(0)->setToolTip(why);
    }
  }
  list.setCurrentRow(Work().DeviceMissing() ? list.count() - 1 : static_cast<int>(Work().MonitorOutput()));
}

RestorePage::RestorePage(Configuration& work) : ConfigPage(work, QStringLiteral("PageRestore")) {
  auto* head = new QLabel(QStringLiteral("Reset The Following To Kelvo 2007 Initial Startup Defaults"), this);
  head->setObjectName(QStringLiteral("LblResetHead"));
  head->setFont(Theme::Font(1.0, QFont::Bold));
  auto* grid = new QGridLayout;
  const int half = (static_cast<int>(ResetRows().size()) + 1) / 2;
  auto* reset = AddCommand(*this, {.name = QStringLiteral("CmdReset"),
                                   .fixedName = QStringLiteral("Command3"),
                                   .words = QStringLiteral("Restore Selecte&d Defaults"),
                                   .tooltip = tr("Sets the ticked values back; nothing is kept until a save"),
                                   .run = [this] { Work().Reset(Ticked()); }});
  auto* undo = AddCommand(*this, {.name = QStringLiteral("CmdUndoReset"),
                                  .fixedName = QStringLiteral("Command8"),
                                  .words = QStringLiteral("&Undo Reset To Defaults"),
                                  .tooltip = tr("Brings back what the last reset has changed"),
                                  .icon = Icon::Undo,
                                  .run = [this] { Work().UndoReset(); }});
  for (int row = 0; row < static_cast<int>(ResetRows().size()); ++row) {
    auto* tick = new QCheckBox(QLatin1StringView(ResetRows().at(static_cast<std::size_t>(row)).words), this);
    SetNames(*tick, QStringLiteral("ChkReset%1").arg(row), QStringLiteral("Check4_%1").arg(row));
    grid->addWidget(tick, row % half, row / half);
    rows_.push_back(tick);
    connect(tick, &QCheckBox::toggled, this, [this] { Show(); });
  }
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(head);
  layout->addLayout(grid);
  layout->addStretch(1);
  layout->addLayout(Line({reset, undo, kRoom}));
  OnShow([this, reset, undo] {
    Offer(*reset, WhyOff({{Ticked().empty(), tr("Nothing is ticked")}}));
    Offer(*undo, WhyOff({{!Work().CanUndoReset(), tr("Nothing was reset")}}));
  });
}

void RestorePage::ClearTicks() {
  for (QCheckBox* row : rows_) row->setChecked(false);
}

std::vector<std::size_t> RestorePage::Ticked() const {
  std::vector<std::size_t> ticked;
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    if (rows_[row]->isChecked()) ticked.push_back(row);
  }
  return ticked;
}

}  // namespace kelvo
