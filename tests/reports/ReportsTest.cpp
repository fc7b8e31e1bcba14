#include "platform/ErrorLog.h"
#include "platform/FileSteps.h"
#include "platform/SimulatedEventLoop.h"
#include "reports/Reports.h"
#include "reports/TextView.h"
#include "reports/windows/ReportPdf.h"
#include "support/ScriptedPrompter.h"
#include "support/TemporaryTree.h"

#include <QProcess>

#include <gmock/gmock.h>

namespace kelvo::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;

/// A catalogue and a folder of logs, in simulated time on 1 June 2007.
class ReportsTest : public ::testing::Test {
 protected:
  ReportsTest() {
    catalogue_.Replace(CatalogueTables(tree_.Path(u"music"_s)));
    reports_.emplace(Reports::Services{
        .loop = loop_,
        .disks = disks_,
        .prompter = prompter_,
        .catalogue = catalogue_,
        .program = u"Kelvo"_s,
        .documents = tree_.Path(),
        .logFiles =
            [this](const QDate& day) {
              const QString name = day.toString(u"yyyy-MM-dd"_s) + u".txt"_s;
              return QStringList{tree_.Path(u"logs/"_s + name), tree_.Path(u"old/"_s + name)};
            },
        .print = &ReportPdf,
        .show = [this](const QString& path) { shown_ = path; }});
  }
  void AddTrack(const QString& name, const QString& date = u"1999-Dec"_s, const QString& hi = u"7"_s,
                const QString& bpm = u"120"_s, double seconds = 185.9, const QString& artists = {},
                const QString& albums = {}) {
    CatalogueRow row;
    row.name = name;
    row.date = date;
    row.hi = hi;
    row.bpm = bpm;
    row.duration = seconds;
    row.genres = u"~ALL CATEGORIES,Soul,Funk"_s;
    row.artists = artists;
    row.albums = albums;
    catalogue_.Append(row);
  }
  void Log(const QString& day, const QString& plays, const QString& folder = u"logs"_s) const {
    tree_.Write(folder + u'/' + day + u".txt"_s, (u"Head ( Kelvo ) \r\n---\r\n\r\n"_s + plays).toUtf8());
  }
  void AWeekOfLogs() {
    AddTrack(u"ann - one"_s, {}, {}, {}, 61, u"~ALL ARTISTS,Ann"_s, u"~ALL ALBUMS,First"_s);
    Log(u"2007-05-26"_s,
        u"Manual Play : 9 : 05 ~ Ann - One\r\nAuto Play : 23 : 59 ~ Bob; The \"B\" - Two, 2\r\n"_s);
    Log(u"2007-05-27"_s, u"Auto Play : 0 : 01 ~ ANN - ONE\r\nnonsense\r\nAuto Play : 25 : 01 ~ X\r\n"_s);
    Log(u"2007-05-27"_s, u"Manual Play : 8 : 30 ~ 山田 - Ünal ~ x\r\n"_s, u"old"_s);
    Log(u"2007-06-01"_s, u"Manual Play : 7 : 00 ~ Ann - One\r\n"_s);
    Log(u"2007-06-02"_s, u"Manual Play : 7 : 00 ~ Tomorrow\r\n"_s);
  }
  void Finish() {
    ASSERT_TRUE(loop_.RunUntil([this] { return !reports_->Busy(); }, 60s));
  }
  [[nodiscard]] QStringList TextOf(const QString& file) const {
    return QString::fromUtf8(tree_.Read(u"Kelvo - Reports/"_s + file)).split(u"\r\n"_s);
  }
  QString Output(const QString& program, const QStringList& arguments) const {
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
      ADD_FAILURE() << program.toStdString() << process.readAllStandardError().toStdString();
    return QString::fromUtf8(process.readAllStandardOutput());
  }

  TemporaryTree tree_;
  SimulatedEventLoop loop_{QDateTime(QDate(2007, 6, 1), QTime(9, 0))};
  ScriptedPrompter prompter_;
  ErrorLog log_{loop_, prompter_, {}};
  Disks disks_{loop_};
  Catalogue catalogue_;
  std::optional<Reports> reports_;
  QString shown_;
};

