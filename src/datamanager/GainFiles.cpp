#include "datamanager/GainFiles.h"

#include "database/KeptTracks.h"
#include "database/TrackInfo.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QFileInfo>

namespace kelvo {
namespace {

const QString kTag = QStringLiteral(" rGain");
const QString kNothing = QStringLiteral("?");

}  // namespace

void PlainGainFiles::Replace(QStringList paths) {
  paths_ = std::move(paths);
  Q_EMIT Replaced();
}

Job<std::vector<GainFiles::Entry>> PlainGainFiles::List() {
  std::vector<Entry> files;
  for (const QString& path : std::as_const(paths_)) files.push_back({path, kNothing});
  co_return files;
}

Job<> PlainGainFiles::Keep(QString /*path*/, Gain /*gain*/) {
  co_return;
}

CatalogueGainFiles::CatalogueGainFiles(EventLoop& loop, Catalogue& catalogue, Paths paths)
    : loop_(loop), catalogue_(catalogue), paths_(std::move(paths)) {
  Follow();
}

void CatalogueGainFiles::ListOnly(const QStringList& paths) {
  if (paths == only_) return;
  only_ = paths;
  Q_EMIT Replaced();
}

void CatalogueGainFiles::Follow() {
  catalogue_.Listen(
      this, [this](const CatalogueReplaced&) { Q_EMIT Replaced(); },
      [this](const TrackAdded& added) {
        if (ListsAll()) Q_EMIT Added({catalogue_.TrackPaths(added.track), catalogue_.TrackGain[added.track]});
      },
      [this](const TrackChanged& changed) {
        if (changed.fields & TrackField::Gain)
          Q_EMIT Recorded(catalogue_.TrackPaths(changed.track), catalogue_.TrackGain[changed.track]);
      },
      [this](const TrackRenamed& renamed) {
        only_.replaceInStrings(renamed.pathBefore, renamed.path);
        Q_EMIT Renamed(renamed.pathBefore, renamed.path);
      },
      [this](const TrackRemoved& removed) {
        // The last of those that were asked for leaves them as they are: none would mean all.
        if (only_.size() > 1) only_.removeAll(removed.path);
        Q_EMIT Removed(removed.path);
      });
}

Job<std::vector<GainFiles::Entry>> CatalogueGainFiles::List() {
  std::vector<Entry> files;
  if (!ListsAll()) {
    const QHash<QString, Mref> tracks = catalogue_.Find(only_);
    for (const QString& path : std::as_const(only_)) {
      if (tracks.contains(path)) {
        files.push_back({path, catalogue_.TrackGain[tracks.value(path)]});
      } else if (catalogue_.SoundBitePaths.contains(path)) {
        files.push_back({path, kNothing});
      }
    }
    co_return files;
  }
  Turn turn(loop_);
  for (TrackWalk walk(catalogue_); walk.Next();) {
    files.push_back({catalogue_.TrackPaths(walk.Track()), catalogue_.TrackGain[walk.Track()]});
    co_await turn.Yield();
  }
  co_return files;
}

Job<> CatalogueGainFiles::Keep(QString path, Gain gain) {
  const Mref before = catalogue_.Find(path);
  const QString record = InfoFields::GainRecord.text(gain);
  if (before == Mref::None || catalogue_.TrackGain[before] == record) co_return;
  const KeptTracks kept(catalogue_, {before});
  const auto write = [file = TrackInfoPath(paths_, BaseName(QFileInfo(path).fileName())), gain] {
    std::optional<TrackInfo> info = ReadTrackInfo(file);
    if (!info) return;
    info->Set(InfoFields::GainRecord, gain);
    WriteTrackInfo(file, *info);
  };
  try {
    co_await loop_.Offload(EventLoop::Lane::Files, write);
    TrackEdit edit;
    edit.gain = record;
    catalogue_.Change(kept[0], edit);
  } catch (...) {
    basHandleError(kTag, tr("The gain of %1 could not be stored.").arg(QFileInfo(path).fileName()));
  }
}

}  // namespace kelvo
