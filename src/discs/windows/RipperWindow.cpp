#include "discs/windows/RipperWindow.h"

#include "discs/windows/PlaceBox.h"
#include "discs/windows/RipLook.h"
#include "platform/Words.h"
#include "ui/Command.h"
#include "ui/DroppedFiles.h"
#include "ui/ElidedLabel.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/ProgressStrip.h"
#include "ui/WhyOff.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QCompleter>
#include <QLineEdit>
#include <QListView>
#include <QStringListModel>
#include <QVBoxLayout>

#include <algorithm>

namespace kelvo {
namespace {

constexpr int kPerMille = 1000;

bool AnyImage(const QStringList& places) {
  return std::any_of(places.begin(), places.end(), IsDiscImage);
}

}  // namespace

RipperWindow::RipperWindow(Ripper& ripper)
    : ToolWindow({.name = QStringLiteral("CdRipper"),
                  .fixedName = QStringLiteral("frmVBCDRip"),
                  .title = ripper.Title(),
                  .letters = 126,
                  .lines = 34}),
      ripper_(ripper),
      model_(ripper.Rows().Store(), RipColumns(ripper)),
      tracks_({.name = QStringLiteral("LstTracks"),
               .fixedName = QStringLiteral("grdTracks"),
               .title = tr("TRACKS OF THE DISC"),
               .accessible = tr("Tracks of the disc")},
              model_, this),
      doneModel_(ripper.Progress().Lines(), {{{.head = tr("Done"), .letters = 30}, &RipRun::Line::words}}),
      done_({.name = QStringLiteral("LstRipped"),
             .title = tr("DONE"),
             .accessible = tr("What is done of the rip"),
             .many = false},
            doneModel_, this),
      drive_(new PlaceBox(ripper.Shelf(), this)),
      disc_(new ElidedLabel(this)),
      album_(AddChoice(QStringLiteral("CboAlbum"), tr("Album"))),
      artist_(AddChoice(QStringLiteral("CboArtist"), tr("Artist of the ticked rows"))),
      date_(AddChoice(QStringLiteral("CboDate"), tr("Date of the ticked rows"))),
      inFront_(new QCheckBox(tr("Put the artist in &front of the title"), this)),
      rowWords_(new ElidedLabel(this)),
      presets_(new ElidedLabel(this)) {
  setAcceptDrops(true);
  model_.Dress = DressRipRow;
  model_.MayEdit = [this] { return !ripper_.Busy(); };
  tracks_.Table().setItemDelegate(new RipDelegate(ripper_, this));
  disc_->setObjectName(QStringLiteral("LblDisc"));
  rowWords_->setObjectName(QStringLiteral("LblRow"));
  presets_->setObjectName(QStringLiteral("LblPresets"));
  inFront_->setObjectName(QStringLiteral("ChkArtistInFront"));
  inFront_->setToolTip(tr("The file of a track is named Artist - Track Name"));
  album_->setToolTip(tr("The album of the files: one of the database, or a new one"));
  BuildCommands();
  BuildLayout();
  connect(drive_, &PlaceBox::Chosen, this, [this](const QString& place) { ripper_.Choose(place); });
  connect(album_, &QComboBox::editTextChanged, this,
          [this](const QString& album) { ripper_.SetAlbum(album); });
  connect(inFront_, &QCheckBox::clicked, this, [this](bool on) { ripper_.SetFFormat(on ? 1 : 0); });
  connect(&tracks_, &ListPanel::CurrentChanged, this, [this] { ShowRow(); });
  connect(&tracks_, &ListPanel::PickedChanged, this, [this] { Show(); });
  connect(&model_, &QAbstractItemModel::dataChanged, this, [this] { ShowRow(); });
  connect(&ripper_, &Ripper::Changed, this, [this] { Show(); });
  FillChoices();
  Show();
}

QComboBox* RipperWindow::AddChoice(const QString& name, const QString& words) {
  auto* combo = new QComboBox(this);
  combo->setObjectName(name);
  combo->setAccessibleName(words);
  combo->setEditable(true);
  combo->lineEdit()->setAccessibleName(words);
  combo->setInsertPolicy(QComboBox::NoInsert);
  combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  combo->setMinimumContentsLength(10);
  auto* names = new QListView(combo);
  names->setUniformItemSizes(true);
  combo->setView(names);
  return combo;
}

void RipperWindow::FillChoices() {
  const auto fill = [](QComboBox& combo, const QStringList& names) {
    const QString typed = combo.currentText();
    combo.setModel(new QStringListModel(names, &combo));
    combo.setCurrentIndex(-1);
    combo.setEditText(typed);
  };
  fill(*album_, ripper_.Albums());
  fill(*artist_, ripper_.Artists());
  fill(*date_, DatesOf(ripper_.Year()));
}

void RipperWindow::BuildCommands() {
  image_ = AddCommand(*this,
                      {.name = QStringLiteral("CmdOpenImage"),
                       .words = tr("Open I&mage..."),
                       .tooltip = tr("Takes a disc image (CUE with BIN, TOC, NRG) as a drive; one can be "
                                     "dropped here too"),
                       .icon = Icon::Folder,
                       .run = [this] {
                         ripper_.Shelf().BrowseImage([this](const QString& place) { ripper_.Choose(place); });
                       }});
  tray_ = AddCommand(*this, {.name = QStringLiteral("CmdTray"),
                             .fixedName = QStringLiteral("Command4"),
                             .words = QStringLiteral("EJect CD"),
                             .tooltip = tr("Opens the tray and closes it again; an image is put away"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_J),
                             .run = [this] { ripper_.EjectOrClose(); }});
  insertArtist_ = AddCommand(
      *this, {.name = QStringLiteral("CmdInsertArtist"),
              .words = tr("Insert A&rtist"),
              .tooltip = tr("Puts the artist into all ticked rows"),
              .run = [this] { ripper_.Rows().FillTicked(RipRows::Artist, artist_->currentText()); }});
  insertDate_ =
      AddCommand(*this, {.name = QStringLiteral("CmdInsertDate"),
                         .words = tr("Insert &Date"),
                         .tooltip = tr("Puts the date into all ticked rows"),
                         .run = [this] { ripper_.Rows().FillTicked(RipRows::Year, date_->currentText()); }});
  all_ = AddCommand(*this, {.name = QStringLiteral("CmdSelectAll"),
                            .fixedName = QStringLiteral("Command2(0)"),
                            .words = QStringLiteral("Select All"),
                            .tooltip = tr("Ticks all rows"),
                            .key = QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_A),
                            .icon = Icon::Check,
                            .run = [this] { ripper_.Rows().TickAll(); }});
  invert_ = AddCommand(*this, {.name = QStringLiteral("CmdInvert"),
                               .fixedName = QStringLiteral("Command2(1)"),
                               .words = QStringLiteral("Invert"),
                               .tooltip = tr("Ticks the rows that are not, and takes the other ticks away"),
                               .key = QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_I),
                               .run = [this] { ripper_.Rows().Invert(); }});
  tick_ = AddCommand(*this, {.name = QStringLiteral("CmdTick"),
                             .words = tr("&Tick"),
                             .tooltip = tr("Ticks the marked rows, or takes their ticks away"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_T),
                             .run = [this] {
                               for (const int row : tracks_.Picked())
                                 ripper_.Rows().Tick(row, !ripper_.Rows().Row(row).selected);
                             }});
  rip_ = AddCommand(*this, {.name = QStringLiteral("CmdRip"),
                            .fixedName = QStringLiteral("Command1"),
                            .words = tr("Rip"),
                            .tooltip = tr("Rips the ticked tracks into the utility folder"),
                            .key = QKeySequence(Qt::CTRL | Qt::Key_Return),
                            .icon = Icon::Disc,
                            .role = QStringLiteral("primary"),
                            .run = [this] { ripper_.Start(); }});
}

