#include "demo_library/Library.h"

#include "demo_library/Jingles.h"
#include "demo_library/Pieces.h"
#include "demo_library/Renderer.h"
#include "platform/ErrorLog.h"
#include "platform/QtEventLoop.h"
#include "platform/Setting.h"
#include "platform/ShellLink.h"
#include "platform/SystemFacts.h"
#include "platform/TextFile.h"

#include <QDir>
#include <QFile>
#include <QLockFile>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace kelvo::demo {

namespace {

constexpr std::int64_t kNeededBytes = 64LL * 1024 * 1024;

// The places of the folders in FoldersOf.
enum FolderIndex : qsizetype {
  kPlaylists,
  kJingles,
  kMusic,
  kInfo,
  kCategories,
  kArtists,
  kAlbums,
  kUtility
};

QString SettingsTitle() {
  return QStringLiteral("Kelvo 2007");
}

void MakeFolder(const QString& path) {
  if (!QDir().mkpath(path)) throw Failure(QStringLiteral("Cannot make the folder %1").arg(path), errno, path);
}

/// Writes a file of the library that is being made; whole files are told from torn ones by the move at the
/// end.
void WriteNew(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush()) {
    throw Failure(QStringLiteral("Cannot write %1: %2").arg(path, file.errorString()), 0, path);
  }
}

/// Puts everything below `folder` on the disk for good.
void Sync(const QString& folder) {
  const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  const bool synced = ::syncfs(descriptor) == 0;
  const int failure = errno;
  ::close(descriptor);
  if (!synced) {
    throw Failure(
        QStringLiteral("Cannot write %1: %2").arg(folder, QString::fromLocal8Bit(std::strerror(failure))),
        failure, folder);
  }
}

bool HasAllFolders(const QString& folder) {
  const QStringList folders = FoldersOf(folder);
  return std::all_of(folders.begin(), folders.end(), [](const QString& each) { return QDir(each).exists(); });
}

QString NameOf(const Piece& piece) {
  return QString::fromUtf8(piece.artist) + QStringLiteral(" - ") + QString::fromUtf8(piece.title);
}

QString FileNameOf(const Piece& piece) {
  return NameOf(piece) + (piece.coding == Coding::Wave16 ? QStringLiteral(".wav") : QStringLiteral(".mp3"));
}

Plan PlanOf(const Piece& piece, double longest, std::uint32_t seed) {
  Plan plan;
  plan.style = piece.style;
  plan.key = piece.key;
  plan.bpm = piece.bpm;
  plan.seconds = longest > 0.0 ? std::min(piece.seconds, longest) : piece.seconds;
  plan.strongStart = piece.strongStart;
  plan.strongEnd = piece.strongEnd;
  plan.seed = seed;
  return plan;
}

TextFile InfoOf(const Piece& piece, std::size_t frames) {
  const auto references = [](QLatin1StringView base, const char* names) {
    return base + QLatin1Char(',') + QString::fromUtf8(names);
  };
  QStringList lines{
      references(QLatin1StringView("~ALL CATEGORIES"), piece.categories),
      references(QLatin1StringView("~ALL ARTISTS"), piece.artists),
      references(QLatin1StringView("~ALL ALBUMS"), piece.albums),
      QString::fromUtf8(piece.date),
      QString::number(piece.bpm),
      QString::fromUtf8(piece.highest),
      QString::fromUtf8(piece.playMode),
      QString::fromUtf8(piece.fadePosition),
      QString::fromUtf8(piece.fadeSpeed),
      piece.strongStart ? QStringLiteral("1") : QStringLiteral("0"),
      piece.strongEnd ? QStringLiteral("1") : QStringLiteral("0"),
      QStringLiteral("?"),
      QString::number(static_cast<double>(frames) / kSampleRate, 'f', 3),
  };
  lines.append(QString::fromUtf8(piece.comments).split(QLatin1Char('\n')));
  return TextFile(lines);
}

/// Makes one library in `workFolder`, which will later be `folder`.
class LibraryMaker {
 public:
  LibraryMaker(const LibraryOptions& options, const QString& workFolder, const Progress& progress)
      : options_(options),
        workFolder_(workFolder),
        work_(FoldersOf(workFolder)),
        progress_(progress),
        pieces_(AllPieces()) {
    if (options.pieces >= 0)
      pieces_ = pieces_.first(std::min(pieces_.size(), static_cast<std::size_t>(options.pieces)));
  }

