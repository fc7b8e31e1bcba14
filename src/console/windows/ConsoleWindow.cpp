#include "console/windows/ConsoleWindow.h"

#include "console/desk/ColourSettings.h"
#include "console/windows/AirAlarm.h"
#include "console/windows/AutoPlayPanel.h"
#include "console/windows/ClockPanel.h"
#include "console/windows/Columns.h"
#include "console/windows/ConfirmationView.h"
#include "console/windows/CrossPanPanel.h"
#include "console/windows/DeckPanel.h"
#include "console/windows/DeskKeys.h"
#include "console/windows/DeskNotices.h"
#include "console/windows/JinglePanel.h"
#include "console/windows/KeysHome.h"
#include "console/windows/LibraryPanel.h"
#include "console/windows/LoadPanel.h"
#include "console/windows/MemoryWarning.h"
#include "console/windows/ModeLabel.h"
#include "console/windows/MonitorPanel.h"
#include "console/windows/ProgrammePanels.h"
#include "console/windows/QueuePanel.h"
#include "console/windows/RecordBar.h"
#include "console/windows/SessionPanel.h"
#include "console/windows/SpeakPanel.h"
#include "console/windows/ToReadPanel.h"
#include "console/windows/WindowSettings.h"
#include "ui/Command.h"
#include "ui/DroppedFiles.h"
#include "ui/ElidedLabel.h"
#include "ui/ListTable.h"
#include "ui/Naming.h"
#include "ui/ScalableIcon.h"
#include "ui/SpokenText.h"
#include "ui/TabOrder.h"
#include "ui/Theme.h"

#include <QCloseEvent>
#include <QDropEvent>
#include <QLabel>
#include <QMenuBar>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>

