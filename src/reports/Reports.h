#pragma once

#include "database/Catalogue.h"
#include "platform/Disks.h"
#include "platform/EventLoop.h"
#include "platform/Prompter.h"
#include "platform/RowStore.h"
#include "reports/PlayCounts.h"
#include "reports/Report.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace kelvo {

/// Makes the reports: lists the rows, writes them as text, for a spreadsheet and for print, and shows the
/// day's log. It does one thing at a time; each file is made of rows that are read anew, which are then those
/// on the screen. Owned by its window's host; logic thread, files and sorting off it.
class Reports : public QObject {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    Disks& disks;
    Prompter& prompter;
    const Catalogue& catalogue;
    QString program;    ///< its title
    QString documents;  ///< the operator's documents; empty: nothing can be written
    /// The places where the log of a day may be.
    std::function<QStringList(const QDate&)> logFiles;
    /// The report as a PDF. Called off the logic's thread.
    std::function<QByteArray(const Report&)> print;
    /// Shows a text file.
    std::function<void(const QString& path)> show;
  };
  /// A play report covers no more days.
  static constexpr int kMostDays = 3660;

  explicit Reports(Services services);

  [[nodiscard]] ReportKind Kind() const { return kind_; }
  /// The days of a play report, both included.
  [[nodiscard]] const QDate& From() const { return from_; }
  [[nodiscard]] const QDate& To() const { return to_; }
  /// Lists its rows.
  void SetKind(ReportKind kind);
  void SetDays(const QDate& from, const QDate& to);

  /// Lists the rows, without a file.
  void List();
  /// "Start": asks for the lines of a page, writes the text file and shows it.
  void Start();
  void WriteCsv();
  void WritePdf();
  /// "Play Log": the log of the present day.
  void ShowPlayLog();
  void Stop();

  /// The rows of the reports of tracks, and of those of plays; the other list is empty.
  [[nodiscard]] const RowStore<QStringList>& TrackRows() const { return tracks_; }
  [[nodiscard]] const RowStore<QStringList>& PlayRows() const { return plays_; }
  /// "Titles = 3, Times Played = 12", and what is missing; empty before the first list.
  [[nodiscard]] const QString& Totals() const { return totals_; }

  [[nodiscard]] bool Busy() const { return work_.Running(); }
  /// "Creating Your Report...Please wait.", or what was written last.
  [[nodiscard]] const QString& Hint() const { return hint_; }
  /// "Creating Report (40%)"; empty while none is made.
  [[nodiscard]] const QString& Progress() const { return progress_; }
  [[nodiscard]] std::optional<double> Share() const { return share_; }
  /// Why nothing can be written now, in words; empty when it can.
  [[nodiscard]] QString WhyNoFile() const;
  /// The folder of the files.
  [[nodiscard]] QString Folder() const;

 Q_SIGNALS:
  void Changed();

 private:
  using Made = std::shared_ptr<const Report>;
  using Bytes = std::function<QByteArray(const Report&)>;

  void Begin(Job<> work);
  [[nodiscard]] Job<> Run(Job<> work);
  [[nodiscard]] Job<Made> Make();
  [[nodiscard]] Job<std::vector<QStringList>> TrackRowsNow();
  [[nodiscard]] Job<std::vector<QStringList>> PlayRowsNow(std::shared_ptr<const PlayCounts> counts);
  void TellShare(int done, int all);
  [[nodiscard]] Job<> RunList();
  [[nodiscard]] Job<> RunStart();
  /// Makes the report and writes it with this ending; the path, empty when it could not be written.
  [[nodiscard]] Job<QString> WriteFile(QString ending, Bytes bytes);
  [[nodiscard]] Job<> RunWrite(QString ending, Bytes bytes);
  [[nodiscard]] Job<> RunPlayLog();

  Services services_;
  ReportKind kind_ = ReportKind::DataBase;
  QDate from_;
  QDate to_;
  RowStore<QStringList> tracks_;
  RowStore<QStringList> plays_;
  QString totals_;
  QString hint_;
  QString progress_;
  std::optional<double> share_;
  int percent_ = 0;
  Job<> work_;
};

}  // namespace kelvo
