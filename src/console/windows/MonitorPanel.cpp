#include "console/windows/MonitorPanel.h"

#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/Fader.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/Theme.h"

#include <QComboBox>
#include <QLabel>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace kelvo {

namespace {

QString MinutesText(int seconds) {
  return QStringLiteral("%1:%2")
      .arg(seconds / 60, 2, 10, QLatin1Char('0'))
      .arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

}  // namespace

QPushButton* AddMonitorButton(Monitor& monitor, MonitorSource source, QWidget& owner) {
  const int number = source == MonitorSource::Jingles ? 3 : static_cast<int>(source) - 1;
  const QString what = source == MonitorSource::Jingles   ? QObject::tr("the sound bite")
                       : source == MonitorSource::DeckOne ? QObject::tr("Deck 1's track")
                                                          : QObject::tr("Deck 2's track");
  auto* button = AddCommand(owner, {.name = QStringLiteral("CmdPfl%1").arg(number),
                                    .fixedName = QStringLiteral("PFL%1").arg(number),
                                    .words = QStringLiteral("PFL"),
                                    .run = [&monitor, source] { monitor.Open(source); }});
  button->setAccessibleName(QObject::tr("Listen to %1 in the monitor").arg(what));
  button->setToolTip(button->accessibleName());
  // As narrow as its word: it has its place under the level of a deck.
  button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  button->setMinimumWidth(button->fontMetrics().horizontalAdvance(button->text()) + 8);
  const auto show = [&monitor, button] {
    Offer(*button, monitor.Enabled()
                       ? QString()
                       : QObject::tr("Only one sound output is there: the monitor needs a second"));
  };
  QObject::connect(&monitor, &Monitor::Changed, button, show);
  show();
  return button;
}

MonitorPanel::MonitorPanel(Monitor& monitor, QWidget* parent)
    : Panel(Group::Console, QStringLiteral("MONITOR"), parent),
      monitor_(monitor),
      title_(new ElidedLabel(this)),
      trouble_(new ElidedLabel(this)),
      device_(new QComboBox(this)),
      place_(new Fader(Qt::Horizontal, 0, 1, this)),
      position_(new QLabel(this)),
      duration_(new QLabel(this)),
      run_(AddCommand(*this, {.name = QStringLiteral("CmdPflRun"),
                              .fixedName = QStringLiteral("PflRun"),
                              .tooltip = tr("Runs the monitor"),
                              .icon = Icon::Play,
                              .run = [this] { monitor_.Run(); }})),
      pause_(AddCommand(*this, {.name = QStringLiteral("CmdPflPause"),
                                .fixedName = QStringLiteral("pflpause"),
                                .tooltip = QStringLiteral("Pause"),
                                .icon = Icon::Pause,
                                .run = [this] { monitor_.Pause(); }})),
      toStart_(AddCommand(*this, {.name = QStringLiteral("CmdPflBackStart"),
                                  .fixedName = QStringLiteral("pflbackstart"),
                                  .tooltip = tr("Back to the start"),
                                  .icon = Icon::SkipStart,
                                  .run = [this] { monitor_.BackToStart(); }})),
      sync_(AddCommand(*this, {.name = QStringLiteral("CmdPflSync"),
                               .fixedName = QStringLiteral("PflSync"),
                               .words = QStringLiteral("Synchronize"),
                               .tooltip = QStringLiteral("Synchronises deck"),
                               .run = [this] { monitor_.Sync(); }})),
      syncStart_(AddCommand(*this, {.name = QStringLiteral("CmdSyncStart"),
                                    .fixedName = QStringLiteral("SyncStart"),
                                    .words = QStringLiteral("Synchro + Start"),
                                    .tooltip = QStringLiteral("Synchonizes then fades in"),
                                    .role = QStringLiteral("go"),
                                    .run = [this] { monitor_.SyncStart(); }})),
      close_(AddCommand(*this, {.name = QStringLiteral("CmdPflClose"),
                                .fixedName = QStringLiteral("Command1"),
                                .words = QStringLiteral("Close"),
                                .tooltip = tr("Stops the monitor"),
                                .run = [this] { monitor_.Close(); }})),
      level_(new Fader(Qt::Horizontal, 0, Monitor::kMostLevel, this)),
      levelWords_(new QLabel(this)),
      balance_(new Fader(Qt::Horizontal, -Monitor::kMostBalance, Monitor::kMostBalance, this)),
      balanceWords_(new QLabel(this)) {
  Build();
  Lay();
  connect(place_, &Fader::MovedByHand, this, [this](int seconds) { monitor_.Seek(seconds); });
  connect(level_, &Fader::MovedByHand, this, [this](int value) { monitor_.SetLevel(value); });
  connect(balance_, &Fader::MovedByHand, this, [this](int value) { monitor_.SetBalance(value); });
  connect(device_, &QComboBox::activated, this, [this](int row) {
    const QString name = device_->itemText(row);
    if (monitor_.Devices().contains(name)) monitor_.SetDevice(name);
  });
  connect(&monitor_, &Monitor::Changed, this, [this] { Show(); });
  Show();
}

QPushButton* MonitorPanel::AddNudge(const QString& name, const QString& words, const QString& tooltip,
                                    Monitor::Nudge nudge) {
  auto* button = AddCommand(*this, {.name = name,
                                    .fixedName = QStringLiteral("pflinch_%1").arg(static_cast<int>(nudge)),
                                    .words = words,
                                    .tooltip = tooltip});
  button->setAccessibleName(tooltip);
  connect(button, &QPushButton::pressed, this, [this, nudge] { monitor_.BeginNudge(nudge); });
  connect(button, &QPushButton::released, this, [this] { monitor_.EndNudge(); });
  return button;
}

void MonitorPanel::Build() {
  SetNames(*this, QStringLiteral("Monitor"), QStringLiteral("Picture4"));
  SetNames(*title_, QStringLiteral("LblPflTitle"), QStringLiteral("Label40_2"));
  title_->setFont(Theme::Font(1.0, QFont::Bold));
  trouble_->setObjectName(QStringLiteral("LblPflTrouble"));
  trouble_->setStyleSheet(QStringLiteral("color: ") + Theme::Palette().amber.name());
  device_->setObjectName(QStringLiteral("CboPflDevice"));
  device_->setAccessibleName(tr("The monitor's sound device"));
  device_->setToolTip(tr("The sound device of the monitor"));
  device_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  SetNames(*place_, QStringLiteral("SldPflPlace"), QStringLiteral("HScroll1"));
  place_->setAccessibleName(tr("Position in the monitor"));
  place_->setPageStep(10);
  SetNames(*position_, QStringLiteral("LblPflPosition"), QStringLiteral("Label41"));
  SetNames(*duration_, QStringLiteral("LblPflDuration"), QStringLiteral("Label42"));
  run_->setAccessibleName(run_->toolTip());
  pause_->setAccessibleName(pause_->toolTip());
  toStart_->setAccessibleName(toStart_->toolTip());
  nudges_ = {AddNudge(QStringLiteral("CmdRewindTwo"), QStringLiteral("-2"),
                      QStringLiteral("Rewind by 2 Seconds"), Monitor::Nudge::RewindTwo),
             AddNudge(QStringLiteral("CmdNudgeBack"), QStringLiteral("<"), QStringLiteral("Nudge Backwards"),
                      Monitor::Nudge::Backwards),
             AddNudge(QStringLiteral("CmdNudgeForward"), QStringLiteral(">"), QStringLiteral("Nudge Forward"),
                      Monitor::Nudge::Forward),
             AddNudge(QStringLiteral("CmdAdvanceTwo"), QStringLiteral("+2"),
                      QStringLiteral("Advance By 2 Seconds"), Monitor::Nudge::AdvanceTwo)};
  for (QLabel* words : {position_, duration_}) words->setFont(Theme::Font(0.9));
  level_->setObjectName(QStringLiteral("SldPflVol"));
  level_->setAccessibleName(tr("Monitor level"));
  level_->setToolTip(tr("Monitor level"));
  level_->setInvertedAppearance(true);
  balance_->setObjectName(QStringLiteral("SldPflBal"));
  balance_->setAccessibleName(tr("Monitor balance"));
  balance_->setToolTip(tr("Monitor balance"));
  balance_->setPageStep(1000);
  balance_->setSingleStep(500);
  balance_->SetRestValue(0);
  balance_->SetFillFrom(0);
  levelWords_->setObjectName(QStringLiteral("LblPflVol"));
  balanceWords_->setObjectName(QStringLiteral("LblPflBal"));
  for (QLabel* words : {levelWords_, balanceWords_}) {
    words->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("10")));
    words->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  }
}

