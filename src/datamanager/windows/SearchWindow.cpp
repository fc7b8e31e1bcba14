#include "datamanager/windows/SearchWindow.h"

#include "database/TrackInfo.h"
#include "database/TrackNames.h"
#include "datamanager/windows/ScreenKeyboard.h"
#include "platform/Words.h"
#include "ui/Command.h"
#include "ui/Form.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/SpokenText.h"
#include "ui/WhyOff.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kOnTopBeat = 2000ms;

}  // namespace

RowModel<Mref>::Columns SearchWindow::Columns(const TrackSearch& search) {
  const Catalogue& tracks = search.Tracks();
  const auto first = [](const PooledTextColumn& lines) {
    return [&lines](Mref track) { return FirstReference(lines[track]); };
  };
  const auto plain = [](const PooledTextColumn& texts) {
    return [&texts](Mref track) { return texts[track]; };
  };
  return {{{.head = QStringLiteral("Track"), .letters = 32},
           [&search](Mref track) { return search.ShownName(track); }},
          {{.head = QStringLiteral("Artist"), .letters = 17, .rank = 2}, first(tracks.TrackArtists)},
          {{.head = QStringLiteral("Album"), .letters = 17, .rank = 3}, first(tracks.TrackAlbums)},
          {{.head = QStringLiteral("Category"), .letters = 14, .rank = 4}, first(tracks.TrackGenres)},
          {{.head = QStringLiteral("Date"), .letters = 11, .rank = 5}, plain(tracks.TrackDates)},
          {{.head = QStringLiteral("Hi"), .letters = 6, .rank = 7, .number = true}, plain(tracks.TrackHi)},
          {{.head = QStringLiteral("Bpm"), .letters = 7, .rank = 6, .number = true}, plain(tracks.TrackBpm)},
          {{.head = QStringLiteral("Time"), .letters = 8, .rank = 1, .number = true},
           [&tracks](Mref track) { return LengthText(tracks.TrackDurations(track)); }}};
}

SearchWindow::SearchWindow(EventLoop& loop, TrackSearch& search)
    : ToolWindow({.name = QStringLiteral("TrackSearch"),
                  .title = QStringLiteral("Track Search"),
                  .letters = 126,
                  .lines = 38}),
      search_(search),
      model_(search.Results(), Columns(search)),
      found_(
          {.name = QStringLiteral("LstResults"), .title = tr("RESULTS"), .accessible = tr("Search results")},
          model_, this),
      question_(new QWidget(this)),
      fields_(new Form(question_)),
      results_(new QLabel(this)),
      state_(new QLabel(this)) {
  model_.Dress = [&tracks = search.Tracks()](Mref track, int column, int role) {
    return role == Qt::ToolTipRole && column == 0 ? QVariant(tracks.TrackPaths(track)) : QVariant();
  };
  SetNames(*results_, QStringLiteral("LblResults"), QStringLiteral("Label2"));
  SetNames(*state_, QStringLiteral("LblState"), QStringLiteral("Label3"));
  BuildQuestion();
  BuildCommands();
  keyboard_ = new ScreenKeyboard(*text_, QStringLiteral("Command3"), this);
  BuildLayout();
  connect(&search_, &TrackSearch::Changed, this, [this] { ShowState(); });
  connect(&found_, &ListPanel::PickedChanged, this, [this] { ShowPicked(); });
  connect(&found_, &ListPanel::RowActivated, this, [this] { AddPicked(); });
  timer_ = loop.Every(kOnTopBeat, [this] { StayOnTop(); });
  ShowState();
}

QRadioButton* SearchWindow::AddOption(const QString& name, const QString& fixedName, const QString& text) {
  auto* option = new QRadioButton(text, question_);
  SetNames(*option, name, fixedName);
  return option;
}

