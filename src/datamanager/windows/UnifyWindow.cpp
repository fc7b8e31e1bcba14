#include "datamanager/windows/UnifyWindow.h"

#include "ui/Command.h"
#include "ui/JobStrip.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/Theme.h"
#include "ui/WhyOff.h"

#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

namespace kelvo {
namespace {

QLineEdit* NumberLine(QWidget& owner, const QString& name, const QString& accessible, const QString& tooltip,
                      int digits) {
  auto* line = new QLineEdit(&owner);
  SetNames(*line, name);
  line->setAccessibleName(accessible);
  line->setToolTip(tooltip);
  line->setMaxLength(digits);
  line->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), line));
  line->setFixedWidth(line->fontMetrics().averageCharWidth() * (digits + 5));
  return line;
}

QVariant DressRow(const UnifyRow& row, int /*column*/, int role) {
  if (role == Qt::ToolTipRole) return row.path;
  if (role != Qt::ForegroundRole) return {};
  const Theme::Colours& colours = Theme::Palette();
  switch (row.state) {
    case UnifyState::Failed:
      return colours.onAir;
    case UnifyState::Waiting:
    case UnifyState::CantChange:
    case UnifyState::LeftOut:
      return colours.amber;
    case UnifyState::Saved:
      return colours.ready;
    default:
      return {};
  }
}

}  // namespace

RowModel<UnifyRow>::Columns UnifyWindow::Columns() {
  return {{{.head = QStringLiteral("File Name"), .letters = 34},
           [](const UnifyRow& row) { return QFileInfo(row.path).fileName(); }},
          {{.head = QStringLiteral("Vol"), .letters = 8, .rank = 1, .number = true}, &UnifyRow::volume},
          {{.head = tr("Change"), .letters = 9, .rank = 2, .number = true}, &UnifyRow::change},
          {{.head = tr("State"), .letters = 40, .rank = 3}, &UnifyRow::words}};
}

UnifyWindow::UnifyWindow(EventLoop& loop, VolumeUnify& unify)
    : ToolWindow(
          {.name = QStringLiteral("UnifyVolume"), .title = tr("Unify Volume"), .letters = 118, .lines = 34}),
      unify_(unify),
      model_(unify.Rows(), Columns()),
      files_({.name = QStringLiteral("LstUnify"),
              .fixedName = QStringLiteral("ListView1"),
              .title = tr("VOLUME"),
              .accessible = tr("Files and their volume"),
              .letters = QStringLiteral("CboLetter")},
             model_, this),
      whole_(NumberLine(*this, QStringLiteral("txtTargetInt"), tr("Target, whole decibels"),
                        tr("The loudness that all files are brought to, 75 to 105 dB; 89 is recommended"),
                        3)),
      tenths_(NumberLine(*this, QStringLiteral("txtTargetDec"), tr("Target, tenths of a decibel"),
                         tr("Tenths of a decibel"), 1)),
      decimal_(new QLabel(QStringLiteral("."), this)),
      sum_(new QLabel(this)),
      job_(new JobStrip(loop, QStringLiteral("PrgUnify"), tr("Progress"), this)) {
  model_.Dress = DressRow;
  SetNames(*decimal_, QStringLiteral("lblDecimal"));
  SetNames(*sum_, QStringLiteral("LblSum"));
  BuildTarget();
  BuildCommands();
  BuildLayout();
  connect(&unify_, &VolumeUnify::Changed, this, [this] { Show(); });
  connect(&unify_, &VolumeUnify::TargetChanged, this, [this] { ShowTarget(); });
  connect(&unify_, &VolumeUnify::Chose, this, [this] { files_.Pick(unify_.Chosen()); });
  connect(&unify_, &VolumeUnify::RowBegan, this,
          [this](int row) { files_.Table().scrollTo(model_.index(row, 0)); });
  connect(&files_, &ListPanel::PickedChanged, this, [this] { ShowOffers(); });
  ShowTarget();
  Show();
}

void UnifyWindow::BuildTarget() {
  whole_->installEventFilter(this);
  for (QLineEdit* box : {whole_, tenths_})
    connect(box, &QLineEdit::editingFinished, this, [this] { ApplyTarget(); });
}

