#include "burning/BurnList.h"

#include "database/FileRun.h"
#include "database/MediaSearch.h"
#include "platform/ErrorLog.h"
#include "platform/SystemFacts.h"
#include "platform/Words.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QSet>

#include <algorithm>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kBeat = 500ms;
/// A tool that says nothing for so long is told as hanging.
constexpr Nanoseconds kSilence = 60s;
constexpr qsizetype kMostFiles = 20'000;

BurnRow RowOf(const QFileInfo& file) {
  return {.name = file.fileName(), .path = file.absoluteFilePath(), .bytes = file.size()};
}

std::vector<BurnRow> Listed(const QStringList& places) {
  std::vector<BurnRow> rows;
  for (const QString& place : places) {
    const QFileInfo facts(place);
    if (facts.isFile()) rows.push_back(RowOf(facts));
    if (!facts.isDir()) continue;
    QStringList found;
    for (QDirIterator each(place, QDir::Files, QDirIterator::Subdirectories); each.hasNext();) {
      const QString path = each.next();
      if (IsMediaName(each.fileName())) found.append(path);
      if (found.size() >= kMostFiles) break;
    }
    found.sort(Qt::CaseInsensitive);
    for (const QString& path : found) rows.push_back(RowOf(QFileInfo(path)));
  }
  return rows;
}

}  // namespace

BurnList::BurnList(Services services)
    : services_(std::move(services)), burner_(services_.loop, services_.tools) {
  burner_.OnNews = [this] { news_ = services_.loop.Elapsed(); };
  SetKind(BurnKind::Data);
}

BurnList::~BurnList() {
  if (copy_) copy_->stop = true;
  if (disc_) disc_->stop = true;
}

void BurnList::Say(const QString& words) {
  words_ = words;
  Q_EMIT Changed();
}

QString BurnList::Words() const {
  if (!busy_ || services_.loop.Elapsed() - news_ < kSilence) return words_;
  return words_ +
         tr("   (no answer for %1 seconds)")
             .arg(std::chrono::duration_cast<std::chrono::seconds>(services_.loop.Elapsed() - news_).count());
}

void BurnList::Begin(const QString& words) {
  busy_ = true;
  stopping_ = false;
  share_.reset();
  news_ = services_.loop.Elapsed();
  tick_ = services_.loop.Every(kBeat, [this] {
    if (disc_) {
      share_ = disc_->share.load();
      news_ = services_.loop.Elapsed();
    }
    if (copy_) news_ = services_.loop.Elapsed();
    Q_EMIT Changed();
  });
  Say(words);
}

void BurnList::Finish(const QString& words) {
  tick_.Stop();
  busy_ = looking_ = false;
  share_.reset();
  copy_.reset();
  disc_.reset();
  Say(words);
}

void BurnList::Fail(const QString& why) {
  Note(why);
  services_.prompter.Tell({QStringLiteral("An Error Occurred Whilst Trying to Burn the Files.\r\n") + why,
                           {},
                           Buttons::Ok,
                           PromptIcon::Exclamation});
  Finish(tr("The disc was not written"));
}

// Drives.

void BurnList::Open() {
  if (!busy_) work_ = RunOpen();
}

Job<> BurnList::RunOpen() {
  Begin(tr("Looking for drives..."));
  looking_ = true;
  std::vector<BurnDrive> found;
  try {
    found = co_await burner_.Drives();
    driveWords_ = found.empty() ? QStringLiteral("No Recordable Drive Found On System") : found.front().words;
    if (found.empty()) {
      services_.prompter.Tell({QStringLiteral("No Recordable Drive Found On Your System."),
                               {},
                               Buttons::Ok,
                               PromptIcon::Information});
    }
  } catch (...) {
    driveWords_ = QStringLiteral("CD Burner Interface not initialised");
    basHandleError(QStringLiteral(" burn1"), driveWords_);
  }
  const bool image = ToImage();
  drives_ = std::move(found);
  const int last = static_cast<int>(drives_.size());
  target_ = !looked_ ? 0 : image ? last : std::min(target_, last);
  looked_ = true;
  const auto look = [folder = services_.stagingFolder] { return StagedIn(folder); };
  const std::vector<StagedCopy> staged = co_await services_.loop.Offload(EventLoop::Lane::Apart, look);
  QSet<QString> known;
  for (const BurnRow& row : rows_.All()) known.insert(row.stagedPath);
  std::vector<BurnRow> fresh;
  for (const StagedCopy& copy : staged) {
    if (known.contains(copy.path)) continue;
    fresh.push_back({++lastId_, QFileInfo(copy.path).fileName(), copy.path, copy.bytes, copy.path});
  }
  rows_.Append(std::move(fresh));
  Finish({});
}

