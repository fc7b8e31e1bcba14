#include "info/InfoBank.h"

#include "database/FolderListing.h"
#include "info/InfoFiles.h"
#include "platform/NewFile.h"
#include "platform/Words.h"

#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>
#include <filesystem>

namespace kelvo {
namespace {

namespace fs = std::filesystem;

fs::path PathOf(const QString& path) {
  return EncodedPath(path).toStdString();
}

bool HasAll(const QString& text, const QStringList& words) {
  return std::all_of(words.begin(), words.end(),
                     [&text](const QString& word) { return text.contains(word); });
}

/// The first line with one of the words; else the first one.
QString Excerpt(const QString& text, const QStringList& words) {
  const QStringList lines = LinesOfText(text);
  const auto found = std::find_if(lines.begin(), lines.end(), [&words](const QString& line) {
    const QString folded = FoldedText(line);
    return std::any_of(words.begin(), words.end(),
                       [&folded](const QString& word) { return folded.contains(word); });
  });
  if (lines.isEmpty()) return {};
  constexpr qsizetype kMost = 200;
  return (found == lines.end() ? lines.first() : *found).trimmed().left(kMost);
}

}  // namespace

const QString& InfoPath::operator[](InfoLevel level) const {
  if (level == InfoLevel::Category) return category;
  return level == InfoLevel::Topic ? topic : title;
}

InfoPath InfoPath::With(InfoLevel level, const QString& name) const {
  switch (level) {
    case InfoLevel::Category:
      return {name};
    case InfoLevel::Topic:
      return {category, name};
    case InfoLevel::Title:
      break;
  }
  return {category, topic, name};
}

QString FolderOf(const QString& root, const InfoPath& path, InfoLevel level) {
  QString folder = root;
  if (level != InfoLevel::Category) folder += QLatin1Char('/') + path.category;
  if (level == InfoLevel::Title) folder += QLatin1Char('/') + path.topic;
  return folder;
}

QStringList InfoNames(const QString& root, const InfoPath& path, InfoLevel level) {
  const QString folder = FolderOf(root, path, level);
  if (!QFileInfo(folder).isDir()) return {};
  const bool titles = level == InfoLevel::Title;
  QStringList names = ListFolder(folder, titles ? EntryKind::Files : EntryKind::Folders).names;
  if (!titles) return names;
  names.removeIf([](const QString& file) { return UpperExtension(file) != QLatin1StringView("TXT"); });
  for (QString& name : names) name = BaseName(name);
  return names;
}

InfoCount CountIn(const QString& folder) {
  InfoCount count;
  QDirIterator entries(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
  while (entries.hasNext()) {
    entries.next();
    ++(entries.fileInfo().isDir() ? count.folders : count.files);
  }
  return count;
}

void DiscardEntry(const QString& root, const InfoPath& path, InfoLevel level, const Trash& trash) {
  const QString folder = FolderOf(root, path, level);
  if (level == InfoLevel::Title) {
    DiscardInfo({folder, path.title}, trash);
  } else if (const QString entry = folder + QLatin1Char('/') + path[level]; !trash(entry)) {
    fs::remove_all(PathOf(entry));
  }
}

bool RenameEntry(const QString& root, const InfoPath& path, InfoLevel level, const QString& name) {
  const QString folder = FolderOf(root, path, level);
  if (level == InfoLevel::Title) return RenameInfo({folder, path.title}, name);
  const fs::path to = PathOf(folder + QLatin1Char('/') + name);
  if (fs::exists(fs::symlink_status(to))) return false;
  fs::rename(PathOf(folder + QLatin1Char('/') + path[level]), to);
  return true;
}

std::vector<InfoHit> FindInBank(const QString& root, const QStringList& words, std::size_t most,
                                const std::shared_ptr<std::atomic<bool>>& stop) {
  std::vector<InfoHit> hits;
  const auto look = [&](const InfoPath& path) {
    QString text;
    try {
      text = ReadInfo({FolderOf(root, path, InfoLevel::Title), path.title}).text;
    } catch (...) {
      // Its name counts all the same.
    }
    const QString all = FoldedText(path.title + QLatin1Char('\n') + text);
    if (HasAll(all, words)) hits.push_back({path, Excerpt(text, words)});
  };
  for (const QString& category : InfoNames(root, {}, InfoLevel::Category)) {
    for (const QString& topic : InfoNames(root, {category}, InfoLevel::Topic)) {
      for (const QString& title : InfoNames(root, {category, topic}, InfoLevel::Title)) {
        if (*stop || hits.size() >= most) return hits;
        look({category, topic, title});
      }
    }
  }
  return hits;
}

}  // namespace kelvo
