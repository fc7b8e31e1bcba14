#include "playlists/windows/PlayEditWindow.h"

#include "platform/Words.h"
#include "playlists/windows/FadePanelView.h"
#include "playlists/windows/NamesPanel.h"
#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/Fader.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/Theme.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace kelvo {

namespace {

constexpr int kMostHi = 100;
constexpr int kMostBpm = 200;
constexpr int kLeastDuration = 10;

QStringList NumbersTo(int most) {
  QStringList numbers;
  for (int number = 0; number <= most; ++number) numbers.append(QString::number(number));
  return numbers;
}

}  // namespace

PlayEditWindow::PlayEditWindow(PlayEditor& editor)
    : ToolWindow({.name = QStringLiteral("PlayEdit"),
                  .fixedName = QStringLiteral("Playedit"),
                  .title = QStringLiteral("Edit Track Data"),
                  .letters = 124,
                  .lines = 38}),
      editor_(editor),
      name_(new ElidedLabel(this)),
      size_(new QLabel(this)),
      notice_(new ElidedLabel(this)),
      duration_(new QLabel(this)),
      defaults_(new QCheckBox(this)),
      comments_(new QPlainTextEdit(this)),
      newDuration_(new QLabel(this)),
      durationSlider_(new Fader(Qt::Horizontal, 0, 1, this)),
      trialWords_(new ElidedLabel(this)) {
  BuildCommands();
  BuildFields();
  BuildLayout();
  connect(&editor_, &PlayEditor::Opened, this, [this] { Fill(); });
  connect(&editor_, &PlayEditor::Changed, this, [this] { Show(); });
  connect(&editor_, &PlayEditor::Saved, this, &QWidget::close);
  Show();
}

void PlayEditWindow::TakeFiles(const QStringList& places) {
  if (!places.isEmpty()) editor_.Open(places.first());
}

void PlayEditWindow::BuildCommands() {
  try_ = AddCommand(*this, {.name = QStringLiteral("CmdTryIt"),
                            .words = tr("Try It"),
                            .tooltip = tr("Plays the end of the track before and the start of this one in "
                                          "the monitor, with these fades; nothing goes on air"),
                            .key = QKeySequence(Qt::CTRL | Qt::Key_T),
                            .icon = Icon::Headphones,
                            .run = [this] { editor_.TryOrStop(); }});
  save_ = AddCommand(*this, {.name = QStringLiteral("CmdSaveAndClose"),
                             .fixedName = QStringLiteral("Command1"),
                             .words = QStringLiteral("Save And Close"),
                             .tooltip = tr("Saves the track's info file; the desk obeys at once"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_S),
                             .icon = Icon::Save,
                             .role = QStringLiteral("primary"),
                             .run = [this] { editor_.Save(); }});
  close_ = AddCommand(*this, {.name = QStringLiteral("CmdClose"),
                              .fixedName = QStringLiteral("Command2"),
                              .words = QStringLiteral("Close"),
                              .tooltip = tr("Closes the window; asks when something was changed"),
                              .keyWords = tr("Esc"),
                              .icon = Icon::Close,
                              .run = [this] { close(); }});
  editDuration_ = AddCommand(*this, {.name = QStringLiteral("CmdEditDuration"),
                                     .fixedName = QStringLiteral("Rsetd"),
                                     .words = QStringLiteral("&Edit Track Duration"),
                                     .tooltip = tr("Changes the length that is stored"),
                                     .key = QKeySequence(Qt::CTRL | Qt::Key_D),
                                     .icon = Icon::Timer,
                                     .run = [this] { editor_.OpenDuration(); }});
  import_ = AddCommand(*this, {.name = QStringLiteral("CmdImportText"),
                               .fixedName = QStringLiteral("ImpTrack"),
                               .words = QStringLiteral("&Import Track Info File"),
                               .tooltip = tr("Adds the comments of another info file"),
                               .key = QKeySequence(Qt::CTRL | Qt::Key_I),
                               .icon = Icon::Folder,
                               .run = [this] { editor_.ImportText(); }});
  reread_ = AddCommand(*this, {.name = QStringLiteral("CmdReread"),
                               .fixedName = QStringLiteral("Command7"),
                               .words = QStringLiteral("Re-Scan Mp3 Track Duration"),
                               .tooltip = tr("Reads the length from the music file"),
                               .run = [this] { editor_.Reread(); }});
  apply_ = AddCommand(*this, {.name = QStringLiteral("CmdApplyDuration"),
                              .fixedName = QStringLiteral("Command5"),
                              .words = QStringLiteral("Apply"),
                              .tooltip = tr("Takes this length"),
                              .icon = Icon::Check,
                              .run = [this] { editor_.ApplyDuration(durationSlider_->value()); }});
  cancel_ = AddCommand(*this, {.name = QStringLiteral("CmdCancelDuration"),
                               .fixedName = QStringLiteral("Command6"),
                               .words = QStringLiteral("Cancel"),
                               .tooltip = tr("Leaves the length as it is"),
                               .run = [this] { editor_.CloseDuration(); }});
}

