// How the decks follow what happens to the catalogue: a track that is renamed while it plays stays the same
// track, for the queue, the session list and the length that is written back at its end.

#include "console/decks/DeckEngine.h"
#include "console/decks/DeckWords.h"
#include "database/DatabaseSettings.h"
#include "platform/Words.h"

namespace kelvo {

void DeckEngine::FollowCatalogue() {
  services_.catalogue.Listen(
      this, [this](const TrackInfoSaved& saved) { InfoWasSaved(saved); },
      [this](const TrackRenamed& renamed) { FileWasRenamed(renamed.pathBefore, renamed.path); },
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

void DeckEngine::TakeInfo(Deck deck, const TrackInfo& info) {
  DeckRecord& record = decks_[deck];
  const double known = services_.catalogue.TrackDurations(record.CatalogueIndex);
  record.Duration = known > 0 ? known : players_[deck]->Duration();
  record.Play = info.Play(ReadTrackDefaults(services_.settings));
  record.TrackInfoText = banners_[deck] + TrackInfoWords(info, record.Duration);
}

void DeckEngine::InfoWasSaved(const TrackInfoSaved& saved) {
  for (const Deck deck : kDecks) {
    DeckRecord& record = decks_[deck];
    // What the load has read may be older.
    if (record.Loading && coming_[deck].request.track == saved.track) coming_[deck].saved = saved.info;
    if (record.State == DeckState::Empty || record.CatalogueIndex != saved.track) continue;
    const TrackPlaySettings before = record.Play;
    const bool showsStyles = record.Info == StyleWords(before);
    TakeInfo(deck, saved.info);
    record.RemainSeconds = record.PlayedOut ? 0 : RemainOf(record);
    if (showsStyles) record.Info = StyleWords(record.Play);
    Q_EMIT Changed(deck);
    if (record.Play == before) continue;
    if (OnPlayChanged) OnPlayChanged(deck, before);
    if (record.State == DeckState::Loaded && !services_.state.AutoPlayOn) TakeFadeIn(deck);
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
