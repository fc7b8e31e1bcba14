#include "console/windows/QueuePanel.h"

#include "console/desk/DeskMenu.h"
#include "console/windows/QueueModel.h"
#include "platform/Words.h"
#include "ui/Command.h"
#include "ui/CommandButton.h"
#include "ui/ElidedLabel.h"
#include "ui/KeyList.h"
#include "ui/ListTable.h"
#include "ui/Naming.h"
#include "ui/ScalableIcon.h"
#include "ui/Tabular.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QVBoxLayout>

namespace kelvo {

namespace {

/// So many beats of automatic play a list that was scrolled stays where it is.
constexpr int kBeatsToPosition = 4;

}  // namespace

QPushButton* QueuePanel::AddCommand(const QString& name, const QString& tooltip, const QString& fixedName) {
  auto* button = new CommandButton(this);
  SetNames(*button, name, fixedName);
  button->setToolTip(tooltip);
  button->setAccessibleName(tooltip);
  return button;
}

QueuePanel::QueuePanel(PlayQueue& queue, const QueueTimes& times, QWidget* parent)
    : Panel(Group::Lists, QStringLiteral("PLAY QUEUE"), parent),
      queue_(queue),
      model_(new QueueModel(queue, &times, this)),
      name_(new QLineEdit(this)),
      list_(new ListTable(this)),
      up_(AddCommand(QStringLiteral("CmdQueUp"), tr("Moves Selected Track Up"))),
      down_(AddCommand(QStringLiteral("CmdQueDown"), tr("Moves Selected Track Down"))),
      cut_(AddCommand(QStringLiteral("CmdQueCut"), tr("Remove Selected File"))),
      clear_(AddCommand(QStringLiteral("CmdQueClear"), tr("Clear the Play Queue"))),
      edit_(AddCommand(QStringLiteral("CmdQueEdit"), tr("Edit Song Data"), QStringLiteral("CmdClEdit"))),
      undo_(AddCommand(QStringLiteral("CmdQueUndo"), tr("Takes Back The Last Cut, Clear Or Load"))),
      load_(
          AddCommand(QStringLiteral("CmdPlaylistLoad"), tr("Loads A Playlist"), QStringLiteral("Command14"))),
      save_(AddCommand(QStringLiteral("CmdPlaylistSave"), tr("Saves The Play Queue As A Playlist"),
                       QStringLiteral("Command13"))),
      timings_(AddCommand(QStringLiteral("CmdTimings"), tr("Shows durations in place of genres, and back"),
                          QStringLiteral("Command11"))) {
  setObjectName(QStringLiteral("PlayQueue"));
  auto* nameLabel = new ElidedLabel(tr("Play List Name/Id"), this);
  SetNames(*name_, QStringLiteral("TxtPlayListName"), QStringLiteral("Text5"));
  name_->setAccessibleName(nameLabel->text());
  name_->setAcceptDrops(false);
  name_->setMinimumWidth(fontMetrics().averageCharWidth() * 6);
  nameLabel->setBuddy(name_);

  SetNames(*list_, QStringLiteral("PlayQueueList"), QStringLiteral("ListView2"));
  list_->setAccessibleName(tr("Play queue"));
  list_->setModel(model_);
  list_->setSelectionMode(QAbstractItemView::SingleSelection);
  list_->setDragEnabled(true);
  list_->setAcceptDrops(true);
  list_->setDropIndicatorShown(true);
  list_->setDragDropOverwriteMode(false);
  list_->setDefaultDropAction(Qt::MoveAction);
  list_->SetEmptyText(tr("The queue is empty.\nDouble-click a track on the left, or drag it here."));
  for (const int hidden : {PlistDataColumn, PathColumn, ReqdataColumn, MrefColumn})
    list_->setColumnHidden(hidden, true);
  list_->setItemDelegate(new TabularDelegate(this));
  QHeaderView* head = list_->horizontalHeader();
  list_->LetHeadBeClicked();
  head->moveSection(head->visualIndex(GenreColumn), 2);

  up_->setIcon(ScalableIcon(Icon::Up));
  down_->setIcon(ScalableIcon(Icon::Down));
  cut_->setIcon(ScalableIcon(Icon::Cut));
  clear_->setIcon(ScalableIcon(Icon::Clear));
  edit_->setIcon(ScalableIcon(Icon::Edit));
  undo_->setIcon(ScalableIcon(Icon::Undo));
  load_->setIcon(ScalableIcon(Icon::Load));
  save_->setIcon(ScalableIcon(Icon::Save));
  timings_->setIcon(ScalableIcon(Icon::Timer));
  cut_->setText(tr("Cut"));
  clear_->setText(tr("Clear"));
  edit_->setText(tr("Edit"));
  load_->setText(QStringLiteral("Load"));
  save_->setText(QStringLiteral("Save"));

  const auto bind = [this](QPushButton* button, const QKeySequence& key) {
    // A shortcut of its own: a button whose words change loses the one that it was given.
    connect(new QShortcut(key, this), &QShortcut::activated, button, &QPushButton::click);
    TellKey(*button, key.toString(QKeySequence::NativeText));
  };
  bind(up_, QKeySequence(Qt::CTRL | Qt::Key_Up));
  bind(down_, QKeySequence(Qt::CTRL | Qt::Key_Down));
  bind(cut_, QKeySequence(Qt::CTRL | Qt::Key_Delete));
  bind(clear_, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Delete));
  bind(undo_, QKeySequence(Qt::CTRL | Qt::Key_Z));
  bind(timings_, QKeySequence(Qt::CTRL | Qt::Key_T));
  // Their keys are bound with their entries in the menu.
  TellKey(*load_, QStringLiteral("Ctrl+O"));
  TellKey(*save_, QStringLiteral("Ctrl+S"));

