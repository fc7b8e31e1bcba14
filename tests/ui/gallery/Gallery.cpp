#include "ui/DeckTally.h"
#include "ui/Fader.h"
#include "ui/NoticeBar.h"
#include "ui/Panel.h"
#include "ui/ProgressStrip.h"
#include "ui/PromptBox.h"
#include "ui/ScalableIcon.h"
#include "ui/SplashPanel.h"
#include "ui/Tabular.h"
#include "ui/Theme.h"
#include "ui/TimeDisplay.h"
#include "ui/ToldList.h"

#include <QtWidgets>

#include <array>
#include <memory>

namespace {

using namespace kelvo;

/// Widgets of a picture that stay until it is taken.
template <typename Widget, typename... Arguments>
Widget& Make(QWidget& owner, Arguments&&... arguments) {
  Widget* widget = std::make_unique<Widget>(std::forward<Arguments>(arguments)...).release();
  widget->setParent(&owner);
  return *widget;
}

template <typename Layout>
Layout& Lay(QLayout& outer) {
  Layout* layout = std::make_unique<Layout>().release();
  static_cast<QBoxLayout&>(outer).addLayout(layout);
  return *layout;
}

class Pictures {
 public:
  explicit Pictures(QString folder) : folder_(std::move(folder)) { QDir().mkpath(folder_); }
  void Take(QWidget& widget, const QString& name) const {
    widget.show();
    QCoreApplication::processEvents();
    const QString scale = QString::number(qRound(widget.devicePixelRatioF() * 100));
    widget.grab().save(QStringLiteral("%1/%2-%3.png").arg(folder_, name, scale));
    widget.hide();
  }