void MonitorPanel::Lay() {
  // As narrow as their words: while it is open the decks beside it need their room too.
  for (QPushButton* button : {sync_, syncStart_, close_}) {
    button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    button->setMinimumWidth(button->fontMetrics().horizontalAdvance(button->text()) + 4);
  }
  for (QPushButton* nudge : nudges_) {
    nudge->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    nudge->setMinimumWidth(nudge->fontMetrics().horizontalAdvance(QStringLiteral("+2")) + 4);
  }
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(3);
  layout->addLayout(Line({{title_, 3}, {device_, 2}}));
  layout->addWidget(trouble_);
  auto* place = Line({position_, {place_, 1}, duration_});
  place->setSpacing(4);
  layout->addLayout(place);
  auto* moves = Line({toStart_, run_, pause_});
  moves->setSpacing(4);
  for (QPushButton* nudge : nudges_) moves->addWidget(nudge, 1);
  layout->addLayout(moves);
  auto* levels = Line({new QLabel(tr("Vol"), this),
                       {level_, 1},
                       levelWords_,
                       new QLabel(tr("Bal"), this),
                       {balance_, 1},
                       balanceWords_});
  levels->setSpacing(4);
  layout->addLayout(levels);
  auto* ends = Line({{sync_, 3}, {syncStart_, 4}, {close_, 2}});
  ends->setSpacing(4);
  layout->addLayout(ends);
}

