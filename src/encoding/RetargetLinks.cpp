#include "encoding/RetargetLinks.h"

#include "database/PlaylistEntry.h"
#include "platform/ErrorLog.h"

#include <QDirIterator>

#include <optional>

namespace kelvo {
namespace {

std::optional<PlaylistLink> LinkAt(const QString& path) {
  try {
    return PlaylistLink::Read(path);
  } catch (const Failure&) {
    return std::nullopt;
  }
}

}  // namespace

void RetargetLinks(const QString& playlists, const QString& from, const QString& to) {
  for (QDirIterator each(playlists, {QStringLiteral("*.lnk")}, QDir::Files, QDirIterator::Subdirectories);
       each.hasNext();) {
    const QString path = each.next();
    std::optional<PlaylistLink> link = LinkAt(path);
    if (!link || link->targetPath.compare(from, Qt::CaseInsensitive) != 0) continue;
    link->targetPath = to;
    link->Write(path);
  }
}

}  // namespace kelvo
