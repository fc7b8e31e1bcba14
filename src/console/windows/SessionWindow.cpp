#include "console/windows/SessionWindow.h"

#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/WhyOff.h"

#include <QRadioButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace kelvo {
namespace {

RowModel<SessionEvent>::Columns EventColumns() {
  using Event = SessionEvent;
  return {{{.head = QStringLiteral("Description"), .letters = 26}, &Event::Description},
          {{.head = QStringLiteral("Time "), .letters = 10, .rank = 1, .number = true}, &Event::TimeWords},
          {{.head = QStringLiteral("Track Id"), .letters = 11, .rank = 5, .number = true}, &Event::TrackWords},
          {{.head = QStringLiteral("Deck"), .letters = 7, .rank = 2, .number = true}, &Event::DeckWords},
          {{.head = QStringLiteral("Fade Type"), .letters = 12, .rank = 3}, &Event::FadeWords},
          {{.head = QStringLiteral("Arguments"), .letters = 13, .rank = 10}, &Event::Arguments},
          {{.head = QStringLiteral("fade"), .letters = 7, .rank = 8, .number = true}, &Event::FadeNumber},
          {{.head = QStringLiteral("Speed"), .letters = 8, .rank = 4, .number = true}, &Event::SpeedWords},
          {{.head = QStringLiteral("Data1"), .letters = 8, .rank = 9, .number = true}, &Event::CodeWords},
          {{.head = QStringLiteral("Pos"), .letters = 8, .rank = 6, .number = true}, &Event::PosWords},
          {{.head = QStringLiteral("length"), .letters = 8, .rank = 7, .number = true}, &Event::LengthWords}};
}

/// The tooltip of a cell: the whole text of the two columns that may be cut.
QVariant WholeText(const SessionEvent& event, int column, int role) {
  constexpr int kArguments = 5;
  if (role != Qt::ToolTipRole) return {};
  const QString& text = column == kArguments ? event.Arguments : event.Path;
  return text.isEmpty() ? QVariant() : QVariant(text);
}

}  // namespace

SessionWindow::SessionWindow(SessionReview& review)
    : ToolWindow({.name = QStringLiteral("Session"), .title = review.Title(), .letters = 132, .lines = 32}),
      review_(review),
      currentModel_(review.Rows(SessionReview::View::Current).Rows(), EventColumns()),
      dayModel_(review.Days(), {{{.head = tr("Day"), .letters = 14}, &SessionDay::Words}}),
      earlierModel_(review.Rows(SessionReview::View::Earlier).Rows(), EventColumns()),
      current_({.name = QStringLiteral("LstSession"),
                .fixedName = QStringLiteral("ListView1"),
                .title = tr("THIS SESSION"),
                .accessible = tr("Events of this session")},
               currentModel_, this),
      days_({.name = QStringLiteral("LstDays"),
             .title = tr("DAYS"),
             .accessible = tr("Days with sessions"),
             .many = false},
            dayModel_, this),
      earlier_({.name = QStringLiteral("LstEarlier"),
                .title = tr("EARLIER"),
                .accessible = tr("Events of the day")},
               earlierModel_, this),
      currentView_(new QRadioButton(tr("&This session"), this)),
      earlierView_(new QRadioButton(tr("&Earlier"), this)),
      label_(new ElidedLabel(QString(), this)),
      pages_(new QStackedWidget(this)) {
  for (RowModel<SessionEvent>* model : {&currentModel_, &earlierModel_}) model->Dress = WholeText;
  currentView_->setObjectName(QStringLiteral("OptCurrent"));
  currentView_->setToolTip(tr("What was done to the decks since the list began"));
  earlierView_->setObjectName(QStringLiteral("OptEarlier"));
  earlierView_->setToolTip(tr("What was done on earlier days, and what the list has no room for"));
  label_->setObjectName(QStringLiteral("LblSessionList"));
  current_.SetHint(tr("Nothing was recorded yet.\nLoad and start tracks by hand: each step comes here."));
  BuildCommands();
  BuildLayout();

  connect(currentView_, &QRadioButton::clicked, this, [this] { review_.Show(SessionReview::View::Current); });
  connect(earlierView_, &QRadioButton::clicked, this, [this] { review_.Show(SessionReview::View::Earlier); });
  connect(&days_, &ListPanel::PickedChanged, this, [this] {
    if (days_.AnyPicked()) review_.ChooseDay(days_.Picked().front());
  });
  for (ListPanel* list : {&current_, &earlier_})
    connect(list, &ListPanel::PickedChanged, this, [this] { ShowCommands(); });
  connect(&review_, &SessionReview::Changed, this, [this] { Show(); });
  connect(&review_, &SessionReview::RowsToPick, this,
          [this](const std::vector<int>& rows) { Shown().Pick(rows); });
  Show();
}

