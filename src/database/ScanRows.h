#pragma once

#include "database/MediaSearch.h"
#include "platform/Job.h"
#include "platform/RowStore.h"

#include <QObject>
#include <QSet>

#include <array>
#include <deque>
#include <functional>
#include <vector>

namespace kelvo {

class EventLoop;
class Prompter;

enum ScanColumn {
  ScanTitleColumn,
  ScanArtistColumn,
  ScanDateColumn,
  ScanCommentsColumn,
  ScanFolderColumn,
  ScanPathColumn,
  ScanColumnCount
};

/// What the last import found of a row. A change of its name clears it.
enum class ScanMark {
  None,
  InDatabase,  ///< yellow: is in the music folder; is staged when it is imported again
  InUtility,   ///< red: waits in the utility folder already
  Copied
};

struct ScanRow {
  std::array<QString, ScanColumnCount> columns;
  ScanMark mark = ScanMark::None;
  QString trouble;  ///< why it cannot be played; see WhyNotPlayable

  [[nodiscard]] const QString& Text(ScanColumn column) const {
    return columns[static_cast<std::size_t>(column)];
  }
};

/// The files that a scan found, and the commands by which the operator names them. Rows count from 0. The
/// commands for many rows work by turns. Owned by ScanImport; logic thread.
class ScanRows : public QObject {
  Q_OBJECT
 public:
  ScanRows(EventLoop& loop, Prompter& prompter) : loop_(loop), prompter_(prompter) {}

  [[nodiscard]] const RowStore<ScanRow>& Store() const { return rows_; }
  [[nodiscard]] int Count() const { return rows_.Count(); }
  [[nodiscard]] const ScanRow& Row(int row) const { return rows_[row]; }
  [[nodiscard]] static bool Editable(ScanColumn column) { return column <= ScanCommentsColumn; }

  /// Adds those that are not listed yet, named and dated by their tags, else by their file and the present
  /// year.
  void Append(const std::vector<FoundFile>& files);
  void Clear();
  void Remove(std::vector<int> rows);
  void SetMark(int row, ScanMark mark);

  /// Types into a cell. False, with a word to the operator, for a date that is none; an empty title is
  /// refused too.
  bool SetText(int row, ScanColumn column, const QString& text);
  /// "Insert Into Selected Rows In Column".
  void Insert(const std::vector<int>& rows, ScanColumn column, const QString& text);
  /// Puts `with` in place of an artist in all rows, whatever the case of its letters.
  void ReplaceArtist(const QString& existing, const QString& with);
  /// Splits titles at the separator into artist and title: where it has a blank on each side, else at any.
  /// Titles without one stay.
  void ExtractArtists(const std::vector<int>& rows);
  void TakeArtistsFromFolders(const std::vector<int>& rows);
  /// Puts the artist and the separator before each title that doesn't begin with the artist.
  void PutArtistsInFront(const std::vector<int>& rows);

  /// Carries out at once what is still under way of the orders above.
  void FinishOrders() {
    WorkOff([] { return false; });
  }

  [[nodiscard]] const QString& Separator() const { return separator_; }
  /// Asks for another.
  void ChangeSeparator();

 Q_SIGNALS:
  void SeparatorChanged();

 private:
  using Change = std::function<void(ScanRow&)>;
  /// A change of many rows, and how far it is.
  struct Order {
    std::vector<int> rows;
    Change change;
    std::size_t next = 0;
  };
  void Give(std::vector<int> rows, Change change);
  [[nodiscard]] Job<> Work();
  /// Carries out orders until all are done or `pause` says so.
  void WorkOff(const std::function<bool()>& pause);
  [[nodiscard]] Job<> AskSeparator();
  [[nodiscard]] bool Accepts(ScanColumn column, const QString& text);
  static void Put(ScanRow& row, ScanColumn column, const QString& text);

  EventLoop& loop_;
  Prompter& prompter_;
  RowStore<ScanRow> rows_;
  QSet<QString> paths_;
  QString separator_ = QStringLiteral("-");
  std::deque<Order> orders_;  ///< in the order of the clicks
  Job<> working_;
  Job<> asking_;
};

}  // namespace kelvo