namespace kelvo {
namespace {

const QString kDiskNotice = QStringLiteral("disk ");

const std::array kColours{
    std::pair{&setting::ConBackCol, Group::Console}, std::pair{&setting::DeckBackCol, Group::Decks},
    std::pair{&setting::SbitesBackCol, Group::Bites}, std::pair{&setting::SlistsBackCol, Group::Lists}};

/// What a person calls a drive: the last name of where it is mounted.
QString ShortName(const QString& disk) {
  const QString last = disk.section(QLatin1Char('/'), -1, -1, QString::SectionSkipEmpty);
  return last.isEmpty() ? disk : last;
}

}  // namespace

ConsoleWindow::ConsoleWindow(Console& console)
    : console_(console),
      pulse_(console.GetServices().loop),
      desk_(new QWidget(this)),
      columns_(new Columns(desk_)),
      left_(new QWidget(columns_)),
      library_(new LibraryPanel(console.Browser(), console.Tracks(), console.GetServices().loop, left_)),
      foot_(new QWidget(desk_)),
      programme_(new ProgrammePanels(console.Programme(), console.Settings(), *foot_)),
      notices_(new NoticeBar(desk_)),
      status_(new ElidedLabel(desk_)),
      record_(new RecordBar(console.AirRecorder(), console.Lock(), this)),
      alarm_(new AirAlarm(desk_)) {
  SetNames(*this, QStringLiteral("ConsoleWindow"), QStringLiteral("frmCons"));
  setWindowTitle(console.Title());
  setAcceptDrops(true);
  BuildDesk();
  BuildMenu();
  new DeskNotices(console_, *notices_);
  ApplyColours();
  for (const auto& [declared, group] : kColours)
    console_.Settings().Listen(*declared, this, [this](const std::optional<Colour>&) { ApplyColours(); });
  ReadPlace();

  connect(&console_, &Console::StatusChanged, this, [this] { ShowStatus(); });
  connect(&console_, &Console::LoadChanged, this, [this] { ShowLoad(); });
  connect(&console_, &Console::LoadProgress, this, [this] {
    if (load_ != nullptr && console_.Load() != nullptr) load_->Show(*console_.Load());
  });
  connect(library_, &LibraryPanel::SearchWanted, this,
          [this] { Q_EMIT WindowWanted(WindowId::kTrackSearch); });
  connect(library_, &LibraryPanel::RequestWanted, this, &ConsoleWindow::WantRequest);
  connect(library_, &LibraryPanel::ImportWanted, this, [this] { Q_EMIT WindowWanted(WindowId::kImport); });
  connect(queue_, &QueuePanel::WindowWanted, this, &ConsoleWindow::WindowWanted);
  connect(&console_.Panel(), &ConfirmationPanel::Changed, this, [this] { ShowPanel(); });
  for (DeckPanel* deck : decks_) {
    connect(deck, &DeckPanel::EditWanted, this,
            [this](const QString& path) { Q_EMIT TrackWindowWanted(WindowId::kPlayEdit, path); });
  }
  for (DeckPanel* deck : decks_) connect(&pulse_, &Pulse::Beat, deck, &DeckPanel::SetLit);
  connect(&pulse_, &Pulse::Beat, alarm_, &AirAlarm::SetLit);
  ShowStatus();
}

ConsoleWindow::~ConsoleWindow() = default;

void ConsoleWindow::BuildDesk() {
  auto* decks = new QSplitter(Qt::Horizontal);
  for (const Deck deck : kDecks) {
    decks_[deck] = new DeckPanel({.decks = console_.Decks(),
                                  .fades = console_.Fades(),
                                  .speak = console_.Speak(),
                                  .monitor = console_.Pfl(),
                                  .automatic = console_.Automatic(),
                                  .status = console_.Status(),
                                  .state = console_.State()},
                                 deck, decks);
    decks->addWidget(decks_[deck]);
    decks->setCollapsible(static_cast<int>(IndexOf(deck)), false);
  }
  auto* middle = new QWidget(columns_);
  // Its controls work during a fade, so they don't take the pointer of the columns.
  middle->setCursor(Qt::ArrowCursor);
  auto* middleLayout = new QVBoxLayout(middle);
  middleLayout->setContentsMargins(0, 0, 0, 0);
  middleLayout->addWidget(decks, 1);
  middleLayout->addWidget(programme_->Meters());
  middleLayout->addWidget(
      new CrossPanPanel(console_.Fades(), console_.Automatic(), console_.Status(), middle));
  auto* right = new QWidget(columns_);
  auto* rightLayout = new QVBoxLayout(right);
  rightLayout->setContentsMargins(0, 0, 0, 0);
  queue_ = new QueuePanel(console_.Queue(), console_.RowTimes(), right);
  rightLayout->addWidget(queue_, 1);
  rightLayout->addWidget(new JinglePanel(console_.Bites(), console_.Pfl(), right));
  auto* leftLayout = new QVBoxLayout(left_);
  leftLayout->setContentsMargins(0, 0, 0, 0);
  leftLayout->addWidget(library_, 1);
  leftLayout->addWidget(new ToReadPanel(console_.ToRead(), left_));
  leftLayout->addWidget(new MonitorPanel(console_.Pfl(), left_));
  columns_->addWidget(left_);
  columns_->addWidget(middle);
  columns_->addWidget(right);
  columns_->setChildrenCollapsible(false);
  columns_->setStretchFactor(0, 31);
  columns_->setStretchFactor(1, 38);
  columns_->setStretchFactor(2, 31);

  status_->setObjectName(QStringLiteral("StatusLine"));
  status_->setFont(Theme::Font(1.15, QFont::DemiBold));
  status_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  notices_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  auto* head = new QHBoxLayout;
  head->addWidget(new ModeLabel(console_.Status(), desk_));
  head->addWidget(status_, 5);
  head->addWidget(new MemoryWarning(console_.Status(), desk_));
  head->addWidget(notices_, 4);

  auto* clock = new Panel(Group::Console, QString(), foot_);
  auto* clockLayout = new QVBoxLayout(clock);
  clockLayout->setContentsMargins(0, 0, 0, 0);
  clockLayout->addWidget(new ClockPanel(console_.Status(), clock), 1);
  auto* session = new SessionPanel(
      console_.Status(), [this] { return console_.WhyNoSession(); }, clock);
  connect(session, &SessionPanel::Wanted, this, [this] { Q_EMIT WindowWanted(WindowId::kSession); });
  clockLayout->addWidget(session);
  auto* foot = new QHBoxLayout(foot_);
  foot->setContentsMargins(0, 0, 0, 0);
  foot_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
  foot->addWidget(new SpeakPanel(console_.Speak(), foot_), 2);
  foot->addWidget(new AutoPlayPanel(console_.Automatic(), console_.GetServices().loop, foot_), 4);
  foot->addWidget(programme_->OnScope(), 3);
  foot->addWidget(clock);

  auto* layout = new QVBoxLayout(desk_);
  layout->setContentsMargins(8, 4, 8, 6);
  layout->addLayout(head);
  layout->addWidget(columns_, 1);
  layout->addWidget(foot_);
  setCentralWidget(desk_);
  TabByLayout(*desk_);
  confirmation_ = new ConfirmationView(console_.Panel(), desk_);
  new DeskKeys({.loop = console_.GetServices().loop,
                .panel = console_.Panel(),
                .speak = console_.Speak(),
                .fades = console_.Fades(),
                .closed = [this] { return console_.Lock().Locked() || console_.Load() != nullptr; }},
               *this);
  new KeysHome(*this, queue_->List());
  connect(&console_.Status(), &StatusTick::Ticked, this, [this] { ShowTick(); });
  connect(alarm_, &AirAlarm::Accepted, this, [this] { console_.Status().AcceptSilence(); });
  connect(&console_.Lock(), &ScreenLock::Changed, this, [this] {
    EnableSections();
    ShowLocked();
  });
  connect(&console_.Fades(), &Transitions::Changed, this, [this] { EnableSections(); });
  connect(&console_.Automatic(), &AutoPlay::Changed, queue_, &QueuePanel::ShowCommands);
  connect(&console_.Automatic(), &AutoPlay::QueuePositionShown, queue_, &QueuePanel::ShowPosition);
}

void ConsoleWindow::ShowTick() {
  const DeskStatus& status = console_.Status().Status();
  setWindowTitle(status.windowTitle);
  confirmation_->SetCaution(status.caution);
  Offer(*quit_, status.idle ? QString() : tr("%1. Closing the window asks at any time").arg(status.whyBusy));
  queue_->Beat(status.queueBlinks && status.queueLit ? status.queuePosition : 0);
  ShowAir(status);
}

void ConsoleWindow::ShowAir(const DeskStatus& status) {
  for (const QString& disk : std::as_const(silentDisks_)) {
    if (!status.silentDisks.contains(disk)) notices_->Clear(kDiskNotice + disk);
  }
  for (const QString& disk : status.silentDisks) {
    if (silentDisks_.contains(disk)) continue;
    notices_->Show(kDiskNotice + disk, NoticeBar::Severity::Warning,
                   tr("The disk %1 doesn't answer: its tracks are passed over").arg(ShortName(disk)));
  }
  silentDisks_ = status.silentDisks;
  PlaceAlarm();
  alarm_->Show(status);
}

void ConsoleWindow::PlaceAlarm() {
  // Over the status line and down over the heads of the panels: words, and no controls.
  const Panel* under = decks_[Deck::One];
  const int bottom = under->mapTo(desk_, under->HeaderRect().bottomLeft()).y();
  alarm_->setGeometry(QRect(QPoint(status_->x(), 0), QPoint(status_->geometry().right(), bottom)));
}

void ConsoleWindow::EnableSections() {
  const bool open = console_.Load() == nullptr && !console_.Lock().Locked();
  QWidget* const keys = focusWidget();
  columns_->setEnabled(open);
  foot_->setEnabled(open);
  library_->ShowCommands();
  queue_->ShowCommands();
  // The lists have no pointer of their own: the one of what lies behind them is seen.
  if (console_.Fades().SectionsDisabled()) {
    columns_->setCursor(Qt::WaitCursor);
  } else {
    columns_->unsetCursor();
  }
  // Qt takes the keyboard from what is disabled, and does not give it back.
  if (keys != nullptr && !keys->isEnabled()) keysBefore_ = keys;
  if (keysBefore_.isNull() || !keysBefore_->isEnabled()) return;
  if (focusWidget() == nullptr) keysBefore_->setFocus();
  keysBefore_.clear();
}

void ConsoleWindow::ShowLocked() {
  const bool locked = console_.Lock().Locked();
  // What is off in a menu takes no key either. The menu of the lock stays, to unlock with the mouse.
  for (QAction* menu : menuBar()->actions())
    menu->setEnabled(!locked || menu == menus_[DeskMenu::Desk]->menuAction());
  Offer(*listen_, locked ? tr("The screen is locked") : QString());
  confirmation_->setEnabled(!locked);
  alarm_->setEnabled(!locked);
}

void ConsoleWindow::BuildMenu() {
  QMenu* file = menus_[DeskMenu::File] = menuBar()->addMenu(tr("&File"));
  quit_ = file->addAction(tr("&Quit"), this, [this] { close(); });
  quit_->setObjectName(QStringLiteral("mnuQuit"));
  quit_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
  QMenu* view = menus_[DeskMenu::View] = menuBar()->addMenu(tr("&View"));
  QAction* filter = view->addAction(tr("&Filter tracks"), this, [this] { library_->BeginFilter(); });
  filter->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_F));
  const auto add = [this, view](const QString& words, Qt::Key key, auto goThere) {
    view->addAction(words, this, goThere)->setShortcut(QKeySequence(Qt::ALT | key));
  };
  add(tr("Go to &genres"), Qt::Key_G, [this] { library_->Names(Stage::Genre).setFocus(); });
  add(tr("Go to &artists"), Qt::Key_A, [this] { library_->Names(Stage::Artist).setFocus(); });
  add(tr("Go to al&bums"), Qt::Key_B, [this] { library_->Names(Stage::Album).setFocus(); });
  add(tr("Go to &tracks"), Qt::Key_T, [this] { library_->GoToTracks(); });
  add(tr("Go to play &queue"), Qt::Key_Q, [this] { queue_->List().setFocus(); });
  programme_->AddEntries(*view);
  menus_[DeskMenu::Library] = menuBar()->addMenu(tr("&Library"));
  QMenu* desk = menus_[DeskMenu::Desk] = menuBar()->addMenu(tr("&Desk"));
  QAction* lock = desk->addAction(ScalableIcon(Icon::Lock), tr("&Lock or unlock the screen"), this,
                                  [this] { console_.Lock().Lockscr(); });
  lock->setObjectName(QStringLiteral("Lockscr"));
  lock->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_L));
  listen_ = desk->addAction(ScalableIcon(Icon::Headphones), tr("Listen in the &monitor"), this,
                            [this] { ListenInMonitor(); });
  listen_->setObjectName(QStringLiteral("mnuMonitor"));
  listen_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_M));
  desk->addAction(&record_->Command());
  menuBar()->setCornerWidget(record_);
  QMenu* help = menus_[DeskMenu::Help] = menuBar()->addMenu(tr("&Help"));
  help->addAction(tr("&About %1").arg(console_.Title()), this, [this] {
    const Console::Services& have = console_.GetServices();
    have.prompter.Tell({.text = have.aboutLine, .title = have.title, .icon = PromptIcon::Information});
  });
  // An entry that is off says why.
  for (const auto& [which, menu] : menus_) menu->setToolTipsVisible(true);
  auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  connect(escape, &QShortcut::activated, this, [this] {
    if (console_.Lock().Locked() || console_.Load() != nullptr) return;
    const bool asks = console_.Panel().Visible();
    const bool fades = console_.Fades().GetCancelPanel().Visible() || console_.Fades().MayCancel();
    console_.Panel().Cancel();
    if (fades) console_.Fades().Cancel();
    if (!asks && !fades) library_->Escape();
  });
}

