#include "playlists/windows/OutlinePanel.h"

#include "playlists/GeneratorSettings.h"
#include "playlists/PlaylistGenerator.h"
#include "playlists/windows/NumberBox.h"
#include "ui/Fader.h"
#include "ui/Line.h"
#include "ui/Naming.h"

#include <QRadioButton>
#include <QTimeEdit>

namespace kelvo {
namespace {

using Hand = TempoChart::Hand;

/// The box of a point of the outline, shown by its time.
class PointBox : public QSpinBox {
 public:
  using QSpinBox::QSpinBox;
  void SetSeconds(int seconds) {
    seconds_ = seconds;
    lineEdit()->setText(textFromValue(value()));
  }

 protected:
  [[nodiscard]] QString textFromValue(int point) const override {
    return TempoChart::TimeText(point, seconds_);
  }

 private:
  int seconds_ = 3600;
};

}  // namespace

OutlinePanel::OutlinePanel(PlaylistGenerator& generator, QWidget* parent)
    : QWidget(parent),
      generator_(generator),
      chart_(new TempoChart(this)),
      duration_(new Fader(Qt::Horizontal, 1, setting::GeneratorSeconds.highest / 60, this)),
      exact_(new QTimeEdit(this)) {
  SetNames(*chart_, QStringLiteral("PicOutline"), QStringLiteral("Picture1"));
  chart_->setToolTip(
      tr("Draw the tempo with the mouse, or: Left and Right for the point, Up and Down for its value"));
  AddValue(Hand::Bpm, QStringLiteral("Bpm"), QStringLiteral("&Bpm"),
           tr("The mouse and the keys in the chart change the tempo at a point"));
  AddValue(Hand::HiBpm, QStringLiteral("HiBpm"), QStringLiteral("&Hi Bpm"),
           tr("The mouse and the keys in the chart change the highest tempo"));
  AddValue(Hand::LoBpm, QStringLiteral("LoBpm"), QStringLiteral("&Lo Bpm"),
           tr("The mouse and the keys in the chart change the lowest tempo"));
  AddValue(Hand::Time, QStringLiteral("Time"), QStringLiteral("&Time"),
           tr("The mouse and the keys in the chart choose a point"));
  auto* values = new QGridLayout;
  for (std::size_t each = 0; each < hands_.size(); ++each) {
    values->addWidget(hands_[each], static_cast<int>(each), 0);
    values->addWidget(values_[each], static_cast<int>(each), 1);
  }
  values->setRowStretch(static_cast<int>(hands_.size()), 1);
  BuildDuration();
  auto* wanted = new QLabel(tr("&Duration"), this);
  wanted->setBuddy(exact_);
  auto* shape = new QHBoxLayout;
  shape->addWidget(chart_, 1);
  shape->addLayout(values);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(shape, 1);
  layout->addLayout(Line({wanted, {duration_, 1}, exact_}));

  connect(chart_, &TempoChart::Drawn, this, [this](const TempoOutline& outline) {
    GeneratorWishes wishes = generator_.Wishes();
    wishes.outline = outline;
    generator_.SetWishes(wishes);
  });
  connect(chart_, &TempoChart::PointChosen, this, [this] { Show(); });
  hands_[0]->setChecked(true);
}

void OutlinePanel::AddValue(Hand hand, const QString& name, const QString& words, const QString& tooltip) {
  const auto each = static_cast<std::size_t>(hand);
  hands_[each] = new QRadioButton(words, this);
  SetNames(*hands_[each], QStringLiteral("Opt") + name, QStringLiteral("Option1(%1)").arg(each));
  hands_[each]->setToolTip(tooltip);
  const QString accessible = QString(words).remove(QLatin1Char('&'));
  if (hand == Hand::Time) {
    auto* box = new PointBox(this);
    box->setAccessibleName(accessible);
    box->setRange(0, TempoOutline::kPoints - 1);
    auto* line = box->findChild<QLineEdit*>();
    line->setReadOnly(true);
    line->setAccessibleName(accessible);
    values_[each] = box;
  } else {
    values_[each] = AddNumberBox(*this, {}, accessible, TempoOutline::kLowest, TempoOutline::kHighest);
  }
  SetNames(*values_[each], QStringLiteral("Num") + name, QStringLiteral("UpDown2(%1)").arg(each));
  values_[each]->setToolTip(hand == Hand::Time ? tr("The point of the outline, by its time")
                                               : tr("%1, beats per minute").arg(accessible));
  connect(hands_[each], &QRadioButton::toggled, this, [this, hand](bool on) {
    if (on) chart_->SetHand(hand);
  });
  connect(values_[each], &QSpinBox::valueChanged, this, [this, hand](int value) { Take(hand, value); });
}

void OutlinePanel::BuildDuration() {
  SetNames(*duration_, QStringLiteral("SldDuration"), QStringLiteral("Slider1"));
  duration_->setAccessibleName(tr("Duration wanted, minutes"));
  duration_->setToolTip(tr("How long the list is to last"));
  duration_->setSingleStep(1);
  duration_->setPageStep(15);
  SetNames(*exact_, QStringLiteral("TimDuration"), QStringLiteral("Label1"));
  exact_->setDisplayFormat(QStringLiteral("HH:mm:ss"));
  exact_->setAccessibleName(tr("Duration wanted"));
  exact_->findChild<QLineEdit*>()->setAccessibleName(tr("Duration wanted"));
  exact_->setToolTip(tr("How long the list is to last, to the second"));
  exact_->setButtonSymbols(QAbstractSpinBox::NoButtons);
  exact_->setMinimumTime(QTime(0, 0).addSecs(setting::GeneratorSeconds.lowest));
  exact_->setKeyboardTracking(false);
  connect(duration_, &Fader::MovedByHand, this, [this](int minutes) { TakeSeconds(minutes * 60); });
  connect(exact_, &QTimeEdit::timeChanged, this,
          [this](QTime time) { TakeSeconds(QTime(0, 0).secsTo(time)); });
}

void OutlinePanel::TakeSeconds(int seconds) {
  GeneratorWishes wishes = generator_.Wishes();
  wishes.seconds = seconds;
  generator_.SetWishes(wishes);
}

void OutlinePanel::Take(Hand hand, int value) {
  hands_[static_cast<std::size_t>(hand)]->setChecked(true);
  GeneratorWishes wishes = generator_.Wishes();
  switch (hand) {
    case Hand::Bpm:
      wishes.outline.SetBpm(chart_->Point(), value);
      break;
    case Hand::HiBpm:
      wishes.outline.SetHigh(value);
      break;
    case Hand::LoBpm:
      wishes.outline.SetLow(value);
      break;
    case Hand::Time:
      chart_->ChoosePoint(value);
      break;
  }
  generator_.SetWishes(wishes);
  // What the outline didn't take is shown as it is.
  Show();
}

void OutlinePanel::Show() {
  const GeneratorWishes& wishes = generator_.Wishes();
  chart_->Show(wishes.outline, wishes.seconds);
  static_cast<PointBox*>(values_[3])->SetSeconds(wishes.seconds);
  const std::array<int, 4> values{wishes.outline.Bpm(chart_->Point()), wishes.outline.High(),
                                  wishes.outline.Low(), chart_->Point()};
  for (std::size_t each = 0; each < values.size(); ++each) {
    const QSignalBlocker quiet(values_[each]);
    values_[each]->setValue(values[each]);
  }
  const QSignalBlocker quietSlider(duration_);
  duration_->setValue(wishes.seconds / 60);
  const QSignalBlocker quietBox(exact_);
  exact_->setTime(QTime(0, 0).addSecs(wishes.seconds));
}

}  // namespace kelvo