  auto* box = new QHBoxLayout;
  box->addWidget(name_, 1);
  box->addWidget(timings_);
  naming_ = new QBoxLayout(QBoxLayout::LeftToRight);
  naming_->addWidget(nameLabel);
  naming_->addLayout(box, 1);
  rowCommands_ = new QHBoxLayout;
  rowCommands_->setSpacing(4);
  for (QPushButton* button : {up_, down_, cut_, clear_, edit_}) rowCommands_->addWidget(button);
  rowCommands_->addStretch(1);
  // On a small screen the decks need the room.
  for (QPushButton* button : {up_, down_}) button->setFixedWidth(button->iconSize().width() + 16);
  auto* store = new QHBoxLayout;
  store->setSpacing(4);
  store->addWidget(undo_);
  for (QPushButton* button : {load_, save_}) store->addWidget(button, 1);
  commands_ = new QBoxLayout(QBoxLayout::LeftToRight);
  commands_->addLayout(rowCommands_, 1);
  commands_->addLayout(store);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(naming_);
  layout->addWidget(list_, 1);
  layout->addLayout(commands_);

  connect(up_, &QPushButton::clicked, this, [this] { queue_.MoveSelectedUp(); });
  connect(down_, &QPushButton::clicked, this, [this] { queue_.MoveSelectedDown(); });
  connect(cut_, &QPushButton::clicked, this, [this] { queue_.CutSelected(); });
  connect(clear_, &QPushButton::clicked, this, [this] { jobs_.Add(queue_.ClearQueue()); });
  connect(undo_, &QPushButton::clicked, this, [this] { queue_.Undo(); });
  connect(load_, &QPushButton::clicked, this, [this] { Q_EMIT WindowWanted(WindowId::kPlaylistLoad); });
  connect(save_, &QPushButton::clicked, this, [this] { Q_EMIT WindowWanted(WindowId::kPlaylistSave); });
  connect(edit_, &QPushButton::clicked, this, [this] { queue_.EditSelected(); });
  connect(timings_, &QPushButton::clicked, this, [this] { queue_.SwitchTimings(); });
  connect(name_, &QLineEdit::textEdited, this, [this](const QString& text) { queue_.SetName(text); });
  connect(name_, &QLineEdit::returnPressed, list_, qOverload<>(&QWidget::setFocus));
  connect(head, &QHeaderView::sectionClicked, this, [this](int section) {
    if (section < QueueColumnCount) queue_.SortBy(static_cast<QueueColumn>(section));
  });
  connect(list_, &QTableView::clicked, this,
          [this](const QModelIndex& index) { queue_.Click(index.row() + 1); });
  connect(model_, &QueueModel::RowMoved, this, [this](int from, int to) { queue_.MoveTo(from, to); });
  connect(model_, &QueueModel::TracksDropped, this,
          [this](const std::vector<Mref>& tracks) { jobs_.Add(queue_.AddTracks(tracks)); });
  connect(list_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& current, const QModelIndex&) {
            if (!showingSelection_ && current.isValid()) queue_.Click(current.row() + 1);
          });
  connect(&queue_, &PlayQueue::SelectionChanged, this, [this] { ShowSelection(); });
  connect(&queue_, &PlayQueue::RowsChanged, this, [this] {
    ShowSelection();
    ShowFacts();
  });
  connect(&queue_, &PlayQueue::FactsChanged, this, [this] { ShowFacts(); });
  connect(&queue_, &PlayQueue::RowShown, this, &QueuePanel::ShowRow);
  connect(list_->verticalScrollBar(), &QScrollBar::valueChanged, this,
          [this] { beatsToPosition_ = kBeatsToPosition; });
  ShowFacts();
}

