#include "playlists/windows/PlaylistWindow.h"

#include "playlists/windows/RequestsPanel.h"
#include "ui/Command.h"
#include "ui/DroppedFiles.h"
#include "ui/ElidedLabel.h"
#include "ui/JobStrip.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/Theme.h"
#include "ui/WhyOff.h"

#include <QDragEnterEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

/// How often the end time is reckoned anew.
constexpr Nanoseconds kClockBeat = 10s;

RowModel<ShelfName>::Columns NameColumn(const QString& head) {
  return {{{.head = head, .letters = 18}, &ShelfName::name}};
}

/// The first playlist of another player among what is dragged; empty when there is none.
QString ListFileIn(const QMimeData& data) {
  const QStringList files = DroppedFiles(data);
  const auto found = std::find_if(files.begin(), files.end(), PlaylistLoad::IsListFile);
  return found == files.end() ? QString() : *found;
}

}  // namespace

PlaylistWindow::PlaylistWindow(EventLoop& loop, PlaylistManager& manager)
    : ToolWindow({.name = manager.MaySave() ? QStringLiteral("PlaylistSave") : QStringLiteral("PlaylistLoad"),
                  .fixedName = QStringLiteral("PlaySave"),
                  .title = tr("Playlist Manager"),
                  .letters = 128,
                  .lines = 34}),
      loop_(loop),
      manager_(manager),
      categoryModel_(manager.Shelf().Categories(), NameColumn(tr("Category"))),
      playlistModel_(manager.Shelf().Playlists(), NameColumn(tr("Playlist"))),
      entryModel_(
          manager.Shelf().Entries(),
          {{{.head = tr("No"), .letters = 5, .rank = 1, .number = true}, &ShelfEntry::NumberText},
           {{.head = tr("Track"), .letters = 26}, [](const ShelfEntry& row) { return row.entry.name.name; }},
           {{.head = tr("Time"), .letters = 7, .rank = 2, .number = true}, &ShelfEntry::LengthWords},
           {{.head = tr("State"), .letters = 14, .rank = 3}, &ShelfEntry::StateWords}}),
      categories_({.name = QStringLiteral("LstCategories"),
                   .fixedName = QStringLiteral("List1"),
                   .title = tr("CATEGORIES"),
                   .accessible = tr("Categories"),
                   .many = false},
                  categoryModel_, this),
      playlists_({.name = QStringLiteral("LstPlaylists"),
                  .fixedName = QStringLiteral("List2"),
                  .title = tr("PLAYLISTS"),
                  .accessible = tr("Playlists of the category"),
                  .many = false},
                 playlistModel_, this),
      entries_({.name = QStringLiteral("LstEntries"),
                .fixedName = QStringLiteral("File1"),
                .title = tr("ENTRIES"),
                .accessible = tr("Entries of the playlist"),
                .many = false},
               entryModel_, this),
      name_(new QLineEdit(this)),
      outlook_(new ElidedLabel(QString(), this)),
      pages_(new QStackedWidget(this)),
      requests_(new RequestsPanel(manager, this)),
      progress_(new JobStrip(loop, QStringLiteral("PrgPlaylists"), tr("Progress"), this)) {
  entryModel_.Dress = [](const ShelfEntry& row, int, int role) {
    return role == Qt::ToolTipRole ? QVariant(row.path.isEmpty() ? row.entry.file : row.path) : QVariant();
  };
  setAcceptDrops(manager_.MayLoad());
  SetNames(*name_, QStringLiteral("TxtPlaylistName"), QStringLiteral("Text1"));
  name_->setAccessibleName(tr("Name of the playlist"));
  name_->setToolTip(manager_.MaySave() ? tr("The name to save under") : tr("The chosen playlist"));
  name_->setReadOnly(manager_.MayLoad());
  outlook_->setObjectName(QStringLiteral("LblOutlook"));
  BuildCommands();
  BuildCategoryCommands();
  BuildPlaylistCommands();
  BuildLayout();

  PlaylistShelf& shelf = manager_.Shelf();
  connect(&categories_, &ListPanel::PickedChanged, this, [this, &shelf] {
    if (categories_.AnyPicked())
      manager_.ChooseCategory(shelf.Categories()[categories_.Picked().front()].name);
  });
  connect(&playlists_, &ListPanel::PickedChanged, this, [this, &shelf] {
    if (playlists_.AnyPicked()) manager_.ChoosePlaylist(shelf.Playlists()[playlists_.Picked().front()].name);
  });
  connect(&entries_, &ListPanel::PickedChanged, this, [this] { Show(); });
  connect(&playlists_, &ListPanel::RowActivated, this, [this] { manager_.Load(); });
  connect(name_, &QLineEdit::textEdited, this, [this](const QString& text) { manager_.SetName(text); });
  connect(name_, &QLineEdit::returnPressed, this, [this] { manager_.Save(); });
  connect(requests_, &RequestsPanel::Closed, this, [this] { ShowRequests(false); });
  connect(&manager_, &PlaylistManager::Changed, this, [this] { Show(); });
  connect(&manager_, &PlaylistManager::NameWanted, name_, qOverload<>(&QWidget::setFocus));
  connect(&manager_, &PlaylistManager::Loaded, this, &QWidget::close);
  Show();
}

