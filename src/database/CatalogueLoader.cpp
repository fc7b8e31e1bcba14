#include "database/CatalogueLoader.h"

#include "audio/AudioSystem.h"
#include "database/ChangeJournal.h"
#include "database/UtilityListing.h"
#include "platform/ErrorLog.h"
#include "platform/ShellLink.h"
#include "platform/Words.h"

#include <QDir>
#include <QFile>

#include <array>
#include <deque>
#include <numeric>
#include <utility>

namespace kelvo {
namespace {

/// Work handed to the file worker in one go: some milliseconds of it, so that a stop is not kept waiting.
constexpr qsizetype kFilesAtOnce = 1024;
/// So many of these are read at a time, each by a reader of its own: while the logic's thread takes in one,
/// the next ones are on their way.
constexpr std::size_t kReaders = 2;
constexpr qsizetype kFoldersAtOnce = 64;
const QString kTag = QStringLiteral(" Getdb");

struct SplitName {
  QString base;
  QString extension;
};

SplitName Split(const QString& fileName) {
  const QString base = BaseName(fileName);
  return {base, fileName.mid(base.size())};
}

/// Deletes the links that an older layout left in a reference folder; everything else stays. Failures are
/// skipped: what is left over is harmless where it can't be removed.
void RemoveShortcuts(const QString& folder) {
  if (!HoldsFiles(folder)) return;
  try {
    const FolderListing listing = ListFolder(folder, EntryKind::Files);
    for (const QString& name : listing.names) {
      const QString path = QDir(folder).filePath(name);
      if (ShellLink::IsShellLink(path)) QFile::remove(path);
    }
  } catch (const Failure&) {
    return;
  }
}

std::size_t Utf8Size(const QStringList& names) {
  return std::accumulate(names.begin(), names.end(), std::size_t{0},
                         [](std::size_t sum, const QString& name) {
                           return sum + static_cast<std::size_t>(name.toUtf8().size());
                         });
}

}  // namespace

CatalogueLoader::CatalogueLoader(EventLoop& loop, AudioSystem& audio, Catalogue& catalogue, Paths paths,
                                 TrackDefaults defaults, QString title)
    : loop_(loop),
      audio_(audio),
      catalogue_(catalogue),
      paths_(std::move(paths)),
      defaults_(defaults),
      title_(std::move(title)) {}

QString CatalogueLoader::Stamp() const {
  return loop_.Now().toString(QStringLiteral("dd/MM/yyyy hh:mm:ss"));
}

void CatalogueLoader::Show(LoadBar& bar, int value, int maximum, const QString& words) {
  const auto percentOf = [](qint64 part, qint64 whole) {
    return whole > 0 ? (part * 200 + whole) / (whole * 2) : 0;
  };
  const bool sameWords = bar.maximum == maximum && bar.value > 0 && bar.words.startsWith(words) &&
                         percentOf(value, maximum) == percentOf(bar.value, maximum);
  bar.value = value;
  bar.maximum = maximum;
  if (sameWords) return;
  bar.words = words + Format0(static_cast<double>(percentOf(value, maximum))) + QStringLiteral("%)");
  if (OnProgress) OnProgress();
}

void CatalogueLoader::ShowDone(LoadBar& bar) {
  bar.value = bar.maximum;
  bar.words = QStringLiteral("Done ") + Stamp();
  if (OnProgress) OnProgress();
}

Job<LoadOutcome> CatalogueLoader::Load() {
  tables_ = CatalogueTables(paths_(Paths::Music));
  LoadOutcome outcome = LoadOutcome::Done;
  try {
    const auto mend = [paths = paths_] { return MendLibrary(paths, *DesktopTrashBin()); };
    mended_ = co_await loop_.Offload(EventLoop::Lane::Files, mend);
    if (!mended_.isEmpty()) NoteInLog(mended_);
    co_await LoadReferences(Paths::Categories, QStringLiteral("Loading Genres ("), &tables_.GenreList, true);
    co_await LoadReferences(Paths::Albums, QStringLiteral("Loading Albums ("), &tables_.AlbumList, true);
    co_await LoadReferences(Paths::Artists, QStringLiteral("Loading Artists ("), &tables_.ArtistList, true);
    co_await LoadReferences(Paths::Playlists, QStringLiteral("Loading Playlists ("), &tables_.PlaylistNames,
                            false);
    ShowDone(references);
    co_await LoadSoundBites();
    co_await LoadUtility();
    outcome = co_await LoadTracks();
  } catch (...) {
    basHandleError(kTag, QStringLiteral("The library could not be read to its end."));
  }
  if (outcome == LoadOutcome::UnstableFile) co_return outcome;
  // The tables of the load before go elsewhere: to free a million texts takes its time.
  const auto before = std::make_shared<CatalogueTables>(catalogue_.Replace(std::move(tables_)));
  const auto drop = [before] { *before = CatalogueTables(); };
  co_await loop_.Offload(EventLoop::Lane::Apart, drop);
  co_return outcome;
}

Job<FolderListing> CatalogueLoader::List(QString folder, EntryKind kind) {
  const auto work = [folder, kind] { return ListFolder(folder, kind); };
  FolderListing listing = co_await loop_.Offload(EventLoop::Lane::Apart, work);
  for (const QString& name : listing.unusable) {
    NoteInLog(QStringLiteral("The name of a file in %1 is no valid text, the file is passed over: %2")
                  .arg(folder, name));
  }
  co_return listing;
}

Job<> CatalogueLoader::LoadReferences(Paths::Slot slot, QString words, QStringList* list, bool cleanUp) {
  const QString folder = paths_(slot);
  FolderListing listing;
  try {
    listing = co_await List(folder, EntryKind::Folders);
  } catch (...) {
    basHandleError(kTag, QStringLiteral("A folder of the database could not be read: %1").arg(folder));
    co_return;
  }
  const int count = static_cast<int>(listing.names.size());
  references = LoadBar{};
  Turn turn(loop_);
  for (qsizetype start = 0; start < listing.names.size(); start += kFoldersAtOnce) {
    const QStringList some = listing.names.mid(start, kFoldersAtOnce);
    for (const QString& name : some) {
      list->append(name);
      Show(references, static_cast<int>(list->size()), count, words);
      co_await turn.Yield();
    }
    if (!cleanUp) continue;
    const auto work = [folder, some] {
      for (const QString& name : some) RemoveShortcuts(QDir(folder).filePath(name));
    };
    co_await loop_.Offload(EventLoop::Lane::Apart, work);
  }
}

Job<> CatalogueLoader::LoadSoundBites() {
  const QString folder = paths_(Paths::Jingles);
  try {
    const FolderListing listing = co_await List(folder, EntryKind::Files);
    const int count = static_cast<int>(listing.names.size());
    tracks = LoadBar{};
    Turn turn(loop_);
    for (const QString& name : listing.names) {
      tables_.SoundBiteNames.append(BaseName(name));
      tables_.SoundBitePaths.append(folder + QLatin1Char('/') + name);
      Show(tracks, static_cast<int>(tables_.SoundBiteNames.size()), count,
           QStringLiteral("Loading Sound Bites ("));
      co_await turn.Yield();
    }
  } catch (...) {
    basHandleError(kTag, QStringLiteral("The sound bites could not be read: %1").arg(folder));
  }
}

Job<> CatalogueLoader::LoadUtility() {
  const auto work = [paths = paths_] { return CleanUtilityFolder(paths); };
  tables_.StagedFiles = co_await loop_.Offload(EventLoop::Lane::Apart, work);
}

Job<> CatalogueLoader::AppendMissing(QString name, QString extension) {
  CatalogueRow row;
  row.name = name;
  row.extension = extension;
  row.artists = ArtistsFromName(name).Text();
  row.duration = -1;
  try {
    row.duration = co_await audio_.DurationOf(paths_(Paths::Music) + QLatin1Char('/') + name + extension);
  } catch (const std::exception& unknown) {
    NoteInLog(
        QStringLiteral("No duration for %1: %2").arg(name + extension, QString::fromUtf8(unknown.what())));
  }
  tables_.Append(row);
  const QStringList comments =
      ReplacedFileComments(title_, loop_.Now().toString(QStringLiteral("dd/MM/yyyy")));
  const TrackInfo info = DefaultTrackInfo(name, row.duration, defaults_, comments);
  const auto work = [path = TrackInfoPath(paths_, name), info] { CreateTrackInfo(path, info); };
  try {
    co_await loop_.Offload(EventLoop::Lane::Files, work);
  } catch (...) {
    basHandleError(kTag, QStringLiteral("The track info file of %1 could not be made.").arg(name));
  }
}

void CatalogueLoader::AppendUnreadable(const QString& name, const QString& extension) {
  CatalogueRow row;
  row.name = name;
  row.extension = extension;
  row.artists = ArtistsFromName(name).Text();
  tables_.Append(row);
  NoteInLog(QStringLiteral("Cannot read the track info file %1").arg(TrackInfoPath(paths_, name)));
}

void CatalogueLoader::TellBadDuration(const QString& name) {
  const auto failure = std::make_exception_ptr(
      Failure(QStringLiteral("Line 13 is no number"), 13, TrackInfoPath(paths_, name), kFixedInfoLines));
  // One message box for a database full of them; the log names each.
  if (std::exchange(toldBadDuration_, true)) {
    NoteInLog(ErrorLog::Compose(failure, kTag));
  } else {
    basHandleError(kTag, failure,
                   QStringLiteral("A track info file could not be read; others like it are in the log."));
  }
}

Job<InfoBatch> CatalogueLoader::ReadBatch(std::shared_ptr<InfoReader> reader,
                                          std::shared_ptr<const QStringList> names, qsizetype start,
                                          qsizetype count) {
  const auto work = [reader, names, start, count] { return reader->Read(*names, start, count); };
  co_return co_await loop_.Offload(EventLoop::Lane::Apart, work);
}

Job<bool> CatalogueLoader::AppendOdd(std::shared_ptr<InfoReader> reader, QString fileName,
                                     InfoBatch::Status status) {
  const auto [base, extension] = Split(fileName);
  // Two music files of one name share an info file, which may have been made for the first after it was
  // looked for on behalf of the second.
  if (status == InfoBatch::Status::Missing && made_.contains(base)) {
    const auto alone = std::make_shared<const QStringList>(fileName);
    const InfoBatch again = co_await ReadBatch(reader, alone, 0, 1);
    status = again.records.front().status;
    if (AppendRead(again, again.records.front())) co_return true;
  }
  switch (status) {
    case InfoBatch::Status::TooShort:
      unstableFile_ = TrackInfoPath(paths_, base);
      NoteInLog(QStringLiteral("The track info file %1 has fewer than %2 lines")
                    .arg(unstableFile_)
                    .arg(kFixedInfoLines));
      co_return false;
    case InfoBatch::Status::Missing:
      made_.insert(base);
      co_await AppendMissing(base, extension);
      co_return true;
    default:
      AppendUnreadable(base, extension);
      co_return true;
  }
}

bool CatalogueLoader::AppendRead(const InfoBatch& batch, const InfoBatch::Record& record) {
  if (record.status != InfoBatch::Status::Read && record.status != InfoBatch::Status::BadDuration)
    return false;
  const Mref track = tables_.AppendRecord(batch, record);
  if (record.status == InfoBatch::Status::BadDuration) TellBadDuration(tables_.TrackNames[track]);
  return true;
}

Job<LoadOutcome> CatalogueLoader::LoadTracks() {
  FolderListing listing = co_await List(paths_(Paths::Music), EntryKind::Files);
  const auto names = std::make_shared<QStringList>(std::move(listing.names));
  if (names->isEmpty()) {
    tracks.words = QStringLiteral("Please Add Some Music To the Data Base");
    if (OnProgress) OnProgress();
    co_return LoadOutcome::NoMusic;
  }
  const auto prepare = [names, folder = paths_(Paths::Info)] {
    std::array<std::shared_ptr<InfoReader>, kReaders> readers;
    for (auto& reader : readers) reader = std::make_shared<InfoReader>(folder);
    return std::make_pair(readers, Utf8Size(*names));
  };
  const auto [readers, nameBytes] = co_await loop_.Offload(EventLoop::Lane::Apart, prepare);
  const qsizetype count = names->size();
  tables_.Reserve(static_cast<std::size_t>(count), nameBytes);
  tracks = LoadBar{};
  made_.clear();
  toldBadDuration_ = false;
  Turn turn(loop_);
  std::deque<Job<InfoBatch>> reading;
  qsizetype asked = 0;
  for (qsizetype start = 0; start < count; start += kFilesAtOnce) {
    const auto readerFor = [&readers = readers](qsizetype place) {
      return readers[static_cast<std::size_t>(place / kFilesAtOnce) % kReaders];
    };
    for (; asked < count && reading.size() < kReaders; asked += kFilesAtOnce) {
      reading.push_back(ReadBatch(readerFor(asked), names, asked, kFilesAtOnce));
    }
    const InfoBatch batch = co_await std::move(reading.front());
    reading.pop_front();
    for (std::size_t index = 0; index < batch.records.size(); ++index) {
      const InfoBatch::Record& record = batch.records[index];
      if (!AppendRead(batch, record)) {
        const QString fileName = names->at(start + static_cast<qsizetype>(index));
        if (!co_await AppendOdd(readerFor(start), fileName, record.status))
          co_return LoadOutcome::UnstableFile;
      }
      Show(tracks, tables_.LastTrack(), static_cast<int>(count), QStringLiteral("Extracting Track Data.. ("));
      co_await turn.Yield();
    }
  }
  const auto forget = [names] { names->clear(); };
  co_await loop_.Offload(EventLoop::Lane::Apart, forget);
  ShowDone(tracks);
  co_return LoadOutcome::Done;
}

}  // namespace kelvo
