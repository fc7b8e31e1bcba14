#include "requests/windows/RequestWindow.h"

#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/Form.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/SpokenText.h"
#include "ui/Theme.h"
#include "ui/WhyOff.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace kelvo {

RequestWindow::Shown::Shown(WordList list, Requests& requests, QWidget* parent)
    : model(requests.Lists().Entries(list),
            {{{.head = WordLists::Title(list), .letters = 16}, [](const QString& entry) { return entry; }}}),
      panel({.name = QStringLiteral("Lst") + WordLists::Title(list),
             .fixedName = QStringLiteral("List1_%1").arg(static_cast<int>(list)),
             .title = WordLists::Title(list),
             .accessible = WordLists::Title(list),
             .many = false},
            model, parent) {
  model.Dress = [](const QString& entry, int, int role) {
    return role == Qt::ToolTipRole ? QVariant(entry) : QVariant();
  };
  panel.SetHint(QObject::tr("The list is empty.\nAdd an entry below."));
}

RequestWindow::RequestWindow(Requests& requests)
    : ToolWindow({.name = QStringLiteral("RequestWindow"),
                  .fixedName = QStringLiteral("FrmRequest"),
                  .title = tr("Request"),
                  .letters = 104,
                  .lines = 28}),
      requests_(requests),
      track_(new ElidedLabel(this)),
      names_(new Form(this)),
      message_(new QPlainTextEdit(this)),
      outcome_(new ElidedLabel(this)) {
  for (const WordList list : kWordLists) {
    lists_[static_cast<std::size_t>(list)] = std::make_unique<Shown>(list, requests_, this);
    ListPanel& panel = At(list).panel;
    panel.Table().installEventFilter(this);
    connect(&panel, &ListPanel::RowActivated, this, [this, list] { TakeRow(list); });
    connect(&panel, &ListPanel::PickedChanged, this, [this] { Show(); });
  }
  BuildFields();
  BuildCommands();
  BuildLayout();
  connect(&requests_, &Requests::Changed, this, [this] { Show(); });
  connect(&requests_, &Requests::Added, this, [this] { Clear(); });
  connect(&requests_.Lists(), &WordLists::Changed, this, [this] { Show(); });
  Show();
}

void RequestWindow::BuildFields() {
  SetNames(*track_, QStringLiteral("LblTrack"));
  track_->setFont(Theme::Font(1.3, QFont::DemiBold));
  SetNames(*outcome_, QStringLiteral("LblOutcome"));
  const QString pick = tr("A double click takes the picked name of the lists");
  from_ = &names_->AddText({.name = QStringLiteral("TxtFrom"),
                            .fixedName = QStringLiteral("Text1_0"),
                            .label = tr("Request &From: "),
                            .tooltip = tr("Who asks for the track. %1").arg(pick)});
  to_ = &names_->AddText({.name = QStringLiteral("TxtTo"),
                          .fixedName = QStringLiteral("Text1_1"),
                          .label = tr("&To: "),
                          .tooltip = tr("For whom it is. %1").arg(pick)});
  for (QLineEdit* field : {from_, to_}) {
    field->setMaxLength(static_cast<int>(RequestWords::kLongestName));
    field->installEventFilter(this);
    connect(field, &QLineEdit::textChanged, this, [this] { Show(); });
  }
  SetNames(*message_, QStringLiteral("TxtMessage"), QStringLiteral("Text1_2"));
  message_->setAccessibleName(tr("Message"));
  message_->setToolTip(
      tr("What is to be said. A double click takes the picked message of the list; Ctrl+Enter adds"));
  message_->setTabChangesFocus(true);
  message_->setAcceptDrops(false);
  // It sees a double click first.
  message_->viewport()->installEventFilter(this);
  connect(message_, &QPlainTextEdit::textChanged, this, [this] {
    LimitMessage();
    Show();
  });
  // Enter goes on to the next field: the whole request is written without the mouse.
  connect(names_, &Form::Submitted, this, [this] {
    if (from_->hasFocus()) {
      to_->setFocus();
    } else {
      message_->setFocus();
    }
  });
}