void QueuePanel::resizeEvent(QResizeEvent* event) {
  Panel::resizeEvent(event);
  // On a narrow desk the box is under its label, with room for a name.
  const bool narrow = width() < fontMetrics().height() * 22;
  const auto direction = narrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight;
  naming_->setDirection(direction);
  const int beside = rowCommands_->minimumSize().width() + commands_->itemAt(1)->minimumSize().width();
  commands_->setDirection(narrow || width() < beside ? QBoxLayout::TopToBottom : direction);
}

QSize QueuePanel::minimumSizeHint() const {
  const QSize hint = Panel::minimumSizeHint();
  // That of the narrow form, also while it has the other.
  const int beside = commands_->minimumSize().width() - rowCommands_->minimumSize().width();
  return {hint.width() - (commands_->direction() == QBoxLayout::LeftToRight ? beside : 0), hint.height()};
}

void QueuePanel::Beat(int litRow) {
  model_->SetLitRow(litRow);
  model_->TellTimes();
}

void QueuePanel::ShowSelection() {
  showingSelection_ = true;
  const int selected = queue_.Selected();
  if (selected == 0) {
    list_->clearSelection();
    list_->selectionModel()->clearCurrentIndex();
  } else {
    const QModelIndex index = model_->index(selected - 1, 0);
    list_->selectionModel()->setCurrentIndex(index,
                                             QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    list_->scrollTo(index);
  }
  showingSelection_ = false;
  ShowFacts();
}

void QueuePanel::ShowRow(int index) {
  list_->scrollTo(model_->index(index - 1, 0));
}

void QueuePanel::ShowPosition(int index) {
  if (list_->underMouse()) beatsToPosition_ = kBeatsToPosition;
  if (beatsToPosition_ > 0) {
    --beatsToPosition_;
  } else {
    ShowRow(index);
  }
}

void QueuePanel::ShowColumns() {
  if (timingsShown_ == queue_.ShowsTimings()) return;
  timingsShown_ = queue_.ShowsTimings();
  // A whole name before anything else: what the comment says is shown by the row's colour too. Durations that
  // were asked for are seen at every width.
  std::vector<ListTable::OptionalColumn> others{{CommentColumn, 20},
                                                {GenreColumn, 13},
                                                {QueueModel::kPlaysIn, 9},
                                                {BpmColumn, 7},
                                                {QueueModel::kLastPlayed, 12},
                                                {DateColumn, 11},
                                                {HiColumn, 6}};
  if (*timingsShown_) {
    others.erase(others.begin() + 1);
    others.insert(others.begin(), {GenreColumn, 11, true});
  }
  list_->SetColumns(TrackColumn, 45, std::move(others));
}

void QueuePanel::ShowFacts() {
  if (name_->text() != queue_.Name()) name_->setText(queue_.Name());
  SetNote(QStringLiteral("%1   %2").arg(queue_.Count()).arg(HoursMinutesSeconds(queue_.QueueTotalSeconds())));
  timings_->setText(queue_.TimingsCaption());
  Offer(*timings_, queue_.Count() > 0 ? QString() : tr("The queue is empty"));
  ShowColumns();
  edit_->setVisible(static_cast<bool>(queue_.OpenEditor));
  ShowCommands();
}

void QueuePanel::ShowCommands() {
  Offer(*up_, queue_.WhyNoMove(-1));
  Offer(*down_, queue_.WhyNoMove(1));
  Offer(*cut_, queue_.WhyNoCut());
  Offer(*clear_, queue_.WhyNoClear());
  Offer(*undo_, queue_.WhyNoUndo());
  Offer(*edit_, queue_.WhyNoEdit());
  list_->horizontalHeader()->setSectionsClickable(queue_.WhyNoSort().isEmpty());
}

}  // namespace kelvo