QComboBox* PlayEditWindow::AddChoice(const QString& name, const QString& fixedName, const QString& accessible,
                                     const QStringList& choices, QString PlayEdit::*field) {
  auto* box = new QComboBox(this);
  SetNames(*box, name, fixedName);
  box->setAccessibleName(accessible);
  box->setToolTip(accessible);
  box->setEditable(true);
  box->setInsertPolicy(QComboBox::NoInsert);
  box->lineEdit()->setAccessibleName(accessible);
  box->addItems(choices);
  connect(box, &QComboBox::editTextChanged, this, [this, field](const QString& text) {
    editor_.Change([&](PlayEdit& edit) { edit.*field = text; });
  });
  return box;
}

QRadioButton* PlayEditWindow::AddOption(const QString& name, const QString& fixedName, const QString& words) {
  auto* button = new QRadioButton(words, this);
  SetNames(*button, name, fixedName);
  return button;
}

void PlayEditWindow::AddStyle(const std::array<QRadioButton*, 2>& buttons, bool PlayEdit::*strong) {
  auto* group = new QButtonGroup(this);
  group->addButton(buttons[0], 1);
  group->addButton(buttons[1], 0);
  connect(group, &QButtonGroup::idClicked, this,
          [this, strong](int id) { editor_.Change([&](PlayEdit& edit) { edit.*strong = id == 1; }); });
}

