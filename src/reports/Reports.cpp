#include "reports/Reports.h"

#include "database/KeptTracks.h"
#include "database/ReferenceLine.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/TextFile.h"
#include "platform/Words.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>

#include <algorithm>

namespace kelvo {
namespace {

const QString kTitle = QStringLiteral("Reports");
const QString kLinesAtFirst = QStringLiteral("60");

QString FileTitle(ReportKind kind, const QDate& from, const QDate& to) {
  if (kind == ReportKind::DataBase) return QStringLiteral("Data Base Report");
  if (kind == ReportKind::SongList) return QStringLiteral("Song Listing");
  const QString form = QStringLiteral("yyyy-MM-dd");
  return ReportWords(kind) + QLatin1Char(' ') + from.toString(form) + QStringLiteral(" to ") +
         to.toString(form);
}

void ByName(std::vector<QStringList>& rows) {
  std::stable_sort(rows.begin(), rows.end(), [](const QStringList& left, const QStringList& right) {
    return left[TrackPlace::Name].compare(right[TrackPlace::Name], Qt::CaseInsensitive) < 0;
  });
}

void ByPlays(std::vector<QStringList>& rows, bool mostFirst) {
  std::stable_sort(rows.begin(), rows.end(), [mostFirst](const QStringList& left, const QStringList& right) {
    const int more = left[PlayPlace::Times].toInt() - right[PlayPlace::Times].toInt();
    if (mostFirst && more != 0) return more > 0;
    const int artist = left[PlayPlace::Artist].compare(right[PlayPlace::Artist], Qt::CaseInsensitive);
    if (artist != 0) return artist < 0;
    return left[PlayPlace::Title].compare(right[PlayPlace::Title], Qt::CaseInsensitive) < 0;
  });
}

}  // namespace

Reports::Reports(Services services) : services_(std::move(services)) {
  to_ = services_.loop.Now().date();
  from_ = to_.addDays(-6);
}

QString Reports::Folder() const {
  return QDir(services_.documents).filePath(services_.program + QStringLiteral(" - Reports"));
}

QString Reports::WhyNoFile() const {
  if (Busy()) return tr("A report is being made");
  return services_.documents.isEmpty() ? tr("There is no folder for documents") : QString();
}

void Reports::SetKind(ReportKind kind) {
  if (kind == kind_ || Busy()) return;
  kind_ = kind;
  List();
}

void Reports::SetDays(const QDate& from, const QDate& to) {
  if (!from.isValid() || !to.isValid() || Busy()) return;
  from_ = std::min(from, to);
  to_ = std::min(std::max(from, to), from_.addDays(kMostDays - 1));
  if (IsOfDays(kind_)) List();
}

void Reports::Begin(Job<> work) {
  work_ = Run(std::move(work));
  Q_EMIT Changed();
}

Job<> Reports::Run(Job<> work) {
  try {
    co_await std::move(work);
  } catch (...) {
    hint_.clear();
    basHandleError(QStringLiteral(" frmPrint"), tr("The report could not be made."));
  }
  progress_.clear();
  share_.reset();
  // It is over once this job has ended.
  services_.loop.Post([self = QPointer(this)] {
    if (self) Q_EMIT self->Changed();
  });
}

void Reports::Stop() {
  if (!Busy()) return;
  work_.Cancel();
  progress_.clear();
  share_.reset();
  hint_ = tr("Stopped");
  Q_EMIT Changed();
}

void Reports::List() {
  if (!Busy()) Begin(RunList());
}
void Reports::Start() {
  if (WhyNoFile().isEmpty()) Begin(RunStart());
}
void Reports::WriteCsv() {
  if (WhyNoFile().isEmpty()) Begin(RunWrite(QStringLiteral(".csv"), &ReportCsv));
}
void Reports::WritePdf() {
  if (WhyNoFile().isEmpty()) Begin(RunWrite(QStringLiteral(".pdf"), services_.print));
}
void Reports::ShowPlayLog() {
  if (!Busy()) Begin(RunPlayLog());
}

void Reports::TellShare(int done, int all) {
  const int percent = all == 0 ? 100 : static_cast<int>(qint64{100} * done / all);
  if (share_ && percent == percent_) return;
  percent_ = percent;
  share_ = percent / 100.0;
  progress_ = QStringLiteral("Creating Report (") + Format0(percent) + QStringLiteral("%)");
  Q_EMIT Changed();
}

Job<std::vector<QStringList>> Reports::TrackRowsNow() {
  const Catalogue& tracks = services_.catalogue;
  const auto number = [](const QString& text) {
    const QString line = ReportLine(text);
    return line.isEmpty() ? QStringLiteral("0") : line;
  };
  const auto names = [](const QString& line) {
    QStringList shown;
    for (const QStringView name : ShownItems(line)) shown.append(name.toString());
    return OrNone(shown.join(QLatin1Char(',')));
  };
  std::vector<QStringList> rows;
  rows.reserve(static_cast<std::size_t>(tracks.LastTrack()));
  TrackWalk walk(tracks);
  Turn turn(services_.loop);
  while (walk.Next()) {
    const Mref track = walk.Track();
    QString date = ReportLine(tracks.TrackDates[track]);
    if (date.isEmpty() || date.startsWith(QLatin1Char('-'))) date.prepend(QStringLiteral("0000"));
    QStringList row{ReportLine(tracks.TrackNames[track]), date, number(tracks.TrackHi[track]),
                    number(tracks.TrackBpm[track]), LengthText(tracks.TrackDurations(track))};
    if (kind_ == ReportKind::DataBase) {
      row.append({names(tracks.TrackArtists[track]), names(tracks.TrackAlbums[track]),
                  names(tracks.TrackGenres[track])});
    }
    rows.push_back(std::move(row));
    TellShare(static_cast<int>(rows.size()), tracks.LastTrack());
    co_await turn.Yield();
  }
  const auto sorted = std::make_shared<std::vector<QStringList>>(std::move(rows));
  const auto sort = [sorted] { ByName(*sorted); };
  co_await services_.loop.Offload(EventLoop::Lane::Apart, sort);
  co_return std::move(*sorted);
}

Job<std::vector<QStringList>> Reports::PlayRowsNow(std::shared_ptr<const PlayCounts> counts) {
  const Catalogue& tracks = services_.catalogue;
  // Titles are known by their names alone: the log has no more of them.
  QHash<QString, std::size_t> wanted;
  std::vector<QStringList> rows;
  Turn turn(services_.loop);
  for (const PlayCount& play : counts->titles) {
    const qsizetype dash = play.text.indexOf(QStringLiteral(" - "));
    const QString form = QStringLiteral("yyyy-MM-dd HH:mm");
    wanted.insert(play.text.toUpper(), rows.size());
    rows.push_back({OrNone(dash < 0 ? play.text : play.text.sliced(dash + 3)),
                    OrNone(dash < 0 ? QString() : play.text.first(dash)), QStringLiteral("None"),
                    LengthText(-1), QString::number(play.times), play.first.toString(form),
                    play.last.toString(form)});
    co_await turn.Yield();
  }
  int done = 0;
  TrackWalk walk(tracks);
  while (!wanted.isEmpty() && walk.Next()) {
    const Mref track = walk.Track();
    const auto found = wanted.constFind(ReportLine(tracks.TrackNames[track]).toUpper());
    if (found != wanted.constEnd()) {
      QStringList& row = rows[*found];
      row[PlayPlace::Album] = OrNone(FirstReference(tracks.TrackAlbums[track]));
      row[PlayPlace::Length] = LengthText(tracks.TrackDurations(track));
      if (row[PlayPlace::Artist] == OrNone({}))
        row[PlayPlace::Artist] = OrNone(FirstReference(tracks.TrackArtists[track]));
    }
    TellShare(++done, tracks.LastTrack());
    co_await turn.Yield();
  }
  const auto sorted = std::make_shared<std::vector<QStringList>>(std::move(rows));
  const auto sort = [sorted, mostFirst = kind_ == ReportKind::MostPlayed] { ByPlays(*sorted, mostFirst); };
  co_await services_.loop.Offload(EventLoop::Lane::Apart, sort);
  co_return std::move(*sorted);
}

Job<Reports::Made> Reports::Make() {
  hint_ = QStringLiteral("Creating Your Report...Please wait.");
  TellShare(0, 1);
  auto report = std::make_shared<Report>();
  report->kind = kind_;
  report->program = services_.program;
  report->fileTitle = FileTitle(kind_, from_, to_);
  report->made = services_.loop.Now().date();
  QStringList totals;
  if (IsOfDays(kind_)) {
    std::vector<LogDay> days;
    for (QDate day = from_; day <= to_; day = day.addDays(1)) days.push_back({day, services_.logFiles(day)});
    const auto read = [days] { return std::make_shared<const PlayCounts>(CountPlays(days)); };
    const std::shared_ptr<const PlayCounts> counts =
        co_await services_.loop.Offload(EventLoop::Lane::Apart, read);
    report->counted =
        QStringLiteral("Titles = %1, Times Played = %2").arg(counts->titles.size()).arg(counts->total);
    report->notes.append(tr("Days with a log : %1 of %2").arg(counts->days).arg(days.size()));
    for (const QString& file : counts->unreadable)
      report->notes.append(tr("This log could not be read : %1").arg(ReportLine(file)));
    report->rows = co_await PlayRowsNow(counts);
  } else {
    report->rows = co_await TrackRowsNow();
    report->counted = QStringLiteral("File Count = ") + QString::number(report->rows.size());
  }
  totals = QStringList(report->counted) + report->notes;
  totals_ = totals.join(QStringLiteral("   "));
  // To free many rows takes its time.
  for (RowStore<QStringList>* shown : {&tracks_, &plays_}) {
    auto before = std::make_shared<std::vector<QStringList>>(shown->TakeAll());
    services_.loop.RunOffThread(
        EventLoop::Lane::Apart, [before = std::move(before)] { before->clear(); }, [] {});
  }
  (IsOfDays(kind_) ? plays_ : tracks_).Replace(report->rows);
  hint_.clear();
  co_return report;
}

Job<> Reports::RunList() {
  static_cast<void>(co_await Make());
}

Job<QString> Reports::WriteFile(QString ending, Bytes bytes) {
  const Made report = co_await Make();
  const QString path = Folder() + QLatin1Char('/') + report->fileTitle + ending;
  hint_ = QStringLiteral("Creating Your Report...Please wait.");
  Q_EMIT Changed();
  const auto make = [report, bytes] { return bytes(*report); };
  const QByteArray content = co_await services_.loop.Offload(EventLoop::Lane::Apart, make);
  const auto write = [path, content] {
    const QString folder = QFileInfo(path).path();
    if (!QDir().mkpath(folder)) throw Failure(QStringLiteral("Cannot make the folder ") + folder, 0, folder);
    ReplaceFile(path, content);
  };
  try {
    co_await services_.loop.Offload(EventLoop::Lane::Files, write);
  } catch (...) {
    hint_.clear();
    basHandleError(QStringLiteral(" frmPrint write"), tr("The report could not be written: %1").arg(path));
    co_return QString();
  }
  hint_ = tr("Written : %1").arg(path);
  co_return path;
}

Job<> Reports::RunStart() {
  const QString typed = co_await services_.prompter.AskText(
      kTitle, QStringLiteral("Please Enter How Many Lines To Print Per Page"), kLinesAtFirst);
  if (typed.trimmed().isEmpty()) co_return;
  const int linesPerPage = WholeNumber(typed, 0, 1'000'000);
  const Bytes text = [linesPerPage](const Report& report) {
    return TextFile(ReportTextLines(report, linesPerPage)).ToBytes();
  };
  const QString path = co_await WriteFile(QStringLiteral(".txt"), text);
  if (!path.isEmpty() && services_.show) services_.show(path);
}

Job<> Reports::RunWrite(QString ending, Bytes bytes) {
  static_cast<void>(co_await WriteFile(ending, bytes));
}

Job<> Reports::RunPlayLog() {
  const QStringList files = services_.logFiles(services_.loop.Now().date());
  QString found;
  for (const QString& file : files) {
    const auto look = [file] { return QFileInfo::exists(file); };
    const std::optional<bool> there = co_await services_.disks.Look(file, look);
    if (found.isEmpty() && there.value_or(false)) found = file;
  }
  if (found.isEmpty()) {
    services_.prompter.Tell({QStringLiteral("No Session List Exists !"), {}});
  } else if (services_.show) {
    services_.show(found);
  }
}

}  // namespace kelvo
