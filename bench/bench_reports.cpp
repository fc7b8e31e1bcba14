#include "platform/QtEventLoop.h"
#include "platform/TextFile.h"
#include "reports/Reports.h"
#include "reports/windows/ReportPdf.h"
#include "support/NobodyThere.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>

/// How long a play report of many plays takes, from the logs to the file of a spreadsheet, and how long it
/// keeps the loop from its timers.
namespace kelvo {
namespace {

constexpr int kRounds = 3;
constexpr int kTracks = 20000;
constexpr int kDays = 30;
const QDate kFirstDay(2007, 6, 1);

double Seconds(Nanoseconds time) {
  return std::chrono::duration<double>(time).count();
}

QString TrackName(int track) {
  return QStringLiteral("Artist %1 - Title %2").arg(track / 10).arg(track);
}

void Run(int plays) {
  const QTemporaryDir folder;
  QtEventLoop loop;
  testing::NobodyThere nobody;
  Disks disks(loop);
  CatalogueTables tables(QStringLiteral("/music"));
  for (int track = 0; track < kTracks; ++track) {
    CatalogueRow row;
    row.name = TrackName(track);
    row.extension = QStringLiteral(".mp3");
    row.albums = QStringLiteral("~ALL ALBUMS,Album %1").arg(track / 12);
    row.duration = 180;
    tables.Append(row);
  }
  Catalogue catalogue;
  catalogue.Replace(std::move(tables));
  const auto log = [&folder](const QDate& day) { return folder.filePath(day.toString(Qt::ISODate)); };
  std::mt19937 random(2007);
  for (int day = 0; day < kDays; ++day) {
    const int share = plays / kDays + (day < plays % kDays ? 1 : 0);
    QStringList lines{QStringLiteral("Kelvo, Session Log ( Kelvo ) "), QString(61, QLatin1Char('-')), {}};
    for (int play = 0; play < share; ++play) {
      lines.append(
          QStringLiteral("Auto Play : %1 : %2 ~ ").arg(play % 24).arg(play % 60, 2, 10, QChar(u'0')) +
          TrackName(static_cast<int>(random() % kTracks)));
    }
    TextFile(lines).Write(log(kFirstDay.addDays(day)));
  }
  Reports reports({.loop = loop,
                   .disks = disks,
                   .prompter = nobody,
                   .catalogue = catalogue,
                   .program = QStringLiteral("Kelvo"),
                   .documents = folder.path(),
                   .logFiles = [&log](const QDate& day) { return QStringList{log(day)}; },
                   .print = &ReportPdf,
                   .show = {}});
  double hold = 0;
  const auto timed = [&](const std::function<void()>& begin) {
    const Nanoseconds start = loop.Elapsed();
    Nanoseconds lastBeat = start;
    double longest = 0;
    const Timer beat = loop.Every(std::chrono::milliseconds(1), [&] {
      longest = std::max(longest, Seconds(loop.Elapsed() - lastBeat) * 1000);
      lastBeat = loop.Elapsed();
    });
    begin();
    while (reports.Busy()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    hold = longest;
    return Seconds(loop.Elapsed() - start);
  };
  reports.SetDays(kFirstDay, kFirstDay.addDays(kDays - 1));
  timed([&reports] { reports.SetKind(ReportKind::Plays); });
  // Of several rounds the quietest: what else the machine does is not the report's.
  double seconds = 1e9;
  double quietest = 1e9;
  for (int round = 0; round < kRounds; ++round) {
    seconds = std::min(seconds, timed([&reports] { reports.WriteCsv(); }));
    quietest = std::min(quietest, hold);
  }
  const double pdf = timed([&reports] { reports.WritePdf(); });
  qint64 total = 0;
  for (const QStringList& row : reports.PlayRows().All()) total += row[PlayPlace::Times].toLongLong();
  std::printf("reports.plays: %lld\n", static_cast<long long>(total));
  std::printf("reports.titles: %d\n", reports.PlayRows().Count());
  std::printf("reports.pdf_seconds: %.3f\n", pdf);
  std::printf("reports.hold_ms: %.1f\n", quietest);
  std::printf("reports.seconds: %.3f\n", seconds);
}

}  // namespace
}  // namespace kelvo

int main(int argc, char** argv) {
  // Fonts alone: no window is shown.
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication application(argc, argv);
  QCommandLineParser arguments;
  const QCommandLineOption plays(QStringLiteral("plays"), QStringLiteral("How many plays."),
                                 QStringLiteral("number"), QStringLiteral("100000"));
  arguments.addOption(plays);
  arguments.addHelpOption();
  arguments.process(application);
  kelvo::Run(std::max(arguments.value(plays).toInt(), 1));
  return 0;
}