void PlaylistWindow::BuildCommands() {
  save_ = AddCommand(*this, {.name = QStringLiteral("Cmdsave"),
                             .words = QStringLiteral("Save"),
                             .tooltip = tr("Saves under this name in the chosen category"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_S),
                             .icon = Icon::Save,
                             .role = QStringLiteral("primary"),
                             .run = [this] { manager_.Save(); }});
  load_ = AddCommand(*this,
                     {.name = QStringLiteral("CmdLoad"),
                      .words = QStringLiteral("Load"),
                      .tooltip = tr("Loads the chosen playlist into the play queue; so does a double click"),
                      .key = QKeySequence(Qt::CTRL | Qt::Key_Return),
                      .icon = Icon::Load,
                      .role = QStringLiteral("primary"),
                      .run = [this] { manager_.Load(); }});
  showRequests_ = AddCommand(*this, {.name = QStringLiteral("CmdRequested"),
                                     .fixedName = QStringLiteral("Command2"),
                                     .words = QStringLiteral("View Requested Tracks List"),
                                     .tooltip = tr("Shows the tracks that were requested most"),
                                     .key = QKeySequence(Qt::CTRL | Qt::Key_M),
                                     .icon = Icon::Queue,
                                     .run = [this] { ShowRequests(true); }});
  repair_ = AddCommand(*this, {.name = QStringLiteral("CmdRepair"),
                               .fixedName = QStringLiteral("pstruct"),
                               .words = QStringLiteral("&Repair Playlist Structure"),
                               .tooltip = tr("Mends the links of all playlists"),
                               .icon = Icon::Settings,
                               .run = [this] { RepairOrStop(); }});
  generate_ = AddCommand(*this, {.name = QStringLiteral("CmdGenerateList"),
                                 .fixedName = QStringLiteral("genlist"),
                                 .words = QStringLiteral("&Generate Play List"),
                                 .tooltip = tr("Opens the window that makes lists of chosen genres"),
                                 .key = QKeySequence(Qt::CTRL | Qt::Key_G),
                                 .icon = Icon::Timer,
                                 .run = [this] {
                                   if (OnGenerate) OnGenerate();
                                 }});
  import_ = AddCommand(*this, {.name = QStringLiteral("CmdImport"),
                               .words = tr("&Import..."),
                               .tooltip = tr("Loads a playlist file of another player (M3U8) into the queue; "
                                             "it can be dropped here too"),
                               .key = QKeySequence(Qt::CTRL | Qt::Key_I),
                               .icon = Icon::Folder,
                               .run = [this] { manager_.Import(); }});
  export_ = AddCommand(*this, {.name = QStringLiteral("CmdExport"),
                               .words = tr("E&xport..."),
                               .tooltip = manager_.Mode() == PlaylistMode::SaveQueue
                                              ? tr("Writes the play queue as M3U8")
                                              : tr("Writes the chosen playlist as M3U8"),
                               .key = QKeySequence(Qt::CTRL | Qt::Key_E),
                               .icon = Icon::Save,
                               .run = [this] { manager_.Export(); }});
  exit_ = AddCommand(*this, {.name = QStringLiteral("CmdExit"),
                             .fixedName = QStringLiteral("Command1"),
                             .words = QStringLiteral("Exit"),
                             .tooltip = tr("Closes the window"),
                             .keyWords = tr("Esc"),
                             .icon = Icon::Close,
                             .run = [this] { close(); }});
}