  void Make() {
    for (const QString& folder : work_) MakeFolder(folder);
    MakeReferences();
    MakePlaylists();
    MakeJingleFiles();
    // The sound of the tracks is nearly all of the work.
    double done = 0.05;
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
      MakeTrack(pieces_[i], options_.seed * 1000U + static_cast<std::uint32_t>(i));
      done += 0.95 / static_cast<double>(pieces_.size());
      progress_(std::min(done, 1.0), NameOf(pieces_[i]));
    }
  }

 private:
  void MakeReferences() const {
    MakeFolder(work_[kCategories] + QStringLiteral("/~ALL CATEGORIES"));
    MakeFolder(work_[kArtists] + QStringLiteral("/~ALL ARTISTS"));
    MakeFolder(work_[kAlbums] + QStringLiteral("/~ALL ALBUMS"));
    const auto make = [](const QString& folder, const char* names) {
      for (const QString& name : QString::fromUtf8(names).split(QLatin1Char(',')))
        MakeFolder(folder + QLatin1Char('/') + name);
    };
    for (const Piece& piece : pieces_) {
      make(work_[kCategories], piece.categories);
      make(work_[kArtists], piece.artists);
      make(work_[kAlbums], piece.albums);
    }
  }

  void MakePlaylists() const {
    for (const QString& category :
         {QStringLiteral("Wedding Reception"), QStringLiteral("Stag Night"), QStringLiteral("Hen Night")}) {
      MakeFolder(work_[kPlaylists] + QLatin1Char('/') + category);
    }
    const QString music = FoldersOf(options_.folder)[kMusic];
    for (const DemoPlaylist& playlist : AllPlaylists()) {
      const QString folder = work_[kPlaylists] + QLatin1Char('/') + QString::fromUtf8(playlist.category) +
                             QLatin1Char('/') + QString::fromUtf8(playlist.name);
      MakeFolder(folder);
      int number = 0;
      for (const std::size_t index : playlist.pieces) {
        if (index >= pieces_.size()) continue;
        const Piece& piece = pieces_[index];
        ShellLink link;
        link.targetPath = music + QLatin1Char('/') + FileNameOf(piece);
        link.arguments = QStringLiteral("Std");
        WriteNew(QStringLiteral("%1/ %2~%3.lnk").arg(folder, QString::number(++number), NameOf(piece)),
                 link.ToBytes());
      }
    }
  }

  void MakeJingleFiles() const {
    WriteNew(workFolder_ + QStringLiteral("/ello.Mp3"),
             Encode(Render(MakeWarning(), options_.seed), Coding::Mp3Constant192));
    for (const Jingle& jingle : MakeJingles()) {
      const QString extension = jingle.asWave ? QStringLiteral(".wav") : QStringLiteral(".mp3");
      const Coding coding = jingle.asWave ? Coding::Wave16 : Coding::Mp3Constant192;
      WriteNew(work_[kJingles] + QLatin1Char('/') + jingle.name + extension,
               Encode(Render(jingle.score, options_.seed), coding));
    }
    progress_(0.05, QStringLiteral("Jingles"));
  }

  void MakeTrack(const Piece& piece, std::uint32_t seed) const {
    const StereoSound sound = Render(Compose(PlanOf(piece, options_.longest, seed)), seed);
    WriteNew(work_[kMusic] + QLatin1Char('/') + FileNameOf(piece), Encode(sound, piece.coding));
    WriteNew(work_[kInfo] + QLatin1Char('/') + NameOf(piece) + QStringLiteral(".kif"),
             InfoOf(piece, sound.Frames()).ToBytes());
  }

  const LibraryOptions& options_;
  QString workFolder_;
  QStringList work_;
  const Progress& progress_;
  std::span<const Piece> pieces_;
};

void MoveIntoPlace(const QString& workFolder, const QString& folder) {
  std::error_code error;
  // Takes the place of an empty folder, never of one that holds anything.
  std::filesystem::rename(workFolder.toStdU16String(), folder.toStdU16String(), error);
  if (error) {
    throw Failure(QStringLiteral("Cannot move the library to %1: %2")
                      .arg(folder, QString::fromStdString(error.message())),
                  error.value(), folder);
  }
}

