#include "ui/ListPanel.h"

#include "platform/Words.h"
#include "ui/LetterBox.h"
#include "ui/Naming.h"
#include "ui/PickedRows.h"
#include "ui/ScalableIcon.h"
#include "ui/SpokenText.h"
#include "ui/Tabular.h"

#include <QLineEdit>
#include <QShortcut>
#include <QSortFilterProxyModel>
#include <QVBoxLayout>

#include <algorithm>

namespace kelvo {

namespace {

/// Shows the end of what is too long.
class EndDelegate : public TabularDelegate {
 public:
  using TabularDelegate::TabularDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    TabularDelegate::initStyleOption(option, index);
    option->textElideMode = Qt::ElideLeft;
  }
};

}  // namespace

/// Shows the rows that hold all words of a line.
class WordFilter : public QSortFilterProxyModel {
 public:
  explicit WordFilter(RowModelBase& model) : main_(model.MainColumn()) { setSourceModel(&model); }

  [[nodiscard]] QModelIndexList match(const QModelIndex& start, int, const QVariant& value, int,
                                      Qt::MatchFlags) const override {
    return RowsBeginning(*this, main_, start, value.toString());
  }
  void SetWords(const QString& line) {
    words_ = FoldedText(line).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    invalidateFilter();
  }

 protected:
  [[nodiscard]] bool filterAcceptsRow(int row, const QModelIndex& parent) const override {
    return std::all_of(words_.begin(), words_.end(), [this, row, &parent](const QString& word) {
      for (int column = 0; column < sourceModel()->columnCount(parent); ++column) {
        const QString text = sourceModel()->index(row, column, parent).data().toString();
        if (FoldedText(text).contains(word)) return true;
      }
      return false;
    });
  }

 private:
  int main_;
  QStringList words_;
};

ListPanel::ListPanel(const Look& look, RowModelBase& model, QWidget* parent)
    : Panel(look.group, look.title, parent), model_(model), table_(this) {
  SetNames(table_, look.name, look.fixedName);
  table_.setAccessibleName(look.accessible);
  table_.setSelectionMode(look.many ? QAbstractItemView::ExtendedSelection
                                    : QAbstractItemView::SingleSelection);
  table_.setItemDelegate(new TabularDelegate(this));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* head = new QHBoxLayout;
  layout->addLayout(head);
  layout->addWidget(&table_, 1);
  if (!look.filter.isEmpty()) head->addWidget(AddFilter(look), 1);
  if (!look.letters.isEmpty()) head->addWidget(AddLetters(look));
  table_.setModel(filter_ ? static_cast<QAbstractItemModel*>(filter_.get()) : &model_);
  ShowColumns();
  ShowCount();

  if (model_.Edited()) table_.setEditTriggers(QAbstractItemView::EditKeyPressed);
  connect(&table_, &ListTable::RowActivated, this, &ListPanel::Activate);
  connect(table_.selectionModel(), &QItemSelectionModel::selectionChanged, this, &ListPanel::PickedChanged);
  connect(table_.selectionModel(), &QItemSelectionModel::currentRowChanged, this, &ListPanel::CurrentChanged);
  Count(model_);
  // It tells of rows that go while they are still there.
  if (filter_) Count(*filter_);
}

ListPanel::~ListPanel() = default;

void ListPanel::Activate(const QModelIndex& shown) {
  if (shown.flags().testFlag(Qt::ItemIsEditable)) {
    table_.edit(shown);
  } else {
    Q_EMIT RowActivated(RowOf(shown.row()));
  }
}

QLineEdit* ListPanel::AddFilter(const Look& look) {
  filter_ = std::make_unique<WordFilter>(model_);
  auto* line = new QLineEdit(this);
  line->setObjectName(look.filter);
  line->setAccessibleName(tr("Filter: %1").arg(look.accessible));
  line->setPlaceholderText(tr("Type to filter  (Ctrl+F)"));
  line->setClearButtonEnabled(true);
  line->addAction(ScalableIcon(Icon::Search), QLineEdit::LeadingPosition);
  NameLineSigns(*line);
  connect(line, &QLineEdit::textChanged, this, [this](const QString& text) { filter_->SetWords(text); });
  connect(line, &QLineEdit::returnPressed, this, [this] {
    table_.setFocus();
    if (filter_->rowCount() > 0) table_.selectRow(0);
  });
  connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_F), this), &QShortcut::activated, line, [line] {
    line->setFocus();
    line->selectAll();
  });
  return line;
}