void PlaylistWindow::BuildCategoryCommands() {
  newCategory_ = AddCommand(*this, {.name = QStringLiteral("CmdNgroup"),
                                    .words = QStringLiteral("New"),
                                    .tooltip = tr("Makes a category"),
                                    .key = QKeySequence(Qt::CTRL | Qt::Key_N),
                                    .icon = Icon::Add,
                                    .run = [this] { manager_.NewCategory(); }});
  renameCategory_ = AddCommand(*this, {.name = QStringLiteral("CmdRenCat"),
                                       .words = QStringLiteral("Rename"),
                                       .tooltip = tr("Renames the category"),
                                       .key = QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_R),
                                       .icon = Icon::Edit,
                                       .run = [this] { manager_.RenameCategory(); }});
  deleteCategory_ = AddCommand(*this, {.name = QStringLiteral("CmdDelGroup"),
                                       .words = QStringLiteral("Delete"),
                                       .tooltip = tr("Deletes the category with all its playlists"),
                                       .key = QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Delete),
                                       .icon = Icon::Clear,
                                       .run = [this] { manager_.DeleteCategory(); }});
}

void PlaylistWindow::BuildPlaylistCommands() {
  renamePlaylist_ = AddCommand(*this, {.name = QStringLiteral("CmdRenPlist"),
                                       .words = QStringLiteral("Rename"),
                                       .tooltip = tr("Renames the playlist"),
                                       .key = QKeySequence(Qt::CTRL | Qt::Key_R),
                                       .icon = Icon::Edit,
                                       .run = [this] { manager_.RenamePlaylist(); }});
  deletePlaylist_ = AddCommand(*this, {.name = QStringLiteral("CmdDelPlist"),
                                       .words = QStringLiteral("Delete"),
                                       .tooltip = tr("Deletes the playlist"),
                                       .key = QKeySequence(Qt::CTRL | Qt::Key_Delete),
                                       .icon = Icon::Clear,
                                       .run = [this] { manager_.DeletePlaylist(); }});
  deleteEntry_ = AddCommand(*this, {.name = QStringLiteral("CmdDelEntry"),
                                    .fixedName = QStringLiteral("Command4"),
                                    .words = QStringLiteral("Delete Play List Item"),
                                    .tooltip = tr("Deletes the selected entry; those behind it move up"),
                                    .key = QKeySequence(Qt::ALT | Qt::Key_Delete),
                                    .icon = Icon::Cut,
                                    .run = [this] {
                                      if (entries_.AnyPicked())
                                        manager_.DeleteEntry(entries_.Picked().front());
                                    }});
}

