#include "console/windows/AutoPlayPanel.h"

#include "console/windows/TimerForm.h"
#include "platform/Words.h"
#include "ui/Command.h"
#include "ui/CommandButton.h"
#include "ui/ElidedLabel.h"
#include "ui/KeyList.h"
#include "ui/Naming.h"
#include "ui/ScalableIcon.h"
#include "ui/SpokenText.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QRadioButton>
#include <QShortcut>

namespace kelvo {
namespace {

QString TransitionWord(TransitionKind transition) {
  switch (transition) {
    case TransitionKind::PartFade:
      return QStringLiteral("PART");
    case TransitionKind::Pan:
      return QStringLiteral("PAN");
    default:
      return QStringLiteral("DUB");
  }
}

}  // namespace

AutoPlayPanel::AutoPlayPanel(AutoPlay& automatic, const EventLoop& loop, QWidget* parent)
    : Panel(Group::Console, QStringLiteral("AUTO PLAY"), parent),
      automatic_(automatic),
      loop_(loop),
      start_(new CommandButton(this)),
      kelvo_(new QRadioButton(QStringLiteral("KELVO"), this)),
      jukebox_(new QRadioButton(QStringLiteral("JUKEBOX"), this)),
      preview_(new QRadioButton(QStringLiteral("PREVIEW"), this)),
      random_(new QCheckBox(QStringLiteral("RANDOM"), this)),
      pause_(new CommandButton(this)),
      timer_(new CommandButton(ScalableIcon(Icon::Timer), QStringLiteral("Set Timer"), this)),
      status_(new ElidedLabel(this)),
      next_(new ElidedLabel(this)) {
  setObjectName(QStringLiteral("AutoPlay"));
  SetNames(*start_, QStringLiteral("CmdAutoPlay"), QStringLiteral("Option5"));
  start_->setToolTip(QStringLiteral("Start Auto Play"));
  start_->setFont(Theme::Font(1.2, QFont::Bold));
  start_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  kelvo_->setObjectName(QStringLiteral("OptKelvo"));
  kelvo_->setToolTip(tr("The queue in its order, each track as it is set"));
  jukebox_->setObjectName(QStringLiteral("OptJukebox"));
  jukebox_->setToolTip(tr("Each track to its end, a short silence between them"));
  preview_->setObjectName(QStringLiteral("OptPreview"));
  preview_->setToolTip(tr("Some seconds of any track of the library"));
  SetNames(*random_, QStringLiteral("ChkRandom"), QStringLiteral("Option7"));
  random_->setToolTip(tr("The next row of the queue by chance"));
  pause_->setObjectName(QStringLiteral("CmdRoboPause"));
  pause_->setToolTip(QStringLiteral("Pauses at end of track"));
  pause_->setAccessibleName(pause_->toolTip());
  SetNames(*timer_, QStringLiteral("CmdSetTimer"), QStringLiteral("Command7"));
  timer_->setToolTip(tr("Starts automatic play at a time of day"));
  status_->setObjectName(QStringLiteral("AutoStatus"));
  status_->setFont(Theme::Font(1.0, QFont::DemiBold));
  next_->setObjectName(QStringLiteral("UpNext"));
  next_->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  for (ElidedLabel* words : {status_, next_}) {
    words->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    // The time is at the end: a long name is cut in its middle.
    words->SetElideMode(Qt::ElideMiddle);
  }

  auto* layout = new QGridLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(start_, 0, 0, 2, 1);
  layout->addWidget(kelvo_, 0, 1);
  layout->addWidget(jukebox_, 0, 2);
  layout->addWidget(preview_, 1, 1);
  layout->addWidget(random_, 1, 2);
  layout->addWidget(pause_, 0, 3);
  layout->addWidget(timer_, 1, 3);
  layout->addWidget(next_, 0, 4, 2, 1);
  layout->addWidget(status_, 2, 0, 1, 5);
  layout->setColumnStretch(4, 1);
  start_->setMinimumWidth(QFontMetrics(start_->font()).horizontalAdvance(QStringLiteral("START")) +
                          fontMetrics().height() * 2);

  Bind(start_, QKeySequence(Qt::CTRL | Qt::Key_P));
  Bind(pause_, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P));
  Bind(random_, QKeySequence(Qt::CTRL | Qt::Key_R));
  Bind(timer_, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_T));
  connect(start_, &QPushButton::clicked, this, [this] { automatic_.ToggleAutoPlay(); });
  connect(kelvo_, &QRadioButton::clicked, this, [this] { automatic_.SetMode(AutoMode::Kelvo); });
  connect(jukebox_, &QRadioButton::clicked, this, [this] { automatic_.SetMode(AutoMode::Jukebox); });
  connect(preview_, &QRadioButton::clicked, this, [this] { automatic_.SetMode(AutoMode::Preview); });
  connect(random_, &QCheckBox::clicked, this, [this](bool ticked) { automatic_.SetRandom(ticked); });
  connect(pause_, &QPushButton::clicked, this, [this] { automatic_.TogglePauseAtEnd(); });
  connect(timer_, &QPushButton::clicked, this, [this] { OpenTimer(); });
  connect(&automatic_, &AutoPlay::Changed, this, [this] { Show(); });
  Show();
}

