#include "database/windows/ScanWindow.h"

#include "database/windows/DriveBox.h"
#include "database/windows/PickedRows.h"
#include "database/windows/ScanModel.h"
#include "ui/CommandButton.h"
#include "ui/ElidedLabel.h"
#include "ui/ListTable.h"
#include "ui/Panel.h"
#include "ui/ProgressStrip.h"
#include "ui/ScalableIcon.h"

#include <QCheckBox>
#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMimeData>
#include <QPainter>
#include <QShortcut>
#include <QStyledItemDelegate>
#include <QUrl>
#include <QVBoxLayout>

namespace kelvo {
namespace {

/// Paints a marked row on its colour, darker while it is selected.
class MarkDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const QVariant ground = index.data(Qt::BackgroundRole);
    QStyleOptionViewItem item(option);
    if (ground.isValid()) {
      const bool selected = item.state & QStyle::State_Selected;
      const QColor colour = ground.value<QColor>();
      const QColor chosen = Theme::Mix(colour, option.palette.color(QPalette::Highlight), kSelectedShare);
      painter->fillRect(option.rect, selected ? chosen : colour);
      // The style would paint its own ground over it.
      item.state &= ~(QStyle::State_Selected | QStyle::State_MouseOver);
    }
    QStyledItemDelegate::paint(painter, item, index);
  }

 private:
  static constexpr double kSelectedShare = 0.4;
};

constexpr int kPerMille = 1000;

}  // namespace

QPushButton* ScanWindow::AddCommand(const QString& name, const QString& text, const QString& tooltip,
                                    const QKeySequence& key) {
  auto* button = new CommandButton(text, this);
  button->setObjectName(name);
  button->setToolTip(tooltip);
  if (!key.isEmpty()) {
    // A shortcut of its own: a button whose words change loses the one that it was given.
    connect(new QShortcut(key, this), &QShortcut::activated, button, &QPushButton::click);
    button->setToolTip(tooltip + QStringLiteral("  (") + key.toString(QKeySequence::NativeText) +
                       QLatin1Char(')'));
  }
  return button;
}

QLineEdit* ScanWindow::AddField(const QString& name, const QString& label) {
  auto* field = new QLineEdit(this);
  field->setObjectName(name);
  field->setAccessibleName(label);
  return field;
}

