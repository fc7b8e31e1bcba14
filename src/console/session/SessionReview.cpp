#include "console/session/SessionReview.h"

#include "database/Catalogue.h"
#include "database/DatabaseSettings.h"
#include "platform/ErrorLog.h"

#include <QLocale>
#include <QPointer>

#include <algorithm>

namespace kelvo {

QString SessionDay::Words() const {
  return QLocale().toString(day, QStringLiteral("ddd dd/MM/yyyy"));
}

SessionReview::SessionReview(Services services)
    : services_(std::move(services)), earlier_(services_.catalogue) {
  connect(&services_.session, &SessionList::Changed, this, &SessionReview::Changed);
}

QString SessionReview::Title() const {
  return QStringLiteral("Session List ") + services_.began.toString(QStringLiteral("dd/MM/yyyy"));
}

QString SessionReview::Label() const {
  if (shown_ == View::Current) return services_.session.Label();
  if (!trouble_.isEmpty()) return trouble_;
  return Listing() ? tr("Reading the earlier sessions...") : QString();
}

const SessionRows& SessionReview::Rows(View view) const {
  return view == View::Current ? services_.session.Rows() : earlier_;
}

void SessionReview::Show(View view) {
  if (view == shown_) return;
  shown_ = view;
  Refresh();
  Q_EMIT Changed();
}

void SessionReview::Refresh() {
  if (shown_ == View::Earlier) listing_ = RunList();
}

int SessionReview::ChosenDay() const {
  const std::vector<SessionDay>& days = days_.All();
  const auto chosen =
      std::find_if(days.begin(), days.end(), [this](const SessionDay& each) { return each.day == day_; });
  return chosen == days.end() ? -1 : static_cast<int>(chosen - days.begin());
}

void SessionReview::ChooseDay(int row) {
  if (row < 0 || row >= days_.Count() || days_[row].day == day_) return;
  day_ = days_[row].day;
  listing_ = ReadEvents();
  Q_EMIT Changed();
}

Job<> SessionReview::RunList() {
  co_await ReadDays();
  co_await ReadEvents();
}

Job<> SessionReview::ReadDays() {
  trouble_.clear();
  std::vector<SessionDay> days;
  const QString folder = services_.archive.folder;
  const auto look = [archive = services_.archive] { return archive.Days(); };
  try {
    std::optional<std::vector<QDate>> found;
    if (!folder.isEmpty()) found = co_await services_.disks.Look(folder, look);
    if (!found && !folder.isEmpty()) trouble_ = tr("Disk Does Not Answer : %1").arg(folder);
    for (const QDate& day : found.value_or(std::vector<QDate>())) days.push_back({day});
  } catch (...) {
    trouble_ = ErrorLog::Words(std::current_exception(), tr("The earlier sessions could not be read."));
  }
  days_.Replace(std::move(days));
  // The last evening is what is looked for most.
  if (ChosenDay() < 0) day_ = days_.Count() > 0 ? days_[0].day : QDate();
  Q_EMIT Changed();
}

Job<> SessionReview::ReadEvents() {
  std::vector<SessionEvent> events;
  const QString path = services_.archive.FilePath(day_);
  const auto look = [archive = services_.archive, day = day_] { return archive.ReadDay(day); };
  try {
    std::optional<std::vector<SessionEvent>> found;
    if (day_.isValid()) found = co_await services_.disks.Look(path, look);
    if (!found && day_.isValid()) trouble_ = tr("Disk Does Not Answer : %1").arg(path);
    if (found) events = std::move(*found);
  } catch (...) {
    trouble_ = ErrorLog::Words(std::current_exception(), tr("The session could not be read."));
  }
  earlier_.Replace(std::move(events));
  earlier_.FindTracks();
  // At the loop's next turn, when this is over.
  services_.loop.Post([self = QPointer(this)] {
    if (self) Q_EMIT self->Changed();
  });
}

void SessionReview::ClearEntries() {
  if (shown_ == View::Current && !services_.session.Events().empty() && !clearing_.Running())
    clearing_ = RunClear();
}

Job<> SessionReview::RunClear() {
  Prompt question;
  question.text = QStringLiteral("Clear The Session List ?");
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Question;
  const Answer answer = co_await services_.prompter.Ask(question);
  if (answer != Answer::Yes) co_return;
  services_.began = services_.loop.Now().date();
  services_.session.Clear();
}

void SessionReview::Tell(const QString& words) {
  services_.prompter.Tell({words, {}});
}

void SessionReview::Save(SessionSave save, const std::vector<int>& picked) {
  SessionRows& rows = shown_ == View::Current ? services_.session.Rows() : earlier_;
  if (const QString why = WhyNotSaved(rows.Events(), picked, save); !why.isEmpty()) {
    Prompt refusal;
    refusal.text = why;
    if (why == GapsRefusal()) refusal.help = GapsHelp();
    services_.prompter.Tell(refusal);
    return;
  }
  const int delta = services_.settings.Get(setting::DefaultDelta);
  std::vector<int> loads;
  std::vector<SessionEvent> tracks;
  for (const SessionArguments& each : ArgumentsOf(rows.Events(), picked, save, delta)) {
    rows.SetArguments(each.row, each.text);
    loads.push_back(each.row);
    const SessionEvent& load = rows.Events()[static_cast<std::size_t>(each.row)];
    if (load.Track != Mref::None) tracks.push_back(load);
  }
  const std::size_t gone = loads.size() - tracks.size();
  if (loads.empty()) Tell(tr("No Track Was Loaded In Your Selections !"));
  if (gone > 0) Tell(tr("Tracks Left Out, They Are Not In The Data Base Any More : %1").arg(gone));
  if (tracks.empty()) return;
  Q_EMIT RowsToPick(loads);
  services_.openSave(save, std::move(tracks));
}

}  // namespace kelvo
