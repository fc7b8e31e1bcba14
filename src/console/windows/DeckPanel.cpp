#include "console/windows/DeckPanel.h"

#include "console/windows/MonitorPanel.h"
#include "console/windows/PlayIndicator.h"
#include "platform/Words.h"
#include "ui/Command.h"
#include "ui/CommandButton.h"
#include "ui/DeckTally.h"
#include "ui/ElidedLabel.h"
#include "ui/Fader.h"
#include "ui/KeyList.h"
#include "ui/Naming.h"
#include "ui/ProgressStrip.h"
#include "ui/ScalableIcon.h"
#include "ui/SpokenText.h"
#include "ui/TimeDisplay.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTextDocument>
#include <QToolButton>
#include <QVBoxLayout>

namespace kelvo {
namespace {

constexpr int kEndingSeconds = 30;
constexpr int kLastSeconds = 10;

QString ForDeck(Deck deck, const QString& one, const QString& two) {
  return deck == Deck::One ? one : two;
}

QString DecibelText(int loss) {
  if (loss >= kMostLoss) return QStringLiteral("-40 dB");
  return loss == 0 ? QStringLiteral("0 dB") : QStringLiteral("-%1 dB").arg(loss / 50.0, 0, 'f', 1);
}

/// A box of text that shows whole lines: what has no room for a further one stays empty.
class WholeLines : public QPlainTextEdit {
 public:
  using QPlainTextEdit::QPlainTextEdit;

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QPlainTextEdit::resizeEvent(event);
    const int line = fontMetrics().lineSpacing();
    const int room = contentsRect().height() - static_cast<int>(document()->documentMargin());
    setViewportMargins(0, 0, 0, std::max(room, 0) % line);
  }
};

}  // namespace

DeckPanel::DeckPanel(const Parts& parts, Deck deck, QWidget* parent)
    : Panel(Group::Decks,
            ForDeck(deck, QStringLiteral("AUDIO STREAM ONE"), QStringLiteral("AUDIO STREAM TWO")), parent),
      desk_(parts),
      decks_(parts.decks),
      commands_(parts.decks, parts.fades, parts.speak, parts.state),
      deck_(deck),
      tally_(new DeckTally(this)),
      indicator_(new PlayIndicator(this)),
      title_(new ElidedLabel(this)),
      remaining_(new TimeDisplay(this)),
      progress_(new ProgressStrip(this)),
      info_(new ElidedLabel(this)),
      loadFail_(new QLabel(QStringLiteral("Load Fail"), this)),
      text_(new WholeLines(this)),
      level_(new Fader(Qt::Vertical, 0, kMostLoss, this)),
      levelWords_(new QLabel(this)) {
  setObjectName(ForDeck(deck, QStringLiteral("Deck1"), QStringLiteral("Deck2")));
  const int number = DisplayNumber(deck);
  const auto key = [number](QKeyCombination one, QKeyCombination two) {
    return QKeySequence(number == 1 ? one : two);
  };
  load_ = AddCommand(QStringLiteral("CmdDeckLoad"),
                     ForDeck(deck, QStringLiteral("CmdLoad2"), QStringLiteral("CmdLoad3")), tr("Load"),
                     QStringLiteral("Loads Track From Play Queue To Deck %1").arg(number),
                     key(Qt::CTRL | Qt::Key_1, Qt::CTRL | Qt::Key_2));
  start_ = AddCommand(QStringLiteral("CmdDeckStart"),
                      ForDeck(deck, QStringLiteral("CmdMan2"), QStringLiteral("CmdMan3")), tr("Start"),
                      QStringLiteral("Manual start"), key(Qt::ALT | Qt::Key_1, Qt::ALT | Qt::Key_2));
  stop_ = AddCommand(QStringLiteral("CmdDeckStop"),
                     ForDeck(deck, QStringLiteral("Command5"), QStringLiteral("Command6")), tr("Stop"),
                     QStringLiteral("Stop Deck %1").arg(number),
                     key(Qt::CTRL | Qt::ALT | Qt::Key_1, Qt::CTRL | Qt::ALT | Qt::Key_2));
  for (const auto& [move, name, words] :
       {std::tuple(FastMove::SkipToStart, QStringLiteral("CmdDeckSkipToStart"), tr("Skip to start")),
        std::tuple(FastMove::Rewind, QStringLiteral("CmdDeckRewind"), tr("Fast rewind (hold)")),
        std::tuple(FastMove::Forward, QStringLiteral("CmdDeckForward"), tr("Fast forward (hold)")),
        std::tuple(FastMove::SkipToEnd, QStringLiteral("CmdDeckSkipToEnd"), tr("Skip to end"))})
    moves_.emplace_back(move, AddMove(move, name, words));
  pan_ = AddTransition(TransitionKind::Pan, QStringLiteral("CmdDeckPan"),
                       ForDeck(deck, QStringLiteral("CMdD2pan"), QStringLiteral("CMdD3Pan")),
                       QStringLiteral("PAN"), ForDeck(deck, QStringLiteral("F6"), QStringLiteral("F10")));
  partFade_ =
      AddTransition(TransitionKind::PartFade, QStringLiteral("CmdDeckPartFade"),
                    ForDeck(deck, QStringLiteral("CmdPFade2"), QStringLiteral("CmdPFade3")),
                    QStringLiteral("PART"), ForDeck(deck, QStringLiteral("F7"), QStringLiteral("F11")));
  dub_ = AddTransition(TransitionKind::Dub, QStringLiteral("CmdDeckDub"),
                       ForDeck(deck, QStringLiteral("CmdDub2"), QStringLiteral("CmdDub3")),
                       QStringLiteral("DUB"), ForDeck(deck, QStringLiteral("F8"), QStringLiteral("F12")));
  cancelStart_ = new CommandButton(QStringLiteral("Cancel"), this);
  SetNames(*cancelStart_, QStringLiteral("CmdCancelStart%1").arg(number),
           QStringLiteral("CmdConfirm%1").arg(number));
  cancelStart_->setToolTip(tr("Takes the start back"));
  cancelStart_->setAccessibleName(tr("Cancel the start of deck %1").arg(number));
  cancelStart_->setFocusPolicy(Qt::NoFocus);
  Theme::SetRole(*cancelStart_, QStringLiteral("stop"));
  start_->setAccessibleName(tr("Start deck %1").arg(number));
  Build();
  Connect();
  Show();
  ShowTransitions();
}