QWidget* PlaylistWindow::Shelves() {
  auto* page = new QWidget(this);
  auto* columns = new QHBoxLayout(page);
  columns->setContentsMargins(0, 0, 0, 0);
  const auto column = [columns](ListPanel& list, QHBoxLayout* commands, int share) {
    auto* layout = new QVBoxLayout;
    layout->addWidget(&list, 1);
    layout->addLayout(commands);
    columns->addLayout(layout, share);
  };
  column(categories_, Line({newCategory_, renameCategory_, deleteCategory_, kRoom}), 3);
  column(playlists_, Line({renamePlaylist_, deletePlaylist_, kRoom}), 2);
  column(entries_, Line({deleteEntry_, kRoom}), 4);
  return page;
}

void PlaylistWindow::BuildLayout() {
  pages_->addWidget(Shelves());
  pages_->addWidget(requests_);
  auto* heading = new QLabel(manager_.Heading(), this);
  heading->setObjectName(QStringLiteral("LblHeading"));
  QFont font = heading->font();
  font.setBold(true);
  heading->setFont(font);
  auto* label = new QLabel(tr("&Name"), this);
  label->setBuddy(name_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(Line({heading, label, {name_, 1}, save_, load_}));
  layout->addWidget(pages_, 1);
  layout->addWidget(outlook_);
  layout->addWidget(progress_);
  layout->addLayout(Line({showRequests_, repair_, generate_, import_, export_, kRoom, exit_}));
  save_->setVisible(manager_.MaySave());
  load_->setVisible(!manager_.MaySave());
  import_->setVisible(manager_.MayLoad());
  showRequests_->setVisible(manager_.MaySeeRequests());
}

void PlaylistWindow::TakeKeys() {
  if (manager_.MaySave()) {
    name_->setFocus();
    name_->selectAll();
  } else {
    categories_.Table().setFocus();
  }
}

void PlaylistWindow::Enter() {
  ShowRequests(false);
  manager_.Enter();
  clock_ = loop_.Every(kClockBeat, [this] { Show(); });
}

void PlaylistWindow::Leave() {
  clock_.Stop();
  manager_.Shelf().Rest();
}

void PlaylistWindow::Refresh() {
  if (manager_.Busy()) return;
  if (pages_->currentWidget() == requests_) {
    manager_.CompileRequests();
  } else {
    manager_.Shelf().List();
  }
}

void PlaylistWindow::ShowRequests(bool shown) {
  pages_->setCurrentIndex(shown ? 1 : 0);
  if (shown) {
    requests_->TakeKeys();
    manager_.CompileRequests();
  }
  Show();
}

void PlaylistWindow::RepairOrStop() {
  if (manager_.Repairing()) {
    manager_.Stop();
  } else {
    manager_.Repair();
  }
}

void PlaylistWindow::dragEnterEvent(QDragEnterEvent* event) {
  TakeAsCopy(*event, !ListFileIn(*event->mimeData()).isEmpty());
}

void PlaylistWindow::dropEvent(QDropEvent* event) {
  const QString path = ListFileIn(*event->mimeData());
  if (path.isEmpty()) return;
  TakeAsCopy(*event, true);
  manager_.Import(path);
}

void PlaylistWindow::ShowChosen(ListPanel& list, const RowStore<ShelfName>& names, const QString& chosen) {
  const std::vector<int> picked = list.Picked();
  const QString shown = picked.empty() ? QString() : names[picked.front()].name;
  if (shown == chosen) return;
  if (chosen.isEmpty()) {
    list.Table().clearSelection();
    return;
  }
  for (int row = 0; row < names.Count(); ++row) {
    if (names[row].name == chosen) list.Table().selectRow(row);
  }
}

QString PlaylistWindow::EntriesHint() const {
  PlaylistShelf& shelf = manager_.Shelf();
  if (!shelf.Trouble().isEmpty()) return shelf.Trouble();
  if (shelf.Listing()) return tr("Reading the playlist...");
  return shelf.Playlist().isEmpty() ? tr("Choose a playlist.") : tr("This playlist is empty.");
}

void PlaylistWindow::Show() {
  PlaylistShelf& shelf = manager_.Shelf();
  const bool free = !manager_.Busy();
  const bool category = !shelf.Category().isEmpty();
  const bool playlist = !shelf.Playlist().isEmpty();
  if (name_->text() != manager_.Name()) {
    // A longer one may be there, but cannot be typed.
    name_->setMaxLength(
        std::max(PlaylistManager::kMostPlaylistLetters, static_cast<int>(manager_.Name().size())));
    name_->setText(manager_.Name());
  }
  ShowChosen(categories_, shelf.Categories(), shelf.Category());
  ShowChosen(playlists_, shelf.Playlists(), shelf.Playlist());
  categories_.SetHint(shelf.Trouble().isEmpty() ? tr("No category yet.\nMake one with \"New\".")
                                                : shelf.Trouble());
  playlists_.SetHint(category ? tr("No playlist here yet.") : tr("Choose a category."));
  entries_.SetHint(EntriesHint());
  const bool requests = pages_->currentWidget() == requests_;
  outlook_->setText(requests ? QString() : shelf.Outlook());

  // What is disabled loses the focus; it has it again when the work is over.
  if (!free && focus_ == nullptr) focus_ = focusWidget();
  for (QWidget* each : {static_cast<QWidget*>(name_), static_cast<QWidget*>(&categories_.Table()),
                        static_cast<QWidget*>(&playlists_.Table())}) {
    each->setEnabled(free);
  }
  if (free && focus_ != nullptr) std::exchange(focus_, nullptr)->setFocus();
  const OffReason atWork{!free, tr("It is at work: stop it first, or wait")};
  const OffReason noCategory{!category, tr("No category is chosen")};
  const OffReason noPlaylist{!playlist, tr("No playlist is chosen")};
  const OffReason noUpkeep{!manager_.MayUpkeep(), tr("The Data Manager's password is needed for this")};
  const OffReason notLoading{!manager_.MayLoad(), tr("The window was opened to save")};
  const OffReason listing{shelf.Listing(), tr("The entries are still being listed")};
  Offer(*save_, WhyOff({atWork, {!manager_.MaySave(), tr("The window was opened to load")}}));
  Offer(*load_, WhyOff({atWork,
                        notLoading,
                        {requests, tr("The requested tracks are shown")},
                        noPlaylist,
                        {shelf.Entries().Count() == 0, tr("The playlist is empty")}}));
  Offer(*newCategory_, WhyOff({atWork}));
  for (QPushButton* each : {renameCategory_, deleteCategory_})
    Offer(*each, WhyOff({atWork, noUpkeep, noCategory}));
  for (QPushButton* each : {renamePlaylist_, deletePlaylist_})
    Offer(*each, WhyOff({atWork, noUpkeep, noPlaylist}));
  Offer(*deleteEntry_,
        WhyOff({atWork, listing, noUpkeep, {!entries_.AnyPicked(), tr("No entry is selected")}}));
  Offer(*showRequests_, WhyOff({atWork, {!manager_.MaySeeRequests(), tr("The window was opened to save")}}));
  const bool repairing = manager_.Repairing();
  repair_->setText(repairing ? QStringLiteral("STOP") : QStringLiteral("&Repair Playlist Structure"));
  repair_->setIcon(ScalableIcon(repairing ? Icon::Stop : Icon::Settings));
  Theme::SetRole(*repair_, repairing ? QStringLiteral("stop") : QString());
  Offer(*repair_, WhyOff({{!free && !repairing, atWork.words}}));
  Offer(*import_, WhyOff({atWork, notLoading}));
  const bool savesQueue = manager_.Mode() == PlaylistMode::SaveQueue;
  Offer(*export_, WhyOff({atWork, listing, {!playlist && !savesQueue, noPlaylist.words}}));
  progress_->Show(
      {.running = !free, .words = manager_.Words(), .share = manager_.Share(), .percentInWords = true});
  requests_->Show();
}

}  // namespace kelvo