void ConsoleWindow::AddWindowCommand(DeskMenu menu, QAction& command) {
  menus_.at(menu)->addAction(&command);
}

void ConsoleWindow::AnswerDrag(QDropEvent& event) const {
  TakeAsCopy(event, console_.Load() == nullptr && !console_.Lock().Locked());
}

void ConsoleWindow::dragEnterEvent(QDragEnterEvent* event) {
  AnswerDrag(*event);
}

void ConsoleWindow::dragMoveEvent(QDragMoveEvent* event) {
  AnswerDrag(*event);
}

void ConsoleWindow::dropEvent(QDropEvent* event) {
  AnswerDrag(*event);
  if (event->isAccepted()) Q_EMIT FilesDropped(DroppedFiles(*event->mimeData()));
}

void ConsoleWindow::ApplyColours() {
  for (const auto& [declared, group] : kColours) {
    const std::optional<Colour> colour = console_.Settings().Get(*declared);
    if (colour) Theme::SetGroupColour(group, QColor(colour->red, colour->green, colour->blue));
  }
}

void ConsoleWindow::ReadPlace() {
  // The title bar of the window manager takes its part of the screen.
  const QSize room = screen()->availableSize() - QSize(0, fontMetrics().height() * 2);
  const QSize wanted(console_.Settings().Get(setting::Width), console_.Settings().Get(setting::Height));
  setMinimumSize(QSize(1024, 680).boundedTo(room));
  resize(wanted.isEmpty() ? QSize(1600, 900).boundedTo(room)
                          : wanted.boundedTo(room).expandedTo(minimumSize()));
}