QPushButton* DeckPanel::AddTransition(TransitionKind kind, const QString& name, const QString& fixedName,
                                      const QString& text, const QString& key) {
  auto* button = new CommandButton(text, this);
  SetNames(*button, name + QString::number(DisplayNumber(deck_)), fixedName);
  button->setFocusPolicy(Qt::NoFocus);
  button->setAccessibleName(text + QStringLiteral(", deck %1").arg(DisplayNumber(deck_)));
  button->setProperty("key", key);
  connect(button, &QPushButton::pressed, this, [this, kind] {
    Transitions& fades = desk_.fades;
    if (kind == TransitionKind::Dub) fades.PressDub(deck_);
    if (kind == TransitionKind::PartFade) fades.PressPartFade(deck_);
    if (kind == TransitionKind::Pan) fades.PressPan(deck_);
  });
  if (kind == TransitionKind::Dub) {
    connect(button, &QPushButton::released, this, [this] { desk_.fades.ReleaseDub(deck_); });
  }
  return button;
}

void DeckPanel::ShowTransitions() {
  const Transitions& fades = desk_.fades;
  const auto tip = [](QPushButton* button, const QString& words) {
    button->setToolTip(words);
    TellKey(*button, button->property("key").toString());
  };
  tip(pan_, Transitions::FadeTimeTooltip(desk_.fades.FadeSpeed(), TransitionKind::Pan));
  tip(partFade_, Transitions::FadeTimeTooltip(desk_.fades.FadeSpeed(), TransitionKind::PartFade));
  tip(dub_, tr("Both decks while it is held, then a part fade"));
  for (QPushButton* button : {pan_, partFade_, dub_}) {
    // A dub that is held must not lose its button under the finger.
    if (!button->isDown()) Offer(*button, commands_.WhyNoTransition(deck_));
  }
  const CancelPanel& cancel = fades.GetCancelPanel();
  const bool walksHere = fades.WalkActive() && fades.MayCancel() && fades.Record().TransitionDeck == deck_;
  cancelStart_->setVisible((cancel.Visible() && cancel.OnDeck() == deck_) || walksHere);
}

QPushButton* DeckPanel::AddCommand(const QString& name, const QString& fixedName, const QString& text,
                                   const QString& tooltip, const QKeySequence& key) {
  auto* button = new CommandButton(text, this);
  SetNames(*button, name + QString::number(DisplayNumber(deck_)), fixedName);
  button->setAccessibleName(tooltip);
  // Not the button's own shortcut, which waits a tenth of a second to show that it is pressed.
  auto* shortcut = new QShortcut(key, this);
  shortcut->setAutoRepeat(false);
  connect(shortcut, &QShortcut::activated, button, &QPushButton::click);
  button->setToolTip(tooltip);
  TellKey(*button, key.toString(QKeySequence::NativeText));
  return button;
}