QStringList BurnList::Targets() const {
  QStringList names;
  for (const BurnDrive& drive : drives_) names.append(drive.words);
  return names << tr("Disc image file");
}

void BurnList::SetTarget(int target) {
  if (busy_) return;
  target_ = std::clamp(target, 0, static_cast<int>(drives_.size()));
  Q_EMIT Changed();
}

QString BurnList::Device() const {
  return drives_[static_cast<std::size_t>(target_)].device;
}

void BurnList::SetKind(BurnKind kind) {
  if (busy_) return;
  kind_ = kind;
  const QString ending = kind == BurnKind::Data ? QStringLiteral(".iso") : QStringLiteral(".cue");
  const QFileInfo before(image_);
  const QString base = image_.isEmpty() ? services_.documents + QStringLiteral("/Kelvo Disc")
                                        : before.path() + QLatin1Char('/') + BaseName(before.fileName());
  image_ = base + ending;
  Q_EMIT Changed();
}

void BurnList::SetImagePath(const QString& path) {
  image_ = path;
  Q_EMIT Changed();
}

void BurnList::ChooseFolder() {
  adding_.Add(RunChooseFolder());
}

Job<> BurnList::RunChooseFolder() {
  const QString start = QFileInfo(image_).path();
  const std::optional<QString> folder =
      co_await services_.prompter.PickFolder(tr("Where the disc image goes"), start);
  if (folder) SetImagePath(*folder + QLatin1Char('/') + QFileInfo(image_).fileName());
}

// The list.

void BurnList::Add(const QStringList& places) {
  adding_.Add(RunAdd(places));
}

void BurnList::AddFile() {
  adding_.Add(RunPick(false));
}

void BurnList::AddFolder() {
  adding_.Add(RunPick(true));
}

Job<> BurnList::RunPick(bool folder) {
  std::optional<QString> picked;
  if (folder) {
    picked = co_await services_.prompter.PickFolder(tr("Add the music of a folder"), services_.documents);
  } else {
    picked = co_await services_.prompter.PickFile(tr("Add a file"), services_.documents, tr("All files (*)"));
  }
  if (!picked) co_return;
  const QStringList places{*picked};
  co_await RunAdd(places);
}

Job<> BurnList::RunAdd(QStringList places) {
  const auto list = [places] { return Listed(places); };
  std::vector<BurnRow> found = co_await services_.loop.Offload(EventLoop::Lane::Apart, list);
  for (BurnRow& row : found) row.id = ++lastId_;
  rows_.Append(std::move(found));
  Q_EMIT Changed();
}

QString BurnList::WhyNoQueue() const {
  return services_.queue && services_.queue().isEmpty() ? tr("The play queue is empty") : QString();
}

void BurnList::AddQueue() {
  if (services_.queue) Add(services_.queue());
}

void BurnList::AddPlaylist() {
  if (services_.playlist) adding_.Add(RunAddPlaylist());
}

Job<> BurnList::RunAddPlaylist() {
  const std::optional<QString> folder =
      co_await services_.prompter.PickFolder(tr("Add the tracks of a playlist"), services_.playlists);
  if (!folder) co_return;
  try {
    const QStringList files = co_await services_.playlist(*folder);
    co_await RunAdd(files);
    if (files.isEmpty()) Say(tr("No track of a playlist is in that folder"));
  } catch (...) {
    basHandleError(QStringLiteral(" burn2"), tr("The playlist could not be read."));
  }
}

std::vector<int> BurnList::IdsOf(const std::vector<int>& rows) const {
  std::vector<int> ids;
  for (const int row : rows) ids.push_back(rows_[row].id);
  return ids;
}

int BurnList::IndexOf(int id) const {
  const auto& rows = rows_.All();
  const auto found =
      std::find_if(rows.begin(), rows.end(), [id](const BurnRow& row) { return row.id == id; });
  return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
}

void BurnList::MoveUp(int row) {
  if (busy_ || row < 1 || row >= rows_.Count()) return;
  const BurnRow moved = rows_[row];
  rows_.Remove(row);
  rows_.Insert(row - 1, moved);
}

void BurnList::MoveDown(int row) {
  if (row + 1 < rows_.Count()) MoveUp(row + 1);
}

// Staging.

std::int64_t BurnList::StagedBytes() const {
  std::int64_t bytes = 0;
  for (const BurnRow& row : rows_.All()) bytes += row.Staged() ? row.bytes : 0;
  return bytes;
}

