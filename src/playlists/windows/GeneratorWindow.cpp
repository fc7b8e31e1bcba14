#include "playlists/windows/GeneratorWindow.h"

#include "platform/Words.h"
#include "playlists/windows/NumberBox.h"
#include "playlists/windows/OutlinePanel.h"
#include "playlists/windows/RulesLine.h"
#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/JobStrip.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/SpokenText.h"
#include "ui/WhyOff.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>

#include <utility>

namespace kelvo {
namespace {

RowModel<GenreName>::Columns GenreColumn() {
  return {{{.head = QStringLiteral("Genre"), .letters = 14}, &GenreName::name}};
}

RowModel<GeneratedRow>::Columns ListColumns(const PlaylistGenerator& generator) {
  const Catalogue& tracks = generator.Tracks();
  const auto ofTrack = [](auto text) {
    return [text](const GeneratedRow& row) { return row.track == Mref::None ? QString() : text(row); };
  };
  return {{{.head = QStringLiteral("Track"), .letters = 30},
           [&generator, &tracks](const GeneratedRow& row) {
             return row.track == Mref::None ? QStringLiteral("=====") + generator.GenreOf(row.genre)
                                            : tracks.TrackNames[row.track];
           }},
          {{.head = QStringLiteral("BPM"), .letters = 7, .rank = 2, .number = true},
           ofTrack([&tracks](const GeneratedRow& row) { return tracks.TrackBpm[row.track]; })},
          {{.head = QStringLiteral("Time"), .letters = 7, .rank = 1, .number = true},
           ofTrack([&tracks](const GeneratedRow& row) {
             const qint64 seconds = Int(tracks.TrackDurations(row.track));
             return seconds < 0 ? QStringLiteral("?") : QString::number(seconds);
           })},
          {{.head = QStringLiteral("GenreId"), .letters = 11, .rank = 3, .number = true},
           ofTrack([](const GeneratedRow& row) { return QString::number(row.genre); })}};
}

RowModel<SequenceRow>::Columns SequenceColumns(const PlaylistGenerator& generator) {
  const Catalogue& tracks = generator.Tracks();
  return {
      {{.head = QStringLiteral("Starts"), .letters = 11, .rank = 2, .number = true},
       [](const SequenceRow& row) { return HoursMinutesSeconds(row.pick.start); }},
      {{.head = QStringLiteral("Track"), .letters = 26},
       [&tracks](const SequenceRow& row) { return tracks.TrackNames[row.track]; }},
      {{.head = QStringLiteral("BPM"), .letters = 7, .rank = 4, .number = true},
       [&tracks](const SequenceRow& row) { return tracks.TrackBpm[row.track]; }},
      {{.head = QStringLiteral("Time"), .letters = 7, .rank = 3, .number = true},
       [](const SequenceRow& row) { return QString::number(row.seconds); }},
      {{.head = QStringLiteral("Rules Broken"), .letters = 36, .rank = 1}, &PlaylistGenerator::BrokenRules}};
}

}  // namespace

GeneratorWindow::GeneratorWindow(EventLoop& loop, PlaylistGenerator& generator)
    : ToolWindow({.name = QStringLiteral("GeneratePlaylist"),
                  .fixedName = QStringLiteral("frmcreatePlist"),
                  .title = QStringLiteral("Generate Play List"),
                  .letters = 128,
                  .lines = 38}),
      generator_(generator),
      genreModel_(generator.Genres(), GenreColumn()),
      chosenModel_(generator.Chosen(), GenreColumn()),
      listModel_(generator.List(), ListColumns(generator)),
      sequenceModel_(generator.Sequence(), SequenceColumns(generator)),
      genres_({.name = QStringLiteral("LstGenres"),
               .fixedName = QStringLiteral("List1(0)"),
               .title = tr("GENRES"),
               .accessible = tr("Genres that are not chosen")},
              genreModel_, this),
      chosen_({.name = QStringLiteral("LstChosen"),
               .fixedName = QStringLiteral("List1(1)"),
               .title = tr("CHOSEN"),
               .accessible = tr("Chosen genres, in order")},
              chosenModel_, this),
      list_({.name = QStringLiteral("LstGenerated"),
             .fixedName = QStringLiteral("ListView1"),
             .title = tr("GENERATED LIST"),
             .accessible = tr("Tracks of the chosen genres")},
            listModel_, this),
      sequence_({.name = QStringLiteral("LstSequence"),
                 .title = tr("FITTED TO TIME"),
                 .accessible = tr("Tracks fitted to the wanted time")},
                sequenceModel_, this),
      outline_(new OutlinePanel(generator, this)),
      rules_(new RulesLine(generator, this)),
      total_(new QLabel(this)),
      facts_(new ElidedLabel(QString(), this)),
      tabs_(new QTabBar(this)),
      pages_(new QStackedWidget(this)),
      name_(new QLineEdit(this)),
      category_(new QComboBox(this)),
      progress_(new JobStrip(loop, QStringLiteral("PrgGenerator"), tr("Progress"), this)) {
  sequenceModel_.Dress = [](const SequenceRow& row, int, int role) {
    const QString broken = role == Qt::ToolTipRole ? PlaylistGenerator::BrokenRules(row) : QString();
    return broken.isEmpty() ? QVariant() : QVariant(broken);
  };
  BuildCommands();
  BuildSave();
  progress_->OfferStop(QStringLiteral("CmdStop"), tr("Stops; what is listed by then stays"),
                       [this] { generator_.Stop(); });
  BuildLayout();
  JoinGenerator();
  Show();
}

void GeneratorWindow::BuildCommands() {
  const auto move = [this](int number, const QString& name, const QString& words, const QString& tooltip,
                           const QKeySequence& key, std::optional<Icon> icon, std::function<void()> run) {
    return AddCommand(*this, {.name = name,
                              .fixedName = QStringLiteral("Command1(%1)").arg(number),
                              .words = words,
                              .tooltip = tooltip,
                              .key = key,
                              .icon = icon,
                              .run = std::move(run)});
  };
  choose_ =
      move(0, QStringLiteral("CmdChoose"), tr("Add"), tr("Chooses the selected genres"),
           QKeySequence(Qt::ALT | Qt::Key_Right), Icon::Add, [this] { generator_.Choose(genres_.Picked()); });
  giveBack_ = move(1, QStringLiteral("CmdGiveBack"), tr("Remove"), tr("Gives the selected genres back"),
                   QKeySequence(Qt::ALT | Qt::Key_Left), Icon::Cut,
                   [this] { generator_.GiveBack(chosen_.Picked()); });
  up_ = move(2, QStringLiteral("CmdGenreUp"), tr("Up"), tr("The selected genre is listed sooner"),
             QKeySequence(Qt::ALT | Qt::Key_Up), Icon::Up, [this] { MoveChosen(-1); });
  down_ = move(3, QStringLiteral("CmdGenreDown"), tr("Down"), tr("The selected genre is listed later"),
               QKeySequence(Qt::ALT | Qt::Key_Down), Icon::Down, [this] { MoveChosen(1); });
  generate_ = AddCommand(*this, {.name = QStringLiteral("CmdGenerate"),
                                 .fixedName = QStringLiteral("Command2"),
                                 .words = tr("&Generate"),
                                 .tooltip = tr("Lists all tracks of the chosen genres"),
                                 .key = QKeySequence(Qt::CTRL | Qt::Key_G),
                                 .icon = Icon::Queue,
                                 .role = QStringLiteral("primary"),
                                 .run = [this] { generator_.Generate(); }});
  fit_ =
      AddCommand(*this, {.name = QStringLiteral("CmdFit"),
                         .words = tr("&Fit To Time"),
                         .tooltip = tr("Chooses of the list what lasts as long as is wanted, by the rules; "
                                       "another choice each time"),
                         .key = QKeySequence(Qt::CTRL | Qt::Key_T),
                         .icon = Icon::Timer,
                         .role = QStringLiteral("primary"),
                         .run = [this] { generator_.Fit(); }});
  add_ = AddCommand(*this, {.name = QStringLiteral("CmdAdd"),
                            .words = QStringLiteral("Add To Queue"),
                            .tooltip = tr("The selected tracks, or all that are shown, go to the play queue"),
                            .key = QKeySequence(Qt::CTRL | Qt::Key_Return),
                            .icon = Icon::Add,
                            .run = [this] { generator_.AddToQueue(Tracks()); }});
  exit_ = AddCommand(*this, {.name = QStringLiteral("CmdExit"),
                             .words = QStringLiteral("Exit"),
                             .tooltip = tr("Closes the window"),
                             .keyWords = tr("Esc"),
                             .icon = Icon::Close,
                             .run = [this] { close(); }});
}

void GeneratorWindow::BuildSave() {
  name_->setObjectName(QStringLiteral("TxtPlaylistName"));
  name_->setAccessibleName(tr("Name of the playlist"));
  name_->setToolTip(tr("The name to save under"));
  name_->setMaxLength(30);
  category_->setObjectName(QStringLiteral("CboCategory"));
  category_->setAccessibleName(tr("Category of the playlist"));
  category_->setToolTip(tr("The category to save in"));
  category_->setMinimumContentsLength(10);
  save_ = AddCommand(*this, {.name = QStringLiteral("CmdSave"),
                             .words = QStringLiteral("Save"),
                             .tooltip = tr("Saves the selected tracks, or all that are shown, as a playlist"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_S),
                             .icon = Icon::Save,
                             .run = [this] { generator_.Save(name_->text(), Tracks()); }});
  connect(name_, &QLineEdit::returnPressed, save_, &QPushButton::click);
  connect(category_, &QComboBox::activated, this,
          [this] { generator_.Shelf().ChooseCategory(category_->currentText()); });
}

QLayout* GeneratorWindow::GenresLayout() {
  auto* buttons = new QVBoxLayout;
  buttons->addStretch(1);
  for (QPushButton* each : {choose_, giveBack_, up_, down_}) buttons->addWidget(each);
  buttons->addStretch(1);
  auto* genres = new QHBoxLayout;
  genres->addWidget(&genres_, 1);
  genres->addLayout(buttons);
  genres->addWidget(&chosen_, 1);
  return genres;
}

void GeneratorWindow::BuildLayout() {
  pages_->addWidget(&list_);
  pages_->addWidget(&sequence_);
  tabs_->setObjectName(QStringLiteral("TabResult"));
  tabs_->setAccessibleName(tr("What is shown"));
  tabs_->addTab(tr("G&enerated List"));
  tabs_->addTab(tr("Fitted To T&ime"));
  tabs_->setDrawBase(false);
  SetNames(*total_, QStringLiteral("LblTotal"), QStringLiteral("Label4"));
  facts_->setObjectName(QStringLiteral("LblFacts"));
  auto* top = new QHBoxLayout;
  top->addLayout(GenresLayout(), 4);
  top->addWidget(outline_, 5);
  auto* saving = new QHBoxLayout;
  saving->addWidget(add_);
  saving->addStretch(1);
  saving->addLayout(LabelledBox(*this, tr("&Name"), *name_), 2);
  saving->addLayout(LabelledBox(*this, tr("In &Category"), *category_));
  saving->addWidget(save_);
  saving->addSpacing(fontMetrics().height());
  saving->addWidget(exit_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(top, 4);
  layout->addWidget(rules_);
  layout->addLayout(Line({generate_, fit_, {total_, 1}, tabs_}));
  layout->addWidget(pages_, 5);
  layout->addWidget(facts_);
  layout->addWidget(progress_);
  layout->addLayout(saving);
}

void GeneratorWindow::JoinGenerator() {
  connect(&genres_, &ListPanel::PickedChanged, this, [this] { ShowCommands(); });
  connect(&genres_, &ListPanel::RowActivated, this, [this] { generator_.Choose(genres_.Picked()); });
  connect(&chosen_, &ListPanel::PickedChanged, this, [this] { ShowCommands(); });
  connect(&chosen_, &ListPanel::RowActivated, this, [this] { generator_.GiveBack(chosen_.Picked()); });
  connect(tabs_, &QTabBar::currentChanged, this, [this](int page) { ShowPage(page); });
  connect(&generator_, &PlaylistGenerator::Changed, this, [this] { Show(); });
  connect(&generator_, &PlaylistGenerator::ListMade, this, [this] { ShowPage(0); });
  connect(&generator_, &PlaylistGenerator::SequenceMade, this, [this] { ShowPage(1); });
}

void GeneratorWindow::TakeKeys() {
  genres_.Table().setFocus();
}

void GeneratorWindow::Enter() {
  generator_.Shelf().List();
}

void GeneratorWindow::Leave() {
  generator_.KeepWishes();
  if (!generator_.Busy()) generator_.Shelf().Rest();
}

void GeneratorWindow::Refresh() {
  if (!generator_.Busy()) generator_.Shelf().List();
}

void GeneratorWindow::MoveChosen(int step) {
  const std::vector<int> picked = chosen_.Picked();
  if (picked.size() == 1) chosen_.Table().selectRow(generator_.Move(picked.front(), step));
}

std::vector<Mref> GeneratorWindow::Tracks() const {
  std::vector<Mref> tracks;
  const auto gather = [&tracks](const ListPanel& panel, const auto& rows) {
    for (const int row : panel.Picked()) tracks.push_back(rows[row].track);
    if (tracks.empty()) {
      tracks.reserve(rows.All().size());
      for (const auto& row : rows.All()) tracks.push_back(row.track);
    }
  };
  if (pages_->currentIndex() == 0) {
    gather(list_, generator_.List());
  } else {
    gather(sequence_, generator_.Sequence());
  }
  std::erase(tracks, Mref::None);
  return tracks;
}

void GeneratorWindow::ShowPage(int page) {
  tabs_->setCurrentIndex(page);
  pages_->setCurrentIndex(page);
  ShowCommands();
}

void GeneratorWindow::Show() {
  const bool free = !generator_.Busy();
  if (free == (cursor().shape() == Qt::WaitCursor)) {
    if (free) {
      unsetCursor();
    } else {
      setCursor(Qt::WaitCursor);
    }
  }
  // What is disabled loses the focus; it has it again when the work is over.
  if (!free && focus_ == nullptr) focus_ = focusWidget();
  for (QWidget* each : {static_cast<QWidget*>(&genres_.Table()), static_cast<QWidget*>(&chosen_.Table()),
                        static_cast<QWidget*>(outline_), static_cast<QWidget*>(rules_),
                        static_cast<QWidget*>(name_), static_cast<QWidget*>(category_)}) {
    each->setEnabled(free);
  }
  if (free && focus_ != nullptr) std::exchange(focus_, nullptr)->setFocus();
  if (generator_.Current() >= 0) chosen_.Table().selectRow(generator_.Current());
  progress_->Show({.running = !free, .words = generator_.Words(), .share = generator_.Share()});
  Offer(*progress_->findChild<QPushButton*>(QStringLiteral("CmdStop")), generator_.WhyNoStop());
  genres_.SetHint(tr("All genres are chosen."));
  chosen_.SetHint(tr("Choose genres:\n\"Add\" or a double click."));
  list_.SetHint(free ? tr("\"Generate\" lists the tracks of the chosen genres.") : QString());
  sequence_.SetHint(free ? tr("\"Fit To Time\" chooses tracks that last as long as is wanted.") : QString());
  SetSpokenText(*total_, tr("Total"),
                tr("Total %1 Seconds, %2")
                    .arg(generator_.TotalSeconds())
                    .arg(HoursMinutesSeconds(generator_.TotalSeconds())));
  if (kept_ != generator_.SaveName()) {
    kept_ = generator_.SaveName();
    name_->setText(kept_);
  }
  outline_->Show();
  rules_->Show();
  ShowCategories();
  ShowCommands();
}

void GeneratorWindow::ShowCategories() {
  PlaylistShelf& shelf = generator_.Shelf();
  QStringList names;
  for (const ShelfName& each : shelf.Categories().All()) names.append(each.name);
  QStringList shown;
  for (int item = 0; item < category_->count(); ++item) shown.append(category_->itemText(item));
  if (names != shown) {
    category_->clear();
    category_->addItems(names);
  }
  category_->setPlaceholderText(names.isEmpty() ? tr("(none)") : tr("(choose)"));
  category_->setCurrentIndex(static_cast<int>(names.indexOf(shelf.Category())));
}

void GeneratorWindow::ShowCommands() {
  const OffReason atWork{generator_.Busy(), tr("It is at work: stop it first, or wait")};
  const std::vector<int> chosen = chosen_.Picked();
  const OffReason notOne{chosen.size() != 1, tr("Select one chosen genre")};
  Offer(*choose_, WhyOff({atWork, {!genres_.AnyPicked(), tr("No genre is selected")}}));
  Offer(*giveBack_, WhyOff({atWork, {chosen.empty(), tr("No chosen genre is selected")}}));
  Offer(*up_, WhyOff({atWork, notOne, {!chosen.empty() && chosen.front() == 0, tr("It is the first")}}));
  const int last = generator_.Chosen().Count() - 1;
  Offer(*down_, WhyOff({atWork, notOne, {!chosen.empty() && chosen.front() == last, tr("It is the last")}}));
  Offer(*generate_, generator_.WhyNot());
  Offer(*fit_, generator_.WhyNot());
  const bool listShown = pages_->currentIndex() == 0;
  const int rows = listShown ? generator_.List().Count() : generator_.Sequence().Count();
  const OffReason nothing{rows == 0, tr("No track is listed")};
  Offer(*add_, WhyOff({atWork, nothing}));
  Offer(*save_, WhyOff({atWork, nothing}));
  facts_->setText(listShown ? QString() : generator_.SequenceWords());
}

}  // namespace kelvo