QToolButton* DeckPanel::AddMove(FastMove move, const QString& name, const QString& tooltip) {
  auto* button = new QToolButton(this);
  SetNames(*button, name + QString::number(DisplayNumber(deck_)),
           QStringLiteral("CmdRF%1_%2").arg(PlayerNumber(deck_)).arg(static_cast<int>(move)));
  button->setToolTip(tooltip);
  button->setAccessibleName(tooltip + QStringLiteral(", deck %1").arg(DisplayNumber(deck_)));
  button->setFocusPolicy(Qt::TabFocus);
  connect(button, &QToolButton::pressed, this, [this, move] { decks_.BeginFastMove(deck_, move); });
  connect(button, &QToolButton::released, this, [this] { decks_.EndFastMove(deck_); });
  return button;
}

void DeckPanel::Build() {
  const QString number = QString::number(DisplayNumber(deck_));
  tally_->setObjectName(QStringLiteral("DeckTally") + number);
  SetNames(*title_, QStringLiteral("LblDeckTitle") + number, QStringLiteral("lbldisplay") + number);
  title_->setFont(Theme::Font(1.25, QFont::DemiBold));
  title_->setTextInteractionFlags(Qt::NoTextInteraction);
  SetNames(*remaining_, QStringLiteral("TimeLeft") + number,
           ForDeck(deck_, QStringLiteral("Text8"), QStringLiteral("Text9")));
  remaining_->setAccessibleName(tr("Time left, deck %1").arg(number));
  for (QLabel* label : {title_, info_}) label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  title_->setWordWrap(true);
  title_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  title_->setFixedHeight(QFontMetrics(title_->font()).lineSpacing() * 2);
  tally_->setAccessibleDescription(tr("Deck %1").arg(number));
  tally_->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
  SetNames(*indicator_, QStringLiteral("PlayIndicator") + number,
           ForDeck(deck_, QStringLiteral("Label8"), QStringLiteral("Label9")));
  indicator_->setAccessibleName(tr("What is heard, deck %1").arg(number));
  SetNames(*info_, QStringLiteral("LblDeckInfo") + number, QStringLiteral("LblGenInfo") + number);
  progress_->setObjectName(QStringLiteral("Progress") + number);
  progress_->setAccessibleName(tr("Position, deck %1").arg(number));
  SetNames(*loadFail_, QStringLiteral("LblLoadFail") + number, QStringLiteral("Label20_") + number);
  QPalette red = loadFail_->palette();
  red.setColor(QPalette::WindowText, Theme::Palette().amber);
  loadFail_->setPalette(red);
  loadFail_->hide();

  text_->setObjectName(QStringLiteral("TrackInfoText") + number);
  text_->setAccessibleName(tr("Track information, deck %1").arg(number));
  text_->setReadOnly(true);
  text_->setFocusPolicy(Qt::ClickFocus);
  text_->setPlaceholderText(tr("Select a row of the queue, then Load."));
  text_->setMinimumHeight(fontMetrics().height() * 3);

  SetNames(*level_, QStringLiteral("SldLevel") + number,
           ForDeck(deck_, QStringLiteral("SldVolLeft"), QStringLiteral("SldVolRight")));
  level_->setAccessibleName(tr("Level, deck %1").arg(number));
  level_->setToolTip(tr("Level of deck %1. Double click or Enter: full").arg(number));
  level_->setInvertedAppearance(true);
  level_->SetRestValue(0);
  level_->SetTickInterval(500);
  level_->setSingleStep(25);
  level_->setPageStep(250);
  levelWords_->setObjectName(QStringLiteral("LblLevel") + number);
  levelWords_->setAlignment(Qt::AlignCenter);
  levelWords_->setFont(Theme::Font(0.85));
  levelWords_->setMinimumWidth(
      QFontMetrics(levelWords_->font()).horizontalAdvance(QStringLiteral("-40.0 dB")));

  load_->setIcon(ScalableIcon(Icon::Load));
  start_->setIcon(ScalableIcon(Icon::Play));
  stop_->setIcon(ScalableIcon(Icon::Stop));
  Theme::SetRole(*load_, QStringLiteral("primary"));
  Theme::SetRole(*start_, QStringLiteral("go"));
  Theme::SetRole(*stop_, QStringLiteral("stop"));
  constexpr std::array kMoveIcons{Icon::SkipStart, Icon::Rewind, Icon::Forward, Icon::SkipEnd};
  for (std::size_t place = 0; place < moves_.size(); ++place)
    moves_[place].second->setIcon(ScalableIcon(kMoveIcons[place]));

  auto* top = new QHBoxLayout;
  top->addWidget(tally_);
  top->addStretch(1);
  top->addWidget(loadFail_);
  top->addWidget(cancelStart_);
  auto* commands = new QHBoxLayout;
  commands->setSpacing(4);
  commands->addWidget(load_, 1);
  commands->addWidget(start_, 1);
  commands->addWidget(stop_, 1);
  auto* moving = new QHBoxLayout;
  moving->setSpacing(4);
  for (const auto& [move, button] : moves_) {
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    moving->addWidget(button);
  }
  auto* middle = new QVBoxLayout;
  middle->addLayout(top);
  middle->addWidget(indicator_);
  middle->addWidget(title_);
  middle->addWidget(remaining_, 3);
  middle->addWidget(progress_);
  middle->addWidget(info_);
  middle->addWidget(text_, 2);
  auto* transitions = new QHBoxLayout;
  transitions->setSpacing(4);
  for (QPushButton* button : {pan_, partFade_, dub_}) transitions->addWidget(button, 1);
  middle->addLayout(transitions);
  middle->addLayout(commands);
  middle->addLayout(moving);
  auto* side = new QVBoxLayout;
  side->addWidget(level_, 1, Qt::AlignHCenter);
  side->addWidget(levelWords_);
  side->addWidget(AddMonitorButton(
      desk_.monitor, deck_ == Deck::One ? MonitorSource::DeckOne : MonitorSource::DeckTwo, *this));
  edit_ = kelvo::AddCommand(*this, {.name = QStringLiteral("CmdDeckEdit") + number,
                                    .tooltip = tr("Edits how the track of deck %1 is played").arg(number),
                                    .icon = Icon::Edit,
                                    .run = [this] { Q_EMIT EditWanted(decks_.Record(deck_).FilePath); }});
  edit_->setAccessibleName(edit_->toolTip());
  // As narrow as the button above it.
  edit_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  edit_->setMinimumWidth(edit_->iconSize().width() + 8);
  side->addWidget(edit_);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(middle, 1);
  layout->addLayout(side);
}

