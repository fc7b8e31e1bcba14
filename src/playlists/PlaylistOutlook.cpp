#include "playlists/PlaylistOutlook.h"

#include "database/DatabaseSettings.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(PlaylistOutlook)
};

/// The play settings of these tracks; the defaults for one whose file can't be read.
std::vector<TrackPlaySettings> ReadSettings(const QStringList& paths, const TrackDefaults& defaults) {
  std::vector<TrackPlaySettings> settings;
  for (const QString& path : paths) {
    try {
      settings.push_back(ReadTrackInfo(path).value_or(TrackInfo()).Play(defaults));
    } catch (const Failure&) {
      settings.push_back(TrackInfo().Play(defaults));
    }
  }
  return settings;
}

}  // namespace

QString PlaylistOutlook::Words(const QDateTime& now) const {
  if (tracks + missing == 0) return {};
  QStringList words{tracks == 1 ? Text::tr("1 track") : Text::tr("%1 tracks").arg(tracks),
                    HoursMinutesSeconds(seconds)};
  if (tracks > 0) {
    words.append(Text::tr("ends at %1, overlaps counted")
                     .arg(now.addSecs(onAir).time().toString(QStringLiteral("HH:mm"))));
  }
  if (unknownLengths > 0) words.append(Text::tr("%1 of unknown length").arg(unknownLengths));
  if (missing > 0) words.append(Text::tr("%1 missing").arg(missing));
  return words.join(QStringLiteral(", "));
}

Job<PlaylistOutlook> ReckonOutlook(const PlaylistServices& services, std::vector<OutlookTrack> tracks,
                                   int missing) {
  PlaylistOutlook outlook;
  outlook.tracks = static_cast<int>(tracks.size());
  outlook.missing = missing;
  QStringList paths;
  for (const OutlookTrack& track : tracks) {
    paths.append(TrackInfoPath(services.paths, track.baseName));
    outlook.unknownLengths += track.seconds < 0 ? 1 : 0;
    outlook.seconds += std::max<qint64>(Int(track.seconds), 0);
  }
  outlook.onAir = outlook.seconds;
  if (!services.overlaps || tracks.size() < 2) co_return outlook;
  const auto read = [paths, defaults = ReadTrackDefaults(services.settings)] {
    return ReadSettings(paths, defaults);
  };
  const auto settings = co_await services.disks.Look(services.paths(Paths::Info), read);
  if (!settings) co_return outlook;
  const std::vector<int> overlaps = services.overlaps(*settings);
  for (std::size_t place = 0; place + 1 < tracks.size() && place < overlaps.size(); ++place) {
    const qint64 length = std::max<qint64>(Int(tracks[place].seconds), 0);
    outlook.onAir -= std::clamp<qint64>(overlaps[place], 0, length);
  }
  co_return outlook;
}

}  // namespace kelvo
