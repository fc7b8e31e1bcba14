#include "requests/RequestTally.h"

#include "database/FolderListing.h"
#include "database/PlaylistEntry.h"
#include "database/StagedName.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QDir>

#include <algorithm>
#include <climits>

namespace kelvo {
namespace {

const QString kLinkEnding = QStringLiteral(".lnk");

/// The link of the track, by its name in the folder; empty when it has none yet.
QString FindLink(const QString& folder, const QString& name) {
  const QStringList files = ListFolder(folder, EntryKind::Files).names;
  const auto found = std::find_if(files.begin(), files.end(), [&name](const QString& file) {
    if (UpperExtension(file) != QLatin1StringView("LNK")) return false;
    const QString base = BaseName(file);
    return base.size() == name.size() && base.compare(name, Qt::CaseInsensitive) == 0;
  });
  return found == files.end() ? QString() : *found;
}

}  // namespace

int CountRequest(const QString& folder, const QString& name, const QString& path) {
  if (!QDir().mkpath(folder)) throw Failure(QStringLiteral("Cannot make the folder ") + folder, 0, folder);
  const QString fresh = FittingName(name, kLinkEnding);
  const QString known = FindLink(folder, BaseName(fresh));
  const QString file = folder + QLatin1Char('/') + (known.isEmpty() ? fresh : known);
  PlaylistLink link{path, {}};
  if (!known.isEmpty()) {
    try {
      link = PlaylistLink::Read(file);
    } catch (const Failure&) {
      // No link that can be read: what it counted is lost, and the track begins anew.
    }
    if (link.targetPath.isEmpty()) link.targetPath = path;
  }
  const double before = std::clamp(Val(link.arguments), 0.0, double{INT_MAX - 1});
  const int count = static_cast<int>(before) + 1;
  link.arguments = QString::number(count);
  link.Write(file);
  return count;
}

}  // namespace kelvo