LetterBox* ListPanel::AddLetters(const Look& look) {
  auto* letters = new LetterBox(look.accessible, this);
  letters->setObjectName(look.letters);
  connect(letters, &LetterBox::Chosen, this, &ListPanel::Jump);
  return letters;
}

void ListPanel::Count(const QAbstractItemModel& model) {
  connect(&model, &QAbstractItemModel::rowsInserted, this, &ListPanel::ShowCount);
  connect(&model, &QAbstractItemModel::rowsRemoved, this, &ListPanel::ShowCount);
  connect(&model, &QAbstractItemModel::modelReset, this, &ListPanel::ShowCount);
}

void ListPanel::ShowColumns() {
  std::vector<std::pair<int, ListTable::OptionalColumn>> others;
  for (int column = 0; column < model_.columnCount(); ++column) {
    const ColumnLook& look = model_.Look(column);
    if (look.path) table_.setItemDelegateForColumn(column, new EndDelegate(this));
    if (column != model_.MainColumn()) others.push_back({look.rank, {column, look.letters}});
  }
  std::stable_sort(others.begin(), others.end(),
                   [](const auto& one, const auto& other) { return one.first < other.first; });
  std::vector<ListTable::OptionalColumn> ranked;
  for (const auto& each : others) ranked.push_back(each.second);
  table_.SetColumns(model_.MainColumn(), model_.Look(model_.MainColumn()).letters, std::move(ranked));
}

int ListPanel::RowOf(int shown) const {
  return filter_ ? filter_->mapToSource(filter_->index(shown, 0)).row() : shown;
}

void ListPanel::ShowCount() {
  const int shown = table_.model()->rowCount();
  const int all = model_.rowCount();
  SetNote(shown == all ? QString::number(all) : tr("%1 of %2").arg(shown).arg(all));
  Q_EMIT PickedChanged();
}

std::vector<int> ListPanel::Picked() const {
  std::vector<int> rows = PickedRows(table_);
  if (!filter_) return rows;
  for (int& row : rows) row = RowOf(row);
  std::sort(rows.begin(), rows.end());
  return rows;
}

int ListPanel::Current() const {
  const QModelIndex current = table_.currentIndex();
  return current.isValid() ? RowOf(current.row()) : -1;
}

bool ListPanel::AnyPicked() const {
  return table_.selectionModel()->hasSelection();
}

bool ListPanel::AllPicked() const {
  int picked = 0;
  for (const QItemSelectionRange& range : table_.selectionModel()->selection()) picked += range.height();
  return picked > 0 && picked >= table_.model()->rowCount();
}

void ListPanel::PickAllOrNone() {
  if (AllPicked()) {
    table_.clearSelection();
  } else {
    table_.selectAll();
  }
}

void ListPanel::Pick(const std::vector<int>& rows) {
  QItemSelection picked;
  QModelIndex first;
  QModelIndex last;
  // Rows that follow one another are one range: of 100,000 ranges a selection is slow.
  for (const int row : rows) {
    const QModelIndex place = model_.index(row, 0);
    const QModelIndex shown = filter_ ? filter_->mapFromSource(place) : place;
    if (!shown.isValid()) continue;
    if (last.isValid() && shown.row() == last.row() + 1) {
      last = shown;
      continue;
    }
    if (first.isValid()) picked.select(first, last);
    first = last = shown;
  }
  if (first.isValid()) picked.select(first, last);
  table_.selectionModel()->select(picked, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  if (!picked.isEmpty()) table_.scrollTo(picked.front().topLeft());
}

void ListPanel::Jump(QChar letter) {
  if (table_.model()->rowCount() == 0) return;
  const QModelIndex first = table_.model()->index(0, model_.MainColumn());
  const QModelIndexList hits =
      table_.model()->match(first, Qt::DisplayRole, QString(letter), 1, Qt::MatchStartsWith | Qt::MatchWrap);
  if (hits.isEmpty()) return;
  table_.setCurrentIndex(hits.front());
  table_.scrollTo(hits.front(), QAbstractItemView::PositionAtTop);
}

}  // namespace kelvo
