#include "datamanager/windows/TrackEditorWindow.h"

#include "datamanager/windows/ScreenKeyboard.h"
#include "datamanager/windows/UpkeepStrip.h"
#include "platform/Words.h"
#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/Panel.h"
#include "ui/Theme.h"
#include "ui/WhyOff.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QFocusEvent>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kOnTopBeat = 2000ms;

/// Shows the text in the box; one that is in no list is added to it.
void Choose(QComboBox* box, const QString& text) {
  const QSignalBlocker quiet(box);
  int row = box->findText(text);
  if (row < 0 && !text.isEmpty()) {
    box->addItem(text);
    row = box->count() - 1;
  }
  box->setCurrentIndex(row);
}

}  // namespace

TrackEditorWindow::TrackEditorWindow(EventLoop& loop, TrackEditor& editor)
    : ToolWindow({.name = QStringLiteral("TrackEditor"),
                  .fixedName = QStringLiteral("frmfileed"),
                  .title = QStringLiteral("Edit File"),
                  .letters = 100,
                  .lines = 33}),
      loop_(loop),
      editor_(editor),
      name_(new ElidedLabel(this)),
      jingle_(new QLabel(tr("A jingle has no info file: only its name can be changed"), this)),
      comments_(new QPlainTextEdit(this)),
      newName_(new QLineEdit(this)) {
  BuildFields();
  BuildCommands();
  BuildLayout();
  connect(&editor_, &TrackEditor::Opened, this, [this] { Fill(); });
  connect(&editor_, &TrackEditor::Changed, this, [this] { Show(); });
  connect(&editor_, &TrackEditor::Closed, this, &QWidget::close);
  onTop_ = loop.Every(kOnTopBeat, [this] { StayOnTop(); });
  Fill();
  Show();
}

void TrackEditorWindow::TakeFiles(const QStringList& places) {
  if (!places.isEmpty()) editor_.Open(places.first());
}

void TrackEditorWindow::TakeKeys() {
  QWidget* first = editor_.IsJingle() ? static_cast<QWidget*>(newName_) : year_;
  first->setFocus();
}

QLineEdit* TrackEditorWindow::AddLine(const QString& name, const QString& fixedName,
                                      const QString& accessible, QString TrackFacts::*field) {
  auto* line = new QLineEdit(this);
  SetNames(*line, name, fixedName);
  line->setAccessibleName(accessible);
  line->setToolTip(accessible);
  line->installEventFilter(this);
  connect(line, &QLineEdit::textChanged, this, [this, field](const QString& text) {
    editor_.Change([&](TrackFacts& facts) { facts.*field = text; });
  });
  return line;
}

QComboBox* TrackEditorWindow::AddChoice(const QString& name, const QString& fixedName,
                                        const QString& accessible, const QStringList& choices,
                                        QString TrackFacts::*field) {
  auto* box = new QComboBox(this);
  SetNames(*box, name, fixedName);
  box->setAccessibleName(accessible);
  box->setToolTip(accessible);
  box->addItems(choices);
  connect(box, &QComboBox::currentTextChanged, this, [this, field](const QString& text) {
    editor_.Change([&](TrackFacts& facts) { facts.*field = text; });
  });
  return box;
}

std::array<QRadioButton*, 2> TrackEditorWindow::AddStyle(const std::array<QString, 2>& names, int fixedNumber,
                                                         const QString& accessible,
                                                         bool TrackFacts::*strong) {
  const std::array words{QStringLiteral("Strong"), QStringLiteral("Soft")};
  std::array<QRadioButton*, 2> buttons{};
  auto* group = new QButtonGroup(this);
  for (std::size_t place = 0; place < buttons.size(); ++place) {
    auto* button = new QRadioButton(words[place], this);
    SetNames(*button, names[place], QStringLiteral("Option%1").arg(fixedNumber + static_cast<int>(place)));
    button->setAccessibleName(accessible + QLatin1Char(' ') + words[place]);
    group->addButton(button, place == 0 ? 1 : 0);
    buttons[place] = button;
  }
  connect(group, &QButtonGroup::idClicked, this,
          [this, strong](int id) { editor_.Change([&](TrackFacts& facts) { facts.*strong = id == 1; }); });
  return buttons;
}