void PlayEditWindow::BuildFields() {
  SetNames(*name_, QStringLiteral("LblTrackName"), QStringLiteral("Label2"));
  name_->setFont(Theme::Font(1.1, QFont::DemiBold));
  name_->setTextFormat(Qt::PlainText);
  size_->setObjectName(QStringLiteral("LblSize"));
  notice_->setObjectName(QStringLiteral("LblNotice"));
  QPalette amber = notice_->palette();
  amber.setColor(QPalette::WindowText, Theme::Palette().amber);
  notice_->setPalette(amber);
  for (std::size_t set = 0; set < kNameSets; ++set) names_[set] = new NamesPanel(editor_, set, this);
  year_ = AddChoice(QStringLiteral("CboYear"), QStringLiteral("Combo1"), tr("Year"), editor_.Years(),
                    &PlayEdit::year);
  month_ = AddChoice(QStringLiteral("CboMonth"), QStringLiteral("Combo5"), tr("Month"), MonthNames(),
                     &PlayEdit::month);
  hi_ = AddChoice(QStringLiteral("CboHi"), QStringLiteral("Combo2"), tr("Highest chart position"),
                  NumbersTo(kMostHi), &PlayEdit::hi);
  bpm_ = AddChoice(QStringLiteral("CboBpm"), QStringLiteral("Combo3"), tr("Beats per minute"),
                   NumbersTo(kMostBpm), &PlayEdit::bpm);
  SetNames(*duration_, QStringLiteral("LblDuration"), QStringLiteral("Label25"));
  SetNames(*defaults_, QStringLiteral("ChkDefaults"), QStringLiteral("Check1"));
  connect(defaults_, &QCheckBox::clicked, this,
          [this](bool on) { editor_.Change([&](PlayEdit& edit) { edit.ownFades = !on; }); });
  for (const FadePanel panel : kFadePanels) fades_[PlaceOf(panel)] = new FadePanelView(editor_, panel, this);
  starts_ = {
      AddOption(QStringLiteral("OptStartsStrong"), QStringLiteral("Option1"), QStringLiteral("Strong/Sharp")),
      AddOption(QStringLiteral("OptStartsSoft"), QStringLiteral("Option2"), QStringLiteral("Fades in/Soft"))};
  ends_ = {
      AddOption(QStringLiteral("OptEndsStrong"), QStringLiteral("Option3"), QStringLiteral("Strong/Sharp")),
      AddOption(QStringLiteral("OptEndsSoft"), QStringLiteral("Option4"), QStringLiteral("Fades Out/Soft"))};
  AddStyle(starts_, &PlayEdit::startStrong);
  AddStyle(ends_, &PlayEdit::endStrong);
  SetNames(*comments_, QStringLiteral("TxtComments"), QStringLiteral("Text4"));
  comments_->setAccessibleName(tr("Comments"));
  comments_->setTabChangesFocus(true);
  connect(comments_, &QPlainTextEdit::textChanged, this,
          [this] { editor_.Change([this](PlayEdit& edit) { edit.comments = comments_->toPlainText(); }); });
  SetNames(*newDuration_, QStringLiteral("LblNewDuration"), QStringLiteral("Label26"));
  SetNames(*durationSlider_, QStringLiteral("SldDuration"), QStringLiteral("Slider3"));
  durationSlider_->setAccessibleName(tr("Duration in seconds"));
  connect(durationSlider_, &Fader::valueChanged, this,
          [this](int seconds) { newDuration_->setText(MinutesSeconds(seconds)); });
  trialWords_->setObjectName(QStringLiteral("LblTrial"));
}

QWidget* PlayEditWindow::Facts() {
  auto* facts = new QWidget(this);
  const auto label = [facts](const QString& words, QWidget* field) {
    auto* head = new QLabel(words, facts);
    head->setBuddy(field);
    return head;
  };
  auto* line = Line({label(tr("&Year"), year_), year_, label(tr("&Month"), month_), month_,
                     label(tr("&Hi Pos"), hi_), hi_, label(tr("&Bpm"), bpm_), bpm_,
                     new QLabel(tr("Duration"), facts), duration_, kRoom, editDuration_, import_});
  line->setContentsMargins(0, 0, 0, 0);
  facts->setLayout(line);
  return facts;
}

QWidget* PlayEditWindow::DurationPanel() {
  auto* panel = new Panel(Group::Console, QString(), this);
  SetNames(*panel, QStringLiteral("DurationPanel"), QStringLiteral("Picture4"));
  auto* line = Line({newDuration_, {durationSlider_, 1}, reread_, apply_, cancel_});
  line->setContentsMargins(0, 0, 0, 0);
  panel->setLayout(line);
  return panel;
}

QWidget* PlayEditWindow::Styles() {
  auto* styles = new QWidget(this);
  auto* grid = new QGridLayout(styles);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setVerticalSpacing(2);
  grid->addWidget(defaults_, 0, 0, 2, 1);
  grid->setColumnStretch(1, 1);
  int row = 0;
  for (const auto& [words, options] : {std::pair(QStringLiteral("Track Starts Like This"), starts_),
                                       std::pair(QStringLiteral("Track Ends Like This"), ends_)}) {
    grid->addWidget(new QLabel(words, styles), row, 2);
    grid->addWidget(options[0], row, 3);
    grid->addWidget(options[1], row, 4);
    ++row;
  }
  return styles;
}

