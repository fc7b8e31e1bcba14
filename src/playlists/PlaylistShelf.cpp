#include "playlists/PlaylistShelf.h"

#include "database/FolderListing.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

/// Many tracks may change at once: the entries are looked at again when that is over.
constexpr Nanoseconds kCalm = 500ms;

struct FoundCategories {
  QStringList names;
  bool leftOvers = false;
};

}  // namespace

QString ShelfEntry::NumberText() const {
  return entry.name.number == 0 ? QString() : QString::number(entry.name.number);
}

QString ShelfEntry::LengthWords() const {
  return Playable() ? LengthText(seconds) : QString();
}

QString ShelfEntry::StateWords() const {
  if (!entry.IsLinkFile()) return PlaylistShelf::tr("No Link");
  switch (state) {
    case LinkState::Found:
      return {};
    case LinkState::NotInDatabase:
      return PlaylistShelf::tr("Not In The Data Base");
    case LinkState::NotFound:
      return PlaylistShelf::tr("Not Found");
    case LinkState::NoAnswer:
      return PlaylistShelf::tr("Disk Does Not Answer");
  }
  return {};
}

PlaylistShelf::PlaylistShelf(const PlaylistServices& services) : services_(services) {
  const auto stale = [this](From from = From::Entries) {
    if (resting_ || (playlist_.isEmpty() && from == From::Entries)) return;
    stale_ = services_.loop.After(kCalm, [this, from] {
      if (!listing_.Running()) Start(from);
    });
  };
  services_.catalogue.Listen(
      this, [stale](const CatalogueReplaced&) { stale(); }, [stale](const TrackAdded&) { stale(); },
      [stale](const TrackChanged&) { stale(); }, [stale](const TrackRenamed&) { stale(); },
      [stale](const TrackRemoved&) { stale(); },
      [stale](const ReferenceChanged& change) {
        if (change.set == ReferenceSet::Playlists) stale(From::Categories);
      });
}

QString PlaylistShelf::CategoryFolder(const QString& category) const {
  return Root() + QLatin1Char('/') + category;
}

QString PlaylistShelf::PlaylistFolderOf(const QString& playlist) const {
  return CategoryFolder(category_) + QLatin1Char('/') + playlist;
}

QString PlaylistShelf::NameAmong(const RowStore<ShelfName>& names, const QString& name) {
  const auto found = std::find_if(names.All().begin(), names.All().end(), [&name](const ShelfName& each) {
    return each.name.compare(name, Qt::CaseInsensitive) == 0;
  });
  return found == names.All().end() ? QString() : found->name;
}

void PlaylistShelf::ChooseCategory(const QString& name) {
  if (name == category_) return;
  category_ = name;
  playlist_.clear();
  Start(From::Playlists);
}

void PlaylistShelf::ChoosePlaylist(const QString& name) {
  if (name == playlist_) return;
  playlist_ = name;
  Start(From::Entries);
}

void PlaylistShelf::List() {
  Start(From::Categories);
}

void PlaylistShelf::List(const QString& category, const QString& playlist) {
  category_ = category;
  playlist_ = playlist;
  Start(From::Categories);
}

void PlaylistShelf::Rest() {
  resting_ = true;
  stale_.Stop();
  listing_.Cancel();
}

void PlaylistShelf::Start(From from) {
  resting_ = false;
  stale_.Stop();
  trouble_.clear();
  listing_ = RunList(from);
  Q_EMIT Changed();
}

QString PlaylistShelf::Outlook() const {
  return outlook_.Words(services_.loop.Now());
}

Job<> PlaylistShelf::RunList(From from) {
  try {
    if (from == From::Categories) {
      const QStringList names = co_await ListCategories();
      Show(categories_, names);
      category_ = NameAmong(categories_, category_);
    }
    if (category_.isEmpty()) playlist_.clear();
    if (from != From::Entries) {
      QStringList names;
      if (!category_.isEmpty()) names = co_await FoldersIn(CategoryFolder(category_));
      Show(playlists_, names);
      playlist_ = NameAmong(playlists_, playlist_);
    }
    co_await ListEntries();
  } catch (...) {
    entries_.Replace({});
    outlook_ = {};
    trouble_ = tr("The playlists cannot be read.");
    basHandleError(QStringLiteral(" PlaySave list"), trouble_);
  }
  // At the loop's next turn, so that whoever is told finds nothing under way.
  services_.loop.Post([self = QPointer(this)] {
    if (self) Q_EMIT self->Changed();
  });
}

void PlaylistShelf::Show(RowStore<ShelfName>& rows, const QStringList& names) {
  std::vector<ShelfName> fresh;
  for (const QString& name : names) fresh.push_back({name});
  if (fresh != rows.All()) rows.Replace(std::move(fresh));
}

Job<QStringList> PlaylistShelf::ListCategories() {
  const auto look = [root = Root()] {
    return FoundCategories{ListFolder(root, EntryKind::Folders).names, HasLeftOvers(root)};
  };
  std::optional<FoundCategories> found = co_await services_.disks.Look(Root(), look);
  if (found && found->leftOvers) {
    const auto mend = [root = Root()] { MendPlaylists(root); };
    co_await services_.loop.Offload(EventLoop::Lane::Files, mend);
    found = co_await services_.disks.Look(Root(), look);
  }
  if (!found) trouble_ = tr("Disk Does Not Answer : %1").arg(Root());
  QStringList names = found ? found->names : QStringList();
  names.removeIf([](const QString& name) { return name.compare(kMostRequested, Qt::CaseInsensitive) == 0; });
  co_return names;
}

Job<QStringList> PlaylistShelf::FoldersIn(QString folder) {
  const auto look = [folder] { return ListFolder(folder, EntryKind::Folders).names; };
  const std::optional<QStringList> names = co_await services_.disks.Look(folder, look);
  if (!names) trouble_ = tr("Disk Does Not Answer : %1").arg(folder);
  co_return names.value_or(QStringList());
}

Job<> PlaylistShelf::ListEntries() {
  std::optional<PlaylistFolder> found = PlaylistFolder();
  if (!playlist_.isEmpty()) {
    const QString folder = PlaylistFolderOf(playlist_);
    const auto look = [folder] { return ReadPlaylist(folder); };
    found = co_await services_.disks.Look(folder, look);
    if (!found) trouble_ = tr("Disk Does Not Answer : %1").arg(folder);
  }
  std::vector<LinkQuestion> links;
  std::vector<ShelfEntry> rows;
  if (found) {
    for (PlaylistEntry& entry : found->entries) {
      links.push_back({entry.link ? entry.link->targetPath : QString(), entry.name.name});
      rows.push_back({std::move(entry), LinkState::NotFound});
    }
  }
  const std::vector<ResolvedLink> resolved =
      co_await ResolveLinks(services_.loop, services_.disks, services_.catalogue, {}, std::move(links));
  std::vector<OutlookTrack> tracks;
  int missing = 0;
  for (std::size_t place = 0; place < rows.size(); ++place) {
    ShelfEntry& row = rows[place];
    const ResolvedLink& link = resolved[place];
    row.state = link.state;
    row.path = link.path;
    if (row.Playable()) {
      row.seconds = services_.catalogue.TrackDurations(link.track);
      tracks.push_back({services_.catalogue.TrackNames[link.track], row.seconds});
    } else {
      ++missing;
    }
  }
  entries_.Replace(std::move(rows));
  outlook_ = co_await ReckonOutlook(services_, std::move(tracks), missing);
}

}  // namespace kelvo
