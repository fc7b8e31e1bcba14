#include "playlists/windows/FadePanelView.h"

#include "playlists/windows/WaveEndView.h"
#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/Fader.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/Theme.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QLabel>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

namespace kelvo {

namespace {

/// The slider goes so far, seconds; further only for a track that has a longer fade already.
constexpr int kUsualPosition = 60;
constexpr std::array kKinds{TransitionKind::Dub, TransitionKind::PartFade, TransitionKind::Pan};

}  // namespace

FadePanelView::FadePanelView(PlayEditor& editor, FadePanel panel, QWidget* parent)
    : Panel(Group::Decks, panel == FadePanel::In ? QStringLiteral("FADE IN") : QStringLiteral("FADE OUT"),
            parent),
      editor_(editor),
      panel_(panel),
      kinds_(new QButtonGroup(this)),
      wave_(new WaveEndView(panel == FadePanel::In ? WaveEndView::End::Last : WaveEndView::End::Start,
                            editor.Wave(), this)) {
  const bool in = panel == FadePanel::In;
  const QString id = in ? QStringLiteral("FadeIn") : QStringLiteral("FadeOut");
  const auto fixed = [panel](const char* name) {
    return QStringLiteral("%1_%2").arg(QString::fromLatin1(name)).arg(PlaceOf(panel));
  };
  const std::array words{QStringLiteral("Dub"), QStringLiteral("Part Fade"), QStringLiteral("Pan Fade")};
  const std::array options{"Option5", "Option6", "Option7"};
  for (std::size_t place = 0; place < kKinds.size(); ++place) {
    auto*& button = kindButtons_[place];
    button = new QRadioButton(words[place], this);
    SetNames(*button, QStringLiteral("Opt") + id + QString(words[place]).remove(QLatin1Char(' ')),
             fixed(options[place]));
    kinds_->addButton(button, static_cast<int>(kKinds[place]));
  }
  position_ = AddSlider(in ? QStringLiteral("Fade In Position") : QStringLiteral("Fade Out Position"),
                        QStringLiteral("Sld") + id + QStringLiteral("Position"), fixed("Slider1"),
                        QStringLiteral("Lbl") + id + QStringLiteral("PositionHead"), fixed("Label20"),
                        kUsualPosition);
  speed_ = AddSlider(in ? QStringLiteral("Fade In Speed") : QStringLiteral("Fade Out Speed"),
                     QStringLiteral("Sld") + id + QStringLiteral("Speed"), fixed("Slider2"), fixed("Label6"),
                     fixed("Label21"), kMostFadeSpeed);
  position_.fader->setPageStep(5);
  speed_.fader->setPageStep(5);
  wave_->setObjectName(QStringLiteral("Wave") + id);
  wave_->setAccessibleName(in ? tr("Fade point at the end of the track, seconds before it")
                              : tr("Fade point at the start of the track, seconds behind it"));
  wave_->setToolTip(in ? tr("The end of this track; drag the point, or use the arrow keys")
                       : tr("The start of this track; drag the point, or use the arrow keys"));
  Lay(in ? tr("At its end the next track comes in, so many seconds before it.")
         : tr("Over its start the one before goes out, where that takes longer."));
  connect(kinds_, &QButtonGroup::idClicked, this, [this](int kind) {
    editor_.Change([&](PlayEdit& edit) { edit.Fade(panel_).kind = static_cast<TransitionKind>(kind); });
  });
  connect(position_.fader, &Fader::MovedByHand, this, [this](int seconds) { SetPosition(seconds); });
  connect(wave_, &WaveEndView::MovedByHand, this, [this](int seconds) { SetPosition(seconds); });
  connect(speed_.fader, &Fader::MovedByHand, this,
          [this](int speed) { editor_.Change([&](PlayEdit& edit) { edit.Fade(panel_).speed = speed; }); });
}

FadePanelView::Slider FadePanelView::AddSlider(const QString& what, const QString& name,
                                               const QString& fixedName, const QString& label,
                                               const QString& words, int most) {
  const Slider slider{new QLabel(what, this), new Fader(Qt::Horizontal, 0, most, this), new QLabel(this)};
  slider.label->setObjectName(label);
  SetNames(*slider.fader, name, fixedName);
  slider.fader->setAccessibleName(what);
  slider.fader->setToolTip(what);
  SetNames(*slider.words, QStringLiteral("Lbl") + name.mid(3), words);
  slider.words->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("32767")));
  slider.words->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  return slider;
}

void FadePanelView::Lay(const QString& help) {
  auto* words = new ElidedLabel(help, this);
  words->setToolTip(help);
  words->setFont(Theme::Font(0.85));
  QPalette quiet = words->palette();
  quiet.setColor(QPalette::WindowText, Theme::Palette().muted);
  words->setPalette(quiet);
  auto* sliders = new QGridLayout;
  sliders->setColumnStretch(1, 1);
  int row = 0;
  for (const Slider& slider : {position_, speed_}) {
    sliders->addWidget(slider.label, row, 0);
    sliders->addWidget(slider.fader, row, 1);
    sliders->addWidget(slider.words, row, 2);
    ++row;
  }
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(words);
  layout->addLayout(Line({kindButtons_[0], kindButtons_[1], kindButtons_[2], kRoom}));
  layout->addLayout(sliders);
  layout->addWidget(wave_, 1);
}

void FadePanelView::SetPosition(int seconds) {
  editor_.Change([&](PlayEdit& edit) { edit.Fade(panel_).position = seconds; });
}

void FadePanelView::ShowKind(const FadeEdit& fade, const QString& why) {
  // None is chosen where the file names none of the three.
  kinds_->setExclusive(false);
  for (std::size_t place = 0; place < kKinds.size(); ++place) {
    kindButtons_[place]->setChecked(fade.kind == kKinds[place]);
    Offer(*kindButtons_[place], why);
  }
  kinds_->setExclusive(true);
}

void FadePanelView::Show() {
  const FadeEdit& fade = editor_.Edit().Fade(panel_);
  QString why = editor_.WhyNoEdit();
  if (why.isEmpty() && !editor_.Edit().ownFades) why = tr("The track plays with the default settings");
  ShowKind(fade, why);
  const bool held = position_.fader->isSliderDown() || wave_->isSliderDown();
  if (!held) position_.fader->setMaximum(std::max(kUsualPosition, fade.position));
  position_.fader->setValue(fade.position);
  position_.words->setText(QString::number(fade.position));
  wave_->SetPoint(fade.position);
  speed_.fader->setValue(fade.speed);
  speed_.words->setText(QString::number(fade.speed));
  for (QWidget* each :
       std::initializer_list<QWidget*>{position_.label, position_.fader, position_.words, wave_}) {
    Offer(*each, why);
  }
  if (why.isEmpty() && fade.kind == TransitionKind::Dub) why = tr("A dub has no fade speed");
  for (QWidget* each : std::initializer_list<QWidget*>{speed_.label, speed_.fader, speed_.words})
    Offer(*each, why);
}

}  // namespace kelvo
