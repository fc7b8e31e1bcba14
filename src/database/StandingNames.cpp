#include "database/StandingNames.h"

#include "database/FolderListing.h"
#include "platform/ErrorLog.h"

namespace kelvo {
namespace {

QString StagedKey(const StagedName& name) {
  return StagedPath(QString(), name).toUpper();
}

}  // namespace

StandingNames StandingNames::Read(const Paths& paths) {
  StandingNames standing;
  for (const QString& name : ListFolder(paths(Paths::Music), EntryKind::Files).names) {
    standing.music_.insert(name.toUpper());
  }
  const QString& utility = paths(Paths::Utility);
  for (const QString& artist : ListFolder(utility, EntryKind::Folders).names) {
    standing.artists_.insert(artist.toUpper(), artist);
    const QString folder = QLatin1Char('/') + artist + QLatin1Char('/');
    // A folder that can't be read takes no file either: that is found out when one is to go there.
    try {
      for (const QString& name : ListFolder(utility + QLatin1Char('/') + artist, EntryKind::Files).names) {
        standing.staged_.insert((folder + name).toUpper());
      }
    } catch (const Failure&) {
      continue;
    }
  }
  return standing;
}

bool StandingNames::InMusic(const StagedName& name) const {
  return music_.contains((name.title + name.extension).toUpper());
}

bool StandingNames::InUtility(const StagedName& name) const {
  return staged_.contains(StagedKey(name));
}

QString StandingNames::ArtistFolder(const QString& artist) const {
  return artists_.value(artist.toUpper(), artist);
}

void StandingNames::AddStaged(const StagedName& name) {
  staged_.insert(StagedKey(name));
  if (!artists_.contains(name.artist.toUpper())) artists_.insert(name.artist.toUpper(), name.artist);
}

}  // namespace kelvo