void DeckPanel::Connect() {
  connect(load_, &QPushButton::clicked, this, [this] { decks_.LoadCommand(deck_); });
  connect(start_, &QPushButton::clicked, this, [this] { decks_.ManualStart(deck_); });
  connect(stop_, &QPushButton::clicked, this, [this] { decks_.StopCommand(deck_); });
  connect(level_, &Fader::MovedByHand, this, [this](int value) { desk_.speak.SetLevel(deck_, value); });
  connect(&decks_, &DeckEngine::Changed, this, [this](Deck deck) {
    if (deck != deck_) return;
    Show();
    ShowTransitions();
  });
  connect(&desk_.status, &StatusTick::Ticked, this, [this] {
    indicator_->Show(desk_.status.Status().indicators[deck_]);
    Show();
  });
  const auto showButtons = [this] {
    ShowCommands(decks_.Record(deck_));
    ShowTransitions();
  };
  connect(&desk_.fades, &Transitions::Changed, this, showButtons);
  connect(&desk_.automatic, &AutoPlay::Changed, this, showButtons);
  connect(&desk_.speak, &PressToSpeak::Changed, this, showButtons);
  connect(&desk_.fades.GetCancelPanel(), &CancelPanel::Changed, this, &DeckPanel::ShowTransitions);
  connect(&desk_.fades, &Transitions::FadeSpeedChanged, this, &DeckPanel::ShowTransitions);
  connect(cancelStart_, &QPushButton::clicked, this, [this] { desk_.fades.Cancel(); });
}

void DeckPanel::resizeEvent(QResizeEvent* event) {
  Panel::resizeEvent(event);
  const double margins = 2 * text_->document()->documentMargin();
  const int room = text_->contentsRect().width() - static_cast<int>(margins);
  decks_.SetInfoTextWidth(room / std::max(text_->fontMetrics().averageCharWidth(), 1) / 2);
}

void DeckPanel::SetLit(bool lit) {
  remaining_->SetLit(lit);
  tally_->SetLit(lit);
}

