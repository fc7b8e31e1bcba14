#include "quiz/PopQuiz.h"

#include "database/KeptTracks.h"
#include "platform/ErrorLog.h"
#include "quiz/QuizSettings.h"

#include <QDir>
#include <QPointer>

namespace kelvo {

PopQuiz::PopQuiz(Services services)
    : services_(std::move(services)),
      plan_(services_.catalogue, services_.settings),
      sounds_({.loop = services_.loop,
               .prompter = services_.prompter,
               .audio = services_.audio,
               .programFolder = services_.programFolder}),
      players_(services_.loop, services_.audio),
      store_(ForStore()),
      keeper_(services_.loop, QuizKeeper::PathIn(store_.Folder())) {
  connect(&plan_, &QuizPlan::Changed, this, &PopQuiz::Changed);
  connect(&plan_, &QuizPlan::ElementsChanged, this, [this] { canStart_ = false; });
  connect(&sounds_, &QuizSounds::Listed, this, [this] {
    for (const QuizSound sound : {QuizSound::Mixer, QuizSound::Intro}) {
      const QuizSetup& setup = plan_.Setup();
      const QStringList& names = sounds_.Names(sound);
      // One that was chosen and is there no more leaves none chosen.
      if (!names.contains(sound == QuizSound::Mixer ? setup.mixer : setup.intro)) {
        ChooseSound(sound, names.first());
      }
    }
    Q_EMIT Changed();
  });
  connect(&players_, &QuizPlayers::BarChanged, this, &PopQuiz::AudienceChanged);
  connect(&store_, &QuizStore::Changed, this, &PopQuiz::Changed);
  connect(&scores_, &QuizScores::Changed, this, [this] {
    KeepState();
    Q_EMIT AudienceChanged();
  });
  connect(this, &PopQuiz::Changed, this, &PopQuiz::AudienceChanged);
  FollowCatalogue();
}

PopQuiz::~PopQuiz() {
  work_.Cancel();
  heard_ = false;
  Dip();
  plan_.Keep();
  // At an ordinary end nobody misses a quiz that is saved, or scores without one.
  if (keeps_ && (saved_ || items_.empty())) keeper_.Keep({});
}

void PopQuiz::Enter() {
  if (!listing_.Running()) listing_ = sounds_.List();
  if (!std::exchange(entered_, true)) Begin(OfferToGoOn());
}

void PopQuiz::Begin(Job<> job) {
  work_ = Guard(std::move(job));
  Q_EMIT Changed();
}

Job<> PopQuiz::Guard(Job<> job) {
  try {
    co_await std::move(job);
  } catch (...) {
    running_ = false;
    players_.Quiet();
    Release();
    basHandleError(QStringLiteral(" quiz"), tr("The quiz could not go on with this."));
  }
  // At the loop's next turn, when this is over.
  services_.loop.Post([self = QPointer(this)] {
    if (self) Q_EMIT self->Changed();
  });
}

void PopQuiz::Lock() {
  players_.Arm();
  locked_ = true;
  Q_EMIT Changed();
}

void PopQuiz::BeginSound() {
  heard_ = true;
  Dip();
}

void PopQuiz::Dip() {
  const bool down = heard_ && DipsConsole();
  if (services_.dip && down != std::exchange(dipped_, down)) services_.dip(down);
}

void PopQuiz::Release() {
  locked_ = false;
  byHand_ = false;
  heard_ = false;
  Dip();
  Q_EMIT Changed();
}

void PopQuiz::Say(const QString& text) {
  text_ = text;
  Q_EMIT Changed();
}

void PopQuiz::Tell(const QString& text) {
  Prompt message;
  message.text = text;
  message.icon = PromptIcon::Information;
  services_.prompter.Tell(message);
}

void PopQuiz::ResetAnswers() {
  answers_.Replace({});
  revealed_ = false;
}

void PopQuiz::Clear() {
  asked_.Replace({});
  items_.clear();
  names_.clear();
  name_.clear();
  selected_ = -1;
  next_ = 0;
  formatted_.clear();
  canStart_ = false;
  saved_ = false;
  ResetAnswers();
}

int PopQuiz::CurrentElement() const {
  const bool shown = canStart_ && next_ <= static_cast<int>(formatted_.size());
  return shown ? next_ - 1 : -1;
}

AudienceView PopQuiz::Audience() const {
  AudienceView view;
  view.teams = scores_.Teams().All();
  const auto& bar = players_.Bar();
  const int sounding = bar ? bar->number : 0;
  if (sounding > 0) {
    view.snippet = tr("Snippet %1 of %2").arg(sounding).arg(std::max(chainOf_, sounding));
    const int length = std::max(bar->span.end - bar->span.start, 1);
    view.share = std::clamp((bar->position - bar->span.start) / length, 0.0, 1.0);
  }
  const bool item = !running_ && selected_ >= 0 && selected_ < static_cast<int>(items_.size());
  if (item) {
    const QuizItem& shown = items_[static_cast<std::size_t>(selected_)];
    view.heading = shown.heading.isEmpty() ? tr("Question %1").arg(selected_ + 1) : shown.heading;
    view.text = shown.question.trimmed();
    if (revealed_) {
      for (const QString& answer : shown.answers.split(QLatin1Char(':')))
        view.answers.append(answer.trimmed());
    }
  } else if (running_) {
    view.heading = tr("Element %1 Of %2").arg(next_).arg(formatted_.size());
    view.text = tr("Listen !");
  } else {
    view.text = tr("Pop Quiz");
  }
  return view;
}

QString PopQuiz::WhyLocked() const {
  if (locked_) return tr("The quiz is at work: STOP ends that");
  if (store_.Busy()) return tr("The saved quizes are being worked on");
  return work_.Running() ? tr("A question is still open") : QString();
}

QString PopQuiz::WhyNoFormat() const {
  const QString locked = WhyLocked();
  return locked.isEmpty() ? plan_.WhyNoFormat() : locked;
}

QString PopQuiz::WhyNoStart() const {
  if (const QString locked = WhyLocked(); !locked.isEmpty()) return locked;
  if (loaded_) return tr("A saved quiz can be shown and replayed; format a new one to run it");
  if (next_ == 0) return tr("Format a quiz first");
  if (next_ > static_cast<int>(formatted_.size())) return tr("All elements are done; format a new quiz");
  return canStart_ ? QString() : tr("The elements were changed: format the quiz anew");
}

QString PopQuiz::WhyNoAnswers() const {
  if (const QString locked = WhyLocked(); !locked.isEmpty()) return locked;
  return selected_ < 0 ? tr("No question is selected") : QString();
}

QString PopQuiz::WhyNoReplay() const {
  if (const QString why = WhyNoAnswers(); !why.isEmpty()) return why;
  return items_[static_cast<std::size_t>(selected_)].IsQuestion() ? tr("Nothing was played for this question")
                                                                  : QString();
}

QString PopQuiz::WhyNoReveal() const {
  return WhyNoAnswers();
}

QString PopQuiz::WhyNoPlay(int answerRow) const {
  if (const QString locked = WhyLocked(); !locked.isEmpty()) return locked;
  if (answerRow < 0 || answerRow >= answers_.Count()) return tr("No answer is selected");
  const auto& snippet = answers_[answerRow].snippet;
  if (!snippet) return tr("Nothing was played of this answer");
  return services_.catalogue.IsTrack(ToMref(snippet->track))
             ? QString()
             : tr("Its track is not in the catalogue any more");
}

QString PopQuiz::WhyNoSheet() const {
  if (const QString locked = WhyLocked(); !locked.isEmpty()) return locked;
  return items_.empty() ? tr("Nothing was asked yet") : QString();
}

QString PopQuiz::WhyNoUnify() const {
  if (const QString locked = WhyLocked(); !locked.isEmpty()) return locked;
  return sounds_.Files().isEmpty() ? tr("No mixer and no introduction is there") : QString();
}

void PopQuiz::AddElement(ElementKind kind) {
  if (!WhyLocked().isEmpty()) return;
  if (plan_.Chosen().Count() == 0) {
    Tell(QStringLiteral("Please Select One Or More Genres!"));
    return;
  }
  ResetAnswers();
  text_.clear();
  plan_.AddElement(kind);
}

void PopQuiz::ChooseSound(QuizSound sound, const QString& name) {
  QuizSetup setup = plan_.Setup();
  (sound == QuizSound::Mixer ? setup.mixer : setup.intro) = name;
  plan_.SetSetup(setup);
}

void PopQuiz::AddSound(QuizSound sound) {
  if (WhyLocked().isEmpty()) Begin(RunAddSound(sound));
}

Job<> PopQuiz::RunAddSound(QuizSound sound) {
  const QString name = co_await sounds_.Add(sound);
  if (!name.isEmpty()) ChooseSound(sound, name);
}

void PopQuiz::Format() {
  if (WhyNoFormat().isEmpty()) Begin(RunFormat());
}

Job<> PopQuiz::RunFormat() {
  if (loaded_) {
    Prompt question;
    question.text =
        QStringLiteral("You Currently Have \r\n") + heading_ + QStringLiteral(" Open, Format New quiz Now ?");
    question.buttons = Buttons::YesNo;
    question.icon = PromptIcon::Question;
    const Answer answer = co_await services_.prompter.Ask(question);
    if (answer != Answer::Yes) co_return;
    heading_ = QStringLiteral("Current Quiz Element");
    loaded_ = false;
  }
  Clear();
  Lock();
  co_await Collect();
  Release();
  text_.clear();
  const std::vector<QuizElement>& elements = plan_.Elements().All();
  if (plan_.TracksRequired() > pool_.Found()) {
    Tell(QStringLiteral("Your %1 Element Set Up Requires %2 Tracks to be Available For Use !\r\n")
             .arg(elements.size())
             .arg(plan_.TracksRequired()) +
         services_.title +
         QStringLiteral(
             " Found %1 Suitable Tracks Within The Specified Genres !\r\nPlease select More Genres !")
             .arg(pool_.Found()));
  } else {
    formatted_ = elements;
    next_ = 1;
    canStart_ = true;
    ShowNextElement();
    Say(QStringLiteral("Pop Quiz Ready"));
  }
  KeepState();
}

Job<> PopQuiz::Collect() {
  pool_.Clear();
  ResetAnswers();
  std::exception_ptr failure;
  try {
    for (int genre = 0; genre < plan_.Chosen().Count() && !players_.Stopped(); ++genre) {
      currentGenre_ = genre;
      Q_EMIT Changed();
      co_await CollectGenre(plan_.Chosen()[genre].name);
    }
  } catch (...) {
    failure = std::current_exception();
  }
  currentGenre_ = -1;
  // A quiz is made of what was found by then.
  if (failure) basHandleError(QStringLiteral(" quizcl"), failure, tr("Not all tracks could be looked at."));
}

Job<> PopQuiz::CollectGenre(QString genre) {
  Turn turn(services_.loop);
  TrackWalk walk(services_.catalogue);
  while (walk.Next()) {
    co_await turn.Yield();
    if (players_.Stopped()) co_return;
    const QString line = services_.catalogue.TrackGenres[walk.Track()];
    const QList<QStringView> genres = QStringView(line).split(QLatin1Char(','));
    const bool match = std::any_of(genres.begin(), genres.end(), [&genre](QStringView each) {
      return each.compare(genre, Qt::CaseInsensitive) == 0;
    });
    if (!match || !pool_.Add(services_.catalogue, walk.Track())) continue;
    if (text_ != QStringLiteral("Collecting Data....")) Say(QStringLiteral("Collecting Data...."));
  }
}

void PopQuiz::Stop() {
  if (locked_) players_.Stop();
}

void PopQuiz::Select(int row) {
  if (!WhyLocked().isEmpty() || row < 0 || row >= static_cast<int>(items_.size())) return;
  selected_ = row;
  ResetAnswers();
  Say(items_[static_cast<std::size_t>(row)].Shown());
}

void PopQuiz::ShowAnswers() {
  if (!WhyNoAnswers().isEmpty()) return;
  const QuizItem& item = items_[static_cast<std::size_t>(selected_)];
  answers_.Replace(AnswerRows(item));
  Say(item.Shown());
}

void PopQuiz::SetRevealed(bool revealed) {
  if (!WhyNoReveal().isEmpty()) return;
  revealed_ = revealed;
  Q_EMIT Changed();
}

void PopQuiz::Unify() {
  if (services_.unify && WhyNoUnify().isEmpty()) services_.unify(sounds_.Files());
}

bool PopQuiz::DipsConsole() const {
  return services_.settings.Get(setting::QuizDipsConsole);
}

void PopQuiz::SetDipsConsole(bool dips) {
  services_.settings.Set(setting::QuizDipsConsole, dips);
  Dip();
  Q_EMIT Changed();
}

Job<bool> PopQuiz::MayClose() {
  if (!locked_) co_return true;
  Prompt question;
  question.text = tr("The Quiz Is Still At Work !\r\nStop That And Close ?");
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Exclamation;
  const Answer answer = co_await services_.prompter.Ask(question);
  if (answer != Answer::Yes) co_return false;
  Stop();
  co_return true;
}

}  // namespace kelvo
