#include "datamanager/windows/DataManagerWindow.h"

#include "datamanager/windows/BulkForm.h"
#include "datamanager/windows/PreviewPanel.h"
#include "datamanager/windows/ReferencePanel.h"
#include "datamanager/windows/TrackNamesPanel.h"
#include "platform/Words.h"
#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/JobStrip.h"
#include "ui/LetterBox.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/ProgressStrip.h"
#include "ui/SpokenText.h"
#include "ui/WhyOff.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QScrollBar>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr std::array kModes{DispMode::MusicFiles, DispMode::Jingles, DispMode::References};
/// A hit of the find is shown with so many rows around it.
constexpr int kRowsAround = 3;
/// A view asks of each cell which of the selected blocks holds it: so many blocks are painted in time.
constexpr std::size_t kMostBlocks = 2000;

}  // namespace

DataManagerWindow::DataManagerWindow(EventLoop& loop, DataManager& manager)
    : ToolWindow({.name = QStringLiteral("DataManager"),
                  .fixedName = QStringLiteral("frmdman"),
                  .title = QStringLiteral("Data Manager"),
                  .letters = 138,
                  .lines = 40}),
      loop_(loop),
      manager_(manager),
      tools_(manager),
      model_(manager.List()),
      list_({.name = QStringLiteral("LstTracks"),
             .fixedName = QStringLiteral("ListView1"),
             .title = tr("MUSIC FILES"),
             .accessible = tr("Files of the database")},
            model_, this),
      references_(new ReferencePanel(manager, tools_, this)),
      names_(new TrackNamesPanel(manager, tools_, this)),
      preview_(new PreviewPanel(manager, this)),
      bulk_(new BulkForm(manager, this)),
      job_(new JobStrip(loop, QStringLiteral("BarJob"), tr("What goes on"), this)),
      suspend_(new QCheckBox(QStringLiteral("Suspend File Refreshes"), this)),
      words_(new QLineEdit(this)),
      count_(new QLabel(this)),
      current_(new ElidedLabel(this)) {
  job_->OfferStop(QStringLiteral("CmdStopJob"), tr("Stops what goes on; what is done stays"), [this] {
    if (const auto shown = manager_.Shown(); shown && shown->stop) {
      shown->stop();
    } else {
      manager_.List().Stop();
    }
  });
  BuildCommands();
  BuildLayout();
  FollowList();
  connect(&manager_, &DataManager::Changed, this, [this] { Show(); });
  Show();
}

DataManagerWindow::~DataManagerWindow() = default;

