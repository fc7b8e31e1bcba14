#include "database/windows/TransferWindow.h"

#include "database/windows/FileLook.h"
#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/JobStrip.h"
#include "ui/Line.h"
#include "ui/ProgressStrip.h"
#include "ui/WhyOff.h"

#include <QComboBox>
#include <QCompleter>
#include <QListView>
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

RowModel<TransferRow>::Columns TransferWindow::Columns() {
  const auto shown = [](TransferRows::Column column) {
    return [column](const TransferRow& row) { return TransferRows::Shown(row, column); };
  };
  const auto edited = [this, shown](const ColumnLook& look, TransferRows::Column column) {
    const auto set = [this, column](int row, const QString& text) {
      return transfer_.Rows().SetText(row, column, text);
    };
    return RowColumn<TransferRow>(look, shown(column), set, [column](const TransferRow& row) {
      return TransferRows::Text(row, column);
    });
  };
  // In the order of TransferRows::Column.
  return {{{.head = QStringLiteral("Track Name"), .letters = 26}, shown(TransferRows::Track)},
          {{.head = QStringLiteral("Size (MB)"), .letters = 11, .rank = 5, .number = true},
           shown(TransferRows::Size)},
          edited({.head = QStringLiteral("Artist"), .letters = 20, .rank = 1}, TransferRows::Artist),
          edited({.head = QStringLiteral("Album"), .letters = 20, .rank = 4}, TransferRows::Album),
          edited({.head = QStringLiteral("Category"), .letters = 17, .rank = 3}, TransferRows::Category),
          edited({.head = QStringLiteral("Date"), .letters = 12, .rank = 2}, TransferRows::Date)};
}

TransferWindow::TransferWindow(EventLoop& loop, Transfer& transfer)
    : ToolWindow({.name = QStringLiteral("TransferToDatabase"),
                  .fixedName = QStringLiteral("FrmTransfer"),
                  .title = tr("Transfer To Data Base"),
                  .letters = 120,
                  .lines = 30}),
      transfer_(transfer),
      model_(transfer.Rows().Store(), Columns()),
      files_({.name = QStringLiteral("LstWaiting"),
              .title = tr("WAITING FILES"),
              .accessible = tr("Files that wait to be moved into the database"),
              .filter = QStringLiteral("TxtFilter"),
              .letters = QStringLiteral("CboLetter")},
             model_, this),
      words_(new ElidedLabel(this)),
      file_(new ProgressStrip(this)),
      run_(new JobStrip(loop, QStringLiteral("PrgRun"), tr("All files"), this)) {
  model_.MayEdit = [this] { return !transfer_.Rows().Locked(); };
  model_.Dress = [](const TransferRow& row, int column, int role) {
    return DressFile(row.path, row.trouble, column == TransferRows::Track, role);
  };
  words_->setObjectName(QStringLiteral("LblTransfer"));
  file_->setObjectName(QStringLiteral("PrgFile"));
  file_->setAccessibleName(tr("This file"));
  file_->setRange(0, kPerMille);
  file_->SetPercentShown(true);
  run_->OfferStop(QStringLiteral("CmdStop"), tr("Stops; what is not moved yet stays here"),
                  [this] { transfer_.Stop(); });
  auto* delegate = new ChoiceDelegate(transfer_.Rows(), this);
  delegate->OnExtracting = [this](const QString& words) { words_->setText(words); };
  files_.Table().setItemDelegate(delegate);
  BuildCommands();
  BuildLayout();
  connect(delegate, &QAbstractItemDelegate::closeEditor, this, [this] { Show(); });
  connect(&files_, &ListPanel::PickedChanged, this, [this] { Show(); });
  connect(&files_, &ListPanel::CurrentChanged, this, [this] { ShowWords(); });
  connect(&transfer_, &Transfer::Changed, this, [this] { Show(); });
  Show();
}

