#include "encoding/EncodedFiles.h"

#include "database/KeptTracks.h"
#include "database/TrackInfo.h"
#include "database/TransferSteps.h"
#include "platform/Words.h"

#include <QFileInfo>

namespace kelvo {

namespace {

using Info = std::optional<TrackInfo>;

bool IsIn(const QString& path, const QString& folder) {
  return !folder.isEmpty() && path.startsWith(folder + QLatin1Char('/'));
}

}  // namespace

Job<> EncodedFiles::Tell(Encoded file) {
  Catalogue& catalogue = services_.catalogue;
  if (QFileInfo(file.source).path() == services_.paths(Paths::Music)) {
    co_await TellTrack(std::move(file));
  } else if (QFileInfo(file.source).path() == services_.paths(Paths::Jingles)) {
    if (file.sourceGoes) catalogue.RemoveJingle(file.source);
    catalogue.AddJingle(file.target);
  } else if (IsIn(file.source, services_.paths(Paths::Utility))) {
    catalogue.AddStagedFile(file.target);
    if (file.sourceGoes) catalogue.RemoveStagedFile(file.source);
  }
}

void EncodedFiles::TellSourceStays(const QString& source) {
  if (QFileInfo(source).path() == services_.paths(Paths::Jingles)) services_.catalogue.AddJingle(source);
  if (IsIn(source, services_.paths(Paths::Utility))) services_.catalogue.AddStagedFile(source);
}

Job<> EncodedFiles::TellTrack(Encoded file) {
  Catalogue& catalogue = services_.catalogue;
  const KeptTracks track(catalogue, {catalogue.Find(file.source)});
  const QString fileName = QFileInfo(file.target).fileName();
  const auto write = [path = TrackInfoPath(services_.paths, BaseName(fileName))]() -> Info {
    Info info = ReadTrackInfo(path);
    if (!info) return info;
    info->SetText(InfoLine::GainRecord, QStringLiteral("?"));
    WriteTrackInfo(path, *info);
    return info;
  };
  const Info info = co_await services_.loop.Offload(EventLoop::Lane::Files, write);
  if (track[0] == Mref::None) co_return;
  if (info) catalogue.TakeInfo(track[0], *info);
  if (!file.sourceGoes) {
    if (info) StoreRow(catalogue, RowFrom(*info, fileName, file.seconds), file.target);
    co_return;
  }
  if (services_.relink) {
    const auto relink = [relink = services_.relink, file] { relink(file.source, file.target); };
    co_await services_.loop.Offload(EventLoop::Lane::Files, relink);
  }
  if (track[0] == Mref::None) co_return;
  // What had the name was replaced.
  const Mref replaced = catalogue.Find(file.target);
  if (replaced != Mref::None) catalogue.Remove(replaced);
  catalogue.Rename(track[0], fileName);
}

}  // namespace kelvo