void DataManagerWindow::BuildCommands() {
  constexpr std::array<const char*, 3> kWords{"Display Tracks", "Display Sound Effects/ Jingles",
                                              "Info Files"};
  const std::array<QString, 3> tips{tr("Lists the tracks of the database"),
                                    tr("Lists the files of the jingle folder"),
                                    tr("Lists the track info files")};
  for (std::size_t place = 0; place < kModes.size(); ++place) {
    modes_[place] = AddCommand(*this, {.name = QStringLiteral("CmdMode%1").arg(place),
                                       .fixedName = QStringLiteral("Command3_%1").arg(place),
                                       .words = QString::fromLatin1(kWords[place]),
                                       .tooltip = tips[place],
                                       .run = [this, place] { manager_.SetMode(kModes[place]); }});
    modes_[place]->setCheckable(true);
  }
  SetNames(*suspend_, QStringLiteral("ChkSuspend"), QStringLiteral("Check1"));
  suspend_->setToolTip(tr("While it is set the list is not built anew, so that many changes can be made"));
  connect(suspend_, &QCheckBox::toggled, this, [this](bool on) { manager_.List().Suspend(on); });
  restrict_ = AddCommand(*this, {.name = QStringLiteral("CmdRestrict"),
                                 .fixedName = QStringLiteral("mnuRestrict"),
                                 .words = tr("Restrict..."),
                                 .tooltip = tr("The password that guards the Data Manager"),
                                 .icon = Icon::Lock,
                                 .run = [this] { manager_.Restrict(); }});
  find_ = AddCommand(*this, {.name = QStringLiteral("CmdFind"),
                             .fixedName = QStringLiteral("Command7"),
                             .words = manager_.Find().Caption(),
                             .tooltip = tr("Selects the files whose names hold a text, and leads from one to "
                                           "the next"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_G),
                             .icon = Icon::Search,
                             .run = [this] { manager_.Find().Press(); }});
  select_ = AddCommand(*this, {.name = QStringLiteral("CmdSelectAll"),
                               .fixedName = QStringLiteral("Command17"),
                               .words = QStringLiteral("Select All"),
                               .tooltip = tr("Selects all rows, or none"),
                               .key = QKeySequence(Qt::ALT | Qt::Key_A),
                               .run = [this] {
                                 if (list_.AnyPicked()) {
                                   list_.Table().clearSelection();
                                 } else {
                                   list_.Table().selectAll();
                                 }
                               }});
  several_ = AddCommand(*this, {.name = QStringLiteral("CmdSeveral"),
                                .words = tr("Change Several..."),
                                .tooltip = tr("Year, month, artist or genre of all selected tracks at once"),
                                .key = QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C),
                                .icon = Icon::Edit,
                                .run = [this] { ShowBulk(several_->isChecked()); }});
  several_->setCheckable(true);
  close_ = AddCommand(*this, {.name = QStringLiteral("CmdClose"),
                              .fixedName = QStringLiteral("Command6"),
                              .words = QStringLiteral("Close"),
                              .tooltip = tr("Closes the Data Manager; asks what is left to be done"),
                              .keyWords = tr("Esc"),
                              .icon = Icon::Close,
                              .run = [this] { close(); }});
}

QHBoxLayout* DataManagerWindow::ViewLine() {
  return Line({modes_[0], modes_[1], modes_[2], kRoom, suspend_, restrict_});
}

QHBoxLayout* DataManagerWindow::ListLine() {
  words_->setObjectName(QStringLiteral("TxtWords"));
  words_->setAccessibleName(tr("Filter: files of the database"));
  words_->setPlaceholderText(tr("Type to filter  (Ctrl+F)"));
  words_->setClearButtonEnabled(true);
  words_->addAction(ScalableIcon(Icon::Search), QLineEdit::LeadingPosition);
  NameLineSigns(*words_);
  connect(words_, &QLineEdit::textChanged, this,
          [this](const QString& text) { manager_.List().SetWords(text); });
  connect(words_, &QLineEdit::returnPressed, this, [this] {
    list_.Table().setFocus();
    if (model_.rowCount() > 0) list_.Table().selectRow(0);
  });
  connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_F), this), &QShortcut::activated, words_, [this] {
    words_->setFocus();
    words_->selectAll();
  });
  auto* letters = new LetterBox(tr("Files of the database"), this);
  SetNames(*letters, QStringLiteral("CboLetter"), QStringLiteral("Combo1"));
  connect(letters, &LetterBox::Chosen, this, [this](QChar letter) {
    const int row = manager_.List().LetterRow(letter);
    if (row >= 0) list_.Table().scrollTo(model_.index(row, 0), QAbstractItemView::PositionAtTop);
  });
  return Line({{words_, 1}, letters, find_, select_});
}

void DataManagerWindow::AddToolLines(QVBoxLayout& layout) {
  QHBoxLayout* first = tools_.MakeLine(*this, {"Command13", "Command5"});
  first->addWidget(several_, 1);
  layout.addLayout(first);
  for (const char* id : {"Command8", "Command25", "Command26", "Command30"}) {
    if (QPushButton* button = tools_.Make(*this, QString::fromLatin1(id))) first->addWidget(button, 1);
  }
  QHBoxLayout* last = tools_.MakeLine(*this, {"Cmdimport", "Command4", "Command11", "Command20"});
  for (const QString& id : tools_.Left()) last->addWidget(tools_.Make(*this, id), 1);
  last->addWidget(close_, 1);
  layout.addLayout(last);
}