QString BurnList::Sum() const {
  if (kind_ == BurnKind::Audio) return Counted(rows_.Count(), tr("track"), tr("tracks"));
  const auto staged =
      std::count_if(rows_.All().begin(), rows_.All().end(), [](const BurnRow& row) { return row.Staged(); });
  return tr("%1 staged, %2 MB")
      .arg(Counted(staged, tr("file"), tr("files")), Format000(static_cast<double>(StagedBytes()) / 1048576));
}

void BurnList::Stage(const std::vector<int>& rows) {
  if (busy_) return;
  if (rows.empty()) {
    services_.prompter.Tell(
        {QStringLiteral("No Files Selected To Burn ! "), {}, Buttons::Ok, PromptIcon::Exclamation});
    return;
  }
  work_ = RunStage(IdsOf(rows));
}

Job<bool> BurnList::HasRoom(QString folder, std::int64_t bytes) {
  const auto look = [folder, bytes] { return HasRoomFor(folder, bytes); };
  const bool fits = co_await services_.loop.Offload(EventLoop::Lane::Apart, look);
  if (fits) co_return true;
  const QString room = co_await RoomWords(services_.loop, folder);
  services_.prompter.Tell(
      {QStringLiteral("Cannot Continue...Not Enough Free Disc Space on Drive %1\r\n%2").arg(folder, room),
       {},
       Buttons::Ok,
       PromptIcon::Exclamation});
  co_return false;
}

Job<> BurnList::RunStage(std::vector<int> ids) {
  Begin(tr("Staging..."));
  const QString folder = services_.stagingFolder;
  int done = 0;
  for (const int id : ids) {
    const BurnRow row = rows_[IndexOf(id)];
    if (stopping_) break;
    share_ = static_cast<double>(done++) / static_cast<double>(ids.size());
    if (row.Staged()) continue;
    Say(tr("Staging: %1").arg(row.name));
    const bool fits = co_await HasRoom(folder, row.bytes);
    if (!fits) break;
    copy_ = std::make_shared<CopyControl>();
    try {
      const auto place = [folder, name = row.name] { return PlaceInStaging(folder, name); };
      const QString path = co_await services_.loop.Offload(EventLoop::Lane::Apart, place);
      CopyOrder order{row.path, path};
      const CopyResult result = co_await CopyFileLater(services_.loop, std::move(order), copy_);
      if (result != CopyResult::Copied) continue;
      rows_.Alter(IndexOf(id), [&path](BurnRow& each) { each.stagedPath = path; });
    } catch (const std::exception& failure) {
      Note(row.name + QStringLiteral(" - ") + QString::fromUtf8(failure.what()));
    }
  }
  Finish(stopping_ ? tr("Staging Stopped") : QStringLiteral("Done Staging "));
}

void BurnList::ClearStaging() {
  if (!busy_) work_ = RunClear();
}

Job<> BurnList::RunClear() {
  Begin(tr("Clearing the staging area..."));
  const auto clear = [folder = services_.stagingFolder] {
    const std::vector<StagedCopy> copies = StagedIn(folder);
    for (const StagedCopy& copy : copies) DeleteStaged(copy.path);
    return !copies.empty();
  };
  bool any = true;
  try {
    any = co_await services_.loop.Offload(EventLoop::Lane::Apart, clear);
  } catch (...) {
    basHandleError(QStringLiteral(" burn3"), tr("The staging area could not be emptied."));
  }
  for (int row = rows_.Count() - 1; row >= 0; --row) {
    if (!rows_[row].Staged()) continue;
    // A file that only the staging area has is gone.
    if (rows_[row].path == rows_[row].stagedPath) {
      rows_.Remove(row);
    } else {
      rows_.Alter(row, [](BurnRow& each) { each.stagedPath.clear(); });
    }
  }
  Finish(any ? QStringLiteral("Staging Area Cleared !") : QStringLiteral("Nothing to Clear!"));
}

void BurnList::Delete(const std::vector<int>& rows) {
  if (!busy_) work_ = RunDelete(IdsOf(rows));
}

Job<> BurnList::RunDelete(std::vector<int> ids) {
  Begin({});
  for (const int id : ids) {
    const BurnRow row = rows_[IndexOf(id)];
    Say(QStringLiteral("Deleting: ") + row.name);
    try {
      if (row.Staged()) {
        const auto remove = [path = row.stagedPath] { DeleteStaged(path); };
        co_await services_.loop.Offload(EventLoop::Lane::Apart, remove);
      }
      rows_.Remove(IndexOf(id));
    } catch (...) {
      basHandleError(QStringLiteral(" burn4"), tr("%1 could not be deleted.").arg(row.name));
    }
  }
  Finish(QStringLiteral("Delete Done !"));
}

}  // namespace kelvo