TEST_F(ReportsTest, TheDataBaseReportHasItsLinesToTheLetter) {
  AddTrack(u"bob - a title that is much longer than the column of the names"_s, u""_s, u""_s, u""_s, 3725);
  AddTrack(u"Ann - One\nTwo"_s, u"2005-Dec"_s, u"7"_s, u"98"_s, 61, u"~ALL ARTISTS,Ann,Bo"_s,
           u"~ALL ALBUMS"_s);
  prompter_.texts = {u"60"_s};
  reports_->Start();
  Finish();
  const QString head = u"Artist - Title                                    Date    HiPos Bpm   Dur"_s;
  EXPECT_EQ(head, u"Artist - Title"_s + QString(36, u' ') + u"Date    HiPos Bpm   Dur"_s);
  EXPECT_THAT(TextOf(u"Data Base Report.txt"_s),
              ElementsAre(u"Data Base Report ( Kelvo ) 01/06/2007"_s, u"Data Base Report : File Count = 2"_s,
                          QString(70, u'_'), u""_s, head, u""_s,
                          u"Ann - One Two                                     2005-Dec    7  98   01:01"_s,
                          u"Artists : Ann,Bo"_s, u"Albums : None"_s, u"Genres : Soul,Funk"_s,
                          u"bob - a title that is much longer than the colu.. 0000        0   0   62:05"_s,
                          u"Artists : None"_s, u"Albums : None"_s, u"Genres : Soul,Funk"_s, u""_s));
  EXPECT_EQ(shown_, tree_.Path(u"Kelvo - Reports/Data Base Report.txt"_s));
  EXPECT_EQ(prompter_.asked[0].title, u"Reports"_s);
  EXPECT_EQ(prompter_.asked[0].text, u"Please Enter How Many Lines To Print Per Page"_s);
}

TEST_F(ReportsTest, PagesEndBehindTheGivenNumberOfLinesAndKeepATrackWhole) {
  for (int number = 1; number <= 5; ++number) AddTrack(u"t%1"_s.arg(number));
  const auto pages = [this](ReportKind kind, const QString& lines) {
    prompter_.texts = {lines};
    reports_->SetKind(kind);
    Finish();
    reports_->Start();
    Finish();
    QStringList order;
    const QString file = kind == ReportKind::SongList ? u"Song Listing.txt"_s : u"Data Base Report.txt"_s;
    for (const QString& line : TextOf(file).sliced(4)) {
      if (line.startsWith(u't')) order.append(line.first(2));
      if (line.startsWith(u"Artist - "_s)) order.append(u"head"_s);
      if (line.contains(u"Page "_s)) {
        EXPECT_EQ(line.indexOf(u"Page "_s), 38);
        order.append(line.trimmed());
      }
    }
    return order.join(u' ');
  };
  EXPECT_EQ(pages(ReportKind::SongList, u"2"_s), u"head t1 t2 Page 1 head t3 t4 Page 2 head t5"_s);
  EXPECT_EQ(pages(ReportKind::SongList, u"5"_s), u"head t1 t2 t3 t4 t5 Page 1"_s);
  EXPECT_EQ(pages(ReportKind::SongList, u"none"_s), u"head t1 t2 t3 t4 t5"_s);
  EXPECT_EQ(pages(ReportKind::DataBase, u"10"_s), u"head t1 t2 Page 1 head t3 t4 Page 2 head t5"_s);
  shown_.clear();
  prompter_.texts = {QString()};
  reports_->Start();
  Finish();
  EXPECT_TRUE(shown_.isEmpty()) << "an empty answer ends it";
  EXPECT_EQ(TextOf(u"Song Listing.txt"_s)[1], u"Song  List Report : File Count = 5"_s);
}