 private:
  QString folder_;
};

QPushButton& Button(QWidget& owner, const QString& words, std::optional<Icon> icon,
                    const QString& role = {}) {
  auto& button = Make<QPushButton>(owner, words);
  if (icon) button.setIcon(ScalableIcon(*icon));
  if (!role.isEmpty()) Theme::SetRole(button, role);
  return button;
}

struct DeckLook {
  QString name, title, info, time;
  DeckTally::State tally;
  TimeDisplay::State state;
  QColor bar;
  int done;
  bool monitored;
};

Panel& Deck(QWidget& owner, const DeckLook& look) {
  auto& panel = Make<Panel>(owner, Group::Decks, look.name);
  panel.SetNote(look.info);
  auto& column = *std::make_unique<QVBoxLayout>(&panel).release();
  column.setContentsMargins(0, 0, 0, 0);
  auto& title = Make<QLabel>(panel, look.title);
  title.setFont(Theme::Font(1.25, QFont::DemiBold));
  column.addWidget(&title);
  auto& top = Lay<QHBoxLayout>(column);
  auto& tally = Make<DeckTally>(panel);
  tally.SetState(look.tally);
  auto& pfl = Button(panel, QStringLiteral("PFL"), Icon::Headphones);
  pfl.setCheckable(true);
  pfl.setChecked(look.monitored);
  top.addWidget(&tally, 1);
  top.addWidget(&pfl);
  auto& time = Make<TimeDisplay>(panel);
  time.SetText(look.time);
  time.SetState(look.state);
  column.addWidget(&time, 1);
  auto& strip = Make<ProgressStrip>(panel);
  strip.SetColour(look.bar);
  strip.setRange(0, 100);
  strip.setValue(look.done);
  strip.SetWords(QStringLiteral("Track 125 BPM, fade speed 25"));
  strip.SetPercentShown(true);
  column.addWidget(&strip);
  auto& keys = Lay<QHBoxLayout>(column);
  for (const Icon icon : {Icon::SkipStart, Icon::Rewind, Icon::Forward, Icon::SkipEnd}) {
    keys.addWidget(&Button(panel, {}, icon));
  }
  auto& starts = Lay<QHBoxLayout>(column);
  starts.addWidget(&Button(panel, QStringLiteral("Load"), Icon::Load));
  starts.addWidget(&Button(panel, QStringLiteral("Start"), Icon::Play, QStringLiteral("go")));
  starts.addWidget(&Button(panel, QStringLiteral("Stop"), Icon::Stop, QStringLiteral("stop")));
  auto& fades = Lay<QHBoxLayout>(column);
  for (const QString& words : {QStringLiteral("Pan"), QStringLiteral("Part"), QStringLiteral("Dub")}) {
    fades.addWidget(&Button(panel, words, std::nullopt, QStringLiteral("primary")));
  }
  return panel;
}

void FillQueue(QTableWidget& table) {
  const std::array<std::array<const char*, 4>, 6> rows{
      {{"1", "The Night Owls - Long Way Down", "03:41", "Now Playing"},
       {"2", "Marla Keen - Paper Boats", "04:11", "Play Me"},
       {"3", "Seven Bridges - Harbour Lights", "02:58", ""},
       {"4", "The Night Owls - Copper", "11:11", ""},
       {"5", "Dub Cartel - Version Excursion", "05:07", ""},
       {"6", "Odd Socks - Tumble", "03:20", ""}}};
  table.setColumnCount(4);
  table.setRowCount(static_cast<int>(rows.size()));
  table.setHorizontalHeaderLabels(
      {QStringLiteral("No"), QStringLiteral("Track"), QStringLiteral("Time"), QStringLiteral("State")});
  for (int row = 0; row < table.rowCount(); ++row) {
    for (int column = 0; column < 4; ++column) {
      auto item = std::make_unique<QTableWidgetItem>(
          QString::fromLatin1(rows.at(static_cast<std::size_t>(row)).at(static_cast<std::size_t>(column))));
      if (column == 0 || column == 2) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
      table.setItem(row, column, item.release());
    }
  }
  table.verticalHeader()->hide();
  table.horizontalHeader()->setSortIndicator(1, Qt::AscendingOrder);
  table.horizontalHeader()->setSortIndicatorShown(true);
  table.setShowGrid(false);
  table.setAlternatingRowColors(true);
  table.setSelectionBehavior(QAbstractItemView::SelectRows);
  table.selectRow(1);
  table.horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
  table.horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  table.horizontalHeader()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
  table.setItemDelegateForColumn(0, std::make_unique<TabularDelegate>(&table).release());
  table.setItemDelegateForColumn(2, std::make_unique<TabularDelegate>(&table).release());
}

std::unique_ptr<QWidget> Desk(DeckTally::State one, bool locked) {
  auto desk = std::make_unique<QMainWindow>();
  auto& centre = Make<QWidget>(*desk);
  desk->setCentralWidget(&centre);
  auto& column = *std::make_unique<QVBoxLayout>(&centre).release();
  auto& notice = Make<NoticeBar>(centre);
  notice.Show(QStringLiteral("main"), NoticeBar::Severity::Warning,
              QStringLiteral("Sound device lost: Main - playing on a silent clock"));
  column.addWidget(&notice);
  auto& row = Lay<QHBoxLayout>(column);

  auto& library = Make<Panel>(centre, Group::Lists, QStringLiteral("TRACKS"));
  library.SetNote(QStringLiteral("1,204 tracks"));
  auto& libraryColumn = *std::make_unique<QVBoxLayout>(&library).release();
  libraryColumn.setContentsMargins(0, 0, 0, 0);
  auto& find = Make<QLineEdit>(library);
  find.setPlaceholderText(QStringLiteral("Type to filter"));
  find.addAction(ScalableIcon(Icon::Search, Theme::Palette().muted), QLineEdit::LeadingPosition);
  libraryColumn.addWidget(&find);
  auto& names = Make<QListWidget>(library);
  names.addItems({QStringLiteral("Blues"), QStringLiteral("Classic Rock"), QStringLiteral("Country"),
                  QStringLiteral("Dance"), QStringLiteral("Disco")});
  names.setCurrentRow(3);
  libraryColumn.addWidget(&names);
  auto& libraryKeys = Lay<QHBoxLayout>(libraryColumn);
  libraryKeys.addWidget(
      &Button(library, QStringLiteral("Add To Queue"), Icon::Add, QStringLiteral("primary")));
  libraryKeys.addWidget(&Button(library, QStringLiteral("Request"), Icon::Edit));
  column.setStretchFactor(&row, 1);
  row.addWidget(&library, 3);

  auto& decks = Lay<QVBoxLayout>(row);
  row.setStretchFactor(&decks, 5);
  auto& pair = Lay<QHBoxLayout>(decks);
  const Theme::Colours& c = Theme::Palette();
  const bool ending = one == DeckTally::State::Ending;
  pair.addWidget(&Deck(
      centre,
      {QStringLiteral("AUDIO STREAM ONE"), QStringLiteral("Long Way Down"), QStringLiteral("44.1 kHz"),
       ending ? QStringLiteral("00:08") : QStringLiteral("02:11"), one,
       ending ? TimeDisplay::State::BlinkRed : TimeDisplay::State::Calm, c.blue, ending ? 96 : 41, false}));
  pair.addWidget(&Deck(centre, {QStringLiteral("AUDIO STREAM TWO"), QStringLiteral("Paper Boats"),
                                QStringLiteral("48 kHz"), QStringLiteral("04:11"), DeckTally::State::Loaded,
                                TimeDisplay::State::Calm, c.amber, 63, true}));
  auto& cross = Make<Panel>(centre, Group::Decks, QString());
  auto& crossRow = *std::make_unique<QHBoxLayout>(&cross).release();
  crossRow.setContentsMargins(0, 0, 0, 0);
  auto& pan = Make<Fader>(cross, Qt::Horizontal, -200, 200);
  pan.SetTickInterval(50);
  pan.SetRestValue(0);
  pan.SetFillFrom(0);
  pan.setValue(-140);
  auto& first = Make<QLabel>(cross, QStringLiteral("1"));
  auto& second = Make<QLabel>(cross, QStringLiteral("2"));
  for (QLabel* each : {&first, &second}) each->setFont(Theme::Font(1.4, QFont::Bold));
  crossRow.addWidget(&first);
  crossRow.addWidget(&pan);
  crossRow.addWidget(&second);
  decks.addWidget(&cross);

  auto& queue = Make<Panel>(centre, Group::Lists, QStringLiteral("PLAY QUEUE"));
  queue.SetNote(QStringLiteral("6   00:30:28"));
  auto& queueColumn = *std::make_unique<QVBoxLayout>(&queue).release();
  queueColumn.setContentsMargins(0, 0, 0, 0);
  auto& table = Make<QTableWidget>(queue);
  FillQueue(table);
  queueColumn.addWidget(&table);
  auto& queueKeys = Lay<QHBoxLayout>(queueColumn);
  for (const Icon icon :
       {Icon::Up, Icon::Down, Icon::Cut, Icon::Clear, Icon::Edit, Icon::Timer, Icon::Folder, Icon::Save}) {
    queueKeys.addWidget(&Button(queue, {}, icon));
  }
  row.addWidget(&queue, 4);

  auto& bottom = Lay<QHBoxLayout>(column);
  auto& bites = Make<Panel>(centre, Group::Bites, QStringLiteral("JINGLES BANK 1"));
  auto& grid = *std::make_unique<QGridLayout>(&bites).release();
  grid.setContentsMargins(0, 0, 0, 0);
  for (int bite = 0; bite < 8; ++bite) {
    grid.addWidget(&Button(bites, QStringLiteral("Bite %1").arg(bite + 1), std::nullopt), bite / 4, bite % 4);
  }
  bottom.addWidget(&bites, 3);
  auto& speak = Make<Panel>(centre, Group::Console, QStringLiteral("PRESS TO SPEAK"));
  auto& speakRow = *std::make_unique<QHBoxLayout>(&speak).release();
  speakRow.setContentsMargins(0, 0, 0, 0);
  auto& talk = Button(speak, QStringLiteral("Speak"), Icon::Microphone);
  speakRow.addWidget(&talk);
  for (const int value : {0, 700, 1500}) {
    auto& level = Make<Fader>(speak, Qt::Vertical, 0, 2000);
    level.setInvertedAppearance(true);
    level.SetTickInterval(500);
    level.setValue(value);
    level.SetRestValue(0);
    speakRow.addWidget(&level);
  }
  bottom.addWidget(&speak, 2);
  auto& automatic = Make<Panel>(centre, Group::Console, QStringLiteral("AUTO PLAY"));
  auto& autoColumn = *std::make_unique<QVBoxLayout>(&automatic).release();
  autoColumn.setContentsMargins(0, 0, 0, 0);
  auto& random = Make<QRadioButton>(automatic, QStringLiteral("Random"));
  auto& sequence = Make<QRadioButton>(automatic, QStringLiteral("Sequence"));
  auto& pause = Make<QCheckBox>(automatic, QStringLiteral("Pause at end"));
  auto& mode = Make<QComboBox>(automatic);
  mode.addItem(QStringLiteral("Jukebox"));
  random.setChecked(true);
  pause.setChecked(true);
  for (QWidget* each : std::initializer_list<QWidget*>{&random, &sequence, &pause, &mode})
    autoColumn.addWidget(each);
  bottom.addWidget(&automatic, 2);
  if (locked) {
    for (Panel* each : centre.findChildren<Panel*>()) each->setEnabled(false);
  }
  desk->resize(1280, 800);
  return desk;
}

std::unique_ptr<QWidget> States() {
  auto sheet = std::make_unique<QDialog>();
  auto& grid = *std::make_unique<QGridLayout>(sheet.get()).release();
  const std::array tallies{DeckTally::State::Empty, DeckTally::State::Loaded, DeckTally::State::OnAir,
                           DeckTally::State::Ending, DeckTally::State::Done};
  for (int column = 0; column < 5; ++column) {
    auto& tally = Make<DeckTally>(*sheet);
    tally.SetState(tallies.at(static_cast<std::size_t>(column)));
    tally.setMinimumHeight(44);
    grid.addWidget(&tally, 0, column);
  }
  const std::array times{TimeDisplay::State::Dim, TimeDisplay::State::Calm, TimeDisplay::State::Amber,
                         TimeDisplay::State::BlinkRed, TimeDisplay::State::BlinkRed};
  const QStringList words{QStringLiteral("00:00"), QStringLiteral("03:41"), QStringLiteral("00:27"),
                          QStringLiteral("00:09"), QStringLiteral("00:08")};
  for (int column = 0; column < 5; ++column) {
    auto& time = Make<TimeDisplay>(*sheet);
    time.SetText(words[column]);
    time.SetState(times.at(static_cast<std::size_t>(column)));
    time.SetLit(column != 4);
    time.setMinimumSize(170, 80);
    grid.addWidget(&time, 1, column);
  }
  const Theme::Colours& c = Theme::Palette();
  int row = 2;
  for (const QColor& colour : {c.blue, c.amber}) {
    for (int column = 0; column < 5; ++column) {
      auto& strip = Make<ProgressStrip>(*sheet);
      strip.SetColour(colour);
      strip.setValue(column * 25);
      strip.SetWords(column % 2 ? QStringLiteral("Refreshing Track List (%1 %)").arg(column * 25)
                                : QStringLiteral("Loading"));
      strip.SetPercentShown(column % 2 == 0);
      strip.setEnabled(column != 4);
      grid.addWidget(&strip, row, column);
    }
    ++row;
  }
  for (const auto& [severity, text] :
       {std::pair{NoticeBar::Severity::Information, "Rendering the show to a file"},
        std::pair{NoticeBar::Severity::Good, "Sound device back: Main"},
        std::pair{NoticeBar::Severity::Warning, "Sound device lost: Main - playing on a silent clock"},
        std::pair{NoticeBar::Severity::Critical, "The disk is full: settings are not saved"}}) {
    auto& notice = Make<NoticeBar>(*sheet);
    notice.Show(QStringLiteral("b"), NoticeBar::Severity::Information, QStringLiteral("other"));
    notice.Show(QStringLiteral("a"), severity, QString::fromLatin1(text));
    grid.addWidget(&notice, row++, 0, 1, 5);
  }
  const std::array<std::pair<Group, QColor>, 4> extremes{{{Group::Console, Qt::white},
                                                          {Group::Decks, QColor(20, 20, 20)},
                                                          {Group::Lists, QColor(255, 255, 0)},
                                                          {Group::Bites, QColor(160, 0, 80)}}};
  for (const auto& [group, colour] : extremes) {
    const auto index = static_cast<int>(group);
    Theme::SetGroupColour(group, colour);
    auto& panel = Make<Panel>(*sheet, group, colour.name().toUpper());
    panel.SetNote(QStringLiteral("12  00:45:10"));
    auto& column = *std::make_unique<QVBoxLayout>(&panel).release();
    column.setContentsMargins(0, 0, 0, 0);
    auto& label = Make<QLabel>(panel, QStringLiteral("Words on the ground"));
    column.addWidget(&label);
    column.addWidget(&Button(panel, QStringLiteral("Button"), Icon::Play));
    grid.addWidget(&panel, row, index);
  }
  auto& keys = Lay<QHBoxLayout>(*std::make_unique<QVBoxLayout>().release());
  keys.setParent(nullptr);
  grid.addLayout(&keys, row + 1, 0, 1, 5);
  for (const QString& role : {QString(), QStringLiteral("primary"), QStringLiteral("go"),
                              QStringLiteral("stop"), QStringLiteral("quiet")}) {
    keys.addWidget(&Button(*sheet, role.isEmpty() ? QStringLiteral("plain") : role, Icon::Disc, role));
    auto& off = Button(*sheet, QStringLiteral("off"), Icon::Disc, role);
    off.setEnabled(false);
    keys.addWidget(&off);
  }
  auto& spin = Make<QSpinBox>(*sheet);
  spin.setValue(25);
  keys.addWidget(&spin);
  auto& combo = Make<QComboBox>(*sheet);
  combo.addItem(QStringLiteral("Jukebox mode"));
  keys.addWidget(&combo);
  return sheet;
}

std::unique_ptr<QWidget> Icons() {
  auto sheet = std::make_unique<QDialog>();
  auto& grid = *std::make_unique<QGridLayout>(sheet.get()).release();
  for (int index = 0; index < iconCount; ++index) {
    const auto icon = static_cast<Icon>(index);
    auto& large = Make<QLabel>(*sheet);
    large.setPixmap(IconPixmap(icon, Theme::Palette().text, 48, sheet->devicePixelRatioF()));
    grid.addWidget(&large, index / 11, index % 11);
  }
  return sheet;
}

}  // namespace

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  Theme::Apply(app);
  const Pictures pictures(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("."));
  pictures.Take(*Desk(DeckTally::State::OnAir, false), QStringLiteral("desk"));
  pictures.Take(*Desk(DeckTally::State::Ending, false), QStringLiteral("desk-ending"));
  pictures.Take(*Desk(DeckTally::State::OnAir, true), QStringLiteral("desk-locked"));
  pictures.Take(*Icons(), QStringLiteral("icons"));

  SplashPanel splash;
  splash.SetVersionLine(QStringLiteral("Version 1.1.4 - Two-deck play-out"));
  for (const char* line :
       {"Platform Linux : Debian GNU/Linux 12", "Default Output Device is Main Speakers",
        "2 Sound Output Devices Installed: PFL Was Enabled. ", " Current PFL Device is Headset"}) {
    splash.AppendStatus(QString::fromLatin1(line));
  }
  splash.resize(splash.sizeHint());
  pictures.Take(splash, QStringLiteral("splash"));

  Prompt prompt;
  prompt.text = QStringLiteral("Quit Kelvo 2007 ? ");
  prompt.buttons = Buttons::YesNo;
  prompt.icon = PromptIcon::Question;
  PromptBox question(prompt, QStringLiteral("Kelvo 2007"));
  pictures.Take(question, QStringLiteral("box-question"));
  prompt.text = QStringLiteral(
      "ERROR 2 in  conc4 "
      "(/home/dj/Music/_Extra/A_very_long_name_without_any_blank_in_it_that_goes_on_and_on_and_on.kif)"
      " : No such file or directory");
  prompt.buttons = Buttons::Ok;
  prompt.icon = PromptIcon::Critical;
  PromptBox failure(prompt, QStringLiteral("Kelvo 2007"));
  failure.SetTimes(3);
  pictures.Take(failure, QStringLiteral("box-error"));
  prompt.text = QStringLiteral("Please Enter A Screen Lock Code");
  prompt.buttons = Buttons::OkCancel;
  prompt.icon = PromptIcon::None;
  PromptBox input(prompt, QStringLiteral("Kelvo 2007"));
  input.AskForLine(QStringLiteral("1234"));
  pictures.Take(input, QStringLiteral("box-input"));
  ToldList storm(QStringLiteral("Kelvo 2007"));
  prompt.icon = PromptIcon::Critical;
  for (int line = 1; line <= 9; ++line) {
    prompt.text = QStringLiteral(
                      "ERROR 5 in  conc%1 : Input/output error while the track \"Harbour Lights\" was read "
                      "from the music folder")
                      .arg(line);
    storm.Add(prompt, line == 4 ? 12 : 1);
  }
  pictures.Take(storm, QStringLiteral("box-storm"));
  pictures.Take(*States(), QStringLiteral("states"));
  return 0;
}
