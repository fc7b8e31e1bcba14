#include "platform/ErrorLog.h"
#include "quiz/PopQuiz.h"
#include "quiz/Question.h"

#include <QFileInfo>

namespace kelvo {

void PopQuiz::StartElement() {
  if (WhyNoStart().isEmpty()) Begin(RunElement());
}

void PopQuiz::ShowNextElement() {
  const int count = static_cast<int>(formatted_.size());
  if (next_ > count) {
    startWords_ = QStringLiteral("Done");
    canStart_ = false;
  } else {
    startWords_ = QStringLiteral("Start Element %1 Of %2").arg(next_).arg(count);
  }
}

Job<bool> PopQuiz::OpenChosenMixer() {
  const QString name = plan_.Setup().mixer;
  const bool there = co_await sounds_.IsThere(QuizSound::Mixer, name);
  QString why;
  if (there) why = co_await players_.OpenMixer(sounds_.PathOf(QuizSound::Mixer, name));
  if (there && why.isEmpty()) co_return true;
  // A question plays nothing, but needs its mixer like the others.
  if (!there) {
    Tell(QStringLiteral("Snippet Mixer Not Found !"));
  } else if (!players_.Stopped()) {
    Tell(tr("The Snippet Mixer %1 Can't Be Played : %2").arg(name, why));
  }
  co_return false;
}

Job<> PopQuiz::RunElement() {
  Lock();
  const bool ready = co_await OpenChosenMixer();
  if (!ready) {
    Release();
    co_return;
  }
  const ElementKind kind = formatted_[static_cast<std::size_t>(next_ - 1)].kind;
  const QString words = kind == ElementKind::Snippet    ? QStringLiteral("%1 - Playing Snippet")
                        : kind == ElementKind::Question ? QStringLiteral("%1 - Asking Question")
                                                        : QStringLiteral("%1 - Playing Snippets Chain");
  running_ = true;
  ResetAnswers();
  asked_.Append({AskedRow{words.arg(next_)}});
  selected_ = asked_.Count() - 1;
  if (kind != ElementKind::Question) BeginSound();
  Q_EMIT Changed();
  QuizItem item;
  Outcome outcome = Outcome::Asked;
  std::exception_ptr failure;
  try {
    if (kind == ElementKind::Question) outcome = co_await Ask(item);
    if (kind == ElementKind::Snippet) outcome = co_await PlayOne(item);
    if (kind == ElementKind::Chain) outcome = co_await PlayChain(item);
  } catch (...) {
    outcome = Outcome::Cancelled;
    failure = std::current_exception();
  }
  players_.Quiet();
  EndElement(outcome, std::move(item));
  Release();
  if (failure) std::rethrow_exception(failure);
}

void PopQuiz::EndElement(Outcome outcome, QuizItem item) {
  const ElementKind kind = formatted_[static_cast<std::size_t>(next_ - 1)].kind;
  running_ = false;
  chainOf_ = 0;
  if (outcome == Outcome::Asked) {
    text_ = item.Shown();
    items_.push_back(std::move(item));
    ++next_;
    ShowNextElement();
    KeepState();
    return;
  }
  // The same element is offered again.
  asked_.Remove(asked_.Count() - 1);
  selected_ = asked_.Count() - 1;
  text_ = kind == ElementKind::Chain ? QStringLiteral("Play Snippets Cancelled")
                                     : QStringLiteral("Play Snippet Cancelled");
  if (outcome == Outcome::NoTrack) {
    text_.clear();
    Tell(tr("No Track Is Left That Was Not Used And Can Be Played !\r\nPlease select More Genres !"));
  }
}

Job<PopQuiz::Outcome> PopQuiz::Ask(QuizItem& item) {
  const std::optional<int> picked = pool_.Pick(services_.random);
  if (!picked) co_return Outcome::NoTrack;
  pool_.Use(*picked);
  const Candidate candidate = pool_[*picked];
  const Catalogue& tracks = services_.catalogue;
  const QuestionFacts facts{.artist = candidate.artist,
                            .album = candidate.album,
                            .title = TitleOf(tracks.TrackNames[candidate.track]),
                            .date = tracks.TrackDates[candidate.track],
                            .hi = tracks.TrackHi[candidate.track]};
  const int type = PickQuestion(QuestionSet(candidate), services_.random);
  const QuizQuestion written = WriteQuestion(type, facts);
  item.heading = QStringLiteral("Question (Element %1 Of %2)").arg(next_).arg(formatted_.size());
  item.question = written.question;
  item.answers = written.answer;
  item.snippets = QStringLiteral("Q");
  co_return Outcome::Asked;
}

Job<PopQuiz::Drawn> PopQuiz::DrawSnippet() {
  Drawn drawn;
  for (;;) {
    const std::optional<int> picked = pool_.Pick(services_.random);
    drawn.outcome = Outcome::NoTrack;
    if (!picked) co_return drawn;
    const QString path = services_.catalogue.TrackPaths(pool_[*picked].track);
    const QString why = co_await players_.OpenTrack(path);
    drawn.outcome = Outcome::Cancelled;
    if (players_.Stopped()) co_return drawn;
    const Mref track = pool_[*picked].track;
    if (!why.isEmpty() || track == Mref::None) {
      // Another one takes its place; this one is not tried again.
      pool_.Use(*picked);
      NoteInLog(QStringLiteral("The quiz passed over %1: %2").arg(path, why));
      continue;
    }
    drawn.outcome = Outcome::Asked;
    drawn.candidate = *picked;
    drawn.span = ChooseSnippet(players_.TrackSeconds(), plan_.Setup(), services_.random);
    drawn.title = TitleOf(services_.catalogue.TrackNames[track]);
    co_return drawn;
  }
}

SnippetRecord PopQuiz::RecordOf(const Drawn& drawn, ElementKind kind) {
  const Mref track = pool_[drawn.candidate].track;
  if (track != Mref::None) names_[ToInt(track)] = services_.catalogue.TrackNames[track];
  return {.track = ToInt(track), .span = drawn.span, .rate = 1, .kind = kind};
}

Job<PopQuiz::Outcome> PopQuiz::PlayOne(QuizItem& item) {
  chainOf_ = 1;
  Say(QStringLiteral("Playing Snippet"));
  const Drawn drawn = co_await DrawSnippet();
  if (drawn.outcome != Outcome::Asked) co_return drawn.outcome;
  co_await players_.PlaySnippet(1, drawn.span, 1);
  if (players_.Stopped()) co_return Outcome::Cancelled;
  pool_.Use(drawn.candidate);
  item.heading = QStringLiteral("Play Snippet (Element %1 Of %2)").arg(next_).arg(formatted_.size());
  item.question = QStringLiteral("Who was the Artist And Track Just Played ?");
  item.answers = pool_[drawn.candidate].artist + QStringLiteral(", ") + drawn.title;
  item.snippets = RecordOf(drawn, ElementKind::Snippet).Text();
  co_return Outcome::Asked;
}

Job<PopQuiz::Outcome> PopQuiz::PlayChain(QuizItem& item) {
  const int quantity = plan_.Setup().chainQty;
  chainOf_ = quantity;
  std::vector<Drawn> chain;
  std::vector<int> taken;
  for (int number = 1; number <= quantity; ++number) {
    Say(QStringLiteral("Playing Snippets(%1 Of %2)").arg(number).arg(quantity));
    Drawn drawn = co_await DrawSnippet();
    if (drawn.outcome == Outcome::Asked) {
      co_await players_.PlaySnippet(number, drawn.span, 1);
      if (players_.Stopped()) drawn.outcome = Outcome::Cancelled;
    }
    if (drawn.outcome != Outcome::Asked) {
      // A new attempt can use them.
      pool_.GiveBack(taken);
      co_return drawn.outcome;
    }
    pool_.Use(drawn.candidate);
    taken.push_back(drawn.candidate);
    chain.push_back(drawn);
  }
  QStringList answers;
  QStringList snippets;
  for (const Drawn& each : chain) {
    answers.append(QStringLiteral("(%1) ").arg(answers.size() + 1) + pool_[each.candidate].artist +
                   QStringLiteral(", ") + each.title);
    snippets.append(RecordOf(each, ElementKind::Chain).Text());
  }
  item.heading = QStringLiteral("Play Snippet String (Element %1 Of %2)").arg(next_).arg(formatted_.size());
  item.question = QStringLiteral("Who Were the %1 Artists And Tracks Snippets Just Played ?").arg(quantity);
  item.answers = answers.join(QLatin1Char(':'));
  item.snippets = snippets.join(QLatin1Char(':'));
  co_return Outcome::Asked;
}

void PopQuiz::Replay() {
  if (WhyNoReplay().isEmpty()) Begin(RunReplay(items_[static_cast<std::size_t>(selected_)]));
}

Job<> PopQuiz::RunReplay(QuizItem item) {
  Lock();
  const bool ready = co_await OpenChosenMixer();
  if (!ready) {
    Release();
    co_return;
  }
  const std::vector<SnippetRecord> records = SnippetsOf(item);
  chainOf_ = static_cast<int>(records.size());
  BeginSound();
  int number = 0;
  for (const SnippetRecord& each : records) {
    ++number;
    const QString path = services_.catalogue.TrackPaths(ToMref(each.track));
    QString why = tr("It is not in the catalogue any more");
    if (!path.isEmpty()) why = co_await players_.OpenTrack(path);
    if (players_.Stopped()) break;
    // What can't be played is passed over in silence.
    if (why.isEmpty()) co_await players_.PlaySnippet(number, each.span, each.rate);
    if (players_.Stopped()) break;
  }
  chainOf_ = 0;
  Release();
}

void PopQuiz::PlayAnswer(int answerRow, PlayPart part) {
  if (WhyNoPlay(answerRow).isEmpty()) Begin(RunPlayAnswer(*answers_[answerRow].snippet, part));
}

Job<> PopQuiz::RunPlayAnswer(SnippetRecord record, PlayPart part) {
  const QString mixer = plan_.Setup().mixer;
  Lock();
  BeginSound();
  const bool marks = co_await sounds_.IsThere(QuizSound::Mixer, mixer);
  players_.CloseMixer();
  if (marks) (void)co_await players_.OpenMixer(sounds_.PathOf(QuizSound::Mixer, mixer));
  const QString path = services_.catalogue.TrackPaths(ToMref(record.track));
  const QString why = co_await players_.OpenTrack(path);
  if (why.isEmpty()) {
    byHand_ = true;
    Q_EMIT Changed();
    co_await players_.PlayByHand(part, record.span);
  } else if (!players_.Stopped()) {
    Tell(tr("%1 Can't Be Played : %2").arg(QFileInfo(path).completeBaseName(), why));
  }
  Release();
}

void PopQuiz::TryMixer() {
  if (WhyLocked().isEmpty()) Begin(RunSound(QuizSound::Mixer));
}

void PopQuiz::PlayIntro() {
  if (WhyLocked().isEmpty()) Begin(RunSound(QuizSound::Intro));
}

Job<> PopQuiz::RunSound(QuizSound sound) {
  const bool intro = sound == QuizSound::Intro;
  const QString name = intro ? plan_.Setup().intro : plan_.Setup().mixer;
  const bool there = co_await sounds_.IsThere(sound, name);
  if (!there) {
    Tell(intro ? QStringLiteral("Introduction Media file Not found!")
               : QStringLiteral("Can't find Mixer To play !"));
    co_return;
  }
  Lock();
  BeginSound();
  if (intro) Say(QStringLiteral("Playing Introduction : ") + name);
  const QString why = co_await players_.OpenMixer(sounds_.PathOf(sound, name));
  if (why.isEmpty()) {
    co_await players_.PlayMixer();
  } else if (!players_.Stopped()) {
    Tell(tr("%1 Can't Be Played : %2").arg(name, why));
  }
  if (intro) text_.clear();
  Release();
}

}  // namespace kelvo