void SearchWindow::BuildFields() {
  text_ = &fields_->AddText({.name = QStringLiteral("TxtSearch"),
                             .fixedName = QStringLiteral("Text1"),
                             .label = tr("Search &for"),
                             .tooltip = tr("What to look for; accents and capitals make no difference")});
  text_->setPlaceholderText(tr("Type what you look for, then Enter"));
  text_->setClearButtonEnabled(true);
  NameLineSigns(*text_);
  date_ = &fields_->AddText({.name = QStringLiteral("TxtDate"),
                             .fixedName = QStringLiteral("Text2"),
                             .label = tr("&Date"),
                             .tooltip = tr("Only this release date, as 1999-Dec")});
  hiPos_ = &fields_->AddText({.name = QStringLiteral("TxtHiPos"),
                              .fixedName = QStringLiteral("Text3"),
                              .label = tr("&Hi Pos"),
                              .tooltip = tr("Only this highest chart position")});
  bpm_ = &fields_->AddText({.name = QStringLiteral("TxtBpm"),
                            .fixedName = QStringLiteral("Text4"),
                            .label = tr("&BPM"),
                            .tooltip = tr("Only this number of beats per minute")});
  connect(fields_, &Form::Submitted, this, [this] { Search(); });
  connect(fields_, &Form::Changed, this, [this] { ShowWhatIsAsked(); });
}

void SearchWindow::BuildQuestion() {
  BuildFields();
  title_ = AddOption(QStringLiteral("OptTitle"), QStringLiteral("Option1"), QStringLiteral("A Track Title"));
  artist_ =
      AddOption(QStringLiteral("OptArtist"), QStringLiteral("Option2"), QStringLiteral("An Artist Name"));
  album_ = AddOption(QStringLiteral("OptAlbum"), QStringLiteral("Option3"), QStringLiteral("An Album Name"));
  genre_ = AddOption(QStringLiteral("OptGenre"), QStringLiteral("Option6"), QStringLiteral("A Genre Name"));
  anyPart_ = AddOption(QStringLiteral("OptAnyPart"), QStringLiteral("Option4"), QStringLiteral("Any Part"));
  wholeString_ = AddOption(QStringLiteral("OptWholeString"), QStringLiteral("Option5"),
                           QStringLiteral("The Whole Search String"));
  titleFirst_ = new QCheckBox(QStringLiteral("Display By Track Title - Artist"), question_);
  SetNames(*titleFirst_, QStringLiteral("ChkTitleFirst"), QStringLiteral("Check1"));
  titleFirst_->setToolTip(tr("Shows the results of the next search by title"));
  QVBoxLayout* in = OptionColumn(tr("In"), {title_, artist_, album_, genre_});
  in->addStretch(1);
  QVBoxLayout* match = OptionColumn(tr("Match"), {anyPart_, wholeString_});
  match->addSpacing(fontMetrics().height() / 2);
  match->addWidget(titleFirst_);
  match->addStretch(1);
  question_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  auto* parts = new QHBoxLayout(question_);
  parts->setContentsMargins(0, 0, 0, 0);
  parts->setSpacing(fontMetrics().height() * 2);
  parts->addWidget(fields_, 1);
  parts->addLayout(in);
  parts->addLayout(match);
}

QVBoxLayout* SearchWindow::OptionColumn(const QString& words, const QList<QRadioButton*>& options) {
  auto* column = new QVBoxLayout;
  column->setSpacing(2);
  column->addWidget(new QLabel(words, question_));
  auto* group = new QButtonGroup(question_);
  for (QRadioButton* option : options) {
    group->addButton(option);
    column->addWidget(option);
  }
  options.front()->setChecked(true);
  return column;
}

void SearchWindow::ShowWhatIsAsked() {
  const bool noDate = !date_->text().isEmpty() && !IsDate(date_->text().trimmed());
  fields_->SetMessage(*date_, noDate ? tr("as 1999-Dec") : QString());
  if (fields_->IsEmpty()) search_.Clear();
}