void SessionWindow::BuildCommands() {
  selectAll_ = AddCommand(*this, {.name = QStringLiteral("CmdSelectAll"),
                                  .fixedName = QStringLiteral("Command3"),
                                  .words = QStringLiteral("Select All"),
                                  .tooltip = tr("Selects all rows, or none"),
                                  .key = QKeySequence(Qt::ALT | Qt::Key_A),
                                  .icon = Icon::Check,
                                  .run = [this] { Shown().PickAllOrNone(); }});
  group_ = AddCommand(*this, {.name = QStringLiteral("CmdGroup"),
                              .fixedName = QStringLiteral("Command2"),
                              .words = QStringLiteral("Group"),
                              .tooltip = tr("Saves the selected stretch as a group playlist, which plays the "
                                            "mix again as it was"),
                              .key = QKeySequence(Qt::CTRL | Qt::Key_G),
                              .icon = Icon::Save,
                              .role = QStringLiteral("primary"),
                              .run = [this] { review_.Save(SessionSave::Group, Shown().Picked()); }});
  standard_ =
      AddCommand(*this, {.name = QStringLiteral("CmdStandard"),
                         .fixedName = QStringLiteral("Command5"),
                         .words = QStringLiteral("Standard"),
                         .tooltip = tr("Saves the selected tracks as a playlist; each learns the fade "
                                       "that it was brought in with"),
                         .key = QKeySequence(Qt::CTRL | Qt::Key_S),
                         .icon = Icon::Save,
                         .role = QStringLiteral("primary"),
                         .run = [this] { review_.Save(SessionSave::Standard, Shown().Picked()); }});
  clear_ = AddCommand(*this, {.name = QStringLiteral("CmdClearEntries"),
                              .fixedName = QStringLiteral("Command4"),
                              .words = QStringLiteral("Clear Entries"),
                              .tooltip = tr("Empties the list of this session; Earlier keeps all of it"),
                              .key = QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Delete),
                              .icon = Icon::Clear,
                              .run = [this] { review_.ClearEntries(); }});
  close_ = AddCommand(*this, {.name = QStringLiteral("CmdClose"),
                              .fixedName = QStringLiteral("Command1"),
                              .words = QStringLiteral("Close"),
                              .tooltip = tr("Closes the window"),
                              .keyWords = tr("Esc"),
                              .icon = Icon::Close,
                              .run = [this] { close(); }});
}

void SessionWindow::BuildLayout() {
  auto* earlier = new QWidget(pages_);
  auto* columns = new QHBoxLayout(earlier);
  columns->setContentsMargins(0, 0, 0, 0);
  columns->addWidget(&days_, 1);
  columns->addWidget(&earlier_, 5);
  pages_->addWidget(&current_);
  pages_->addWidget(earlier);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(Line({currentView_, earlierView_, {label_, 1}}));
  layout->addWidget(pages_, 1);
  layout->addLayout(Line({selectAll_, group_, standard_, clear_, kRoom, close_}));
}

ListPanel& SessionWindow::Shown() {
  return review_.Shown() == SessionReview::View::Current ? current_ : earlier_;
}

void SessionWindow::TakeKeys() {
  Shown().Table().setFocus();
}

void SessionWindow::Show() {
  const bool earlier = review_.Shown() == SessionReview::View::Earlier;
  setWindowTitle(review_.Title());
  label_->setText(review_.Label());
  currentView_->setChecked(!earlier);
  earlierView_->setChecked(earlier);
  pages_->setCurrentIndex(earlier ? 1 : 0);
  days_.SetHint(review_.Listing() ? QString() : tr("No session\nwas kept yet."));
  earlier_.SetHint(review_.Listing() ? QString() : tr("Choose a day on the left."));
  const int day = review_.ChosenDay();
  if (day >= 0 && days_.Picked() != std::vector<int>{day}) days_.Pick({day});
  ShowCommands();
}

void SessionWindow::ShowCommands() {
  const bool earlier = review_.Shown() == SessionReview::View::Earlier;
  const bool any = Shown().Table().model()->rowCount() > 0;
  const OffReason listing{earlier && review_.Listing(), tr("The sessions are being read")};
  const OffReason empty{!any, tr("The list is empty")};
  selectAll_->setText(Shown().AllPicked() ? QStringLiteral("Clear Selects") : QStringLiteral("Select All"));
  for (QPushButton* command : {selectAll_, group_, standard_}) Offer(*command, WhyOff({listing, empty}));
  Offer(*clear_, WhyOff({{earlier, tr("Earlier sessions are kept")}, empty}));
}

}  // namespace kelvo
