#pragma once

#include "database/Catalogue.h"
#include "database/StagedName.h"
#include "database/TrackTags.h"
#include "platform/RowStore.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace kelvo {

/// A file on its way from the utility folder into the database. Empty texts are shown as "Unknown".
struct TransferRow {
  int id = 0;  ///< its own for ever; rows move up as others go
  QString path;
  qint64 bytes = 0;
  QString trackName;  ///< with extension
  QString artist;
  QString album;
  QString category;
  QString date = kNoDate;
  int bpm = 0;         ///< beats per minute; 0 when they are not known
  QString trouble;     ///< why it cannot be played, or was not moved
  bool taken = false;  ///< its music file is in the database, the rest is under way
};

/// A name as it can be a reference of a track and a folder: clean, not hidden, not reserved, not too long;
/// empty for "Unknown" and for what begins with "~".
[[nodiscard]] QString ReferenceName(const QString& text);

/// The row of a waiting file. A tag's artist and numbered genre go before what the path says; its album and
/// year only fill what is missing; its beats per minute come from nowhere else.
[[nodiscard]] TransferRow RowOf(const QString& path, qint64 bytes, const TrackTags& tags);
/// The same with the file's size, tags and sound looked up. Blocks; any thread.
[[nodiscard]] TransferRow ReadTransferRow(const QString& path);

/// The rows of the transfer list. Artist, album, category and date can be edited, except while a run goes on.
/// Owned by the Transfer; logic thread.
class TransferRows {
 public:
  enum Column : int { Track, Size, Artist, Album, Category, Date };

  explicit TransferRows(const Catalogue& catalogue) : catalogue_(catalogue) {}

  [[nodiscard]] const RowStore<TransferRow>& Store() const { return rows_; }
  [[nodiscard]] const std::vector<TransferRow>& All() const { return rows_.All(); }
  /// The row of this id; none when it has gone.
  [[nodiscard]] const TransferRow* Find(int id) const;
  void Clear();
  void Append(std::vector<TransferRow> rows);
  /// The row of this file, if there is one.
  void Remove(const QString& path);
  void SetTaken(int id, bool taken);
  void SetTrouble(int id, const QString& trouble);

  /// What a cell shows, and what its editor begins with.
  [[nodiscard]] static QString Shown(const TransferRow& row, Column column);
  [[nodiscard]] static QString Text(const TransferRow& row, Column column);
  /// Types into a cell of a column that can be edited; false while a run goes on.
  bool SetText(int row, Column column, const QString& text);
  void SetLocked(bool locked) { locked_ = locked; }
  [[nodiscard]] bool Locked() const { return locked_; }

  /// Names to choose from for a cell of the column, and the words for making that list; empty for other
  /// columns.
  struct Choice {
    QString words;
    QStringList names;
  };
  [[nodiscard]] Choice ChoiceOf(int column) const;

 private:
  [[nodiscard]] int IndexOf(int id) const;

  const Catalogue& catalogue_;
  RowStore<TransferRow> rows_;
  int lastId_ = 0;
  bool locked_ = false;
};

}  // namespace kelvo