void TrackEditorWindow::BuildFields() {
  SetNames(*name_, QStringLiteral("LblFileName"), QStringLiteral("Label1"));
  name_->setFont(Theme::Font(1.1, QFont::DemiBold));
  name_->setTextFormat(Qt::PlainText);
  jingle_->setObjectName(QStringLiteral("LblJingle"));
  year_ = AddChoice(QStringLiteral("CboYear"), QStringLiteral("Combo1"), tr("Year of the release"),
                    editor_.Years(), &TrackFacts::year);
  month_ = AddChoice(QStringLiteral("CboMonth"), QStringLiteral("Combo2"), tr("Month of the release"),
                     TrackEditor::Months(), &TrackFacts::month);
  hi_ = AddLine(QStringLiteral("TxtHiPos"), QStringLiteral("Text3"), tr("Highest chart position"),
                &TrackFacts::hiPos);
  bpm_ = AddLine(QStringLiteral("TxtBpm"), QStringLiteral("Text4"), tr("Beats per minute"), &TrackFacts::bpm);
  starts_ = AddStyle({QStringLiteral("OptStartsStrong"), QStringLiteral("OptStartsSoft")}, 1,
                     tr("Track starts"), &TrackFacts::startStrong);
  ends_ = AddStyle({QStringLiteral("OptEndsStrong"), QStringLiteral("OptEndsSoft")}, 3, tr("Track ends"),
                   &TrackFacts::endStrong);
  SetNames(*comments_, QStringLiteral("TxtComments"), QStringLiteral("Text2"));
  comments_->setAccessibleName(tr("Comments"));
  comments_->setTabChangesFocus(true);
  connect(comments_, &QPlainTextEdit::textChanged, this, [this] {
    editor_.Change([this](TrackFacts& facts) { facts.comments = comments_->toPlainText(); });
  });
  SetNames(*newName_, QStringLiteral("TxtNewName"), QStringLiteral("Text1"));
  newName_->setAccessibleName(tr("New name of the file"));
  newName_->setToolTip(tr("The name that the file is to have, without its extension; dots are left out"));
  connect(newName_, &QLineEdit::textChanged, this, [this](const QString& name) { editor_.SetNewName(name); });
  connect(newName_, &QLineEdit::returnPressed, this, [this] { editor_.Rename(); });
}

void TrackEditorWindow::BuildCommands() {
  rename_ = AddCommand(
      *this, {.name = QStringLiteral("CmdRename"),
              .fixedName = QStringLiteral("Command5"),
              .words = QStringLiteral("Rename As >"),
              .tooltip = tr("Gives the file this name, with its info file and all entries of playlists"),
              .key = QKeySequence(Qt::Key_F2),
              .icon = Icon::Edit,
              .run = [this] { editor_.Rename(); }});
  delete_ = AddCommand(
      *this, {.name = QStringLiteral("CmdDelete"),
              .fixedName = QStringLiteral("Command2"),
              .words = QStringLiteral("Delete This File"),
              .tooltip = tr("Puts the file in the trash, with its info file and all entries of playlists"),
              .key = QKeySequence(Qt::CTRL | Qt::Key_Delete),
              .icon = Icon::Clear,
              .run = [this] { editor_.Delete(); }});
  convert_ = AddCommand(*this, {.name = QStringLiteral("CmdConvert"),
                                .fixedName = QStringLiteral("Cmp3"),
                                .words = QStringLiteral("Convert to Mp3"),
                                .tooltip = tr("Opens the encoder on this file"),
                                .icon = Icon::Disc,
                                .run = [this] {
                                  if (OnConvert) OnConvert(editor_.Path());
                                }});
  save_ = AddCommand(*this, {.name = QStringLiteral("CmdSaveAndClose"),
                             .fixedName = QStringLiteral("Command6"),
                             .words = QStringLiteral("Save And Close"),
                             .tooltip = tr("Saves the info file; the lists and decks show it at once"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_S),
                             .icon = Icon::Save,
                             .role = QStringLiteral("primary"),
                             .run = [this] { editor_.Save(); }});
  close_ = AddCommand(*this, {.name = QStringLiteral("CmdClose"),
                              .fixedName = QStringLiteral("Cmdclose"),
                              .words = QStringLiteral("Close"),
                              .tooltip = tr("Closes the window; asks when something was changed"),
                              .keyWords = tr("Esc"),
                              .icon = Icon::Close,
                              .run = [this] { close(); }});
}