void DataManagerWindow::BuildLayout() {
  SetNames(*count_, QStringLiteral("LblCount"), QStringLiteral("Label18"));
  current_->setObjectName(QStringLiteral("LblCurrent"));
  references_->setFixedWidth(fontMetrics().averageCharWidth() * 36);
  preview_->setFixedWidth(fontMetrics().averageCharWidth() * 28);
  auto* right = new QVBoxLayout;
  right->addLayout(ListLine());
  right->addWidget(&list_, 1);
  right->addLayout(Line({{current_, 1}, count_}));
  right->addLayout(Line({{names_, 1}, preview_}));
  embedded_ = new QVBoxLayout;
  right->addLayout(embedded_);
  Embed(bulk_);
  bulk_->hide();
  auto* body = new QHBoxLayout;
  body->addWidget(references_);
  body->addLayout(right, 1);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(ViewLine());
  layout->addLayout(body, 1);
  AddToolLines(*layout);
  layout->addWidget(job_);
  // The number of a row is the way back to its track; it is not for people.
  std::vector<ListTable::OptionalColumn> others;
  for (int rank = 1; rank <= kManagerColumns; ++rank) {
    for (int column = 0; column < kManagerColumns - 1; ++column) {
      if (model_.Look(column).rank == rank) others.push_back({column, model_.Look(column).letters});
    }
  }
  list_.Table().SetColumns(0, model_.Look(0).letters, std::move(others));
  list_.Table().setColumnHidden(kManagerColumns - 1, true);
  list_.Table().LetHeadBeClicked();
}

void DataManagerWindow::Embed(QWidget* panel) {
  embedded_->addWidget(panel);
}

void DataManagerWindow::ShowBulk(bool shown) {
  bulk_->setVisible(shown);
  names_->setVisible(!shown);
  preview_->setVisible(!shown);
  if (shown) {
    bulk_->TakeKeys();
  } else {
    list_.Table().setFocus();
  }
}

void DataManagerWindow::FollowList() {
  ListTable& table = list_.Table();
  connect(&list_, &ListPanel::PickedChanged, this, [this] { TakePicked(); });
  connect(&list_, &ListPanel::CurrentChanged, this, [this] { TakePicked(); });
  connect(&list_, &ListPanel::RowActivated, this, [this](int row) { list_.Table().selectRow(row); });
  connect(table.horizontalHeader(), &QHeaderView::sectionClicked, this,
          [this](int column) { manager_.List().SortBy(static_cast<ManagerColumn>(column)); });
  connect(table.verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { LookAtSight(); });
  connect(table.verticalScrollBar(), &QScrollBar::rangeChanged, this, [this] { LookAtSight(); });
  connect(&model_, &QAbstractItemModel::modelReset, this, [this] { LookAtSight(); });
  connect(&model_, &QAbstractItemModel::layoutChanged, this, [this] {
    // The selection went along to other rows.
    TakePicked();
    LookAtSight();
  });
  FindText& find = manager_.Find();
  connect(&find, &FindText::Changed, this, [this] { Show(); });
  connect(&find, &FindText::ClearSelections, this, [this] {
    list_.Table().clearSelection();
    references_->ClearFilterSelection();
  });
  connect(&find, &FindText::Found, this, &DataManagerWindow::SelectHits);
  connect(&find, &FindText::Reached, this, &DataManagerWindow::ReachRow);
}

void DataManagerWindow::LookAtSight() {
  if (!isVisible()) return;
  const ListTable& table = list_.Table();
  const int rowHeight = std::max(table.verticalHeader()->defaultSectionSize(), 1);
  const int first = table.verticalScrollBar()->value() / rowHeight;
  manager_.List().Show(first, first + table.viewport()->height() / rowHeight + 1);
}