void MonitorPanel::ShowDevices() {
  QStringList names = monitor_.Devices();
  // One that is gone may have a twin of its name.
  const bool gone = monitor_.DeviceMissing() && monitor_.Device() != QStringLiteral("None");
  const QString chosen = gone ? tr("%1 (not there)").arg(monitor_.Device()) : monitor_.Device();
  if (!names.contains(chosen)) names.prepend(chosen);
  QStringList shown;
  for (int row = 0; row < device_->count(); ++row) shown.append(device_->itemText(row));
  const QSignalBlocker quiet(device_);
  if (shown != names) {
    device_->clear();
    device_->addItems(names);
  }
  device_->setCurrentIndex(static_cast<int>(names.indexOf(chosen)));
}

void MonitorPanel::Show() {
  setVisible(monitor_.Shown());
  ShowDevices();
  const QString line = monitor_.TitleLine();
  title_->setText(monitor_.Track().isEmpty() ? line : line + QStringLiteral("  ") + monitor_.Track());
  title_->setToolTip(title_->text());
  const bool heldBack = monitor_.HeldBack();
  trouble_->setVisible(heldBack || monitor_.DeviceMissing());
  trouble_->setText(monitor_.Device() == QStringLiteral("None")
                        ? tr("Choose the monitor's sound device: nothing is heard")
                    : heldBack ? tr("%1 plays the programme: nothing is heard").arg(monitor_.Device())
                               : tr("%1 isn't there: nothing is heard").arg(monitor_.Device()));
  place_->setRange(0, std::max(monitor_.Duration(), 1));
  if (!place_->isSliderDown()) place_->setValue(monitor_.Position());
  position_->setText(QStringLiteral("Position ") + MinutesText(monitor_.Position()));
  duration_->setText(QStringLiteral("Duration ") + MinutesText(monitor_.Duration()));
  Offer(*run_, monitor_.Running() ? tr("It runs") : QString());
  Offer(*pause_, monitor_.Running() ? QString() : tr("It does not run"));
  const QString whyNoSync = monitor_.CanSync() ? QString() : tr("The track is in no deck");
  Offer(*sync_, whyNoSync);
  Offer(*syncStart_, whyNoSync);
  level_->setValue(monitor_.Level());
  levelWords_->setText(QString::number(Monitor::kMostLevel - monitor_.Level()));
  balance_->setValue(monitor_.Balance());
  balanceWords_->setText(QString::number(monitor_.Balance() / 1000));
}

}  // namespace kelvo