TEST_F(ReportsTest, AWeekOfLogsIsCountedToTheLastPlay) {
  AWeekOfLogs();
  reports_->SetKind(ReportKind::Plays);
  Finish();
  EXPECT_EQ(reports_->From(), QDate(2007, 5, 26));
  EXPECT_EQ(reports_->Totals(), u"Titles = 3, Times Played = 5   Days with a log : 3 of 7"_s);
  const auto row = [](const QString& fields) { return fields.split(u'|'); };
  EXPECT_THAT(reports_->PlayRows().All(),
              ElementsAre(row(u"One|Ann|First|01:01|3|2007-05-26 09:05|2007-06-01 07:00"_s),
                          row(u"Two, 2|Bob; The \"B\"|None|?|1|2007-05-26 23:59|2007-05-26 23:59"_s),
                          row(u"Ünal ~ x|山田|None|?|1|2007-05-27 08:30|2007-05-27 08:30"_s)));
  reports_->SetDays(QDate(2007, 6, 2), QDate(2007, 6, 2));
  Finish();
  EXPECT_EQ(reports_->PlayRows()[0][PlayPlace::Title], u"Tomorrow"_s);
  EXPECT_EQ(reports_->PlayRows()[0][PlayPlace::Artist], u"None"_s);
}

TEST_F(ReportsTest, TheMostPlayedComesFirstAndTheSameTitleOnce) {
  Log(u"2007-06-01"_s,
      u"Auto Play : 1 : 00 ~ A - Z\r\nAuto Play : 2 : 00 ~ B - Y\r\nAuto Play : 3 : 00 ~ b - y\r\n"_s);
  reports_->SetKind(ReportKind::MostPlayed);
  Finish();
  ASSERT_EQ(reports_->PlayRows().Count(), 2);
  EXPECT_EQ(reports_->PlayRows()[0][PlayPlace::Title], u"Y"_s);
  EXPECT_EQ(reports_->PlayRows()[0][PlayPlace::Times], u"2"_s);
}

TEST_F(ReportsTest, ScreenFileSpreadsheetAndPrintAgree) {
  AWeekOfLogs();
  reports_->SetKind(ReportKind::Plays);
  Finish();
  reports_->WriteCsv();
  Finish();
  reports_->WritePdf();
  Finish();
  prompter_.texts = {u"60"_s};
  reports_->Start();
  Finish();
  const QString base = tree_.Path(u"Kelvo - Reports/Play Report 2007-05-26 to 2007-06-01"_s);
  EXPECT_EQ(QString::fromUtf8(tree_.Read(u"Kelvo - Reports/Play Report 2007-05-26 to 2007-06-01.csv"_s)),
            u"Title,Artist,Album,Length,Times Played,First Played,Last Played\r\n"
            "One,Ann,First,01:01,3,2007-05-26 09:05,2007-06-01 07:00\r\n"
            "\"Two, 2\",\"Bob; The \"\"B\"\"\",None,?,1,2007-05-26 23:59,2007-05-26 23:59\r\n"
            "Ünal ~ x,山田,None,?,1,2007-05-27 08:30,2007-05-27 08:30\r\n"_s);
  Output(u"qpdf"_s, {u"--check"_s, base + u".pdf"_s});
  const QString print = Output(u"pdftotext"_s, {u"-layout"_s, base + u".pdf"_s, u"-"_s});
  const QString text = TextOf(u"Play Report 2007-05-26 to 2007-06-01.txt"_s).join(u'\n');
  for (const QStringList& row : reports_->PlayRows().All()) {
    for (const QString& cell : row) {
      EXPECT_TRUE(text.contains(cell)) << cell.toStdString();
      // Letters that no font of this machine has are no text in print.
      if (cell == u"山田"_s) continue;
      EXPECT_TRUE(print.contains(cell)) << cell.toStdString() << print.toStdString();
    }
  }
  for (const QString& all : {text, print})
    EXPECT_TRUE(all.contains(u"Play Report : Titles = 3, Times Played = 5"_s)) << all.toStdString();
}

