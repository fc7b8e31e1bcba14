#include "reports/Report.h"

#include <algorithm>

namespace kelvo {
namespace {

constexpr qsizetype kLongestText = 500;

std::vector<ReportColumn> TrackColumns() {
  return {{QStringLiteral("Artist - Title"), 50},
          {QStringLiteral("Date"), 9},
          {QStringLiteral("HiPos"), 6, true},
          {QStringLiteral("Bpm"), 5, true},
          {QStringLiteral("Dur"), 7, true}};
}

}  // namespace

QString ReportWords(ReportKind kind) {
  switch (kind) {
    case ReportKind::DataBase:
      return QStringLiteral("Data Base Report");
    case ReportKind::SongList:
      return QStringLiteral("Song  List Report");
    case ReportKind::Plays:
      return QStringLiteral("Play Report");
    case ReportKind::MostPlayed:
      return QStringLiteral("Most Played");
  }
  return {};
}

const std::vector<ReportColumn>& ReportColumns(ReportKind kind) {
  static const std::vector<ReportColumn> songs = TrackColumns();
  static const std::vector<ReportColumn> all = [] {
    std::vector<ReportColumn> columns = TrackColumns();
    for (const QString& head :
         {QStringLiteral("Artists"), QStringLiteral("Albums"), QStringLiteral("Genres")})
      columns.push_back({head, 24});
    return columns;
  }();
  static const std::vector<ReportColumn> plays{{QStringLiteral("Title"), 34},
                                               {QStringLiteral("Artist"), 26},
                                               {QStringLiteral("Album"), 22},
                                               {QStringLiteral("Length"), 8, true},
                                               {QStringLiteral("Times Played"), 14, true},
                                               {QStringLiteral("First Played"), 18, true},
                                               {QStringLiteral("Last Played"), 18, true}};
  if (IsOfDays(kind)) return plays;
  return kind == ReportKind::DataBase ? all : songs;
}

QString ReportLine(const QString& text) {
  QString line = text.first(std::min(text.size(), kLongestText));
  if (line.size() == kLongestText && line.back().isHighSurrogate()) line.chop(1);
  for (QChar& character : line) {
    const bool breaks = character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
                        character == QChar::ParagraphSeparator;
    if (breaks) character = QLatin1Char(' ');
  }
  return line.trimmed();
}

QString OrNone(const QString& text) {
  const QString line = ReportLine(text);
  return line.isEmpty() ? QStringLiteral("None") : line;
}

}  // namespace kelvo
