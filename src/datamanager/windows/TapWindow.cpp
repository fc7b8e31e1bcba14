#include "datamanager/windows/TapWindow.h"

#include "datamanager/windows/BeatLamp.h"
#include "platform/Words.h"
#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/Fader.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/Panel.h"
#include "ui/WhyOff.h"

#include <QApplication>
#include <QCheckBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace kelvo {

TapWindow::TapWindow(TapCounter& counter)
    : ToolWindow(
          {.name = QStringLiteral("CountBeats"), .title = tr("Count Beats"), .letters = 78, .lines = 22}),
      counter_(counter),
      track_(new ElidedLabel(this)),
      place_(new Fader(Qt::Horizontal, 0, 1, this)),
      time_(new QLabel(this)),
      box_(new QLineEdit(this)),
      lamp_(new BeatLamp(this)),
      taps_(AddFigure(QStringLiteral("LblTaps"), tr("Taps so far"))),
      median_(AddFigure(QStringLiteral("LblMedian"), tr("Median of the taps"))),
      heard_(AddFigure(QStringLiteral("LblHeard"), tr("Heard in the file"))),
      countPanel_(new Panel(Group::Lists, tr("BEATS PER MINUTE"), this)),
      hintPanel_(new Panel(Group::Console, tr("HOW TO COUNT"), this)),
      comparePanel_(new Panel(Group::Console, tr("TO COMPARE"), this)) {
  BuildPlayer();
  BuildCount();
  BuildHints();
  BuildLayout();
  connect(&counter_, &TapCounter::Changed, this, [this] { Show(); });
  connect(&counter_, &TapCounter::Beat, this, [this] { ShowBeat(); });
  Show();
  ShowBeat();
}

TapWindow::~TapWindow() {
  TakeSpaceBar(false);
}

QLabel* TapWindow::AddFigure(const QString& name, const QString& accessible) {
  auto* label = new QLabel(this);
  label->setObjectName(name);
  label->setAccessibleName(accessible);
  return label;
}

QPushButton* TapWindow::AddUse(const QString& name, const QString& tooltip, std::function<void()> run) {
  QPushButton* use =
      AddCommand(*this, {.name = name, .words = tr("Use"), .tooltip = tooltip, .run = std::move(run)});
  use->setAccessibleName(tooltip);
  return use;
}

void TapWindow::BuildPlayer() {
  track_->setObjectName(QStringLiteral("LblTrack"));
  SetNames(*place_, QStringLiteral("SldPlace"), QStringLiteral("Slider1"));
  place_->setAccessibleName(tr("Place in the track"));
  place_->setToolTip(tr("Place in the track"));
  time_->setObjectName(QStringLiteral("LblTime"));
  play_ = AddCommand(*this, {.name = QStringLiteral("CmdPlay"),
                             .fixedName = QStringLiteral("Command18"),
                             .words = tr("&Play"),
                             .tooltip = tr("Plays the track beside the programme"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_P),
                             .icon = Icon::Play,
                             .role = QStringLiteral("go"),
                             .run = [this] { counter_.Play(); }});
  stop_ = AddCommand(*this, {.name = QStringLiteral("CmdStop"),
                             .fixedName = QStringLiteral("Command19"),
                             .words = tr("S&top"),
                             .tooltip = tr("Stops the track"),
                             .icon = Icon::Stop,
                             .run = [this] { counter_.Stop(); }});
  connect(place_, &Fader::MovedByHand, this, [this](int seconds) { counter_.SetPosition(seconds); });
}

void TapWindow::BuildCount() {
  SetNames(*countPanel_, QStringLiteral("PnlCount"), QStringLiteral("Picture2"));
  SetNames(*box_, QStringLiteral("TxtBpm"), QStringLiteral("Text1"));
  box_->setAccessibleName(tr("Beats per minute"));
  box_->setToolTip(tr("The figure that is saved; it can be typed as well"));
  box_->setMaxLength(20);
  QFont large = box_->font();
  large.setPointSizeF(large.pointSizeF() * 1.6);
  box_->setFont(large);
  connect(box_, &QLineEdit::textEdited, this, [this](const QString& text) { counter_.SetText(text); });
  count_ =
      AddCommand(*this, {.name = QStringLiteral("CmdCount"),
                         .fixedName = QStringLiteral("Command25"),
                         .words = counter_.Caption(),
                         .tooltip = tr("Begins to count the taps of the space bar; again: shows the result"),
                         .key = QKeySequence(Qt::CTRL | Qt::Key_B),
                         .role = QStringLiteral("primary"),
                         .run = [this] { counter_.CountOrEnd(); }});
  save_ = AddCommand(*this, {.name = QStringLiteral("CmdSave"),
                             .fixedName = QStringLiteral("Command26"),
                             .words = QStringLiteral("Save To Track"),
                             .tooltip = tr("Stores the figure in the box with the track"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_S),
                             .run = [this] { counter_.Save(); }});
  half_ = AddCommand(*this, {.name = QStringLiteral("CmdHalf"),
                             .words = tr("&Half"),
                             .tooltip = tr("Half the figure in the box"),
                             .run = [this] { counter_.Scale(0.5); }});
  double_ = AddCommand(*this, {.name = QStringLiteral("CmdDouble"),
                               .words = tr("&Double"),
                               .tooltip = tr("Twice the figure in the box"),
                               .run = [this] { counter_.Scale(2); }});
  useMedian_ = AddUse(QStringLiteral("CmdUseMedian"), tr("Takes the median of the taps into the box"),
                      [this] { counter_.Use(counter_.Median().value_or(0)); });
  useHeard_ = AddUse(QStringLiteral("CmdUseHeard"), tr("Takes what was heard in the file into the box"),
                     [this] { counter_.Use(counter_.Heard().value_or(FileTempo()).bpm); });
}

