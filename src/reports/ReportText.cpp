// A report as a text file and as the lines of a spreadsheet.

#include "reports/Report.h"

#include <algorithm>

namespace kelvo {
namespace {

constexpr int kRuleLength = 70;
constexpr int kPageIndent = 38;
/// Where the columns of the head below begin, and where its numbers end.
constexpr int kDate = 50;
constexpr int kHiPosEnd = 63;
constexpr int kBpmEnd = 67;
constexpr int kDuration = 70;
const QString kTrackHead = QStringLiteral("Artist - Title") + QString(36, QLatin1Char(' ')) +
                           QStringLiteral("Date    HiPos Bpm   Dur");

/// A longer text is cut, with ".." at its end.
QString Cut(const QString& text, qsizetype letters) {
  if (text.size() <= letters) return text;
  const qsizetype kept = letters - 2;
  return text.first(text[kept - 1].isHighSurrogate() ? kept - 1 : kept) + QStringLiteral("..");
}

/// Puts a text at its place in the line, at least one blank behind what is there.
void Put(QString& line, const QString& text, qsizetype at) {
  const qsizetype place = line.isEmpty() ? at : std::max(at, line.size() + 1);
  line = line.leftJustified(place) + text;
}
/// The same for a number that ends there.
void PutNumber(QString& line, const QString& text, qsizetype end) {
  Put(line, text, std::max<qsizetype>(end - text.size(), 0));
}

QString TrackLine(const QStringList& row) {
  QString line = Cut(row[TrackPlace::Name], kDate - 1);
  Put(line, row[TrackPlace::Date], kDate);
  PutNumber(line, row[TrackPlace::HiPos], kHiPosEnd);
  PutNumber(line, row[TrackPlace::Bpm], kBpmEnd);
  Put(line, row[TrackPlace::Length], kDuration);
  return line;
}

/// The cells of a play report, each in its width.
QString PlayLine(const QStringList& cells, ReportKind kind) {
  QString line;
  qsizetype at = 0;
  const std::vector<ReportColumn>& columns = ReportColumns(kind);
  for (std::size_t place = 0; place < columns.size(); ++place) {
    const QString text = Cut(cells[static_cast<qsizetype>(place)], columns[place].letters - 1);
    const qsizetype end = at + columns[place].letters - 1;
    Put(line, text, columns[place].number ? end - text.size() : at);
    at += columns[place].letters;
  }
  return line;
}

QString ColumnHead(const Report& report) {
  if (!IsOfDays(report.kind)) return kTrackHead;
  QStringList heads;
  for (const ReportColumn& column : ReportColumns(report.kind)) heads.append(column.head);
  return PlayLine(heads, report.kind);
}

QStringList RowLines(const Report& report, const QStringList& row) {
  if (IsOfDays(report.kind)) return {PlayLine(row, report.kind)};
  QStringList lines{TrackLine(row)};
  if (report.kind == ReportKind::DataBase) {
    lines.append(QStringLiteral("Artists : ") + row[TrackPlace::Artists]);
    lines.append(QStringLiteral("Albums : ") + row[TrackPlace::Albums]);
    lines.append(QStringLiteral("Genres : ") + row[TrackPlace::Genres]);
  }
  return lines;
}

QByteArray CsvField(const QString& text) {
  const bool quoted = std::any_of(text.begin(), text.end(),
                                  [](QChar each) { return QStringLiteral("\",;\r\n\t").contains(each); }) ||
                      text.trimmed() != text;
  if (!quoted) return text.toUtf8();
  return '"' + QString(text).replace(QLatin1Char('"'), QStringLiteral("\"\"")).toUtf8() + '"';
}

}  // namespace

QStringList ReportHead(const Report& report) {
  return {report.fileTitle + QStringLiteral(" ( ") + report.program + QStringLiteral(" ) ") +
              report.made.toString(QStringLiteral("dd/MM/yyyy")),
          ReportWords(report.kind) + QStringLiteral(" : ") + report.counted};
}

QStringList ReportTextLines(const Report& report, int linesPerPage) {
  QStringList lines = ReportHead(report);
  lines.append(report.notes);
  const QString head = ColumnHead(report);
  // Rule and head have a line end of their own, and the file another.
  lines.append({QString(kRuleLength, QLatin1Char('_')), QString(), head, QString()});
  int page = 0;
  int onPage = 0;
  for (std::size_t place = 0; place < report.rows.size(); ++place) {
    const QStringList row = RowLines(report, report.rows[place]);
    lines.append(row);
    onPage += static_cast<int>(row.size());
    const bool last = place + 1 == report.rows.size();
    // A track's lines stay together, and no page gets more than it has room for.
    if (linesPerPage <= 0 || onPage + (last ? 0 : row.size() - 1) < linesPerPage) continue;
    lines.append(QString(kPageIndent, QLatin1Char(' ')) + QStringLiteral("Page ") + QString::number(++page));
    if (!last) lines.append({head, QString()});
    onPage = 0;
  }
  return lines;
}

QByteArray ReportCsv(const Report& report) {
  QByteArray csv = "\xEF\xBB\xBF";
  const auto write = [&csv](const QByteArrayList& fields) { csv += fields.join(',') + "\r\n"; };
  QByteArrayList heads;
  for (const ReportColumn& column : ReportColumns(report.kind)) heads.append(CsvField(column.head));
  write(heads);
  for (const QStringList& row : report.rows) {
    QByteArrayList fields;
    for (const QString& text : row) fields.append(CsvField(text));
    write(fields);
  }
  return csv;
}

}  // namespace kelvo
