#pragma once

#include "platform/Trash.h"

#include <QString>
#include <QStringList>

#include <array>
#include <atomic>
#include <memory>
#include <vector>

namespace kelvo {

/// The levels of the Info Centre: categories are folders, topics folders in them, titles texts in these.
enum class InfoLevel { Category, Topic, Title };
inline constexpr std::array kInfoLevels{InfoLevel::Category, InfoLevel::Topic, InfoLevel::Title};

/// A title of the Info Centre, or the way to a place for one: what comes behind an empty name is empty too. A
/// value.
struct InfoPath {
  QString category = {};
  QString topic = {};
  QString title = {};

  [[nodiscard]] const QString& operator[](InfoLevel level) const;
  /// The same way as far as `level`, with this name there.
  [[nodiscard]] InfoPath With(InfoLevel level, const QString& name) const;
  bool operator==(const InfoPath&) const = default;
};

// The tree on disk. All block (off the logic's thread) and throw Failure.

/// The folder that holds the names of a level.
[[nodiscard]] QString FolderOf(const QString& root, const InfoPath& path, InfoLevel level);
/// The names there, in the order of their upper-cased forms.
[[nodiscard]] QStringList InfoNames(const QString& root, const InfoPath& path, InfoLevel level);

/// What is in a folder, at any depth.
struct InfoCount {
  int folders = 0;
  int files = 0;
};
[[nodiscard]] InfoCount CountIn(const QString& folder);

/// Folders go with their content.
void DiscardEntry(const QString& root, const InfoPath& path, InfoLevel level, const Trash& trash);
/// False, with nothing done, when that name is taken.
[[nodiscard]] bool RenameEntry(const QString& root, const InfoPath& path, InfoLevel level,
                               const QString& name);

/// A title in which words were found.
struct InfoHit {
  InfoPath path;
  QString excerpt;  ///< the first line that has one of the words
};
/// The titles that have all words in their names or texts, however they are accented, at most `most`. Ends
/// early when `stop` is set. A text that can't be read is passed over.
[[nodiscard]] std::vector<InfoHit> FindInBank(const QString& root, const QStringList& words, std::size_t most,
                                              const std::shared_ptr<std::atomic<bool>>& stop);

}  // namespace kelvo