void TapWindow::BuildHints() {
  auto* words = new QLabel(QStringLiteral("Please Tap the Space Bar In Time With The Music.\n"
                                          "BPM Counting Starts With The First Tap Of The Space Bar !"),
                           hintPanel_);
  words->setWordWrap(true);
  hide_ = new QCheckBox(QStringLiteral("Don't Show This Again"), hintPanel_);
  SetNames(*hide_, QStringLiteral("ChkHideHint"), QStringLiteral("Check2"));
  hide_->setToolTip(tr("Counts without these words from now on"));
  connect(hide_, &QCheckBox::toggled, this, [this](bool on) { counter_.HideInstructions(on); });
  auto* layout = new QVBoxLayout(hintPanel_);
  layout->addWidget(words);
  layout->addWidget(hide_);
}

void TapWindow::BuildLayout() {
  auto* count = new QVBoxLayout(countPanel_);
  count->addLayout(Line({{box_, 1}, lamp_, {taps_, 1}}));
  count->addLayout(Line({count_, save_, kRoom, half_, double_}));
  auto* compare = new QGridLayout(comparePanel_);
  auto* medianName = new QLabel(tr("Median of the taps"), comparePanel_);
  auto* heardName = new QLabel(tr("Heard in the file"), comparePanel_);
  compare->addWidget(medianName, 0, 0);
  compare->addWidget(median_, 0, 1);
  compare->addWidget(useMedian_, 0, 2);
  compare->addWidget(heardName, 1, 0);
  compare->addWidget(heard_, 1, 1);
  compare->addWidget(useHeard_, 1, 2);
  compare->setColumnStretch(1, 1);
  compare->setHorizontalSpacing(fontMetrics().height());
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(track_);
  layout->addLayout(Line({play_, stop_, {place_, 1}, time_}));
  layout->addWidget(countPanel_);
  layout->addWidget(hintPanel_);
  layout->addWidget(comparePanel_);
  layout->addStretch(1);
}

void TapWindow::TakeKeys() {
  play_->setFocus();
}

void TapWindow::TakeFiles(const QStringList& places) {
  if (!places.isEmpty()) counter_.Take(places.first());
}

void TapWindow::TakeSpaceBar(bool take) {
  if (take == std::exchange(takesSpace_, take)) return;
  // Of the whole application, and the latest of all: elsewhere in the program the space bar is the desk's.
  if (take) {
    qApp->installEventFilter(this);
  } else {
    qApp->removeEventFilter(this);
  }
}

bool TapWindow::eventFilter(QObject* watched, QEvent* event) {
  const bool press = event->type() == QEvent::KeyPress;
  if (!press && event->type() != QEvent::KeyRelease) return ToolWindow::eventFilter(watched, event);
  const auto* widget = qobject_cast<QWidget*>(watched);
  const auto* key = static_cast<QKeyEvent*>(event);
  const bool tap = widget != nullptr && widget->window() == this && key->key() == Qt::Key_Space &&
                   key->modifiers() == Qt::NoModifier;
  if (!tap) return false;
  // A finger that stays on the key has tapped once.
  if (press && !key->isAutoRepeat()) {
    box_->setFocus();
    counter_.Tap();
  }
  return true;
}

void TapWindow::Show() {
  const QString& path = counter_.Path();
  track_->setText(path.isEmpty()
                      ? tr("No track is selected: choose one in the console or in the Data Manager")
                      : QFileInfo(path).fileName());
  track_->setToolTip(path);
  const bool armed = counter_.Armed();
  if (armed && !takesSpace_) box_->setFocus();
  TakeSpaceBar(armed && isVisible());
  if (box_->text() != counter_.Text()) box_->setText(counter_.Text());
  count_->setText(counter_.Caption());
  hintPanel_->setVisible(counter_.Instructing());
  hide_->setChecked(counter_.HidesInstructions());
  taps_->setText(tr("Taps: %1").arg(counter_.Taps()));
  const QString whyNoPlay = counter_.WhyNoPlay();
  Offer(*play_, WhyOff({{!whyNoPlay.isEmpty(), whyNoPlay}, {counter_.Playing(), tr("It plays")}}));
  Offer(*stop_, WhyOff({{!counter_.Playing(), tr("Nothing plays")}}));
  Offer(*save_, counter_.WhyNoSave());
  for (QPushButton* scale : {half_, double_}) Offer(*scale, counter_.WhyNoScale());
  ShowFigures();
}

void TapWindow::ShowFigures() {
  const OffReason counting{counter_.Armed(), tr("The taps are being counted")};
  const std::optional<double> median = counter_.Median();
  median_->setText(median ? QString::number(*median, 'f', 1) : QStringLiteral("-"));
  heard_->setText(counter_.HeardWords().isEmpty() ? QStringLiteral("-") : counter_.HeardWords());
  Offer(*useMedian_, WhyOff({counting, {!median, tr("There are too few taps")}}));
  Offer(*useHeard_, WhyOff({counting, {!counter_.Heard(), tr("Nothing was heard yet")}}));
}

void TapWindow::ShowBeat() {
  lamp_->SetOn(counter_.Lamp());
  place_->setRange(0, std::max(static_cast<int>(counter_.Duration()), 1));
  if (!place_->isSliderDown()) place_->setValue(static_cast<int>(counter_.Position()));
  place_->setEnabled(counter_.Duration() > 0);
  time_->setText(MinutesSeconds(counter_.Position()) + QStringLiteral(" / ") +
                 MinutesSeconds(counter_.Duration()));
}

}  // namespace kelvo
