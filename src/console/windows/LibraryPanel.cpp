#include "console/windows/LibraryPanel.h"

#include "console/desk/DeskMenu.h"
#include "console/windows/LibraryModel.h"
#include "console/windows/ListingPanel.h"
#include "console/windows/NameColumn.h"
#include "console/windows/TrackInfoPanel.h"
#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/ListTable.h"
#include "ui/Naming.h"
#include "ui/PickedRows.h"
#include "ui/ScalableIcon.h"
#include "ui/SpokenText.h"
#include "ui/Tabular.h"

#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

/// A listing that is over sooner shows nothing but its tracks: the desk does not flicker.
constexpr Nanoseconds kListingShows = 100ms;

const QString kRequestWords = QStringLiteral("Add As Request");

}  // namespace

LibraryPanel::LibraryPanel(LibraryBrowser& browser, const Catalogue& catalogue, EventLoop& loop,
                           QWidget* parent)
    : Panel(Group::Lists, tr("LIBRARY"), parent),
      browser_(browser),
      catalogue_(catalogue),
      loop_(loop),
      model_(new LibraryModel(browser, catalogue, this)),
      summary_(new ElidedLabel(this)),
      count_(new QLabel(this)),
      words_(new QLineEdit(this)),
      list_(new ListTable(this)) {
  setObjectName(QStringLiteral("Library"));
  auto* parts = new QSplitter(Qt::Vertical, this);
  parts->setChildrenCollapsible(false);
  parts->addWidget(NamesPart());
  parts->addWidget(TracksPart());
  parts->setStretchFactor(0, 9);
  parts->setStretchFactor(1, 11);
  parts->setSizes({450, 550});
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(parts);
  listing_ = new ListingPanel(browser, this);
  info_ = new TrackInfoPanel(browser, this);
  JoinParts();
  ShowFacts();
}

QWidget* LibraryPanel::NamesPart() {
  auto* part = new QWidget(this);
  auto* lists = new QHBoxLayout;
  lists->setSpacing(4);
  for (const Stage stage : kStages) {
    auto*& column = names_[static_cast<std::size_t>(stage)];
    column = new NameColumn(browser_, stage, part);
    lists->addWidget(column, 1);
  }
  const auto add = [this](const QString& name, const QString& fixedName, const QString& words,
                          const QString& tooltip, Qt::Key key) {
    return AddCommand(*this, {.name = name,
                              .fixedName = fixedName,
                              .words = words,
                              .tooltip = tooltip,
                              .key = QKeySequence(Qt::CTRL | Qt::SHIFT | key)});
  };
  search_ = add(QStringLiteral("CmdSearch"), QStringLiteral("Command34"), QStringLiteral("Search"),
                tr("Looks for tracks by their data"), Qt::Key_F);
  allArtists_ = add(QStringLiteral("CmdAllArtists"), QStringLiteral("Command20"),
                    QStringLiteral("All Artists"), tr("Shows all artists"), Qt::Key_A);
  allAlbums_ = add(QStringLiteral("CmdAllAlbums"), QStringLiteral("Command25"), QStringLiteral("All Albums"),
                   tr("Shows all albums"), Qt::Key_B);
  auto* commands = new QHBoxLayout;
  commands->setSpacing(4);
  for (QPushButton* button : {search_, allArtists_, allAlbums_}) commands->addWidget(button, 1);
  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addLayout(lists, 1);
  layout->addLayout(commands);
  return part;
}

