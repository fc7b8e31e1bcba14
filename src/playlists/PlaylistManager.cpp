#include "playlists/PlaylistManager.h"

#include "platform/ErrorLog.h"
#include "platform/Words.h"
#include "playlists/PlaylistExport.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>

namespace kelvo {
namespace {

QString TooLong() {
  return QStringLiteral("Group Names Cannot Be Longer Than 20 Characters");
}

}  // namespace

PlaylistManager::PlaylistManager(Services services)
    : services_(services.playlists),
      mode_(services.mode),
      shelf_(services_),
      requests_(services_),
      load_(services_),
      save_(services_, shelf_, mode_),
      repair_(services_),
      firstName_(std::move(services.name)) {
  if (!firstName_ && mode_ == PlaylistMode::SaveQueue)
    firstName_ = [queue = services_.queue] { return queue->Name(); };
  save_.Rows = std::move(services.rows);
  save_.OnName = [this](const QString& name) {
    SetName(name);
    if (name.isEmpty()) Q_EMIT NameWanted();
  };
  const auto say = [this](const QString& words, double share) { Say(words, share); };
  save_.OnProgress = say;
  repair_.OnProgress = say;
  connect(&shelf_, &PlaylistShelf::Changed, this, &PlaylistManager::Changed);
  connect(&requests_, &RequestedTracks::Changed, this, [this] { Say(requests_.Words(), 0); });
}

QString PlaylistManager::Heading() const {
  if (MayLoad()) return QStringLiteral("LOAD");
  return MaySave() ? QStringLiteral("SAVE") : QStringLiteral("PLAYLISTS");
}

bool PlaylistManager::MaySave() const {
  return mode_ != PlaylistMode::Browse && mode_ != PlaylistMode::Load;
}

bool PlaylistManager::MaySeeRequests() const {
  return mode_ == PlaylistMode::Browse || mode_ == PlaylistMode::Load;
}

void PlaylistManager::Enter() {
  // What is being saved keeps its name.
  if (firstName_ && !Busy()) SetName(firstName_());
  if (!Busy()) shelf_.List();
}

void PlaylistManager::SetName(const QString& name) {
  if (name == name_) return;
  name_ = name;
  Q_EMIT Changed();
}

void PlaylistManager::ChooseCategory(const QString& name) {
  if (Busy()) return;
  if (MayLoad()) SetName({});
  shelf_.ChooseCategory(name);
}

void PlaylistManager::ChoosePlaylist(const QString& name) {
  if (Busy()) return;
  if (!name.isEmpty()) SetName(name);
  shelf_.ChoosePlaylist(name);
}

void PlaylistManager::Say(const QString& words, double share) {
  words_ = words;
  share_ = share;
  Q_EMIT Changed();
}

void PlaylistManager::Begin(Job<> job) {
  work_ = Guard(std::move(job));
  Q_EMIT Changed();
}

Job<> PlaylistManager::Guard(Job<> job) {
  try {
    co_await std::move(job);
  } catch (...) {
    basHandleError(QStringLiteral(" PlaySave"), tr("The playlists could not be changed."));
    shelf_.List();
  }
  words_.clear();
  share_ = 0;
  repairing_ = false;
  // At the loop's next turn, when this is over.
  services_.loop.Post([self = QPointer(this)] {
    if (self) Q_EMIT self->Changed();
  });
}

Job<Answer> PlaylistManager::Ask(QString text, Buttons buttons) {
  Prompt question;
  question.text = std::move(text);
  question.buttons = buttons;
  question.icon = PromptIcon::Question;
  const Answer answer = co_await services_.prompter.Ask(question);
  co_return answer;
}

Job<bool> PlaylistManager::Change(std::function<void()> work) {
  const QString root = shelf_.Root();
  const auto look = [root] { return QFileInfo::exists(root); };
  const std::optional<bool> there = co_await services_.disks.Look(root, look);
  if (!there) Refuse(PlaylistShelf::tr("Disk Does Not Answer : %1").arg(root));
  if (!there) co_return false;
  co_await services_.loop.Offload(EventLoop::Lane::Files, work);
  co_return true;
}

void PlaylistManager::Refuse(const QString& text) {
  services_.prompter.Tell({text, {}});
}

void PlaylistManager::Save() {
  if (!Busy() && MaySave()) Begin(save_.Run(name_));
}

void PlaylistManager::Load() {
  if (!Busy() && MayLoad() && !shelf_.Playlist().isEmpty()) Begin(RunLoad());
}

Job<> PlaylistManager::RunLoad() {
  const bool loaded = co_await load_.FromStore(shelf_.PlaylistFolderOf(shelf_.Playlist()), shelf_.Playlist());
  if (loaded) Q_EMIT Loaded();
}

void PlaylistManager::Import() {
  if (!Busy() && MayLoad()) Begin(RunImport({}));
}

void PlaylistManager::Import(const QString& path) {
  if (!Busy() && MayLoad()) Begin(RunImport(path));
}

Job<> PlaylistManager::RunImport(QString path) {
  bool loaded = false;
  if (path.isEmpty()) {
    loaded = co_await load_.FromPickedFile();
  } else {
    loaded = co_await load_.FromFile(path);
  }
  if (loaded) Q_EMIT Loaded();
}

M3uList PlaylistManager::ListToExport() const {
  const Catalogue& tracks = services_.catalogue;
  M3uList list;
  const auto add = [&list](const QString& path, const QString& title, double seconds) {
    list.entries.push_back({path, title, static_cast<int>(std::max<qint64>(Int(seconds), -1))});
  };
  if (mode_ == PlaylistMode::SaveQueue) {
    for (const PlaylistQueue::Row& row : services_.queue->Rows()) {
      add(row.path, row.title, row.track == Mref::None ? -1 : tracks.TrackDurations(row.track));
    }
    return list;
  }
  for (const ShelfEntry& row : shelf_.Entries().All()) {
    if (row.Playable()) add(row.path, row.entry.name.name, row.seconds);
  }
  return list;
}

void PlaylistManager::Export() {
  if (!Busy() && !shelf_.Listing()) Begin(RunExport());
}

Job<> PlaylistManager::RunExport() {
  const bool queue = mode_ == PlaylistMode::SaveQueue;
  const M3uList list = ListToExport();
  const int missing = queue ? 0 : shelf_.Entries().Count() - static_cast<int>(list.entries.size());
  const QString name = queue ? services_.queue->Name() : shelf_.Playlist();
  co_await ExportList(services_, name, list, missing);
}

void PlaylistManager::NewCategory() {
  if (!Busy()) Begin(RunNewCategory());
}

Job<> PlaylistManager::RunNewCategory() {
  const QString typed = co_await services_.prompter.AskText(
      QStringLiteral("New Category"), QStringLiteral("Please Enter New Playlist Category"), QString());
  const QString name = ProperCase(typed.trimmed());
  if (name.isEmpty()) co_return;
  if (name.compare(kMostRequested, Qt::CaseInsensitive) == 0) {
    Refuse(name + QStringLiteral(" Is a Reserved name - Please Choose Another Name !"));
    co_return;
  }
  if (name.size() > kMostCategoryLetters) {
    Refuse(TooLong());
    co_return;
  }
  if (!CheckStoreName(services_.prompter, name)) co_return;
  if (!PlaylistShelf::NameAmong(shelf_.Categories(), name).isEmpty()) {
    Refuse(QStringLiteral("Playlist Category ") + name +
           QStringLiteral(" Already Exists\r\nPlease Choose Another Name !"));
    co_return;
  }
  const QString folder = shelf_.CategoryFolder(name);
  const std::function<void()> make = [folder] {
    if (!QDir().mkpath(folder)) throw Failure(QStringLiteral("Cannot make the folder ") + folder, 0, folder);
  };
  const bool changed = co_await Change(make);
  if (!changed) co_return;
  services_.catalogue.AddReference(ReferenceSet::Playlists, name);
  shelf_.List(name, {});
}

void PlaylistManager::RenameCategory() {
  if (!Busy() && MayUpkeep() && !shelf_.Category().isEmpty()) Begin(RunRenameCategory());
}

Job<> PlaylistManager::RunRenameCategory() {
  const QString old = shelf_.Category();
  const QString typed = co_await services_.prompter.AskText(
      QString(), QStringLiteral("Please Enter New Name For Group ") + old, QString());
  const QString name = ProperCase(typed.trimmed());
  if (name.isEmpty()) co_return;
  if (name.size() > kMostCategoryLetters) {
    Refuse(TooLong());
    co_return;
  }
  if (!CheckStoreName(services_.prompter, name)) co_return;
  const QString taken = PlaylistShelf::NameAmong(shelf_.Categories(), name);
  const bool reserved = name.compare(kMostRequested, Qt::CaseInsensitive) == 0;
  // Another case of its own name is a new name.
  if (reserved || name == old || (!taken.isEmpty() && taken != old)) {
    Refuse(QStringLiteral("Group Name ") + name + QStringLiteral(" Already Exists !"));
    co_return;
  }
  const std::function<void()> rename = [folder = shelf_.CategoryFolder(old), name] {
    RenameFolder(folder, name);
  };
  const bool changed = co_await Change(rename);
  if (!changed) co_return;
  services_.catalogue.RenameReference(ReferenceSet::Playlists, old, name);
  shelf_.List(name, shelf_.Playlist());
}

void PlaylistManager::DeleteCategory() {
  if (!Busy() && MayUpkeep() && !shelf_.Category().isEmpty() && !shelf_.Listing()) Begin(RunDeleteCategory());
}

Job<> PlaylistManager::RunDeleteCategory() {
  const QString name = shelf_.Category();
  const int count = shelf_.Playlists().Count();
  if (count > 0) {
    const Answer answer = co_await Ask(
        QStringLiteral("The Category ") + name + QStringLiteral(" Contains ") + QString::number(count) +
            QStringLiteral(" Playlists.\r\nAre You Sure You Want To Delete The "
                           "Category ?"),
        Buttons::YesNo);
    if (answer != Answer::Yes) co_return;
  }
  const std::function<void()> discard = [folder = shelf_.CategoryFolder(name), trash = services_.trash] {
    DiscardFolder(folder, trash);
  };
  const bool changed = co_await Change(discard);
  if (!changed) co_return;
  services_.catalogue.RemoveReference(ReferenceSet::Playlists, name);
  shelf_.List({}, {});
}

void PlaylistManager::RenamePlaylist() {
  if (!Busy() && MayUpkeep() && !shelf_.Playlist().isEmpty()) Begin(RunRenamePlaylist());
}

Job<> PlaylistManager::RunRenamePlaylist() {
  const QString old = shelf_.Playlist();
  const QString typed = co_await services_.prompter.AskText(
      QString(), QStringLiteral("Please Enter New Name for ") + old, QString());
  QString name = ProperCase(typed.trimmed());
  if (name.isEmpty()) co_return;
  const bool group = old.contains(kGroupSuffix, Qt::CaseInsensitive);
  if (group && !name.contains(kGroupSuffix))
    name = name.chopped(std::min<qsizetype>(name.size(), 5)) + kGroupSuffix;
  if (name.size() > kMostPlaylistLetters) {
    Refuse(QStringLiteral("Playlist Names Cannot Be Longer Than 30 Characters"));
    co_return;
  }
  if (!CheckStoreName(services_.prompter, name)) co_return;
  const QString taken = PlaylistShelf::NameAmong(shelf_.Playlists(), name);
  if (name == old || (!taken.isEmpty() && taken != old)) {
    Refuse(QStringLiteral("Playlist Name ") + name + QStringLiteral(" Already Exists !"));
    co_return;
  }
  const std::function<void()> rename = [folder = shelf_.PlaylistFolderOf(old), name] {
    RenameFolder(folder, name);
  };
  const bool changed = co_await Change(rename);
  if (!changed) co_return;
  SetName(name);
  shelf_.List(shelf_.Category(), name);
}

void PlaylistManager::DeletePlaylist() {
  if (!Busy() && MayUpkeep() && !shelf_.Playlist().isEmpty()) Begin(RunDeletePlaylist());
}

Job<> PlaylistManager::RunDeletePlaylist() {
  const QString name = shelf_.Playlist();
  const Answer answer = co_await Ask(QStringLiteral("Delete Playlist ") + name + QStringLiteral(" From ") +
                                         shelf_.Category() + QStringLiteral(" ?"),
                                     Buttons::OkCancel);
  if (answer != Answer::Ok) co_return;
  const std::function<void()> discard = [folder = shelf_.PlaylistFolderOf(name), trash = services_.trash] {
    DiscardFolder(folder, trash);
  };
  const bool changed = co_await Change(discard);
  if (!changed) co_return;
  SetName({});
  shelf_.List(shelf_.Category(), {});
}

void PlaylistManager::DeleteEntry(int row) {
  // While it is listed the rows may still be those of another playlist.
  if (Busy() || shelf_.Listing() || !MayUpkeep() || row < 0 || row >= shelf_.Entries().Count()) return;
  Begin(RunDeleteEntry(shelf_.Entries()[row].entry.file));
}

Job<> PlaylistManager::RunDeleteEntry(QString file) {
  const QString name = shelf_.Playlist();
  if (IsGroupName(name)) {
    Refuse(QStringLiteral("The Playlist ") + name +
           QStringLiteral(" Is A Group Playlist\r\nCannot Delete Tracks !"));
    co_return;
  }
  const Answer answer = co_await Ask(QStringLiteral("Delete Entry ") + file +
                                         QStringLiteral("\r\n From Playlist ") + name + QStringLiteral(" ?"),
                                     Buttons::OkCancel);
  if (answer != Answer::Ok) co_return;
  const std::function<void()> work = [folder = shelf_.PlaylistFolderOf(name), file, trash = services_.trash] {
    kelvo::DeleteEntry(folder, file, trash);
  };
  const bool changed = co_await Change(work);
  if (!changed) co_return;
  shelf_.List();
}

void PlaylistManager::Repair() {
  if (!Busy()) Begin(RunRepair());
}

Job<> PlaylistManager::RunRepair() {
  repairing_ = true;
  co_await repair_.Run();
  shelf_.List();
}

void PlaylistManager::CompileRequests() {
  if (!Busy() && MaySeeRequests()) Begin(requests_.Compile());
}

void PlaylistManager::AddRequests(std::vector<int> rows) {
  if (!Busy() && MayAddRequests()) Begin(requests_.AddToQueue(std::move(rows)));
}

void PlaylistManager::DeleteRequests(std::vector<int> rows) {
  if (!Busy() && MayUpkeep()) Begin(requests_.Delete(std::move(rows)));
}

}  // namespace kelvo