void AutoPlayPanel::Bind(QAbstractButton* button, const QKeySequence& key) {
  // A shortcut of its own: a button whose words change loses the one that it was given.
  connect(new QShortcut(key, this), &QShortcut::activated, button, &QAbstractButton::click);
  TellKey(*button, key.toString(QKeySequence::NativeText));
}

void AutoPlayPanel::resizeEvent(QResizeEvent* event) {
  Panel::resizeEvent(event);
  // On a narrow desk the status line says enough.
  next_->setVisible(width() > fontMetrics().height() * 32);
}

void AutoPlayPanel::changeEvent(QEvent* event) {
  Panel::changeEvent(event);
  // A locked desk takes no hand in its form either.
  if (event->type() == QEvent::EnabledChange && !isEnabled() && timerForm_ != nullptr) timerForm_->hide();
}

void AutoPlayPanel::OpenTimer() {
  if (timerForm_ == nullptr) timerForm_ = new TimerForm(automatic_, loop_, this);
  timerForm_->show();
  timerForm_->raise();
  timerForm_->activateWindow();
}

void AutoPlayPanel::Show() {
  const bool stopped = automatic_.StartCaption() == QStringLiteral("START");
  start_->setText(automatic_.StartCaption());
  start_->setAccessibleName(stopped ? tr("Start automatic play") : tr("Stop automatic play"));
  if (start_->property("role").toString() != (stopped ? QStringLiteral("go") : QStringLiteral("stop"))) {
    Theme::SetRole(*start_, stopped ? QStringLiteral("go") : QStringLiteral("stop"));
  }
  kelvo_->setChecked(automatic_.Mode() == AutoMode::Kelvo);
  jukebox_->setChecked(automatic_.Mode() == AutoMode::Jukebox);
  preview_->setChecked(automatic_.Mode() == AutoMode::Preview);
  random_->setChecked(automatic_.RandomTicked());
  for (QWidget* option : std::initializer_list<QWidget*>{kelvo_, jukebox_, preview_, random_, timer_}) {
    Offer(*option, automatic_.WhyNoChoice());
  }
  pause_->setText(automatic_.PauseCaption());
  Offer(*pause_, automatic_.WhyNoPause());
  SetSpokenText(*status_, tr("Automatic play"), automatic_.StatusText());
  status_->setToolTip(automatic_.StatusText());
  QPalette colours = palette();
  if (automatic_.NothingPlayable()) colours.setColor(QPalette::WindowText, Theme::Palette().onAir);
  status_->setPalette(colours);
  QString next;
  if (const std::optional<UpNext> up = automatic_.Next()) {
    next = tr("Next: %1 in %2, %3")
               .arg(up->title.isEmpty() ? tr("by chance") : up->title, MinutesSeconds(up->seconds),
                    TransitionWord(up->transition));
  } else if (!automatic_.LastSkipped().isEmpty()) {
    next = automatic_.LastSkipped();
  }
  SetSpokenText(*next_, tr("Automatic play"), next);
  next_->setToolTip(next);
}

}  // namespace kelvo