TEST_F(ReportsTest, ManyPagesArePrintedWithEveryRowAndHostileNamesBreakNothing) {
  Report report{.kind = ReportKind::SongList,
                .program = u"Kelvo"_s,
                .fileTitle = u"Song Listing"_s,
                .made = QDate(2007, 6, 1),
                .counted = {},
                .rows = {},
                .notes = {}};
  for (int row = 0; row < 300; ++row)
    report.rows.push_back(
        {u"name%1;"_s.arg(row, 3, 10, QChar(u'0')), u"2005-Dec"_s, u"1"_s, u"2"_s, u"03:00"_s});
  report.rows.push_back({ReportLine(QString(10 << 20, u'w')), {}, {}, {}, {}});
  const QString path = tree_.Write(u"many.pdf"_s, ReportPdf(report));
  Output(u"qpdf"_s, {u"--check"_s, path});
  const QString print = Output(u"pdftotext"_s, {u"-layout"_s, path, u"-"_s});
  for (int row = 0; row < 300; ++row)
    ASSERT_TRUE(print.contains(u"name%1;"_s.arg(row, 3, 10, QChar(u'0')))) << row;
  EXPECT_GT(print.count(u"Page "_s), 5);
  EXPECT_EQ(print.count(u"HiPos"_s), print.count(u"Page "_s)) << "each page has its heads";
  EXPECT_EQ(ReportCsv(report).count('\n'), 302);
}

TEST_F(ReportsTest, AReportThatIsBrokenOffLeavesTheOldOneWhole) {
  const QString path = tree_.Path(u"Kelvo - Reports/Song Listing.txt"_s);
  AddTrack(u"one"_s);
  reports_->SetKind(ReportKind::SongList);
  Finish();
  const auto write = [this] {
    prompter_.texts = {u"60"_s};
    reports_->Start();
    Finish();
  };
  write();
  const QByteArray old = tree_.Read(u"Kelvo - Reports/Song Listing.txt"_s);
  AddTrack(u"two"_s);
  for (int step = 0;; ++step) {
    const bool killed = KilledBefore(step, write);
    const QByteArray now = tree_.Read(u"Kelvo - Reports/Song Listing.txt"_s);
    EXPECT_TRUE(now == old || now.contains("two")) << step;
    if (!killed) break;
    ASSERT_LT(step, 200);
  }
  EXPECT_TRUE(tree_.Read(u"Kelvo - Reports/Song Listing.txt"_s).contains("two"));
}

TEST_F(ReportsTest, ThePlayLogOfTheDayIsShownFromEitherFolder) {
  reports_->ShowPlayLog();
  Finish();
  EXPECT_THAT(prompter_.Told(), ElementsAre(u"No Session List Exists !"_s));
  Log(u"2007-06-01"_s, {}, u"old"_s);
  reports_->ShowPlayLog();
  Finish();
  EXPECT_EQ(shown_, tree_.Path(u"old/2007-06-01.txt"_s));
}

TEST_F(ReportsTest, AFolderThatTakesNoFileIsToldAndTheNextReportGoesOn) {
  AddTrack(u"one"_s);
  tree_.Write(u"Kelvo - Reports"_s, "in its way");
  reports_->WriteCsv();
  Finish();
  ASSERT_EQ(prompter_.asked.size(), 1U);
  EXPECT_TRUE(prompter_.asked[0].text.startsWith(u"The report could not be written"_s));
  EXPECT_TRUE(reports_->WhyNoFile().isEmpty());
  EXPECT_EQ(reports_->TrackRows().Count(), 1);
}

TEST_F(ReportsTest, TheViewerLoadsTellsWhatIsMissingAndCanBeCancelled) {
  TextView view({.disks = disks_, .prompter = prompter_});
  view.Open(tree_.Write(u"a.txt"_s, "one\r\n" + QByteArray(10 << 20, 'x')));
  EXPECT_TRUE(view.Words().contains(u"Please Wait...."_s) && view.Words().contains(u"Loading File"_s));
  loop_.RunFor(1s);
  EXPECT_TRUE(view.Text().startsWith(u"one\nxxx"_s));
  EXPECT_LT(view.Text().size(), 3000) << "a line without end does not hold up the desk";
  view.TellPrint();
  EXPECT_EQ(prompter_.Told().back(),
            u"Please Load into a word processor\r\n The File Name Is :"_s + tree_.Path(u"a.txt"_s));
  view.Open(tree_.Path(u"gone.txt"_s));
  loop_.RunFor(1s);
  EXPECT_EQ(prompter_.Told().back(), u"gone.txt Not Found !"_s);
  view.Open(tree_.Path(u"a.txt"_s));
  view.Cancel();
  loop_.RunFor(1s);
  EXPECT_TRUE(view.Text().isEmpty());
  EXPECT_FALSE(view.Loading());
}

}  // namespace
}  // namespace kelvo::testing
