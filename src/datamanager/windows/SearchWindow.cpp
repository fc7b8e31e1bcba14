#include "datamanager/windows/SearchWindow.h"

#include "datamanager/windows/ScreenKeyboard.h"
#include "datamanager/windows/SearchModel.h"
#include "ui/CommandButton.h"
#include "ui/ListTable.h"
#include "ui/ScalableIcon.h"
#include "ui/Tabular.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kOnTopBeat = 2000ms;

const QString kSelectAll = QStringLiteral("Select All");
const QString kClearAll = QStringLiteral("Clear All");

}  // namespace

SearchWindow::SearchWindow(Services services, QWidget* console)
    : QWidget(console, Qt::Window),
      services_(std::move(services)),
      search_(services_.loop, services_.prompter, services_.catalogue),
      question_(new QWidget(this)),
      ok_(new CommandButton(ScalableIcon(Icon::Search), QStringLiteral("SEARCH"), this)),
      model_(new SearchModel(search_, services_.catalogue, this)),
      list_(new ListTable(this)),
      commands_(new QWidget(this)),
      results_(new QLabel(this)),
      state_(new QLabel(this)),
      place_(*this, services_.settings,
             PlaceKeys::Of(services_.title, QStringLiteral("Startup"), QStringLiteral("Search"))) {
  setObjectName(QStringLiteral("TrackSearch"));
  setWindowTitle(QStringLiteral("Track Search"));
  auto* layout = new QVBoxLayout(this);
  BuildQuestion(*layout);
  BuildResults(*layout);
  keyboard_ = new ScreenKeyboard(*text_, this);
  layout->addWidget(keyboard_);

  connect(ok_, &QPushButton::clicked, this, [this] { Search(); });
  connect(&search_, &TrackSearch::Changed, this, [this] { ShowState(); });
  connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { ShowSelection(); });
  connect(model_, &QAbstractItemModel::modelReset, this, [this] { ShowSelection(); });
  timer_ = services_.loop.Every(kOnTopBeat, [this] { StayOnTop(); });
  ShowState();
  // A place that was kept has given the window its size already.
  if (!testAttribute(Qt::WA_Resized)) resize(sizeHint().expandedTo(QSize(900, 620)));
  BeginTyping();
}

QRadioButton* SearchWindow::AddOption(const QString& name, const QString& text) {
  auto* option = new QRadioButton(text, question_);
  option->setObjectName(name);
  return option;
}

QLineEdit* SearchWindow::AddBox(const QString& name, const QString& hint) {
  auto* box = new QLineEdit(question_);
  box->setObjectName(name);
  box->setToolTip(hint);
  connect(box, &QLineEdit::returnPressed, this, [this] { Search(); });
  return box;
}

void SearchWindow::BuildQuestion(QVBoxLayout& layout) {
  text_ = AddBox(QStringLiteral("Text1"), tr("What to look for"));
  text_->setAccessibleName(tr("Search for"));
  text_->setPlaceholderText(tr("Type what you look for, then Enter"));
  text_->setClearButtonEnabled(true);
  date_ = AddBox(QStringLiteral("Text2"), tr("Only this release date, as 1999-Dec"));
  hiPos_ = AddBox(QStringLiteral("Text3"), tr("Only this highest chart position"));
  bpm_ = AddBox(QStringLiteral("Text4"), tr("Only this number of beats per minute"));
  title_ = AddOption(QStringLiteral("Option1"), QStringLiteral("A Track Title"));
  artist_ = AddOption(QStringLiteral("Option2"), QStringLiteral("An Artist Name"));
  album_ = AddOption(QStringLiteral("Option3"), QStringLiteral("An Album Name"));
  genre_ = AddOption(QStringLiteral("Option6"), QStringLiteral("A Genre Name"));
  anyPart_ = AddOption(QStringLiteral("Option4"), QStringLiteral("Any Part"));
  wholeString_ = AddOption(QStringLiteral("Option5"), QStringLiteral("The Whole Search String"));
  titleFirst_ = new QCheckBox(QStringLiteral("Display By Track Title - Artist"), question_);
  titleFirst_->setObjectName(QStringLiteral("Check1"));
  titleFirst_->setToolTip(tr("Shows the results of the next search by title"));
  ok_->setObjectName(QStringLiteral("OKButton"));
  ok_->setToolTip(tr("Starts the search  (Enter), or stops the one that runs"));
  Theme::SetRole(*ok_, QStringLiteral("primary"));

  auto* top = new QHBoxLayout;
  top->addWidget(question_, 1);
  top->addWidget(ok_, 0, Qt::AlignTop);
  layout.addLayout(top);
  auto* rows = new QVBoxLayout(question_);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->addWidget(text_);
  const auto addOptions = [this, rows](const QString& words, const QList<QRadioButton*>& options) {
    auto* row = new QHBoxLayout;
    row->setSpacing(fontMetrics().height());
    row->addWidget(new QLabel(words, question_));
    auto* group = new QButtonGroup(question_);
    for (QRadioButton* option : options) {
      group->addButton(option);
      row->addWidget(option);
    }
    options.front()->setChecked(true);
    row->addStretch(1);
    rows->addLayout(row);
  };
  addOptions(tr("In"), {title_, artist_, album_, genre_});
  addOptions(tr("Match"), {anyPart_, wholeString_});
  auto* whole = new QHBoxLayout;
  const std::array boxes{std::pair{tr("&Date"), date_}, std::pair{tr("&Hi Pos"), hiPos_},
                         std::pair{tr("&BPM"), bpm_}};
  for (const auto& [words, box] : boxes) {
    auto* label = new QLabel(words, question_);
    label->setBuddy(box);
    box->setAccessibleName(QString(words).remove(QLatin1Char('&')));
    box->setMaximumWidth(fontMetrics().averageCharWidth() * 14);
    whole->addWidget(label);
    whole->addWidget(box);
  }
  whole->addStretch(1);
  whole->addWidget(titleFirst_);
  rows->addLayout(whole);
}

