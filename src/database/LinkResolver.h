#pragma once

#include "database/TextColumns.h"
#include "platform/Disks.h"
#include "platform/Job.h"

#include <QString>

#include <vector>

namespace kelvo {

class Catalogue;

/// What an entry of a playlist leads to.
enum class LinkState {
  Found,          ///< a track of the database whose file is there
  NotInDatabase,  ///< its file is there, but is no track
  NotFound,       ///< neither its target nor a track of its name is there
  NoAnswer,       ///< the disk that it leads to does not answer
};

/// A link as it is to be resolved.
struct LinkQuestion {
  QString targetPath;  ///< may be empty, or of another system
  QString name;        ///< of the entry; empty: only the target counts
};

struct ResolvedLink {
  LinkState state = LinkState::NotFound;
  Mref track = Mref::None;
  QString path;  ///< of the file that is there; empty when none is
};

/// A name of a track as links are compared with it: the same for names that differ in case, or in how a file
/// system composes their accents.
[[nodiscard]] QString LinkKey(const QString& baseName);

/// The name of the file that a path of this or another system names, without its folders.
[[nodiscard]] QString FileNameOf(const QString& path);

/// The one answer to what a link leads to, for whoever reads, mends or follows playlists. A target that is
/// there counts, and is the track of its base name. One that is empty or gone is looked up in the database:
/// by its own name, then by the entry's. Names compare without case. `musicFolder` may hold files that the
/// database doesn't know; empty: it is not looked into. The track numbers are those of the moment at which
/// the job ends.
[[nodiscard]] Job<std::vector<ResolvedLink>> ResolveLinks(EventLoop& loop, Disks& disks,
                                                          const Catalogue& catalogue, QString musicFolder,
                                                          std::vector<LinkQuestion> links);

}  // namespace kelvo