void PlayEditWindow::BuildLayout() {
  durationPanel_ = DurationPanel();
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(Line({{name_, 1}, size_}));
  layout->addWidget(notice_);
  auto* names = new QHBoxLayout;
  for (NamesPanel* each : names_) names->addWidget(each, 1);
  layout->addLayout(names, 3);
  layout->addWidget(Facts());
  layout->addWidget(durationPanel_);
  layout->addWidget(Styles());
  auto* fades = new QHBoxLayout;
  for (FadePanelView* each : fades_) fades->addWidget(each, 1);
  layout->addLayout(fades, 3);
  auto* label = new QLabel(tr("&Comments"), this);
  label->setBuddy(comments_);
  comments_->setMinimumHeight(fontMetrics().height() * 3);
  layout->addLayout(Line({label, {comments_, 1}}), 1);
  layout->addLayout(Line({try_, {trialWords_, 1}, save_, close_}));
}

void PlayEditWindow::Fill() {
  const PlayEdit& edit = editor_.Edit();
  for (NamesPanel* each : names_) each->ShowKnown();
  const auto fill = [](QComboBox* box, const QString& text) {
    const QSignalBlocker quiet(box);
    box->setCurrentIndex(box->findText(text));
    box->setEditText(text);
  };
  fill(year_, edit.year);
  fill(month_, edit.month);
  fill(hi_, edit.hi);
  fill(bpm_, edit.bpm);
  // While the file was read nothing could take the keyboard.
  if (isVisible()) names_[0]->TakeKeys();
}

void PlayEditWindow::Show() {
  const PlayEdit& edit = editor_.Edit();
  const QString why = editor_.WhyNoEdit();
  name_->setText(QStringLiteral("Artist And Song Title : ") + editor_.BaseName());
  name_->setToolTip(editor_.BaseName());
  size_->setText(QStringLiteral("Size : ") + editor_.SizeWords());
  notice_->setText(editor_.Notice());
  notice_->setVisible(!editor_.Notice().isEmpty());
  for (NamesPanel* each : names_) each->Show();
  for (FadePanelView* each : fades_) each->Show();
  for (QComboBox* each : {year_, month_, hi_, bpm_}) Offer(*each, why);
  duration_->setText(edit.duration < 0 ? QStringLiteral("-1") : MinutesSeconds(edit.duration));
  defaults_->setChecked(!edit.ownFades);
  defaults_->setText(edit.ownFades ? QStringLiteral("This Track Will Play Using Custom Settings As Below")
                                   : QStringLiteral("This Track Will Play Using ") + editor_.ProgramTitle() +
                                         QStringLiteral(" Default Settings"));
  starts_[edit.startStrong ? 0 : 1]->setChecked(true);
  ends_[edit.endStrong ? 0 : 1]->setChecked(true);
  if (comments_->toPlainText() != edit.comments) {
    const QSignalBlocker quiet(comments_);
    comments_->setPlainText(edit.comments);
  }
  for (QWidget* each : std::initializer_list<QWidget*>{defaults_, starts_[0], starts_[1], ends_[0], ends_[1],
                                                       comments_, editDuration_, import_, save_}) {
    Offer(*each, why);
  }
  ShowDuration();
  const bool trying = editor_.Desk().Trying();
  try_->setText(trying ? tr("Stop") : tr("Try It"));
  Offer(*try_, trying ? QString() : editor_.WhyNoTrial());
  trialWords_->setText(editor_.Desk().TrialWords());
}

void PlayEditWindow::ShowDuration() {
  const bool open = editor_.DurationOpen();
  const int seconds = editor_.RereadDuration();
  if (open && (!durationPanel_->isVisible() || seconds != shownReread_)) {
    shownReread_ = seconds;
    durationSlider_->setRange(std::min(seconds, kLeastDuration), seconds);
    durationSlider_->setValue(seconds);
    newDuration_->setText(MinutesSeconds(seconds));
  }
  const bool opens = open && !durationPanel_->isVisible();
  durationPanel_->setVisible(open);
  if (opens) durationSlider_->setFocus();
}

}  // namespace kelvo