void RequestWindow::BuildCommands() {
  add_ = AddCommand(*this, {.name = QStringLiteral("CmdAddRequest"),
                            .fixedName = QStringLiteral("Command1"),
                            .words = QStringLiteral("Add To Queue"),
                            .tooltip = tr("Puts the request into the play queue and counts it"),
                            .key = QKeySequence(Qt::CTRL | Qt::Key_Return),
                            .icon = Icon::Add,
                            .role = QStringLiteral("go"),
                            .run = [this] { Add(); }});
  exit_ = AddCommand(*this, {.name = QStringLiteral("CmdExit"),
                             .fixedName = QStringLiteral("Command2"),
                             .words = QStringLiteral("Exit"),
                             .tooltip = tr("Closes the window"),
                             .keyWords = tr("Escape"),
                             .icon = Icon::Close,
                             .run = [this] { close(); }});
  const auto take = [this](const QString& name, const QString& fixedName, const QString& words,
                           const QString& tooltip, Qt::Key key, Field field) {
    return AddCommand(*this, {.name = name,
                              .fixedName = fixedName,
                              .words = words,
                              .tooltip = tooltip,
                              .key = QKeySequence(Qt::ALT | key),
                              .run = [this, field] { Take(field); }});
  };
  takeFrom_ = take(QStringLiteral("CmdTakeFrom"), QStringLiteral("Command3"), tr("<< From"),
                   tr("The picked name asks"), Qt::Key_1, Field::From);
  takeTo_ = take(QStringLiteral("CmdTakeTo"), QStringLiteral("Command4"), tr("<< To"),
                 tr("It is for the picked name"), Qt::Key_2, Field::To);
  takeMessage_ = take(QStringLiteral("CmdTakeMessage"), {}, tr("<< Message"), tr("Says the picked message"),
                      Qt::Key_3, Field::Message);
  addEntry_ = AddCommand(*this, {.name = QStringLiteral("CmdAddEntry"),
                                 .fixedName = QStringLiteral("CmdAdd"),
                                 .words = tr("Add..."),
                                 .tooltip = tr("Puts an entry into the list in view"),
                                 .key = QKeySequence(Qt::ALT | Qt::Key_Insert),
                                 .icon = Icon::Edit,
                                 .run = [this] { requests_.AddToList(inView_); }});
  removeEntry_ = AddCommand(
      *this, {.name = QStringLiteral("CmdRemoveEntry"),
              .fixedName = QStringLiteral("CmdDel"),
              .words = tr("Delete"),
              .tooltip = tr("Takes the picked entry out of the list in view"),
              .key = QKeySequence(Qt::ALT | Qt::Key_Delete),
              .icon = Icon::Clear,
              .run = [this] { requests_.Lists().Remove(inView_, At(inView_).panel.Picked().front()); }});
}

void RequestWindow::BuildLayout() {
  auto* said = new QLabel(tr("&Message: "), this);
  said->setBuddy(message_);
  auto* left = new QVBoxLayout;
  left->addWidget(names_);
  left->addWidget(said);
  left->addWidget(message_, 1);
  left->addLayout(Line({add_, kRoom, exit_}));
  auto* lists = new QHBoxLayout;
  for (const WordList list : kWordLists)
    lists->addWidget(&At(list).panel, list == WordList::Messages ? 3 : 2);
  auto* right = new QVBoxLayout;
  right->addLayout(lists, 1);
  right->addLayout(Line({takeFrom_, takeTo_, takeMessage_, kRoom, addEntry_, removeEntry_}));
  auto* parts = new QHBoxLayout;
  parts->addLayout(left, 4);
  parts->addLayout(right, 6);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(track_);
  layout->addLayout(parts, 1);
  layout->addWidget(outcome_);
}

void RequestWindow::TakeKeys() {
  from_->setFocus();
}