void TransferWindow::BuildCommands() {
  select_ = AddCommand(*this, {.name = QStringLiteral("CmdSelectAll"),
                               .fixedName = QStringLiteral("CmdSelect"),
                               .words = QStringLiteral("Select All"),
                               .tooltip = tr("Selects all files, or none"),
                               .key = QKeySequence(Qt::CTRL | Qt::Key_A),
                               .icon = Icon::Check,
                               .run = [this] { files_.PickAllOrNone(); }});
  delete_ = AddCommand(*this, {.name = QStringLiteral("CmdDelete"),
                               .words = tr("&Delete Files"),
                               .tooltip = tr("Deletes the selected files from the disk"),
                               .key = QKeySequence(Qt::Key_Delete),
                               .icon = Icon::Clear,
                               .run = [this] { transfer_.Delete(PickedIds()); }});
  encode_ = AddCommand(*this, {.name = QStringLiteral("CmdEncode"),
                               .fixedName = QStringLiteral("CmdMp3"),
                               .words = tr("&Encode To Mp3"),
                               .tooltip = tr("Encodes the selected wave files; the results wait here"),
                               .key = QKeySequence(Qt::CTRL | Qt::Key_M),
                               .icon = Icon::Volume,
                               .run = [this] { Encode(); }});
  move_ = AddCommand(*this, {.name = QStringLiteral("CmdMove"),
                             .words = tr("&Move To Data Base"),
                             .tooltip = tr("Moves the selected files into the database"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_Return),
                             .icon = Icon::Load,
                             .role = QStringLiteral("primary"),
                             .run = [this] { transfer_.Move(PickedIds()); }});
}

void TransferWindow::BuildLayout() {
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(&files_, 1);
  layout->addWidget(words_);
  layout->addLayout(Line({{file_, 2}, {run_, 1}}));
  layout->addLayout(Line({select_, delete_, encode_, kRoom, move_}));
}

std::vector<int> TransferWindow::PickedIds() const {
  std::vector<int> ids;
  for (const int row : files_.Picked()) ids.push_back(transfer_.Rows().Store()[row].id);
  return ids;
}

void TransferWindow::Encode() {
  const QStringList files = transfer_.FilesToEncode(PickedIds());
  if (!files.isEmpty()) encodeFiles_(files);
}

void TransferWindow::SetEncode(std::function<void(const QStringList& files)> encode) {
  encodeFiles_ = std::move(encode);
  Show();
}

void TransferWindow::Show() {
  const bool busy = transfer_.Busy();
  files_.SetHint(transfer_.Listing()
                     ? tr("Looking into the utility folder...")
                     : tr("No files are waiting.\nBring some in with \"Import Music\" first."));
  select_->setText(files_.AllPicked() ? QStringLiteral("Clear All") : QStringLiteral("Select All"));
  const OffReason atWork{busy, tr("The list is at work: stop it first, or wait")};
  Offer(*select_, WhyOff({atWork, {model_.rowCount() == 0, tr("No file waits")}}));
  const QString whyNotPicked = WhyOff({atWork, {!files_.AnyPicked(), tr("No file is selected")}});
  Offer(*delete_, whyNotPicked);
  encode_->setVisible(static_cast<bool>(encodeFiles_));
  Offer(*encode_, WhyOff({atWork}));
  Offer(*move_, whyNotPicked);
  ShowProgress();
}

void TransferWindow::ShowProgress() {
  const FileProgress progress = transfer_.Progress();
  const bool copies = transfer_.Busy() && progress.files > 0;
  const double share =
      progress.total > 0 ? static_cast<double>(progress.done) / static_cast<double>(progress.total) : 0;
  file_->setVisible(transfer_.Moving());
  file_->setValue(static_cast<int>(share * kPerMille));
  file_->SetWords(progress.total > 0 ? MegabytesText(progress.total) + tr(" MB") : QString());
  JobState run{.running = transfer_.Busy() || transfer_.Listing()};
  if (copies) {
    run.words = tr("%1 of %2").arg(progress.File()).arg(progress.files);
    run.share = progress.Percent() / 100;
  }
  run_->setVisible(run.running);
  run_->Show(run);
  ShowWords();
}

void TransferWindow::ShowWords() {
  const int row = files_.Current();
  const bool known = row >= 0 && row < transfer_.Rows().Store().Count();
  QStringList words{transfer_.Progress().words};
  if (known && !transfer_.Busy()) {
    const QString& trouble = transfer_.Rows().Store()[row].trouble;
    if (!trouble.isEmpty()) words.append(tr("It cannot be moved: %1").arg(trouble));
  }
  words.removeAll(QString());
  if (words.isEmpty() && !transfer_.Busy() && model_.rowCount() > 0)
    words.append(tr("F2, Return or a double click edits artist, album, category and date."));
  words_->setText(words.join(QStringLiteral("   ")));
}

}  // namespace kelvo
