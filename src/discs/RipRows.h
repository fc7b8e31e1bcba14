#pragma once

#include "database/StagedName.h"
#include "discs/DiscToc.h"
#include "platform/RowStore.h"

#include <QObject>

#include <functional>
#include <vector>

namespace kelvo {

class Prompter;

/// What a rip or its check found of a row. A change of its name clears it.
enum class RipMark {
  None,
  InDatabase,  ///< yellow: a track of this name is in the music folder
  InUtility,   ///< red: one waits in the utility folder already
  Done,
};

/// A track of the disc as the operator names it. A value.
struct cTrack {
  TocTrack track;
  bool selected = false;
  QString name;  ///< ideally "Artist Name - Track Title"
  QString artist;
  QString year;  ///< "0000-xxx"; empty: not known
  RipMark mark = RipMark::None;
  QString words = {};  ///< what came of it, for people

  [[nodiscard]] double Megabytes() const;
  /// The title as the file tells it: with `fFormat` 1 the artist stands in front.
  [[nodiscard]] QString Title(int fFormat) const;
  /// The name of its staged file below the utility folder, without the ending.
  [[nodiscard]] QString FileName(const QString& album, int fFormat) const;
};

/// A piece of a staged name: trimmed, and "_" in place of \ / : ? * < > | and #. What would hide the file or
/// can't be in a name becomes "_" too.
[[nodiscard]] QString CleanPart(const QString& part);
/// Whether the name follows "Artist Name - Track Title".
[[nodiscard]] bool IsConventionalName(const QString& name);
/// Whether the text is a year, a dash and a month of the list ("0000-xxx", "1999-Dec").
[[nodiscard]] bool IsRipDate(const QString& text);
/// "xxx", "Jan" to "Dec".
[[nodiscard]] const QStringList& RipMonths();
/// Whether an artist of this name can be filed; names that begin with "~" are the program's own.
[[nodiscard]] bool IsRipArtist(const QString& name);

/// The grid of the ripper: the sound of the disc, a row each. Owned by the Ripper; logic thread.
class RipRows : public QObject {
  Q_OBJECT
 public:
  enum Column { Selected, Name, Artist, Year, Track, StartTime, Length, Size, ColumnCount };

  explicit RipRows(Prompter& prompter) : prompter_(prompter) {}

  [[nodiscard]] const RowStore<cTrack>& Store() const { return rows_; }
  [[nodiscard]] int Count() const { return rows_.Count(); }
  [[nodiscard]] const cTrack& Row(int row) const { return rows_[row]; }
  [[nodiscard]] static bool Editable(Column column) { return column >= Name && column <= Year; }
  [[nodiscard]] static QString Text(const cTrack& row, Column column);
  /// The rows with a tick.
  [[nodiscard]] std::vector<int> Ticked() const;

  /// The tracks of a disc, with its CD-Text as their names; what is hidden before track 1 comes first,
  /// without a tick. With `fFormat` 1 the artist is not put into the name.
  void Fill(const DiscToc& toc, int fFormat);
  void Clear() { rows_.Replace({}); }

  /// Types into a cell; false, with a word to the operator, for what it can't be.
  bool SetText(int row, Column column, const QString& text);
  void Tick(int row, bool on);
  void TickAll();
  void Invert();
  /// Puts the text into the column of all ticked rows; false, with a word, for what it can't be.
  bool FillTicked(Column column, const QString& text);
  /// "Unknown" and "0000-xxx" into what is empty of the ticked rows.
  void InsertDefaults();
  void SetMark(int row, RipMark mark, const QString& words = {});

 Q_SIGNALS:
  void TicksChanged();

 private:
  [[nodiscard]] bool Accepts(Column column, const QString& text);
  void Put(int row, Column column, const QString& text);

  Prompter& prompter_;
  RowStore<cTrack> rows_;
};

}  // namespace kelvo
