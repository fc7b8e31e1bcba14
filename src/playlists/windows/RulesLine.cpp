#include "playlists/windows/RulesLine.h"

#include "playlists/GeneratorSettings.h"
#include "playlists/PlaylistGenerator.h"
#include "playlists/windows/NumberBox.h"
#include "ui/Line.h"

#include <QCheckBox>

namespace kelvo {

RulesLine::RulesLine(PlaylistGenerator& generator, QWidget* parent)
    : QWidget(parent),
      generator_(generator),
      follow_(new QCheckBox(tr("Follo&w The Tempo, Within"), this)),
      within_(AddNumberBox(*this, QStringLiteral("NumWithin"), tr("Beats per minute beside the outline"),
                           setting::GeneratorTempoWithin.lowest, setting::GeneratorTempoWithin.highest)),
      artist_(AddNumberBox(*this, QStringLiteral("NumArtist"),
                           tr("Minutes between tracks of the same artist"),
                           setting::GeneratorArtistMinutes.lowest, setting::GeneratorArtistMinutes.highest)),
      played_(AddNumberBox(*this, QStringLiteral("NumPlayed"), tr("Hours in which what played is left out"),
                           setting::GeneratorPlayedHours.lowest, setting::GeneratorPlayedHours.highest)) {
  BuildRules();
  auto* line = new QHBoxLayout(this);
  line->setContentsMargins(0, 0, 0, 0);
  const int room = fontMetrics().height();
  line->addLayout(Line({follow_, within_}));
  line->addSpacing(room);
  line->addLayout(LabelledBox(*this, tr("Same Artist A&part"), *artist_));
  line->addSpacing(room);
  line->addLayout(LabelledBox(*this, tr("Leave Out What Pla&yed Within"), *played_));
  line->addStretch(1);
  Join();
}

void RulesLine::BuildRules() {
  follow_->setObjectName(QStringLiteral("ChkFollowTempo"));
  follow_->setToolTip(tr("\"Fit To Time\" chooses tracks by the outline of the tempo"));
  within_->setSuffix(tr(" BPM"));
  within_->setToolTip(tr("So far beside the outline a track may be"));
  artist_->setSuffix(tr(" min"));
  artist_->setSpecialValueText(tr("off"));
  artist_->setToolTip(tr("From the end of a track to the next one by the same artist"));
  played_->setSuffix(tr(" h"));
  played_->setSpecialValueText(tr("off"));
  played_->setToolTip(tr("What played within these hours of the session is left out"));
}

template <typename Change>
void RulesLine::Wish(Change change) {
  GeneratorWishes wishes = generator_.Wishes();
  change(wishes);
  generator_.SetWishes(wishes);
}

void RulesLine::Join() {
  connect(follow_, &QCheckBox::toggled, this,
          [this](bool on) { Wish([on](GeneratorWishes& wishes) { wishes.followTempo = on; }); });
  const auto join = [this](QSpinBox* box, int GeneratorWishes::*wish) {
    connect(box, &QSpinBox::valueChanged, this, [this, wish](int value) {
      Wish([wish, value](GeneratorWishes& wishes) { wishes.*wish = value; });
    });
  };
  join(within_, &GeneratorWishes::tempoWithin);
  join(artist_, &GeneratorWishes::artistMinutes);
  join(played_, &GeneratorWishes::playedHours);
}

void RulesLine::Show() {
  const GeneratorWishes& wishes = generator_.Wishes();
  const auto show = [](auto* control, auto set) {
    const QSignalBlocker quiet(control);
    set();
  };
  show(follow_, [&] { follow_->setChecked(wishes.followTempo); });
  show(within_, [&] { within_->setValue(wishes.tempoWithin); });
  show(artist_, [&] { artist_->setValue(wishes.artistMinutes); });
  show(played_, [&] { played_->setValue(wishes.playedHours); });
  within_->setEnabled(wishes.followTempo);
}

}  // namespace kelvo