QWidget* LibraryPanel::TracksPart() {
  auto* part = new QWidget(this);
  auto* head = new QLabel(QStringLiteral("TRACKS"), part);
  head->setFont(Theme::Font(0.88, QFont::Bold));
  SetNames(*summary_, QStringLiteral("LblListed"), QStringLiteral("Label13"));
  summary_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  SetNames(*count_, QStringLiteral("LblTrackCount"), QStringLiteral("Label7"));
  words_->setObjectName(QStringLiteral("TrackFilter"));
  words_->setAccessibleName(tr("Filter the tracks"));
  words_->setToolTip(
      tr("Any words of artist and title, in any order  (Ctrl+F)\n"
         "Ctrl+Enter adds the first track found to the play queue"));
  words_->setClearButtonEnabled(true);
  // What is dropped here is music for the desk, not a name to be typed.
  words_->setAcceptDrops(false);
  words_->addAction(ScalableIcon(Icon::Search), QLineEdit::LeadingPosition);
  NameLineSigns(*words_);
  words_->installEventFilter(this);

  SetNames(*list_, QStringLiteral("TrackList"), QStringLiteral("ListView1"));
  list_->setAccessibleName(tr("Tracks"));
  list_->setModel(model_);
  list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_->setDragEnabled(true);
  list_->setDragDropMode(QAbstractItemView::DragOnly);
  list_->setItemDelegate(new TabularDelegate(this));
  list_->setMinimumHeight(fontMetrics().height() * 3);
  list_->viewport()->installEventFilter(this);
  list_->installEventFilter(this);
  const auto number = [](LibraryColumn column) { return static_cast<int>(column); };
  list_->setColumnHidden(number(LibraryColumn::Path), true);
  list_->setColumnHidden(number(LibraryColumn::Mref), true);
  QHeaderView* heads = list_->horizontalHeader();
  list_->LetHeadBeClicked();
  // To paint a head Qt asks whether every row of its column is selected: with all of 100,000 that takes its
  // time.
  heads->setSelectionModel(new QItemSelectionModel(model_, heads));
  heads->moveSection(heads->visualIndex(number(LibraryColumn::Time)),
                     heads->visualIndex(number(LibraryColumn::MainGenre)));
  list_->SetColumns(number(LibraryColumn::Track), 47,
                    {{number(LibraryColumn::Time), 7},
                     {number(LibraryColumn::Bpm), 7},
                     {number(LibraryColumn::MainGenre), 15},
                     {number(LibraryColumn::Date), 11},
                     {number(LibraryColumn::Hi), 6}});

  add_ = AddCommand(*this, {.name = QStringLiteral("CmdAddToQueue"),
                            .fixedName = QStringLiteral("Command31"),
                            .words = QStringLiteral("Add To Queue"),
                            .tooltip = tr("Adds the selected tracks to the play queue"),
                            .keyWords = tr("Enter or double click"),
                            .icon = Icon::Add,
                            .role = QStringLiteral("primary")});
  selectAll_ = AddCommand(*this, {.name = QStringLiteral("CmdSelectAll"),
                                  .fixedName = QStringLiteral("Command30"),
                                  .words = browser_.SelectAllCaption(),
                                  .tooltip = tr("Selects all tracks of the list, or none"),
                                  .key = QKeySequence(Qt::CTRL | Qt::Key_A)});

  request_ = AddCommand(*this, {.name = QStringLiteral("CmdAddAsRequest"),
                                .fixedName = QStringLiteral("Command9"),
                                .words = kRequestWords,
                                .tooltip = QStringLiteral("Opens The Request Dialog !"),
                                // Bound with its entry in the menu.
                                .keyWords = kRequestKey,
                                .icon = Icon::Microphone,
                                .run = [this] { WantRequest(); }});

  import_ = AddCommand(*this, {.name = QStringLiteral("CmdImportMusic"),
                               .words = tr("Import Music..."),
                               .tooltip = tr("Brings music into the library"),
                               .icon = Icon::Folder,
                               .role = QStringLiteral("primary"),
                               .run = [this] { Q_EMIT ImportWanted(); }});

  auto* title = new QHBoxLayout;
  title->addWidget(head);
  title->addWidget(summary_, 1);
  title->addWidget(count_);
  request_->setAccessibleName(kRequestWords);
  commands_ = new QHBoxLayout;
  commands_->setSpacing(4);
  commands_->addWidget(add_, 1);
  commands_->addWidget(selectAll_);
  commands_->addWidget(request_);
  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addLayout(title);
  layout->addWidget(words_);
  layout->addWidget(list_, 1);
  layout->addWidget(import_);
  layout->addLayout(commands_);
  return part;
}

