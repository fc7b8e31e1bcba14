#include "database/windows/TransferWindow.h"

#include "platform/Words.h"
#include "ui/CommandButton.h"
#include "ui/ElidedLabel.h"
#include "ui/ListTable.h"
#include "ui/Panel.h"
#include "ui/ProgressStrip.h"
#include "ui/ScalableIcon.h"

#include <QComboBox>
#include <QCompleter>
#include <QHBoxLayout>
#include <QListView>
#include <QShortcut>
#include <QStringListModel>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include <functional>

namespace kelvo {
namespace {

/// Edits a cell with the names of the database to choose from, or to type another.
class ChoiceDelegate : public QStyledItemDelegate {
 public:
  ChoiceDelegate(const TransferRows& rows, QObject* parent) : QStyledItemDelegate(parent), rows_(rows) {}

  std::function<void(const QString& words)> OnExtracting;

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override {
    const TransferRows::Choice choice = rows_.ChoiceOf(index.column());
    if (choice.words.isEmpty()) return QStyledItemDelegate::createEditor(parent, option, index);
    if (OnExtracting) OnExtracting(choice.words);
    auto* combo = new QComboBox(parent);
    combo->setEditable(true);
    combo->setInsertPolicy(QComboBox::NoInsert);
    // Else each of the names is measured before the box appears.
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(8);
    auto* names = new QListView(combo);
    names->setUniformItemSizes(true);
    combo->setView(names);
    combo->setModel(new QStringListModel(choice.names, combo));
    combo->completer()->setModelSorting(QCompleter::CaseInsensitivelySortedModel);
    combo->setAccessibleName(index.model()->headerData(index.column(), Qt::Horizontal).toString());
    auto* self = const_cast<ChoiceDelegate*>(this);
    connect(combo, &QComboBox::activated, self, [self, combo] {
      Q_EMIT self->commitData(combo);
      Q_EMIT self->closeEditor(combo);
    });
    return combo;
  }

 private:
  const TransferRows& rows_;
};

constexpr int kPerMille = 1000;

}  // namespace

QPushButton* TransferWindow::AddCommand(const QString& name, const QString& text, const QString& tooltip) {
  auto* button = new CommandButton(text, this);
  button->setObjectName(name);
  button->setToolTip(tooltip);
  return button;
}

TransferWindow::TransferWindow(const Services& services)
    : transfer_(Transfer::Services{services.loop, services.prompter, services.audio, services.catalogue,
                                   services.paths, services.defaults}),
      panel_(new Panel(Group::Lists, tr("WAITING FILES"), this)),
      list_(new ListTable(panel_)),
      words_(new ElidedLabel(this)),
      file_(new ProgressStrip(this)),
      total_(new ProgressStrip(this)),
      select_(AddCommand(QStringLiteral("CmdSelect"), QStringLiteral("Select All"),
                         tr("Selects all files, or none  (Ctrl+A)"))),
      delete_(AddCommand(QStringLiteral("CmdDelete"), tr("&Delete Files"),
                         tr("Deletes the selected files from the disk  (Del)"))),
      move_(AddCommand(QStringLiteral("CmdMove"), tr("&Move To Data Base"),
                       tr("Moves the selected files into the database  (Ctrl+Return)"))),
      stop_(
          AddCommand(QStringLiteral("CmdStop"), tr("&Stop"), tr("Stops; what is not moved yet stays here"))),
      hint_(tr("F2, Return or a double click edits artist, album, category and date.")) {
  setObjectName(QStringLiteral("FrmTransfer"));
  setWindowTitle(tr("Transfer To Data Base"));
  list_->setObjectName(QStringLiteral("ListView1"));
  list_->setAccessibleName(tr("Files that wait to be moved into the database"));
  list_->setModel(&transfer_.Rows());
  list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::DoubleClicked);
  list_->SetColumns(TransferRows::Track, 26,
                    {{TransferRows::Artist, 20},
                     {TransferRows::Date, 12},
                     {TransferRows::Category, 17},
                     {TransferRows::Album, 20},
                     {TransferRows::Size, 11}});
  words_->setObjectName(QStringLiteral("Label1"));
  file_->setObjectName(QStringLiteral("ProgressBar1"));
  total_->setObjectName(QStringLiteral("ProgressBar2"));
  file_->setAccessibleName(tr("This file"));
  total_->setAccessibleName(tr("All files"));
  file_->setRange(0, kPerMille);
  file_->SetPercentShown(true);
  select_->setIcon(ScalableIcon(Icon::Check));
  delete_->setIcon(ScalableIcon(Icon::Clear));
  move_->setIcon(ScalableIcon(Icon::Load));
  stop_->setIcon(ScalableIcon(Icon::Stop));
  Theme::SetRole(*move_, QStringLiteral("primary"));
  Theme::SetRole(*stop_, QStringLiteral("stop"));

