#include "config/windows/ValuePages.h"

#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/Theme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QRadioButton>
#include <QVBoxLayout>

namespace kelvo {
namespace {

QGridLayout* SliderGrid() {
  auto* grid = new QGridLayout;
  grid->setColumnStretch(1, 1);
  return grid;
}

QLabel* AmberLabel(const QString& name, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(name);
  label->setWordWrap(true);
  QPalette amber = label->palette();
  amber.setColor(QPalette::WindowText, Theme::Palette().amber);
  label->setPalette(amber);
  return label;
}

}  // namespace

GeneralPage::GeneralPage(Configuration& work) : ConfigPage(work, QStringLiteral("PageGeneral")) {
  auto* grid = SliderGrid();
  AddSlider(*grid,
            {.name = QStringLiteral("SldSpectralDisplay"),
             .fixedName = QStringLiteral("Slider3"),
             .label = QStringLiteral("Spectral Display Resolution"),
             .textName = QStringLiteral("Text3"),
             .tooltip = tr("How large the scope draws the sound")},
            configured::SpectralDisplay, &ConfigValues::SpectralDisplay);
  AddSlider(*grid,
            {.name = QStringLiteral("SldFastStep"),
             .fixedName = QStringLiteral("Slider4"),
             .label = QStringLiteral("FastForward/Rev Increment"),
             .textName = QStringLiteral("Text4"),
             .unit = QStringLiteral(" s"),
             .tooltip = tr("The first step of fast forward and rewind on a deck")},
            configured::FFwFRev, &ConfigValues::FFwFRev);
  auto* errors = new QGroupBox(QStringLiteral("Auto-Fix Track Duration Errors"), this);
  auto* errorsLayout = new QVBoxLayout(errors);
  errorsLayout->addWidget(AddCheck(
      {.name = QStringLiteral("ChkFixDurations"),
       .fixedName = QStringLiteral("Check3"),
       .words = QStringLiteral("Fix All &Errors"),
       .tooltip = tr("A length that turns out to be wrong at the end of a track is put right in its file")},
      &ConfigValues::FixTrackDurErrors));
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(grid);
  layout->addWidget(errors);
  layout->addWidget(WarningLoop());
  layout->addStretch(1);
}

QWidget* GeneralPage::WarningLoop() {
  auto* box = new QGroupBox(QStringLiteral("Audio Warnings"), this);
  auto* file = new ElidedLabel(box);
  file->setObjectName(QStringLiteral("LblWarningLoop"));
  file->SetElideMode(Qt::ElideMiddle);
  auto* trouble = AmberLabel(QStringLiteral("LblLoopTrouble"), box);
  trouble->setText(tr("The file isn't there: no warning sounds"));
  auto* change = AddCommand(*this, {.name = QStringLiteral("CmdNewLoop"),
                                    .fixedName = QStringLiteral("Command6"),
                                    .words = QStringLiteral("&New"),
                                    .tooltip = tr("Takes another file for the audio warning, at once. No "
                                                  "longer than 0.75 seconds"),
                                    .icon = Icon::Folder,
                                    .run = [this] { Work().PickWarningLoop(); }});
  auto* play = AddCommand(*this, {.name = QStringLiteral("CmdPlayLoop"),
                                  .words = tr("&Preview"),
                                  .tooltip = tr("Plays the warning loop once in the monitor"),
                                  .icon = Icon::Play,
                                  .run = [this] { Work().PlayLoop(); }});
  auto* layout = new QVBoxLayout(box);
  layout->addWidget(AddCheck({.name = QStringLiteral("ChkAudioWarnings"),
                              .fixedName = QStringLiteral("Check1"),
                              .words = QStringLiteral("Audio &Warnings"),
                              .tooltip = tr("A sound when the last ten seconds of a track run")},
                             &ConfigValues::AudioWarnings));
  layout->addLayout(Line({{file, 1}, play, change}));
  layout->addWidget(trouble);
  OnShow([this, file, trouble, play] {
    file->setText(Work().WarningLoop());
    file->setToolTip(file->text());
    trouble->setVisible(Work().LoopMissing());
    Offer(*play, Work().WhyNoLoop());
  });
  return box;
}

AutoPlayPage::AutoPlayPage(Configuration& work) : ConfigPage(work, QStringLiteral("PageAutoPlay")) {
  auto* grid = SliderGrid();
  AddSlider(*grid,
            {.name = QStringLiteral("SldDefaultDelta"),
             .fixedName = QStringLiteral("Slider2"),
             .label = QStringLiteral("Default Delta Value"),
             .textName = QStringLiteral("Text2"),
             .unit = QStringLiteral(" s"),
             .tooltip = tr("So long before the end of a track the next one starts, unless the track has a "
                           "place of its own")},
            configured::DefaultDelta, &ConfigValues::DefaultDelta);
  AddSlider(*grid,
            {.name = QStringLiteral("SldDefaultFadeSpeed"),
             .fixedName = QStringLiteral("Slider1"),
             .label = QStringLiteral("Default Fade Speed"),
             .textName = QStringLiteral("Text1"),
             .tooltip = tr("The fade speed of a track that has none of its own")},
            configured::DefaultFadeSpeed, &ConfigValues::DefaultFadeSpeed);
  AddSlider(*grid,
            {.name = QStringLiteral("SldPreviewSeconds"),
             .fixedName = QStringLiteral("Slider5"),
             .label = QStringLiteral("Preview Mode Seconds"),
             .textName = QStringLiteral("Text5"),
             .unit = QStringLiteral(" s"),
             .tooltip = tr("So much of each track is played in preview mode")},
            configured::PrevSecs, &ConfigValues::PrevSecs);
  AddSlider(*grid,
            {.name = QStringLiteral("SldPanFadeBias"),
             .fixedName = QStringLiteral("Slider6"),
             .label = QStringLiteral("Pan Fade Bias"),
             .tooltip = tr("How late in a pan the coming track is heard: the more, the later")},
            configured::PanFadeBias, &ConfigValues::PanFadeBias);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(grid);
  layout->addWidget(AddCheck(
      {.name = QStringLiteral("ChkFadeSpeedOfTrack"),
       .fixedName = QStringLiteral("Check5"),
       .words = QStringLiteral("Automatically Set Fade Speed According To Auto Play Fade In Settings. "),
       .tooltip = tr("A track that comes into a deck sets the fade speed to that of its own fade-in")},
      &ConfigValues::AfadeSet));
  layout->addWidget(Delays());
  layout->addStretch(1);
}

QWidget* AutoPlayPage::Delays() {
  auto* box = new QGroupBox(QStringLiteral("Jukebox Mode Change Delay"), this);
  auto* line = Line({});
  for (int seconds = configured::JukeLag.lowest; seconds <= configured::JukeLag.highest; ++seconds) {
    auto* option = new QRadioButton(
        seconds == 1 ? QStringLiteral("1 Sec") : QStringLiteral("%1 Secs").arg(seconds), box);
    SetNames(*option, QStringLiteral("OptJukeLag%1").arg(seconds), QStringLiteral("Option%1").arg(seconds));
    option->setToolTip(tr("Silence before the next track in jukebox mode"));
    connect(option, &QRadioButton::clicked, this, [this, seconds] {
      Work().Change([seconds](ConfigValues& values) { values.JukeLag = seconds; });
    });
    OnShow([this, option, seconds] { option->setChecked(Values().JukeLag == seconds); });
    line->addWidget(option);
  }
  line->addStretch(1);
  box->setLayout(line);
  return box;
}

EncodingPage::EncodingPage(Configuration& work) : ConfigPage(work, QStringLiteral("PageMp3")) {
  auto* grid = new QGridLayout;
  grid->setColumnStretch(2, 1);
  std::vector<Choice> presets;
  for (const auto& [number, words] : EncodingLists::kPresets)
    presets.push_back({number, QStringLiteral("%1  %2").arg(number).arg(QLatin1StringView(words))});
  AddChoices(*grid, QStringLiteral("CboPreset"), QStringLiteral("cboOption"), tr("Preset"), presets,
             &EncodingPresets::preset);
  AddChoices(*grid, QStringLiteral("CboBitRate"), QStringLiteral("List1"), tr("Bit Rate (kbit/s)"),
             Plain(EncodingLists::kBitRates), &EncodingPresets::bitRate);
  AddChoices(*grid, QStringLiteral("CboSampleRate"), QStringLiteral("List2"), tr("Sample Rate (Hz)"),
             Plain(EncodingLists::kSampleRates), &EncodingPresets::sampleRate);
  AddChoices(*grid, QStringLiteral("CboVbrQuality"), QStringLiteral("List3"),
             tr("VBR Quality (0 best, 9 smallest)"), Plain(EncodingLists::kVbrQualities),
             &EncodingPresets::vbrQuality);
  auto* vbr = new QCheckBox(tr("VBR &On"), this);
  vbr->setObjectName(QStringLiteral("ChkVbr"));
  vbr->setToolTip(tr("The bit rate varies with the music"));
  connect(vbr, &QCheckBox::clicked, this,
          [this](bool on) { Work().Change([on](ConfigValues& values) { values.Presets.vbr = on; }); });
  auto* trouble = AmberLabel(QStringLiteral("LblMp3Trouble"), this);
  auto* plan = new QLabel(this);
  plan->setObjectName(QStringLiteral("LblMp3Plan"));
  plan->setWordWrap(true);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(grid);
  layout->addWidget(vbr);
  layout->addWidget(plan);
  layout->addWidget(trouble);
  layout->addStretch(1);
  OnShow([this, vbr, plan, trouble] {
    vbr->setChecked(Values().Presets.vbr);
    plan->setText(Values().Presets.PlanWords());
    trouble->setText(Values().Presets.WhyInvalid());
    trouble->setVisible(!trouble->text().isEmpty());
  });
}

void EncodingPage::AddChoices(QGridLayout& grid, const QString& name, const QString& fixedName,
                              const QString& label, const std::vector<Choice>& choices,
                              int EncodingPresets::*member) {
  auto* box = new QComboBox(this);
  SetNames(*box, name, fixedName);
  box->setAccessibleName(label);
  box->setToolTip(label);
  for (const Choice& choice : choices) box->addItem(choice.words, choice.value);
  const int row = grid.rowCount();
  grid.addWidget(new QLabel(label, this), row, 0);
  grid.addWidget(box, row, 1);
  connect(box, &QComboBox::activated, this, [this, box, member](int index) {
    const int value = box->itemData(index).toInt();
    Work().Change([member, value](ConfigValues& values) { values.Presets.*member = value; });
  });
  OnShow([this, box, member, known = static_cast<int>(choices.size())] {
    const int value = Values().Presets.*member;
    int index = box->findData(value);
    if (index != known && box->count() > known) {
      box->removeItem(known);
    }
    if (index < 0) {
      index = known;
      box->addItem(QString::number(value), value);
    }
    box->setCurrentIndex(index);
  });
}

}  // namespace kelvo