ScanWindow::ScanWindow(const Services& services)
    : scan_(ScanImport::Services{services.loop, services.prompter, services.catalogue, services.paths,
                                 services.title}),
      model_(new ScanModel(scan_.Rows(), this)),
      panel_(new Panel(Group::Lists, tr("FILES FOUND"), this)),
      list_(new ListTable(panel_)),
      drives_(new DriveBox(scan_.Drives(), DriveBox::Words::Full, this)),
      browse_(AddCommand(QStringLiteral("CmdBrowse"), tr("&Browse..."), tr("Takes any folder to search"))),
      map_(AddCommand(QStringLiteral("CmdMap"), QStringLiteral("Map Network Drive"),
                      tr("Brings in a folder of another computer"), QKeySequence(Qt::CTRL | Qt::Key_M))),
      search_(AddCommand(QStringLiteral("Command11"), tr("Search"),
                         tr("Lists the Mp3 and Wav files of the drive or folder; stops what goes on"),
                         QKeySequence(Qt::Key_F5))),
      extract_(AddCommand(QStringLiteral("Command7"), QStringLiteral(">> Extract Artist From File Name >>"),
                          tr("Splits the titles of the selected rows at the separator"),
                          QKeySequence(Qt::CTRL | Qt::Key_E))),
      fromFolder_(AddCommand(QStringLiteral("Command6"), QStringLiteral("<< Get Artist From Folder Name <<"),
                             tr("Takes the folder's name as the artist of the selected rows"),
                             QKeySequence(Qt::CTRL | Qt::Key_G))),
      inFront_(AddCommand(QStringLiteral("Command9"), QStringLiteral(" << Rename As Artist - File Name <<"),
                          tr("Puts the artist in front of the titles of the selected rows"),
                          QKeySequence(Qt::CTRL | Qt::Key_R))),
      rename_(AddCommand(QStringLiteral("Command10"), QStringLiteral("Rename Title"),
                         tr("Edits the title of the row  (F2)"))),
      separator_(AddCommand(QStringLiteral("Command8"), tr("Change Se&parator..."),
                            QStringLiteral("Change The Extraction Separator"))),
      separatorWords_(new QLabel(this)),
      insertColumn_(new QComboBox(this)),
      insertText_(AddField(QStringLiteral("Text1"), tr("Text for the selected rows"))),
      insert_(AddCommand(QStringLiteral("CmdInsert"), tr("&Insert"),
                         tr("Puts the text into the column of all selected rows"))),
      existingArtist_(AddField(QStringLiteral("Text2"), QStringLiteral("Replace Existing Artist >"))),
      newArtist_(AddField(QStringLiteral("Text3"), QStringLiteral("With New Artist >"))),
      replace_(AddCommand(QStringLiteral("CmdReplace"), tr("Rep&lace"),
                          tr("Puts the new artist in place of the existing one in all rows"))),
      delete_(new QCheckBox(tr("&Delete source files after the import"), this)),
      clear_(AddCommand(QStringLiteral("CmdClear"), tr("&Clear List"),
                        tr("Empties the list; the files stay where they are"))),
      selectAll_(AddCommand(QStringLiteral("CmdSelect"), tr("Select &All"), tr("Selects all rows"))),
      import_(AddCommand(QStringLiteral("Command1"), tr("Import"),
                         tr("Copies the selected files to the utilities folder"),
                         QKeySequence(Qt::CTRL | Qt::Key_Return))),
      rowWords_(new ElidedLabel(this)),
      progress_(new ProgressStrip(this)) {
  setObjectName(QStringLiteral("frmCDview"));
  setWindowTitle(tr("Import Music"));
  setAcceptDrops(true);
  list_->setObjectName(QStringLiteral("ListView1"));
  list_->setAccessibleName(tr("Files found"));
  list_->setModel(model_);
  list_->setItemDelegate(new MarkDelegate(this));
  list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_->setEditTriggers(QAbstractItemView::EditKeyPressed);
  list_->SetColumns(ScanTitleColumn, 26,
                    {{ScanArtistColumn, 20},
                     {ScanDateColumn, 11},
                     {ScanFolderColumn, 18},
                     {ScanCommentsColumn, 14},
                     {ScanPathColumn, 40}});
  drives_->setObjectName(QStringLiteral("Combo1"));
  drives_->setAccessibleName(tr("Drive to search"));
  separatorWords_->setObjectName(QStringLiteral("Label5"));
  insertColumn_->setObjectName(QStringLiteral("Combo2"));
  insertColumn_->setAccessibleName(QStringLiteral("Insert Into Selected Rows In Column"));
  for (const ScanColumn column : {ScanArtistColumn, ScanTitleColumn, ScanDateColumn, ScanCommentsColumn}) {
    insertColumn_->addItem(ScanModel::HeadOf(column), column);
  }
  delete_->setObjectName(QStringLiteral("Check1"));
  delete_->setToolTip(tr("Each file is deleted when its copy is safe on the disk"));
  progress_->setObjectName(QStringLiteral("ProgressBar1"));
  progress_->setAccessibleName(tr("Progress"));
  progress_->setRange(0, kPerMille);
  rowWords_->setObjectName(QStringLiteral("Label1"));
  search_->setIcon(ScalableIcon(Icon::Search));
  browse_->setIcon(ScalableIcon(Icon::Folder));
  rename_->setIcon(ScalableIcon(Icon::Edit));
  clear_->setIcon(ScalableIcon(Icon::Clear));
  import_->setIcon(ScalableIcon(Icon::Load));
  Theme::SetRole(*import_, QStringLiteral("primary"));

  BuildLayout();
  Connect();
  resize(fontMetrics().averageCharWidth() * 132, fontMetrics().height() * 36);
  place_ = std::make_unique<WindowPlace>(
      *this, services.settings,
      PlaceKeys::Of(services.title, QStringLiteral("Startup"), QStringLiteral("Scan")));
  Show();
}

// The list looks at the rows until it goes, and those go with the window's members.
ScanWindow::~ScanWindow() {
  list_->setModel(nullptr);
}

