#include "console/windows/LibraryPanel.h"

#include "console/windows/LibraryModel.h"
#include "database/Catalogue.h"
#include "ui/CommandButton.h"
#include "ui/ListTable.h"
#include "ui/ScalableIcon.h"
#include "ui/Tabular.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kelvo {

LibraryPanel::LibraryPanel(const Catalogue& catalogue, const TrackFilter& filter, PlayQueue& queue,
                           QWidget* parent)
    : Panel(Group::Lists, QStringLiteral("TRACKS"), parent),
      catalogue_(catalogue),
      filter_(filter),
      queue_(queue),
      model_(new LibraryModel(catalogue, this)),
      words_(new QLineEdit(this)),
      list_(new ListTable(this)),
      add_(new CommandButton(ScalableIcon(Icon::Add), QStringLiteral("Add To Queue"), this)),
      selectAll_(new CommandButton(QStringLiteral("Select All"), this)) {
  setObjectName(QStringLiteral("Library"));
  words_->setObjectName(QStringLiteral("TrackFilter"));
  words_->setPlaceholderText(tr("Type to filter: any words of artist and title  (Ctrl+F)"));
  words_->setAccessibleName(tr("Filter the tracks"));
  words_->setClearButtonEnabled(true);
  words_->addAction(ScalableIcon(Icon::Search), QLineEdit::LeadingPosition);
  words_->installEventFilter(this);

  list_->setObjectName(QStringLiteral("ListView1"));
  list_->setAccessibleName(tr("Tracks"));
  list_->setModel(model_);
  list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_->setDragEnabled(true);
  list_->setDragDropMode(QAbstractItemView::DragOnly);
  list_->setItemDelegate(new TabularDelegate(this));
  list_->SetColumns(LibraryModel::Track, 26,
                    {{LibraryModel::Time, 8},
                     {LibraryModel::Bpm, 7},
                     {LibraryModel::Genre, 15},
                     {LibraryModel::Date, 11},
                     {LibraryModel::Hi, 6}});

  add_->setObjectName(QStringLiteral("Command31"));
  add_->setToolTip(tr("Adds the selected tracks to the play queue  (Enter or double click)"));
  Theme::SetRole(*add_, QStringLiteral("primary"));
  selectAll_->setObjectName(QStringLiteral("Command30"));
  for (QPushButton* button : {add_, selectAll_}) button->setFocusPolicy(Qt::TabFocus);

  auto* commands = new QHBoxLayout;
  commands->addWidget(add_, 1);
  commands->addWidget(selectAll_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(words_);
  layout->addWidget(list_, 1);
  layout->addLayout(commands);

  connect(words_, &QLineEdit::textChanged, this, [this] { ShowMatches(); });
  connect(words_, &QLineEdit::returnPressed, this, [this] {
    if (model_->rowCount() == 0) return;
    list_->setFocus();
    list_->selectRow(0);
  });
  connect(add_, &QPushButton::clicked, this, [this] { AddSelected(); });
  connect(list_, &ListTable::RowActivated, this, [this] { AddSelected(); });
  connect(selectAll_, &QPushButton::clicked, this, [this] {
    if (model_->rowCount() == 0) return;
    const bool select = selectAll_->text() == QStringLiteral("Select All");
    if (select) {
      list_->selectAll();
    } else {
      list_->clearSelection();
    }
    selectAll_->setText(select ? QStringLiteral("Clear All") : QStringLiteral("Select All"));
  });
  Reload();
}

void LibraryPanel::Reload() {
  words_->clear();
  ShowMatches();
}

void LibraryPanel::BeginFilter() {
  words_->setFocus();
  words_->selectAll();
}

void LibraryPanel::ShowMatches() {
  model_->Show(filter_.Find(words_->text()));
  list_->scrollToTop();
  selectAll_->setText(QStringLiteral("Select All"));
  const int shown = model_->rowCount();
  const int all = catalogue_.LastTrack();
  const bool narrowed = !words_->text().trimmed().isEmpty();
  SetNote(narrowed ? tr("%1 of %2").arg(shown).arg(all) : QString::number(all));
  list_->SetEmptyText(narrowed ? tr("No track has all these words.")
                               : QStringLiteral("Please Add Some Music To the Data Base"));
  add_->setEnabled(shown > 0);
  selectAll_->setEnabled(shown > 0);
}

void LibraryPanel::AddSelected() {
  std::vector<Mref> tracks;
  QModelIndexList rows = list_->selectionModel()->selectedRows();
  std::sort(rows.begin(), rows.end());
  for (const QModelIndex& row : rows) tracks.push_back(model_->TrackAt(row.row()));
  jobs_.Add(queue_.AddTracks(std::move(tracks)));
  list_->clearSelection();
  selectAll_->setText(QStringLiteral("Select All"));
}

bool LibraryPanel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == words_ && event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Escape) {
      words_->clear();
      return true;
    }
    if (key->key() == Qt::Key_Down && model_->rowCount() > 0) {
      list_->setFocus();
      list_->selectRow(std::max(0, list_->currentIndex().row()));
      return true;
    }
  }
  return Panel::eventFilter(watched, event);
}

}  // namespace kelvo
