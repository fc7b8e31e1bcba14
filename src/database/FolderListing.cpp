#include "database/FolderListing.h"

#include "platform/ErrorLog.h"
#include "platform/LinkTargets.h"

#include <QFile>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace kelvo {
namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};
using FolderHandle = std::unique_ptr<DIR, CloseFolder>;

FolderHandle OpenFolder(const QString& folder) {
  return FolderHandle(opendir(QFile::encodeName(folder).constData()));
}

/// What an entry is; none when it is neither or that is unknown.
std::optional<EntryKind> KindOf(DIR* folder, const QString& place, const dirent& entry, LinkTargets& links) {
  if (entry.d_type == DT_REG) return EntryKind::Files;
  if (entry.d_type == DT_DIR) return EntryKind::Folders;
  if (entry.d_type == DT_LNK) {
    const QString name = QFile::decodeName(static_cast<const char*>(entry.d_name));
    switch (links.KindOf(place + QLatin1Char('/') + name)) {
      case LinkTargets::Kind::File:
        return EntryKind::Files;
      case LinkTargets::Kind::Folder:
        return EntryKind::Folders;
      case LinkTargets::Kind::Other:
        return std::nullopt;
      case LinkTargets::Kind::Unknown:
        // A track on a disk that does not answer now is a track all the same.
        return name.contains(QLatin1Char('.')) ? EntryKind::Files : EntryKind::Folders;
    }
  }
  struct stat facts {};
  if (fstatat(dirfd(folder), static_cast<const char*>(entry.d_name), &facts, 0) != 0) return std::nullopt;
  if (S_ISREG(facts.st_mode)) return EntryKind::Files;
  if (S_ISDIR(facts.st_mode)) return EntryKind::Folders;
  return std::nullopt;
}

struct Entry {
  std::string sortKey;
  std::string name;
};

std::string UpperKey(std::string_view name) {
  const bool ascii =
      std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 128; });
  if (!ascii)
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())).toUpper().toStdString();
  std::string upper(name);
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  return upper;
}

}  // namespace

FolderListing ListFolder(const QString& folder, EntryKind kind) {
  const auto fail = [&folder](int error) {
    throw Failure(
        QStringLiteral("Cannot read the folder %1: %2").arg(folder, QString::fromLocal8Bit(strerror(error))),
        error, folder);
  };
  const FolderHandle handle = OpenFolder(folder);
  if (!handle) fail(errno);
  FolderListing listing;
  LinkTargets links;
  std::vector<Entry> entries;
  for (;;) {
    errno = 0;
    const dirent* const entry = readdir(handle.get());
    // Half a folder must not pass for a whole one.
    if (entry == nullptr && errno != 0) fail(errno);
    if (entry == nullptr) break;
    const std::string_view name = static_cast<const char*>(entry->d_name);
    if (name == "." || name == "..") continue;
    if (KindOf(handle.get(), folder, *entry, links) != kind) continue;
    const QString text = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
    if (name.starts_with('.')) {
      listing.hidden.append(text);
    } else if (text.contains(QChar::ReplacementCharacter)) {
      listing.unusable.append(text);
    } else {
      entries.push_back({UpperKey(name), std::string(name)});
    }
  }
  std::sort(entries.begin(), entries.end(), [](const Entry& left, const Entry& right) {
    return std::tie(left.sortKey, left.name) < std::tie(right.sortKey, right.name);
  });
  listing.names.reserve(static_cast<qsizetype>(entries.size()));
  for (const Entry& entry : entries) listing.names.append(QString::fromStdString(entry.name));
  return listing;
}

bool HoldsFiles(const QString& folder) {
  const FolderHandle handle = OpenFolder(folder);
  if (!handle) return false;
  LinkTargets links;
  while (const dirent* entry = readdir(handle.get())) {
    if (KindOf(handle.get(), folder, *entry, links) == EntryKind::Files) return true;
  }
  return false;
}

}  // namespace kelvo