void LibraryPanel::JoinParts() {
  connect(search_, &QPushButton::clicked, this, &LibraryPanel::SearchWanted);
  connect(allArtists_, &QPushButton::clicked, this, [this] { browser_.ShowAllArtists(); });
  connect(allAlbums_, &QPushButton::clicked, this, [this] { browser_.ShowAllAlbums(); });
  connect(add_, &QPushButton::clicked, this, [this] { AddSelected(); });
  connect(selectAll_, &QPushButton::clicked, this, [this] { browser_.ToggleAll(); });
  connect(words_, &QLineEdit::textChanged, this, [this](const QString& text) {
    addsFirst_ = false;
    browser_.SetWords(text);
  });
  connect(words_, &QLineEdit::returnPressed, this, [this] { GoToTracks(); });
  connect(list_, &ListTable::RowActivated, this, [this] { AddSelected(); });
  connect(list_, &QTableView::pressed, this,
          [this](const QModelIndex& index) { browser_.ClickTrack(model_->TrackAt(index.row())); });
  connect(list_->horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int section) {
    const auto column = static_cast<LibraryColumn>(section);
    list_->horizontalHeader()->setSortIndicatorShown(true);
    list_->horizontalHeader()->setSortIndicator(
        section, column == LibraryColumn::Date ? Qt::DescendingOrder : Qt::AscendingOrder);
    browser_.SortBy(column);
  });
  connect(&browser_, &LibraryBrowser::RowsReset, this, [this] {
    list_->scrollToTop();
    ShowFacts();
    if (std::exchange(addsFirst_, false)) AddFirstFound();
  });
  connect(&browser_, &LibraryBrowser::RowsAdded, this, [this] { ShowFacts(); });
  connect(&browser_, &LibraryBrowser::ChoiceChanged, this, [this] { ShowFacts(); });
  connect(&browser_, &LibraryBrowser::SelectRows, this, [this](bool all) {
    if (all) {
      list_->selectAll();
    } else {
      list_->clearSelection();
    }
    ShowFacts();
  });
  connect(&browser_, &LibraryBrowser::Deselect, this, &LibraryPanel::Deselect);
  connect(&browser_, &LibraryBrowser::ListingChanged, this, [this] {
    listingLasts_ = browser_.Listing() ? loop_.After(kListingShows, [this] { ShowListing(); }) : Timer();
    if (!browser_.Listing()) ShowListing();
  });
  connect(&browser_, &LibraryBrowser::InfoChanged, this, [this] {
    const bool hadKeys = info_->isAncestorOf(focusWidget());
    info_->ShowAt(infoSpot_);
    if (hadKeys && !browser_.Info()) list_->setFocus();
  });
}

ListTable& LibraryPanel::Names(Stage stage) {
  return names_[static_cast<std::size_t>(stage)]->List();
}

void LibraryPanel::BeginFilter() {
  words_->setFocus();
  words_->selectAll();
}

void LibraryPanel::GoToTracks() {
  list_->setFocus();
  if (model_->rowCount() > 0 && !list_->selectionModel()->hasSelection())
    list_->selectRow(std::max(0, list_->currentIndex().row()));
}

void LibraryPanel::Escape() {
  if (browser_.Info()) {
    browser_.CloseInfo();
  } else if (browser_.Listing()) {
    browser_.StopListing();
  } else {
    words_->clear();
  }
}

void LibraryPanel::ShowFacts() {
  const int shown = static_cast<int>(browser_.Rows().size());
  const bool everywhere = browser_.WordsLookEverywhere();
  if (browser_.Narrowed()) {
    const int of = everywhere ? catalogue_.LastTrack() : browser_.ListedCount();
    SetSpokenText(*count_, tr("Tracks listed"), tr("%1 of %2").arg(shown).arg(of));
    list_->SetEmptyText(everywhere ? tr("No track has all these words.")
                                   : tr("No track of this list has all these words."));
  } else {
    SetSpokenText(*count_, tr("Tracks listed"), QString::number(shown));
    if (catalogue_.LastTrack() == 0) {
      list_->SetEmptyText(QStringLiteral("Please Add Some Music To the Data Base"));
    } else if (everywhere) {
      list_->SetEmptyText(tr("Choose a genre, an artist or an album above, "
                             "or type words to look through all %1 tracks.")
                              .arg(catalogue_.LastTrack()));
    } else {
      list_->SetEmptyText(tr("No track fits the choice.\nPress a chosen name again to release it."));
    }
  }
  words_->setPlaceholderText(everywhere ? tr("Type to search all tracks  (Ctrl+F)")
                                        : tr("Type to filter this list  (Ctrl+F)"));
  const int letters = summary_->width() / std::max(fontMetrics().averageCharWidth(), 1);
  SetSpokenText(*summary_, tr("What is listed"), browser_.Summary(letters));
  selectAll_->setText(browser_.SelectAllCaption());
  ShowImport();
}

void LibraryPanel::ShowImport() {
  // Not before the catalogue is read: the desk is off till then.
  import_->setVisible(isEnabled() && catalogue_.LastTrack() == 0);
}

void LibraryPanel::ShowListing() {
  ShowCommands();
  listing_->setVisible(browser_.Listing());
  if (browser_.Listing()) listing_->ShowChoices();
}

void LibraryPanel::ShowCommands() {
  const QString why = browser_.Listing() ? tr("Tracks are being listed") : QString();
  for (QPushButton* button : {search_, allArtists_, allAlbums_, selectAll_}) Offer(*button, why);
  Offer(*request_, why.isEmpty() && catalogue_.LastTrack() == 0 ? tr("The library is empty") : why);
  ShowImport();
  Offer(*add_, why.isEmpty() ? browser_.WhyNoAdd() : why);
}

void LibraryPanel::AddSelected() {
  std::vector<Mref> tracks;
  for (const int row : PickedRows(*list_)) tracks.push_back(model_->TrackAt(row));
  browser_.AddToQueue(std::move(tracks));
}