void DataManagerWindow::TakePicked() {
  if (!list_.AnyPicked()) note_.clear();
  manager_.SetPicked(list_.Picked(), list_.AnyPicked() ? list_.Current() : -1);
}

void DataManagerWindow::SelectHits(const std::vector<int>& rows) {
  QItemSelection hits;
  for (std::size_t place = 0; place < rows.size();) {
    std::size_t last = place;
    while (last + 1 < rows.size() && rows[last + 1] == rows[last] + 1) ++last;
    if (static_cast<std::size_t>(hits.size()) == kMostBlocks) break;
    hits.append(
        QItemSelectionRange(model_.index(rows[place], 0), model_.index(rows[last], kManagerColumns - 1)));
    place = last + 1;
  }
  note_ = hits.size() < static_cast<qsizetype>(kMostBlocks)
              ? QString()
              : tr("Only the first hits are selected. The filter line above shows all of them.");
  list_.Table().selectionModel()->select(hits, QItemSelectionModel::ClearAndSelect);
}

void DataManagerWindow::ReachRow(int row) {
  ListTable& table = list_.Table();
  const int last = model_.rowCount() - 1;
  for (const int each : {std::max(row - kRowsAround, 0), std::min(row + kRowsAround, last), row})
    table.scrollTo(model_.index(each, 0));
  table.selectionModel()->setCurrentIndex(model_.index(row, 0),
                                          QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

void DataManagerWindow::Enter() {
  second_ = loop_.Every(1s, [this] { Show(); });
  LookAtSight();
  Show();
}

void DataManagerWindow::Leave() {
  second_.Stop();
  manager_.Preview().Stop();
}

Job<bool> DataManagerWindow::MayClose() {
  if (!isVisible()) co_return true;
  co_return co_await manager_.MayClose();
}

void DataManagerWindow::Show() {
  const TrackList& list = manager_.List();
  for (std::size_t place = 0; place < modes_.size(); ++place)
    modes_[place]->setChecked(manager_.Mode() == kModes[place]);
  QString title = DispModeText(list.Mode()).toUpper();
  if (list.Filtered()) title += tr("  FILTERED");
  if (list.Suspended()) title += tr("  REFRESHES SUSPENDED");
  list_.SetTitle(title);
  list_.SetHint(!list.Words().isEmpty() ? tr("No file has these words in its name.")
                : list.Filtered()       ? tr("No track bears these references.")
                                        : tr("Nothing is here yet.\nBring music in with \"FILE IMPORT\"."));
  // The words went with the catalogue that they were typed for.
  if (list.Words().isEmpty() && !words_->hasFocus()) words_->clear();
  count_->setText(QString::number(list.Count()));
  current_->setText(note_.isEmpty() ? manager_.CurrentWords() : note_);
  find_->setText(manager_.Find().Caption());
  const bool any = list_.AnyPicked();
  select_->setText(!any                ? QStringLiteral("Select All")
                   : list_.AllPicked() ? QStringLiteral("Clear All")
                                       : QStringLiteral("Clear Selected"));
  const OffReason empty{list.Count() == 0, tr("The list is empty")};
  Offer(*select_, WhyOff({empty}));
  Offer(*find_, WhyOff({empty}));
  references_->Show();
  names_->Show();
  preview_->Show();
  bulk_->Show();
  tools_.Show();
  ShowJob();
}

void DataManagerWindow::ShowJob() {
  const TrackList& list = manager_.List();
  JobState state;
  state.percentInWords = true;
  if (const auto shown = manager_.Shown()) {
    state.running = true;
    state.words = shown->words;
    state.share = shown->share;
  } else if (!list.JobWords().isEmpty()) {
    state.running = true;
    state.words = list.JobWords();
    state.share = list.JobShare();
  }
  job_->Show(state);
}

}  // namespace kelvo
