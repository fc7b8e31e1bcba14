// How the decks follow what happens to the catalogue: a track that is renamed while it plays stays the same
// track, for the queue, the session list and the length that is written back at its end.

#include "console/decks/DeckEngine.h"
#include "platform/Words.h"

namespace kelvo {

void DeckEngine::FollowCatalogue() {
  services_.catalogue.Listen(
      this, [this](const TrackRenamed& renamed) { FileWasRenamed(renamed.pathBefore, renamed.path); },
      [this](const JingleChanged& change) {
        if (!change.path.isEmpty()) FileWasRenamed(change.before, change.path);
      },
      [this](const TrackRemoved& removed) {
        RenumberTracks([&removed](Mref track, const QString&) { return removed.Renumbered(track); });
      },
      [this](const CatalogueReplaced&) {
        RenumberTracks([this](Mref track, const QString& path) {
          return track == Mref::None ? track : services_.catalogue.Find(path);
        });
      });
}

void DeckEngine::FileWasRenamed(const QString& pathBefore, const QString& path) {
  if (LoadRequest& asked = services_.panel.Asked(); asked.path == pathBefore) asked.path = path;
  for (const Deck deck : kDecks) {
    DeckRecord& record = decks_[deck];
    if (record.FilePath == pathBefore) {
      record.FilePath = path;
      record.Title = ProperCase(BaseNameOf(path));
      Q_EMIT Changed(deck);
    }
    // The file may not have been opened yet, and would be sought in vain: the load begins anew.
    if (record.Loading && coming_[deck].request.path == pathBefore) {
      coming_[deck].request.path = path;
      openWatches_[deck].timer.Stop();
      loads_[deck] = RunLoad(deck);
    }
  }
}

void DeckEngine::RenumberTracks(const std::function<Mref(Mref track, const QString& path)>& number) {
  LoadRequest& asked = services_.panel.Asked();
  asked.track = number(asked.track, asked.path);
  for (const Deck deck : kDecks) {
    DeckRecord& record = decks_[deck];
    record.CatalogueIndex = number(record.CatalogueIndex, record.FilePath);
    LoadRequest& coming = coming_[deck].request;
    coming.track = number(coming.track, coming.path);
  }
}

}  // namespace kelvo
