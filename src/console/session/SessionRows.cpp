#include "console/session/SessionRows.h"

#include "database/Catalogue.h"
#include "database/GroupElement.h"
#include "database/GroupWords.h"
#include "platform/Words.h"

#include <utility>

namespace kelvo {

QString SessionEvent::TimeWords() const {
  return ElementTime(static_cast<int>(Int(Time)));
}

QString SessionEvent::TrackWords() const {
  return QString::number(ToInt(Track));
}

QString SessionEvent::DeckWords() const {
  return QString::number(PlayerNumber(OnDeck));
}

QString SessionEvent::FadeWords() const {
  return FadeType == TransitionKind::None ? QStringLiteral("N/A") : FadeWord(FadeType);
}

QString SessionEvent::FadeNumber() const {
  return QString::number(static_cast<int>(FadeType));
}

QString SessionEvent::SpeedWords() const {
  return QString::number(Speed);
}

QString SessionEvent::CodeWords() const {
  return QString::number(static_cast<int>(Code));
}

QString SessionEvent::PosWords() const {
  return PositionText(Pos);
}

QString SessionEvent::LengthWords() const {
  return QString::number(Length);
}

QString SessionDescription(SessionCode code, const QString& track) {
  switch (code) {
    case SessionCode::Loaded:
      return track;
    case SessionCode::TrackStarted:
      return QStringLiteral("Track Started");
    case SessionCode::DubStarted:
      return QStringLiteral("Dub Started");
    case SessionCode::DubEnded:
      return QStringLiteral("Dub Ended");
    case SessionCode::FadeStarted:
      return QStringLiteral("Fade Started");
    case SessionCode::FadeEnded:
      return QStringLiteral("Fade Ended");
    case SessionCode::TrackStopped:
      return QStringLiteral("Track Stopped");
    case SessionCode::PositionChangedDeckOne:
    case SessionCode::PositionChangedDeckTwo:
      return QStringLiteral("Track Position Changed");
    case SessionCode::EndOfTrack:
      return QStringLiteral("End Of Track Reached");
    case SessionCode::Repeat:
      break;
  }
  return {};
}

bool PullsForward(SessionCode end, SessionCode before) {
  return (end == SessionCode::DubEnded && before != SessionCode::DubStarted) ||
         (end == SessionCode::FadeEnded && before != SessionCode::FadeStarted);
}

SessionRows::SessionRows(const Catalogue& catalogue) : catalogue_(catalogue) {
  catalogue_.Listen(
      this,
      [this](const TrackRenamed& renamed) {
        AlterAll([this, &renamed](SessionEvent& event) {
          if (event.Path != renamed.pathBefore) return;
          event.Path = renamed.path;
          if (event.Code == SessionCode::Loaded) event.Description = catalogue_.TrackNames[event.Track];
        });
      },
      [this](const TrackRemoved& removed) {
        AlterAll([&removed](SessionEvent& event) { event.Track = removed.Renumbered(event.Track); });
      },
      [this](const CatalogueReplaced&) { FindTracks(); });
}

template <typename Change>
void SessionRows::AlterAll(Change change) {
  if (rows_.Count() == 0) return;
  for (int row = 0; row < rows_.Count(); ++row) rows_.AlterUntold(row, change);
  rows_.TellChanged(0, rows_.Count() - 1);
}

void SessionRows::FindTracks() {
  if (rows_.Count() == 0) return;
  QStringList paths;
  for (const SessionEvent& event : rows_.All()) paths.append(event.Path);
  paths.removeDuplicates();
  const QHash<QString, Mref> tracks = catalogue_.Find(paths);
  AlterAll([&tracks](SessionEvent& event) { event.Track = tracks.value(event.Path, Mref::None); });
}

void SessionRows::SetTime(int row, double seconds) {
  rows_.Alter(row, [seconds](SessionEvent& event) { event.Time = seconds; });
}

void SessionRows::SetArguments(int row, const QString& text) {
  rows_.Alter(row, [&text](SessionEvent& event) { event.Arguments = text; });
}

}  // namespace kelvo