QHBoxLayout* ScanWindow::BuildDriveLine() {
  auto* line = new QHBoxLayout;
  auto* label = new QLabel(tr("Dri&ve"), this);
  label->setBuddy(drives_);
  line->addWidget(label);
  line->addWidget(drives_, 1);
  for (QPushButton* button : {browse_, map_, search_}) line->addWidget(button);
  return line;
}

QVBoxLayout* ScanWindow::BuildNaming() {
  auto* commands = new QHBoxLayout;
  for (QPushButton* button : {extract_, fromFolder_, inFront_, rename_}) commands->addWidget(button, 1);
  auto* inserting = new QHBoxLayout;
  inserting->addWidget(separator_);
  inserting->addWidget(separatorWords_);
  inserting->addSpacing(fontMetrics().height());
  inserting->addWidget(new QLabel(insertColumn_->accessibleName(), this));
  inserting->addWidget(insertColumn_);
  inserting->addWidget(insertText_, 1);
  inserting->addWidget(insert_);
  auto* replacing = new QHBoxLayout;
  replacing->addWidget(new QLabel(existingArtist_->accessibleName(), this));
  replacing->addWidget(existingArtist_, 1);
  replacing->addWidget(new QLabel(newArtist_->accessibleName(), this));
  replacing->addWidget(newArtist_, 1);
  replacing->addWidget(replace_);
  auto* lines = new QVBoxLayout;
  for (QHBoxLayout* line : {commands, inserting, replacing}) lines->addLayout(line);
  return lines;
}

QHBoxLayout* ScanWindow::BuildImportLine() {
  auto* line = new QHBoxLayout;
  line->addWidget(selectAll_);
  line->addWidget(clear_);
  line->addStretch(1);
  line->addWidget(delete_);
  line->addWidget(import_);
  return line;
}

void ScanWindow::BuildLayout() {
  auto* inside = new QVBoxLayout(panel_);
  inside->setContentsMargins(0, 0, 0, 0);
  inside->addWidget(list_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(BuildDriveLine());
  layout->addWidget(panel_, 1);
  layout->addWidget(rowWords_);
  layout->addLayout(BuildNaming());
  layout->addLayout(BuildImportLine());
  layout->addWidget(progress_);
}

void ScanWindow::Connect() {
  ScanRows& rows = scan_.Rows();
  const auto onRows = [this, &rows](QPushButton* button, void (ScanRows::*command)(const std::vector<int>&)) {
    connect(button, &QPushButton::clicked, this,
            [this, &rows, command] { (rows.*command)(PickedRows(*list_)); });
  };
  onRows(extract_, &ScanRows::ExtractArtists);
  onRows(fromFolder_, &ScanRows::TakeArtistsFromFolders);
  onRows(inFront_, &ScanRows::PutArtistsInFront);
  connect(rename_, &QPushButton::clicked, this, [this] { Command10_Click(); });
  connect(separator_, &QPushButton::clicked, this, [&rows] { rows.ChangeSeparator(); });
  connect(insert_, &QPushButton::clicked, this, [this] { Insert_Click(); });
  connect(replace_, &QPushButton::clicked, this,
          [this, &rows] { rows.ReplaceArtist(existingArtist_->text(), newArtist_->text()); });
  connect(browse_, &QPushButton::clicked, this, [this] { scan_.Drives().Browse(); });
  connect(map_, &QPushButton::clicked, this, [this] { scan_.Drives().MapNetworkDrive(); });
  connect(search_, &QPushButton::clicked, this, [this] { Command11_Click(); });
  connect(clear_, &QPushButton::clicked, this, [this] { scan_.ClearList(); });
  connect(selectAll_, &QPushButton::clicked, list_, &QAbstractItemView::selectAll);
  connect(import_, &QPushButton::clicked, this, [this] { scan_.Import(PickedRows(*list_)); });
  // What is to be imported a second time has to be picked a second time.
  connect(&scan_, &ScanImport::Began, list_, &QAbstractItemView::clearSelection);
  connect(delete_, &QCheckBox::clicked, this, [this](bool on) { scan_.SetDeletesSources(on); });
  connect(list_, &ListTable::RowActivated, this, [this](const QModelIndex& index) {
    if (index.flags() & Qt::ItemIsEditable) list_->edit(index);
  });
  connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { Show(); });
  connect(list_->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] { ShowRow(); });
  connect(model_, &QAbstractItemModel::dataChanged, this, [this] { ShowRow(); });
  for (QLineEdit* field : {insertText_, existingArtist_, newArtist_}) {
    connect(field, &QLineEdit::textChanged, this, [this] { Show(); });
  }
  connect(insertText_, &QLineEdit::returnPressed, insert_, &QPushButton::click);
  connect(newArtist_, &QLineEdit::returnPressed, replace_, &QPushButton::click);
  connect(drives_, &QComboBox::currentIndexChanged, this, [this] { Show(); });
  connect(&rows, &ScanRows::SeparatorChanged, this, [this] { Show(); });
  connect(&scan_, &ScanImport::Changed, this, [this] { Show(); });
  connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this, &QWidget::close);
}