Panel* RipperWindow::BuildProgress() {
  auto* panel = new Panel(Group::Lists, tr("CD RIP PROGRESS"), this);
  SetNames(*panel, QStringLiteral("PnlRipProgress"), QStringLiteral("frmRipDialog"));
  info_ = new ElidedLabel(panel);
  SetNames(*info_, QStringLiteral("LblInfo"), QStringLiteral("lblInfo"));
  info_->setWordWrap(true);
  // Five lines, the first of which may be a long name.
  info_->setFixedHeight(7 * fontMetrics().lineSpacing());
  bar_ = new ProgressStrip(panel);
  bar_->setObjectName(QStringLiteral("PrgRip"));
  bar_->setAccessibleName(tr("Progress of the track"));
  bar_->setRange(0, kPerMille);
  cancel_ =
      AddCommand(*panel, {.name = QStringLiteral("CmdCancelRip"),
                          .words = tr("&Cancel Rip"),
                          .tooltip = tr("Ends the rip; the tracks that are done stay in the utility folder"),
                          .icon = Icon::Stop,
                          .role = QStringLiteral("stop"),
                          .run = [this] { ripper_.Progress().Stop(); }});
  auto* left = new QVBoxLayout;
  left->addWidget(info_);
  left->addLayout(Line({{bar_, 1}, cancel_}));
  // As high as the words: the grid keeps its rows.
  done_.setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Ignored);
  auto* layout = new QHBoxLayout(panel);
  layout->addLayout(left, 3);
  layout->addWidget(&done_, 2);
  return panel;
}

