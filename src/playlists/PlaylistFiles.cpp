#include "playlists/PlaylistFiles.h"

#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/NewFile.h"
#include "platform/TextFile.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

namespace kelvo {
namespace {

namespace fs = std::filesystem;

// Hidden folders beside a playlist, by how far a change is. While a complete new one waits, it counts.
constexpr std::string_view kNew = ".kelvo-new";      ///< being written
constexpr std::string_view kWhole = ".kelvo-whole";  ///< complete, to take the playlist's place
constexpr std::string_view kOld = ".kelvo-old";      ///< its place was taken
constexpr std::string_view kGone = ".kelvo-gone";    ///< being deleted

fs::path PathOf(const QString& path) {
  return EncodedPath(path).toStdString();
}

fs::path Beside(const fs::path& folder, std::string_view state) {
  std::string name(1, '.');
  name.append(folder.filename().string()).append(state);
  return folder.parent_path() / name;
}

bool IsFolder(const fs::path& path) {
  return fs::is_directory(fs::symlink_status(path));
}

bool Exists(const fs::path& path) {
  return fs::exists(fs::symlink_status(path));
}

void Flush(const fs::path& folder) {
  const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened.Valid() && ::fsync(opened.Number()) != 0 && errno == EIO) {
    FailOn("flush the folder", QByteArray(folder.c_str()), errno);
  }
}

/// A second name for a file, or a copy where the file system knows no second names.
void Share(const fs::path& from, const fs::path& to) {
  std::error_code refused;
  fs::create_hard_link(from, to, refused);
  if (refused) fs::copy(from, to, fs::copy_options::copy_symlinks);
}

/// Removes a folder whose place was taken. Folders in it are no entries and nobody's to delete.
void DropOld(const fs::path& old, const fs::path& folder) {
  std::vector<fs::path> carried;
  for (const fs::directory_entry& each : fs::directory_iterator(old)) {
    if (IsFolder(each.path())) carried.push_back(each.path());
  }
  for (const fs::path& each : carried) {
    const fs::path place = folder / each.filename();
    if (Exists(place)) return;
    fs::rename(each, place);
  }
  fs::remove_all(old);
}

/// Puts a complete new folder into the place of what is there. Until the last step it counts by its name.
void TakePlace(const fs::path& whole, const fs::path& folder, bool replace, const Trash& trash) {
  const bool trashed = replace && trash(QFile::decodeName(folder.c_str()));
  const fs::path old = Beside(folder, kOld);
  if (!trashed) fs::rename(folder, old);
  fs::rename(whole, folder);
  Flush(folder.parent_path());
  if (!trashed) DropOld(old, folder);
}

/// A folder that is removed again unless it is kept.
class Draft {
 public:
  explicit Draft(fs::path path) : path_(std::move(path)) {
    fs::remove_all(path_);
    fs::create_directory(path_);
  }
  ~Draft() {
    std::error_code ignored;
    if (!path_.empty()) fs::remove_all(path_, ignored);
  }
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;
  [[nodiscard]] const fs::path& Path() const { return path_; }
  void RenameTo(const fs::path& place) {
    Flush(path_);
    fs::rename(path_, place);
    path_.clear();
  }

 private:
  fs::path path_;
};

/// Takes what is in a playlist over into its new folder; returns the highest number.
int CarryOver(const QString& folder, const fs::path& draft) {
  int highest = 0;
  for (const PlaylistEntry& entry : ReadPlaylist(folder).entries) {
    highest = std::max(highest, entry.name.number);
  }
  for (const fs::directory_entry& each : fs::directory_iterator(PathOf(folder))) {
    if (!IsFolder(each.path())) Share(each.path(), draft / each.path().filename());
  }
  return highest;
}

/// What of a hidden name is the folder's that it is beside; empty when it has another ending.
std::string NameWithout(const std::string& hidden, std::string_view state) {
  if (hidden.size() < state.size() + 2 || hidden.front() != '.' || !hidden.ends_with(state)) return {};
  return hidden.substr(1, hidden.size() - 1 - state.size());
}

std::vector<fs::path> HiddenFolders(const fs::path& place, std::string_view state) {
  std::vector<fs::path> found;
  for (const fs::directory_entry& each : fs::directory_iterator(place)) {
    const bool ours = !NameWithout(each.path().filename().string(), state).empty();
    if (ours && IsFolder(each.path())) found.push_back(each.path());
  }
  return found;
}

std::vector<fs::path> WithCategories(const QString& playlists) {
  std::vector<fs::path> places{PathOf(playlists)};
  for (const fs::directory_entry& each : fs::directory_iterator(places.front())) {
    if (IsFolder(each.path()) && each.path().filename().string().front() != '.')
      places.push_back(each.path());
  }
  return places;
}

void Mend(const fs::path& place) {
  const auto folderOf = [&place](const fs::path& hidden, std::string_view state) {
    return place / NameWithout(hidden.filename().string(), state);
  };
  for (const fs::path& whole : HiddenFolders(place, kWhole)) {
    const fs::path folder = folderOf(whole, kWhole);
    // It was to take the place of what is there, and had not begun to.
    if (Exists(folder)) {
      fs::remove_all(whole);
    } else {
      fs::rename(whole, folder);
    }
  }
  for (const fs::path& old : HiddenFolders(place, kOld)) {
    const fs::path folder = folderOf(old, kOld);
    if (Exists(folder)) {
      DropOld(old, folder);
    } else {
      fs::rename(old, folder);
    }
  }
  for (const std::string_view state : {kNew, kGone}) {
    for (const fs::path& left : HiddenFolders(place, state)) fs::remove_all(left);
  }
}

/// Gives an entry another number, its companion with it. A name that is taken leaves it as it is.
void Renumber(const QString& folder, const PlaylistEntry& entry, int number) {
  const fs::path place = PathOf(folder);
  const qsizetype tilde = entry.file.indexOf(QLatin1Char('~'));
  const QString renamed = QString::number(number) + entry.file.sliced(std::max<qsizetype>(tilde, 0));
  const fs::path to = place / PathOf(renamed);
  const fs::path companion = place / PathOf(entry.name.Companion());
  const fs::path companionTo = place / PathOf(EntryFileName{number, entry.name.name}.Companion());
  if (Exists(to)) return;
  const bool paired = Exists(companion) && companion != companionTo;
  if (paired && Exists(companionTo)) return;
  // The line is there under both names while the entry changes its own.
  if (paired) Share(companion, companionTo);
  fs::rename(place / PathOf(entry.file), to);
  if (paired) fs::remove(companion);
}

}  // namespace