void ScanWindow::Command11_Click() {
  if (scan_.Busy()) {
    scan_.Stop();
  } else if (!drives_->Path().isEmpty()) {
    scan_.Search({drives_->Path()});
  }
}

void ScanWindow::Command10_Click() {
  const std::vector<int> picked = PickedRows(*list_);
  if (picked.empty()) return;
  const QModelIndex title = model_->index(picked.front(), ScanTitleColumn);
  list_->setFocus();
  list_->scrollTo(title);
  list_->setCurrentIndex(title);
  list_->edit(title);
}

void ScanWindow::Insert_Click() {
  const auto column = static_cast<ScanColumn>(insertColumn_->currentData().toInt());
  scan_.Rows().Insert(PickedRows(*list_), column, insertText_->text());
}

void ScanWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!event->spontaneous()) scan_.Drives().Refresh();
}

void ScanWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls() && !scan_.Busy()) event->acceptProposedAction();
}

void ScanWindow::dropEvent(QDropEvent* event) {
  QStringList folders;
  for (const QUrl& url : event->mimeData()->urls()) {
    if (url.isLocalFile()) folders.append(url.toLocalFile());
  }
  for (const QString& place : folders) {
    if (!IsMediaName(place)) scan_.Drives().AddFolder(place);
  }
  scan_.Search(folders);
  event->acceptProposedAction();
}

void ScanWindow::Show() {
  const bool busy = scan_.Busy();
  const int rows = scan_.Rows().Count();
  const bool picked = list_->selectionModel()->hasSelection();
  panel_->SetNote(QString::number(rows));
  list_->SetEmptyText(scan_.Searching() ? tr("Looking for music...")
                                        : tr("Choose a drive and press Search,\nor drop folders here."));
  search_->setText(busy ? QStringLiteral("Stop") : tr("Search"));
  search_->setIcon(ScalableIcon(busy ? Icon::Stop : Icon::Search));
  Theme::SetRole(*search_, busy ? QStringLiteral("stop") : QString());
  search_->setEnabled(busy || !drives_->Path().isEmpty());
  for (QPushButton* button : {extract_, fromFolder_, inFront_, rename_}) button->setEnabled(picked);
  insert_->setEnabled(picked && !insertText_->text().isEmpty());
  replace_->setEnabled(rows > 0 && !existingArtist_->text().isEmpty() && !newArtist_->text().isEmpty());
  clear_->setEnabled(!busy && rows > 0);
  selectAll_->setEnabled(rows > 0);
  import_->setEnabled(!busy && picked);
  delete_->setEnabled(!scan_.Importing());
  delete_->setChecked(scan_.DeletesSources());
  separatorWords_->setText(QStringLiteral("Use New Seperator=") + scan_.Rows().Separator());
  progress_->SetWords(scan_.Words());
  progress_->SetPercentShown(busy);
  progress_->setValue(busy ? static_cast<int>(scan_.Percent() * kPerMille / 100) : 0);
  ShowRow();
}

void ScanWindow::ShowRow() {
  const QModelIndex current = list_->currentIndex();
  const bool known = current.isValid() && current.row() < scan_.Rows().Count();
  const QString words = known ? ScanModel::WordsOf(scan_.Rows().Row(current.row()).mark) : QString();
  rowWords_->setText(!words.isEmpty() || scan_.Rows().Count() == 0
                         ? words
                         : tr("F2, Return or a double click edits title, artist, date and comments."));
}

}  // namespace kelvo