void DeckPanel::Show() {
  const DeckRecord& record = decks_.Record(deck_);
  const QString title = record.Title.isEmpty() ? tr("No track") : record.Title;
  if (title_->text() != title) {
    // A long title takes a smaller letter before it is cut.
    title_->setFont(Theme::Font(record.Title.size() > 27 ? 1.0 : 1.25, QFont::DemiBold));
    title_->setText(title);
    title_->setToolTip(record.Title);
    QPalette colours = palette();
    const QColor ink = record.Title.isEmpty() ? Theme::Palette().muted : Theme::Palette().title;
    // A locked desk dims it like all its words.
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive})
      colours.setColor(group, QPalette::WindowText, ink);
    title_->setPalette(colours);
  }
  if (info_->text() != record.Info) {
    info_->setText(record.Info);
    info_->setToolTip(record.Info);
  }
  loadFail_->setVisible(record.LoadFailed);
  if (text_->toPlainText() !=
      QString(record.TrackInfoText).replace(QStringLiteral("\r\n"), QStringLiteral("\n"))) {
    text_->setPlainText(record.TrackInfoText);
  }
  progress_->SetColour(record.PlayedOut ? QColor(255, 200, 0) : Theme::Palette().blue);
  progress_->setRange(0, record.ProgressMaximum());
  progress_->setValue(std::min(record.ProgressValue(), record.ProgressMaximum()));
  ShowTime(record);
  setAccessibleDescription(tr("Deck %1: %2, %3, %4 left")
                               .arg(QString::number(DisplayNumber(deck_)), title,
                                    DeckTally::Word(tally_->TallyState()), remaining_->Text()));
  ShowCommands(record);
}

void DeckPanel::ShowTime(const DeckRecord& record) {
  remaining_->SetText(MinutesSeconds(record.RemainSeconds));
  progress_->SetWords(record.State == DeckState::Empty
                          ? QString()
                          : MinutesSeconds(record.Position) + QStringLiteral(" / ") +
                                MinutesSeconds(record.Duration));
  // What plays to no device is neither on air nor ending there.
  const auto heard = [this](DeckTally::State state) {
    return desk_.status.Status().noDevice ? DeckTally::State::NoDevice : state;
  };
  switch (record.State) {
    case DeckState::Empty:
      tally_->SetState(DeckTally::State::Empty);
      remaining_->SetState(TimeDisplay::State::Dim);
      break;
    case DeckState::Loaded:
      tally_->SetState(DeckTally::State::Loaded);
      remaining_->SetState(TimeDisplay::State::Calm);
      break;
    case DeckState::Playing:
      tally_->SetState(
          heard(record.RemainSeconds < kEndingSeconds ? DeckTally::State::Ending : DeckTally::State::OnAir));
      remaining_->SetState(record.RemainSeconds < kLastSeconds     ? TimeDisplay::State::BlinkRed
                           : record.RemainSeconds < kEndingSeconds ? TimeDisplay::State::Amber
                                                                   : TimeDisplay::State::Calm);
      break;
    case DeckState::Done: {
      // In a fade of automatic play a deck counts as done while it is still heard.
      const bool sounds = decks_.Moves(deck_) && !desk_.fades.FadedOut(deck_);
      tally_->SetState(sounds ? heard(DeckTally::State::Ending) : DeckTally::State::Done);
      remaining_->SetState(sounds ? TimeDisplay::State::Amber : TimeDisplay::State::Dim);
      break;
    }
  }
}

void DeckPanel::ShowLevel(const DeckRecord& record) {
  // Under the operator's voice the fader keeps the level that the deck comes back to: a hand on it begins
  // there. The words tell what is heard.
  level_->setValue(record.Level);
  SetSpokenText(*levelWords_, tr("Heard, deck %1").arg(DisplayNumber(deck_)), DecibelText(record.Loss));
  QPalette colours = palette();
  if (record.Loss != record.Level) colours.setColor(QPalette::WindowText, Theme::Palette().amber);
  if (levelWords_->palette() != colours) levelWords_->setPalette(colours);
}

void DeckPanel::ShowCommands(const DeckRecord& record) {
  Offer(*load_, commands_.WhyNoLoad(deck_));
  Offer(*start_, commands_.WhyNoStart(deck_));
  Offer(*stop_, commands_.WhyNoStop(deck_));
  Offer(*edit_, record.FilePath.isEmpty() ? tr("The deck is empty") : QString());
  for (const auto& [move, button] : moves_) Offer(*button, commands_.WhyNoMove(deck_, move));
  ShowLevel(record);
  setCursor(record.Loading ? Qt::BusyCursor : Qt::ArrowCursor);
}

}  // namespace kelvo