void SavePlaylist(const PlaylistOrder& order, const Trash& trash, std::atomic<int>& done) {
  const fs::path folder = PathOf(order.folder);
  Mend(folder.parent_path());
  const bool there = Exists(folder);
  Draft draft(Beside(folder, kNew));
  const QString place = QFile::decodeName(draft.Path().c_str()) + QLatin1Char('/');
  int number = there && !order.replace ? CarryOver(order.folder, draft.Path()) : 0;
  for (const NewEntry& entry : order.entries) {
    const EntryFileName name{++number, entry.name};
    if (entry.line) TextFile(QStringList{*entry.line}).Write(place + name.Companion());
    entry.link.Write(place + name.Saved());
    done.fetch_add(1, std::memory_order_relaxed);
  }
  const fs::path whole = Beside(folder, kWhole);
  draft.RenameTo(there ? whole : folder);
  Flush(folder.parent_path());
  if (there) TakePlace(whole, folder, order.replace, trash);
}

void RewriteLinks(const QString& folder, const std::vector<LinkChange>& changes) {
  const fs::path place = PathOf(folder);
  Mend(place.parent_path());
  Draft draft(Beside(place, kNew));
  CarryOver(folder, draft.Path());
  const QString draftPlace = QFile::decodeName(draft.Path().c_str()) + QLatin1Char('/');
  for (const LinkChange& each : changes) each.link.Write(draftPlace + each.file);
  const fs::path whole = Beside(place, kWhole);
  draft.RenameTo(whole);
  Flush(place.parent_path());
  TakePlace(whole, place, false, {});
}

void DiscardFolder(const QString& folder, const Trash& trash) {
  if (trash(folder)) return;
  const fs::path gone = Beside(PathOf(folder), kGone);
  fs::remove_all(gone);
  fs::rename(PathOf(folder), gone);
  fs::remove_all(gone);
}

void RenameFolder(const QString& folder, const QString& name) {
  const fs::path from = PathOf(folder);
  const fs::path to = from.parent_path() / PathOf(name);
  if (Exists(to)) FailOn("rename", EncodedPath(folder), EEXIST);
  fs::rename(from, to);
  Flush(from.parent_path());
}

void DeleteEntry(const QString& folder, const QString& file, const Trash& trash) {
  const std::vector<PlaylistEntry> entries = ReadPlaylist(folder).entries;
  const QString path = folder + QLatin1Char('/') + file;
  if (!trash(path)) fs::remove(PathOf(path));
  const int deleted = EntryFileName::Parse(file).number;
  if (deleted == 0) return;
  // From the lowest: in between there is a gap, and never two entries of one number.
  for (const PlaylistEntry& entry : entries) {
    if (entry.name.number > deleted) Renumber(folder, entry, entry.name.number - 1);
  }
}

void CloseGaps(const QString& folder) {
  std::vector<PlaylistEntry> entries = ReadPlaylist(folder).entries;
  std::erase_if(entries, [](const PlaylistEntry& entry) { return entry.name.number == 0; });
  const auto numberAt = [](std::size_t place) { return static_cast<int>(place) + 1; };
  // Those that go up first, from the highest: no entry passes another.
  for (std::size_t place = entries.size(); place-- > 0;) {
    if (entries[place].name.number < numberAt(place)) Renumber(folder, entries[place], numberAt(place));
  }
  for (std::size_t place = 0; place < entries.size(); ++place) {
    if (entries[place].name.number > numberAt(place)) Renumber(folder, entries[place], numberAt(place));
  }
}

bool HasLeftOvers(const QString& playlists) {
  const std::vector<fs::path> places = WithCategories(playlists);
  return std::any_of(places.begin(), places.end(), [](const fs::path& place) {
    return !HiddenFolders(place, kWhole).empty() || !HiddenFolders(place, kOld).empty() ||
           !HiddenFolders(place, kNew).empty() || !HiddenFolders(place, kGone).empty();
  });
}

void MendPlaylists(const QString& playlists) {
  for (const fs::path& place : WithCategories(playlists)) Mend(place);
}

}  // namespace kelvo
