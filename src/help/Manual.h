#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <vector>

namespace kelvo {

/// A page of the manual: one Markdown file.
struct ManualPage {
  QString id;     ///< its file name without the ending
  QString title;  ///< its first heading
  QString text;   ///< Markdown, without what only this room reads
  QString plain;  ///< what a search looks through: no signs, no accents, lower case
};

/// A page in which words were found.
struct ManualHit {
  int page = 0;
  QString excerpt;  ///< the first paragraph that has one of the words
};

/// A place in the manual: a page, and a heading in it.
struct ManualPlace {
  QString page;
  QString heading = {};  ///< see SlugOf; empty: the top
  bool operator==(const ManualPlace&) const = default;
};

/// The pages of the manual, read once from the folder that holds them, in the order of the links of its page
/// "index". A page says in remarks for which windows it is, by their ids in the table of windows, and for
/// which help topics; such a remark stands below the heading that it leads to:
///
///     <!-- windows: Import Transfer -->
///     <!-- topics: 9100 -->
///
/// A value; any thread.
class Manual {
 public:
  /// `folder` may be one of the program's own resources. Pages that can't be read are left out.
  explicit Manual(const QString& folder);

  /// The one that is part of the program.
  [[nodiscard]] static Manual OfProgram();

  [[nodiscard]] const QString& Folder() const { return folder_; }
  [[nodiscard]] const std::vector<ManualPage>& Pages() const { return pages_; }
  /// -1 when there is none.
  [[nodiscard]] int PageOf(const QString& id) const;
  /// Where the help of a window begins; the contents where none is written.
  [[nodiscard]] ManualPlace ForWindow(const QString& id) const;
  [[nodiscard]] bool HasWindow(const QString& id) const { return windows_.contains(id); }
  [[nodiscard]] ManualPlace ForTopic(int topic) const;

  /// The pages with all these words, those with one of them in the title first; empty words find none.
  [[nodiscard]] std::vector<ManualHit> Find(const QString& words) const;

  /// A heading as links name it: lower case, "-" for blanks, no other signs.
  [[nodiscard]] static QString SlugOf(const QString& heading);
  /// Where the links and pictures of a page lead, as they are written.
  [[nodiscard]] static QStringList LinksOf(const ManualPage& page);
  /// The headings of a page, as slugs.
  [[nodiscard]] static QStringList HeadingsOf(const ManualPage& page);

 private:
  void Read(const QString& id);

  QString folder_;
  std::vector<ManualPage> pages_;
  QHash<QString, ManualPlace> windows_;
  QHash<QString, ManualPlace> topics_;
};

}  // namespace kelvo