  auto* delegate = new ChoiceDelegate(transfer_.Rows(), this);
  delegate->OnExtracting = [this](const QString& words) { words_->setText(words); };
  list_->setItemDelegate(delegate);
  connect(delegate, &QAbstractItemDelegate::closeEditor, this, [this] { Show(); });
  BuildLayout();
  BuildKeys();
  connect(select_, &QPushButton::clicked, this, [this] { CmdSelect_Click(); });
  connect(delete_, &QPushButton::clicked, this, [this] { transfer_.Delete(SelectedIds()); });
  connect(move_, &QPushButton::clicked, this, [this] { transfer_.Move(SelectedIds()); });
  connect(stop_, &QPushButton::clicked, this, [this] { transfer_.Stop(); });
  connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { Show(); });
  connect(&transfer_.Rows(), &QAbstractItemModel::rowsInserted, this, [this] { Show(); });
  connect(&transfer_.Rows(), &QAbstractItemModel::rowsRemoved, this, [this] { Show(); });
  connect(&transfer_, &Transfer::Changed, this, [this] { Show(); });
  resize(fontMetrics().averageCharWidth() * 120, fontMetrics().height() * 30);
  place_ = std::make_unique<WindowPlace>(
      *this, services.settings,
      PlaceKeys::Of(services.title, QStringLiteral("Startup"), QStringLiteral("Transfer")));
  Show();
}

// The list looks at the rows until it goes, and those go with the window's members.
TransferWindow::~TransferWindow() {
  list_->setModel(nullptr);
}

void TransferWindow::BuildLayout() {
  auto* inside = new QVBoxLayout(panel_);
  inside->setContentsMargins(0, 0, 0, 0);
  inside->addWidget(list_);
  auto* bars = new QHBoxLayout;
  bars->addWidget(file_, 2);
  bars->addWidget(total_, 1);
  auto* commands = new QHBoxLayout;
  commands->addWidget(select_);
  commands->addWidget(delete_);
  commands->addStretch(1);
  commands->addWidget(stop_);
  commands->addWidget(move_);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(panel_, 1);
  layout->addWidget(words_);
  layout->addLayout(bars);
  layout->addLayout(commands);
}

void TransferWindow::BuildKeys() {
  const auto bind = [this](const QKeySequence& key, QPushButton* button) {
    connect(new QShortcut(key, this), &QShortcut::activated, button, &QPushButton::click);
  };
  bind(QKeySequence(Qt::CTRL | Qt::Key_A), select_);
  bind(QKeySequence(Qt::CTRL | Qt::Key_Return), move_);
  bind(QKeySequence(Qt::Key_Delete), delete_);
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
    // Of the list alone: the same key ends the editing of a cell.
    auto* edit = new QShortcut(QKeySequence(key), list_, nullptr, nullptr, Qt::WidgetShortcut);
    connect(edit, &QShortcut::activated, this, [this] {
      if (list_->currentIndex().flags() & Qt::ItemIsEditable) list_->edit(list_->currentIndex());
    });
  }
  connect(new QShortcut(QKeySequence(Qt::Key_F5), this), &QShortcut::activated, this,
          [this] { transfer_.List(); });
  connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this, &QWidget::close);
}

void TransferWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!event->spontaneous()) transfer_.List();
}

std::vector<int> TransferWindow::SelectedIds() const {
  std::vector<int> ids;
  const QModelIndexList rows = list_->selectionModel()->selectedRows();
  for (const QModelIndex& index : rows) ids.push_back(transfer_.Rows().IdAt(index.row()));
  return ids;
}

bool TransferWindow::AllSelected() const {
  const int rows = transfer_.Rows().rowCount();
  if (rows == 0) return false;
  const QItemSelection& selection = list_->selectionModel()->selection();
  int selected = 0;
  for (const QItemSelectionRange& range : selection) selected += range.height();
  return selected >= rows;
}

void TransferWindow::CmdSelect_Click() {
  if (AllSelected()) {
    list_->clearSelection();
  } else {
    list_->selectAll();
  }
}

void TransferWindow::Show() {
  const bool running = transfer_.Busy();
  const int rows = transfer_.Rows().rowCount();
  const bool selected = list_->selectionModel()->hasSelection();
  const FileProgress progress = transfer_.Progress();
  panel_->SetNote(QString::number(rows));
  list_->SetEmptyText(transfer_.Listing()
                          ? tr("Looking into the utility folder...")
                          : tr("No files are waiting.\nBring some in with \"Import Music\" first."));
  select_->setText(AllSelected() ? QStringLiteral("Clear All") : QStringLiteral("Select All"));
  select_->setEnabled(!running && rows > 0);
  delete_->setEnabled(!running && selected);
  move_->setEnabled(!running && selected);
  stop_->setVisible(running || transfer_.Listing());
  file_->setVisible(running && progress.files > 0);
  total_->setVisible(running && progress.files > 0);
  file_->setValue(progress.total > 0 ? static_cast<int>(progress.done * kPerMille / progress.total) : 0);
  file_->SetWords(progress.total > 0 ? MegabytesText(progress.total) + tr(" MB") : QString());
  total_->setRange(0, progress.files);
  total_->setValue(progress.File());
  total_->SetWords(tr("%1 of %2").arg(progress.File()).arg(progress.files));
  words_->setText(progress.words.isEmpty() && rows > 0 ? hint_ : progress.words);
}

}  // namespace kelvo