QWidget* TrackEditorWindow::FactsPanel() {
  auto* panel = new Panel(Group::Console, QString(), this);
  const auto label = [panel](const QString& words, QWidget* field) {
    auto* head = new QLabel(words, panel);
    if (field != nullptr) head->setBuddy(field);
    return head;
  };
  auto* figures = Line({label(tr("&Year"), year_),
                        year_,
                        label(tr("&Month"), month_),
                        month_,
                        label(tr("&Hi Pos"), hi_),
                        {hi_, 1},
                        label(tr("&BPM"), bpm_),
                        {bpm_, 1}});
  auto* styles = Line({label(tr("Starts"), nullptr), starts_[0], starts_[1], kRoom,
                       label(tr("Ends"), nullptr), ends_[0], ends_[1], kRoom});
  auto* layout = new QVBoxLayout(panel);
  layout->addLayout(figures);
  layout->addLayout(styles);
  layout->addWidget(label(tr("&Comments"), comments_));
  comments_->setMinimumHeight(fontMetrics().height() * 5);
  layout->addWidget(comments_, 1);
  return panel;
}

QWidget* TrackEditorWindow::NamePanel() {
  auto* panel = new Panel(Group::Lists, QString(), this);
  panel->setLayout(Line({rename_, {newName_, 1}, delete_}));
  return panel;
}

void TrackEditorWindow::BuildLayout() {
  facts_ = FactsPanel();
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(name_);
  layout->addWidget(jingle_);
  layout->addWidget(facts_, 1);
  layout->addWidget(NamePanel());
  layout->addWidget(new UpkeepStrip(loop_, editor_.Changes(), this));
  layout->addWidget(new ScreenKeyboard(*newName_, QStringLiteral("Command4"), this));
  layout->addLayout(Line({convert_, kRoom, save_, close_}));
}

bool TrackEditorWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusOut && isVisible()) {
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    const bool byHand =
        reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::MouseFocusReason;
    const bool good = !byHand || (watched == hi_ ? editor_.CheckHiPos() : editor_.CheckBpm());
    // The focus has gone when this returns.
    if (!good)
      loop_.Post([field = QPointer(qobject_cast<QLineEdit*>(watched))] {
        if (field) field->setFocus();
      });
  }
  return ToolWindow::eventFilter(watched, event);
}

void TrackEditorWindow::Fill() {
  const TrackFacts facts = editor_.Facts();
  Choose(year_, facts.year);
  Choose(month_, facts.month);
  hi_->setText(facts.hiPos);
  bpm_->setText(facts.bpm);
  const QSignalBlocker quiet(comments_);
  comments_->setPlainText(facts.comments);
  if (isVisible()) TakeKeys();
}

void TrackEditorWindow::Show() {
  const TrackFacts& facts = editor_.Facts();
  name_->setText(editor_.Title());
  name_->setToolTip(editor_.Path());
  jingle_->setVisible(editor_.IsJingle());
  starts_[facts.startStrong ? 0 : 1]->setChecked(true);
  ends_[facts.endStrong ? 0 : 1]->setChecked(true);
  if (newName_->text() != editor_.NewName()) newName_->setText(editor_.NewName());
  if (editor_.IsJingle() && comments_->toPlainText() != facts.comments)
    comments_->setPlainText(facts.comments);
  const QString noFacts = editor_.WhyNoFacts();
  const QString noChange = editor_.WhyNoChange();
  facts_->setEnabled(noFacts.isEmpty());
  newName_->setEnabled(noChange.isEmpty());
  Offer(*save_, noFacts);
  Offer(*rename_, noChange);
  Offer(*delete_, noChange);
  const bool mp3 = UpperExtension(editor_.Path()) == QLatin1StringView("MP3");
  Offer(*convert_, WhyOff({{!noChange.isEmpty(), noChange}, {mp3, tr("It is an MP3 file already")}}));
}

}  // namespace kelvo
