#include "reports/windows/ReportsWindow.h"

#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/JobStrip.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/SpokenText.h"

#include <QButtonGroup>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>

namespace kelvo {

RowModel<QStringList>::Columns ReportsWindow::Columns(ReportKind kind) {
  RowModel<QStringList>::Columns columns;
  const std::vector<ReportColumn>& heads = ReportColumns(kind);
  for (std::size_t place = 0; place < heads.size(); ++place) {
    const ReportColumn& head = heads[place];
    columns.push_back({{.head = head.head,
                        // Paper is wider: every column is to be seen here too.
                        .letters = head.number ? head.letters : std::max(head.letters * 2 / 3, 9),
                        .rank = static_cast<int>(place),
                        .number = head.number},
                       [place](const QStringList& row) { return row.value(static_cast<qsizetype>(place)); }});
  }
  return columns;
}

ReportsWindow::ReportsWindow(EventLoop& loop, Reports& reports)
    : ToolWindow({.name = QStringLiteral("ReportsWindow"),
                  .fixedName = QStringLiteral("frmPrint"),
                  .title = QStringLiteral("Reports"),
                  .letters = 132,
                  .lines = 32}),
      reports_(reports),
      tracks_(reports.TrackRows(), Columns(ReportKind::DataBase)),
      plays_(reports.PlayRows(), Columns(ReportKind::Plays)),
      trackList_({.name = QStringLiteral("LstReportTracks"),
                  .fixedName = QStringLiteral("ListView1"),
                  .title = tr("TRACKS"),
                  .accessible = tr("Tracks of the report")},
                 tracks_, this),
      playList_({.name = QStringLiteral("LstReportPlays"),
                 .title = tr("PLAYED"),
                 .accessible = tr("Titles that went on air")},
                plays_, this),
      from_(new QDateEdit(this)),
      to_(new QDateEdit(this)),
      hint_(new ElidedLabel(this)),
      totals_(new ElidedLabel(this)),
      progress_(new JobStrip(loop, QStringLiteral("PrgReport"), tr("Progress"), this)) {
  for (RowModel<QStringList>* model : {&tracks_, &plays_}) {
    model->Dress = [](const QStringList& row, int column, int role) {
      return role == Qt::ToolTipRole ? QVariant(row.value(column)) : QVariant();
    };
  }
  SetNames(*hint_, QStringLiteral("LblReportHint"), QStringLiteral("Label2"));
  SetNames(*totals_, QStringLiteral("LblTotals"));
  BuildOptions();
  BuildDays();
  BuildCommands();
  BuildLayout();
  progress_->OfferStop(QStringLiteral("CmdStopReport"), tr("Ends the report that is being made"),
                       [this] { reports_.Stop(); });
  connect(&reports_, &Reports::Changed, this, [this] { Show(); });
  Show();
}

void ReportsWindow::BuildOptions() {
  const std::array names{QStringLiteral("OptDataBase"), QStringLiteral("OptSongList"),
                         QStringLiteral("OptPlays"), QStringLiteral("OptMostPlayed")};
  const std::array tips{tr("All tracks, with their artists, albums and genres"), tr("All tracks"),
                        tr("What went on air on the days below, by artist and title"),
                        tr("What went on air on the days below, the most played first")};
  auto* group = new QButtonGroup(this);
  for (std::size_t place = 0; place < kReportKinds.size(); ++place) {
    auto* option = new QRadioButton(ReportWords(kReportKinds[place]), this);
    SetNames(*option, names[place], place < 2 ? QStringLiteral("Option%1").arg(place + 1) : QString());
    option->setToolTip(tips[place]);
    option->setChecked(kReportKinds[place] == reports_.Kind());
    group->addButton(option);
    connect(option, &QRadioButton::toggled, this, [this, kind = kReportKinds[place]](bool on) {
      if (on) reports_.SetKind(kind);
    });
    options_[place] = option;
  }
}

void ReportsWindow::BuildDays() {
  SetNames(*from_, QStringLiteral("DteFrom"));
  SetNames(*to_, QStringLiteral("DteTo"));
  from_->setAccessibleName(tr("From day"));
  to_->setAccessibleName(tr("To day"));
  from_->setToolTip(tr("The first day of the report"));
  to_->setToolTip(tr("The last day of the report"));
  for (QDateEdit* day : {from_, to_}) {
    day->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    day->setKeyboardTracking(false);
    day->setButtonSymbols(QAbstractSpinBox::NoButtons);
    // It is what has the keyboard.
    auto* line = day->findChild<QLineEdit*>();
    line->setAccessibleName(day->accessibleName());
    line->setToolTip(day->toolTip());
    connect(day, &QDateEdit::dateChanged, this, [this] { TakeDays(); });
  }
}

void ReportsWindow::BuildCommands() {
  start_ = AddCommand(*this, {.name = QStringLiteral("CmdStartReport"),
                              .fixedName = QStringLiteral("Command1"),
                              .words = QStringLiteral("Start"),
                              .tooltip = tr("Writes the report as a text file and shows it"),
                              .key = QKeySequence(Qt::CTRL | Qt::Key_Return),
                              .icon = Icon::Play,
                              .role = QStringLiteral("go"),
                              .run = [this] { reports_.Start(); }});
  csv_ = AddCommand(*this, {.name = QStringLiteral("CmdWriteCsv"),
                            .words = tr("CSV"),
                            .tooltip = tr("Writes the report for a spreadsheet"),
                            .key = QKeySequence(Qt::ALT | Qt::Key_C),
                            .icon = Icon::Save,
                            .run = [this] { reports_.WriteCsv(); }});
  pdf_ = AddCommand(*this, {.name = QStringLiteral("CmdWritePdf"),
                            .words = tr("PDF"),
                            .tooltip = tr("Writes the report as it is printed"),
                            .key = QKeySequence(Qt::ALT | Qt::Key_F),
                            .icon = Icon::Save,
                            .run = [this] { reports_.WritePdf(); }});
  log_ = AddCommand(*this, {.name = QStringLiteral("CmdPlayLog"),
                            .fixedName = QStringLiteral("Command3"),
                            .words = QStringLiteral("Play Log"),
                            .tooltip = tr("Shows what went on air today"),
                            .key = QKeySequence(Qt::ALT | Qt::Key_L),
                            .icon = Icon::Information,
                            .run = [this] { reports_.ShowPlayLog(); }});
}

void ReportsWindow::BuildLayout() {
  auto* fromWords = new QLabel(tr("F&rom"), this);
  fromWords->setBuddy(from_);
  auto* toWords = new QLabel(tr("&To"), this);
  toWords->setBuddy(to_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(Line({options_[0], options_[1], kRoom, start_, csv_, pdf_, log_}));
  layout->addLayout(Line({options_[2], options_[3], fromWords, from_, toWords, to_, kRoom, {hint_, 2}}));
  layout->addWidget(&trackList_, 1);
  layout->addWidget(&playList_, 1);
  layout->addWidget(totals_);
  layout->addWidget(progress_);
}

void ReportsWindow::TakeKeys() {
  options_[static_cast<std::size_t>(reports_.Kind())]->setFocus();
}

void ReportsWindow::TakeDays() {
  reports_.SetDays(from_->date(), to_->date());
}

void ReportsWindow::Show() {
  const bool days = IsOfDays(reports_.Kind());
  const bool busy = reports_.Busy();
  const QString atWork = busy ? tr("A report is being made") : QString();
  trackList_.setVisible(!days);
  playList_.setVisible(days);
  for (QRadioButton* option : options_) Offer(*option, atWork);
  for (QDateEdit* day : {from_, to_}) {
    const QSignalBlocker quiet(day);
    const QDate& shown = day == from_ ? reports_.From() : reports_.To();
    if (day->date() != shown) day->setDate(shown);
    Offer(*day, days ? atWork : tr("This report is not about days"));
  }
  for (QPushButton* button : {start_, csv_, pdf_}) Offer(*button, reports_.WhyNoFile());
  Offer(*log_, atWork);
  trackList_.SetHint(busy ? QString() : tr("The library is empty: import some music first."));
  playList_.SetHint(busy ? QString() : tr("Nothing went on air on these days, or their logs are elsewhere."));
  SetSpokenText(*hint_, tr("What is done"), reports_.Hint());
  SetSpokenText(*totals_, tr("Totals"), reports_.Totals());
  progress_->Show(
      {.running = busy, .words = reports_.Progress(), .share = reports_.Share(), .percentInWords = true});
}

}  // namespace kelvo
