#include "console/windows/JinglePanel.h"

#include "console/windows/MonitorPanel.h"
#include "console/windows/TrackMime.h"
#include "platform/Words.h"
#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/Fader.h"
#include "ui/Line.h"
#include "ui/ListTable.h"
#include "ui/Naming.h"
#include "ui/ProgressStrip.h"
#include "ui/Theme.h"

#include <QDragEnterEvent>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMimeData>
#include <QShortcut>
#include <QVBoxLayout>

namespace kelvo {

namespace {

/// A button of the bank. A bite that is dropped on it is stored there.
class BankButton : public CommandButton {
 public:
  explicit BankButton(QWidget* parent) : CommandButton(parent) {
    setAcceptDrops(true);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    // A name has more use for the room than its edges.
    setStyleSheet(QStringLiteral("QPushButton { padding-left: 4px; padding-right: 4px; }"));
  }
  std::function<void(int row)> OnBite;

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override {
    if (event->mimeData()->hasFormat(kSoundBiteMime)) event->acceptProposedAction();
  }
  void dropEvent(QDropEvent* event) override {
    OnBite(event->mimeData()->data(kSoundBiteMime).toInt());
    event->acceptProposedAction();
  }
};

}  // namespace

JinglePanel::JinglePanel(Jingles& jingles, Monitor& monitor, QWidget* parent)
    : Panel(Group::Bites, QStringLiteral("JINGLES BANK"), parent),
      jingles_(jingles),
      model_(jingles.Bites(), {{{.head = QStringLiteral("Sound Bites"), .letters = 24}, &SoundBite::name}}),
      list_(new ListTable(this)),
      bank_(AddCommand(*this, {.name = QStringLiteral("CmdBank"),
                               .fixedName = QStringLiteral("Command29"),
                               .words = QStringLiteral("Bank"),
                               .tooltip = QStringLiteral("Click a bank button to add selected item"),
                               .run = [this] { jingles_.BeginAssign(); }})),
      queue_(AddCommand(*this, {.name = QStringLiteral("CmdQueueBite"),
                                .fixedName = QStringLiteral("Command22"),
                                .words = QStringLiteral("Queue"),
                                .tooltip = QStringLiteral("Add To Play Queue"),
                                .run = [this] { jingles_.QueueSelected(); }})),
      stop_(AddCommand(*this, {.name = QStringLiteral("CmdStopBite"),
                               .words = tr("Stop"),
                               .tooltip = tr("Stops the sound bite"),
                               .key = QKeySequence(Qt::CTRL | Qt::Key_F6),
                               .run = [this] { jingles_.Stop(); }})),
      pfl_(AddMonitorButton(monitor, MonitorSource::Jingles, *this)),
      progress_(new ProgressStrip(this)),
      level_(new Fader(Qt::Horizontal, 0, Jingles::kMostSlider, this)),
      levelWords_(new QLabel(this)),
      info_(new ElidedLabel(this)) {
  setObjectName(QStringLiteral("JinglesBank"));
  BuildBank();
  BuildList();
  SetNames(*progress_, QStringLiteral("BarBite"));
  progress_->setAccessibleName(tr("Sound bite"));
  SetNames(*level_, QStringLiteral("SldJingVol"));
  level_->setAccessibleName(QStringLiteral("Jingle Volume"));
  level_->setToolTip(QStringLiteral("Jingle Volume"));
  level_->setInvertedAppearance(true);
  level_->setPageStep(200);
  level_->setSingleStep(50);
  levelWords_->setObjectName(QStringLiteral("LblJingVol"));
  levelWords_->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("00")));
  levelWords_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  info_->setObjectName(QStringLiteral("LblBiteInfo"));
  Lay();
  connect(level_, &Fader::MovedByHand, this, [this](int value) { jingles_.SetSlider(value); });
  connect(&jingles_, &Jingles::Changed, this, [this] { Show(); });
  connect(&jingles_, &Jingles::SelectionChanged, this, [this] { ShowSelection(); });
  Show();
}

void JinglePanel::BuildBank() {
  for (int button = 0; button < Jingles::kBankButtons; ++button) {
    auto* made = new BankButton(this);
    SetNames(*made, QStringLiteral("CmdJingle%1").arg(button + 1),
             QStringLiteral("Command28_%1").arg(button));
    made->OnBite = [this, button](int row) { jingles_.Assign(button, row); };
    connect(made, &QPushButton::clicked, this, [this, button] { jingles_.PressBank(button); });
    const QKeySequence key(QKeyCombination(Qt::ControlModifier, static_cast<Qt::Key>(Qt::Key_F1 + button)));
    connect(new QShortcut(key, this), &QShortcut::activated, made, &QPushButton::click);
    buttons_[static_cast<std::size_t>(button)] = made;
  }
}

