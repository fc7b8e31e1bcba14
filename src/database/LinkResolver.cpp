#include "database/LinkResolver.h"

#include "database/Catalogue.h"
#include "database/KeptTracks.h"
#include "platform/Words.h"

#include <QFileInfo>

#include <array>

namespace kelvo {
namespace {

/// The tracks of these names, by their keys. A catalogue that changes meanwhile is looked through again.
Job<QHash<QString, Mref>> FindNames(EventLoop& loop, const Catalogue& catalogue, QSet<QString> wanted) {
  QHash<QString, Mref> found;
  if (wanted.isEmpty()) co_return found;
  bool changed = true;
  QObject listener;
  catalogue.Listen(
      &listener, [&changed](const CatalogueReplaced&) { changed = true; },
      [&changed](const TrackRemoved&) { changed = true; },
      [&changed](const TrackRenamed&) { changed = true; });
  while (changed) {
    changed = false;
    found.clear();
    Turn turn(loop);
    for (int row = 1; row <= catalogue.LastTrack() && !changed; ++row) {
      const QString key = LinkKey(catalogue.TrackNames[ToMref(row)]);
      // The first of two names that differ in case only.
      if (wanted.contains(key) && !found.contains(key)) found.insert(key, ToMref(row));
      co_await turn.Yield();
    }
  }
  co_return found;
}

/// The tracks that a link may mean, the better one first.
enum Candidate : std::size_t { ByTarget, ByName, CandidateCount };
using Keys = std::array<QString, CandidateCount>;

Keys KeysOf(const LinkQuestion& link) {
  return {LinkKey(BaseName(FileNameOf(link.targetPath))), LinkKey(link.name)};
}

class Answers {
 public:
  void Ask(const QString& path) {
    if (path.isEmpty() || places_.contains(path)) return;
    places_.insert(path, static_cast<std::size_t>(paths_.size()));
    paths_.append(path);
  }
  [[nodiscard]] const QStringList& Paths() const { return paths_; }
  void Take(Disks::Answers answers) { answers_ = std::move(answers); }
  /// None: its disk does not answer.
  [[nodiscard]] std::optional<bool> There(const QString& path) const {
    if (!places_.contains(path)) return false;
    return answers_[places_.value(path)];
  }

 private:
  QStringList paths_;
  QHash<QString, std::size_t> places_;
  Disks::Answers answers_;
};

/// A relative path would be one of the folder that the program was started in; to Qt a colon in front means
/// a resource of the program.
QString PathHere(const QString& targetPath) {
  return targetPath.startsWith(QLatin1Char('/')) ? targetPath : QString();
}

QString InFolder(const QString& folder, const QString& targetPath) {
  const QString name = FileNameOf(targetPath);
  return folder.isEmpty() || name.isEmpty() ? QString() : folder + QLatin1Char('/') + name;
}

}  // namespace

QString LinkKey(const QString& baseName) {
  return baseName.normalized(QString::NormalizationForm_C).toCaseFolded();
}

QString FileNameOf(const QString& path) {
  const bool foreign = !path.startsWith(QLatin1Char('/')) && path.contains(QLatin1Char('\\'));
  const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
  return path.sliced(std::max(slash, foreign ? path.lastIndexOf(QLatin1Char('\\')) : -1) + 1);
}

Job<std::vector<ResolvedLink>> ResolveLinks(EventLoop& loop, Disks& disks, const Catalogue& catalogue,
                                            QString musicFolder, std::vector<LinkQuestion> links) {
  QSet<QString> wanted;
  for (const LinkQuestion& link : links) {
    for (const QString& key : KeysOf(link)) {
      if (!key.isEmpty()) wanted.insert(key);
    }
  }
  const QHash<QString, Mref> named = co_await FindNames(loop, catalogue, std::move(wanted));
  std::vector<Mref> tracks;
  Answers answers;
  for (const LinkQuestion& link : links) {
    answers.Ask(PathHere(link.targetPath));
    for (const QString& key : KeysOf(link)) {
      tracks.push_back(named.value(key, Mref::None));
      answers.Ask(catalogue.TrackPaths(tracks.back()));
    }
    answers.Ask(InFolder(musicFolder, link.targetPath));
  }
  const KeptTracks kept(catalogue, std::move(tracks));
  const std::function<bool(const QString&)> exists = [](const QString& path) {
    return QFileInfo::exists(path);
  };
  const QStringList paths = answers.Paths();
  answers.Take(co_await disks.LookAtEach(paths, exists));

  std::vector<ResolvedLink> resolved;
  for (std::size_t place = 0; place < links.size(); ++place) {
    const LinkQuestion& link = links[place];
    bool silent = false;
    const auto there = [&answers, &silent](const QString& path) {
      const std::optional<bool> answer = answers.There(path);
      silent = silent || !answer;
      return answer.value_or(false);
    };
    const QString target = PathHere(link.targetPath);
    ResolvedLink result;
    if (there(target)) {
      const Mref track = kept[place * CandidateCount + ByTarget];
      result = {track == Mref::None ? LinkState::NotInDatabase : LinkState::Found, track, target};
    }
    for (std::size_t which = ByTarget; which < CandidateCount && result.path.isEmpty(); ++which) {
      const Mref track = kept[place * CandidateCount + which];
      const QString path = catalogue.TrackPaths(track);
      if (track != Mref::None && there(path)) result = {LinkState::Found, track, path};
    }
    const QString stray = InFolder(musicFolder, link.targetPath);
    if (result.path.isEmpty() && there(stray)) result = {LinkState::NotInDatabase, Mref::None, stray};
    if (result.path.isEmpty() && silent) result.state = LinkState::NoAnswer;
    resolved.push_back(std::move(result));
  }
  co_return resolved;
}

}  // namespace kelvo