void RequestWindow::TakeFiles(const QStringList& places) {
  // What was typed while the track was looked for stays.
  requests_.SetTrack(places.value(0));
}

bool RequestWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn) {
    if (watched == from_) nameField_ = Field::From;
    if (watched == to_) nameField_ = Field::To;
    for (const WordList list : kWordLists) {
      if (watched != &At(list).panel.Table()) continue;
      inView_ = list;
      if (list != WordList::Messages) namesInView_ = list;
    }
    Show();
  }
  if (event->type() == QEvent::MouseButtonDblClick) {
    if (watched == from_) Take(Field::From);
    if (watched == to_) Take(Field::To);
    if (watched == message_->viewport()) Take(Field::Message);
  }
  return ToolWindow::eventFilter(watched, event);
}

QString RequestWindow::TextOf(Field field) const {
  if (field == Field::Message) return message_->toPlainText();
  return field == Field::From ? from_->text() : to_->text();
}

void RequestWindow::SetTextOf(Field field, const QString& text) {
  if (field == Field::Message) {
    message_->setPlainText(text);
    message_->moveCursor(QTextCursor::End);
  } else {
    (field == Field::From ? from_ : to_)->setText(text);
  }
}

WordList RequestWindow::ListFor(Field field) const {
  return field == Field::Message ? WordList::Messages : namesInView_;
}

void RequestWindow::Take(Field field) {
  const WordList list = ListFor(field);
  const std::vector<int> picked = At(list).panel.Picked();
  if (picked.empty()) return;
  const QString entry = requests_.Lists().Entries(list)[picked.front()];
  const QString before = TextOf(field);
  SetTextOf(field, field == Field::Message ? JoinMessages(before, entry) : JoinNames(before, entry));
}

void RequestWindow::TakeRow(WordList list) {
  Take(list == WordList::Messages ? Field::Message : nameField_);
}

void RequestWindow::LimitMessage() {
  const QString text = message_->toPlainText();
  if (text.size() <= RequestWords::kLongestMessage) return;
  const QSignalBlocker quiet(message_);
  SetTextOf(Field::Message, RequestWords{{}, {}, text}.Fitted().message);
  outcome_->setText(
      tr("A message has at most %1 letters: the rest was left out").arg(RequestWords::kLongestMessage));
}

void RequestWindow::Add() {
  requests_.Add({from_->text(), to_->text(), message_->toPlainText()});
}

void RequestWindow::Clear() {
  from_->clear();
  to_->clear();
  message_->clear();
  // The next one begins where this one did, unless the operator is at work elsewhere.
  if (isActiveWindow()) from_->setFocus();
  SetSpokenText(*outcome_, tr("The last request"), requests_.Words());
}

void RequestWindow::Show() {
  const QString track = requests_.TrackName();
  SetSpokenText(*track_, tr("Track"), track.isEmpty() ? tr("No track is chosen") : track);
  const RequestWords words{from_->text(), to_->text(), message_->toPlainText()};
  Offer(*add_, WhyOff({{!requests_.WhyNoAdd().isEmpty(), requests_.WhyNoAdd()},
                       {!words.Complete(), tr("From, to and message are wanted")}}));
  const auto picked = [this](Field field) { return At(ListFor(field)).panel.AnyPicked(); };
  const QString none = tr("Nothing is picked in the lists");
  Offer(*takeFrom_, WhyOff({{!picked(Field::From), none}}));
  Offer(*takeTo_, WhyOff({{!picked(Field::To), none}}));
  Offer(*takeMessage_, WhyOff({{!picked(Field::Message), none}}));
  const QString why = requests_.Lists().WhyNoChange(inView_);
  const QString title = WordLists::Title(inView_);
  addEntry_->setText(tr("Add To %1...").arg(title));
  Offer(*addEntry_, why);
  Offer(*removeEntry_, WhyOff({{!why.isEmpty(), why},
                               {!At(inView_).panel.AnyPicked(), tr("No entry is picked in %1").arg(title)}}));
}

}  // namespace kelvo
