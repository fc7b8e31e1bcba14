#include "console/windows/RecorderWindow.h"

#include "platform/Words.h"
#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/SpokenText.h"
#include "ui/WhyOff.h"

#include <QComboBox>
#include <QDesktopServices>
#include <QLabel>
#include <QUrl>
#include <QVBoxLayout>

namespace kelvo {

namespace {

QString LengthWords(const KeptRecording& recording) {
  return recording.seconds ? HoursMinutesSeconds(Int(*recording.seconds)) : QStringLiteral("?");
}

}  // namespace

RecorderWindow::RecorderWindow(RecordingList& recordings)
    : ToolWindow({.name = QStringLiteral("Recorder"), .title = tr("Recorder"), .letters = 92, .lines = 28}),
      recordings_(recordings),
      recorder_(recordings.Recorder()),
      model_(recordings.Rows(),
             {{{.head = tr("Recording"), .letters = 40}, &KeptRecording::name},
              {{.head = tr("Length"), .letters = 10, .rank = 1, .number = true}, &LengthWords},
              {{.head = tr("Size"), .letters = 10, .rank = 2, .number = true},
               [](const KeptRecording& row) { return SizeText(row.bytes); }}}),
      list_({.name = QStringLiteral("LstRecordings"),
             .title = tr("RECORDINGS"),
             .accessible = tr("Recordings in the folder, the latest first"),
             .many = false},
            model_, this),
      state_(new QLabel(this)),
      facts_(new ElidedLabel(this)),
      warning_(new ElidedLabel(this)),
      folder_(new ElidedLabel(this)),
      format_(new QComboBox(this)) {
  record_ = AddCommand(*this, {.name = QStringLiteral("CmdStartRecording"),
                               .words = tr("\u25cf &Record"),
                               .tooltip = tr("Records what goes on air into a new file"),
                               .key = QKeySequence(Qt::CTRL | Qt::Key_R),
                               .role = QStringLiteral("primary"),
                               .run = [this] { recorder_.Start(); }});
  stop_ = AddCommand(*this, {.name = QStringLiteral("CmdStopRecording"),
                             .words = tr("&Stop"),
                             .tooltip = tr("Ends the recording and closes its file"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_S),
                             .icon = Icon::Stop,
                             .role = QStringLiteral("stop"),
                             .run = [this] { recorder_.Stop(); }});
  open_ = AddCommand(*this, {.name = QStringLiteral("CmdOpenFolder"),
                             .words = tr("&Open Folder"),
                             .tooltip = tr("Shows the recordings in the file manager"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_O),
                             .icon = Icon::Folder,
                             .run = [this] { OpenFolder(); }});
  choose_ = AddCommand(*this, {.name = QStringLiteral("CmdChooseFolder"),
                               .words = tr("&Change..."),
                               .tooltip = tr("Picks another folder for the recordings"),
                               .key = QKeySequence(Qt::CTRL | Qt::Key_E),
                               .run = [this] { recorder_.ChooseFolder(); }});
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(BuildRecorder());
  layout->addWidget(&list_, 1);
  connect(format_, &QComboBox::activated, this, [this](int row) {
    recorder_.SetFormat(row == 0 ? RecordingFile::Kind::Flac : RecordingFile::Kind::Wav);
  });
  connect(&recorder_, &ProgrammeRecorder::Changed, this, &RecorderWindow::Show);
  connect(&recordings_, &RecordingList::Changed, this, &RecorderWindow::ShowList);
  connect(&list_, &ListPanel::RowActivated, this, &RecorderWindow::OpenFolder);
  Show();
  ShowList();
}

Panel* RecorderWindow::BuildRecorder() {
  state_->setObjectName(QStringLiteral("LblRecorderState"));
  state_->setFont(Theme::Font(1.6, QFont::Bold));
  facts_->setObjectName(QStringLiteral("LblRecorderFacts"));
  warning_->setObjectName(QStringLiteral("LblRecorderWarning"));
  // Room for two lines, so that nothing moves when there is something to say.
  warning_->setWordWrap(true);
  warning_->setFixedHeight(2 * fontMetrics().lineSpacing());
  QPalette amber = warning_->palette();
  amber.setColor(QPalette::WindowText, Theme::Palette().amber);
  warning_->setPalette(amber);
  folder_->setObjectName(QStringLiteral("LblRecorderFolder"));
  format_->setObjectName(QStringLiteral("CboFormat"));
  format_->addItems({tr("FLAC: half the size, nothing lost"), tr("WAV: 24 bits, read by every program")});
  format_->setAccessibleName(tr("Format of the recordings"));
  format_->setToolTip(tr("Format of the next recording"));
  auto* formatWords = new QLabel(tr("&Format"), this);
  formatWords->setBuddy(format_);
  auto* panel = new Panel(Group::Console, tr("RECORDER"), this);
  auto* layout = new QVBoxLayout(panel);
  layout->addWidget(state_);
  layout->addWidget(facts_);
  layout->addWidget(warning_);
  layout->addLayout(Line({record_, stop_, kRoom, formatWords, format_}));
  layout->addLayout(Line({{folder_, 1}, choose_, open_}));
  return panel;
}

void RecorderWindow::TakeKeys() {
  (recorder_.Runs() ? stop_ : record_)->setFocus();
}

void RecorderWindow::Enter() {
  Refresh();
  recordings_.SetShown(true);
}

void RecorderWindow::Leave() {
  recordings_.SetShown(false);
  recorder_.AcceptTrouble();
}

void RecorderWindow::OpenFolder() {
  QDesktopServices::openUrl(QUrl::fromLocalFile(recorder_.Folder()));
}

QString RecorderWindow::StateWords() const {
  switch (recorder_.Now()) {
    case ProgrammeRecorder::State::Idle:
      break;
    case ProgrammeRecorder::State::Starting:
      return tr("Starting...");
    case ProgrammeRecorder::State::Recording:
      return tr("\u25cf Recording   %1").arg(HoursMinutesSeconds(Int(recorder_.Seconds())));
    case ProgrammeRecorder::State::Closing:
      return tr("Closing the file...");
  }
  return tr("Not recording");
}

QString RecorderWindow::FactWords() const {
  QStringList facts;
  const ProgrammeRecorder::State now = recorder_.Now();
  if (now == ProgrammeRecorder::State::Recording || now == ProgrammeRecorder::State::Closing)
    facts << SizeText(recorder_.Bytes());
  if (const std::optional<std::int64_t> left = recorder_.BytesLeft())
    facts << tr("%1 left on the disk").arg(SizeText(*left));
  return facts.join(QStringLiteral(",   "));
}

void RecorderWindow::Show() {
  SetSpokenText(*state_, tr("State"), StateWords());
  QPalette colours = palette();
  if (recorder_.Now() == ProgrammeRecorder::State::Recording)
    colours.setColor(QPalette::WindowText, Theme::Mix(Theme::Palette().onAir, Qt::white, 0.4));
  if (state_->palette() != colours) state_->setPalette(colours);
  SetSpokenText(*facts_, tr("Size and space"), FactWords());
  const bool runs = recorder_.Runs();
  QString warning = recorder_.Warning();
  if (warning.isEmpty()) warning = recorder_.Trouble();
  if (warning.isEmpty() && recorder_.SpaceIsLow()) warning = tr("There is little space left in the folder");
  SetSpokenText(*warning_, tr("Warning"), warning);
  warning_->setToolTip(warning);
  SetSpokenText(*folder_, tr("Folder"), recorder_.Folder());
  folder_->setToolTip(recorder_.Folder());
  format_->setCurrentIndex(recorder_.Format() == RecordingFile::Kind::Flac ? 0 : 1);
  const QString whileItRuns = WhyOff({{runs, tr("A recording runs")}});
  Offer(*record_, whileItRuns);
  Offer(*choose_, whileItRuns);
  Offer(*format_, whileItRuns);
  Offer(*stop_, WhyOff({{!runs, tr("Nothing is recorded")},
                        {recorder_.Now() == ProgrammeRecorder::State::Closing, tr("It is being closed")}}));
}

void RecorderWindow::ShowList() {
  list_.SetHint(recordings_.Listing()             ? tr("Looking into the folder...")
                : recordings_.Trouble().isEmpty() ? tr("No recordings yet.\n\"Record\" makes the first one.")
                                                  : recordings_.Trouble());
}

}  // namespace kelvo