void LibraryPanel::AddFirst() {
  addsFirst_ = browser_.FindingWords();
  if (!addsFirst_) AddFirstFound();
}

void LibraryPanel::AddFirstFound() {
  if (!add_->isEnabled() || CurrentTrack() == Mref::None) return;
  browser_.AddToQueue({CurrentTrack()});
  // Ready for the next words.
  words_->selectAll();
}

void LibraryPanel::WantRequest() {
  std::vector<Mref> tracks;
  for (const int row : PickedRows(*list_)) tracks.push_back(model_->TrackAt(row));
  if (tracks.empty() && CurrentTrack() != Mref::None) tracks.push_back(CurrentTrack());
  Q_EMIT RequestWanted(tracks);
}

void LibraryPanel::Deselect(const std::vector<Mref>& tracks) {
  std::vector<bool> goes(static_cast<std::size_t>(catalogue_.LastTrack()) + 1);
  for (const Mref track : tracks) goes[static_cast<std::size_t>(track)] = true;
  QItemSelection kept;
  const auto keep = [&](int top, int end) {
    if (top < end)
      kept.append(QItemSelectionRange(model_->index(top, 0), model_->index(end - 1, kLibraryColumns - 1)));
  };
  for (const QItemSelectionRange& range : list_->selectionModel()->selection()) {
    int top = range.top();
    for (int row = range.top(); row <= range.bottom(); ++row) {
      if (!goes[static_cast<std::size_t>(model_->TrackAt(row))]) continue;
      keep(top, row);
      top = row + 1;
    }
    keep(top, range.bottom() + 1);
  }
  list_->selectionModel()->select(kept, QItemSelectionModel::ClearAndSelect);
  ShowFacts();
}

Mref LibraryPanel::CurrentTrack() const {
  const QModelIndex current = list_->currentIndex();
  const int row = current.isValid() ? current.row() : words_->hasFocus() ? 0 : -1;
  return row >= 0 && row < model_->rowCount() ? model_->TrackAt(row) : Mref::None;
}

void LibraryPanel::OpenInfo(const QPoint& spot) {
  const QModelIndex current = list_->currentIndex();
  if (!list_->selectionModel()->isSelected(current)) return;
  infoSpot_ = mapFromGlobal(spot);
  browser_.OpenInfo(model_->TrackAt(current.row()));
}

void LibraryPanel::resizeEvent(QResizeEvent* event) {
  Panel::resizeEvent(event);
  // On a narrow desk the request is its sign alone.
  const bool narrow = width() < CommandsWidth(true) + fontMetrics().height() * 2;
  if (request_->text().isEmpty() != narrow) request_->setText(narrow ? QString() : kRequestWords);
  ShowFacts();
}

int LibraryPanel::CommandsWidth(bool words) const {
  const int room = request_->fontMetrics().horizontalAdvance(kRequestWords) - request_->iconSize().width();
  const int change = (words ? room : 0) - (request_->text().isEmpty() ? 0 : room);
  return add_->minimumSizeHint().width() + selectAll_->minimumSizeHint().width() +
         request_->minimumSizeHint().width() + 2 * commands_->spacing() + change;
}

QSize LibraryPanel::minimumSizeHint() const {
  const QSize hint = Panel::minimumSizeHint();
  // That of the narrow form, also while it has the other.
  const int names = names_.front()->parentWidget()->minimumSizeHint().width();
  const int edges = hint.width() - std::max(names, commands_->minimumSize().width());
  return {std::max(names, CommandsWidth(false)) + edges, hint.height()};
}

bool LibraryPanel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == list_->viewport()) {
    if (event->type() == QEvent::MouseButtonPress) browser_.CloseInfo();
    if (event->type() == QEvent::MouseButtonRelease) {
      const auto* mouse = static_cast<const QMouseEvent*>(event);
      if (mouse->button() == Qt::RightButton) OpenInfo(mouse->globalPosition().toPoint());
    }
  }
  if (watched == list_ && event->type() == QEvent::ContextMenu) {
    const QRect row = list_->visualRect(list_->currentIndex());
    if (static_cast<const QContextMenuEvent*>(event)->reason() != QContextMenuEvent::Keyboard) return true;
    OpenInfo(list_->viewport()->mapToGlobal(row.bottomLeft()));
    if (browser_.Info()) info_->TakeKeys();
    return true;
  }
  if (watched == words_ && event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Down) {
      GoToTracks();
      return true;
    }
    const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    if (enter && key->modifiers().testFlag(Qt::ControlModifier)) {
      AddFirst();
      return true;
    }
  }
  return Panel::eventFilter(watched, event);
}

}  // namespace kelvo