void UnifyWindow::BuildCommands() {
  run_ = AddCommand(*this,
                    {.name = QStringLiteral("CmdUnify"),
                     .fixedName = QStringLiteral("Command8"),
                     .words = unify_.Caption(),
                     .tooltip = tr("Brings every file whose change is not 0.0 to the target, or ends that"),
                     .key = QKeySequence(Qt::CTRL | Qt::Key_U),
                     .role = QStringLiteral("primary"),
                     .run = [this] { unify_.Running() ? unify_.Cancel() : unify_.Unify(); }});
  measure_ = AddCommand(*this, {.name = QStringLiteral("CmdMeasure"),
                                .words = tr("&Measure"),
                                .tooltip = tr("Measures the selected files and changes nothing"),
                                .run = [this] { unify_.Measure(files_.Picked()); }});
  selectAll_ = AddCommand(*this, {.name = QStringLiteral("CmdSelectAll"),
                                  .fixedName = QStringLiteral("Command14"),
                                  .words = QStringLiteral("Select All"),
                                  .tooltip = tr("Selects all files, or none"),
                                  .key = QKeySequence(Qt::ALT | Qt::Key_A),
                                  .run = [this] { files_.PickAllOrNone(); }});
  showAll_ = AddCommand(*this, {.name = QStringLiteral("CmdShowAll"),
                                .words = tr("&Whole Library"),
                                .tooltip = tr("Lists every track again"),
                                .run = [this] { unify_.ListOnly({}); }});
}

void UnifyWindow::BuildLayout() {
  auto* label = new QLabel(tr("&Target volume"), this);
  label->setBuddy(whole_);
  auto* unit = new QLabel(tr("dB"), this);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(Line({label, whole_, decimal_, tenths_, unit, kRoom, {sum_, 1}}));
  layout->addWidget(&files_, 1);
  layout->addWidget(job_);
  layout->addLayout(Line({run_, measure_, kRoom, selectAll_, showAll_}));
  showAll_->setVisible(unify_.CanListSome());
  sum_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  sum_->setAccessibleName(tr("What the last run came to"));
}

void UnifyWindow::TakeKeys() {
  files_.Table().setFocus();
}

void UnifyWindow::Refresh() {
  if (!unify_.Running()) unify_.List();
}

void UnifyWindow::Leave() {
  unify_.KeepTarget();
  // The next time it is for the whole library, unless it is asked for some files.
  unify_.ListOnly({});
}

bool UnifyWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched != whole_ || event->type() != QEvent::KeyPress) return ToolWindow::eventFilter(watched, event);
  const QString typed = static_cast<QKeyEvent*>(event)->text();
  if (typed != QStringLiteral(".") && typed != QStringLiteral(",")) return false;
  tenths_->setFocus();
  tenths_->selectAll();
  return true;
}

void UnifyWindow::ApplyTarget() {
  unify_.SetTarget(whole_->text(), tenths_->text(), files_.Picked());
}

void UnifyWindow::ShowTarget() {
  whole_->setText(QString::number(unify_.TargetInt()));
  tenths_->setText(QString::number(unify_.TargetDec()));
}

void UnifyWindow::Show() {
  files_.SetHint(unify_.Listing()
                     ? tr("Listing the files...")
                     : tr("There is no file here.\nBring music in with \"Import Music\" first."));
  run_->setText(unify_.Caption());
  sum_->setText(unify_.SumWords());
  ShowJob();
  ShowOffers();
}

void UnifyWindow::ShowJob() {
  // Each step has a time of its own.
  if (unify_.Step() != shownStep_) job_->Show({});
  shownStep_ = unify_.Step();
  JobState state{.running = unify_.Running(), .words = unify_.Words(), .percentInWords = true};
  if (unify_.Running()) state.share = unify_.Share();
  job_->Show(state);
}

void UnifyWindow::ShowOffers() {
  const bool running = unify_.Running();
  const bool empty = unify_.Rows().Count() == 0;
  const OffReason busy{running, tr("The volume is being unified")};
  const OffReason listing{unify_.Listing(), tr("The files are being listed")};
  const OffReason none{empty, tr("There is no file here")};
  selectAll_->setText(running || files_.AllPicked() ? QStringLiteral("Clear All") : QStringLiteral("Select All"));
  Offer(*run_, running ? QString() : WhyOff({listing, none}));
  Offer(*measure_, WhyOff({busy, listing, {!files_.AnyPicked(), tr("No file is selected")}}));
  Offer(*selectAll_, WhyOff({busy, none}));
  Offer(*showAll_, WhyOff({busy, {unify_.ListsAll(), tr("Every track is listed")}}));
  for (QWidget* box : {static_cast<QWidget*>(whole_), static_cast<QWidget*>(tenths_)})
    box->setEnabled(!running);
}

}  // namespace kelvo
