#include "discs/windows/CdPlayerWindow.h"

#include "discs/windows/PlaceBox.h"
#include "ui/Command.h"
#include "ui/DroppedFiles.h"
#include "ui/ElidedLabel.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/TimeDisplay.h"
#include "ui/WhyOff.h"
#include "ui/WindowPlace.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>

namespace kelvo {
namespace {

bool AnyImage(const QStringList& places) {
  return std::any_of(places.begin(), places.end(), IsDiscImage);
}

QVariant DressTrack(const CdTrackRow& row, int /*column*/, int role) {
  if (!row.current) return {};
  if (role == Qt::FontRole) return Theme::Font(1, QFont::Bold);
  return role == Qt::ForegroundRole ? QVariant(Theme::Palette().title) : QVariant();
}

}  // namespace

CdPlayerWindow::CdPlayerWindow(CdPlayer& player)
    : ToolWindow({.name = QStringLiteral("CdPlayer"),
                  .fixedName = QStringLiteral("frmCdPlayer"),
                  .title = player.Title(),
                  .letters = 78,
                  .lines = 30}),
      player_(player),
      model_(player.Tracks(),
             {{{.head = tr("No."), .letters = 5, .rank = 1, .number = true},
               [](const CdTrackRow& row) { return QString::number(row.number); }},
              {{.head = tr("Track"), .letters = 30}, &CdTrackRow::title},
              {{.head = tr("Length"), .letters = 9, .rank = 2, .number = true}, &CdTrackRow::length}}),
      tracks_({.name = QStringLiteral("LstTracks"),
               .title = tr("TRACKS"),
               .accessible = tr("Tracks of the disc"),
               .many = false},
              model_, this),
      drive_(new PlaceBox(player.Shelf(), this)),
      output_(new QComboBox(this)),
      time_(new TimeDisplay(this)),
      disc_(new ElidedLabel(this)),
      track_(new ElidedLabel(this)),
      words_(new ElidedLabel(this)) {
  setAcceptDrops(true);
  model_.Dress = DressTrack;
  time_->setObjectName(QStringLiteral("TimTrack"));
  time_->setAccessibleName(tr("Time of the track"));
  disc_->setObjectName(QStringLiteral("LblDisc"));
  track_->setObjectName(QStringLiteral("LblTrackTime"));
  words_->setObjectName(QStringLiteral("LblWords"));
  output_->setObjectName(QStringLiteral("CboOutput"));
  output_->setAccessibleName(tr("Heard on"));
  output_->setToolTip(tr("Where the disc is heard: on air with the decks, or on the monitor's device alone"));
  output_->addItems({tr("Programme (on air)"), tr("Monitor")});
  BuildCommands();
  BuildLayout();
  RestorePlace();
  connect(drive_, &PlaceBox::Chosen, this, [this](const QString& place) { player_.Choose(place); });
  connect(output_, &QComboBox::activated, this, [this](int row) { player_.SetOnMonitor(row == 1); });
  connect(&tracks_, &ListPanel::RowActivated, this,
          [this](int row) { player_.PlayTrack(player_.Tracks()[row].number); });
  connect(&player_, &CdPlayer::Changed, this, [this] { Show(); });
  Show();
}

void CdPlayerWindow::BuildCommands() {
  const auto add = [this](const QString& name, const QString& words, const QString& tooltip, Icon icon,
                          void (CdPlayer::*order)()) {
    QPushButton* made = AddCommand(*this, {.name = name,
                                           .words = words,
                                           .tooltip = tooltip,
                                           .icon = icon,
                                           .run = [this, call = std::mem_fn(order)] { call(player_); }});
    transport_.push_back(made);
    return made;
  };
  add(QStringLiteral("CmdPrevious"), tr("P&revious"), tr("Goes to the track before"), Icon::SkipStart,
      &CdPlayer::PreviousTrack);
  add(QStringLiteral("CmdRewind"), tr("Re&wind"), tr("Goes back by a step"), Icon::Rewind, &CdPlayer::Rewind);
  play_ = add(QStringLiteral("CmdPlay"), tr("&Play"), tr("Plays on from where it is"), Icon::Play,
              &CdPlayer::Play);
  Theme::SetRole(*play_, QStringLiteral("go"));
  add(QStringLiteral("CmdPause"), tr("Pa&use"), tr("Waits at the place until Play"), Icon::Pause,
      &CdPlayer::Pause);
  add(QStringLiteral("CmdStop"), tr("&Stop"), tr("Stops, and goes to the beginning of the track"), Icon::Stop,
      &CdPlayer::Stop);
  add(QStringLiteral("CmdForward"), tr("&Forward"), tr("Goes on by a step"), Icon::Forward,
      &CdPlayer::Forward);
  add(QStringLiteral("CmdNext"), tr("&Next"), tr("Goes to the track behind, from the last one to the first"),
      Icon::SkipEnd, &CdPlayer::NextTrack);
  image_ = AddCommand(*this,
                      {.name = QStringLiteral("CmdOpenImage"),
                       .words = tr("Open I&mage..."),
                       .tooltip = tr("Takes a disc image as a drive; one can be dropped here too"),
                       .icon = Icon::Folder,
                       .run = [this] {
                         player_.Shelf().BrowseImage([this](const QString& place) { player_.Choose(place); });
                       }});
  speed_ = AddCommand(*this, {.name = QStringLiteral("CmdSpeed"),
                              .words = QStringLiteral("Fast Forward Speed"),
                              .tooltip = tr("The step of Forward and Rewind, in seconds"),
                              .icon = Icon::Timer,
                              .run = [this] { player_.AskSpeed(); }});
  eject_ = AddCommand(*this, {.name = QStringLiteral("CmdEject"),
                              .words = tr("&Eject"),
                              .tooltip = tr("Opens the tray; an image is put away"),
                              .run = [this] { player_.Eject(); }});
  close_ = AddCommand(*this, {.name = QStringLiteral("CmdCloseTray"),
                              .words = tr("&Close Tray"),
                              .tooltip = tr("Draws the tray in"),
                              .run = [this] { player_.CloseTray(); }});
}

Panel* CdPlayerWindow::BuildDisplay() {
  auto* panel = new Panel(Group::Decks, tr("CD"), this);
  disc_->setFont(Theme::Font(1.1, QFont::Bold));
  auto* words = new QVBoxLayout;
  words->addWidget(disc_);
  words->addWidget(track_);
  words->addWidget(words_);
  auto* layout = new QHBoxLayout(panel);
  layout->addWidget(time_);
  layout->addLayout(words, 1);
  return panel;
}

void CdPlayerWindow::BuildLayout() {
  const auto label = [this](const QString& words, QWidget* field) {
    auto* made = new QLabel(words, this);
    made->setBuddy(field);
    return made;
  };
  auto* buttons = new QHBoxLayout;
  for (QPushButton* each : transport_) buttons->addWidget(each, 1);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(Line({label(tr("&Drive"), drive_), {drive_, 1}, image_, eject_, close_}));
  layout->addWidget(BuildDisplay());
  layout->addWidget(&tracks_, 1);
  layout->addLayout(buttons);
  layout->addLayout(Line({label(tr("&Heard on"), output_), output_, kRoom, speed_}));
}

void CdPlayerWindow::RestorePlace() {
  const QStringList kept = player_.Settings().Get(setting::CdPlayerPos).split(QLatin1Char(','));
  const QPoint place(kept.value(0).toInt(), kept.value(1).toInt());
  // In the corner it has not been placed yet.
  if (place.isNull()) return;
  QList<QRect> screens;
  for (const QScreen* each : QGuiApplication::screens()) screens += each->availableGeometry();
  move(ClampToScreens(QRect(place, size()), screens).topLeft());
}

void CdPlayerWindow::Enter() {
  player_.Open();
}

void CdPlayerWindow::Leave() {
  player_.Settings().Set(setting::CdPlayerPos, QStringLiteral("%1,%2").arg(pos().x()).arg(pos().y()));
}

void CdPlayerWindow::closeEvent(QCloseEvent* event) {
  ToolWindow::closeEvent(event);
  if (!isVisible()) player_.Close();
}

void CdPlayerWindow::dragEnterEvent(QDragEnterEvent* event) {
  TakeAsCopy(*event, AnyImage(DroppedFiles(*event->mimeData())));
}

void CdPlayerWindow::dragMoveEvent(QDragMoveEvent* event) {
  TakeAsCopy(*event, AnyImage(DroppedFiles(*event->mimeData())));
}

void CdPlayerWindow::dropEvent(QDropEvent* event) {
  const QStringList places = DroppedFiles(*event->mimeData());
  TakeAsCopy(*event, AnyImage(places));
  if (event->isAccepted()) TakeFiles(places);
}

void CdPlayerWindow::TakeFiles(const QStringList& places) {
  for (const QString& place : places) {
    if (player_.Shelf().AddImage(place)) player_.Choose(player_.Shelf().LastAdded());
  }
}

void CdPlayerWindow::Show() {
  drive_->Show(player_.Place());
  output_->setCurrentIndex(player_.OnMonitor() ? 1 : 0);
  const bool disc = player_.MediaPresent();
  const QString none = QStringLiteral("--:--");
  time_->SetText(disc ? player_.TimeLine().section(QLatin1Char(' '), -1) : none);
  time_->SetState(player_.Playing() ? TimeDisplay::State::Calm : TimeDisplay::State::Dim);
  disc_->setText(player_.DiscLine());
  track_->setText(disc ? player_.TimeLine() + tr("   Track %1").arg(player_.Track()) +
                             (player_.Playing() ? tr("   playing") : QString())
                       : QString());
  words_->setText(player_.Words());
  words_->setToolTip(player_.Words());
  tracks_.SetHint(tr("Put an audio disc into the drive,\nor drop a disc image here."));
  const QString whyNot = WhyOff({{player_.Place().isEmpty(), QStringLiteral("No CD Selected")},
                                 {!disc, QStringLiteral("No CD In Drive")}});
  for (QPushButton* each : transport_) Offer(*each, each == play_ ? player_.WhyNoPlay() : whyNot);
  Offer(*eject_, player_.WhyNoTray());
  const bool image = IsDiscImage(player_.Place());
  Offer(*close_,
        WhyOff({{!player_.WhyNoTray().isEmpty(), player_.WhyNoTray()}, {image, tr("An image has no tray")}}));
  speed_->setToolTip(tr("The step of Forward and Rewind: now %1 seconds").arg(player_.Speed()));
}

}  // namespace kelvo