/// Refuses what would go wrong later, before any work is done.
void CheckPlace(const LibraryOptions& options) {
  if (options.folder.contains(QLatin1Char(','))) {
    throw Failure(QStringLiteral("The path %1 holds a comma, which the settings use between paths")
                      .arg(options.folder));
  }
  if (QFileInfo(options.folder).exists() &&
      !QDir(options.folder).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)) {
    throw Failure(
        QStringLiteral("%1 is there already and not empty: nothing was changed").arg(options.folder));
  }
  const QString parent = QFileInfo(options.folder).absolutePath();
  MakeFolder(parent);
  if (!QFileInfo(parent).isWritable())
    throw Failure(QStringLiteral("No permission to write in %1").arg(parent));
  const std::int64_t free = FreeBytes(parent);
  if (free >= 0 && free < kNeededBytes) {
    throw Failure(
        QStringLiteral("%1 has only %2 MB free; the library needs up to %3 MB")
            .arg(parent, QString::number(free / 1024 / 1024), QString::number(kNeededBytes / 1024 / 1024)));
  }
}

void NameInSettings(SettingsStore& settings, const QString& folder) {
  const QString startup = QStringLiteral("Startup");
  settings.SaveSetting(SettingsTitle(), startup, QStringLiteral("Paths"), JoinFields(FoldersOf(folder)));
  const QString warning = QStringLiteral("AudioWarningFilePath");
  if (settings.GetSetting(SettingsTitle(), startup, warning).isEmpty()) {
    settings.SaveSetting(SettingsTitle(), startup, warning, folder + QStringLiteral("/ello.Mp3"));
  }
  settings.Flush();
}

void Build(const LibraryOptions& options, const Progress& progress) {
  const QString workFolder = options.folder + QStringLiteral(".partial");
  if (QFileInfo::exists(workFolder) && !QDir(workFolder).removeRecursively()) {
    throw Failure(QStringLiteral("Cannot remove %1, left by an earlier run").arg(workFolder));
  }
  try {
    LibraryMaker(options, workFolder, progress).Make();
    Sync(workFolder);
    MoveIntoPlace(workFolder, options.folder);
  } catch (...) {
    QDir(workFolder).removeRecursively();
    throw;
  }
}

/// Builds the library unless another run that was at it at the same time has done so. Returns whether it did.
bool BuildAlone(const LibraryOptions& options, const Progress& progress) {
  CheckPlace(options);
  QLockFile lock(options.folder + QStringLiteral(".lock"));
  if (!lock.tryLock(120000)) {
    throw Failure(QStringLiteral("Another run is still making %1").arg(options.folder));
  }
  if (options.ifMissing && HasAllFolders(options.folder)) return false;
  Build(options, progress);
  return true;
}

}  // namespace

QStringList FoldersOf(const QString& folder) {
  static constexpr std::array kNames{QLatin1StringView("_Playlists"),   QLatin1StringView("_Jingles"),
                                     QLatin1StringView("_Music files"), QLatin1StringView("_Extra"),
                                     QLatin1StringView("_Categories"),  QLatin1StringView("_Artists"),
                                     QLatin1StringView("_Albums"),      QLatin1StringView("_Utility")};
  QStringList folders;
  for (const QLatin1StringView name : kNames) folders.append(folder + QStringLiteral("/Kelvo2007") + name);
  return folders;
}

Outcome MakeLibrary(const LibraryOptions& options, const Progress& progress) {
  QtEventLoop loop;
  std::optional<SettingsStore> settings;
  if (!options.settingsFile.isEmpty()) {
    MakeFolder(QFileInfo(options.settingsFile).absolutePath());
    settings.emplace(loop, options.settingsFile);
    const QString paths =
        settings->GetSetting(SettingsTitle(), QStringLiteral("Startup"), QStringLiteral("Paths"));
    if (!paths.isEmpty() && options.ifMissing) return Outcome::NothingToDo;
    if (!paths.isEmpty() && !options.replace && paths != JoinFields(FoldersOf(options.folder))) {
      throw Failure(QStringLiteral("%1 names another library; --replace points it at this one")
                        .arg(options.settingsFile));
    }
  }

  const bool whole = options.ifMissing && HasAllFolders(options.folder);
  const bool made = !whole && BuildAlone(options, progress);
  if (settings) NameInSettings(*settings, options.folder);
  return made ? Outcome::Made : Outcome::NothingToDo;
}

}  // namespace kelvo::demo
