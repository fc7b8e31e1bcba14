// What the steps of a change mean for the catalogue, which learns of each once it is known to be done.

#include "database/TransferSteps.h"
#include "datamanager/LibraryChanges.h"
#include "platform/Words.h"

#include <QFileInfo>

#include <array>

namespace kelvo {
namespace {

constexpr std::array kSets{
    std::pair(Paths::Categories, ReferenceSet::Genres), std::pair(Paths::Artists, ReferenceSet::Artists),
    std::pair(Paths::Albums, ReferenceSet::Albums), std::pair(Paths::Playlists, ReferenceSet::Playlists)};

QString NameOf(const QString& path) {
  return QFileInfo(path).fileName();
}

}  // namespace

bool LibraryChanges::LiesIn(Paths::Slot slot, const QString& path) const {
  return QFileInfo(path).path() == services_.paths(slot);
}

std::optional<ReferenceSet> LibraryChanges::SetOf(const QString& folder) const {
  for (const auto& [slot, set] : kSets) {
    // A profile beside the folders is none of them.
    if (LiesIn(slot, folder) && services_.catalogue.References(set).contains(NameOf(folder))) return set;
  }
  return std::nullopt;
}

Job<> LibraryChanges::Follow(const ChangeStep& step, std::vector<Mref> tracks, bool back) {
  if (const auto* line = std::get_if<SetInfoLine>(&step)) {
    LineWasSet(*line, tracks, back);
  } else if (const auto* move = std::get_if<MoveEntry>(&step)) {
    back ? WasMoved(move->to, move->from) : WasMoved(move->from, move->to);
  } else if (const auto* discard = std::get_if<DiscardEntry>(&step)) {
    if (back) {
      co_await Came(discard->path);
    } else {
      Went(discard->path);
    }
  }
}

void LibraryChanges::LineWasSet(const SetInfoLine& step, const std::vector<Mref>& tracks, bool back) {
  const QString& text = back ? step.before : step.after;
  TrackEdit edit;
  switch (step.line) {
    case InfoLine::Categories:
      edit.genres = text;
      break;
    case InfoLine::Artists:
      edit.artists = text;
      break;
    case InfoLine::Albums:
      edit.albums = text;
      break;
    case InfoLine::ReleaseDate:
      edit.date = text;
      break;
    case InfoLine::Bpm:
      edit.bpm = text;
      break;
    case InfoLine::HiPos:
      edit.hi = text;
      break;
    case InfoLine::GainRecord:
      edit.gain = text;
      break;
    default:
      return;
  }
  for (const Mref track : tracks) services_.catalogue.Change(track, edit);
}

void LibraryChanges::WasMoved(const QString& from, const QString& to) {
  Catalogue& catalogue = services_.catalogue;
  if (LiesIn(Paths::Music, from)) {
    catalogue.Rename(catalogue.Find(from), NameOf(to));
  } else if (LiesIn(Paths::Jingles, from)) {
    catalogue.RenameJingle(from, to);
  } else if (const std::optional<ReferenceSet> set = SetOf(from)) {
    catalogue.RenameReference(*set, NameOf(from), NameOf(to));
  }
}

void LibraryChanges::Went(const QString& path) {
  Catalogue& catalogue = services_.catalogue;
  if (LiesIn(Paths::Music, path)) {
    catalogue.Remove(catalogue.Find(path));
  } else if (LiesIn(Paths::Jingles, path)) {
    catalogue.RemoveJingle(path);
  } else if (const std::optional<ReferenceSet> set = SetOf(path)) {
    catalogue.RemoveReference(*set, NameOf(path));
  }
}

Job<> LibraryChanges::Came(QString path) {
  Catalogue& catalogue = services_.catalogue;
  if (LiesIn(Paths::Jingles, path)) {
    catalogue.AddJingle(path);
    co_return;
  }
  for (const auto& [slot, set] : kSets) {
    if (!LiesIn(slot, path)) continue;
    const auto look = [path] { return QFileInfo(path).isDir(); };
    const bool folder = co_await services_.loop.Offload(EventLoop::Lane::Files, look);
    if (folder) catalogue.AddReference(set, NameOf(path));
    co_return;
  }
  if (!LiesIn(Paths::Music, path) || catalogue.Find(path) != Mref::None) co_return;
  const auto read = [infoPath = TrackInfoPath(services_.paths, BaseName(NameOf(path)))] {
    return ReadTrackInfo(infoPath).value_or(TrackInfo());
  };
  const TrackInfo info = co_await services_.loop.Offload(EventLoop::Lane::Files, read);
  catalogue.Append(RowFrom(info, NameOf(path), info.Get(InfoFields::DurationSeconds).value_or(-1)));
}

}  // namespace kelvo
