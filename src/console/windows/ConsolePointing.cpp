// The track that the operator points at, for the commands that work on it.

#include "console/windows/ConsoleWindow.h"
#include "console/windows/DeckPanel.h"
#include "console/windows/LibraryPanel.h"
#include "console/windows/QueuePanel.h"
#include "ui/ListTable.h"

namespace kelvo {

void ConsoleWindow::ListenInMonitor() {
  if (console_.Lock().Locked() || console_.Load() != nullptr) return;
  const int row = console_.Queue().Selected();
  if (queue_->List().hasFocus() && row > 0) {
    console_.Pfl().OpenFile(console_.Queue().Row(row).path, console_.Queue().Row(row).title);
  } else if (const Mref track = library_->CurrentTrack(); track != Mref::None) {
    console_.Pfl().OpenFile(console_.Tracks().TrackPaths(track), console_.Tracks().TrackNames[track]);
  }
}

void ConsoleWindow::WantRequest(const std::vector<Mref>& tracks) {
  const auto tell = [this](const QString& words) {
    Prompt message;
    message.text = words;
    message.icon = PromptIcon::Information;
    console_.GetServices().prompter.Tell(message);
  };
  if (tracks.empty()) {
    tell(tr("Select A Track First !"));
  } else if (tracks.size() > 1) {
    tell(QStringLiteral("Single Tracks Only !"));
  } else {
    Q_EMIT TrackWindowWanted(WindowId::kRequest, console_.Tracks().TrackPaths(tracks.front()));
  }
}

QString ConsoleWindow::PointedTrack() const {
  for (const Deck deck : kDecks) {
    const QString path = console_.Decks().Record(deck).FilePath;
    if (decks_[deck]->isAncestorOf(focusWidget()) && !path.isEmpty()) return path;
  }
  const Mref track = library_->CurrentTrack();
  const bool inLibrary = library_->isAncestorOf(focusWidget());
  if (inLibrary && track != Mref::None) return console_.Tracks().TrackPaths(track);
  const int row = console_.Queue().Selected();
  if (row > 0) return console_.Queue().Row(row).path;
  return console_.Tracks().TrackPaths(track);
}

}  // namespace kelvo