void SearchWindow::BuildCommands() {
  ok_ = AddCommand(*this, {.name = QStringLiteral("CmdSearch"),
                           .fixedName = QStringLiteral("OKButton"),
                           .words = search_.Caption(),
                           .tooltip = tr("Starts the search, or stops the one that runs"),
                           .keyWords = tr("Enter"),
                           .icon = Icon::Search,
                           .role = QStringLiteral("primary"),
                           .run = [this] { Search(); }});
  selectAll_ = AddCommand(*this, {.name = QStringLiteral("CmdSelectAll"),
                                  .fixedName = QStringLiteral("Command4"),
                                  .words = QStringLiteral("Select All"),
                                  .tooltip = tr("Selects all results, or none"),
                                  .key = QKeySequence(Qt::ALT | Qt::Key_A),
                                  .run = [this] { found_.PickAllOrNone(); }});
  add_ =
      AddCommand(*this, {.name = QStringLiteral("CmdAdd"),
                         .words = QStringLiteral("Add To Queue"),
                         .tooltip = tr("Adds the selected results to the play queue; so does a double click"),
                         .key = QKeySequence(Qt::CTRL | Qt::Key_Return),
                         .icon = Icon::Add,
                         .run = [this] { AddPicked(); }});
  request_ = AddCommand(*this, {.name = QStringLiteral("CmdAddAsRequest"),
                                .fixedName = QStringLiteral("Command5"),
                                .words = QStringLiteral("Add As Request"),
                                .tooltip = QStringLiteral("Opens The Request Dialog !"),
                                .key = QKeySequence(Qt::ALT | Qt::Key_R),
                                .icon = Icon::Microphone,
                                .run = [this] { RequestPicked(); }});
}

void SearchWindow::BuildLayout() {
  auto* top = new QHBoxLayout;
  top->addWidget(question_, 1);
  top->addWidget(ok_, 0, Qt::AlignTop);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(top);
  layout->addWidget(&found_, 1);
  layout->addLayout(Line({selectAll_, add_, request_, {results_, 1}, state_}));
  layout->addWidget(keyboard_);
}

void SearchWindow::TakeKeys() {
  text_->setFocus();
  text_->selectAll();
}

void SearchWindow::Refresh() {
  if (!search_.Running()) Search();
}

void SearchWindow::Search() {
  SearchQuestion question;
  question.text = text_->text();
  question.date = date_->text();
  question.hiPos = hiPos_->text();
  question.bpm = bpm_->text();
  using Field = SearchQuestion::Field;
  if (artist_->isChecked()) question.field = Field::Artist;
  if (album_->isChecked()) question.field = Field::Album;
  if (genre_->isChecked()) question.field = Field::Genre;
  question.wholeString = wholeString_->isChecked();
  question.titleFirst = titleFirst_->isChecked();
  search_.Search(question);
}

void SearchWindow::ShowState() {
  const bool running = search_.Running();
  // What is disabled loses the focus; it has it again when the search is over. Meanwhile Enter stops it.
  if (running && question_->isEnabled()) {
    focus_ = focusWidget();
    ok_->setFocus();
  }
  ok_->setText(search_.Caption());
  for (QWidget* part : {question_, static_cast<QWidget*>(&found_.Table()), keyboard_})
    part->setEnabled(!running);
  if (!running && focus_ != nullptr) std::exchange(focus_, nullptr)->setFocus();
  results_->setText(search_.ResultWords());
  state_->setText(search_.StateWords());
  const bool ended = !search_.StateWords().isEmpty();
  found_.SetHint(running ? QString()
                 : ended ? tr("No track was found.\nTry another field, or a part of the word.")
                         : tr("Type what you look for and press Enter."));
  ShowPicked();
}

void SearchWindow::ShowPicked() {
  selectAll_->setText(found_.AllPicked() ? QStringLiteral("Clear All") : QStringLiteral("Select All"));
  const OffReason searching{search_.Running(), tr("The search runs")};
  Offer(*selectAll_, WhyOff({searching, {model_.rowCount() == 0, tr("No track was found")}}));
  for (QPushButton* button : {add_, request_})
    Offer(*button, WhyOff({searching, {!found_.AnyPicked(), tr("No track is selected")}}));
}

std::vector<Mref> SearchWindow::PickedTracks() const {
  std::vector<Mref> tracks;
  for (const int row : found_.Picked()) tracks.push_back(search_.Results()[row]);
  return tracks;
}

void SearchWindow::AddPicked() {
  std::vector<Mref> tracks = PickedTracks();
  if (OnAdd && !tracks.empty()) OnAdd(std::move(tracks));
}

void SearchWindow::RequestPicked() {
  if (OnRequest) OnRequest(PickedTracks());
}

}  // namespace kelvo