void JinglePanel::BuildList() {
  SetNames(*list_, QStringLiteral("LstSoundBites"), QStringLiteral("Sbites"));
  list_->setAccessibleName(tr("Sound bites"));
  list_->SetEmptyText(tr("No sound bites yet.\nLibrary, \"Import Jingles\" brings them in."));
  model_.Drag = [](const QModelIndexList& rows) {
    auto* data = new QMimeData;
    data->setData(kSoundBiteMime, QByteArray::number(rows.front().row()));
    return data;
  };
  list_->setModel(&model_);
  list_->setSelectionMode(QAbstractItemView::SingleSelection);
  list_->setDragEnabled(true);
  list_->horizontalHeader()->hide();
  list_->SetColumns(0, 12, {});
  list_->setFixedHeight(list_->verticalHeader()->defaultSectionSize() * 4 + 2 * list_->frameWidth());
  const auto pick = [this](const QModelIndex& row) {
    if (row.isValid()) jingles_.Select(row.row());
  };
  connect(list_->selectionModel(), &QItemSelectionModel::currentRowChanged, this, pick);
  connect(list_, &QAbstractItemView::clicked, this, pick);
  connect(list_, &ListTable::RowActivated, this,
          [this](const QModelIndex& row) { jingles_.Play(row.row()); });
}

void JinglePanel::Lay() {
  // Two short rows: five buttons beside each other would be too narrow for a name on a small screen.
  constexpr int kColumns = 3;
  auto* bank = new QGridLayout;
  bank->setSpacing(4);
  for (int button = 0; button < Jingles::kBankButtons; ++button)
    bank->addWidget(buttons_[static_cast<std::size_t>(button)], button / kColumns, button % kColumns);
  bank->addWidget(bank_, 1, kColumns - 1);
  for (int column = 0; column < kColumns; ++column) bank->setColumnStretch(column, 1);
  auto* commands = new QVBoxLayout;
  commands->setSpacing(4);
  for (QPushButton* button : {queue_, stop_, pfl_}) commands->addWidget(button);
  commands->addStretch(1);
  auto* middle = new QHBoxLayout;
  middle->setSpacing(4);
  middle->addWidget(list_, 1);
  middle->addLayout(commands);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addLayout(bank);
  layout->addLayout(middle);
  layout->addWidget(info_);
  layout->addLayout(Line({{progress_, 3}, {level_, 2}, levelWords_}));
}

void JinglePanel::ShowBank() {
  for (int button = 0; button < Jingles::kBankButtons; ++button) {
    QPushButton& shown = *buttons_[static_cast<std::size_t>(button)];
    const QString& name = jingles_.BankName(button);
    const QString key = QStringLiteral("  (Ctrl+F%1)").arg(button + 1);
    const bool sounds = jingles_.SoundingButton() == button;
    const QString words = name.isEmpty() ? QStringLiteral("Not Set") : name;
    shown.setText(shown.fontMetrics().elidedText(words, Qt::ElideRight, shown.width() - 14));
    shown.setAccessibleName(tr("Jingle %1: %2").arg(button + 1).arg(words));
    shown.setToolTip((jingles_.AssignPending() ? tr("Stores the selected sound bite here")
                      : name.isEmpty()         ? tr("\"Bank\", or a sound bite dropped here, sets it")
                                               : tr("Plays %1; a second press stops it").arg(name)) +
                     key);
    const QString role = jingles_.AssignPending() ? QStringLiteral("primary")
                         : sounds                 ? QStringLiteral("go")
                                                  : QString();
    if (shown.property("role").toString() != role) Theme::SetRole(shown, role);
  }
}

void JinglePanel::Show() {
  ShowBank();
  const bool picked = jingles_.Selected() >= 0;
  const QString whyNoBite = picked ? QString() : tr("No sound bite is selected");
  Offer(*bank_, whyNoBite);
  Offer(*queue_, whyNoBite);
  Offer(*stop_, jingles_.State() == DeckState::Playing ? QString() : tr("No sound bite plays"));
  const int seconds = static_cast<int>(jingles_.Duration());
  progress_->setRange(0, std::max(seconds, 1));
  progress_->setValue(jingles_.State() == DeckState::Playing ? static_cast<int>(jingles_.Position()) : 0);
  progress_->SetWords(jingles_.State() == DeckState::Empty
                          ? QString()
                          : QStringLiteral("Duration: ") + QString::number(jingles_.Duration(), 'f', 1) +
                                QStringLiteral(" Secs"));
  progress_->setToolTip(jingles_.Title());
  level_->setValue(jingles_.Slider());
  levelWords_->setText(QString::number((Jingles::kMostSlider - jingles_.Slider()) / 100));
  info_->setText(jingles_.Info());
  info_->setVisible(!jingles_.Info().isEmpty());
}

void JinglePanel::ShowSelection() {
  const int row = jingles_.Selected();
  if (row < 0) {
    list_->clearSelection();
  } else if (list_->currentIndex().row() != row) {
    // Only shown: what loads it is the operator's click.
    const QSignalBlocker quiet(list_->selectionModel());
    list_->selectRow(row);
    list_->viewport()->update();
  }
  Show();
}

}  // namespace kelvo
