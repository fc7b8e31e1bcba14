#include "playlists/GroupLinks.h"

#include "database/GroupElement.h"
#include "database/LinkResolver.h"
#include "platform/Words.h"
#include "playlists/PlaylistFiles.h"

#include <algorithm>

namespace kelvo {
namespace {

/// As an entry's file is called by a save.
QString FiledName(const QString& name) {
  return EntryFileName::Parse(EntryFileName{1, name}.Saved()).name;
}

QString TargetName(const PlaylistEntry& entry) {
  return entry.link ? BaseName(FileNameOf(entry.link->targetPath)) : QString();
}

}  // namespace

std::vector<std::optional<std::size_t>> EntriesOf(const QStringList& names,
                                                  const std::vector<PlaylistEntry>& entries) {
  std::vector<std::optional<std::size_t>> found(static_cast<std::size_t>(names.size()));
  std::vector<bool> taken(entries.size());
  const auto take = [&](const auto& matches) {
    for (std::size_t line = 0; line < found.size(); ++line) {
      for (std::size_t place = 0; place < entries.size() && !found[line]; ++place) {
        if (taken[place] || !entries[place].IsLinkFile()) continue;
        if (!matches(names[static_cast<qsizetype>(line)], entries[place])) continue;
        taken[place] = true;
        found[line] = place;
      }
    }
  };
  take([](const QString& name, const PlaylistEntry& entry) {
    return entry.name.name.compare(FiledName(name), Qt::CaseInsensitive) == 0;
  });
  // Entries may be called otherwise than the tracks that they lead to.
  take([](const QString& name, const PlaylistEntry& entry) {
    return TargetName(entry).compare(name, Qt::CaseInsensitive) == 0;
  });
  return found;
}

std::vector<StoredLine> ReadStoredLines(const QString& folder, const QStringList& names) {
  const std::vector<PlaylistEntry> entries = ReadPlaylist(folder).entries;
  std::vector<StoredLine> lines;
  for (const std::optional<std::size_t>& place : EntriesOf(names, entries)) {
    StoredLine& line = lines.emplace_back();
    if (!place) continue;
    const PlaylistEntry& entry = entries[*place];
    line.recorded = entry.line;
    if (entry.link && ParseGroupLine(entry.link->arguments)) line.edited = entry.link->arguments;
  }
  return lines;
}

int WriteEditedLines(const QString& folder, const QStringList& names, const QStringList& lines) {
  const std::vector<PlaylistEntry> entries = ReadPlaylist(folder).entries;
  const std::vector<std::optional<std::size_t>> places = EntriesOf(names, entries);
  std::vector<LinkChange> changes;
  for (qsizetype line = 0; line < lines.size(); ++line) {
    const std::optional<std::size_t>& place = places[static_cast<std::size_t>(line)];
    if (!place) continue;
    const PlaylistEntry& entry = entries[*place];
    changes.push_back({entry.file, {entry.link ? entry.link->targetPath : QString(), lines[line]}});
  }
  if (!changes.empty()) RewriteLinks(folder, changes);
  return static_cast<int>(std::count(places.begin(), places.end(), std::nullopt));
}

}  // namespace kelvo
