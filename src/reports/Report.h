#pragma once

#include <QByteArray>
#include <QDate>
#include <QString>
#include <QStringList>

#include <array>
#include <vector>

namespace kelvo {

enum class ReportKind {
  DataBase,    ///< every track, with its artists, albums and genres
  SongList,    ///< every track
  Plays,       ///< what went on air over days, by artist and title
  MostPlayed,  ///< the same, what was played most first
};
inline constexpr std::array kReportKinds{ReportKind::DataBase, ReportKind::SongList, ReportKind::Plays,
                                         ReportKind::MostPlayed};
[[nodiscard]] constexpr bool IsOfDays(ReportKind kind) {
  return kind == ReportKind::Plays || kind == ReportKind::MostPlayed;
}
/// What the report is called: "Song  List Report".
[[nodiscard]] QString ReportWords(ReportKind kind);

struct ReportColumn {
  QString head;
  int letters = 10;     ///< its width on paper
  bool number = false;  ///< right-aligned
};
/// The columns of a report's rows.
[[nodiscard]] const std::vector<ReportColumn>& ReportColumns(ReportKind kind);

/// The places of a row's texts, see ReportColumns.
namespace TrackPlace {
enum : qsizetype { Name, Date, HiPos, Bpm, Length, Artists, Albums, Genres };
}
namespace PlayPlace {
enum : qsizetype { Title, Artist, Album, Length, Times, First, Last };
}

/// A report as it is shown, written and printed: all of them show the same rows. A value.
struct Report {
  ReportKind kind = ReportKind::DataBase;
  QString program;    ///< its title
  QString fileTitle;  ///< the name of its files, without an ending: "Song Listing"
  QDate made;
  QString counted;  ///< "File Count = 12"
  std::vector<QStringList> rows;
  QStringList notes;  ///< what is missing in it, in words
};

/// A text as a report shows it: one line, and no longer than a person reads.
[[nodiscard]] QString ReportLine(const QString& text);
/// The same; "None" for an empty one.
[[nodiscard]] QString OrNone(const QString& text);

/// The lines above the rows.
[[nodiscard]] QStringList ReportHead(const Report& report);
/// The report as the lines of a text file, with a page's number behind each `linesPerPage` lines; 0 or less:
/// one long page.
[[nodiscard]] QStringList ReportTextLines(const Report& report, int linesPerPage);
/// The heads and the rows for a spreadsheet: UTF-8 with a mark, fields parted by commas, lines ended by
/// CR-LF.
[[nodiscard]] QByteArray ReportCsv(const Report& report);

}  // namespace kelvo