void RipperWindow::BuildLayout() {
  const auto label = [this](const QString& words, QWidget* field) {
    auto* made = new QLabel(words, this);
    made->setBuddy(field);
    return made;
  };
  progress_ = BuildProgress();
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(Line({label(tr("Dri&ve"), drive_), {drive_, 2}, {disc_, 3}, image_, tray_}));
  layout->addLayout(Line({label(tr("&Album"), album_),
                          {album_, 3},
                          label(tr("Artist"), artist_),
                          {artist_, 3},
                          insertArtist_,
                          label(tr("Date"), date_),
                          {date_, 1},
                          insertDate_}));
  layout->addWidget(&tracks_, 3);
  layout->addWidget(rowWords_);
  layout->addWidget(progress_);
  layout->addWidget(presets_);
  layout->addLayout(Line({all_, invert_, tick_, inFront_, kRoom, rip_}));
}

void RipperWindow::closeEvent(QCloseEvent* event) {
  if (ripper_.Busy() && isEnabled()) {
    event->ignore();
    ripper_.RefuseClose();
    return;
  }
  ToolWindow::closeEvent(event);
}

void RipperWindow::dragEnterEvent(QDragEnterEvent* event) {
  TakeAsCopy(*event, !ripper_.Busy() && AnyImage(DroppedFiles(*event->mimeData())));
}

void RipperWindow::dragMoveEvent(QDragMoveEvent* event) {
  TakeAsCopy(*event, !ripper_.Busy() && AnyImage(DroppedFiles(*event->mimeData())));
}

void RipperWindow::dropEvent(QDropEvent* event) {
  const QStringList places = DroppedFiles(*event->mimeData());
  TakeAsCopy(*event, !ripper_.Busy() && AnyImage(places));
  if (event->isAccepted()) TakeFiles(places);
}

void RipperWindow::TakeFiles(const QStringList& places) {
  for (const QString& place : places) {
    if (ripper_.Shelf().AddImage(place)) ripper_.Choose(ripper_.Shelf().LastAdded());
  }
}

void RipperWindow::Show() {
  const bool busy = ripper_.Busy();
  const int rows = ripper_.Rows().Count();
  drive_->Show(ripper_.Place());
  disc_->setText(ripper_.Words());
  disc_->setToolTip(ripper_.Words());
  tracks_.SetHint(ripper_.Words() +
                  tr("\nPut an audio disc into the drive and press F5,\nor drop a disc image here."));
  if (album_->currentText() != ripper_.Album()) album_->setEditText(ripper_.Album());
  inFront_->setChecked(ripper_.FFormat() == 1);
  presets_->setText(RipPresetWords(ripper_.Presets()));
  tray_->setText(ripper_.TrayOpen() ? QStringLiteral("Close Tray") : QStringLiteral("EJect CD"));
  const OffReason atWork{busy, tr("A rip is under way")};
  const OffReason empty{rows == 0, tr("No track is listed")};
  const QString whyNotRows = WhyOff({atWork, empty});
  for (QWidget* each : std::initializer_list<QWidget*>{all_, invert_, insertArtist_, insertDate_})
    Offer(*each, whyNotRows);
  Offer(*tick_, WhyOff({atWork, empty, {!tracks_.AnyPicked(), tr("No row is marked")}}));
  for (QWidget* each : std::initializer_list<QWidget*>{drive_, image_, album_, artist_, date_, inFront_})
    Offer(*each, WhyOff({atWork}));
  Offer(*tray_, ripper_.WhyNoTray());
  Offer(*rip_, ripper_.WhyNoStart());
  ShowRow();
  ShowProgress();
}

void RipperWindow::ShowRow() {
  const QString words = ripper_.WordsOf(tracks_.Current());
  rowWords_->setText(words.isEmpty() && ripper_.Rows().Count() > 0
                         ? tr("F2, Return or a double click edits name, artist and date.")
                         : words);
  rowWords_->setToolTip(words);
}

void RipperWindow::ShowProgress() {
  const RipRun& run = ripper_.Progress();
  progress_->setVisible(run.Running());
  if (!run.Running()) return;
  progress_->SetTitle(run.Title());
  info_->setText(run.Info());
  bar_->setValue(static_cast<int>(run.Share() * kPerMille));
  bar_->SetWords(run.PercentWords());
}

}  // namespace kelvo