void ConsoleWindow::ShowStatus() {
  SetSpokenText(*status_, tr("Status"), console_.StatusLine());
  ShowAir(console_.Status().Status());
}

void ConsoleWindow::ShowLoad() {
  EnableSections();
  if (const CatalogueLoader* load = console_.Load()) {
    load_ = new LoadPanel(console_.Title(), desk_);
    load_->Show(*load);
    PlaceOverlays();
    load_->show();
    return;
  }
  if (load_ != nullptr) load_->deleteLater();
  load_ = nullptr;
  library_->BeginFilter();
}

void ConsoleWindow::ShowPanel() {
  EnableSections();
  if (!console_.Panel().Visible()) confirmation_->hide();
  PlaceOverlays();
}

void ConsoleWindow::PlaceOverlays() {
  if (load_ != nullptr) {
    QRect spot(QPoint(), load_->sizeHint().expandedTo(load_->minimumSize()).boundedTo(desk_->size()));
    spot.moveCenter(desk_->rect().center());
    load_->setGeometry(spot);
    load_->raise();
  }
  if (console_.Panel().Visible()) {
    const DeckPanel* deck = decks_[console_.Panel().Question().deck];
    confirmation_->ShowOver(QRect(deck->mapTo(desk_, QPoint()), deck->size()));
  }
}

void ConsoleWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  PlaceOverlays();
  PlaceAlarm();
}

bool ConsoleWindow::event(QEvent* event) {
  // Under a window manager that never activates a window, its first showing has to do.
  const bool active = event->type() == QEvent::WindowActivate || event->type() == QEvent::Show;
  if (active && !activated_) {
    activated_ = true;
    console_.GetServices().loop.Post([this] { console_.Activate(); });
  }
  return QMainWindow::event(event);
}

void ConsoleWindow::closeEvent(QCloseEvent* event) {
  if (closing_) {
    event->accept();
    return;
  }
  event->ignore();
  if (console_.Lock().Locked()) {
    console_.Lock().Lockscr();
    return;
  }
  if (!asking_.Running()) asking_ = AskToClose();
}

void ConsoleWindow::SaveSettings() {
  console_.Settings().Set(setting::Width, width());
  console_.Settings().Set(setting::Height, height());
  console_.SaveSettings();
}

Job<> ConsoleWindow::AskToClose() {
  // Qt takes no further close while it is inside this one.
  co_await console_.GetServices().loop.Yield();
  if (MayClose) {
    const bool may = co_await MayClose();
    if (!may) co_return;
  }
  const bool yes = co_await console_.QueryClose(false);
  if (!yes) co_return;
  SaveSettings();
  closing_ = true;
  close();
  Q_EMIT Closed();
}

}  // namespace kelvo