void SearchWindow::BuildResults(QVBoxLayout& layout) {
  list_->setObjectName(QStringLiteral("ListView1"));
  list_->setAccessibleName(tr("Search results"));
  list_->setModel(model_);
  list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_->setItemDelegate(new TabularDelegate(this));
  list_->setColumnHidden(SearchModel::MrefColumn, true);
  list_->SetColumns(SearchModel::Track, 32,
                    {{SearchModel::Time, 8},
                     {SearchModel::Artist, 17},
                     {SearchModel::Album, 17},
                     {SearchModel::Category, 14},
                     {SearchModel::Date, 11},
                     {SearchModel::Bpm, 7},
                     {SearchModel::Hi, 6}});
  layout.addWidget(list_, 1);

  selectAll_ = new CommandButton(kSelectAll, commands_);
  selectAll_->setObjectName(QStringLiteral("Command4"));
  selectAll_->setToolTip(tr("Selects all results, or none  (Alt+A)"));
  add_ = new CommandButton(ScalableIcon(Icon::Add), QStringLiteral("Add To Queue"), commands_);
  add_->setObjectName(QStringLiteral("CmdAdd"));
  add_->setToolTip(tr("Adds the selected results to the play queue  (Ctrl+Enter, double click)"));
  results_->setObjectName(QStringLiteral("Label2"));
  state_->setObjectName(QStringLiteral("Label3"));
  auto* row = new QHBoxLayout;
  auto* buttons = new QHBoxLayout(commands_);
  buttons->setContentsMargins(0, 0, 0, 0);
  buttons->addWidget(selectAll_);
  buttons->addWidget(add_);
  row->addWidget(commands_);
  row->addWidget(results_, 1);
  row->addWidget(state_);
  layout.addLayout(row);

  connect(selectAll_, &QPushButton::clicked, this, [this] { SelectAllOrNone(); });
  connect(add_, &QPushButton::clicked, this, [this] { AddSelected(); });
  connect(list_, &ListTable::RowActivated, this, [this] { AddSelected(); });
  // Not the buttons' own: their words change, which takes a shortcut away.
  const auto bind = [this](const QKeySequence& keys, QPushButton* button) {
    connect(new QShortcut(keys, this), &QShortcut::activated, button, &QPushButton::click);
  };
  bind(QKeySequence(Qt::ALT | Qt::Key_A), selectAll_);
  bind(QKeySequence(Qt::CTRL | Qt::Key_Return), add_);
  bind(QKeySequence(Qt::CTRL | Qt::Key_Enter), add_);
}

void SearchWindow::BeginTyping() {
  text_->setFocus();
  text_->selectAll();
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
  // What is disabled loses the focus; it has it again when the search is over.
  if (running && question_->isEnabled()) focus_ = focusWidget();
  ok_->setText(search_.Caption());
  for (QWidget* part : {question_, static_cast<QWidget*>(list_), commands_, keyboard_}) {
    part->setEnabled(!running);
  }
  if (!running && focus_ != nullptr) std::exchange(focus_, nullptr)->setFocus();
  results_->setText(search_.ResultWords());
  state_->setText(search_.StateWords());
  const bool ended = !search_.StateWords().isEmpty();
  list_->SetEmptyText(running ? QString()
                      : ended ? tr("No track was found.\nTry another field, or a part of the word.")
                              : tr("Type what you look for and press Enter."));
  ShowSelection();
}

void SearchWindow::ShowSelection() {
  const bool any = list_->selectionModel()->hasSelection();
  selectAll_->setEnabled(model_->rowCount() > 0);
  selectAll_->setText(any ? selectAll_->text() : kSelectAll);
  add_->setEnabled(any);
}

void SearchWindow::SelectAllOrNone() {
  const bool select = selectAll_->text() == kSelectAll;
  if (select) {
    list_->selectAll();
  } else {
    list_->clearSelection();
  }
  selectAll_->setText(select ? kClearAll : kSelectAll);
}

void SearchWindow::AddSelected() {
  std::vector<int> rows;
  // By ranges: all of 100,000 results are one.
  for (const QItemSelectionRange& range : list_->selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(row);
  }
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  std::vector<Mref> tracks;
  for (const int row : rows) tracks.push_back(search_.Results()[static_cast<std::size_t>(row)]);
  if (OnAdd && !tracks.empty()) OnAdd(std::move(tracks));
}

void SearchWindow::StayOnTop() {
  // Over the console and nothing else: no question, no menu and no window that is being worked in is covered.
  const QWidget* active = QApplication::activeWindow();
  const bool free = active == nullptr || active == parentWidget();
  if (free && isVisible() && !isMinimized() && !QApplication::activeModalWidget() &&
      !QApplication::activePopupWidget()) {
    raise();
  }
}

void SearchWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    if (search_.Running()) {
      Search();
    } else {
      close();
    }
    return;
  }
  QWidget::keyPressEvent(event);
}

}  // namespace kelvo
