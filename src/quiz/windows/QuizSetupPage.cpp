#include "quiz/windows/QuizSetupPage.h"

#include "ui/Command.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/SpokenText.h"
#include "ui/WhyOff.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSpinBox>

namespace kelvo {
namespace {

RowModel<QuizGenre>::Columns GenreColumns() {
  return {{{.head = QStringLiteral("Genre"), .letters = 14}, &QuizGenre::name}};
}

QSpinBox* MakeNumber(QWidget& owner, const QString& name, const QString& fixedName,
                     const QString& accessible) {
  auto* box = new QSpinBox(&owner);
  SetNames(*box, name, fixedName);
  box->setAccessibleName(accessible);
  box->setRange(QuizSetup::kLowest, QuizSetup::kHighest);
  box->setKeyboardTracking(false);
  box->findChild<QLineEdit*>()->setAccessibleName(accessible);
  return box;
}

}  // namespace

QuizSetupPage::QuizSetupPage(PopQuiz& quiz, QWidget* parent)
    : QWidget(parent),
      quiz_(quiz),
      genreModel_(quiz.Plan().Genres(), GenreColumns()),
      chosenModel_(quiz.Plan().Chosen(), GenreColumns()),
      kindModel_(kindRows_, {{{.head = QStringLiteral("Element"), .letters = 16},
                              [](const KindRow& row) { return ElementWord(row.kind); }}}),
      elementModel_(quiz.Plan().Elements(),
                    {{{.head = QStringLiteral("Element"), .letters = 16},
                      [](const QuizElement& element) { return ElementWord(element.kind); }}}),
      genres_({.name = QStringLiteral("LstQuizGenres"),
               .fixedName = QStringLiteral("List1"),
               .title = tr("GENRES"),
               .accessible = tr("All genres")},
              genreModel_, this),
      chosen_({.name = QStringLiteral("LstQuizChosen"),
               .fixedName = QStringLiteral("List2"),
               .title = tr("INCLUDED"),
               .accessible = tr("Genres of the quiz")},
              chosenModel_, this),
      kinds_({.name = QStringLiteral("LstQuizKinds"),
              .fixedName = QStringLiteral("List3"),
              .title = tr("ELEMENT TO ADD"),
              .accessible = tr("Kinds of elements"),
              .many = false},
             kindModel_, this),
      elements_({.name = QStringLiteral("LstQuizElements"),
                 .fixedName = QStringLiteral("List4"),
                 .title = tr("ELEMENTS"),
                 .accessible = tr("Elements of the quiz, in running order"),
                 .many = false},
                elementModel_, this),
      facts_(new QLabel(this)),
      chain_(MakeNumber(*this, QStringLiteral("NumChain"), QStringLiteral("UpDown1"),
                        tr("Snippets in a chain"))),
      seconds_(MakeNumber(*this, QStringLiteral("NumSeconds"), QStringLiteral("UpDown2"),
                          tr("Seconds of a snippet"))),
      mixer_(MakeSound(QuizSound::Mixer)),
      intro_(MakeSound(QuizSound::Intro)) {
  for (const ElementKind kind : kElementKinds) kindRows_.Append({KindRow{kind}});
  kinds_.Pick({0});
  SetNames(*facts_, QStringLiteral("LblQuizFacts"), QStringLiteral("Label20"));
  facts_->setWordWrap(true);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(GenresLayout(), 6);
  layout->addLayout(ElementsLayout(), 4);
  layout->addWidget(SnippetsPanel(), 4);
  for (ListPanel* each : {&genres_, &chosen_, &kinds_, &elements_}) {
    each->Table().horizontalHeader()->hide();
  }
  Join();
}

QLayout* QuizSetupPage::GenresLayout() {
  const auto make = [this](std::size_t number, const QString& name, const QString& words,
                           const QString& tooltip, Icon icon, std::function<void()> run) {
    genreCommands_[number] = AddCommand(*this, {.name = name,
                                                .fixedName = QStringLiteral("Command1(%1)").arg(number),
                                                .words = words,
                                                .tooltip = tooltip,
                                                .icon = icon,
                                                .run = std::move(run)});
  };
  QuizPlan& plan = quiz_.Plan();
  make(0, QStringLiteral("CmdGenreAdd"), tr("Add"), tr("Includes the selected genres"), Icon::Add,
       [this, &plan] { plan.Choose(genres_.Picked()); });
  make(1, QStringLiteral("CmdGenreAll"), tr("Add All"), tr("Includes all genres"), Icon::Forward,
       [&plan] { plan.ChooseAll(); });
  make(2, QStringLiteral("CmdGenreNone"), tr("Clear"), tr("Includes no genre"), Icon::Clear,
       [&plan] { plan.ChooseNone(); });
  make(3, QStringLiteral("CmdGenreRemove"), tr("Remove"), tr("Leaves the selected genres out"), Icon::Cut,
       [this, &plan] { plan.GiveBack(chosen_.Picked()); });
  auto* buttons = new QVBoxLayout;
  buttons->addStretch(1);
  for (QPushButton* each : genreCommands_) buttons->addWidget(each);
  buttons->addStretch(1);
  auto* layout = new QHBoxLayout;
  layout->addWidget(&genres_, 1);
  layout->addLayout(buttons);
  layout->addWidget(&chosen_, 1);
  return layout;
}

QLayout* QuizSetupPage::ElementsLayout() {
  const auto make = [this](std::size_t number, const QString& name, const QString& words,
                           const QString& tooltip, const QKeySequence& key, Icon icon,
                           std::function<void()> run) {
    elementCommands_[number] = AddCommand(*this, {.name = name,
                                                  .fixedName = QStringLiteral("Command3(%1)").arg(number),
                                                  .words = words,
                                                  .tooltip = tooltip,
                                                  .key = key,
                                                  .icon = icon,
                                                  .run = std::move(run)});
  };
  make(0, QStringLiteral("CmdElementAdd"), tr("Add"), tr("Adds the selected kind of element at the end"),
       QKeySequence(Qt::Key_Insert), Icon::Add, [this] { AddPickedKind(); });
  make(1, QStringLiteral("CmdElementRemove"), tr("Remove"), tr("Removes the selected element"),
       QKeySequence(Qt::CTRL | Qt::Key_Delete), Icon::Cut,
       [this] { quiz_.Plan().RemoveElement(elements_.Current()); });
  make(2, QStringLiteral("CmdElementClear"), tr("Clear"), tr("Removes all elements"), {}, Icon::Clear,
       [this] { quiz_.Plan().ClearElements(); });
  constexpr int kKinds = 3;
  kinds_.Table().setMinimumHeight(fontMetrics().height() * (kKinds * 3 + 1) / 2);
  auto* layout = new QVBoxLayout;
  layout->addWidget(&kinds_, 3);
  layout->addLayout(Line({{elementCommands_[0], 1}, {elementCommands_[1], 1}, {elementCommands_[2], 1}}));
  layout->addWidget(&elements_, 4);
  layout->addWidget(facts_);
  return layout;
}

QuizSetupPage::SoundLine QuizSetupPage::MakeSound(QuizSound sound) {
  const bool mixer = sound == QuizSound::Mixer;
  auto* box = new QComboBox(this);
  SetNames(*box, mixer ? QStringLiteral("CboMixer") : QStringLiteral("CboIntro"),
           mixer ? QStringLiteral("Combo1") : QStringLiteral("Combo2"));
  box->setAccessibleName(mixer ? tr("Snippet Mixers") : tr("Quiz Introductions"));
  box->setToolTip(mixer ? tr("The sound behind each snippet") : tr("The sound before the quiz"));
  box->setMinimumContentsLength(10);
  QPushButton* add =
      AddCommand(*this, {.name = mixer ? QStringLiteral("CmdMixerAdd") : QStringLiteral("CmdIntroAdd"),
                         .fixedName = mixer ? QStringLiteral("Command6") : QStringLiteral("Command7"),
                         .words = tr("Add..."),
                         .tooltip = mixer ? tr("Copies a sound file to the mixers")
                                          : tr("Copies a sound file to the introductions"),
                         .icon = Icon::Folder,
                         .run = [this, sound] { quiz_.AddSound(sound); }});
  QPushButton* play = AddCommand(
      *this,
      {.name = mixer ? QStringLiteral("CmdMixerPlay") : QStringLiteral("CmdIntroPlay"),
       .fixedName = mixer ? QStringLiteral("Command12") : QStringLiteral("Command8"),
       .words = mixer ? QStringLiteral("Play Mixer") : QStringLiteral("Play Intro"),
       .tooltip = mixer ? tr("Plays the chosen mixer, on air") : tr("Plays the chosen introduction, on air"),
       .icon = Icon::Play,
       .run = [this, mixer] {
         if (mixer) {
           quiz_.TryMixer();
         } else {
           quiz_.PlayIntro();
         }
       }});
  connect(box, &QComboBox::activated, this,
          [this, box, sound] { quiz_.ChooseSound(sound, box->currentText()); });
  return {sound, box, add, play};
}

QWidget* QuizSetupPage::SnippetsPanel() {
  auto* panel = new Panel(Group::Console, tr("SNIPPETS"), this);
  const std::array words{QStringLiteral("Start Of Tracks"), QStringLiteral("Middle Of Tracks"),
                         QStringLiteral("End Of Tracks"), QStringLiteral("Random Positions")};
  auto* layout = new QVBoxLayout(panel);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(new QLabel(QStringLiteral("Get Snippets From"), panel));
  auto* sources = new QGridLayout;
  for (std::size_t number = 0; number < words.size(); ++number) {
    auto* source = new QRadioButton(words[number], panel);
    SetNames(*source, QStringLiteral("OptSource%1").arg(number), QStringLiteral("Option1(%1)").arg(number));
    source->setToolTip(tr("The snippets are taken from there"));
    sources->addWidget(source, static_cast<int>(number / 2), static_cast<int>(number % 2));
    sources_[number] = source;
    connect(source, &QRadioButton::clicked, this, [this, number] {
      Wish([number](QuizSetup& setup) { setup.from = static_cast<SnipFrom>(number + 1); });
    });
  }
  layout->addLayout(sources);
  const auto label = [panel](const QString& text, QWidget& buddy) {
    auto* made = new QLabel(text, panel);
    made->setBuddy(&buddy);
    return made;
  };
  auto* numbers = new QGridLayout;
  numbers->addWidget(label(tr("Snippet &Chain Qty"), *chain_), 0, 0);
  numbers->addWidget(chain_, 0, 1);
  numbers->addWidget(label(tr("Len&gth (Secs)"), *seconds_), 1, 0);
  numbers->addWidget(seconds_, 1, 1);
  layout->addLayout(numbers);
  layout->addStretch(1);
  for (const SoundLine& each : {mixer_, intro_}) {
    layout->addWidget(
        label(each.sound == QuizSound::Mixer ? tr("Snippet &Mixers") : tr("Quiz &Introductions"), *each.box));
    layout->addWidget(each.box);
    layout->addLayout(Line({{each.add, 1}, {each.play, 1}}));
  }
  return panel;
}

template <typename Change>
void QuizSetupPage::Wish(Change change) {
  QuizSetup setup = quiz_.Plan().Setup();
  change(setup);
  quiz_.Plan().SetSetup(setup);
}

void QuizSetupPage::Join() {
  connect(chain_, &QSpinBox::valueChanged, this,
          [this](int value) { Wish([value](QuizSetup& setup) { setup.chainQty = value; }); });
  connect(seconds_, &QSpinBox::valueChanged, this,
          [this](int value) { Wish([value](QuizSetup& setup) { setup.seconds = value; }); });
  chain_->setToolTip(tr("Snippets that a chain plays in a row"));
  seconds_->setToolTip(tr("How long a snippet is"));
  connect(&genres_, &ListPanel::RowActivated, this, [this] { quiz_.Plan().Choose(genres_.Picked()); });
  connect(&chosen_, &ListPanel::RowActivated, this, [this] { quiz_.Plan().GiveBack(chosen_.Picked()); });
  connect(&kinds_, &ListPanel::RowActivated, this, [this] { AddPickedKind(); });
  for (ListPanel* each : {&genres_, &chosen_, &kinds_, &elements_}) {
    connect(each, &ListPanel::PickedChanged, this, [this] { ShowCommands(); });
  }
  const auto pickLast = [this] {
    if (const int last = quiz_.Plan().Elements().Count() - 1; last >= 0) elements_.Table().selectRow(last);
  };
  connect(&quiz_.Plan(), &QuizPlan::ElementsChanged, this, pickLast);
}

void QuizSetupPage::AddPickedKind() {
  const int row = kinds_.Current();
  if (row >= 0) quiz_.AddElement(kElementKinds[static_cast<std::size_t>(row)]);
}

void QuizSetupPage::TakeKeys() {
  genres_.Table().setFocus();
}

void QuizSetupPage::ShowSound(const SoundLine& line) {
  const QStringList& names = quiz_.Sounds().Names(line.sound);
  QStringList shown;
  for (int row = 0; row < line.box->count(); ++row) shown.append(line.box->itemText(row));
  if (shown != names) {
    line.box->clear();
    line.box->addItems(names);
  }
  const QuizSetup& setup = quiz_.Plan().Setup();
  const auto row = names.indexOf(line.sound == QuizSound::Mixer ? setup.mixer : setup.intro);
  line.box->setCurrentIndex(static_cast<int>(std::max<qsizetype>(row, 0)));
}

void QuizSetupPage::Show() {
  const QuizPlan& plan = quiz_.Plan();
  const QuizSetup& setup = plan.Setup();
  const QSignalBlocker quietChain(chain_);
  const QSignalBlocker quietSeconds(seconds_);
  chain_->setValue(setup.chainQty);
  seconds_->setValue(setup.seconds);
  sources_[static_cast<std::size_t>(setup.from) - 1]->setChecked(true);
  ShowSound(mixer_);
  ShowSound(intro_);
  genres_.SetHint(tr("The catalogue has no genre."));
  chosen_.SetHint(tr("Include genres:\n\"Add\" or a double click."));
  elements_.SetHint(tr("Add elements:\nchoose a kind, then \"Add\"."));
  SetSpokenText(*facts_, tr("Elements and tracks"),
                tr("Set Up Elements %1   Tracks Required %2   Tracks Found %3")
                    .arg(plan.Elements().Count())
                    .arg(plan.TracksRequired())
                    .arg(quiz_.TracksFound()));
  if (quiz_.CurrentGenre() >= 0) chosen_.Table().selectRow(quiz_.CurrentGenre());
  if (quiz_.Locked() && quiz_.CurrentElement() >= 0) elements_.Table().selectRow(quiz_.CurrentElement());
  ShowCommands();
}

void QuizSetupPage::ShowCommands() {
  const QString locked = quiz_.WhyLocked();
  const OffReason atWork{!locked.isEmpty(), locked};
  const QuizPlan& plan = quiz_.Plan();
  for (QWidget* each : {static_cast<QWidget*>(&genres_.Table()), static_cast<QWidget*>(&chosen_.Table()),
                        static_cast<QWidget*>(&kinds_.Table()), static_cast<QWidget*>(&elements_.Table()),
                        static_cast<QWidget*>(chain_), static_cast<QWidget*>(seconds_),
                        static_cast<QWidget*>(mixer_.box), static_cast<QWidget*>(mixer_.add),
                        static_cast<QWidget*>(mixer_.play), static_cast<QWidget*>(intro_.box),
                        static_cast<QWidget*>(intro_.add), static_cast<QWidget*>(intro_.play)}) {
    Offer(*each, locked);
  }
  for (QRadioButton* each : sources_) Offer(*each, locked);
  const OffReason noneChosen{plan.Chosen().Count() == 0, tr("No genre is included")};
  Offer(*genreCommands_[0], WhyOff({atWork, {!genres_.AnyPicked(), tr("No genre is selected")}}));
  Offer(*genreCommands_[1], WhyOff({atWork, {plan.Genres().Count() == 0, tr("The catalogue has no genre")}}));
  Offer(*genreCommands_[2], WhyOff({atWork, noneChosen}));
  Offer(*genreCommands_[3],
        WhyOff({atWork, noneChosen, {!chosen_.AnyPicked(), tr("No included genre is selected")}}));
  const OffReason noElement{plan.Elements().Count() == 0, tr("No element is set up")};
  Offer(*elementCommands_[0], WhyOff({atWork, {!kinds_.AnyPicked(), tr("No kind of element is selected")}}));
  Offer(*elementCommands_[1],
        WhyOff({atWork, noElement, {!elements_.AnyPicked(), tr("No element is selected")}}));
  Offer(*elementCommands_[2], WhyOff({atWork, noElement}));
}

}  // namespace kelvo
