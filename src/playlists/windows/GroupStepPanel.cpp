#include "playlists/windows/GroupStepPanel.h"

#include "database/GroupWords.h"
#include "playlists/windows/SecondsBox.h"
#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/WhyOff.h"

#include <QButtonGroup>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace kelvo {

namespace {

constexpr std::array kKinds{TransitionKind::Dub, TransitionKind::PartFade, TransitionKind::Pan};

}  // namespace

GroupStepPanel::GroupStepPanel(GroupEditor& editor, QWidget* parent)
    : Panel(Group::Lists, tr("ELEMENT"), parent),
      editor_(editor),
      facts_(new ElidedLabel(this)),
      time_(new SecondsBox(tr("Time of the element"), this)),
      end_(new SecondsBox(tr("End of the fade"), this)),
      span_(new QLabel(this)),
      kinds_(new QButtonGroup(this)),
      speed_(new QSpinBox(this)) {
  facts_->setObjectName(QStringLiteral("LblElement"));
  facts_->setTextFormat(Qt::PlainText);
  SetNames(*time_, QStringLiteral("NumTime"), QStringLiteral("UpDown1_0"));
  time_->setToolTip(tr("When; all that come later move along"));
  SetNames(*end_, QStringLiteral("NumTime2"), QStringLiteral("UpDown1_1"));
  span_->setObjectName(QStringLiteral("LblSpan"));
  SetNames(*speed_, QStringLiteral("NumFadeSpeed"));
  speed_->setRange(1, 50);
  SetUpBox(*speed_, tr("Fade speed"));
  const std::array words{QStringLiteral("Dub"), QStringLiteral("PFade"), QStringLiteral("Pan")};
  for (std::size_t place = 0; place < kKinds.size(); ++place) {
    options_[place] = new QRadioButton(words[place], this);
    SetNames(*options_[place], QStringLiteral("Opt") + words[place], QStringLiteral("Option1_%1").arg(place));
    kinds_->addButton(options_[place], static_cast<int>(kKinds[place]));
  }
  BuildCommands();
  Lay();
  connect(time_, &QSpinBox::valueChanged, this, [this](int seconds) { editor_.SetSeconds(seconds); });
  connect(end_, &QSpinBox::valueChanged, this, [this](int seconds) { editor_.SetEnd(seconds); });
  connect(speed_, &QSpinBox::valueChanged, this, [this](int speed) { editor_.SetSpeed(speed); });
  connect(kinds_, &QButtonGroup::idClicked, this,
          [this](int kind) { editor_.SetFade(static_cast<TransitionKind>(kind)); });
}

void GroupStepPanel::BuildCommands() {
  byHand_ = AddCommand(*this, {.name = QStringLiteral("CmdMan"),
                               .fixedName = QStringLiteral("Command3"),
                               .words = QStringLiteral("Man"),
                               .tooltip = tr("Sets the fade's speed apart from its times"),
                               .run = [this] { editor_.SetByHand(); }});
  apply_ = AddCommand(
      *this, {.name = QStringLiteral("CmdApply"),
              .fixedName = QStringLiteral("Command5"),
              .words = QStringLiteral("Apply"),
              .tooltip = tr("Takes these values; all later elements move along"),
              .key = QKeySequence(Qt::CTRL | Qt::Key_Return),
              .icon = Icon::Check,
              .role = QStringLiteral("primary"),
              .run = [this] {
                // What is being typed counts.
                for (QSpinBox* box : {static_cast<QSpinBox*>(time_), static_cast<QSpinBox*>(end_), speed_})
                  box->interpretText();
                editor_.Apply();
              }});
  cancel_ = AddCommand(*this, {.name = QStringLiteral("CmdCancel"),
                               .fixedName = QStringLiteral("Command6"),
                               .words = QStringLiteral("Cancel"),
                               .tooltip = tr("Leaves the element as it is"),
                               .keyWords = tr("Esc"),
                               .run = [this] { editor_.CancelEdit(); }});
}

void GroupStepPanel::Lay() {
  const auto label = [this](const QString& words, QWidget* field) {
    auto* head = new QLabel(words, this);
    head->setBuddy(field);
    return head;
  };
  span_->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("Span 00:00:00")));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(facts_);
  layout->addLayout(Line({label(QStringLiteral("&Time"), time_), time_, label(QStringLiteral("Time&2"), end_),
                          end_, span_, options_[0], options_[1], options_[2],
                          label(QStringLiteral("&Speed"), speed_), speed_, byHand_, kRoom, apply_, cancel_}));
}

void GroupStepPanel::TakeKeys() {
  time_->setFocus();
  time_->selectAll();
}

void GroupStepPanel::ShowFade(const StepEdit& edit) {
  using Kind = GroupEdit::Kind;
  const Kind kind = editor_.Edit().KindOf(edit.row);
  const bool fades = kind == Kind::FadeStart || kind == Kind::FadeEnd;
  const QString noFade = tr("It is no fade");
  kinds_->setExclusive(false);
  for (std::size_t place = 0; place < kKinds.size(); ++place) {
    options_[place]->setChecked((fades || kind == Kind::Dub) && edit.fade == kKinds[place]);
    Offer(*options_[place],
          WhyOff({{!fades, noFade},
                  {kKinds[place] == TransitionKind::Dub, tr("A fade is a part fade or a pan")}}));
  }
  kinds_->setExclusive(true);
  const QSignalBlocker quietEnd(end_);
  const QSignalBlocker quietSpeed(speed_);
  end_->setValue(edit.endSeconds);
  speed_->setValue(edit.speed);
  const int start =
      kind == Kind::FadeEnd ? editor_.Edit().At(*editor_.Edit().FadeStartOf(edit.row)).seconds : edit.seconds;
  span_->setText(fades ? QStringLiteral("Span %1").arg(ElementTime(edit.endSeconds - start)) : QString());
  Offer(*end_, WhyOff({{!fades, noFade},
                       {kind == Kind::FadeEnd, tr("It follows from the fade's speed")},
                       {edit.byHand, tr("The speed is set by hand")}}));
  Offer(*speed_, WhyOff({{!fades, noFade},
                         {!edit.byHand, tr("It follows from the fade's times; \"Man\" sets it free")}}));
  Offer(*byHand_, WhyOff({{!fades, noFade}, {edit.byHand, tr("The speed is set by hand")}}));
}

void GroupStepPanel::Show() {
  if (!editor_.Panel()) return;
  const StepEdit& edit = *editor_.Panel();
  const GroupRow& row = editor_.Rows()[edit.row];
  const GroupElement& element = row.element;
  const auto field = [](bool there, const QString& words) { return there ? words : QStringLiteral("-"); };
  facts_->setText(tr("%1 :  %2  %3  -  track %4, deck %5, fade %6, speed %7, length %8, position %9")
                      .arg(QString::number(edit.row + 1), ElementTime(element.seconds), editor_.Details(row),
                           QString::number(ToInt(element.track)), QString::number(element.deck),
                           FadeWord(element.fade), field(element.speed >= 0, QString::number(element.speed)),
                           field(element.code == SessionCode::Loaded, QString::number(element.length)),
                           field(element.position != -1, PositionText(element.position))));
  facts_->setToolTip(facts_->text());
  const QSignalBlocker quiet(time_);
  time_->setValue(edit.seconds);
  ShowFade(edit);
}

}  // namespace kelvo
